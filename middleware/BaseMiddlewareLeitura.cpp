// CBaseMiddleware: reading integrations by DMC.
#include <algorithm>
#include <limits>

#include "contract/XVCR_BuffersPS.h"
#include "middleware/BaseMiddleware.h"
#include "middleware/XVParteDoMomento.h"
#include "platform/XVAmbienteSO.h"

HRESULT CBaseMiddleware::LeIntegracao(REG_XVDMC regDmc, tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pRegIntegracaoPS,
                                      XVUInt64 ullFlagLeitura) {
    XV_ESCOPO({"regDmc", regDmc.uiValor}, {"ullFlagLeitura", ullFlagLeitura});
    if (pRegIntegracaoPS == nullptr) XV_FALHA(E_POINTER);
    *pRegIntegracaoPS = {};
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    if ((ullFlagLeitura & k_ullConsultaSistemaTerceiro) == 0) {
        SIntegracaoSaida saida;
        const HRESULT hr = LeDados(regDmc, &saida, ullFlagLeitura);
        return FAILED(hr) ? hr : Entrega(saida, pRegIntegracaoPS);
    }
    CXVDadosCR_IntegracaoMiddleware dadosIntegracao;
    HRESULT hr = LeDados(regDmc, &dadosIntegracao, ullFlagLeitura);
    if (SUCCEEDED(hr)) hr = ConsultaSistemaTerceiro(dadosIntegracao, ullFlagLeitura);
    if (FAILED(hr)) return hr;
    XV_CHECK(dadosIntegracao.CopiarParaPS(pRegIntegracaoPS));
    return S_OK;
}

HRESULT CBaseMiddleware::ConsultaSistemaTerceiro(CXVDadosCR_IntegracaoMiddleware& dadosIntegracao,
                                                 XVUInt64 ullFlagLeitura) {
    XV_CHECK_EM("LeIntegracao", CXVMiddlewareIntegracaoSistemas::BuscaDadosIntegracaoSistemasTerceiros(
                                    dadosIntegracao, nullptr, this));
    return CompletaComSistemaTerceiro(dadosIntegracao, (ullFlagLeitura & k_ullOperacaoPosterior) != 0);
}

template <class TDados>
HRESULT CBaseMiddleware::LeDados(REG_XVDMC regDmc, TDados* pDados, XVUInt64 ullFlagLeitura) {
    const auto le = [&] {
        *pDados = {};
        return LeRegistros(regDmc, pDados, ullFlagLeitura);
    };
    // Of a list a viewer reads several in one moment.
    return CXVMomento::GetAtual() != nullptr ? le() : LeDeUmMomento(le);
}

template HRESULT CBaseMiddleware::LeDados(REG_XVDMC, CXVDadosCR_IntegracaoMiddleware*, XVUInt64);

