// CBaseMiddleware: the status that an external system returned.
#include "middleware/BaseMiddleware.h"
#include "middleware/XVValidacaoIntegracao.h"

HRESULT CBaseMiddleware::GravaStatusIntegracao(
    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS regStatusIntegracaoPS) {
    XV_ESCOPO({"regDmc", regStatusIntegracaoPS.regDmc.uiValor});
    using namespace XVValidacaoIntegracao;
    XV_CHECK(ValidaAcessoGravacao());
    XV_CHECK(ValidaDmc(regStatusIntegracaoPS.regDmc));
    XV_CHECK(ValidaTexto(regStatusIntegracaoPS.regMensagemIntegracao));
    XV_CHECK(ValidaTexto(regStatusIntegracaoPS.regJSONRetornoIntegracao));
    XV_CHECK(ValidaStatusIntegracao(regStatusIntegracaoPS.eStatusIntegracao));
    XV_CHECK(ValidaSistemaIntegracao(regStatusIntegracaoPS.eSistemaIntegracao));
    const CXVAcessoDefault acesso(this);
    REG_XVDMC regDmc;
    REG_XVDMC regDmcMovimentoOrigem;
    XVUInt64 uiChaveSistemaTerceiro = 0;
    const XVUInt64 uiChave = CXVDataBase_CR_Middleware::GetChaveIndex(regStatusIntegracaoPS.regDmc);
    const HRESULT hr = ExecutaOperacao(EFila::eComOutras, uiChave, [&](CXVOperacao& operacao) {
        REG_CR_INDEX_INTEGRACAO_V1 regIndex;
        XVUInt uiPosicaoIndex = 0;
        const HRESULT hrLocaliza = LocalizaIndexDoStatus(regStatusIntegracaoPS, &regIndex, uiPosicaoIndex);
        if (FAILED(hrLocaliza)) return hrLocaliza;
        regDmc = regIndex.regDmcIntegracao;
        uiChaveSistemaTerceiro = regIndex.uiChaveIntegracaoSistemaTerceiro;
        if (TemNaFila(CXVDataBase_CR_Middleware::GetChaveIndex(regDmc))) return S_FALSE;
        operacao.SetChave(CXVDataBase_CR_Middleware::GetChaveIndex(regDmc));
        return PreparaStatus(operacao, regStatusIntegracaoPS, regIndex, uiPosicaoIndex,
                             &regDmcMovimentoOrigem);
    });
    if (FAILED(hr)) return hr;
    GravaLinhaLogGeral("GravaStatusIntegracao", regDmc, uiChaveSistemaTerceiro, regDmcMovimentoOrigem);
    return S_OK;
}

HRESULT CBaseMiddleware::LocalizaIndexDoStatus(const tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS& regStatus,
                                               REG_CR_INDEX_INTEGRACAO_V1* pregIndex,
                                               XVUInt& uiPosicaoIndex) {
    if (!regStatus.regDmc.EhNulo()) {
        // A key that the index does not hold leaves position 0, for which the read answers the code that
        // callers know for an unknown integration.
        const XVUInt64 uiChaveIndex = CXVDataBase_CR_Middleware::GetChaveIndex(regStatus.regDmc);
        XV_CHECK_EM("GravaStatusIntegracao", m_pDataBase->m_IndexIntegracao.ExisteIndex(
                                                 uiChaveIndex, uiPosicaoIndex,
                                                 EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
        XV_CHECK_EM("GravaStatusIntegracao", m_pDataBase->m_IndexIntegracao.Le(uiPosicaoIndex, pregIndex));
        return S_OK;
    }
    if (CXVDataBase_CR_Middleware::GetChaveIndexSistemaTerceiro(regStatus.uiChaveIntegracaoSistemaTerceiro,
                                                                regStatus.eSistemaIntegracao) == 0)
        XV_FALHA_EM("GravaStatusIntegracao", E_XVCR_INDEXACAO_CHAVE_INTEGRACAO_SISTEMA_TERCEIRO_ZERADA);
    XV_CHECK_EM("GravaStatusIntegracao",
                LocalizaIndexSistemaTerceiro(regStatus.uiChaveIntegracaoSistemaTerceiro,
                                             regStatus.eSistemaIntegracao, pregIndex, uiPosicaoIndex));
    if (uiPosicaoIndex == 0) XV_FALHA_EM("GravaStatusIntegracao", E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    return S_OK;
}

HRESULT CBaseMiddleware::PreparaStatus(CXVOperacao& operacao,
                                       const tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS& regStatus,
                                       REG_CR_INDEX_INTEGRACAO_V1 regIndex, XVUInt uiPosicaoIndex,
                                       REG_XVDMC* pRegDmcMovimentoOrigem) {
    const REG_XVDMC regDmc = regIndex.regDmcIntegracao;
    const XVUInt64 uiChaveNomeArquivo = regDmc.GetDma().ToChave();
    XVUInt uiPosicao = regDmc.GetPonteiro();
    // The record is packed. Aligned as a whole, it has its text positions aligned too, which are handed out
    // by reference.
    alignas(XVUInt) REG_CR_INTEGRACAO_MIDDLEWARE_V2 regIntegracao;
    XV_CHECK_EM("GravaStatusIntegracao",
                m_pDataBase->m_Integracao.Le(uiChaveNomeArquivo, uiPosicao, &regIntegracao));
    const bool bTemJSONRetorno = regStatus.regJSONRetornoIntegracao.ulQtdBytes != 0;
    XV_CHECK_EM("GravaStatusIntegracao", ConfereTextosDoDia(uiChaveNomeArquivo, false, bTemJSONRetorno));
    *pRegDmcMovimentoOrigem = regIntegracao.regDmcMovimentoOrigem;
    regIntegracao.regDataHoraAlteracaoStatus = REG_XVDMAHMSUTC::Agora();
    if (regStatus.eStatusIntegracao == eXVSMiddleware_Cancelado)
        regIntegracao.ulPonteiroUsuarioCancelamento = GetUsuario();
    regIndex.eStatusIntegracao = regStatus.eStatusIntegracao;

    if (bTemJSONRetorno)
        XV_GRAVA_EM(operacao, "GravaStatusIntegracao", m_pDataBase->m_JSONRetornoIntegracao,
                    uiChaveNomeArquivo, regIntegracao.ulPonteiroJSONRetornoIntegracao,
                    CXVStringPS::RegToString(regStatus.regJSONRetornoIntegracao));
    XV_GRAVA_EM(operacao, "GravaStatusIntegracao", m_pDataBase->m_MensagemIntegracao, uiChaveNomeArquivo,
                regIntegracao.ulPonteiroMensagemRetorno,
                CXVStringPS::RegToString(regStatus.regMensagemIntegracao));
    XV_GRAVA_EM(operacao, "GravaStatusIntegracao", m_pDataBase->m_Integracao, uiChaveNomeArquivo, uiPosicao,
                regIntegracao);
    XV_GRAVA_EM(operacao, "GravaStatusIntegracao", m_pDataBase->m_IndexIntegracao, uiPosicaoIndex, regIndex);
    return S_OK;
}
