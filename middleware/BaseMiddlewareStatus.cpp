// CBaseMiddleware: the status that an external system returned.
#include "middleware/BaseMiddleware.h"
#include "middleware/XVCheckOperacao.h"
#include "middleware/XVValidacaoIntegracao.h"

// The text of a check is its trace text: such lines are not broken.
// clang-format off

HRESULT CBaseMiddleware::GravaStatusIntegracao(tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS regStatusIntegracaoPS) {
    XV_ESCOPO({"regDmc", regStatusIntegracaoPS.regDmc.uiValor});
    using namespace XVValidacaoIntegracao;
    XV_CHECK(ValidaAcessoGravacao());
    XV_CHECK(ValidaDmc(regStatusIntegracaoPS.regDmc));
    XV_CHECK(ValidaTexto(regStatusIntegracaoPS.regMensagemIntegracao));
    XV_CHECK(ValidaTexto(regStatusIntegracaoPS.regJSONRetornoIntegracao));
    XV_CHECK(ValidaStatusIntegracao(regStatusIntegracaoPS.eStatusIntegracao));
    XV_CHECK(ValidaSistemaIntegracao(regStatusIntegracaoPS.eSistemaIntegracao));
    const CXVAcessoDefault acesso(this);
    const auto bloqueio = BloqueiaAlteracao();
    REG_CR_INDEX_INTEGRACAO_V1 regIndex;
    XVUInt uiPosicaoIndex = 0;
    const HRESULT hr = LocalizaIndexDoStatus(regStatusIntegracaoPS, &regIndex, uiPosicaoIndex);
    return FAILED(hr) ? hr : AplicaStatus(regStatusIntegracaoPS, regIndex, uiPosicaoIndex);
}

HRESULT CBaseMiddleware::LocalizaIndexDoStatus(const tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS& regStatus,
                                               REG_CR_INDEX_INTEGRACAO_V1* pregIndex, XVUInt& uiPosicaoIndex) {
    if (!regStatus.regDmc.EhNulo()) {
        // Not found: position 0, and the read answers its position-zero error.
        const XVUInt64 uiChaveIndex = CXVDataBase_CR_Middleware::GetChaveIndex(regStatus.regDmc);
        XV_CHECK_EM("GravaStatusIntegracao", m_pDataBase->m_IndexIntegracao.ExisteIndex(uiChaveIndex, uiPosicaoIndex, EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
        XV_CHECK_TEXTO_EM("GravaStatusIntegracao", m_pDataBase->m_IndexIntegracao.Le(uiPosicaoIndex, pregIndex),
                       "m_pDataBase->m_IndexIntegracao.Le(uiPosicaoIndex, &regIndex)");
        return S_OK;
    }
    if (CXVDataBase_CR_Middleware::GetChaveIndexSistemaTerceiro(regStatus.uiChaveIntegracaoSistemaTerceiro,
                                                                regStatus.eSistemaIntegracao) == 0)
        XV_FALHA_EM("GravaStatusIntegracao", E_XVCR_INDEXACAO_CHAVE_INTEGRACAO_SISTEMA_TERCEIRO_ZERADA);
    XV_CHECK_EM("GravaStatusIntegracao", LocalizaIndexSistemaTerceiro(regStatus.uiChaveIntegracaoSistemaTerceiro, regStatus.eSistemaIntegracao,
                                          pregIndex, uiPosicaoIndex));
    if (uiPosicaoIndex == 0) XV_FALHA_EM("GravaStatusIntegracao", E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    return S_OK;
}

HRESULT CBaseMiddleware::AplicaStatus(const tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS& regStatus,
                                      REG_CR_INDEX_INTEGRACAO_V1 regIndex, XVUInt uiPosicaoIndex) {
    const REG_XVDMC regDmc = regIndex.regDmcIntegracao;
    const XVUInt64 uiChaveNomeArquivo = regDmc.GetDma().ToChave();
    XVUInt uiPosicao = regDmc.GetPonteiro();
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 regIntegracao;
    XV_CHECK_EM("GravaStatusIntegracao", m_pDataBase->m_Integracao.Le(uiChaveNomeArquivo, uiPosicao, &regIntegracao));
    regIntegracao.regDataHoraAlteracaoStatus = REG_XVDMAHMSUTC::Agora();
    if (regStatus.eStatusIntegracao == eXVSMiddleware_Cancelado)
        regIntegracao.ulPonteiroUsuarioCancelamento = GetUsuario();

    regIndex.eStatusIntegracao = regStatus.eStatusIntegracao;
    XV_CHECK_EM("GravaStatusIntegracao", m_pDataBase->m_IndexIntegracao.Grava(uiPosicaoIndex, regIndex));
    GravaLinhaLogGeral("GravaStatusIntegracao", DFSLOG_Servico::eDFSLOG_Alteracao, regDmc,
                       regIndex.uiChaveIntegracaoSistemaTerceiro, regIntegracao.regDmcMovimentoOrigem);

    XVUInt ulPonteiroJSONRetorno = regIntegracao.ulPonteiroJSONRetornoIntegracao;
    XVUInt ulPonteiroMensagem = regIntegracao.ulPonteiroMensagemRetorno;
    if (regStatus.regJSONRetornoIntegracao.ulQtdBytes != 0)
        XV_CHECK_TEXTO_EM("GravaStatusIntegracao", m_pDataBase->m_JSONRetornoIntegracao.Grava(uiChaveNomeArquivo, ulPonteiroJSONRetorno, CXVStringPS::RegToString(regStatus.regJSONRetornoIntegracao)),
                       "m_pDataBase->m_JSONRetornoIntegracao.Grava(uiChaveNomeArquivo, regIntegracao.ulPonteiroJSONRetornoIntegracao, CXVStringPS::RegToString(regStatusIntegracaoPS.regJSONRetornoIntegracao))");
    XV_CHECK_TEXTO_EM("GravaStatusIntegracao", m_pDataBase->m_MensagemIntegracao.Grava(uiChaveNomeArquivo, ulPonteiroMensagem, CXVStringPS::RegToString(regStatus.regMensagemIntegracao)),
                   "m_pDataBase->m_MensagemIntegracao.Grava(uiChaveNomeArquivo, regIntegracao.ulPonteiroMensagemRetorno, CXVStringPS::RegToString(regStatusIntegracaoPS.regMensagemIntegracao))");
    regIntegracao.ulPonteiroJSONRetornoIntegracao = ulPonteiroJSONRetorno;
    regIntegracao.ulPonteiroMensagemRetorno = ulPonteiroMensagem;
    XV_CHECK_EM("GravaStatusIntegracao", m_pDataBase->m_Integracao.Grava(uiChaveNomeArquivo, uiPosicao, regIntegracao));
    return S_OK;
}
// clang-format on
