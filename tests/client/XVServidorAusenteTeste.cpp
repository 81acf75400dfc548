// A server that is ending, gone or not yet there: how long the client waits for it, and what it repeats.
#include <gtest/gtest.h>

#include <functional>

#include "support/codes/XVCodigos.h"
#include "tests/client/XVServidorFalso.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRelogioFalso.h"

namespace {

using XVCliente::CXVCliente;
using TExecutadas = std::vector<std::string>;

enum class ETipo { eLeitura, eGravacao, eTroca };

struct SMetodo {
    const char* pszNome;
    ETipo eTipo;
    std::function<HRESULT(CXVCliente&)> fnChama;
};

const std::vector<SMetodo>& Metodos() {
    using enum ETipo;
    static REG_XVDMC s_regDmc;
    static std::vector<REG_XVDMC> s_lista;
    static std::vector<CXVDadosCR_IntegracaoMiddleware> s_listaDados;
    static CXVDadosCR_IntegracaoMiddleware s_dados;
    static CXVDadosCR_ChaveRegistroTelvoParaTerceiro s_chave;
    static CXVDadosCR_DataHoraIntegracaoTerceiro s_dataHora;
    static CXVDadosCR_StatusConsultaSistemaTerceiro s_consulta;
    static std::string s_sSaida;
    static const std::vector<SMetodo> s_metodos{
        {"LeIntegracao", eLeitura, [](auto& r) { return r.LeIntegracao(s_regDmc, 7, &s_dados); }},
        {"LeIntegracoes", eLeitura, [](auto& r) { return r.LeIntegracoes({}, 7, &s_listaDados); }},
        {"BuscaPonteiros", eLeitura, [](auto& r) { return r.BuscaPonteiros({}, &s_lista); }},
        {"BuscaChaveRegistro", eLeitura, [](auto& r) { return r.BuscaChaveRegistro({}, &s_chave); }},
        {"BuscaDataHora", eLeitura, [](auto& r) { return r.BuscaDataHora({}, &s_dataHora); }},
        {"GravaIntegracao", eGravacao, [](auto& r) { return r.GravaIntegracao(&s_regDmc, {}); }},
        {"GravaStatusIntegracao", eGravacao, [](auto& r) { return r.GravaStatusIntegracao({}); }},
        {"GravaChaveRegistro", eGravacao, [](auto& r) { return r.GravaChaveRegistro({}); }},
        {"GravaChaveRegistroPendente", eGravacao, [](auto& r) { return r.GravaChaveRegistroPendente({}); }},
        {"GravaDataHora", eGravacao, [](auto& r) { return r.GravaDataHora({}); }},
        {"GravaIntegracaoInstantanea", eTroca,
         [](auto& r) { return r.GravaIntegracaoInstantanea(&s_regDmc, {}); }},
        {"GravaPendenciaIntegracao", eTroca, [](auto& r) { return r.GravaPendenciaIntegracao({}, {}); }},
        {"BuscaDadosSistemaTerceiro", eTroca,
         [](auto& r) { return r.BuscaDadosSistemaTerceiro({}, &s_consulta); }},
        {"LeIntegracao", eTroca, [](auto& r) { return r.LeIntegracao(s_regDmc, 8, &s_dados); }},
        {"LeIntegracoes", eTroca, [](auto& r) { return r.LeIntegracoes({}, 15, &s_listaDados); }},
        {"FuncaoGenerica", eTroca, [](auto& r) { return r.FuncaoGenerica(1, "", &s_sSaida); }}};
    return s_metodos;
}

constexpr XVUInt k_aulNaoExecutadas[] = {0x800706B5U, 0x800706BAU, 0x800706BBU,
                                         0x80010012U, 0x80010108U, 0x800401FDU};
constexpr XVUInt k_aulIncertas[] = {0x800706BEU, 0x800706BFU, 0x80010007U, 0x80080008U, 0x80004005U};

class CServidorAusente : public ::testing::Test {
  protected:
    // A connected client on a server that then answers the next calls so.
    std::unique_ptr<CXVCliente> Cliente(std::deque<HRESULT> chamadas, bool bSegueVivo = false) {
        m_Servidor = {};
        auto pCliente = std::make_unique<CXVCliente>(std::make_unique<CConexaoFalsa>(m_Servidor));
        EXPECT_EQ(pCliente->Reconecta(), S_OK);
        m_Servidor.chamadas = std::move(chamadas);
        m_Servidor.bSegueVivo = bSegueVivo;
        return pCliente;
    }
    // What a call that was first answered with the code comes to.
    void Confere(const SMetodo& rMetodo, XVUInt ulCodigo, bool bRepete, bool bSegueVivo = false) {
        SCOPED_TRACE(std::string(rMetodo.pszNome) + " " + XVCliente::CodigoEmTexto(XVHResult(ulCodigo)));
        const auto pCliente = Cliente({XVHResult(ulCodigo)}, bSegueVivo);
        EXPECT_EQ(rMetodo.fnChama(*pCliente), bRepete ? S_OK : XVHResult(ulCodigo));
        TExecutadas executadas{"1 " + std::string(rMetodo.pszNome)};
        if (bRepete) executadas.push_back("2 " + std::string(rMetodo.pszNome));
        EXPECT_EQ(m_Servidor.executadas, executadas);
        EXPECT_EQ(pCliente->EstaConectado(), bRepete || bSegueVivo);
    }

