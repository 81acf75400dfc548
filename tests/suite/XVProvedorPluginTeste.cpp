// Providers in libraries are believed in nothing: an answer that cannot be right is refused, changes nothing,
// and no buffer of it is lost. What honest ones are handed and answer is tested with the store.
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <future>
#include <thread>

#include "suite/XVMiddlewareFacade.h"
#include "suite/providers/XVProvedorAdaptador.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/suite/XVCenarioSuite.h"
#include "tests/suite/XVIntegracaoCheia.h"

namespace {

constexpr HRESULT k_hrInvalida = CXVProvedorAdaptador::k_hrRespostaInvalida;

// The library: its table, and what it does with each record that it is to fill.
XVProvedorTabela g_tabela;
std::atomic<long> g_lBuffersVivos = 0;
std::atomic<long> g_lDevolvidos = 0;
template <class TReg>
std::function<void(TReg*)> g_fnResponde;

XVProvedorBuffer Buffer(std::string_view sBytes, XVUInt64 uiTamanho, XVUInt bPreenchido) {
    ++g_lBuffersVivos;
    void* pBytes = std::calloc(1, sBytes.size());
    std::memcpy(pBytes, sBytes.data(), sBytes.size());
    return {pBytes, uiTamanho, bPreenchido, 0};
}

class ProvedorPluginTeste : public CXVCenarioSuite {
  protected:
    ProvedorPluginTeste() {
        g_tabela = {};
        g_tabela.ulTamanho = sizeof g_tabela;
        g_tabela.ulVersao = XVPROVEDOR_VERSAO;
        g_tabela.eSistema = Mercos;
        g_tabela.pfnLibera = [](void*, void* pBuffer) {
            std::free(pBuffer);
            --g_lBuffersVivos;
            ++g_lDevolvidos;
        };
        g_tabela.pfnEnviaJson = [](void*, auto, auto p) { return Responde(p, 1); };
        g_tabela.pfnBuscaDadosSistemaTerceiro = [](void*, auto, auto, auto p) { return Responde(p, 0); };
        g_tabela.pfnBuscaIntegracoes = [](void*, auto, auto, auto p) { return Responde(p, 1); };
    }
    ~ProvedorPluginTeste() override {
        EXPECT_EQ(g_lBuffersVivos, 0) << "every buffer went back to the library";
    }

    template <class TReg>
    static std::int32_t Responde(TReg* p, std::int32_t iResultado) {
        g_fnResponde<TReg>(p);
        return iResultado;
    }
    std::unique_ptr<IXVProvedorIntegracao> Cria() {
        const auto pfnObtem = [](std::uint32_t, XVProvedorTabela* pTabela) {
            *pTabela = g_tabela;
            return 1;
        };
        return CXVProvedorAdaptador::Cria(pfnObtem, Mercos, &m_sMotivo);
    }
    // What comes of each answer of the library, which must leave nothing of it behind.
    HRESULT Envia(std::function<void(XVProvedorDados*)> fnResponde) {
        g_fnResponde<XVProvedorDados> = std::move(fnResponde);
        CXVDadosCR_IntegracaoMiddleware dados = XVIntegracaoCheia();
        const HRESULT hr = Cria()->EnviaJson(m_Dono, dados);
        EXPECT_TRUE(dados == XVIntegracaoCheia());
        return hr;
    }
    HRESULT Consulta(std::function<void(XVProvedorStatusConsulta*)> fnResponde) {
        g_fnResponde<XVProvedorStatusConsulta> = std::move(fnResponde);
        const CXVDadosCR_StatusConsultaSistemaTerceiro antes{"antes", "{}", "doc", 2};
        CXVDadosCR_StatusConsultaSistemaTerceiro status = antes;
        const HRESULT hr = Cria()->BuscaDadosSistemaTerceiro(m_Dono, {}, status);
        EXPECT_TRUE(status == antes);
        return hr;
    }
    HRESULT Lista(std::function<void(XVProvedorListaPendencias*)> fnResponde) {
        g_fnResponde<XVProvedorListaPendencias> = std::move(fnResponde);
        std::vector<CXVDadosCR_PendenciaIntegracaoSistema> lista(1);
        const HRESULT hr = Cria()->BuscaIntegracoes(m_Dono, {}, lista);
        EXPECT_EQ(lista.size(), 1U);
        return hr;
    }

