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
    if (pregps->uiChaveIntegracaoSistemaTerceiro == 0 && !AdmiteChaveZerada(pregps->eStatusIntegracao))
        XV_FALHA(E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA);
    const CXVAcessoDefault acesso(this);
    const REG_XVDMC regDmc = *pRegDmc;
    const HRESULT hr = ExecutaOperacao(EFila::eComOutras, CXVDataBase_CR_Middleware::GetChaveIndex(regDmc),
                                       [&](CXVOperacao& operacao) { return PreparaAlteracao(operacao, regDmc, *pregps); });
    if (FAILED(hr)) return hr;
    GravaLinhaLogGeral("GravaIntegracao", regDmc, pregps->uiChaveIntegracaoSistemaTerceiro, pregps->regDmcMovimentoOrigem);
    return S_OK;
}

HRESULT CBaseMiddleware::PreparaAlteracao(CXVOperacao& operacao, REG_XVDMC regDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regps) {
    const XVUInt64 uiChaveIndex = CXVDataBase_CR_Middleware::GetChaveIndex(regDmc);
    REG_CR_INDEX_INTEGRACAO_V1 regIndex;
    XV_CHECK_EM("GravaIntegracao", m_pDataBase->m_IndexIntegracao.LeIndex(uiChaveIndex, &regIndex, EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
    const XVUInt eStatusAnterior = regIndex.eStatusIntegracao;
    regIndex.eStatusIntegracao = regps.eStatusIntegracao;
    regIndex.eSistemaIntegracao = regps.eSistemaIntegracao;
    regIndex.uiChaveIntegracaoSistemaTerceiro = regps.uiChaveIntegracaoSistemaTerceiro;

    REG_CR_INTEGRACAO_MIDDLEWARE_V2 regGrava = MontaRegistro(regps);
    const XVUInt64 uiChaveNomeArquivo = regDmc.GetDma().ToChave();
    XVUInt uiPosicao = regDmc.GetPonteiro();
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 regLeitura;
    XV_CHECK_EM("GravaIntegracao", m_pDataBase->m_Integracao.Le(uiChaveNomeArquivo, uiPosicao, &regLeitura));
    const bool bTemJSONRetorno = regps.regJSONRetornoIntegracao.ulQtdBytes != 0;
    XV_CHECK_EM("GravaIntegracao", ConfereTextosDoDia(uiChaveNomeArquivo, true, bTemJSONRetorno));
    // Two texts keep their pointers unless they changed; the returned JSON is a new one or none.
    XVUInt ulPonteiroJSON = regLeitura.ulPonteiroJSONRegistro;
    XVUInt ulPonteiroMensagem = regLeitura.ulPonteiroMensagemRetorno;
    XVUInt ulPonteiroJSONRetorno = 0;
    XV_PREPARA_EM(operacao, "GravaIntegracao", m_pDataBase->m_JSONIntegracao.Prepara(operacao, uiChaveNomeArquivo, ulPonteiroJSON, CXVStringPS::RegToString(regps.regRegistroJSON)),
                  "m_pDataBase->m_JSONIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroJSONRegistro, CXVStringPS::RegToString(pregps->regRegistroJSON))");
    XV_PREPARA_EM(operacao, "GravaIntegracao", m_pDataBase->m_MensagemIntegracao.Prepara(operacao, uiChaveNomeArquivo, ulPonteiroMensagem, CXVStringPS::RegToString(regps.regMensagemIntegracao)),
                  "m_pDataBase->m_MensagemIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroMensagemRetorno, CXVStringPS::RegToString(pregps->regMensagemIntegracao))");
    if (bTemJSONRetorno)
        XV_PREPARA_EM(operacao, "GravaIntegracao", m_pDataBase->m_JSONRetornoIntegracao.Prepara(operacao, uiChaveNomeArquivo, ulPonteiroJSONRetorno, CXVStringPS::RegToString(regps.regJSONRetornoIntegracao)),
                      "m_pDataBase->m_JSONRetornoIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroJSONRetornoIntegracao, CXVStringPS::RegToString(pregps->regJSONRetornoIntegracao))");
    regGrava.ulPonteiroJSONRegistro = ulPonteiroJSON;
    regGrava.ulPonteiroMensagemRetorno = ulPonteiroMensagem;
    regGrava.ulPonteiroJSONRetornoIntegracao = ulPonteiroJSONRetorno;
    if (regIndex.eStatusIntegracao != eStatusAnterior) regGrava.regDataHoraAlteracaoStatus = REG_XVDMAHMSUTC::Agora();
    XV_PREPARA_EM(operacao, "GravaIntegracao", m_pDataBase->m_Integracao.Prepara(operacao, uiChaveNomeArquivo, uiPosicao, regGrava),
                  "m_pDataBase->m_Integracao.Grava(uiChaveNomeArquivo, uiPosicao, regGrava)");
    XV_PREPARA_EM(operacao, "GravaIntegracao", m_pDataBase->m_IndexIntegracao.PreparaIndex(operacao, uiChaveIndex, regIndex, EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao),
                  "m_pDataBase->m_IndexIntegracao.GravaIndex(uiChaveIndex, regIndex, EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao)");
    return S_OK;
}

HRESULT CBaseMiddleware::ConfereTextosDoDia(XVUInt64 uiChaveNomeArquivo, bool bJSON, bool bJSONRetorno) {
    using ETexto = CXVDataBase_CR_Middleware::ETexto;
    if (bJSON) XV_CHECK(m_pDataBase->ConfereTextos(uiChaveNomeArquivo, ETexto::eJSON));
    XV_CHECK(m_pDataBase->ConfereTextos(uiChaveNomeArquivo, ETexto::eMensagem));
    if (bJSONRetorno) XV_CHECK(m_pDataBase->ConfereTextos(uiChaveNomeArquivo, ETexto::eJSONRetorno));
    return S_OK;
}

HRESULT CBaseMiddleware::GravaInternalIntegracao(REG_XVDMC* pRegDmc, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps) {
    XV_ESCOPO();
    if (pRegDmc == nullptr || pregps == nullptr) XV_FALHA(E_POINTER);
    XV_CHECK(ValidaAcessoGravacao());
    XV_CHECK(ValidaRegistro(*pregps));
    const CXVAcessoDefault acesso(this);
    // The bank's records are found by their key: none may be on its way.
    const EFila eFila = pregps->eSistemaIntegracao == OfficialBank ? EFila::eSozinha : EFila::eComOutras;
    REG_XVDMC regDmc;
    const HRESULT hr = ExecutaOperacao(eFila, 0, [&](CXVOperacao& operacao) { return PreparaInclusao(operacao, *pregps, &regDmc); });
    if (FAILED(hr)) return hr;
    *pRegDmc = regDmc;
    GravaLinhaLogGeral("GravaInternalIntegracao", regDmc, pregps->uiChaveIntegracaoSistemaTerceiro, pregps->regDmcMovimentoOrigem);
    return S_OK;
}

HRESULT CBaseMiddleware::PreparaInclusao(CXVOperacao& operacao, const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regps, REG_XVDMC* pRegDmc) {
    const REG_XVDMAHMSUTC regAgora = REG_XVDMAHMSUTC::Agora();
    if (regAgora.EhNula() || !regAgora.EhValida()) XV_FALHA_EM("GravaInternalIntegracao", E_INVALIDARG);
    const XVUInt64 uiChaveNomeArquivo = regAgora.GetDma().ToChave();
    // The first operation of a day makes its files: nobody counts on them before they are there.
    if (TemFila() && !m_pDataBase->EstaDiaAberto(uiChaveNomeArquivo)) return S_FALSE;
    XV_CHECK_EM("GravaInternalIntegracao", ConfereTextosDoDia(uiChaveNomeArquivo, true, true));
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 regGrava = MontaRegistro(regps);
    if (regGrava.regDataHoraInclusao.EhNula()) regGrava.regDataHoraInclusao = regAgora;

    XVUInt ulPonteiroJSON = 0;
    XVUInt ulPonteiroMensagem = 0;
    XVUInt ulPonteiroJSONRetorno = 0;
    XV_PREPARA_EM(operacao, "GravaInternalIntegracao", m_pDataBase->m_JSONIntegracao.Prepara(operacao, uiChaveNomeArquivo, ulPonteiroJSON, CXVStringPS::RegToString(regps.regRegistroJSON)),
                  "m_pDataBase->m_JSONIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroJSONRegistro, CXVStringPS::RegToString(pregps->regRegistroJSON))");
    XV_PREPARA_EM(operacao, "GravaInternalIntegracao", m_pDataBase->m_MensagemIntegracao.Prepara(operacao, uiChaveNomeArquivo, ulPonteiroMensagem, CXVStringPS::RegToString(regps.regMensagemIntegracao)),
                  "m_pDataBase->m_MensagemIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroMensagemRetorno, CXVStringPS::RegToString(pregps->regMensagemIntegracao))");
    XV_PREPARA_EM(operacao, "GravaInternalIntegracao", m_pDataBase->m_JSONRetornoIntegracao.Prepara(operacao, uiChaveNomeArquivo, ulPonteiroJSONRetorno, CXVStringPS::RegToString(regps.regJSONRetornoIntegracao)),
                  "m_pDataBase->m_JSONRetornoIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroJSONRetornoIntegracao, CXVStringPS::RegToString(pregps->regJSONRetornoIntegracao))");
    regGrava.ulPonteiroJSONRegistro = ulPonteiroJSON;
    regGrava.ulPonteiroMensagemRetorno = ulPonteiroMensagem;
    regGrava.ulPonteiroJSONRetornoIntegracao = ulPonteiroJSONRetorno;
    XVUInt uiPosicao = XVDATABASE_POSICAO_NOVO_REGISTRO;
    XV_PREPARA_EM(operacao, "GravaInternalIntegracao", m_pDataBase->m_Integracao.Prepara(operacao, uiChaveNomeArquivo, uiPosicao, regGrava),
                  "m_pDataBase->m_Integracao.Grava(uiChaveNomeArquivo, uiPosicao, regGrava)");

    REG_CR_INDEX_INTEGRACAO_V1 regIndex{};
    regIndex.regDmcIntegracao = REG_XVDMC::Cria(REG_XVDMC::k_uiTipoIntegracao, uiPosicao, regAgora.GetDma());
    regIndex.uiChaveIntegracaoSistemaTerceiro = regps.uiChaveIntegracaoSistemaTerceiro;
    regIndex.eSistemaIntegracao = regps.eSistemaIntegracao;
    regIndex.eStatusIntegracao = regps.eStatusIntegracao;
    XV_CHECK_EM("GravaInternalIntegracao", ValidaPosicaoLivre(regIndex.regDmcIntegracao));
    XV_CHECK_EM("GravaInternalIntegracao", BuscaPosicaoIndexSistemaTerceiro(&regps, uiPosicao, regIndex.regDmcIntegracao));
    XV_PREPARA_EM(operacao, "GravaInternalIntegracao", m_pDataBase->m_IndexIntegracao.Prepara(operacao, uiPosicao, regIndex),
                  "m_pDataBase->m_IndexIntegracao.Grava(uiPosicao, regIndex)");
    *pRegDmc = regIndex.regDmcIntegracao;
    return S_OK;
}

// A key that the index holds already must never come to name what is recorded now: the day's file lost records
// that the index knows.
HRESULT CBaseMiddleware::ValidaPosicaoLivre(REG_XVDMC regDmc) {
    XVUInt uiPosicaoIndex = 0;
    XV_CHECK(m_pDataBase->m_IndexIntegracao.ExisteIndex(CXVDataBase_CR_Middleware::GetChaveIndex(regDmc), uiPosicaoIndex, EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
    if (uiPosicaoIndex == 0) return S_OK;
    XVProfiler::RecordError(this, "CBaseMiddleware::GravaInternalIntegracao", XVNomeFonte(), __LINE__,
                            "A posição %u já é a do registro %u de %s", regDmc.GetPonteiro(), uiPosicaoIndex,
                            k_pszArquivoIndexIntegracao);
    return m_pDataBase->RecusaMembro(regDmc.GetDma().ToChave(), k_pszArquivoIntegracao);
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