    CXVRelogioFalso m_Relogio;
    const CXVGuardaRelogio m_Guarda{m_Relogio};
    SServidorFalso m_Servidor;
};

}  // namespace

TEST_F(CServidorAusente, RepeteOQueNaoFoiExecutadoEDoIncertoSoALeitura) {
    for (const SMetodo& rMetodo : Metodos()) {
        for (const XVUInt ulCodigo : k_aulNaoExecutadas)
            Confere(rMetodo, ulCodigo, rMetodo.eTipo != ETipo::eTroca);
        for (const XVUInt ulCodigo : k_aulIncertas)
            Confere(rMetodo, ulCodigo, rMetodo.eTipo == ETipo::eLeitura);
    }
}

// The store's refusals, and what a provider answers, are nobody's absence; the component stays in hand.
TEST_F(CServidorAusente, RespostaDoComponenteNaoERepetida) {
    for (const SMetodo& rMetodo : Metodos()) {
        for (const XVUInt ulCodigo : {0x81080AAAU, 0x80080005U, 0x80004002U, 0x80070005U})
            Confere(rMetodo, ulCodigo, false, true);
        for (const XVUInt ulCodigo : k_aulIncertas) Confere(rMetodo, ulCodigo, false, true);
        if (rMetodo.eTipo != ETipo::eTroca) continue;
        for (const XVUInt ulCodigo : k_aulNaoExecutadas) Confere(rMetodo, ulCodigo, false, true);
    }
}

// A server that has cut the client off and ended: an exchange, which is never repeated, is not lost to that.
TEST_F(CServidorAusente, OcioCortadoNaoPerdeAPrimeiraOperacao) {
    for (const SMetodo& rMetodo : Metodos()) {
        const auto pCliente = Cliente({});
        if (rMetodo.eTipo == ETipo::eTroca)
            m_Servidor.bCaido = true;
        else
            m_Servidor.chamadas = {XVHResult(0x80010108U)};
        m_Servidor.criacoes = {XVHResult(0x800706BAU), XVHResult(0x80080005U)};
        EXPECT_EQ(rMetodo.fnChama(*pCliente), S_OK);
        EXPECT_EQ(m_Servidor.executadas.back(), "4 " + std::string(rMetodo.pszNome));
        EXPECT_EQ(m_Servidor.executadas.size(), rMetodo.eTipo == ETipo::eTroca ? 1U : 2U);
    }
    // The key of a new integration is none again, whatever the call that failed left in it.
    const auto pCliente = Cliente({XVHResult(0x800401FDU)});
    REG_XVDMC regDmc;
    EXPECT_EQ(pCliente->GravaIntegracao(&regDmc, {}), S_OK);
    EXPECT_EQ(m_Servidor.chaves, (std::vector<XVUInt64>{0, 0}));
}