    std::string m_sMotivo;
    CXVCapturaTrace m_Captura;
};

TEST_F(ProvedorPluginTeste, TextosImpossiveisSaoRecusados) {
    using TFaz = XVProvedorBuffer (*)();
    const TFaz pfnNul = [] { return Buffer({"a\0b", 3}, 3, 1); };
    const TFaz pfnSemFim = [] { return Buffer("abc", 0x1'0000'0000ULL, 1); };
    const TFaz pfnSemEndereco = [] { return XVProvedorBuffer{nullptr, 5, 1, 0}; };
    const TFaz pfnNaoPreenchido = [] { return Buffer("abc", 3, 0); };
    EXPECT_EQ(Envia([](auto* p) { EXPECT_EQ(p->uiDataHoraAlteracaoStatus, XVDataHoraTeste(22).uiValor); }),
              S_OK)
        << "success by another number";
    for (const TFaz pfnFaz : {pfnNul, pfnSemFim, pfnSemEndereco, pfnNaoPreenchido}) {
        for (const auto pCampo : {&XVProvedorDados::bufRegistroJSON, &XVProvedorDados::bufMensagemIntegracao,
                                  &XVProvedorDados::bufJSONRetornoIntegracao}) {
            const auto fnResponde = [&](XVProvedorDados* p) {
                p->*pCampo = pfnFaz();
                p->uiChaveIntegracaoSistemaTerceiro = 9;
            };
            EXPECT_EQ(Envia(fnResponde), k_hrInvalida);
        }
        EXPECT_EQ(Consulta([&](auto* p) { p->bufMensagemRetorno = pfnFaz(); }), k_hrInvalida);
        EXPECT_EQ(Consulta([&](auto* p) { p->bufJSONRetorno = pfnFaz(); }), k_hrInvalida);
    }
    EXPECT_EQ(Consulta([&](auto* p) { p->bufDocumentoRetorno = pfnSemFim(); }), k_hrInvalida);
}

TEST_F(ProvedorPluginTeste, RespostaAConsultaOuListaImpossivelERecusada) {
    const auto fnSituacao = [](XVProvedorStatusConsulta* p) {
        p->eStatusConsulta = eXVSMiddleware_QuantidadeStatusConsulta;
        p->bufDocumentoRetorno = Buffer("abc", 3, 1);
    };
    EXPECT_EQ(Consulta(fnSituacao), k_hrInvalida);
    EXPECT_EQ(Lista([](auto*) {}), S_OK) << "success by another number";
    const auto lista = [this](std::size_t uiTamanho, XVUInt ulQuantidade, bool bEndereco) {
        return Lista([=](XVProvedorListaPendencias* p) {
            p->ulTamanhoElemento = static_cast<XVUInt>(uiTamanho);
            p->ulQuantidade = ulQuantidade;
            const std::string sElemento(sizeof *p->pLista, '\0');
            if (bEndereco) p->pLista = static_cast<XVProvedorPendencia*>(Buffer(sElemento, 0, 0).pBytes);
        });
    };
    EXPECT_EQ(lista(sizeof(XVProvedorPendencia), 1, false), k_hrInvalida);
    EXPECT_EQ(lista(1, 1, true), k_hrInvalida) << "elements of another size";
    EXPECT_EQ(lista(sizeof(XVProvedorPendencia), 1'000'001, true), k_hrInvalida);
}

// Every kind of call, the entry included. Buffers go back last, so that nothing is at work when they are
// back.
TEST_F(ProvedorPluginTeste, RespostaDepoisDoPrazoVoltaABiblioteca) {
    m_registry.SetNumero(k_sChaveRegistrySuite, "EsperaProvedor", 1);
    g_lDevolvidos = 0;
    std::promise<void> solta;
    const auto prende = [quando = solta.get_future().share()](XVProvedorBuffer* pBuffer) {
        quando.wait();
        *pBuffer = Buffer("tarde", 5, 1);
    };
    EXPECT_EQ(Envia([=](auto* p) { prende(&p->bufMensagemIntegracao); }), E_XVCR_PROVEDOR_SEM_RESPOSTA);
    EXPECT_EQ(Consulta([=](auto* p) { prende(&p->bufDocumentoRetorno); }), E_XVCR_PROVEDOR_SEM_RESPOSTA);
    EXPECT_EQ(Lista([=](auto* p) {
                  static XVProvedorPendencia s_item;
                  prende(&s_item.bufJSON);
                  p->ulTamanhoElemento = sizeof s_item;
                  p->ulQuantidade = 1;
                  p->pLista = static_cast<XVProvedorPendencia*>(
                      Buffer({reinterpret_cast<const char*>(&s_item), sizeof s_item}, 0, 0).pBytes);
              }),
              E_XVCR_PROVEDOR_SEM_RESPOSTA);
    solta.set_value();
    while (g_lDevolvidos != 4) std::this_thread::sleep_for(std::chrono::milliseconds(5));

    static std::promise<void>& s_rNunca = *new std::promise<void>;
    const auto pfnNunca = [](std::uint32_t, XVProvedorTabela*) {
        s_rNunca.get_future().wait();
        return 0;
    };
    EXPECT_EQ(CXVProvedorAdaptador::Cria(pfnNunca, Mercos, &m_sMotivo), nullptr);
    EXPECT_EQ(m_sMotivo, "XVProvedorObtem não respondeu no prazo");
}

TEST_F(ProvedorPluginTeste, OperacaoAusenteESistemaSemProvedorSaoENotimpl) {
    const auto pProvedor = Cria();
    CXVDadosCR_IntegracaoMiddleware dados;
    CXVDadosCR_ParametrosIntegracao parametros;
    EXPECT_EQ(pProvedor->BuscaDados(m_Dono, dados), E_NOTIMPL);
    EXPECT_EQ(pProvedor->RealizaOperacaoPosterior(m_Dono, parametros), E_NOTIMPL);
    EXPECT_EQ(pProvedor->AtualizaParametrosIntegracao(m_Dono, parametros), E_NOTIMPL);

    CXVMiddlewareFacade facade;
    ASSERT_EQ(facade.Inicializa(&m_Dono), S_OK);
    for (const auto& [eSistema, hrEsperado] :
         {std::pair{XVUInt{OfficialBank}, E_NOTIMPL}, {XVUInt{Tipo_Nenhum}, E_INVALIDARG}}) {
        dados.eSistemaIntegracao = parametros.eSistemaIntegracao = eSistema;
        EXPECT_EQ(facade.RealizaOperacaoAnterior(dados), hrEsperado);
        EXPECT_EQ(facade.RealizaOperacaoPosterior(parametros), hrEsperado);
        EXPECT_EQ(facade.AtualizaParametrosIntegracao(parametros), hrEsperado);
        EXPECT_EQ(CXVMiddlewareIntegracaoSistemas::EnviaJsonIntegracaoSistemasTerceiros(dados, &m_Dono),
                  hrEsperado);
    }
}

TEST_F(ProvedorPluginTeste, TabelaQueNaoCabeNaInterfaceERecusadaComOMotivo) {
    const XVProvedorTabela boa = g_tabela;
    const auto motivo = [&] {
        const auto pProvedor = Cria();
        EXPECT_EQ(pProvedor == nullptr, !m_sMotivo.empty());
        g_tabela = boa;
        return m_sMotivo;
    };
    g_tabela.ulTamanho = 8;
    EXPECT_EQ(motivo(), "tabela de 8 bytes em vez de " + std::to_string(sizeof(XVProvedorTabela)));
    g_tabela.ulVersao = 2;
    EXPECT_EQ(motivo(), "tabela da versão 2 em vez de 1");
    g_tabela.pfnLibera = nullptr;
    EXPECT_EQ(motivo(), "tabela sem pfnLibera");
    // Not let through: the search for all the others would end with it.
    const auto pfnLanca = [](std::uint32_t, XVProvedorTabela*) -> std::int32_t { throw 7; };
    EXPECT_EQ(CXVProvedorAdaptador::Cria(pfnLanca, Mercos, &m_sMotivo), nullptr);
    EXPECT_EQ(m_sMotivo, "XVProvedorObtem deixou sair uma exceção");
}

}  // namespace
