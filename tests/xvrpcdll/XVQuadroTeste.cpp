// The frame around every method: refusal, yield, default access, codes of exceptions, death of the component.
#include <gtest/gtest.h>

#include <cstring>
#include <future>
#include <thread>

#include "support/faults/XVExcecoes.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/xvrpcdll/XVLogicaFalsa.h"

namespace {

class CQuadro : public ::testing::Test {
  protected:
    CXVRegistryFalso m_registry;
    CXVGuardaRegistry m_guarda{m_registry};
    SControleLogica m_controle;
    CXVCapturaTrace m_captura;
    CReferencia<CComponenteFalso> m_p;
    const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS m_regChave{};

    void Inicializa() {
        const REG_DF_INICIALIZAPS reg = RegistroValido();
        ASSERT_EQ(m_p->Inicializa_Padrao(&reg), S_OK);
    }
    HRESULT Chama() { return m_p->GravaChaveRegistroTelvoParaTerceiro(&m_regChave); }
    HRESULT ChamaComResultado(HRESULT hr) {
        m_controle.fnOperacao = [hr] { return hr; };
        return Chama();
    }
};

template <class TExcecao>
std::function<HRESULT()> Lanca(TExcecao excecao) {
    return [excecao]() -> HRESULT { throw excecao; };
}

}  // namespace

