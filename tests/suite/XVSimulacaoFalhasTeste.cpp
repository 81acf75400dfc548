// The simulated system on a failing disk and with hostile documents: an error, nothing lost, nothing held.
#include "tests/harness/XVSistemaArquivosFalhas.h"
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
    XVUInt64 uiFalha = 1;
    for (; bHouveFalha; ++uiFalha) {
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
    EXPECT_GT(uiFalha, 3U) << "the sweep must have met both operations";
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

TEST_F(SimulacaoFalhasTeste, DocumentoHostilOuQueNaoSePodeOlharERecusadoEFicaComoEsta) {
    const std::pair<const char*, std::string> aCasos[] = {
        {"regras/1.regra", "Operacao: Tudo\n"}, {"contador.doc", "Ultima: muitas\n"},
        {"contador.doc", "Outra: 1\n"},         {"5.doc", "Status: 9\n"},
        {"5.doc", "Enviado: 4\n\nabc"},         {"5.doc", "Enviado: -1\n\n"}};
    for (const auto& [pszNome, sConteudo] : aCasos) {
        m_Arquivos.Restaura({});
        CriaSimulacao(pszNome, sConteudo);
        TDados dados = Dados(5);
        const bool bExclui = std::string_view(pszNome) == "5.doc";
        EXPECT_EQ(bExclui ? Exclui(dados) : Envia(), CXVPastaSimulacao::k_hrDocumentoInvalido) << sConteudo;
        EXPECT_EQ(LeSimulacao(pszNome), sConteudo);
        EXPECT_EQ(LeSimulacao("1.doc"), "<ausente>");
        EXPECT_TRUE(dados == Dados(5));
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
    }
    m_Arquivos.Restaura({});
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    falhas.SetFiltro([](const std::string& sCaminho) { return sCaminho.ends_with("1.doc"); });
    falhas.Programa({.eOperacao = EOperacaoArquivo::eConsulta});
    EXPECT_EQ(Envia(), eAccessDenied) << "a key that may be taken is not passed over";
    EXPECT_EQ(LeSimulacao("contador.doc"), "<ausente>");
}

}  // namespace
