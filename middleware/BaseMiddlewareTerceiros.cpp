// CBaseMiddleware: the exchange with external systems. The store's lock is taken only by the recording
// of each result, never while a provider works.
#include "middleware/BaseMiddleware.h"
#include "middleware/XVCheckOperacao.h"
#include "middleware/XVValidacaoIntegracao.h"

namespace {

bool EhItemIgnorado(const CXVDadosCR_PendenciaIntegracaoSistema& rItem) {
    return rItem.sJSON.empty() || rItem.eSistemaIntegracao == Tipo_Nenhum;
}

CXVDadosCR_ParametrosIntegracao MontaParametros(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regPS) {
    CXVDadosCR_ParametrosIntegracao dados;
    dados.regDmcOrigem = regPS.regDmcIntegracaoOrigem;
    dados.regDmcIntegracao = regPS.regDmc;
    dados.uiChaveRegistroSistemaTerceiro = regPS.uiChaveRegistroSistemaTerceiro;
    dados.uiBaseDadosTerceiro = regPS.uiBaseDadosTerceiro;
    dados.eTipoIntegracao = regPS.eTipoIntegracao;
    dados.eSistemaIntegracao = regPS.eSistemaIntegracao;
    dados.eTipoTransacao = regPS.eTipoTransacao;
    dados.ulPonteiroFilial = regPS.ulPonteiroFilial;
    dados.ulPonteiroAuxiliar = regPS.ulPonteiroAuxiliar;
    dados.ucTipoPonteiroAuxiliar = regPS.ucTipoPonteiroAuxiliar;
    return dados;
}

}  // namespace

HRESULT CBaseMiddleware::GetListaDadosIntegracaoPendente(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regPS,
                                                         CListaPendencias& listaDados) {
    CXVMiddlewareFacade facade;
    XV_CHECK(facade.Inicializa(this));
    const CXVDadosCR_ParametrosIntegracao dadosParametrosIntegracao = MontaParametros(regPS);
    XV_CHECK(facade.BuscaIntegracoes(dadosParametrosIntegracao, listaDados));
    XV_CHECK(ValidaProvedores(listaDados));
    return S_OK;
}

// All systems are asked for before the first item is exchanged or stored.
HRESULT CBaseMiddleware::ValidaProvedores(const CListaPendencias& listaDados) const {
    for (const auto& rItem : listaDados)
        if (!EhItemIgnorado(rItem) && CXVProvedores::Busca(rItem.eSistemaIntegracao) == nullptr)
            XV_FALHA(E_NOTIMPL);
    return S_OK;
}

