// CBaseMiddleware: recording and updating integrations.
#include "middleware/BaseMiddleware.h"
#include "middleware/XVCheckOperacao.h"
#include "middleware/XVValidacaoIntegracao.h"

// The text of a check is its trace text: such lines are not broken.
// clang-format off

HRESULT CBaseMiddleware::GravaIntegracao(REG_XVDMC* pRegDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps) {
    XV_ESCOPO({"regDmc", pRegDmc != nullptr ? pRegDmc->uiValor : 0});
    if (pRegDmc == nullptr || pregps == nullptr) XV_FALHA(E_POINTER);
    if (pRegDmc->EhNulo()) {
        XV_CHECK(GravaInternalIntegracao(pRegDmc, pregps));
        return S_OK;
    }
    using namespace XVValidacaoIntegracao;
    XV_CHECK(ValidaAcessoGravacao());
    XV_CHECK(ValidaDmcIntegracao(*pRegDmc));
    XV_CHECK(ValidaRegistro(*pregps));
    const XVUInt eStatus = pregps->eStatusIntegracao;
    if (pregps->uiChaveIntegracaoSistemaTerceiro == 0 && eStatus != eXVSMiddleware_Pendente &&
        eStatus != eXVSMiddleware_Erro && eStatus != eXVSMiddleware_Cancelado)
        XV_FALHA(E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA);
    const CXVAcessoDefault acesso(this);
    const auto bloqueio = BloqueiaAlteracao();
    return AlteraIntegracao(*pRegDmc, pregps);
}

