// Databases of earlier versions and what the conversion makes of them.

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "middleware/BaseMiddleware.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioConversao.h"

namespace {

class CXVConversaoTeste : public CXVCenarioConversao,
                          public testing::WithParamInterface<std::tuple<unsigned, bool>> {};

TEST_P(CXVConversaoTeste, CadaVersaoComESemCabecalhosTerminaNaCincoComSeusRegistros) {
    const auto [uiVersao, bCabecalho] = GetParam();
    const CXVFabricaBases fabrica(uiVersao, bCabecalho);
    const TArquivos antes = fabrica.Cria();
    Instala(antes);
    ASSERT_EQ(Converte(), S_OK);
    for (const auto& [sNome, sDados] : fabrica.DadosConvertidos()) {
        // A member that no step touches keeps its old form.
        const bool bIntocado = uiVersao == 4 && sNome.starts_with("CRINTEGMID");
        EXPECT_EQ(bIntocado && !bCabecalho ? Conteudo(sNome) : Dados(Conteudo(sNome)), sDados) << sNome;
    }
    for (const char* pszNome : {"CRINDEXINTEG.dat", "CRINTEGMIDJSON20230501.dat",
                                "CRINTEGMIDMENS20230501.dat", "CRINTEGMIDJSONRET20230501.dat"})
        EXPECT_EQ(Conteudo(pszNome), antes.at(pszNome)) << "needs no conversion: " << pszNome;
    if (uiVersao < 4) {
        const std::string sMembro = CXVFabricaBases::NomeMembro(1);
        EXPECT_EQ(Conteudo(sMembro),
                  XVArquivoDoTeste({sMembro, 0, 4, 65535, 99}, fabrica.DadosConvertidos()[sMembro]))
            << "stamped with the last step and the conversion's user";
    }
    ConfereSemRestos();
    const auto retrato = RetratoSemLogs();
    ASSERT_EQ(Converte(), S_OK);
    EXPECT_EQ(m_Arquivos.Diferenca(retrato, RetratoSemLogs()), "") << "a second run has nothing to do";
}

INSTANTIATE_TEST_SUITE_P(Versoes, CXVConversaoTeste,
                         testing::Combine(testing::Range(0U, 5U), testing::Bool()));

using CXVConversaoCasosTeste = CXVCenarioConversao;

TEST_F(CXVConversaoCasosTeste, ArquivosVaziosAusentesAlheiosESobrasNaoImpedem) {
    const auto vazio = m_Arquivos.Retrata();
    for (unsigned uiVersao = 0; uiVersao < 5; ++uiVersao) {
        const TArquivos antes = CXVFabricaBases(uiVersao, true).CriaComSujeira();
        m_Arquivos.Restaura(vazio);
        Instala(antes);
        ASSERT_EQ(Converte(), S_OK) << uiVersao;
        const TArquivos esperados = CXVFabricaBases(uiVersao, true).DadosConvertidos(2, 3);
        for (const auto& [sNome, sDados] : esperados)
            EXPECT_EQ(Dados(Conteudo(sNome)), sNome == "CRDTHRINTEG.dat" ? "<ausente>" : sDados)
                << uiVersao << sNome;
        for (const char* pszNome :
             {"CRINTEGMID20230601.dat", "CRINTEGMID20230602.dat", "CRINTEGMIDJSONX1.dat",
              "CRINTEGMID2023060.dat", "CRINTEGMID20230603.datx", "CRINTEGMIDMENS0101.dat",
              "CRINTEGMID20230502.cab"})
            EXPECT_EQ(Conteudo(pszNome), antes.at(pszNome)) << uiVersao << pszNome;
        if (uiVersao < 4) ConfereSemRestos();
    }
}

TEST_F(CXVConversaoCasosTeste, VersaoPosteriorDanificadaOuSumidaNadaMuda) {
    TArquivos base = CXVFabricaBases(4, true).Cria();
    const std::string sVersao = base["CRMIDDLEWAREVS.dat"];
    const auto recusa = [&](const std::string& sArquivo) {
        base["CRMIDDLEWAREVS.dat"] = sArquivo;
        Instala(base);
        const auto retrato = m_Arquivos.Retrata();
        const HRESULT hr = Converte();
        EXPECT_EQ(m_Arquivos.Diferenca(retrato, m_Arquivos.Retrata()), "");
        return hr;
    };
    EXPECT_EQ(recusa(XVArquivoDoTeste({"CRMIDDLEWAREVS.dat"}, CXVBytes().U16(6).Zeros(14).Str())),
              E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA);
    ASSERT_EQ(m_Captura.GetFalhas().size(), 1U) << "a later version leaves no trace of the conversion";
    EXPECT_EQ(m_Captura.GetFalhas()[0].sMensagem,
              "Arquivo recusado: " + PastaDados("CRMIDDLEWAREVS.dat") + "\thr = 0X810809C7");
    EXPECT_EQ(recusa(XVArquivoDoTeste({"CRMIDDLEWAREVS.dat"}, CXVBytes().U16(65535).Zeros(14).Str())),
              E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA);
    std::string sErrado = sVersao;
    sErrado[130] = 'x';
    EXPECT_EQ(recusa(sErrado), E_XVCR_CRC_CABECALHO_NAO_CONFERE);
    EXPECT_EQ(recusa(sVersao.substr(0, 250)), E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA);
    EXPECT_EQ(recusa(CXVBytes().U16(4).Zeros(13)), E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA);
    EXPECT_EQ(recusa(""), E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA);
    ASSERT_FALSE(m_Captura.GetFalhas().empty());
    EXPECT_EQ(m_Captura.GetFalhas().back().sExpressao,
              "CXVDataBaseUtil::LeSingleReg(this, XV_DF, &regVersao, \"CRMIDDLEWAREVS.dat\")");
    EXPECT_EQ(m_Captura.GetFalhas().back().sFuncao, "CBaseMiddleware::ExecutaConversao");
}

TEST_F(CXVConversaoCasosTeste, ArquivoListadoQueSumiuERecusadoPeloNomeNaConversaoENaAbertura) {
    Instala(CXVFabricaBases(4, true).Cria());
    ASSERT_EQ(Converte(), S_OK);
    for (const char* pszNome : {"CRCHAVEREGTER.dat", "CRDTHRINTEG.dat"}) {
        const std::string sBytes = Conteudo(pszNome);
        ASSERT_TRUE(m_Arquivos.Apaga(PastaDados(pszNome)).Ok());
        CBaseMiddleware loja;
        EXPECT_EQ(loja.Inicializa(&m_Dono), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS) << pszNome;
        bool bNomeado = false;
        for (const auto& falha : m_Captura.GetFalhas())
            bNomeado |= falha.sMensagem.find(pszNome) != std::string::npos;
        EXPECT_TRUE(bNomeado) << pszNome;
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
        m_Arquivos.CriaArquivo(PastaDados(pszNome), sBytes);
    }
    CBaseMiddleware loja;
    EXPECT_EQ(loja.Inicializa(&m_Dono), S_OK);
}

TEST_F(CXVConversaoCasosTeste, ArquivoDanificadoEncerraOPassoPeloNomeETudoFicaComoEstava) {
    TArquivos base = CXVFabricaBases(2, true).Cria();
    const std::string sMembro = CXVFabricaBases::NomeMembro(1);
    const std::string sBom = base[sMembro];
    base[sMembro] = sBom.substr(0, sBom.size() - 80);
    Instala(base);
    EXPECT_EQ(Converte(), E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE);
    ASSERT_FALSE(m_Captura.GetFalhas().empty());
    EXPECT_EQ(m_Captura.GetFalhas().back().sExpressao, "ConverteBaseV03()");
    EXPECT_EQ(m_Captura.GetFalhas().back().sFuncao, "CBaseMiddleware::ExecutaConversao");
    for (const auto& [sNome, sBytes] : base) EXPECT_EQ(Conteudo(sNome), sBytes) << sNome;
    m_Arquivos.CriaArquivo(PastaDados(sMembro), sBom.substr(240).substr(0, 79));
    EXPECT_EQ(Converte(), E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA);
    m_Arquivos.CriaArquivo(PastaDados(sMembro), sBom);
    EXPECT_EQ(Converte(), S_OK);
    EXPECT_EQ(Dados(Conteudo(sMembro)), CXVFabricaBases(2, true).DadosConvertidos()[sMembro]);
    ConfereSemRestos();
}

TEST_F(CXVConversaoCasosTeste, DiretorioNovoAbreNaVersaoCincoSemSobras) {
    CBaseMiddleware loja;
    ASSERT_EQ(loja.Inicializa(&m_Dono), S_OK);
    EXPECT_EQ(Dados(Conteudo("CRMIDDLEWAREVS.dat")), CXVBytes().U16(5).Zeros(14).Str());
    ASSERT_EQ(loja.Finaliza(), S_OK);
    ConfereSemRestos();
    std::vector<std::string> nomes;
    for (const auto& it : m_Arquivos.Retrata())
        if (!it.first.ends_with('/')) nomes.push_back(it.first.substr(it.first.find_last_of('/') + 1));
    EXPECT_EQ(nomes, (std::vector<std::string>{"CRMIDDLEWAREVS.dat", "XVDATABASE_FILE_CTRL.dat"}));
}

// What the observer was told, as one line.
class CXVObservador final : public IXVObservadorConversao {
  public:
    void OnInicioPasso(XVUShort usPasso, std::size_t uiQtdArquivos) override {
        sDito += "[" + std::to_string(usPasso) + ":" + std::to_string(uiQtdArquivos);
    }
    void OnArquivoConvertido(XVUShort usPasso, const std::string& sNome, XVUInt64 uiQtdRegistros) override {
        sDito += " " + sNome + "=" + std::to_string(uiQtdRegistros);
        feitos.emplace_back(usPasso, sNome);
    }
    void OnFimPasso(XVUShort) override { sDito += "]"; }
    std::string sDito;
    std::vector<std::pair<XVUShort, std::string>> feitos;
};

TEST_F(CXVConversaoCasosTeste, SimulacaoNadaMudaEDizOQueAConversaoFaz) {
    Instala(CXVFabricaBases(3, true).CriaComSujeira());
    const auto retrato = m_Arquivos.Retrata();
    CXVConversaoMiddleware conversao(nullptr);
    ASSERT_EQ(conversao.Inicializa(&m_Dono), S_OK);
    XVUShort usVersao = 9;
    std::vector<SPassoPrevisto> passos;
    ASSERT_EQ(conversao.Simula(&usVersao, &passos), S_OK);
    EXPECT_EQ(m_Arquivos.Diferenca(retrato, m_Arquivos.Retrata()), "");
    EXPECT_EQ(usVersao, 3U);
    CXVObservador observador;
    ASSERT_EQ(Converte(&observador), S_OK);
    std::vector<std::pair<XVUShort, std::string>> previstos;
    for (const auto& passo : passos)
        for (const auto& arquivo : passo.listaArquivos)
            previstos.emplace_back(passo.usPasso, arquivo.sNomeArquivo);
    EXPECT_EQ(previstos, observador.feitos);
    EXPECT_EQ(observador.sDito,
              "[4:4 CRINTEGMID20230501.dat=3 CRINTEGMID20230502.dat=3][5:2 CRCHAVEREGTER.dat=24]");
    ASSERT_EQ(conversao.Simula(&usVersao, &passos), S_OK);
    EXPECT_EQ(usVersao, 5U);
    EXPECT_TRUE(passos.empty());
}

TEST(CXVConversaoJuntosTeste, DuasJuntasConvertemUmaVez) {
    const CXVDiretorioTeste diretorio;
    CXVRegistryFalso registry;
    registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", diretorio.GetCaminho());
    const CXVGuardaRegistry guarda(registry);
    const CXVFabricaBases fabrica(0, true);
    ASSERT_TRUE(XVPlataforma::SistemaArquivosNativo().CriaDiretorio(diretorio.Junta("MATRIZ/DF")).Ok());
    for (const auto& [sNome, sBytes] : fabrica.Cria(12, 20))
        diretorio.CriaArquivo("MATRIZ/DF/" + sNome, sBytes);
    XVEmThreads(3, [&](unsigned) {
        const CXVCapturaTrace captura;
        const CXVDonoFixo dono("MATRIZ");
        CXVConversaoMiddleware conversao(nullptr);
        EXPECT_EQ(conversao.Inicializa(&dono), S_OK);
        EXPECT_EQ(conversao.ExecutaConversao(), S_OK);
    });
    for (const auto& [sNome, sDados] : fabrica.DadosConvertidos(12, 20))
        EXPECT_EQ(diretorio.LeConteudo("MATRIZ/DF/" + sNome).value_or("").substr(240), sDados) << sNome;
}

}  // namespace
