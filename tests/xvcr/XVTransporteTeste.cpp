// An export of more rows than a transaction takes, and an import that the store stops.
#include <algorithm>

#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/xvcr/XVPrograma.h"
#include "tools/xvcr/transport/XVFormatoExportacao.h"

namespace {

TEST(Transporte, MilLinhasPorTransacaoEmSql) {
    const auto forma = [](int iLinhas) {
        const auto pFormato = XVCriaFormato(EFormatoExportacao::eSql, true);
        std::string sComeco, sTudo;
        pFormato->Comeca("002", &sComeco);
        while (iLinhas-- > 0) pFormato->Inclui(SIntegracaoTransportada(), &sTudo);
        pFormato->Termina(&sTudo);
        return sTudo;
    };
    const std::string sMil = forma(1000), sMais = forma(2001);
    EXPECT_EQ(sMil.find("BEGIN"), std::string::npos);
    const std::size_t uiMil = sMil.size() - std::string("COMMIT;\n").size();
    EXPECT_EQ(sMais.substr(uiMil, 23), "COMMIT;\nBEGIN;\nINSERT I");
    EXPECT_EQ(sMais.substr(2 * uiMil + 15, 23), "COMMIT;\nBEGIN;\nINSERT I");
}

class TransporteAqui : public XVProgramaAqui {};

// A full disk would refuse each of the lines that follow.
TEST_F(TransporteAqui, ImportacaoQueContinuaParaNaFalhaDaBase) {
    for (int i = 0; i < 3; ++i) Grava("grava --status Pendente --json-enviado {}");
    const std::string sArquivo = m_Diretorio.Junta("tudo.jsonl");
    EXPECT_EQ(Xvcr("exporta --para", {sArquivo}).iSaida, 0);
    const auto importa = [&] {
        return XVExecutaAqui({"--diretorio", m_Diretorio.GetCaminho(), "--empresa", "002", "importa",
                              sArquivo, "--continua", "--json"});
    };
    CXVSistemaArquivosFalhas falhas(XVPlataforma::SistemaArquivos());
    falhas.SetFiltro([](const std::string& s) {
        return s.find("002") != std::string::npos && s.find("CRINTEGMIDJSON2") != std::string::npos;
    });
    const CXVGuardaSistemaArquivos guarda(falhas);
    const auto enche = [&] {
        falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava,
                         .bPermanente = true,
                         .eCausa = ECausaArquivo::eDiscoCheio});
    };
    enche();
    const std::string sCheio =
        "0x80043F08 eDiskFull: O disco está cheio ou a cota acabou; libere espaço e repita, nada foi "
        "perdido. Arquivo: ";
    SExecucao execucao = importa();  // into a company that is not there yet
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_EQ(
        execucao.sSaida,
        "{\"novas\":0,\"jaEstavam\":0,\"deixadas\":0,\"lancamentos\":0,\"origensVazias\":0,\"recusadas\":0,"
        "\"completa\":false}\n");
    EXPECT_TRUE(execucao.sErro.starts_with("xvcr: " + sCheio)) << execucao.sErro;
    EXPECT_EQ(std::count(execucao.sErro.begin(), execucao.sErro.end(), '\n'), 1) << execucao.sErro;
    falhas.Limpa();
    static_cast<void>(XVExecutaAqui(
        {"--diretorio", m_Diretorio.GetCaminho(), "--empresa", "002", "grava", "--status", "Erro"}));
    enche();
    execucao = importa();  // behind another integration
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_EQ(
        execucao.sSaida,
        "{\"novas\":0,\"jaEstavam\":0,\"deixadas\":0,\"lancamentos\":0,\"origensVazias\":0,\"recusadas\":2,"
        "\"completa\":false}\n");
    EXPECT_TRUE(execucao.sErro.starts_with(
        "xvcr: " + sArquivo + ", linha 2: o DMC já é o de outra integração nesta base\nxvcr: " + sArquivo +
        ", linha 3: " + sCheio))
        << execucao.sErro;
    EXPECT_EQ(execucao.sErro.find("linha 4"), std::string::npos) << execucao.sErro;
}

}  // namespace
