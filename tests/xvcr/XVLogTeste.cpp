#include <gtest/gtest.h>

#include <fstream>

#include "support/codes/XVCodigos.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tools/xvcr/logs/XVArquivosLog.h"
#include "tools/xvcr/logs/XVFiltroLog.h"

namespace {

// Not all of the columns that the logs have, and not in their order: the names decide.
const std::string k_sCabecalho =
    "Data\tHora\tTipo\tEmpresa\tUsuario\tSessao\tClasseFuncao\tArquivo\tLinha\tLog\tParameter1";
const std::string k_sErro =
    "21/11/2026\t13:05:09\tERRO\tE001\tU007\tS00000042\tCBaseMiddleware::LeIntegracao\tArquivo = "
    "BaseMiddleware\t"
    "Linha = 120\tLog = hr = m_Index.LeIndex(a, &b)\thr = 0X81080AAA Não há";

SLinhaLog Le(const std::string& sLinha) {
    SLinhaLog linha;
    EXPECT_TRUE(CXVCabecalhoLog(k_sCabecalho).Le(sLinha, &linha)) << sLinha;
    return linha;
}

TEST(LinhaLog, DecodificaPelosNomesDasColunas) {
    const SLinhaLog linha = Le(k_sErro);
    EXPECT_EQ(linha.sDataHora, "2026-11-21T13:05:09");
    EXPECT_EQ(linha.sEmpresa, "001");
    EXPECT_EQ(linha.sUsuario, "7");
    EXPECT_EQ(linha.sSessao, "42");
    EXPECT_EQ(linha.sFuncao, "CBaseMiddleware::LeIntegracao");
    EXPECT_EQ(linha.sArquivo, "BaseMiddleware");
    EXPECT_EQ(linha.sLinha, "120");
    EXPECT_EQ(linha.sExpressao, "m_Index.LeIndex(a, &b)");
    EXPECT_EQ(linha.sCodigo, "0x81080AAA");
    EXPECT_EQ(linha.sMensagem, "Não há");
}

TEST(LinhaLog, LinhaEstranhaOuCortadaNaoDerruba) {
    const CXVCabecalhoLog cabecalho(k_sCabecalho);
    SLinhaLog linha;
    for (const char* pszLinha : {"", "x", "\t\t\t", "21-11-2026\t13:05:09", "21/11/2026\t13:05"})
        EXPECT_FALSE(cabecalho.Le(pszLinha, &linha)) << pszLinha;
    for (std::size_t i = 20; i < k_sErro.size(); ++i) EXPECT_TRUE(cabecalho.Le(k_sErro.substr(0, i), &linha));
    EXPECT_EQ(Le("21/11/2026\t13:05:09\tERRO\t\t\t\tf\t\t\tErro ao deletar arquivo x DW: 32.").sMensagem,
              "Erro ao deletar arquivo x DW: 32.");
}

TEST(FiltroLog, CadaMembroRestringe) {
    const SLinhaLog linha = Le(k_sErro);
    const auto aceita = [&](auto fMuda) {
        SFiltroLog filtro;
        fMuda(filtro);
        return filtro.Aceita(linha);
    };
    EXPECT_TRUE(aceita([](SFiltroLog&) {}));
    EXPECT_TRUE(aceita([](SFiltroLog& f) { f.sFuncao = "leintegracao"; }));
    EXPECT_FALSE(aceita([](SFiltroLog& f) { f.sFuncao = "Grava"; }));
    EXPECT_TRUE(aceita([](SFiltroLog& f) { EXPECT_EQ(SFiltroLog::LeCodigo("0x81080aaa", &f.sCodigo), ""); }));
    EXPECT_FALSE(aceita([](SFiltroLog& f) { EXPECT_EQ(SFiltroLog::LeCodigo("5", &f.sCodigo), ""); }));
    EXPECT_TRUE(aceita([](SFiltroLog& f) {
        EXPECT_EQ(SFiltroLog::LeCodigo("e_xvcr_posicao_de_indexacao_invalida", &f.sCodigo), "");
    }));
    EXPECT_FALSE(aceita([](SFiltroLog& f) { f.sEmpresa = "002"; }));
    EXPECT_FALSE(aceita([](SFiltroLog& f) { f.sUsuario = "8"; }));
    EXPECT_FALSE(aceita([](SFiltroLog& f) { f.sSessao = "4"; }));
}

TEST(FiltroLog, DiaSemHoraEODiaTodo) {
    const SLinhaLog linha = Le(k_sErro);
    SFiltroLog filtro;
    EXPECT_EQ(SFiltroLog::LeMomento("2026-11-21", false, &filtro.sDe), "");
    EXPECT_EQ(SFiltroLog::LeMomento("2026-11-21", true, &filtro.sAte), "");
    EXPECT_TRUE(filtro.Aceita(linha));
    EXPECT_EQ(SFiltroLog::LeMomento("2026-11-21T13:05:08", true, &filtro.sAte), "");
    EXPECT_FALSE(filtro.Aceita(linha));
    EXPECT_NE(SFiltroLog::LeMomento("2026-11-21T13:05:08Z", true, &filtro.sAte), "");
    EXPECT_NE(SFiltroLog::LeCodigo("E_NAO_HA", &filtro.sCodigo), "");
}

TEST(LeitoresLog, MesesEmOrdemEOQueChegaDepois) {
    const CXVDiretorioTeste diretorio;
    diretorio.CriaArquivo("XVProfilerErros_Base_202611.log", k_sCabecalho + "\n" + k_sErro + "\n" + k_sErro);
    diretorio.CriaArquivo("XVProfilerErros_Base_202610.log",
                          k_sCabecalho + "\n20/10/2026\t01:02:03\tERRO\tE001\nlixo\n");
    diretorio.CriaArquivo("outro.log", k_sCabecalho + "\n" + k_sErro + "\n");
    SOrigemLog origem;
    origem.sDiretorio = diretorio.GetCaminho();
    CXVLeitoresLog leitores(origem);
    std::vector<std::string> listaMomentos;
    const auto recebe = [&](const SLinhaLog& r) { listaMomentos.push_back(r.sDataHora); };
    leitores.LeNovos(recebe);
    EXPECT_EQ(listaMomentos, (std::vector<std::string>{"2026-10-20T01:02:03", "2026-11-21T13:05:09"}));

    listaMomentos.clear();
    std::ofstream(diretorio.Junta("XVProfilerErros_Base_202611.log"), std::ios::app | std::ios::binary)
        << "\n";
    diretorio.CriaArquivo("XVProfilerErros_Base_202612.log",
                          k_sCabecalho + "\n01/12/2026\t00:00:00\tERRO\tE001\n");
    leitores.LeNovos(recebe);
    EXPECT_EQ(listaMomentos, (std::vector<std::string>{"2026-11-21T13:05:09", "2026-12-01T00:00:00"}));

    origem.sAnoMes = "202610";
    EXPECT_EQ(origem.Lista().size(), 1U);
}

}  // namespace
