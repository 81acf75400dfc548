// The frame around every method: refusal, yield, codes of exceptions, death of the component.
#include <future>

#include "support/faults/XVExcecoes.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/xvrpcdll/XVCenarioComponente.h"

namespace {

constexpr HRESULT k_hrFatal = XVHResult(0x8004EAC5U);

class CQuadro : public CCenarioComponente {
  protected:
    HRESULT Chama() const { return CCenarioComponente::Chama(*m_p); }
    HRESULT UltimoErro() const {
        REG_DF_ULTIMO_ERROPS reg;
        std::memset(&reg, 0xAA, sizeof(reg));
        EXPECT_EQ(m_p->GetUltimoErro(&reg), S_OK);
        return reg.hrErro;
    }
    // Runs fnEnquanto while a call of another thread is inside its operation, which then answers by
    // fnResposta. Calls that come meanwhile end the component.
    void ComOutraDentro(const std::function<HRESULT()>& fnResposta, HRESULT hrEsperado,
                        const std::function<void()>& fnEnquanto) {
        std::promise<void> dentro, segue;
        std::atomic<bool> bPrimeira = true;
        m_controle.fnOperacao = [&] {
            if (!bPrimeira.exchange(false)) return k_hrFatal;
            dentro.set_value();
            segue.get_future().wait();
            return fnResposta();
        };
        std::thread longa([&] { EXPECT_EQ(Chama(), hrEsperado); });
        dentro.get_future().wait();
        fnEnquanto();
        segue.set_value();
        longa.join();
    }
};

}  // namespace