template <class TDados>
HRESULT CBaseMiddleware::LeRegistros(REG_XVDMC regDmc, TDados* pDados, XVUInt64 ullFlagLeitura) {
    REG_CR_INDEX_INTEGRACAO_V1 regIndex;
    XV_CHECK_EM("LeIntegracao", m_pDataBase->m_IndexIntegracao.LeIndex(
                                    CXVDataBase_CR_Middleware::GetChaveIndex(regDmc), &regIndex,
                                    EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
    // Between a viewer's look-up and its reading, the index record may have passed to a newer integration
    // with its key.
    if (!(regIndex.regDmcIntegracao == regDmc))
        XV_FALHA_EM("LeIntegracao", E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    const XVUInt64 uiChaveNomeArquivo = regDmc.GetDma().ToChave();
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 reg;
    XV_CHECK_EM("LeIntegracao", m_pDataBase->m_Integracao.Le(uiChaveNomeArquivo, regDmc.GetPonteiro(), &reg));
    auto& rCampos = XVCampos(*pDados);
    rCampos.uiChaveIntegracaoSistemaTerceiro = regIndex.uiChaveIntegracaoSistemaTerceiro;
    rCampos.eStatusIntegracao = regIndex.eStatusIntegracao;
    rCampos.eSistemaIntegracao = regIndex.eSistemaIntegracao;
    return LeDoRegistro(regDmc, reg, pDados, ullFlagLeitura);
}

template <class TDados>
HRESULT CBaseMiddleware::LeDoRegistro(REG_XVDMC regDmc, const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg,
                                      TDados* pDados, XVUInt64 ullFlagLeitura) {
    auto& rCampos = XVCampos(*pDados);
    rCampos.regDmc = regDmc;
    rCampos.regDmcIntegracaoOrigem = reg.regDmcIntegracaoOrigem;
    rCampos.regDmcMovimentoOrigem = reg.regDmcMovimentoOrigem;
    rCampos.regDataHoraInclusao = reg.regDataHoraInclusao;
    rCampos.regDataHoraAlteracaoStatus = reg.regDataHoraAlteracaoStatus;
    rCampos.uiBaseDadosTerceiro = reg.uiBaseDadosTerceiro;
    rCampos.eTipoIntegracao = reg.eTipoIntegracao;
    rCampos.eTipoTransacao = reg.eTipoTransacao;
    rCampos.ulPonteiroFilial = reg.ulPonteiroFilial;
    rCampos.ulPonteiroUsuarioInclusao = reg.ulPonteiroUsuarioInclusao;
    rCampos.ulPonteiroUsuarioCancelamento = reg.ulPonteiroUsuarioCancelamento;
    rCampos.ulPonteiroAuxiliar = reg.ulPonteiroAuxiliar;
    rCampos.cReconsultarIdTerceiros = reg.cReconsultarIdTerceiros;
    rCampos.ucTipoPonteiroAuxiliar = reg.ucTipoPonteiroAuxiliar;
    return LeTextos(regDmc.GetDma().ToChave(), reg, pDados, ullFlagLeitura);
}

template HRESULT CBaseMiddleware::LeDoRegistro(REG_XVDMC, const REG_CR_INTEGRACAO_MIDDLEWARE_V2&,
                                               CXVDadosCR_IntegracaoMiddleware*, XVUInt64);

template <class TDados>
HRESULT CBaseMiddleware::LeTextos(XVUInt64 uiChaveNomeArquivo, const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg,
                                  TDados* pDados, XVUInt64 ullFlagLeitura) {
    auto& sJSON = pDados->sRegistroJSON;
    auto& sMensagem = pDados->sMensagemIntegracao;
    auto& sJSONRetornoIntegracao = pDados->sJSONRetornoIntegracao;
    if ((ullFlagLeitura & k_ullLeJSON) != 0 && reg.ulPonteiroJSONRegistro != 0)
        XV_CHECK_EM("LeIntegracao",
                    m_pDataBase->m_JSONIntegracao.Le(uiChaveNomeArquivo, reg.ulPonteiroJSONRegistro, &sJSON));
    if ((ullFlagLeitura & k_ullLeMensagem) != 0 && reg.ulPonteiroMensagemRetorno != 0)
        XV_CHECK_EM("LeIntegracao", m_pDataBase->m_MensagemIntegracao.Le(
                                        uiChaveNomeArquivo, reg.ulPonteiroMensagemRetorno, &sMensagem));
    if ((ullFlagLeitura & k_ullLeJSONRetorno) != 0 && reg.ulPonteiroJSONRetornoIntegracao != 0)
        XV_CHECK_EM("LeIntegracao",
                    m_pDataBase->m_JSONRetornoIntegracao.Le(
                        uiChaveNomeArquivo, reg.ulPonteiroJSONRetornoIntegracao, &sJSONRetornoIntegracao));
    return S_OK;
}

HRESULT CBaseMiddleware::CompletaComSistemaTerceiro(CXVDadosCR_IntegracaoMiddleware& dadosIntegracao,
                                                    bool bOperacaoPosterior) {
    CXVMiddlewareFacade facade;
    XV_CHECK_EM("LeIntegracao", facade.Inicializa(this));
    XV_CHECK_EM("LeIntegracao", facade.RealizaOperacaoAnterior(dadosIntegracao));
    if (!bOperacaoPosterior) return S_OK;
    CXVDadosCR_ParametrosIntegracao dadosParametrosIntegracao;
    dadosParametrosIntegracao.regDmcOrigem = dadosIntegracao.regDmcMovimentoOrigem;
    dadosParametrosIntegracao.regDmcIntegracao = dadosIntegracao.regDmc;
    dadosParametrosIntegracao.eTipoIntegracao = dadosIntegracao.eTipoIntegracao;
    dadosParametrosIntegracao.eSistemaIntegracao = dadosIntegracao.eSistemaIntegracao;
    dadosParametrosIntegracao.eTipoTransacao = dadosIntegracao.eTipoTransacao;
    dadosParametrosIntegracao.ulPonteiroFilial = dadosIntegracao.ulPonteiroFilial;
    dadosParametrosIntegracao.uiBaseDadosTerceiro = dadosIntegracao.uiBaseDadosTerceiro;
    XV_CHECK_EM("LeIntegracao", facade.RealizaOperacaoPosterior(dadosParametrosIntegracao));
    return S_OK;
}

HRESULT CBaseMiddleware::ConfereLista(const _REG_DF_LISTA_XVDMCPS& rListaPS) {
    // A list may name an integration more than once; one longer than this has at most one key for each.
    constexpr XVUInt64 k_uiComRepetidas = 1000000;
    if (rListaPS.ulQuantidade > std::max(k_uiComRepetidas, m_pDataBase->m_IndexIntegracao.GetQtdRegistros()))
        XV_FALHA_EM("LeIntegracoes", E_INVALIDARG);
    for (const REG_XVDMC regDmc : std::span(rListaPS.pLista, rListaPS.ulQuantidade)) {
        XVUInt uiPosicao = 0;
        XV_CHECK_EM("LeIntegracoes", m_pDataBase->m_IndexIntegracao.ExisteIndex(
                                         CXVDataBase_CR_Middleware::GetChaveIndex(regDmc), uiPosicao,
                                         EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
        if (uiPosicao == 0) XV_FALHA_EM("LeIntegracoes", E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    }
    return S_OK;
}

template <class TDados>
HRESULT CBaseMiddleware::LeDadosDaLista(const _REG_DF_LISTA_XVDMCPS& rListaPS,
                                        std::vector<TDados>& listaDadosIntegracao, XVUInt64 ullFlagLeitura) {
    // Each moment of a viewer opens the files anew. A busy writer leaves only short ones: each attempt reads
    // half as much as the one before.
    constexpr XVUInt k_ulPorMomento = 256;
    // A viewer works for its own process alone, and would open the index for every key.
    if (!EhSomenteLeitura()) {
        XV_CHECK_EM("LeIntegracoes", ConfereLista(rListaPS));
        listaDadosIntegracao.reserve(rListaPS.ulQuantidade);
    }
    for (XVUInt ulLidas = 0; ulLidas < rListaPS.ulQuantidade;) {
        XVUInt ulQtd = std::min(k_ulPorMomento, rListaPS.ulQuantidade - ulLidas);
        XVUInt ulAte = ulLidas;
        const auto leParte = [&] {
            const std::span<const REG_XVDMC> aResto(rListaPS.pLista + ulLidas,
                                                    rListaPS.ulQuantidade - ulLidas);
            ulAte = ulLidas + static_cast<XVUInt>(XVParteDoMomento(aResto, ulQtd));
            ulQtd = std::max<XVUInt>(ulQtd / 2, 1);
            listaDadosIntegracao.resize(ulAte);
            for (XVUInt i = ulLidas; i < ulAte; ++i)
                XV_CHECK_EM("LeIntegracoes",
                            LeDados(rListaPS.pLista[i], &listaDadosIntegracao[i], ullFlagLeitura));
            return S_OK;
        };
        const HRESULT hr = EhSomenteLeitura() ? LeDeUmMomento(leParte) : leParte();
        if (FAILED(hr)) return hr;
        ulLidas = ulAte;
    }
    return S_OK;
}

HRESULT CBaseMiddleware::ConsultaSistemaTerceiro(
    std::vector<CXVDadosCR_IntegracaoMiddleware>& listaDadosIntegracao, XVUInt64 ullFlagLeitura) {
    XV_CHECK_EM("LeIntegracoes", CXVMiddlewareIntegracaoSistemas::BuscaDadosIntegracaoSistemasTerceiros(
                                     listaDadosIntegracao, this));
    for (CXVDadosCR_IntegracaoMiddleware& dadosIntegracao : listaDadosIntegracao) {
        const HRESULT hr =
            CompletaComSistemaTerceiro(dadosIntegracao, (ullFlagLeitura & k_ullOperacaoPosterior) != 0);
        if (FAILED(hr)) return hr;
    }
    return S_OK;
}

HRESULT CBaseMiddleware::LeIntegracoes(const _REG_DF_LISTA_XVDMCPS& rListaPS, XVUInt* pulQuantidade,
                                       tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppRegIntegracaoPS,
                                       XVUInt64 ullFlagLeitura) {
    XV_ESCOPO({"ulQuantidade", XVUInt64{rListaPS.ulQuantidade}}, {"ullFlagLeitura", ullFlagLeitura});
    if (pulQuantidade == nullptr || ppRegIntegracaoPS == nullptr) XV_FALHA(E_POINTER);
    *pulQuantidade = 0;
    *ppRegIntegracaoPS = nullptr;
    XV_CHECK(ValidaAcesso());
    if (rListaPS.ulQuantidade == 0) return S_OK;
    if (rListaPS.pLista == nullptr) XV_FALHA(E_INVALIDARG);
    const CXVAcessoDefault acesso(this);
    if ((ullFlagLeitura & k_ullConsultaSistemaTerceiro) == 0) {
        std::vector<SIntegracaoSaida> listaSaida;
        const HRESULT hr = LeDadosDaLista(rListaPS, listaSaida, ullFlagLeitura);
        return FAILED(hr) ? hr : EntregaLista(listaSaida, pulQuantidade, ppRegIntegracaoPS);
    }
    std::vector<CXVDadosCR_IntegracaoMiddleware> listaDadosIntegracao;
    HRESULT hr = LeDadosDaLista(rListaPS, listaDadosIntegracao, ullFlagLeitura);
    if (SUCCEEDED(hr)) hr = ConsultaSistemaTerceiro(listaDadosIntegracao, ullFlagLeitura);
    return FAILED(hr) ? hr : EntregaLista(listaDadosIntegracao, pulQuantidade, ppRegIntegracaoPS);
}

template <class TDados>
HRESULT CBaseMiddleware::EntregaLista(std::vector<TDados>& listaDadosIntegracao, XVUInt* pulQuantidade,
                                      tagREG_CR_INTEGRACAO_MIDDLEWAREPS** ppRegIntegracaoPS) {
    if (listaDadosIntegracao.size() >
        std::numeric_limits<std::size_t>::max() / sizeof(tagREG_CR_INTEGRACAO_MIDDLEWAREPS))
        XV_FALHA_EM("LeIntegracoes", E_OUTOFMEMORY);
    auto* pRegs = static_cast<tagREG_CR_INTEGRACAO_MIDDLEWAREPS*>(
        XVAmbienteSO::AlocaSaida(listaDadosIntegracao.size() * sizeof(tagREG_CR_INTEGRACAO_MIDDLEWAREPS)));
    if (pRegs == nullptr) XV_FALHA_EM("LeIntegracoes", E_OUTOFMEMORY);
    std::fill_n(pRegs, listaDadosIntegracao.size(), tagREG_CR_INTEGRACAO_MIDDLEWAREPS{});
    HRESULT hr = S_OK;
    for (std::size_t i = 0; i < listaDadosIntegracao.size() && SUCCEEDED(hr); ++i)
        hr = Entrega(listaDadosIntegracao[i], &pRegs[i]);
    if (FAILED(hr)) {
        for (std::size_t i = 0; i < listaDadosIntegracao.size(); ++i) XVLiberaBuffers(&pRegs[i]);
        XVAmbienteSO::LiberaSaida(pRegs);
        return hr;
    }
    *pulQuantidade = static_cast<XVUInt>(listaDadosIntegracao.size());
    *ppRegIntegracaoPS = pRegs;
    return S_OK;
}

HRESULT CBaseMiddleware::Entrega(SIntegracaoSaida& rSaida, tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg) {
    *pReg = rSaida.Entrega();
    return S_OK;
}

HRESULT CBaseMiddleware::Entrega(CXVDadosCR_IntegracaoMiddleware& rDados,
                                 tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg) {
    XV_CHECK_EM("LeIntegracoes", rDados.CopiarParaPS(pReg));
    rDados = {};  // its texts now stand in the output
    return S_OK;
}
