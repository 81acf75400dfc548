// CBaseMiddleware: the exchange with external systems. The store's lock is taken only by the recording
// of each result, never while a provider works. What would keep a result from being recorded is looked for
// before the first item is exchanged, for an exchange cannot be taken back.
#include <initializer_list>

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "middleware/BaseMiddleware.h"
#include "middleware/XVItemTroca.h"
#include "middleware/XVTrocaEmCurso.h"
#include "middleware/XVValidacaoIntegracao.h"
#include "support/trace/XVProfiler.h"

HRESULT CBaseMiddleware::GetListaDadosIntegracaoPendente(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regPS,
                                                         CListaPendencias& listaDados) {
    CXVMiddlewareFacade facade;
    XV_CHECK(facade.Inicializa(this));
    const CXVDadosCR_ParametrosIntegracao dadosParametrosIntegracao = XVItemTroca::MontaParametros(regPS);
    XV_CHECK(facade.BuscaIntegracoes(dadosParametrosIntegracao, listaDados));
    std::erase_if(listaDados, XVItemTroca::EhIgnorado);
    XV_CHECK(ValidaItens(listaDados));
    return S_OK;
}

// All items are looked at before the first one is exchanged or stored.
HRESULT CBaseMiddleware::ValidaItens(const CListaPendencias& listaDados) const {
    using namespace XVValidacaoIntegracao;
    if (listaDados.empty()) return S_OK;
    XV_CHECK(ValidaRelogio());
    for (const auto& rItem : listaDados) {
        if (XVProvedores::Busca(rItem.eSistemaIntegracao) == nullptr) XV_FALHA(E_NOTIMPL);
        XV_CHECK(ValidaSistemaIntegracao(rItem.eSistemaIntegracao));
        XV_CHECK(ValidaDmc(rItem.regDmcOrigem));
    }
    return S_OK;
}

// The integration that the results go to must be whole: key, record and texts are read, for the update
// rewrites them all. A new integration goes to the day's files; those that exist must open.
HRESULT CBaseMiddleware::ValidaDestino(REG_XVDMC regDmc, XVUInt eTipoTransacao) {
    if (!regDmc.EhNulo()) {
        CXVDadosCR_IntegracaoMiddleware dadosAtuais;
        XV_CHECK_EM("GravaIntegracaoInstantanea",
                    LeDados(regDmc, &dadosAtuais, k_ullLeJSON | k_ullLeMensagem | k_ullLeJSONRetorno));
    }
    if (eTipoTransacao == eXVSMiddleware_Inclusao || regDmc.EhNulo()) {
        const XVUInt64 uiChaveNomeArquivo = REG_XVDMAHMSUTC::Agora().GetDma().ToChave();
        for (CXVGroupFileBase* pGrupo : std::initializer_list<CXVGroupFileBase*>{
                 &m_pDataBase->m_Integracao, &m_pDataBase->m_JSONIntegracao,
                 &m_pDataBase->m_MensagemIntegracao, &m_pDataBase->m_JSONRetornoIntegracao})
            XV_CHECK_EM("GravaIntegracaoInstantanea", ValidaArquivoDoDia(*pGrupo, uiChaveNomeArquivo));
    }
    return S_OK;
}

HRESULT CBaseMiddleware::ValidaArquivoDoDia(CXVGroupFileBase& rGrupo, XVUInt64 uiChaveNomeArquivo) {
    std::string sPath;
    XV_CHECK_EM("GravaIntegracaoInstantanea",
                CXVDataBaseUtil::GetPathArquivo(
                    rGrupo.GetModulo(), GetEmpresa(),
                    XVNomeArquivo::ChaveParaNome(uiChaveNomeArquivo, rGrupo.GetNomeArquivo()), &sPath));
    std::string sNomeReal;
    bool bExiste = false;
    XV_CHECK_EM("GravaIntegracaoInstantanea", CXVDataBaseUtil::ExistePath(this, sPath, &bExiste, &sNomeReal));
    if (!bExiste) return S_OK;
    XVUInt64 uiQuantidade = 0;
    XV_CHECK_EM("GravaIntegracaoInstantanea", rGrupo.GetQtdRegistros(uiChaveNomeArquivo, &uiQuantidade));
    return S_OK;
}

