// Databases of earlier versions and what the conversion makes of them, whole files at a time.
#include "contract/XVCR_BuffersPS.h"
#include "middleware/BaseMiddleware.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioConversao.h"
#include "tests/middleware/XVRetratoLoja.h"

namespace {

constexpr const char* k_pszVersao = "CRMIDDLEWAREVS.dat";
constexpr const char* k_pszMapa = "CRCHAVEREGTER.dat";
constexpr const char* k_pszDatas = "CRDTHRINTEG.dat";

std::string ArquivoVersao(unsigned uiVersao) {
    return XVArquivoDoTeste({k_pszVersao}, CXVBytes().U16(uiVersao).Zeros(14).Str());
}

class CXVConversaoTeste : public CXVCenarioConversao,
                          public testing::WithParamInterface<std::tuple<unsigned, bool>> {
  protected:
    void EsperaQueALojaResponda(unsigned uiVersao);
};

// One integration with every field and text, and one entry of the key map.
void CXVConversaoTeste::EsperaQueALojaResponda(unsigned uiVersao) {
    CBaseMiddleware loja;
    ASSERT_EQ(loja.Inicializa(&m_Dono), S_OK);
    const XVUInt64 uiDia = XVDma(2023, 6, 5);
    SIntegracaoLida esperada;
    esperada.reg.regDmc = {XVChaveDmc(uiDia, 8)};
    esperada.reg.regDmcIntegracaoOrigem = {XVChaveDmc(uiDia, 207)};
    esperada.reg.regDmcMovimentoOrigem = {XVChaveDmc(0, 77, 2)};
    esperada.reg.regDataHoraInclusao = {XVDataHora(uiDia, 8, 7)};
    esperada.reg.regDataHoraAlteracaoStatus = {XVDataHora(uiDia, 9, 7)};
    esperada.reg.uiChaveIntegracaoSistemaTerceiro = 107;
    esperada.reg.eTipoIntegracao = 3;  // it was 7
    esperada.reg.eStatusIntegracao = 3;
    esperada.reg.eSistemaIntegracao = 8;
    esperada.reg.eTipoTransacao = 2;
    esperada.reg.ulPonteiroFilial = 307;
    esperada.reg.ulPonteiroUsuarioInclusao = 407;
    esperada.reg.ulPonteiroUsuarioCancelamento = 507;
    esperada.reg.cReconsultarIdTerceiros = 1;
    if (uiVersao >= 3) {
        esperada.reg.uiBaseDadosTerceiro = 0x0102030405060707ULL;
        esperada.reg.ucTipoPonteiroAuxiliar = 107;
        esperada.reg.ulPonteiroAuxiliar = 0xA1B2C307U;
    }
    esperada.sJSON = "{\"pedido\":8,\"cliente\":\"Três Irmãos\"}";
    esperada.sMensagem = "Integração aceita 9";
    esperada.sRetorno = "{\"id\":10}";
    EXPECT_EQ(XVRetrataIntegracao(loja, esperada.reg.regDmc), XVDescreveIntegracao(esperada));
    // The record that was of type 10 is found under type 6.
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS chave{};
    const XVUInt64 uiBase = uiVersao < 2 ? 0 : 610;
    ASSERT_EQ(loja.BuscaChaveRegistroTelvoParaTerceiro({9010, {}, uiBase, 6, 8, {}}, &chave), S_OK);
    EXPECT_EQ(chave.regDmcRegistroTelvo.uiValor, XVChaveDmc(0, 80, 2));
    EXPECT_EQ(chave.regDmcOrigemIntegracao.uiValor, uiVersao < 2 ? 0 : XVChaveDmc(uiDia, 11));
}

TEST_P(CXVConversaoTeste, CadaCampoChegaAoSeuLugarEALojaResponde) {
    const auto [uiVersao, bCabecalho] = GetParam();
    const TArquivos antes = XVBaseDourada(uiVersao, bCabecalho);
    const TArquivos esperados = XVDadosConvertidos(uiVersao);
    ASSERT_EQ(esperados.size(), 6U);
    Instala(antes);
    ASSERT_EQ(Converte(), S_OK);
    for (const auto& [sNome, sBytes] : antes) {
        const auto it = esperados.find(sNome);
        const bool bIntocado = uiVersao == 4 && sNome.starts_with("CRINTEGMID");
        EXPECT_EQ(Conteudo(sNome),
                  it == esperados.end() || bIntocado ? sBytes : Conteudo(sNome).substr(0, 240) + it->second)
            << sNome;
    }
    EXPECT_EQ(Dados(Conteudo(k_pszVersao)), esperados.at(k_pszVersao));
    if (uiVersao < 4) {
        EXPECT_EQ(Conteudo(k_apszDias[1]),
                  XVArquivoDoTeste({k_apszDias[1], 0, 4, 65535, 99}, esperados.at(k_apszDias[1])))
            << "stamped with the last step and the conversion's user";
    }
    ConfereSemRestos();
    const auto retrato = RetratoSemLogs();
    ASSERT_EQ(Converte(), S_OK);
    EXPECT_EQ(m_Arquivos.Diferenca(retrato, RetratoSemLogs()), "") << "a second run has nothing to do";
    EsperaQueALojaResponda(uiVersao);
}

INSTANTIATE_TEST_SUITE_P(Versoes, CXVConversaoTeste,
                         testing::Combine(testing::Range(0U, 5U), testing::Bool()));

class CXVConversaoCasosTeste : public CXVCenarioConversao {
  protected:
    // Empty and missing files, foreign names beside the group's, leftovers of a step that was given up.
    static TArquivos ComSujeira(unsigned uiVersao) {
        TArquivos arquivos = XVBaseDourada(uiVersao, true);
        arquivos["CRINTEGMID20230701.dat"] = "";
        arquivos["CRINTEGMID20230702.dat"] = XVArquivoDoTeste({"CRINTEGMID20230702.dat", 3, 1, 5, 6}, "");
        arquivos.erase(k_pszDatas);
        arquivos["CRINTEGMIDJSONX1.dat"] = "nenhum membro";
        arquivos["CRINTEGMID2023060.dat"] = "curto";
        arquivos["CRINTEGMID20230603.datx"] = "extensao";
        arquivos["CRINTEGMIDMENS0101.dat"] = "letras";
        arquivos["CRINTEGMID20230605.tra"] = "metade de uma copia";
        arquivos["CRCHAVEREGTER.tra"] = "";
        arquivos["CRINTEGMID20230606.cab"] = "copia alheia";
        return arquivos;
    }
};

TEST_F(CXVConversaoCasosTeste, ArquivosVaziosAusentesAlheiosESobrasNaoImpedem) {
    const auto vazio = m_Arquivos.Retrata();
    for (unsigned uiVersao = 0; uiVersao < 5; ++uiVersao) {
        TArquivos restantes = ComSujeira(uiVersao);
        m_Arquivos.Restaura(vazio);
        Instala(restantes);
        ASSERT_EQ(Converte(), S_OK) << uiVersao;
        for (const auto& [sNome, sDados] : XVDadosConvertidos(uiVersao)) {
            EXPECT_EQ(Dados(Conteudo(sNome)), sNome == k_pszDatas ? "<ausente>" : sDados)
                << uiVersao << sNome;
            restantes.erase(sNome);
        }
        for (const auto& [sNome, sBytes] : restantes)
            EXPECT_TRUE(sNome.ends_with(".tra") || Conteudo(sNome) == sBytes) << uiVersao << sNome;
        if (uiVersao < 4) ConfereSemRestos();
    }
}

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

TEST_F(CXVConversaoCasosTeste, VersaoPosteriorDanificadaOuSumidaNadaMuda) {
    TArquivos base = XVBaseDourada(4, true);
    const std::string sVersao = ArquivoVersao(4);
    std::string sErrado = sVersao;
    sErrado[130] = 'x';
    constexpr auto k_hrPosterior = E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA;
    constexpr auto k_hrTamanho = E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA;
    const std::pair<std::string, HRESULT> aCasos[] = {
        {ArquivoVersao(6), k_hrPosterior},           {ArquivoVersao(65535), k_hrPosterior},
        {sVersao.substr(0, 250), k_hrTamanho},       {CXVBytes().U16(4).Zeros(13), k_hrTamanho},
        {sErrado, E_XVCR_CRC_CABECALHO_NAO_CONFERE}, {"", k_hrTamanho}};
    for (const auto& [sArquivo, hr] : aCasos) {
        const CXVCapturaTrace captura;
        base[k_pszVersao] = sArquivo;
        Instala(base);
        const auto retrato = m_Arquivos.Retrata();
        EXPECT_EQ(Converte(), hr);
        EXPECT_EQ(m_Arquivos.Diferenca(retrato, m_Arquivos.Retrata()), "");
        ASSERT_FALSE(captura.GetFalhas().empty());
        const SFalhaCapturada& rUltima = captura.GetFalhas().back();
        if (hr == k_hrPosterior) {
            EXPECT_EQ(captura.GetFalhas().size(), 1U) << "a later version leaves no trace of the conversion";
            EXPECT_EQ(rUltima.sMensagem,
                      "Arquivo recusado: " + PastaDados(k_pszVersao) + "\thr = 0X810809C7");
        } else {
            EXPECT_EQ(rUltima.sExpressao,
                      "CXVDataBaseUtil::LeSingleReg(this, XV_DF, &regVersao, \"CRMIDDLEWAREVS.dat\")");
            EXPECT_EQ(rUltima.sFuncao, "CBaseMiddleware::ExecutaConversao");
        }
    }
}

TEST_F(CXVConversaoCasosTeste, ArquivoListadoQueSumiuERecusadoPeloNomeNaAbertura) {
    Instala(XVBaseDourada(4, true));
    ASSERT_EQ(Converte(), S_OK);
    for (const char* pszNome : {k_pszMapa, k_pszDatas}) {
        const std::string sBytes = Conteudo(pszNome);
        ASSERT_TRUE(m_Arquivos.Apaga(PastaDados(pszNome)).Ok());
        CBaseMiddleware loja;
        EXPECT_EQ(loja.Inicializa(&m_Dono), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS) << pszNome;
        EXPECT_TRUE(XVTextoNoLog(m_Captura, pszNome)) << pszNome;
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
        m_Arquivos.CriaArquivo(PastaDados(pszNome), sBytes);
    }
    CBaseMiddleware loja;
    EXPECT_EQ(loja.Inicializa(&m_Dono), S_OK);
}

TEST_F(CXVConversaoCasosTeste, ArquivoDanificadoEncerraOPassoPeloNomeETudoFicaComoEstava) {
    TArquivos base = XVBaseDourada(2, true);
    const std::string sDia = k_apszDias[1];
    const std::string sBom = base[sDia];
    base[sDia] = sBom.substr(0, sBom.size() - 80);
    Instala(base);
    EXPECT_EQ(Converte(), E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE);
    ASSERT_FALSE(m_Captura.GetFalhas().empty());
    EXPECT_EQ(m_Captura.GetFalhas().back().sExpressao, "ConverteBaseV03()");
    EXPECT_EQ(m_Captura.GetFalhas().back().sFuncao, "CBaseMiddleware::ExecutaConversao");
    for (const auto& [sNome, sBytes] : base) EXPECT_EQ(Conteudo(sNome), sBytes) << sNome;
    EXPECT_EQ(Conteudo("CRINTEGMID20230605.tra"), "<ausente>") << "the copies made until then are gone";
    m_Arquivos.CriaArquivo(PastaDados(sDia), sBom.substr(240).substr(0, 79));
    EXPECT_EQ(Converte(), E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA);
    m_Arquivos.CriaArquivo(PastaDados(sDia), sBom);
    EXPECT_EQ(Converte(), S_OK);
    EXPECT_EQ(Dados(Conteudo(sDia)), XVDadosConvertidos(2)[sDia]);
    ConfereSemRestos();
}

TEST_F(CXVConversaoCasosTeste, DiretorioNovoAbreNaVersaoCincoSemSobras) {
    CBaseMiddleware loja;
    ASSERT_EQ(loja.Inicializa(&m_Dono), S_OK);
    EXPECT_EQ(Dados(Conteudo(k_pszVersao)), CXVBytes().U16(5).Zeros(14).Str());
    ASSERT_EQ(loja.Finaliza(), S_OK);
    ConfereSemRestos();
    std::vector<std::string> nomes;
    for (const auto& it : m_Arquivos.Retrata())
        if (!it.first.ends_with('/')) nomes.push_back(it.first.substr(it.first.find_last_of('/') + 1));
    EXPECT_EQ(nomes, (std::vector<std::string>{k_pszVersao, "XVDATABASE_FILE_CTRL.dat"}));
}

// A conversion that died between making the version file and listing it.
TEST_F(CXVConversaoCasosTeste, ArquivoDeVersaoQueAListaNaoConheceEListado) {
    Instala(XVBaseDourada(5, true));
    ASSERT_EQ(Converte(), S_OK);
    EXPECT_NE(Conteudo("XVDATABASE_FILE_CTRL.dat").find(k_pszVersao), std::string::npos);
}

// A copy and the journal count only once they are on the device.
TEST_F(CXVConversaoCasosTeste, CopiasEDiarioChegamAoDispositivoAntesDaTroca) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    for (const unsigned uiVersao : {3U, 4U}) {
        const TArquivos base = XVBaseDourada(uiVersao, true);
        for (const auto& [sFim, uiEsperadas] : {std::pair{".tra", uiVersao == 3 ? 3U : 2U}, {".srk", 1U}}) {
            falhas.SetFiltro([sFinal = std::string(sFim)](const std::string& s) {
                return s.ends_with(sFinal) && s.find("CRMIDDLEWAREVS") == std::string::npos;
            });
            for (XVUInt64 i = 1; i <= uiEsperadas; ++i) {
                Instala(base);
                falhas.Programa({.eOperacao = EOperacaoArquivo::eSincroniza, .uiNumero = i});
                EXPECT_EQ(Converte(), eHardIO) << uiVersao << sFim << i;
                for (const auto& [sNome, sBytes] : base)
                    EXPECT_EQ(Conteudo(sNome), sBytes) << uiVersao << sFim << i << sNome;
            }
        }
        falhas.Limpa();
        falhas.SetFiltro(nullptr);
        EXPECT_EQ(Converte(), S_OK);
        for (const auto& [sNome, sDados] : XVDadosConvertidos(uiVersao))
            EXPECT_EQ(Dados(Conteudo(sNome)), sDados) << uiVersao << sNome;
        ConfereSemRestos();
    }
}

