// Providers in libraries are believed in nothing: an answer that cannot be right is refused, changes nothing,
// and no buffer of it is lost. What honest ones are handed and answer is tested with the store.
#include <cstdlib>
#include <cstring>
#include <functional>

#include "suite/XVMiddlewareFacade.h"
#include "suite/providers/XVProvedorAdaptador.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/suite/XVCenarioSuite.h"

namespace {

constexpr HRESULT k_hrInvalida = CXVProvedorAdaptador::k_hrRespostaInvalida;

// The library: what a test tells it to answer.
struct SBiblioteca {
    XVProvedorTabela tabela{};
    std::int32_t iResultado = 0;
    std::function<void(XVProvedorDados*)> fnDados;
    std::function<void(XVProvedorListaPendencias*)> fnLista;
    std::function<void(XVProvedorStatusConsulta*)> fnConsulta;
    long lBuffersVivos = 0;
};
SBiblioteca* g_pBiblioteca = nullptr;

std::int32_t Obtem(std::uint32_t, XVProvedorTabela* pTabela) {
    *pTabela = g_pBiblioteca->tabela;
    return g_pBiblioteca->iResultado;
}

class ProvedorPluginTeste : public CXVCenarioSuite {
  protected:
    ProvedorPluginTeste() {
        g_pBiblioteca = &m_Biblioteca;
        XVProvedorTabela& r = m_Biblioteca.tabela;
        r.ulTamanho = sizeof r;
        r.ulVersao = XVPROVEDOR_VERSAO;
        r.eSistema = Mercos;
        r.pfnLibera = [](void*, void* pBuffer) {
            --g_pBiblioteca->lBuffersVivos;
            std::free(pBuffer);
        };
    }
    ~ProvedorPluginTeste() override {
        EXPECT_EQ(m_Biblioteca.lBuffersVivos, 0) << "every buffer went back to the library";
    }

    static void* Aloca(std::size_t uiTamanho) {
        ++g_pBiblioteca->lBuffersVivos;
        return std::calloc(1, uiTamanho);
    }
    static void Preenche(XVProvedorBuffer* pBuffer, std::string_view s) {
        *pBuffer = {Aloca(s.size()), s.size(), 1, 0};
        std::memcpy(pBuffer->pBytes, s.data(), s.size());
    }
    std::unique_ptr<IXVProvedorIntegracao> Provedor() {
        XVProvedorTabela& r = m_Biblioteca.tabela;
        r.pfnEnviaJson = [](void*, auto, auto p) { return g_pBiblioteca->fnDados(p), 1; };
        r.pfnBuscaIntegracoes = [](void*, auto, auto, auto p) { return g_pBiblioteca->fnLista(p), 1; };
        r.pfnBuscaDadosSistemaTerceiro = [](void*, auto, auto, auto p) {
            return g_pBiblioteca->fnConsulta(p), 0;
        };
        return CXVProvedorAdaptador::Cria(&Obtem, Mercos, &m_sMotivo);
    }

