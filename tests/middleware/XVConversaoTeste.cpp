// Databases of earlier versions and what the conversion makes of them, whole files at a time.
#include "core/xvdatabase/XVMarcas.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioConversao.h"
#include "tests/middleware/XVRetratoLoja.h"

namespace {

class CXVConversaoTeste : public CXVCenarioConversao,
                          public testing::WithParamInterface<std::tuple<unsigned, bool>> {};

// Beside the store: empty and missing files, foreign names like the group's, leftovers of a step that was
// given up.
TArquivos ComSujeira(unsigned uiVersao, bool bCabecalho) {
    TArquivos arquivos = XVBaseDourada(uiVersao, bCabecalho);
    if (uiVersao % 2 == 1) arquivos.erase(k_pszDatas);
    arquivos["CRINTEGMID20230701.dat"] = "";
    arquivos["CRINTEGMID20230702.dat"] = XVArquivoDoTeste({"CRINTEGMID20230702.dat", 3, 1, 5, 6}, "");
    arquivos["CRINTEGMIDJSONX1.dat"] = "nenhum membro";
    arquivos["CRINTEGMID2023060.dat"] = "curto";
    arquivos["CRINTEGMID20230603.datx"] = "extensao";
    arquivos["CRINTEGMIDMENS0101.dat"] = "letras";
    arquivos["CRINTEGMID20230605.tra"] = "metade de uma copia";
    arquivos["CRCHAVEREGTER.tra"] = "";
    arquivos["CRINTEGMID20230606.cab"] = "copia alheia";
    return arquivos;
}

TEST_P(CXVConversaoTeste, CadaCampoChegaAoSeuLugarEALojaResponde) {
    const auto [uiVersao, bCabecalho] = GetParam();
    const TArquivos antes = ComSujeira(uiVersao, bCabecalho);
    const TArquivos esperados = XVDadosConvertidos(uiVersao);
    ASSERT_EQ(esperados.size(), 6U);
    Instala(antes);
    const auto retratoAntes = m_Arquivos.Retrata();
    CXVConversaoMiddleware conversao(nullptr);
    ASSERT_EQ(conversao.Inicializa(&m_Dono), S_OK);
    XVUShort usVersao = 9;
    std::vector<SPassoPrevisto> passos;
    EXPECT_EQ(conversao.Simula(&usVersao, &passos), S_OK);
    EXPECT_EQ(usVersao, uiVersao);
    for (const SPassoPrevisto& rPasso : passos)
        for (const auto& rArquivo : rPasso.listaArquivos)
            EXPECT_NE(rArquivo.uiTamanho, 0U) << rArquivo.sNomeArquivo;
    EXPECT_EQ(m_Arquivos.Diferenca(retratoAntes, m_Arquivos.Retrata()), "") << "a dry run changes nothing";
    ASSERT_EQ(Converte(), S_OK);
    for (const auto& [sNome, sBytes] : antes) {
        if (sNome.ends_with(".tra")) continue;
        const auto it = esperados.find(sNome);
        const bool bIntocado = uiVersao == 4 && sNome.starts_with("CRINTEGMID");
        EXPECT_EQ(Conteudo(sNome),
                  it == esperados.end() || bIntocado ? sBytes : Conteudo(sNome).substr(0, 240) + it->second)
            << sNome;
    }
    EXPECT_EQ(Dados(Conteudo(k_pszVersao)), esperados.at(k_pszVersao));
    EXPECT_EQ(Conteudo(k_pszDatas) == "<ausente>", uiVersao % 2 == 1);
    if (uiVersao < 4) {
        EXPECT_EQ(Conteudo(k_apszDias[1]),
                  XVArquivoDoTeste({k_apszDias[1], 0, 4, 65535, 99}, esperados.at(k_apszDias[1])))
            << "stamped with the last step and the conversion's user";
        ConfereSemRestos();
    }
    const auto retrato = RetratoSemLogs();
    ASSERT_EQ(Converte(), S_OK);
    EXPECT_EQ(m_Arquivos.Diferenca(retrato, RetratoSemLogs()), "") << "a second run has nothing to do";
    const bool bPrimeiroLeiaute = uiVersao < 3;  // it has neither database nor auxiliary pointer
    const std::string sBase = bPrimeiroLeiaute ? "0" : "72623859790382866";
    const std::string sAuxiliar = bPrimeiroLeiaute ? "0 0" : "2712847122 118";
    EXPECT_EQ(
        XVRetrataIntegracao(*Abre(), {XVChaveDmc(XVDma(2023, 6, 7), 2)}),
        "dmc 57b1c00000008001 origem 57b1400000368001 movimento 160002 inclusao 15ec5000074b8 alteracao "
        "15ec5000082c8 chave 118 registro 0 base " +
            sBase + " tipo 14 status 4 sistema 2 transacao 1 filial 318 usuarios 418 518 auxiliar " +
            sAuxiliar +
            " reconsultar 1 json 38:43e6a83529c12909 mensagem 21:c38da98421e22a3a:Integração aceita 3 "
            "retorno 8:d43bb91bf0d535f8:{\"id\":4}");
}

INSTANTIATE_TEST_SUITE_P(Versoes, CXVConversaoTeste,
                         testing::Combine(testing::Range(0U, 5U), testing::Bool()));

using CXVConversaoCasosTeste = CXVCenarioConversao;

// With the machine's option the branch serves as the database's id in the records of the first layout.
TEST_F(CXVConversaoCasosTeste, FilialComoBaseSoPelaOpcaoDaMaquina) {
    for (const XVUInt ulOpcoes : {0U, 0xEFU, 0x10U, 0xFFU})
        for (const unsigned uiVersao : {1U, 3U}) {
            m_registry.SetNumero(CAmbienteXV::GetChaveRegistry(k_eModuloBase), "AcessoServidores_1",
                                 ulOpcoes);
            Instala(XVBaseDourada(uiVersao, true));
            ASSERT_EQ(Converte(), S_OK);
            std::string sEsperado = XVDadosConvertidos(uiVersao).at(k_apszDias[0]);
            if ((ulOpcoes & 0x10) != 0 && uiVersao == 1)
                for (std::size_t i = 0; i < sEsperado.size(); i += 88)
                    sEsperado.replace(i + 32, 4, sEsperado, i + 60, 4);
            EXPECT_EQ(Dados(Conteudo(k_apszDias[0])), sEsperado) << ulOpcoes << " " << uiVersao;
        }
}

// The journal beside the store is of a process of a later program that has died, and that program's business.
TEST_F(CXVConversaoCasosTeste, VersaoPosteriorOuDanificadaNadaMuda) {
    const auto arquivoVersao = [](unsigned uiVersao) {
        return XVArquivoDoTeste({k_pszVersao}, CXVBytes().U16(uiVersao).Zeros(14).Str());
    };
    TArquivos base = XVBaseDourada(5, true);
    base["XVDATABASE_ABERTA.srk"] = "de um programa posterior";
    const std::string sVersao = arquivoVersao(4);
    std::string sErrado = sVersao;
    sErrado[130] = 'x';
    constexpr auto k_hrPosterior = E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA;
    constexpr auto k_hrTamanho = E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA;
    const struct {
        std::string sArquivo;
        HRESULT hr, hrVista;
    } aCasos[] = {{arquivoVersao(6), k_hrPosterior, k_hrPosterior},
                  {arquivoVersao(65535), k_hrPosterior, k_hrPosterior},
                  {sVersao.substr(0, 250), k_hrTamanho, E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE},
                  {CXVBytes().U16(4).Zeros(13), k_hrTamanho, k_hrTamanho},
                  {sErrado, E_XVCR_CRC_CABECALHO_NAO_CONFERE, E_XVCR_CRC_CABECALHO_NAO_CONFERE},
                  {"", k_hrTamanho, k_hrTamanho}};
    for (const auto& [sArquivo, hr, hrVista] : aCasos) {
        const CXVCapturaTrace captura;
        base[k_pszVersao] = sArquivo;
        Recomeca(base);
        const auto retrato = m_Arquivos.Retrata();
        EXPECT_EQ(Converte(), hr);
        EXPECT_TRUE(XVTextoNoLog(
            captura, hr == k_hrPosterior
                         ? "Arquivo recusado: " + PastaDados(k_pszVersao) + "\thr = 0X810809C7"
                         : "LeSingleReg(this, XV_DF, &regVersao, \"CRMIDDLEWAREVS.dat\")\thr = 0X81"));
        EXPECT_EQ(AbreEFecha(false), hr);
        EXPECT_EQ(AbreEFecha(true), hrVista);
        EXPECT_EQ(m_Arquivos.Diferenca(retrato, m_Arquivos.Retrata()), "");
    }
}

// A version file of which one bit changed would have the records converted a second time.
TEST_F(CXVConversaoCasosTeste, VersaoAnteriorAoQueOsArquivosMostramNadaMuda) {
    const auto comVersao = [](TArquivos base, unsigned uiVersao) {
        base[k_pszVersao] = XVArquivoDoTeste({k_pszVersao}, CXVBytes().U16(uiVersao).Zeros(14).Str());
        return base;
    };
    Instala(XVBaseDourada(3, true));
    ASSERT_EQ(Converte(), S_OK);
    TArquivos convertida;
    for (const char* pszNome :
         {k_apszDias[0], k_apszDias[1], k_apszDias[2], "CRDTHRINTEG.dat", "CRCHAVEREGTER.dat"})
        convertida[pszNome] = Conteudo(pszNome);
    // Without stamps the layout of the records tells it.
    const TArquivos nova = XVBaseDourada(5, true);
    TArquivos soChaves;
    soChaves["CRCHAVEREGTER.dat"] = nova.at("CRCHAVEREGTER.dat");
    const std::pair<TArquivos, unsigned> aCasos[] = {{convertida, 1}, {convertida, 3}, {convertida, 4},
                                                     {nova, 1},       {nova, 2},       {soChaves, 1}};
    for (const auto& [base, uiVersao] : aCasos) {
        const CXVCapturaTrace captura;
        Recomeca(comVersao(base, uiVersao));
        const auto retrato = m_Arquivos.Retrata();
        EXPECT_EQ(Converte(), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS) << uiVersao;
        EXPECT_TRUE(XVTextoNoLog(captura, "Arquivo recusado: " + PastaDados(k_pszVersao)));
        EXPECT_EQ(AbreEFecha(true), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS);
        EXPECT_EQ(m_Arquivos.Diferenca(retrato, m_Arquivos.Retrata()), "");
    }
    Recomeca(comVersao(soChaves, 2));
    EXPECT_EQ(Converte(), S_OK) << "the layout of version 2";
}

// A conversion may have died between making the version file and listing it.
TEST_F(CXVConversaoCasosTeste, ArquivoDeVersaoQueAListaNaoConheceEListado) {
    Instala(XVBaseDourada(5, true));
    ASSERT_EQ(Converte(), S_OK);
    EXPECT_NE(Conteudo(k_pszControle).find(k_pszVersao), std::string::npos);
}

// A copy and the journal count only once they are on the device.
TEST_F(CXVConversaoCasosTeste, CopiasEDiarioChegamAoDispositivoAntesDaTroca) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    falhas.SetFiltro([](const std::string& s) {
        return (s.ends_with(".tra") || s.ends_with(".srk")) && s.find("CRMIDDLEWAREVS") == std::string::npos;
    });
    const CXVGuardaSistemaArquivos guarda(falhas);
    for (const auto& [uiVersao, uiDescargas] : {std::pair{3U, 4U}, {4U, 3U}}) {
        const TArquivos base = XVBaseDourada(uiVersao, true);
        for (XVUInt64 i = 1; i <= uiDescargas; ++i) {
            Recomeca(base);
            falhas.Programa({.eOperacao = EOperacaoArquivo::eSincroniza, .uiNumero = i});
            EXPECT_EQ(Converte(), eHardIO) << uiVersao << i;
            for (const auto& [sNome, sBytes] : base) EXPECT_EQ(Conteudo(sNome), sBytes) << uiVersao << i;
        }
    }
}

TEST_F(CXVConversaoCasosTeste, QuemEsperaPorOutraConversaoNaoConverteDeNovo) {
    Instala(XVBaseDourada(0, true));
    std::unique_ptr<IXVMarcaDiretorio> pOutra;
    const std::string sMarca = XVMarcas::Nome(XV_DF, IXVArqMarcaEnum::Conversao);
    ASSERT_TRUE(m_Arquivos.MarcaDiretorio(PastaDados(), sMarca, pOutra).Ok());
    auto retrato = RetratoSemLogs();
    m_Relogio.SetAoDormir([&](XVUInt64) {
        EXPECT_EQ(m_Arquivos.Diferenca(retrato, RetratoSemLogs()), "") << "it waits";
        pOutra.reset();
        EXPECT_EQ(Converte(), S_OK) << "the other one";
        retrato = RetratoSemLogs();
    });
    EXPECT_EQ(Converte(), S_OK);
    EXPECT_EQ(m_Relogio.GetQuantidadeDormidas(), 1U);
    EXPECT_EQ(m_Arquivos.Diferenca(retrato, RetratoSemLogs()), "");
}

}  // namespace
