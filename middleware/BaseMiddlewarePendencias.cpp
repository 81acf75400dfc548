// CBaseMiddleware: what is asked of external systems without an exchange: the pending items of a record,
// which are recorded as such, and direct queries; and what an exchange has recorded.
#include <cstring>

#include "middleware/BaseMiddleware.h"
#include "middleware/XVItemTroca.h"
#include "middleware/XVValidacaoIntegracao.h"

HRESULT CBaseMiddleware::GravaPendenciaIntegracao(REG_XVDMC regDmcIntegracaoOrigem,
                                                  tagREG_CR_INTEGRACAO_MIDDLEWAREPS regIntegracaoPS) {
    XV_ESCOPO({"regDmcIntegracaoOrigem", regDmcIntegracaoOrigem.uiValor});
    m_ultimasGravadas.Comeca(0);
    XV_CHECK(ValidaAcessoGravacao());
    XV_CHECK(XVValidacaoIntegracao::ValidaDmc(regDmcIntegracaoOrigem));
    XV_CHECK(ValidaRegistro(regIntegracaoPS));
    const CXVAcessoDefault acesso(this);
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS regPS = regIntegracaoPS;
    regPS.regDmcIntegracaoOrigem = regDmcIntegracaoOrigem;
    regPS.regRegistroJSON = regPS.regMensagemIntegracao = regPS.regJSONRetornoIntegracao = {};
    regPS.uiChaveIntegracaoSistemaTerceiro = 0;
    CListaPendencias listaDados;
    XV_CHECK(GetListaDadosIntegracaoPendente(regPS, listaDados));
    m_ultimasGravadas.Comeca(listaDados.size());
    CXVMiddlewareFacade facade;
    XV_CHECK(facade.Inicializa(this));
    for (const auto& rItem : listaDados) {
        const HRESULT hr = GravaItemPendente(facade, rItem, regPS);
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

HRESULT CBaseMiddleware::GravaItemPendente(CXVMiddlewareFacade& facade,
                                           const CXVDadosCR_PendenciaIntegracaoSistema& rItem,
                                           const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regBase) {
    CXVDadosCR_IntegracaoMiddleware dados;
    XV_CHECK_EM("GravaPendenciaIntegracao", dados.CopiarDe(regBase));
    dados.eStatusIntegracao = eXVSMiddleware_Pendente;
    dados.cReconsultarIdTerceiros = rItem.cReconsultarIdTerceiros;
    XVItemTroca::CopiaItem(rItem, &dados);

    CXVDadosCR_ParametrosIntegracao dadosParamentrosIntegracao =
        XVItemTroca::MontaParametros(dados.ComoRegistro());
    dadosParamentrosIntegracao.regDmcOrigem = rItem.regDmcOrigem;
    XV_CHECK_EM("GravaPendenciaIntegracao", facade.AtualizaParametrosIntegracao(dadosParamentrosIntegracao));
    dados.eTipoIntegracao = dadosParamentrosIntegracao.eTipoIntegracao;
    dados.eTipoTransacao = dadosParamentrosIntegracao.eTipoTransacao;
    dados.ulPonteiroFilial = dadosParamentrosIntegracao.ulPonteiroFilial;
    dados.regDmcMovimentoOrigem = dadosParamentrosIntegracao.regDmcOrigem;
    dados.uiChaveRegistroSistemaTerceiro = dadosParamentrosIntegracao.uiChaveRegistroSistemaTerceiro;

    // An entry of the key map belongs to a record of the suite. Without such a record there is nothing to
    // map, and the integration would never be found again; so neither is recorded.
    if (dados.regDmcMovimentoOrigem.EhNulo())
        XV_FALHA_EM("GravaPendenciaIntegracao", E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA);
    REG_XVDMC regDmc;
    const tagREG_CR_INTEGRACAO_MIDDLEWAREPS regPS = dados.ComoRegistro();
    XV_CHECK_EM("GravaPendenciaIntegracao", GravaInternalIntegracao(&regDmc, &regPS));
    m_ultimasGravadas.Inclui(regDmc);
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS regPSChave{};
    regPSChave.regDmcRegistroTelvo = dados.regDmcMovimentoOrigem;
    regPSChave.uiBaseDadosTerceiro = dados.uiBaseDadosTerceiro;
    regPSChave.eTipoIntegracao = dados.eTipoIntegracao;
    regPSChave.eSistemaIntegracao = dados.eSistemaIntegracao;
    regPSChave.regDmcOrigemIntegracao = regDmc;
    XV_CHECK_EM("GravaPendenciaIntegracao", GravaChaveRegistroTelvoParaTerceiroPendente(regPSChave));
    return S_OK;
}

HRESULT CBaseMiddleware::OnFuncaoGenerica(XVUInt ulFuncao, std::span<const XVByte> entrada,
                                          std::vector<XVByte>& saida) {
    if (ulFuncao != k_ulFuncaoUltimasGravadas)
        return CXVOperacoesGenericas::OnFuncaoGenerica(ulFuncao, entrada, saida);
    if (!entrada.empty()) return E_INVALIDARG;
    const std::vector<REG_XVDMC> lista = m_ultimasGravadas.Get();
    saida.resize(lista.size() * sizeof(REG_XVDMC));
    if (!lista.empty()) std::memcpy(saida.data(), lista.data(), saida.size());
    return S_OK;
}

HRESULT CBaseMiddleware::BuscaDadosSistemaTerceiro(
    const tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS& regConsultaPS,
    tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pRegStatusPS) {
    XV_ESCOPO({"eTipoConsulta", XVUInt64{regConsultaPS.eTipoConsulta}});
    if (pRegStatusPS == nullptr) XV_FALHA(E_POINTER);
    *pRegStatusPS = {};
    XV_CHECK(ValidaAcesso());
    XV_CHECK(XVValidacaoIntegracao::ValidaTipoConsulta(regConsultaPS.eTipoConsulta));
    const CXVAcessoDefault acesso(this);
    CXVDadosCR_ConsultaSistemaTerceiro dadosConsultaSistemaTerceiro;
    XV_CHECK(dadosConsultaSistemaTerceiro.CopiarDe(regConsultaPS));
    CXVDadosCR_StatusConsultaSistemaTerceiro dadosStatusConsultaSistemaTerceiro;
    CXVMiddlewareFacade facade;
    XV_CHECK(facade.Inicializa(this));
    XV_CHECK(
        facade.BuscaDadosSistemaTerceiro(dadosConsultaSistemaTerceiro, dadosStatusConsultaSistemaTerceiro));
    XV_CHECK(dadosStatusConsultaSistemaTerceiro.CopiarParaPS(pRegStatusPS));
    return S_OK;
}