// A component that comes after one that died in an exchange would answer that nothing was recorded.
TEST_F(CServidorAusente, UltimasGravadasSoOMesmoComponenteSabe) {
    const HRESULT hrSemResposta = XVHResult(0x800706BEU);
    std::vector<REG_XVDMC> lista;
    REG_XVDMC regDmc;
    auto pCliente = Cliente({hrSemResposta});
    EXPECT_EQ(pCliente->GravaIntegracaoInstantanea(&regDmc, {}), hrSemResposta);
    EXPECT_EQ(pCliente->UltimasGravadas(&lista), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    pCliente = Cliente({S_OK, XVHResult(0x800706BAU)});
    EXPECT_EQ(pCliente->GravaIntegracaoInstantanea(&regDmc, {}), S_OK);
    EXPECT_EQ(pCliente->UltimasGravadas(&lista), XVHResult(0x800706BAU));
    EXPECT_EQ(m_Servidor.uiCriacoes, 1U);
}

TEST_F(CServidorAusente, CriacaoEsperaPorCadaCodigoDoIntervaloEPorNenhumOutro) {
    std::vector<XVUInt> codigos(std::begin(k_aulNaoExecutadas), std::end(k_aulNaoExecutadas));
    codigos.insert(codigos.end(), std::begin(k_aulIncertas), std::end(k_aulIncertas));
    codigos.insert(codigos.end(), {0x80080005U, 0x80004002U});
    for (const XVUInt ulCodigo : codigos) {
        const HRESULT hr = XVHResult(ulCodigo);
        m_Servidor = {.criacoes = {hr, hr, hr}};
        const XVUInt64 uiAntes = m_Relogio.GetMilissegundosDormidos();
        EXPECT_EQ(CXVCliente(std::make_unique<CConexaoFalsa>(m_Servidor)).Reconecta(), S_OK);
        EXPECT_EQ(m_Relogio.GetMilissegundosDormidos() - uiAntes, 25U + 50U + 100U);
    }
    const XVUInt64 uiAntes = m_Relogio.GetMilissegundosDormidos();
    for (const XVUInt ulCodigo : {0x80040154U, 0x80070005U, 0x81080C5EU}) {
        m_Servidor = {.criacoes = {XVHResult(ulCodigo)}};
        CXVCliente cliente(std::make_unique<CConexaoFalsa>(m_Servidor));
        EXPECT_EQ(cliente.Reconecta(), XVHResult(ulCodigo));
        XVCliente::SUltimoErro erro;
        EXPECT_EQ(cliente.GetUltimoErro(&erro), S_OK);
        EXPECT_EQ(erro.hrErro, XVHResult(ulCodigo)) << "without a component to ask";
    }
    EXPECT_EQ(m_Relogio.GetMilissegundosDormidos(), uiAntes);
    // A program whose file is just being exchanged is there in a moment; one that is missing, never.
    for (const XVUInt ulCodigo : {0x80070002U, 0x80070020U}) {
        const HRESULT hr = XVHResult(ulCodigo);
        m_Servidor = {.criacoes = std::deque<HRESULT>(7, hr)};
        EXPECT_EQ(CXVCliente(std::make_unique<CConexaoFalsa>(m_Servidor)).Reconecta(), S_OK);
        m_Servidor = {.criacoes = std::deque<HRESULT>(8, hr)};
        EXPECT_EQ(CXVCliente(std::make_unique<CConexaoFalsa>(m_Servidor)).Reconecta(), hr);
    }
    EXPECT_EQ(m_Relogio.GetMilissegundosDormidos() - uiAntes, 4 * (25U + 50 + 100 + 200 + 400 + 800 + 1000));
}

TEST_F(CServidorAusente, InicializacaoRecusadaNaoEsperaEInterrompidaSim) {
    const auto inicializa = [&](std::deque<HRESULT> inicializacoes, bool bSegueVivo) {
        m_Servidor = {.inicializacoes = std::move(inicializacoes), .bSegueVivo = bSegueVivo};
        return CXVCliente(std::make_unique<CConexaoFalsa>(m_Servidor)).Reconecta();
    };
    const HRESULT hrSemResposta = XVHResult(0x800706BEU);
    EXPECT_EQ(inicializa({XVHResult(0x81080C5EU)}, true), XVHResult(0x81080C5EU));
    EXPECT_EQ(inicializa({E_FAIL}, true), E_FAIL) << "its own answer";
    EXPECT_EQ(m_Relogio.GetQuantidadeDormidas(), 0U);
    EXPECT_EQ(inicializa({E_FAIL, hrSemResposta}, false), S_OK);
    EXPECT_EQ(inicializa({XVHResult(0x800706B5U)}, true), S_OK) << "turned away by a server that goes on";
    // A store that brings down whoever opens it is not opened for ever.
    EXPECT_EQ(inicializa(std::deque<HRESULT>(50, hrSemResposta), false), hrSemResposta);
    EXPECT_EQ(m_Servidor.uiCriacoes, 3U);
}

TEST_F(CServidorAusente, EsperaTemFim) {
    const HRESULT hr = XVHResult(0x800706BAU);
    const auto dormidos = [&](auto&& fnChama) {
        const XVUInt64 uiAntes = m_Relogio.GetMilissegundosDormidos();
        EXPECT_EQ(fnChama(), hr);
        return m_Relogio.GetMilissegundosDormidos() - uiAntes;
    };
    REG_XVDMC regDmc;
    const std::deque<HRESULT> sempre(1000, hr);
    auto pCliente = Cliente({hr});
    m_Servidor.criacoes = sempre;
    EXPECT_EQ(dormidos([&] { return pCliente->GravaIntegracao(&regDmc, {}); }), 39575U);
    EXPECT_EQ(m_Servidor.executadas.size(), 1U);
    EXPECT_FALSE(pCliente->EstaConectado());
    // Creations that succeed and calls that never do have one time together.
    pCliente = Cliente(sempre);
    EXPECT_EQ(dormidos([&] { return pCliente->GravaIntegracao(&regDmc, {}); }), 39575U);
    // The time of the attempts counts.
    pCliente = Cliente(sempre);
    m_Relogio.SetAoDormir([&](XVUInt64) { m_Relogio.Avanca(30000); });
    EXPECT_EQ(dormidos([&] { return pCliente->GravaIntegracao(&regDmc, {}); }), 25U + 50U);

    // A reading that brings the server down is not repeated for ever.
    m_Relogio.SetAoDormir({});
    pCliente = Cliente(std::deque<HRESULT>(50, XVHResult(0x800706BEU)));
    std::vector<REG_XVDMC> lista;
    EXPECT_EQ(pCliente->BuscaPonteiros({}, &lista), XVHResult(0x800706BEU));
    EXPECT_EQ(m_Servidor.executadas,
              (TExecutadas{"1 BuscaPonteiros", "2 BuscaPonteiros", "3 BuscaPonteiros"}));
}
