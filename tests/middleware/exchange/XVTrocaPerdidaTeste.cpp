// Exchanges that took place and could not be recorded: each can be found in the error log.
#include <cstdio>
#include <new>

#include "suite/providers/XVProvedorAdaptador.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVTextoNoLog.h"
#include "tests/middleware/XVAlocacoes.h"
#include "tests/middleware/exchange/XVCenarioTroca.h"

namespace {

class CXVTrocaPerdidaTeste : public CXVCenarioTroca {
  protected:
    CXVTrocaPerdidaTeste() : m_Guarda((m_pLoja.reset(), m_Falhas)) { m_pLoja = Abre(); }
    ~CXVTrocaPerdidaTeste() override {
        m_Falhas.Limpa();
        m_pLoja.reset();
    }
    void RecusaGravacoes() {
        m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava, .bPermanente = true});
    }
    // And the store is opened anew.
    void AceitaGravacoes() {
        m_Falhas.Limpa();
        m_pLoja.reset();
        m_pLoja = Abre();
    }

    CXVSistemaArquivosFalhas m_Falhas{m_Arquivos};
    CXVGuardaSistemaArquivos m_Guarda;
};

TEST_F(CXVTrocaPerdidaTeste, GravacaoQueFalhaDepoisDaTrocaFicaNoLogDeErros) {
    const struct {
        XVUInt eTransacao;
        const char* pszOperacao;
        XVUInt eStatus;
    } aCasos[] = {{eXVSMiddleware_Inclusao, "EnviaJson", eXVSMiddleware_Sucesso},
                  {eXVSMiddleware_Alteracao, "BuscaDados", eXVSMiddleware_Sucesso},
                  {eXVSMiddleware_Exclusao, "ExcluiDados", eXVSMiddleware_Cancelado}};
    m_rGravador.listaItens = {Item()};
    std::size_t uiLinhas = 0;
    for (const auto& rCaso : aCasos) {
        SCOPED_TRACE(rCaso.pszOperacao);
        m_rGravador.mapDados[rCaso.pszOperacao] = Resposta(400, rCaso.eStatus);
        m_rGravador.mapDados[rCaso.pszOperacao].fnDepois = [this] { RecusaGravacoes(); };
        REG_XVDMC regDmc;
        if (rCaso.eTransacao != eXVSMiddleware_Inclusao) regDmc = GravaAnterior(71, eXVSMiddleware_Enviado);
        const std::string sDmc = regDmc.ToString();
        const HRESULT hr = Troca(rCaso.eTransacao, &regDmc);
        EXPECT_TRUE(FAILED(hr));
        EXPECT_EQ(regDmc.ToString(), sDmc);
        EXPECT_EQ(Chamadas("Posterior"), 0U);
        ASSERT_EQ(LinhasPerdidas().size(), ++uiLinhas);
        char szFim[16];
        std::snprintf(szFim, sizeof(szFim), "0x%08X", static_cast<unsigned>(hr));
        EXPECT_EQ(LinhasPerdidas().back(),
                  "Troca com o sistema externo feita e não gravada: sistema 16, chave 401, origem " +
                      std::string(k_pszMovimento) + ", integração " + sDmc + ", transação " +
                      std::to_string(rCaso.eTransacao) + ", situação " + std::to_string(rCaso.eStatus) +
                      ", resultado " + szFim);
        AceitaGravacoes();
    }
}

TEST_F(CXVTrocaPerdidaTeste, ItemAnteriorFicaGravadoEOSeguinteNaoETrocado) {
    m_rGravador.listaItens = {Item("1"), Item("2"), Item("3")};
    m_rGravador.mapDados["EnviaJson"].fnDepois = [this] {
        if (Chamadas("EnviaJson") == 2) RecusaGravacoes();
    };
    REG_XVDMC regDmc;
    EXPECT_TRUE(FAILED(Troca(eXVSMiddleware_Inclusao, &regDmc)));
    AceitaGravacoes();
    EXPECT_EQ(Chamadas("EnviaJson"), 2U);
    EXPECT_EQ(LinhasPerdidas().size(), 1U);
    EXPECT_EQ(regDmc.uiValor, XVChaveDmc(k_uiHoje, 1)) << "the one that is recorded";
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).sJSON, "1");
}