HRESULT CBaseMiddleware::GravaIntegracaoInstantanea(REG_XVDMC* pDmcRegistroIndex,
                                                    tagREG_CR_INTEGRACAO_MIDDLEWAREPS regIntegracaoPS) {
    XV_ESCOPO({"regDmc", pDmcRegistroIndex != nullptr ? pDmcRegistroIndex->uiValor : 0});
    m_ultimasGravadas.Comeca(0);  // what is refused has recorded nothing either
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
    regPS.eSistemaIntegracao = regIntegracaoPS.eSistemaIntegracao;  // only whose pending items are asked for
    regPS.ulPonteiroFilial = regIntegracaoPS.ulPonteiroFilial;
    regPS.ulPonteiroAuxiliar = regIntegracaoPS.ulPonteiroAuxiliar;
    regPS.ucTipoPonteiroAuxiliar = regIntegracaoPS.ucTipoPonteiroAuxiliar;
    regPS.regDataHoraInclusao = REG_XVDMAHMSUTC::Agora();
    regPS.ulPonteiroUsuarioInclusao = GetUsuario();
    regPS.regDmc = *pDmcRegistroIndex;

    CListaPendencias listaDados;
    XV_CHECK(GetListaDadosIntegracaoPendente(regPS, listaDados));
    if (listaDados.empty()) return S_OK;
    m_ultimasGravadas.Comeca(listaDados.size());
    const REG_XVDMC regDmcDoChamador = *pDmcRegistroIndex;
    HRESULT hr = ValidaDestino(regDmcDoChamador, regPS.eTipoTransacao);
    if (FAILED(hr)) return hr;
    CXVMiddlewareFacade facade;
    XV_CHECK(facade.Inicializa(this));
    for (const auto& rItem : listaDados) {
        REG_XVDMC regDmcItem = regDmcDoChamador;
        hr = TrocaItem(facade, rItem, regPS, &regDmcItem);
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
    XVItemTroca::CopiaItem(rItem, &dadosIntegreacaoMidleware);
    if (!pDmc->EhNulo()) {
        // The external system knows an existing integration by its own key; to another system that key would
        // name somebody else's document.
        REG_CR_INDEX_INTEGRACAO_V1 regIndex;
        XV_CHECK_EM(
            "GravaIntegracaoInstantanea",
            m_pDataBase->m_IndexIntegracao.LeIndex(CXVDataBase_CR_Middleware::GetChaveIndex(*pDmc), &regIndex,
                                                   EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
        if (regIndex.eSistemaIntegracao == rItem.eSistemaIntegracao)
            dadosIntegreacaoMidleware.uiChaveIntegracaoSistemaTerceiro =
                regIndex.uiChaveIntegracaoSistemaTerceiro;
    }
    XV_CHECK_EM("GravaIntegracaoInstantanea", facade.RealizaOperacaoAnterior(dadosIntegreacaoMidleware));
    XV_CHECK_EM("GravaIntegracaoInstantanea", ValidaRegistro(dadosIntegreacaoMidleware.ComoRegistro()));
    const HRESULT hr = ExecutaTransacao(dadosIntegreacaoMidleware, pDmc);
    if (FAILED(hr)) return hr;

    CXVDadosCR_ParametrosIntegracao dadosParametrosIntegracao =
        XVItemTroca::MontaParametros(dadosIntegreacaoMidleware.ComoRegistro());
    dadosParametrosIntegracao.regDmcOrigem = rItem.regDmcOrigem;
    dadosParametrosIntegracao.regDmcIntegracao = *pDmc;
    XV_CHECK_EM("GravaIntegracaoInstantanea", facade.RealizaOperacaoPosterior(dadosParametrosIntegracao));
    return S_OK;
}

HRESULT CBaseMiddleware::ExecutaTransacao(CXVDadosCR_IntegracaoMiddleware& dados,
                                          REG_XVDMC* pDmcRegistroIndex) {
    const XVUInt eTransacao = dados.eTipoTransacao;
    if (eTransacao == XVSMiddleware_TipoTransacaoNenhum ||
        (eTransacao == eXVSMiddleware_Alteracao && pDmcRegistroIndex->EhNulo()))
        return S_OK;
    CXVTrocaEmCurso troca(this, dados, *pDmcRegistroIndex);
    const XVUInt64 uiChaveAnterior = dados.uiChaveIntegracaoSistemaTerceiro;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS regPS{};
    switch (eTransacao) {
        case eXVSMiddleware_Inclusao:
            XV_CHECK_EM("GravaIntegracaoInstantanea",
                        troca.Responde(CXVMiddlewareIntegracaoSistemas::EnviaJsonIntegracaoSistemasTerceiros(
                            dados, this)));
            regPS = dados.ComoRegistro();
            XV_CHECK_EM("GravaIntegracaoInstantanea",
                        troca.Grava(GravaInternalIntegracao(pDmcRegistroIndex, &regPS)));
            m_ultimasGravadas.Inclui(*pDmcRegistroIndex);
            break;
        case eXVSMiddleware_Alteracao:
            XV_CHECK_EM("GravaIntegracaoInstantanea",
                        troca.Responde(CXVMiddlewareIntegracaoSistemas::BuscaDadosIntegracaoSistemasTerceiros(
                            dados, nullptr, this)));
            CompletaRespostaSemChave(dados, uiChaveAnterior);
            regPS = dados.ComoRegistro();
            XV_CHECK_EM("GravaIntegracaoInstantanea",
                        troca.Grava(GravaIntegracao(pDmcRegistroIndex, &regPS)));
            m_ultimasGravadas.Inclui(*pDmcRegistroIndex);
            break;
        case eXVSMiddleware_Exclusao:
            XV_CHECK_EM(
                "GravaIntegracaoInstantanea",
                troca.Responde(
                    CXVMiddlewareIntegracaoSistemas::ExcluiDadosIntegracaoSistemasTerceiros(dados, this)));
            if (dados.eStatusIntegracao != eXVSMiddleware_Cancelado) {
                troca.ExclusaoSemConfirmacao();
                break;
            }
            regPS = dados.ComoRegistro();
            XV_CHECK_EM("GravaIntegracaoInstantanea",
                        troca.Grava(GravaIntegracao(pDmcRegistroIndex, &regPS)));
            m_ultimasGravadas.Inclui(*pDmcRegistroIndex);
            break;
        default:
            break;
    }
    return S_OK;
}

// A status that needs a key, answered without one, does not say that the document lost it: the key that is
// known stays. Where none is known the answer contradicts itself and is recorded as an error that says so.
void CBaseMiddleware::CompletaRespostaSemChave(CXVDadosCR_IntegracaoMiddleware& dados,
                                               XVUInt64 uiChaveAnterior) const {
    if (dados.uiChaveIntegracaoSistemaTerceiro != 0 ||
        XVValidacaoIntegracao::AdmiteChaveZerada(dados.eStatusIntegracao))
        return;
    dados.uiChaveIntegracaoSistemaTerceiro = uiChaveAnterior;
    if (uiChaveAnterior != 0) return;
    const std::string sAviso = "O sistema externo respondeu a situação " +
                               std::to_string(dados.eStatusIntegracao) + " sem informar a chave.";
    XVProfiler::RecordError(this, "CBaseMiddleware::GravaIntegracaoInstantanea", XVNomeFonte(), __LINE__,
                            "%s Sistema %u, origem %s; gravada como erro", sAviso.c_str(),
                            static_cast<unsigned>(dados.eSistemaIntegracao),
                            dados.regDmcMovimentoOrigem.ToString().c_str());
    dados.sMensagemIntegracao =
        dados.sMensagemIntegracao.empty() ? sAviso : sAviso + " " + dados.sMensagemIntegracao;
    dados.eStatusIntegracao = eXVSMiddleware_Erro;
}