HRESULT CBaseMiddleware::AlteraIntegracao(REG_XVDMC regDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps) {
    const XVUInt64 uiChaveIndex = CXVDataBase_CR_Middleware::GetChaveIndex(regDmc);
    REG_CR_INDEX_INTEGRACAO_V1 regIndex;
    XV_CHECK_EM("GravaIntegracao", m_pDataBase->m_IndexIntegracao.LeIndex(uiChaveIndex, &regIndex, EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
    const XVUInt eStatusAnterior = regIndex.eStatusIntegracao;
    regIndex.eStatusIntegracao = pregps->eStatusIntegracao;
    regIndex.eSistemaIntegracao = pregps->eSistemaIntegracao;
    regIndex.uiChaveIntegracaoSistemaTerceiro = pregps->uiChaveIntegracaoSistemaTerceiro;
    XV_CHECK_EM("GravaIntegracao", m_pDataBase->m_IndexIntegracao.GravaIndex(uiChaveIndex, regIndex, EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));

    REG_CR_INTEGRACAO_MIDDLEWARE_V2 regGrava = MontaRegistro(*pregps);
    const XVUInt64 uiChaveNomeArquivo = regDmc.GetDma().ToChave();
    XVUInt uiPosicao = regDmc.GetPonteiro();
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 regLeitura;
    XV_CHECK_EM("GravaIntegracao", m_pDataBase->m_Integracao.Le(uiChaveNomeArquivo, uiPosicao, &regLeitura));
    // Two texts keep their pointers unless they changed; the returned JSON is a new one or none.
    XVUInt ulPonteiroJSON = regLeitura.ulPonteiroJSONRegistro;
    XVUInt ulPonteiroMensagem = regLeitura.ulPonteiroMensagemRetorno;
    XVUInt ulPonteiroJSONRetorno = 0;
    XV_CHECK_TEXTO_EM("GravaIntegracao", m_pDataBase->m_JSONIntegracao.Grava(uiChaveNomeArquivo, ulPonteiroJSON, CXVStringPS::RegToString(pregps->regRegistroJSON)),
                   "m_pDataBase->m_JSONIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroJSONRegistro, CXVStringPS::RegToString(pregps->regRegistroJSON))");
    XV_CHECK_TEXTO_EM("GravaIntegracao", m_pDataBase->m_MensagemIntegracao.Grava(uiChaveNomeArquivo, ulPonteiroMensagem, CXVStringPS::RegToString(pregps->regMensagemIntegracao)),
                   "m_pDataBase->m_MensagemIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroMensagemRetorno, CXVStringPS::RegToString(pregps->regMensagemIntegracao))");
    if (pregps->regJSONRetornoIntegracao.ulQtdBytes != 0)
        XV_CHECK_TEXTO_EM("GravaIntegracao", m_pDataBase->m_JSONRetornoIntegracao.Grava(uiChaveNomeArquivo, ulPonteiroJSONRetorno, CXVStringPS::RegToString(pregps->regJSONRetornoIntegracao)),
                       "m_pDataBase->m_JSONRetornoIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroJSONRetornoIntegracao, CXVStringPS::RegToString(pregps->regJSONRetornoIntegracao))");
    regGrava.ulPonteiroJSONRegistro = ulPonteiroJSON;
    regGrava.ulPonteiroMensagemRetorno = ulPonteiroMensagem;
    regGrava.ulPonteiroJSONRetornoIntegracao = ulPonteiroJSONRetorno;
    if (regIndex.eStatusIntegracao != eStatusAnterior) regGrava.regDataHoraAlteracaoStatus = REG_XVDMAHMSUTC::Agora();
    XV_CHECK_EM("GravaIntegracao", m_pDataBase->m_Integracao.Grava(uiChaveNomeArquivo, uiPosicao, regGrava));
    GravaLinhaLogGeral("GravaIntegracao", DFSLOG_Servico::eDFSLOG_Alteracao, regDmc,
                       pregps->uiChaveIntegracaoSistemaTerceiro, pregps->regDmcMovimentoOrigem);
    return S_OK;
}

HRESULT CBaseMiddleware::GravaInternalIntegracao(REG_XVDMC* pRegDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps) {
    XV_ESCOPO();
    if (pRegDmc == nullptr || pregps == nullptr) XV_FALHA(E_POINTER);
    XV_CHECK(ValidaAcessoGravacao());
    XV_CHECK(ValidaRegistro(*pregps));
    const CXVAcessoDefault acesso(this);
    const auto bloqueio = BloqueiaAlteracao();

    const REG_XVDMAHMSUTC regAgora = REG_XVDMAHMSUTC::Agora();
    const XVUInt64 uiChaveNomeArquivo = regAgora.GetDma().ToChave();
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 regGrava = MontaRegistro(*pregps);
    if (regGrava.regDataHoraInclusao.EhNula()) regGrava.regDataHoraInclusao = regAgora;

    XVUInt ulPonteiroJSON = 0;
    XVUInt ulPonteiroMensagem = 0;
    XVUInt ulPonteiroJSONRetorno = 0;
    XV_CHECK_TEXTO(m_pDataBase->m_JSONIntegracao.Grava(uiChaveNomeArquivo, ulPonteiroJSON, CXVStringPS::RegToString(pregps->regRegistroJSON)),
                   "m_pDataBase->m_JSONIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroJSONRegistro, CXVStringPS::RegToString(pregps->regRegistroJSON))");
    XV_CHECK_TEXTO(m_pDataBase->m_MensagemIntegracao.Grava(uiChaveNomeArquivo, ulPonteiroMensagem, CXVStringPS::RegToString(pregps->regMensagemIntegracao)),
                   "m_pDataBase->m_MensagemIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroMensagemRetorno, CXVStringPS::RegToString(pregps->regMensagemIntegracao))");
    XV_CHECK_TEXTO(m_pDataBase->m_JSONRetornoIntegracao.Grava(uiChaveNomeArquivo, ulPonteiroJSONRetorno, CXVStringPS::RegToString(pregps->regJSONRetornoIntegracao)),
                   "m_pDataBase->m_JSONRetornoIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroJSONRetornoIntegracao, CXVStringPS::RegToString(pregps->regJSONRetornoIntegracao))");
    regGrava.ulPonteiroJSONRegistro = ulPonteiroJSON;
    regGrava.ulPonteiroMensagemRetorno = ulPonteiroMensagem;
    regGrava.ulPonteiroJSONRetornoIntegracao = ulPonteiroJSONRetorno;
    XVUInt uiPosicao = XVDATABASE_POSICAO_NOVO_REGISTRO;
    XV_CHECK(m_pDataBase->m_Integracao.Grava(uiChaveNomeArquivo, uiPosicao, regGrava));

    REG_CR_INDEX_INTEGRACAO_V1 regIndex{};
    regIndex.regDmcIntegracao = REG_XVDMC::Cria(REG_XVDMC::k_uiTipoIntegracao, uiPosicao, regAgora.GetDma());
    regIndex.uiChaveIntegracaoSistemaTerceiro = pregps->uiChaveIntegracaoSistemaTerceiro;
    regIndex.eSistemaIntegracao = pregps->eSistemaIntegracao;
    regIndex.eStatusIntegracao = pregps->eStatusIntegracao;
    XV_CHECK(BuscaPosicaoIndexSistemaTerceiro(pregps, uiPosicao, regIndex.regDmcIntegracao));
    XV_CHECK(m_pDataBase->m_IndexIntegracao.Grava(uiPosicao, regIndex));
    *pRegDmc = regIndex.regDmcIntegracao;
    GravaLinhaLogGeral("GravaInternalIntegracao", DFSLOG_Servico::eDFSLOG_Inclusao, regIndex.regDmcIntegracao,
                       pregps->uiChaveIntegracaoSistemaTerceiro, pregps->regDmcMovimentoOrigem);
    return S_OK;
}

// OfficialBank alone reuses the index record of an earlier integration with the same key; every other
// system gets a fresh one.
HRESULT CBaseMiddleware::BuscaPosicaoIndexSistemaTerceiro(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps,
                                                          XVUInt& uiPosicao, REG_XVDMC /*regDmcIntegracao*/) {
    uiPosicao = XVDATABASE_POSICAO_NOVO_REGISTRO;
    if (pregps->eSistemaIntegracao != OfficialBank) return S_OK;
    REG_CR_INDEX_INTEGRACAO_V1 regIndex;
    XV_CHECK(LocalizaIndexSistemaTerceiro(pregps->uiChaveIntegracaoSistemaTerceiro, pregps->eSistemaIntegracao,
                                          &regIndex, uiPosicao));
    return S_OK;
}

HRESULT CBaseMiddleware::LocalizaIndexSistemaTerceiro(XVUInt64 uiChaveIntegracaoSistemaTerceiro,
                                                      XVUInt eSistemaIntegracao, REG_CR_INDEX_INTEGRACAO_V1* pregIndex,
                                                      XVUInt& uiPosicao) {
    uiPosicao = 0;
    const XVUInt64 uiChaveIndex =
        CXVDataBase_CR_Middleware::GetChaveIndexSistemaTerceiro(uiChaveIntegracaoSistemaTerceiro, eSistemaIntegracao);
    std::vector<XVUInt> listaPonteiros;
    XV_CHECK_EM("BuscaPosicaoIndexSistemaTerceiro", m_pDataBase->m_IndexIntegracao.ExisteIndex(uiChaveIndex, listaPonteiros, EColuna_Indexacao_Middleware::eIndexacao_ChaveIntegracaoComSistemaTerceiro));
    for (const XVUInt uiCandidata : listaPonteiros) {
        XV_CHECK_EM("BuscaPosicaoIndexSistemaTerceiro", m_pDataBase->m_IndexIntegracao.Le(uiCandidata, pregIndex));
        if (pregIndex->uiChaveIntegracaoSistemaTerceiro != uiChaveIntegracaoSistemaTerceiro ||
            pregIndex->eSistemaIntegracao != eSistemaIntegracao)
            continue;
        uiPosicao = uiCandidata;
        return S_OK;
    }
    return S_OK;
}
// clang-format on