TEST_F(CXVTrocaPerdidaTeste, RespostaQueNaoSeAproveitaDizAChaveQueTrouxe) {
    const struct {
        std::int32_t iResultado;
        bool bMuda;
        XVUInt eStatus;
        HRESULT hrEsperado;
        const char* pszLoja;      // what the store tells; null: nothing
        const char* pszResposta;  // what is told of the answer; null: nothing
    } aCasos[] = {
        {static_cast<std::int32_t>(0x800705B4U), false, 0, XVHResult(0x800705B4U),
         "talvez feita e não gravada: sistema 16, chave 0, origem 20240301-16-2", nullptr},
        {static_cast<std::int32_t>(0x800705B4U), true, 2, XVHResult(0x800705B4U), "resultado 0x800705B4",
         "não aproveitada (falha com chave): chave 401, origem 20240301-16-2, situação 2"},
        {0, true, 6, CXVProvedorAdaptador::k_hrRespostaInvalida, "resultado 0x8000FFFF",
         "não aproveitada (situação inválida): chave 401, origem 20240301-16-2, situação 6"},
        {static_cast<std::int32_t>(E_NOTIMPL), false, 0, E_NOTIMPL, nullptr, nullptr}};
    m_rGravador.listaItens = {Item(), Item()};
    for (const auto& rCaso : aCasos) {
        SCOPED_TRACE(testing::Message() << rCaso.hrEsperado << " " << rCaso.bMuda);
        const CXVCapturaTrace captura;
        m_rGravador.listaChamadas.clear();
        m_rGravador.mapDados["EnviaJson"] = Resposta(400, rCaso.eStatus);
        m_rGravador.mapDados["EnviaJson"].bMuda = rCaso.bMuda;
        m_rGravador.mapDados["EnviaJson"].iResultado = rCaso.iResultado;
        REG_XVDMC regDmc;
        EXPECT_EQ(Troca(eXVSMiddleware_Inclusao, &regDmc), rCaso.hrEsperado);
        EXPECT_EQ(Chamadas("EnviaJson"), 1U);
        const auto espera = [&](const char* pszInicio, const char* pszTexto) {
            EXPECT_EQ(XVTextoNoLog(captura, pszInicio), pszTexto != nullptr);
            EXPECT_TRUE(pszTexto == nullptr || XVTextoNoLog(captura, pszTexto)) << pszTexto;
        };
        espera("Troca com o sistema externo", rCaso.pszLoja);
        espera("Resposta do provedor", rCaso.pszResposta);
    }
    EXPECT_TRUE(XVBusca(*m_pLoja).empty());
}

// Every allocation between the library's answer and the end of the call fails once: the exchange is recorded
// or told, whichever it is.
TEST_F(CXVTrocaPerdidaTeste, FaltaDeMemoriaDepoisDaTrocaNaoACala) {
    for (long iFalha = 1;; ++iFalha) {
        SCOPED_TRACE(iFalha);
        CXVSistemaArquivosMemoria arquivos;
        const CXVGuardaSistemaArquivos guarda(arquivos);
        ASSERT_TRUE(arquivos.CriaDiretorio(PastaDados()).Ok());
        const TLoja pLoja = Abre();
        const CXVCapturaTrace captura;
        m_rGravador.listaItens = {Item()};
        m_rGravador.mapDados["EnviaJson"] = Resposta(400, eXVSMiddleware_Sucesso);
        m_rGravador.mapDados["EnviaJson"].sJSON.assign(100, 'j');
        m_rGravador.listaChamadas.reserve(m_rGravador.listaChamadas.size() + 8);
        m_rGravador.mapDados["EnviaJson"].fnDepois = [iFalha] { XVAlocacoes::Recusa(iFalha); };
        REG_XVDMC regDmc;
        HRESULT hr = E_OUTOFMEMORY;
        try {
            hr = pLoja->GravaIntegracaoInstantanea(&regDmc, Pedido(eXVSMiddleware_Inclusao));
        } catch (const std::bad_alloc&) {
        }
        const bool bOcorreu = XVAlocacoes::FoiRecusada();
        XVAlocacoes::Recusa(0);
        ASSERT_EQ(Chamadas("EnviaJson"), static_cast<unsigned>(iFalha)) << "one exchange a round";
        if (SUCCEEDED(hr) || !regDmc.EhNulo())
            EXPECT_EQ(XVLe(*pLoja, regDmc).reg.uiChaveIntegracaoSistemaTerceiro, 401U);
        else
            EXPECT_TRUE(XVTextoNoLog(captura, "chave 401, origem 20240301-16-2"));
        if (!bOcorreu) {
            EXPECT_EQ(hr, S_OK);
            EXPECT_GT(iFalha, 20) << "allocations were really met";
            break;
        }
    }
}

}  // namespace