    SBiblioteca m_Biblioteca;
    std::string m_sMotivo;
    CXVCapturaTrace m_Captura;
};

TEST_F(ProvedorPluginTeste, TextosImpossiveisSaoRecusados) {
    using TFaz = std::function<void(XVProvedorBuffer*)>;
    const TFaz aImpossiveis[] = {
        [](XVProvedorBuffer* p) { Preenche(p, std::string_view("a\0b", 3)); },
        [](XVProvedorBuffer* p) {
            *p = {nullptr, 5, 1, 0};
        },
        [](XVProvedorBuffer* p) {
            *p = {Aloca(3), 0x1'0000'0000ULL, 1, 0};
        },
        [](XVProvedorBuffer* p) {
            *p = {Aloca(3), 3, 0, 0};
        },
    };
    const auto pProvedor = Provedor();
    CXVDadosCR_IntegracaoMiddleware antes;
    antes.sMensagemIntegracao = "antes";
    antes.regDataHoraAlteracaoStatus.uiValor = 22;
    CXVDadosCR_IntegracaoMiddleware dados = antes;
    m_Biblioteca.fnDados = [](XVProvedorDados* p) { EXPECT_EQ(p->uiDataHoraAlteracaoStatus, 22U); };
    EXPECT_EQ(pProvedor->EnviaJson(m_Dono, dados), S_OK) << "success by another number";
    EXPECT_TRUE(dados == antes);
    for (const TFaz& fnFaz : aImpossiveis) {
        for (XVProvedorBuffer XVProvedorDados::*pCampo :
             {&XVProvedorDados::bufRegistroJSON, &XVProvedorDados::bufMensagemIntegracao,
              &XVProvedorDados::bufJSONRetornoIntegracao}) {
            m_Biblioteca.fnDados = [&](XVProvedorDados* p) {
                fnFaz(&(p->*pCampo));
                p->uiChaveIntegracaoSistemaTerceiro = 9;
            };
            EXPECT_EQ(pProvedor->EnviaJson(m_Dono, dados), k_hrInvalida);
            EXPECT_TRUE(dados == antes);
        }
    }
}

TEST_F(ProvedorPluginTeste, RespostaAConsultaOuListaImpossivelERecusada) {
    const auto pProvedor = Provedor();
    using TStatus = CXVDadosCR_StatusConsultaSistemaTerceiro;
    std::vector<CXVDadosCR_PendenciaIntegracaoSistema> lista(1);
    m_Biblioteca.fnLista = [](XVProvedorListaPendencias*) {};
    EXPECT_EQ(pProvedor->BuscaIntegracoes(m_Dono, {}, lista), S_OK) << "success by another number";
    for (const XVUInt ulCaso : {0U, 1U, 2U, 3U}) {
        m_Biblioteca.fnConsulta = [ulCaso](XVProvedorStatusConsulta* p) {
            p->eStatusConsulta = ulCaso == 0 ? XVUInt{eXVSMiddleware_QuantidadeStatusConsulta} : 1U;
            if (ulCaso == 3)
                p->bufDocumentoRetorno = {Aloca(3), 0x1'0000'0000ULL, 1, 0};
            else
                Preenche(&p->bufDocumentoRetorno, std::string_view("a\0b", 3));
            if (ulCaso == 1) Preenche(&p->bufMensagemRetorno, std::string_view("a\0b", 3));
            if (ulCaso == 2) Preenche(&p->bufJSONRetorno, std::string_view("a\0b", 3));
        };
        TStatus status{"antes", "{}", "doc", 2};
        EXPECT_EQ(pProvedor->BuscaDadosSistemaTerceiro(m_Dono, {}, status), k_hrInvalida);
        EXPECT_TRUE(status == (TStatus{"antes", "{}", "doc", 2}));
        // No address, elements of another size, more of them than there can be.
        m_Biblioteca.fnLista = [ulCaso](XVProvedorListaPendencias* p) {
            p->ulTamanhoElemento = ulCaso == 1 ? 1 : sizeof(XVProvedorPendencia);
            p->ulQuantidade = ulCaso >= 2 ? 1'000'001 : 1;
            if (ulCaso != 0) p->pLista = static_cast<XVProvedorPendencia*>(Aloca(sizeof *p->pLista));
        };
        EXPECT_EQ(pProvedor->BuscaIntegracoes(m_Dono, {}, lista), k_hrInvalida);
        EXPECT_EQ(lista.size(), 1U);
    }
}

TEST_F(ProvedorPluginTeste, OperacaoAusenteESistemaSemProvedorSaoENotimpl) {
    const auto pProvedor = CXVProvedorAdaptador::Cria(&Obtem, Mercos, &m_sMotivo);
    CXVDadosCR_IntegracaoMiddleware dados;
    CXVDadosCR_ParametrosIntegracao parametros;
    for (const auto pOperacao :
         {&IXVProvedorIntegracao::RealizaOperacaoAnterior, &IXVProvedorIntegracao::EnviaJson,
          &IXVProvedorIntegracao::BuscaDados, &IXVProvedorIntegracao::ExcluiDados})
        EXPECT_EQ((*pProvedor.*pOperacao)(m_Dono, dados), E_NOTIMPL);
    EXPECT_EQ(pProvedor->RealizaOperacaoPosterior(m_Dono, parametros), E_NOTIMPL);
    EXPECT_EQ(pProvedor->AtualizaParametrosIntegracao(m_Dono, parametros), E_NOTIMPL);

    CXVMiddlewareFacade facade;
    ASSERT_EQ(facade.Inicializa(&m_Dono), S_OK);
    using CXVTroca = CXVMiddlewareIntegracaoSistemas;
    for (const auto& [eSistema, hrEsperado] :
         {std::pair{XVUInt{OfficialBank}, E_NOTIMPL}, {XVUInt{Tipo_Nenhum}, E_INVALIDARG}}) {
        dados.eSistemaIntegracao = parametros.eSistemaIntegracao = eSistema;
        EXPECT_EQ(facade.RealizaOperacaoAnterior(dados), hrEsperado);
        EXPECT_EQ(facade.RealizaOperacaoPosterior(parametros), hrEsperado);
        EXPECT_EQ(facade.AtualizaParametrosIntegracao(parametros), hrEsperado);
        EXPECT_EQ(CXVTroca::EnviaJsonIntegracaoSistemasTerceiros(dados, &m_Dono), hrEsperado);
        EXPECT_EQ(CXVTroca::BuscaDadosIntegracaoSistemasTerceiros(dados, nullptr, &m_Dono), hrEsperado);
        EXPECT_EQ(CXVTroca::ExcluiDadosIntegracaoSistemasTerceiros(dados, &m_Dono), hrEsperado);
    }
}

TEST_F(ProvedorPluginTeste, TabelaQueNaoCabeNaInterfaceERecusadaComOMotivo) {
    const XVProvedorTabela boa = m_Biblioteca.tabela;
    const auto motivo = [&] {
        const auto pProvedor = CXVProvedorAdaptador::Cria(&Obtem, Mercos, &m_sMotivo);
        EXPECT_EQ(pProvedor == nullptr, !m_sMotivo.empty());
        m_Biblioteca.tabela = boa;
        return m_sMotivo;
    };
    m_Biblioteca.iResultado = 1;
    EXPECT_EQ(motivo(), "");
    m_Biblioteca.tabela.ulTamanho = 8;
    EXPECT_EQ(motivo(), "tabela de 8 bytes em vez de " + std::to_string(sizeof(XVProvedorTabela)));
    m_Biblioteca.tabela.ulVersao = 2;
    EXPECT_EQ(motivo(), "tabela da versão 2 em vez de 1");
    m_Biblioteca.tabela.pfnLibera = nullptr;
    EXPECT_EQ(motivo(), "tabela sem pfnLibera");
}

}  // namespace
