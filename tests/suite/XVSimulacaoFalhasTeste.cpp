// The simulated system on a failing disk and with hostile documents: an error, nothing lost, nothing held.
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosMorte.h"
#include "tests/suite/XVCenarioSimulacao.h"

namespace {

class SimulacaoFalhasTeste : public CXVCenarioSimulacao {
  protected:
    HRESULT Envia(XVUInt64* puiChave = nullptr) const {
        TDados dados = Dados();
        const HRESULT hr = CXVCenarioSimulacao::Envia(dados);
        if (puiChave != nullptr) *puiChave = dados.uiChaveIntegracaoSistemaTerceiro;
        return hr;
    }
};

TEST_F(SimulacaoFalhasTeste, CadaFalhaDoDiscoVoltaEODocumentoAnteriorFica) {
    ASSERT_EQ(Envia(), S_OK);
    CriaSimulacao("regras/1.regra", "Operacao: BuscaDados\n");
    const auto retrato = m_Arquivos.Retrata();
    const std::string sDocumento = LeSimulacao("1.doc");
    bool bHouveFalha = true;
    for (XVUInt64 uiFalha = 1; bHouveFalha; ++uiFalha) {
        ASSERT_LT(uiFalha, 200U);
        m_Arquivos.Restaura(retrato);
        const CXVCapturaTrace captura;
        TDados exclusao = Dados();
        HRESULT hrEnvio = S_OK;
        HRESULT hrExclusao = S_OK;
        {
            CXVSistemaArquivosFalhas falhas(m_Arquivos);
            const CXVGuardaSistemaArquivos guarda(falhas);
            falhas.Programa({.eOperacao = std::nullopt, .uiNumero = uiFalha, .bGravaMetade = true});
            hrEnvio = Envia();
            hrExclusao = Exclui(exclusao);
            bHouveFalha = falhas.GetFalhasOcorridas() != 0;
        }
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U) << uiFalha;
        for (const auto& [sCaminho, arquivo] : m_Arquivos.Retrata())
            EXPECT_FALSE(sCaminho.ends_with(".novo")) << "a temporary file stayed: " << uiFalha;
        EXPECT_EQ(FAILED(hrEnvio) || FAILED(hrExclusao), bHouveFalha) << uiFalha;
        EXPECT_EQ(captura.GetFalhas().empty(), !bHouveFalha) << uiFalha;
        EXPECT_EQ(LeSimulacao("1.doc") == sDocumento, SUCCEEDED(hrEnvio) || FAILED(hrExclusao)) << uiFalha;
        XVUInt64 uiChave = 0;
        EXPECT_EQ(Envia(&uiChave), S_OK) << "the next call works: " << uiFalha;
        EXPECT_GT(uiChave, SUCCEEDED(hrEnvio) ? 2U : 1U) << uiFalha;
    }
}

TEST_F(SimulacaoFalhasTeste, SobraDeUmProcessoMortoNaoEntraNoDocumento) {
    ASSERT_EQ(Envia(), S_OK);
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    falhas.SetFiltro([this](const std::string& sCaminho) {
        const bool bNovo = sCaminho.ends_with(".novo");
        if (bNovo && m_Arquivos.Existe(sCaminho) == EExistencia::eAusente)
            m_Arquivos.CriaArquivo(sCaminho, std::string(1000, 'x'));
        return bNovo;
    });
    ASSERT_EQ(Envia(), S_OK);
    EXPECT_EQ(falhas.GetQuantidade(EOperacaoArquivo::eSincroniza), 2U) << "counter and document";
    EXPECT_EQ(LeSimulacao("contador.doc"), "Ultima: 2\n\n");
    EXPECT_TRUE(LeSimulacao("2.doc").ends_with("\"aceito\"}"));
}

