#include <gtest/gtest.h>

#include <fstream>

#include "support/codes/XVCodigos.h"
#include "tests/harness/XVDiretorioTeste.h"
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

SLinhaRegistro Le(const std::string& sLinha) {
    SLinhaRegistro registro;
    EXPECT_TRUE(CXVCabecalhoLog(k_sCabecalho).Le(sLinha, &registro)) << sLinha;
    return registro;
}

TEST(LinhaRegistro, DecodificaPelosNomesDasColunas) {
    const SLinhaRegistro registro = Le(k_sErro);
    EXPECT_EQ(registro.sDataHora, "2026-11-21T13:05:09");
    EXPECT_EQ(registro.sEmpresa, "001");
    EXPECT_EQ(registro.sUsuario, "7");
    EXPECT_EQ(registro.sSessao, "42");
    EXPECT_EQ(registro.sFuncao, "CBaseMiddleware::LeIntegracao");
    EXPECT_EQ(registro.sArquivo, "BaseMiddleware");
    EXPECT_EQ(registro.sLinha, "120");
    EXPECT_EQ(registro.sExpressao, "m_Index.LeIndex(a, &b)");
    EXPECT_EQ(registro.sCodigo, "0x81080AAA");
    EXPECT_EQ(registro.sMensagem, "Não há");
}

TEST(LinhaRegistro, LinhaEstranhaOuCortadaNaoDerruba) {
    const CXVCabecalhoLog cabecalho(k_sCabecalho);
    SLinhaRegistro registro;
    for (const char* pszLinha : {"", "x", "\t\t\t", "21-11-2026\t13:05:09", "21/11/2026\t13:05"})
        EXPECT_FALSE(cabecalho.Le(pszLinha, &registro)) << pszLinha;
    for (std::size_t i = 20; i < k_sErro.size(); ++i)
        EXPECT_TRUE(cabecalho.Le(k_sErro.substr(0, i), &registro));
    EXPECT_EQ(Le("21/11/2026\t13:05:09\tERRO\t\t\t\tf\t\t\tErro ao deletar arquivo x DW: 32.").sMensagem,
              "Erro ao deletar arquivo x DW: 32.");
}

TEST(FiltroRegistro, CadaMembroRestringe) {
    const SLinhaRegistro registro = Le(k_sErro);
    const auto aceita = [&](auto fMuda) {
        SFiltroRegistro filtro;
        fMuda(filtro);
        return filtro.Aceita(registro);
    };
    EXPECT_TRUE(aceita([](SFiltroRegistro&) {}));
    EXPECT_TRUE(aceita([](SFiltroRegistro& f) { f.sFuncao = "leintegracao"; }));
    EXPECT_FALSE(aceita([](SFiltroRegistro& f) { f.sFuncao = "Grava"; }));
    EXPECT_TRUE(aceita(
        [](SFiltroRegistro& f) { EXPECT_EQ(SFiltroRegistro::LeCodigo("0x81080aaa", &f.sCodigo), ""); }));
    EXPECT_FALSE(
        aceita([](SFiltroRegistro& f) { EXPECT_EQ(SFiltroRegistro::LeCodigo("5", &f.sCodigo), ""); }));
    EXPECT_TRUE(aceita([](SFiltroRegistro& f) {
        EXPECT_EQ(SFiltroRegistro::LeCodigo("e_xvcr_posicao_de_indexacao_invalida", &f.sCodigo), "");
    }));
    EXPECT_FALSE(aceita([](SFiltroRegistro& f) { f.sEmpresa = "002"; }));
    EXPECT_FALSE(aceita([](SFiltroRegistro& f) { f.sUsuario = "8"; }));
    EXPECT_FALSE(aceita([](SFiltroRegistro& f) { f.sSessao = "4"; }));
}

TEST(FiltroRegistro, DiaSemHoraEODiaTodo) {
    const SLinhaRegistro registro = Le(k_sErro);
    SFiltroRegistro filtro;
    EXPECT_EQ(SFiltroRegistro::LeMomento("2026-11-21", false, &filtro.sDe), "");
    EXPECT_EQ(SFiltroRegistro::LeMomento("2026-11-21", true, &filtro.sAte), "");
    EXPECT_TRUE(filtro.Aceita(registro));
    EXPECT_EQ(SFiltroRegistro::LeMomento("2026-11-21T13:05:08", true, &filtro.sAte), "");
    EXPECT_FALSE(filtro.Aceita(registro));
    EXPECT_NE(SFiltroRegistro::LeMomento("2026-11-21T13:05:08Z", true, &filtro.sAte), "");
    EXPECT_NE(SFiltroRegistro::LeCodigo("E_NAO_HA", &filtro.sCodigo), "");
}

TEST(LeitoresRegistro, MesesEmOrdemEOQueChegaDepois) {
    const CXVDiretorioTeste diretorio;
    diretorio.CriaArquivo("XVProfilerErros_Base_202611.log", k_sCabecalho + "\n" + k_sErro + "\n" + k_sErro);
    diretorio.CriaArquivo("XVProfilerErros_Base_202610.log",
                          k_sCabecalho + "\n20/10/2026\t01:02:03\tERRO\tE001\nlixo\n");
    diretorio.CriaArquivo("outro.log", k_sCabecalho + "\n" + k_sErro + "\n");
    SOrigemRegistro origem;
    origem.sDiretorio = diretorio.GetCaminho();
    CXVLeitoresLog leitores(origem);
    std::vector<std::string> listaMomentos;
    const auto recebe = [&](const SLinhaRegistro& r) { listaMomentos.push_back(r.sDataHora); };
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