// What the observer was told, as one line.
class CXVObservador final : public IXVObservadorConversao {
  public:
    void OnInicioPasso(XVUShort usPasso, std::size_t uiQtdArquivos) override {
        sDito += "[" + std::to_string(usPasso) + ":" + std::to_string(uiQtdArquivos);
    }
    void OnArquivoConvertido(XVUShort, const std::string& sNome, XVUInt64 uiQtdRegistros) override {
        sDito += " " + sNome + "=" + std::to_string(uiQtdRegistros);
    }
    void OnFimPasso(XVUShort) override { sDito += "]"; }
    std::string sDito;
};

TEST_F(CXVConversaoCasosTeste, SimulacaoNadaMudaEDizOQueAConversaoFaz) {
    Instala(ComSujeira(3));
    const auto retrato = m_Arquivos.Retrata();
    CXVConversaoMiddleware conversao(nullptr);
    ASSERT_EQ(conversao.Inicializa(&m_Dono), S_OK);
    XVUShort usVersao = 9;
    std::vector<SPassoPrevisto> passos;
    ASSERT_EQ(conversao.Simula(&usVersao, &passos), S_OK);
    EXPECT_EQ(m_Arquivos.Diferenca(retrato, m_Arquivos.Retrata()), "");
    EXPECT_EQ(usVersao, 3U);
    std::string sPrevisto;
    for (const auto& passo : passos)
        for (const auto& arquivo : passo.listaArquivos)
            sPrevisto += std::to_string(passo.usPasso) + " " + arquivo.sNomeArquivo + " " +
                         std::to_string(arquivo.uiTamanho) + ";";
    EXPECT_EQ(sPrevisto,
              "4 CRINTEGMID20230605.dat 880;4 CRINTEGMID20230606.dat 616;4 CRINTEGMID20230607.dat 616;"
              "5 CRCHAVEREGTER.dat 960;");
    CXVObservador observador;
    ASSERT_EQ(Converte(&observador), S_OK);
    EXPECT_EQ(observador.sDito,
              "[4:5 CRINTEGMID20230605.dat=10 CRINTEGMID20230606.dat=7 CRINTEGMID20230607.dat=7]"
              "[5:2 CRCHAVEREGTER.dat=24]");
    ASSERT_EQ(conversao.Simula(&usVersao, &passos), S_OK);
    EXPECT_EQ(usVersao, 5U);
    EXPECT_TRUE(passos.empty());
}

TEST(CXVConversaoJuntosTeste, TresJuntasConvertemUmaVez) {
    const CXVDiretorioTeste diretorio;
    CXVRegistryFalso registry;
    registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", diretorio.GetCaminho());
    const CXVGuardaRegistry guarda(registry);
    ASSERT_TRUE(XVPlataforma::SistemaArquivosNativo().CriaDiretorio(diretorio.Junta("MATRIZ/DF")).Ok());
    for (const auto& [sNome, sBytes] : XVBaseDourada(0, true))
        diretorio.CriaArquivo("MATRIZ/DF/" + sNome, sBytes);
    XVEmThreads(3, [&](unsigned) {
        const CXVCapturaTrace captura;
        const CXVDonoFixo dono("MATRIZ");
        CXVConversaoMiddleware conversao(nullptr);
        EXPECT_EQ(conversao.Inicializa(&dono), S_OK);
        EXPECT_EQ(conversao.ExecutaConversao(), S_OK);
    });
    for (const auto& [sNome, sDados] : XVDadosConvertidos(0))
        EXPECT_EQ(diretorio.LeConteudo("MATRIZ/DF/" + sNome).value_or("").substr(240), sDados) << sNome;
}

}  // namespace