HRESULT CBaseMiddleware::GravaIntegracaoInstantanea(REG_XVDMC* pDmcRegistroIndex,
                                                    tagREG_CR_INTEGRACAO_MIDDLEWAREPS regIntegracaoPS) {
    XV_ESCOPO({"regDmc", pDmcRegistroIndex != nullptr ? pDmcRegistroIndex->uiValor : 0});
    if (pDmcRegistroIndex == nullptr) XV_FALHA(E_POINTER);
    XV_CHECK(ValidaAcessoGravacao());
    if (!pDmcRegistroIndex->EhNulo())
        XV_CHECK(XVValidacaoIntegracao::ValidaDmcIntegracao(*pDmcRegistroIndex));
    XV_CHECK(ValidaRegistro(regIntegracaoPS));
    const CXVAcessoDefault acesso(this);

    tagREG_CR_INTEGRACAO_MIDDLEWAREPS regPS{};
    regPS.eTipoIntegracao = regIntegracaoPS.eTipoIntegracao;
    regPS.regDmcIntegracaoOrigem = regIntegracaoPS.regDmcIntegracaoOrigem;
    regPS.eTipoTransacao = regIntegracaoPS.eTipoTransacao;
    regPS.ulPonteiroFilial = regIntegracaoPS.ulPonteiroFilial;
    regPS.ulPonteiroAuxiliar = regIntegracaoPS.ulPonteiroAuxiliar;
    regPS.ucTipoPonteiroAuxiliar = regIntegracaoPS.ucTipoPonteiroAuxiliar;
    regPS.regDataHoraInclusao = REG_XVDMAHMSUTC::Agora();
    regPS.ulPonteiroUsuarioInclusao = GetUsuario();
    regPS.regDmc = *pDmcRegistroIndex;

    CListaPendencias listaDados;
    XV_CHECK(GetListaDadosIntegracaoPendente(regPS, listaDados));
    CXVMiddlewareFacade facade;
    XV_CHECK(facade.Inicializa(this));
    const REG_XVDMC regDmcDoChamador = *pDmcRegistroIndex;
    for (const auto& rItem : listaDados) {
        if (EhItemIgnorado(rItem)) continue;
        REG_XVDMC regDmcItem = regDmcDoChamador;
        const HRESULT hr = TrocaItem(facade, rItem, regPS, &regDmcItem);
        // What was recorded stays recorded, whatever the closing operation answers.
        if (SUCCEEDED(hr) || !(regDmcItem == regDmcDoChamador)) *pDmcRegistroIndex = regDmcItem;
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

// One item: every field starts from the caller's record, nothing comes from the item before.
HRESULT CBaseMiddleware::TrocaItem(CXVMiddlewareFacade& facade,
                                   const CXVDadosCR_PendenciaIntegracaoSistema& rItem,
                                   const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regPS, REG_XVDMC* pDmc) {
    CXVDadosCR_IntegracaoMiddleware dadosIntegreacaoMidleware;
    XV_CHECK_EM("GravaIntegracaoInstantanea", dadosIntegreacaoMidleware.CopiarDe(regPS));
    dadosIntegreacaoMidleware.eSistemaIntegracao = rItem.eSistemaIntegracao;
    dadosIntegreacaoMidleware.regDmcMovimentoOrigem = rItem.regDmcOrigem;
    dadosIntegreacaoMidleware.sRegistroJSON = rItem.sJSON;
    if (rItem.ulPonteiroFilial != 0) dadosIntegreacaoMidleware.ulPonteiroFilial = rItem.ulPonteiroFilial;
    dadosIntegreacaoMidleware.uiBaseDadosTerceiro = rItem.uiBaseDadosTerceiro;
    dadosIntegreacaoMidleware.uiChaveRegistroSistemaTerceiro = rItem.uiChaveRegistroSistemaTerceiro;
    if (!pDmc->EhNulo()) {
        // The external system knows an existing integration by its own key.
        REG_CR_INDEX_INTEGRACAO_V1 regIndex;
        // clang-format off
        XV_CHECK_EM("GravaIntegracaoInstantanea", m_pDataBase->m_IndexIntegracao.LeIndex(CXVDataBase_CR_Middleware::GetChaveIndex(*pDmc), &regIndex, EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
        // clang-format on
        dadosIntegreacaoMidleware.uiChaveIntegracaoSistemaTerceiro =
            regIndex.uiChaveIntegracaoSistemaTerceiro;
    }
    XV_CHECK_EM("GravaIntegracaoInstantanea", facade.RealizaOperacaoAnterior(dadosIntegreacaoMidleware));
    const HRESULT hr = ExecutaTransacao(dadosIntegreacaoMidleware, pDmc);
    if (FAILED(hr)) return hr;

    CXVDadosCR_ParametrosIntegracao dadosParametrosIntegracao =
        MontaParametros(dadosIntegreacaoMidleware.ComoRegistro());
    dadosParametrosIntegracao.regDmcOrigem = rItem.regDmcOrigem;
    dadosParametrosIntegracao.regDmcIntegracao = *pDmc;
    XV_CHECK_EM("GravaIntegracaoInstantanea", facade.RealizaOperacaoPosterior(dadosParametrosIntegracao));
    return S_OK;
}

HRESULT CBaseMiddleware::ExecutaTransacao(CXVDadosCR_IntegracaoMiddleware& dados,
                                          REG_XVDMC* pDmcRegistroIndex) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS regPS{};
    switch (dados.eTipoTransacao) {
        case eXVSMiddleware_Inclusao:
            XV_CHECK_EM("GravaIntegracaoInstantanea",
                        CXVMiddlewareIntegracaoSistemas::EnviaJsonIntegracaoSistemasTerceiros(dados, this));
            regPS = dados.ComoRegistro();
            XV_CHECK_EM("GravaIntegracaoInstantanea", GravaInternalIntegracao(pDmcRegistroIndex, &regPS));
            break;
        case eXVSMiddleware_Alteracao:
            if (pDmcRegistroIndex->EhNulo()) break;
            XV_CHECK_EM(
                "GravaIntegracaoInstantanea",
                CXVMiddlewareIntegracaoSistemas::BuscaDadosIntegracaoSistemasTerceiros(dados, nullptr, this));
            regPS = dados.ComoRegistro();
            XV_CHECK_EM("GravaIntegracaoInstantanea", GravaIntegracao(pDmcRegistroIndex, &regPS));
            break;
        case eXVSMiddleware_Exclusao:
            XV_CHECK_EM("GravaIntegracaoInstantanea",
                        CXVMiddlewareIntegracaoSistemas::ExcluiDadosIntegracaoSistemasTerceiros(dados, this));
            if (dados.eStatusIntegracao != eXVSMiddleware_Cancelado) break;
            regPS = dados.ComoRegistro();
            XV_CHECK_EM("GravaIntegracaoInstantanea", GravaIntegracao(pDmcRegistroIndex, &regPS));
            break;
        default:
            break;
    }
    return S_OK;
}

HRESULT CBaseMiddleware::GravaPendenciaIntegracao(REG_XVDMC regDmcIntegracaoOrigem,
                                                  tagREG_CR_INTEGRACAO_MIDDLEWAREPS regIntegracaoPS) {
    XV_ESCOPO({"regDmcIntegracaoOrigem", regDmcIntegracaoOrigem.uiValor});
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
    CXVMiddlewareFacade facade;
    XV_CHECK(facade.Inicializa(this));
    for (const auto& rItem : listaDados) {
        if (EhItemIgnorado(rItem)) continue;
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
    dados.regDmcMovimentoOrigem = rItem.regDmcOrigem;
    dados.eSistemaIntegracao = rItem.eSistemaIntegracao;
    dados.sRegistroJSON = rItem.sJSON;
    dados.cReconsultarIdTerceiros = rItem.cReconsultarIdTerceiros;
    dados.uiBaseDadosTerceiro = rItem.uiBaseDadosTerceiro;
    if (rItem.ulPonteiroFilial != 0) dados.ulPonteiroFilial = rItem.ulPonteiroFilial;
    dados.uiChaveRegistroSistemaTerceiro = rItem.uiChaveRegistroSistemaTerceiro;

    CXVDadosCR_ParametrosIntegracao dadosParamentrosIntegracao = MontaParametros(dados.ComoRegistro());
    dadosParamentrosIntegracao.regDmcOrigem = rItem.regDmcOrigem;
    XV_CHECK_EM("GravaPendenciaIntegracao", facade.AtualizaParametrosIntegracao(dadosParamentrosIntegracao));
    dados.eTipoIntegracao = dadosParamentrosIntegracao.eTipoIntegracao;
    dados.eTipoTransacao = dadosParamentrosIntegracao.eTipoTransacao;
    dados.ulPonteiroFilial = dadosParamentrosIntegracao.ulPonteiroFilial;
    dados.regDmcMovimentoOrigem = dadosParamentrosIntegracao.regDmcOrigem;
    dados.uiChaveRegistroSistemaTerceiro = dadosParamentrosIntegracao.uiChaveRegistroSistemaTerceiro;

    REG_XVDMC regDmc;
    const tagREG_CR_INTEGRACAO_MIDDLEWAREPS regPS = dados.ComoRegistro();
    XV_CHECK_EM("GravaPendenciaIntegracao", GravaInternalIntegracao(&regDmc, &regPS));
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS regPSChave{};
    regPSChave.regDmcRegistroTelvo = dados.regDmcMovimentoOrigem;
    regPSChave.uiBaseDadosTerceiro = dados.uiBaseDadosTerceiro;
    regPSChave.eTipoIntegracao = dados.eTipoIntegracao;
    regPSChave.eSistemaIntegracao = dados.eSistemaIntegracao;
    regPSChave.regDmcOrigemIntegracao = regDmc;
    XV_CHECK_EM("GravaPendenciaIntegracao", GravaChaveRegistroTelvoParaTerceiroPendente(regPSChave));
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