TEST_F(CQuadro, SemInicializacaoRecusaSemRegistrarECadaChamadaCedeOProcessador) {
    CXVRelogioFalso relogio;
    const CXVGuardaRelogio guarda(relogio);
    EXPECT_EQ(Chama(), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    EXPECT_EQ(UltimoErro(), S_OK);
    EXPECT_TRUE(m_captura.GetFalhas().empty());
    EXPECT_EQ(m_controle.iOperacoes, 0);
    ASSERT_EQ(Inicializa(*m_p), S_OK);
    const XVUInt64 uiAntes = relogio.GetQuantidadeDormidas();
    EXPECT_EQ(Chama(), S_OK);
    XVLongPS lInicializado = 0;
    EXPECT_EQ(m_p->EstaInicializado(&lInicializado), S_OK);
    EXPECT_EQ(lInicializado, 1);
    EXPECT_EQ(UltimoErro(), S_OK);
    EXPECT_EQ(relogio.GetQuantidadeDormidas(), uiAntes + 3);
    EXPECT_EQ(relogio.GetMilissegundosDormidos(), 0U);
}

TEST_F(CQuadro, FalhasEExcecoesViramSeusCodigosESaoRegistradasComOMetodo) {
    ASSERT_EQ(Inicializa(*m_p), S_OK);
    const char* const pszTraduz = "XVTranslateThrownExceptionToHresult()";
    const struct {
        std::function<HRESULT()> fnOperacao;
        HRESULT hr;
        const char* pszExpressao;
    } aCasos[] = {
        {[] { return eDiskFull; }, eDiskFull, "pfInSEHFuncao()"},
        {[]() -> HRESULT { throw std::bad_alloc(); }, E_XV_BAD_ALLOC, pszTraduz},
        {[]() -> HRESULT { throw 42; }, E_XV_EXCECAO_DESCONHECIDA, pszTraduz},
        {[]() -> HRESULT { throw new CXVException(0x123); }, XVHResult(0x80040123U), pszTraduz},
    };
    for (const auto& r : aCasos) {
        const CXVCapturaTrace captura;
        m_controle.fnOperacao = r.fnOperacao;
        EXPECT_EQ(Chama(), r.hr);
        EXPECT_EQ(UltimoErro(), r.hr);
        EXPECT_EQ(CXVBaseParaRotinas::GetAcessoDefault(), nullptr) << "the caller's name ends with the call";
        ASSERT_EQ(captura.GetFalhas().size(), 1U);
        const SFalhaCapturada& rFalha = captura.GetFalhas().front();
        EXPECT_EQ(rFalha.sExpressao, r.pszExpressao);
        EXPECT_EQ(rFalha.sFuncao, "CXVCR_Middleware::GravaChaveRegistroTelvoParaTerceiro");
        EXPECT_EQ(rFalha.sFonte, "XVCR_Middleware");
    }
}

TEST_F(CQuadro, SoAFaixaFatalMataOComponente) {
    const std::pair<XVUInt, bool> aCasos[] = {{0x8004EAC4U, false}, {0x8004EAC5U, true},  {0x8004EADBU, true},
                                              {0x8004EADCU, false}, {0x8004EE46U, false}, {0x8004EE47U, true},
                                              {0x8004EE48U, false}, {0x80004005U, false}};
    for (const auto& [ulCodigo, bFatal] : aCasos) {
        const HRESULT hrDepois = bFatal ? E_XVCR_COMPONENTE_NAO_INICIALIZADO : S_OK;
        const CReferencia p;
        ASSERT_EQ(Inicializa(*p), S_OK);
        m_controle.fnOperacao = [hr = static_cast<long>(XVHResult(ulCodigo))]() -> HRESULT { throw hr; };
        EXPECT_EQ(CCenarioComponente::Chama(*p), XVHResult(ulCodigo));
        EXPECT_EQ(m_controle.iVivas, bFatal ? 1 : 2);
        m_controle.fnOperacao = [] { return S_OK; };
        EXPECT_EQ(CCenarioComponente::Chama(*p), hrDepois);
        EXPECT_EQ(Inicializa(*p), hrDepois);
        REG_DF_ULTIMO_ERROPS regErro;
        std::memset(&regErro, 0xAA, sizeof(regErro));
        EXPECT_EQ(p->GetUltimoErro(&regErro), S_OK);
        EXPECT_EQ(regErro.hrErro, S_OK) << "of the new logic object, or of none";
    }
}

// While one call dies another is inside: it ends on the object it began with, which goes with it.
TEST_F(CQuadro, ResultadoFatalComOutraChamadaDentro) {
    ASSERT_EQ(Inicializa(*m_p), S_OK);
    const auto fnInicializado = [] {
        return CXVBaseParaRotinas::GetAcessoDefault()->EstaInicializado() ? S_OK : E_FAIL;
    };
    ComOutraDentro(fnInicializado, S_OK, [&] {
        EXPECT_EQ(Chama(), k_hrFatal);
        EXPECT_EQ(Chama(), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
        EXPECT_EQ(m_controle.iVivas, 1);
        EXPECT_EQ(m_controle.iFinalizacoes, 0);
    });
    EXPECT_EQ(m_controle.iVivas, 0);
    EXPECT_EQ(m_controle.iFinalizacoes, 1);
}

// The same with an initialisation anew: the fatal result of an old call does not kill the new object.
TEST_F(CQuadro, InicializacaoNovaComChamadaAntigaDentro) {
    ASSERT_EQ(Inicializa(*m_p), S_OK);
    ComOutraDentro([] { return k_hrFatal; }, k_hrFatal, [&] { EXPECT_EQ(Inicializa(*m_p), S_OK); });
    m_controle.fnOperacao = [] { return S_OK; };
    EXPECT_EQ(Chama(), S_OK);
    EXPECT_EQ(m_controle.iVivas, 1);
}

TEST_F(CQuadro, OciosidadeContaDoFimDaUltimaChamada) {
    ASSERT_EQ(Inicializa(*m_p), S_OK);
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

// Who keeps a list of live components may ask for one whose last reference has just gone.
TEST_F(CQuadro, InterfacesReferenciasEComponenteQueAcabaNaoVolta) {
    auto* pComponente = new CComponenteFalso;
    void* p = &p;
    EXPECT_EQ(pComponente->QueryInterface(IXVCR_Middleware::k_iidInterface, &p), S_OK);
    EXPECT_EQ(p, static_cast<IXVCR_Middleware*>(pComponente));
    EXPECT_EQ(pComponente->Release(), 1U);
    EXPECT_EQ(pComponente->QueryInterface(k_clsidMiddleware, &p), E_NOINTERFACE);
    EXPECT_EQ(p, nullptr);
    EXPECT_EQ(pComponente->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_TRUE(pComponente->TentaAddRef());
    EXPECT_EQ(pComponente->Release(), 1U);
    ASSERT_EQ(Inicializa(*pComponente), S_OK);
    bool bVoltou = true;
    m_controle.fnFinaliza = [&] { bVoltou = pComponente->TentaAddRef(); };
    EXPECT_EQ(pComponente->Release(), 0U);
    EXPECT_FALSE(bVoltou);
}