TEST_F(SimulacaoFalhasTeste, DocumentoQueNaoSePodeOlharNaoEPulado) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    falhas.SetFiltro([](const std::string& sCaminho) { return sCaminho.ends_with("1.doc"); });
    falhas.Programa({.eOperacao = EOperacaoArquivo::eConsulta});
    const CXVCapturaTrace captura;
    EXPECT_EQ(Envia(), eAccessDenied);
    EXPECT_EQ(LeSimulacao("contador.doc"), "<ausente>");
}

TEST_F(SimulacaoFalhasTeste, ProcessoMortoEntreDoisPassosNaoDeixaMeioDocumento) {
    bool bMorreu = true;
    for (XVUInt64 uiMorte = 1; bMorreu; ++uiMorte) {
        ASSERT_LT(uiMorte, 200U);
        m_Arquivos.Restaura({});
        ASSERT_TRUE(m_Arquivos.CriaDiretorio(PastaDados()).Ok());
        CXVSistemaArquivosMorte morte(m_Arquivos, EContagem::eAlteracoes);
        {
            const CXVGuardaSistemaArquivos guarda(morte);
            morte.Nasce(uiMorte, true);
            bMorreu = morte.Executa([&] { EXPECT_EQ(Envia(), S_OK); });
        }
        const std::string sDocumento = LeSimulacao("1.doc");
        EXPECT_TRUE(sDocumento == "<ausente>" || sDocumento.ends_with("\"aceito\"}")) << uiMorte;
        XVUInt64 uiChave = 0;
        ASSERT_EQ(Envia(&uiChave), S_OK) << uiMorte;
        EXPECT_TRUE(uiChave == 1 || uiChave == 2) << uiMorte;
    }
}

TEST_F(SimulacaoFalhasTeste, DocumentoHostilERecusadoEFicaComoEsta) {
    struct SCaso {
        const char* pszNome;
        std::string sConteudo;
    };
    for (const SCaso& rCaso :
         {SCaso{"regras/1.regra", "Operacao: Tudo\n"},
          SCaso{"regras/1.regra", std::string("Operacao\0: EnviaJson", 20)},
          SCaso{"contador.doc", "Ultima: muitas\n"}, SCaso{"contador.doc", "Outra: 1\n"}}) {
        m_Arquivos.Restaura({});
        CriaSimulacao(rCaso.pszNome, rCaso.sConteudo);
        const CXVCapturaTrace captura;
        EXPECT_EQ(Envia(), CXVPastaSimulacao::k_hrDocumentoInvalido) << rCaso.pszNome;
        EXPECT_EQ(LeSimulacao(rCaso.pszNome), rCaso.sConteudo);
        EXPECT_EQ(LeSimulacao("1.doc"), "<ausente>");
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    }
    for (const char* pszConteudo : {"Status: 9\n", "Enviado: 4\n\nabc", "Enviado: -1\n\n", "Nada: 1\n"}) {
        m_Arquivos.Restaura({});
        CriaSimulacao("5.doc", pszConteudo);
        TDados dados = Dados(1, 5);
        const CXVCapturaTrace captura;
        EXPECT_EQ(Exclui(dados), CXVPastaSimulacao::k_hrDocumentoInvalido);
        EXPECT_EQ(LeSimulacao("5.doc"), pszConteudo);
        EXPECT_TRUE(dados == Dados(1, 5));
    }
}

TEST_F(SimulacaoFalhasTeste, DocumentoPresoPorOutroEEsperadoUmTempoLimitado) {
    ASSERT_EQ(Envia(), S_OK);
    std::unique_ptr<IXVArquivo> pPreso;
    for (const bool bSolta : {true, false}) {
        ASSERT_TRUE(m_Arquivos
                        .Abre(m_Arquivos.Junta(PastaDados("simulacao"), "1.doc"),
                              {EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaTudo}, pPreso)
                        .Ok());
        m_Relogio.SetAoDormir([&, bSolta](XVUInt64 uiDormidas) {
            if (bSolta && uiDormidas == 3) pPreso.reset();
        });
        TDados dados = Dados(1, 1);
        EXPECT_EQ(Busca(dados), bSolta ? S_OK : eSharingViolation);
    }
}

}  // namespace
