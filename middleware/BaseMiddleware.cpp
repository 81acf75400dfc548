#include "middleware/BaseMiddleware.h"

#include "middleware/ConversaoMiddleware.h"
#include "middleware/XVValidacaoIntegracao.h"
#include "platform/XVTentativas.h"
#include "support/values/XVTextoDecimal.h"

namespace {
constexpr std::size_t k_uiLinhaLogGeral = 160;  // characters; the text of no operation is longer
}

CBaseMiddleware::~CBaseMiddleware() {
    XVIgnora(Finaliza());
}

HRESULT CBaseMiddleware::OnInicializa() {
    XV_ESCOPO();
    XV_CHECK_SUPER(CXVBaseParaRotinas, OnInicializa());
    const CXVAcessoDefault acesso(this);
    XV_CHECK(XVDataBaseInicializa());
    return S_OK;
}

HRESULT CBaseMiddleware::OnFinaliza() {
    XV_ESCOPO();
    const CXVAcessoDefault acesso(this);
    const HRESULT hr = XV_REGISTRA(XVDataBaseFinaliza());
    const HRESULT hrBase = XV_REGISTRA_SUPER(CXVBaseParaRotinas, OnFinaliza());
    return XVPrimeiraFalha(hr, hrBase);
}

HRESULT CBaseMiddleware::ExecutaConversao() {
    CXVConversaoMiddleware conversao(nullptr);
    XV_CHECK(conversao.Inicializa(this));
    return conversao.ExecutaConversao();
}

HRESULT CBaseMiddleware::RecusaVersaoPosterior() {
    CXVConversaoMiddleware conversao(nullptr);
    XV_CHECK(conversao.Inicializa(this));
    XVUShort usVersao = 0;
    XV_CHECK(conversao.LeVersao(&usVersao));
    return conversao.RecusaVersaoPosterior(usVersao);
}

HRESULT CBaseMiddleware::ValidaVersaoSomenteLeitura() {
    CXVConversaoMiddleware conversao(nullptr);
    XV_CHECK(conversao.Inicializa(this));
    // A writer that makes a new store writes each version in turn. As long as such a writer lives, an earlier
    // version on disk is about to become the current one, and is worth waiting for.
    constexpr int k_iEsperas = 100;
    const auto valida = [&conversao] {
        const CXVCapturaTrace captura;
        return conversao.ValidaVersaoAtual();
    };
    const auto espera = [this](HRESULT hr) { return hr == E_XVCR_VERSAO_INCOMPATIVEL && TemEscritor(); };
    if (TemEscritor() && SUCCEEDED(XVTenta(k_iEsperas, valida, espera))) return S_OK;
    XV_CHECK(conversao.ValidaVersaoAtual());
    return S_OK;
}

// The operation has taken place by now: a line that cannot be written must not make it look like a failure,
// so it is recorded in the error log and nothing more.
void CBaseMiddleware::GravaLinhaLogGeral(const char* pszOperacao, REG_XVDMC regDmcIntegracao,
                                         XVUInt64 uiChaveSistemaTerceiro,
                                         REG_XVDMC regDmcMovimentoOrigem) noexcept {
    try {
        std::string sTexto;
        sTexto.reserve(k_uiLinhaLogGeral);
        sTexto.append(pszOperacao).append(" - DMCIntegracao: ");
        regDmcIntegracao.AnexaA(sTexto);
        sTexto += " - ChaveSistemaTerceiro: ";
        XVAnexaDecimal(sTexto, uiChaveSistemaTerceiro);
        sTexto += " - DMCMovimentoOrigem: ";
        regDmcMovimentoOrigem.AnexaA(sTexto);
        sTexto += '\n';
        constexpr DFSLOG_Servico eServico = DFSLOG_Servico::eDFSLOG_Inclusao;
        XVIgnora(XV_REGISTRA(GetAcessoEmpresarial()->GravaLogGeral(eServico, sTexto)));
    } catch (...) {
        XVIgnora(XV_REGISTRA(E_OUTOFMEMORY));
    }
}

HRESULT CBaseMiddleware::ValidaAcesso() const {
    return m_pDataBase == nullptr ? E_XVCR_COMPONENTE_NAO_INICIALIZADO : S_OK;
}

HRESULT CBaseMiddleware::ValidaAcessoGravacao() const {
    if (m_pDataBase == nullptr) return E_XVCR_COMPONENTE_NAO_INICIALIZADO;
    return EhSomenteLeitura() ? eXVReadOnly : S_OK;
}

HRESULT CBaseMiddleware::ValidaRegistro(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg) const {
    using namespace XVValidacaoIntegracao;
    XV_CHECK(ValidaTexto(reg.regRegistroJSON));
    XV_CHECK(ValidaTexto(reg.regMensagemIntegracao));
    XV_CHECK(ValidaTexto(reg.regJSONRetornoIntegracao));
    XV_CHECK(ValidaDmc(reg.regDmcIntegracaoOrigem));
    XV_CHECK(ValidaDmc(reg.regDmcMovimentoOrigem));
    XV_CHECK(ValidaDataHora(reg.regDataHoraInclusao));
    XV_CHECK(ValidaDataHora(reg.regDataHoraAlteracaoStatus));
    XV_CHECK(ValidaTipoIntegracao(reg.eTipoIntegracao));
    XV_CHECK(ValidaStatusIntegracao(reg.eStatusIntegracao));
    XV_CHECK(ValidaSistemaIntegracao(reg.eSistemaIntegracao));
    XV_CHECK(ValidaTipoTransacao(reg.eTipoTransacao));
    return S_OK;
}

REG_CR_INTEGRACAO_MIDDLEWARE_V2 CBaseMiddleware::MontaRegistro(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg) {
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 regGrava{};
    regGrava.regDmcIntegracaoOrigem = reg.regDmcIntegracaoOrigem;
    regGrava.regDmcMovimentoOrigem = reg.regDmcMovimentoOrigem;
    regGrava.regDataHoraInclusao = reg.regDataHoraInclusao;
    regGrava.regDataHoraAlteracaoStatus = reg.regDataHoraAlteracaoStatus;
    regGrava.uiBaseDadosTerceiro = reg.uiBaseDadosTerceiro;
    regGrava.eTipoIntegracao = reg.eTipoIntegracao;
    regGrava.eTipoTransacao = reg.eTipoTransacao;
    regGrava.ulPonteiroFilial = reg.ulPonteiroFilial;
    regGrava.ulPonteiroUsuarioInclusao = reg.ulPonteiroUsuarioInclusao;
    regGrava.ulPonteiroUsuarioCancelamento = reg.ulPonteiroUsuarioCancelamento;
    regGrava.cReconsultarIdTerceiros = reg.cReconsultarIdTerceiros;
    regGrava.ucTipoPonteiroAuxiliar = reg.ucTipoPonteiroAuxiliar;
    regGrava.ulPonteiroAuxiliar = reg.ulPonteiroAuxiliar;
    return regGrava;
}