TEST_F(CQuadro, SemInicializacaoRecusaSemRegistrarNemExecutar) {
    EXPECT_EQ(Chama(), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    XVLongPS lInicializado = 0;
    EXPECT_EQ(m_p->EstaInicializado(&lInicializado), S_OK);
    EXPECT_EQ(lInicializado, 1);
    EXPECT_EQ(m_controle.iOperacoes, 0);
    EXPECT_TRUE(m_captura.GetFalhas().empty());
    REG_DF_ULTIMO_ERROPS reg;
    std::memset(&reg, 0xAA, sizeof(reg));
    EXPECT_EQ(m_p->GetUltimoErro(&reg), S_OK);
    const REG_DF_ULTIMO_ERROPS regZero{};
    EXPECT_EQ(std::memcmp(&reg, &regZero, sizeof(reg)), 0);
}

TEST_F(CQuadro, CadaChamadaCedeOProcessadorUmaVezInclusiveAsConsultas) {
    Inicializa();
    CXVRelogioFalso relogio;
    const CXVGuardaRelogio guarda(relogio);
    EXPECT_EQ(Chama(), S_OK);
    EXPECT_EQ(relogio.GetQuantidadeDormidas(), 1U);
    XVLongPS lInicializado = 0;
    EXPECT_EQ(m_p->EstaInicializado(&lInicializado), S_OK);
    REG_DF_ULTIMO_ERROPS reg;
    EXPECT_EQ(m_p->GetUltimoErro(&reg), S_OK);
    EXPECT_EQ(relogio.GetQuantidadeDormidas(), 3U);
    EXPECT_EQ(relogio.GetMilissegundosDormidos(), 0U);
}

TEST_F(CQuadro, AcessoDefaultValeDuranteAChamadaEAcabaComEla) {
    Inicializa();
    XVUShort usUsuario = 0;
    XVUInt ulSessao = 0;
    m_controle.fnOperacao = [&] {
        const CXVBaseParaRotinas* pBase = CXVBaseParaRotinas::GetAcessoDefault();
        if (pBase == nullptr) return E_FAIL;
        usUsuario = pBase->GetUsuarioProprio();
        ulSessao = pBase->GetNumeroSessaoProprio();
        return S_OK;
    };
    EXPECT_EQ(Chama(), S_OK);
    EXPECT_EQ(usUsuario, 7);
    EXPECT_EQ(ulSessao, 42U);
    EXPECT_EQ(CXVBaseParaRotinas::GetAcessoDefault(), nullptr);
    m_controle.fnOperacao = Lanca(1);
    EXPECT_EQ(Chama(), E_XV_EXCECAO_DESCONHECIDA);
    EXPECT_EQ(CXVBaseParaRotinas::GetAcessoDefault(), nullptr);
}

// Two calls at once on two threads: each sees its own caller.
TEST_F(CQuadro, AcessoDefaultEhDaThread) {
    Inicializa();
    CReferencia<CComponenteFalso> outro;
    REG_DF_INICIALIZAPS reg = RegistroValido();
    reg.ulUsuario = 8;
    XVRegistroInicializacao::Sela(&reg);
    ASSERT_EQ(outro->Inicializa_Padrao(&reg), S_OK);
    std::promise<void> dentro, segue;
    std::atomic<int> iChamada = 0;
    XVUShort ausUsuario[2]{};
    m_controle.fnOperacao = [&] {
        const int i = iChamada++;
        if (i == 0) {
            dentro.set_value();
            segue.get_future().wait();
        } else {
            segue.set_value();
        }
        ausUsuario[i] = CXVBaseParaRotinas::GetAcessoDefault()->GetUsuarioProprio();
        return S_OK;
    };
    std::thread primeira([&] { EXPECT_EQ(Chama(), S_OK); });
    dentro.get_future().wait();
    EXPECT_EQ(outro->GravaChaveRegistroTelvoParaTerceiro(&m_regChave), S_OK);
    primeira.join();
    EXPECT_EQ(ausUsuario[0], 7);
    EXPECT_EQ(ausUsuario[1], 8);
}

TEST_F(CQuadro, FalhaEhRegistradaComONomeDoMetodoEViraUltimoErro) {
    Inicializa();
    EXPECT_EQ(ChamaComResultado(eDiskFull), eDiskFull);
    ASSERT_EQ(m_captura.GetFalhas().size(), 1U);
    const SFalhaCapturada& rFalha = m_captura.GetFalhas().front();
    EXPECT_EQ(rFalha.sExpressao, "pfInSEHFuncao()");
    EXPECT_EQ(rFalha.sFuncao, "CXVCR_Middleware::GravaChaveRegistroTelvoParaTerceiro");
    EXPECT_EQ(rFalha.sFonte, "XVCR_Middleware");
    REG_DF_ULTIMO_ERROPS reg;
    EXPECT_EQ(m_p->GetUltimoErro(&reg), S_OK);
    EXPECT_EQ(reg.hrErro, eDiskFull);
    EXPECT_STREQ(reg.szFuncao, "CXVCR_Middleware::GravaChaveRegistroTelvoParaTerceiro");
    EXPECT_EQ(m_p->GetUltimoErro(nullptr), E_POINTER);
    EXPECT_EQ(m_p->EstaInicializado(nullptr), E_POINTER);
}

TEST_F(CQuadro, ExcecoesViramSeusCodigos) {
    Inicializa();
    const std::pair<std::function<HRESULT()>, HRESULT> aCasos[] = {
        {Lanca(static_cast<long>(E_XVCR_COMPONENTE_NAO_INICIALIZADO)), E_XVCR_COMPONENTE_NAO_INICIALIZADO},
        {Lanca(std::bad_alloc()), E_XV_BAD_ALLOC},
        {Lanca(42), E_XV_EXCECAO_DESCONHECIDA},
        {[]() -> HRESULT { throw new CXVException(0x123); }, XVHResult(0x80040123U)},
    };
    for (const auto& [fnLanca, hr] : aCasos) {
        const CXVCapturaTrace captura;
        m_controle.fnOperacao = fnLanca;
        EXPECT_EQ(Chama(), hr);
        ASSERT_EQ(captura.GetFalhas().size(), 1U);
        EXPECT_EQ(captura.GetFalhas().front().sExpressao, "XVTranslateThrownExceptionToHresult()");
    }
    EXPECT_EQ(ChamaComResultado(S_OK), S_OK);
}

TEST_F(CQuadro, SoAFaixaFatalMataOComponente) {
    for (const XVUInt ulVivo : {0x8004EAC4U, 0x8004EADCU, 0x8004EE46U, 0x8004EE48U, 0x80004005U}) {
        CReferencia<CComponenteFalso> p;
        const REG_DF_INICIALIZAPS reg = RegistroValido();
        ASSERT_EQ(p->Inicializa_Padrao(&reg), S_OK);
        m_controle.fnOperacao = [=] { return XVHResult(ulVivo); };
        EXPECT_EQ(p->GravaChaveRegistroTelvoParaTerceiro(&m_regChave), XVHResult(ulVivo));
        m_controle.fnOperacao = [] { return S_OK; };
        EXPECT_EQ(p->GravaChaveRegistroTelvoParaTerceiro(&m_regChave), S_OK);
    }
    for (const XVUInt ulFatal : {0x8004EAC5U, 0x8004EAD0U, 0x8004EADBU, 0x8004EE47U}) {
        CReferencia<CComponenteFalso> p;
        const REG_DF_INICIALIZAPS reg = RegistroValido();
        ASSERT_EQ(p->Inicializa_Padrao(&reg), S_OK);
        const int iVivas = m_controle.iVivas;
        m_controle.fnOperacao = [=]() -> HRESULT { throw static_cast<long>(XVHResult(ulFatal)); };
        EXPECT_EQ(p->GravaChaveRegistroTelvoParaTerceiro(&m_regChave), XVHResult(ulFatal));
        EXPECT_EQ(m_controle.iVivas, iVivas - 1);
        const int iOperacoes = m_controle.iOperacoes;
        EXPECT_EQ(p->GravaChaveRegistroTelvoParaTerceiro(&m_regChave), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
        EXPECT_EQ(p->Inicializa_Padrao(&reg), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
        EXPECT_EQ(m_controle.iOperacoes, iOperacoes);
        XVLongPS lInicializado = 0;
        EXPECT_EQ(p->EstaInicializado(&lInicializado), S_OK);
        EXPECT_EQ(lInicializado, 1);
        REG_DF_ULTIMO_ERROPS regErro;
        EXPECT_EQ(p->GetUltimoErro(&regErro), S_OK);
        EXPECT_EQ(regErro.hrErro, S_OK);
    }
}

// While one call dies another is inside: it ends on the object it began with, which goes with it.
TEST_F(CQuadro, ResultadoFatalComOutraChamadaDentro) {
    Inicializa();
    std::promise<void> dentro, segue;
    std::atomic<int> iChamada = 0;
    m_controle.fnOperacao = [&] {
        if (iChamada++ > 0) return XVHResult(0x8004EAC5U);
        dentro.set_value();
        segue.get_future().wait();
        return CXVBaseParaRotinas::GetAcessoDefault()->EstaInicializado() ? S_OK : E_FAIL;
    };
    std::thread longa([&] { EXPECT_EQ(Chama(), S_OK); });
    dentro.get_future().wait();
    EXPECT_EQ(Chama(), XVHResult(0x8004EAC5U));
    EXPECT_EQ(Chama(), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    EXPECT_EQ(m_controle.iVivas, 1);
    EXPECT_EQ(m_controle.iFinalizacoes, 0);
    segue.set_value();
    longa.join();
    EXPECT_EQ(m_controle.iVivas, 0);
    EXPECT_EQ(m_controle.iFinalizacoes, 1);
}

// The same with an initialisation anew: the fatal result of an old call does not kill the new object.
TEST_F(CQuadro, InicializacaoNovaComChamadaAntigaDentro) {
    Inicializa();
    std::promise<void> dentro, segue;
    m_controle.fnOperacao = [&] {
        dentro.set_value();
        segue.get_future().wait();
        return XVHResult(0x8004EAC5U);
    };
    std::thread longa([&] { EXPECT_EQ(Chama(), XVHResult(0x8004EAC5U)); });
    dentro.get_future().wait();
    Inicializa();
    segue.set_value();
    longa.join();
    EXPECT_EQ(ChamaComResultado(S_OK), S_OK);
    EXPECT_EQ(m_controle.iVivas, 1);
}

TEST_F(CQuadro, OciosidadeContaDoFimDaUltimaChamada) {
    Inicializa();
    CXVRelogioFalso relogio;
    const CXVGuardaRelogio guarda(relogio);
    m_controle.fnOperacao = [&] {
        relogio.Avanca(5000);
        EXPECT_EQ(m_p->GetAtividade().GetOciosidade(), 0U);
        return S_OK;
    };
    EXPECT_EQ(Chama(), S_OK);
    relogio.Avanca(700);
    EXPECT_EQ(m_p->GetAtividade().GetOciosidade(), 700U);
}

TEST_F(CQuadro, InterfacesEContagemDeReferencias) {
    void* p = &p;
    EXPECT_EQ(m_p->QueryInterface(IXVCR_Middleware::k_iidInterface, &p), S_OK);
    EXPECT_EQ(p, static_cast<IXVCR_Middleware*>(m_p.operator->()));
    EXPECT_EQ(m_p->Release(), 1U);
    EXPECT_EQ(m_p->QueryInterface(k_clsidMiddleware, &p), E_NOINTERFACE);
    EXPECT_EQ(p, nullptr);
    EXPECT_EQ(m_p->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_TRUE(m_p->TentaAddRef());
    EXPECT_EQ(m_p->Release(), 1U);
}

// Who keeps a list of live components may ask for one whose last reference has just gone.
TEST_F(CQuadro, ComponenteQueAcabaNaoVolta) {
    auto* p = new CComponenteFalso;
    const REG_DF_INICIALIZAPS reg = RegistroValido();
    ASSERT_EQ(p->Inicializa_Padrao(&reg), S_OK);
    bool bVoltou = true;
    m_controle.fnFinaliza = [&] { bVoltou = p->TentaAddRef(); };
    EXPECT_EQ(p->Release(), 0U);
    EXPECT_FALSE(bVoltou);
}
