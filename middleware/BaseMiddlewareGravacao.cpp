// CBaseMiddleware: recording and updating integrations.
#include <utility>

#include "middleware/BaseMiddleware.h"
#include "middleware/XVValidacaoIntegracao.h"

namespace {

// A key of the bank that comes to stand in the index: whoever records the same key has to find it there.
bool TrazChaveDoBanco(const REG_CR_INDEX_INTEGRACAO_V1& rIndex, XVUInt64 uiChaveBanco) {
    return uiChaveBanco != 0 &&
           uiChaveBanco != CXVDataBase_CR_Middleware::GetChaveIndexSistemaTerceiro(
                               rIndex.uiChaveIntegracaoSistemaTerceiro, rIndex.eSistemaIntegracao);
}

}  // namespace

HRESULT CBaseMiddleware::GravaIntegracao(REG_XVDMC* pRegDmc,
                                         const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps) {
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
    bool bSozinha = false;
    const HRESULT hr = ExecutaOperacao(
        EFila::eComOutras, CXVDataBase_CR_Middleware::GetChaveIndex(regDmc),
        [&](CXVOperacao& operacao) { return PreparaAlteracao(operacao, regDmc, pregps, bSozinha); });
    if (FAILED(hr)) return hr;
    GravaLinhaLogGeral("GravaIntegracao", regDmc, pregps->uiChaveIntegracaoSistemaTerceiro,
                       pregps->regDmcMovimentoOrigem);
    return S_OK;
}

HRESULT CBaseMiddleware::PreparaAlteracao(CXVOperacao& operacao, REG_XVDMC regDmc,
                                          const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps, bool& rbSozinha) {
    const XVUInt64 uiChaveIndex = CXVDataBase_CR_Middleware::GetChaveIndex(regDmc);
    REG_CR_INDEX_INTEGRACAO_V1 regIndex;
    XV_CHECK_EM("GravaIntegracao",
                m_pDataBase->m_IndexIntegracao.LeIndex(
                    uiChaveIndex, &regIndex, EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
    if (TrazChaveDoBanco(regIndex, ChaveNaFila(*pregps)) && !std::exchange(rbSozinha, true)) return S_FALSE;
    const XVUInt eStatusAnterior = regIndex.eStatusIntegracao;
    regIndex.eStatusIntegracao = pregps->eStatusIntegracao;
    regIndex.eSistemaIntegracao = pregps->eSistemaIntegracao;
    regIndex.uiChaveIntegracaoSistemaTerceiro = pregps->uiChaveIntegracaoSistemaTerceiro;

    // The record is packed. Aligned as a whole, it has its text positions aligned too, which are handed out
    // by reference.
    alignas(XVUInt) REG_CR_INTEGRACAO_MIDDLEWARE_V2 regGrava = MontaRegistro(*pregps);
    const XVUInt64 uiChaveNomeArquivo = regDmc.GetDma().ToChave();
    XVUInt uiPosicao = regDmc.GetPonteiro();
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 regLeitura;
    XV_CHECK_EM("GravaIntegracao", m_pDataBase->m_Integracao.Le(uiChaveNomeArquivo, uiPosicao, &regLeitura));
    const bool bTemJSONRetorno = pregps->regJSONRetornoIntegracao.ulQtdBytes != 0;
    XV_CHECK_EM("GravaIntegracao", ConfereTextosDoDia(uiChaveNomeArquivo, true, bTemJSONRetorno));
    // A text is never overwritten. The JSON and the message keep the positions that the stored record names
    // as long as they are the same texts, and get new ones when they changed. The returned JSON belongs to
    // this answer alone: it gets a new position, or none where nothing was returned.
    regGrava.ulPonteiroJSONRegistro = regLeitura.ulPonteiroJSONRegistro;
    regGrava.ulPonteiroMensagemRetorno = regLeitura.ulPonteiroMensagemRetorno;
    XV_GRAVA_EM(operacao, "GravaIntegracao", m_pDataBase->m_JSONIntegracao, uiChaveNomeArquivo,
                regGrava.ulPonteiroJSONRegistro, CXVStringPS::RegToString(pregps->regRegistroJSON));
    XV_GRAVA_EM(operacao, "GravaIntegracao", m_pDataBase->m_MensagemIntegracao, uiChaveNomeArquivo,
                regGrava.ulPonteiroMensagemRetorno, CXVStringPS::RegToString(pregps->regMensagemIntegracao));
    if (bTemJSONRetorno)
        XV_GRAVA_EM(operacao, "GravaIntegracao", m_pDataBase->m_JSONRetornoIntegracao, uiChaveNomeArquivo,
                    regGrava.ulPonteiroJSONRetornoIntegracao,
                    CXVStringPS::RegToString(pregps->regJSONRetornoIntegracao));
    if (regIndex.eStatusIntegracao != eStatusAnterior)
        regGrava.regDataHoraAlteracaoStatus = REG_XVDMAHMSUTC::Agora();
    XV_GRAVA_EM(operacao, "GravaIntegracao", m_pDataBase->m_Integracao, uiChaveNomeArquivo, uiPosicao,
                regGrava);
    XV_PREPARA_EM(
        operacao, "GravaIntegracao",
        m_pDataBase->m_IndexIntegracao.PreparaIndex(operacao, uiChaveIndex, regIndex,
                                                    EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
    return S_OK;
}

HRESULT CBaseMiddleware::ConfereTextosDoDia(XVUInt64 uiChaveNomeArquivo, bool bJSON, bool bJSONRetorno) {
    using ETexto = CXVDataBase_CR_Middleware::ETexto;
    if (bJSON) XV_CHECK(m_pDataBase->ConfereTextos(uiChaveNomeArquivo, ETexto::eJSON));
    XV_CHECK(m_pDataBase->ConfereTextos(uiChaveNomeArquivo, ETexto::eMensagem));
    if (bJSONRetorno) XV_CHECK(m_pDataBase->ConfereTextos(uiChaveNomeArquivo, ETexto::eJSONRetorno));
    return S_OK;
}

HRESULT CBaseMiddleware::GravaInternalIntegracao(REG_XVDMC* pRegDmc,
                                                 const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps) {
    XV_ESCOPO();
    if (pRegDmc == nullptr || pregps == nullptr) XV_FALHA(E_POINTER);
    XV_CHECK(ValidaAcessoGravacao());
    XV_CHECK(ValidaRegistro(*pregps));
    const CXVAcessoDefault acesso(this);
    REG_XVDMC regDmc;
    bool bSozinha = false;
    const HRESULT hr = ExecutaOperacao(EFila::eComOutras, ChaveNaFila(*pregps), [&](CXVOperacao& operacao) {
        return PreparaInclusao(operacao, pregps, bSozinha, &regDmc);
    });
    if (FAILED(hr)) return hr;
    *pRegDmc = regDmc;
    const XVUInt64 uiDia = regDmc.GetDma().ToChave();
    if (m_pDataBase->ComecaDia(uiDia)) AoComecarDia(uiDia);
    GravaLinhaLogGeral("GravaInternalIntegracao", regDmc, pregps->uiChaveIntegracaoSistemaTerceiro,
                       pregps->regDmcMovimentoOrigem);
    return S_OK;
}

// An integration of the bank takes over the index record that holds its key, so it waits for one of the same
// key that waits for the device. The keys of other systems lead to as many integrations as have them.
XVUInt64 CBaseMiddleware::ChaveNaFila(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& regps) {
    if (regps.eSistemaIntegracao != OfficialBank) return 0;
    return CXVDataBase_CR_Middleware::GetChaveIndexSistemaTerceiro(regps.uiChaveIntegracaoSistemaTerceiro,
                                                                   regps.eSistemaIntegracao);
}

HRESULT CBaseMiddleware::PreparaInclusao(CXVOperacao& operacao,
                                         const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps, bool& rbSozinha,
                                         REG_XVDMC* pRegDmc) {
    const REG_XVDMAHMSUTC regAgora = REG_XVDMAHMSUTC::Agora();
    if (regAgora.EhNula() || !regAgora.EhValida()) XV_FALHA_EM("GravaInternalIntegracao", E_INVALIDARG);
    const XVUInt64 uiChaveNomeArquivo = regAgora.GetDma().ToChave();
    // The first operation of a day makes the day's files. While it waits for the device no other operation
    // may be prepared on files that may yet be taken back, so the first one runs alone.
    if (TemFila() && !m_pDataBase->EstaDiaAberto(uiChaveNomeArquivo)) return S_FALSE;
    // What is prepared beside this operation must not count on the index record that it takes over. Asked
    // before anything is prepared, which would be in vain.
    XVUInt uiTomado = 0;
    if (pregps->eSistemaIntegracao == OfficialBank)
        XV_CHECK_EM("GravaInternalIntegracao",
                    m_pDataBase->m_IndexIntegracao.ExisteIndex(
                        ChaveNaFila(*pregps), uiTomado,
                        EColuna_Indexacao_Middleware::eIndexacao_ChaveIntegracaoComSistemaTerceiro));
    if (uiTomado != 0 && !std::exchange(rbSozinha, true)) return S_FALSE;
    XV_CHECK_EM("GravaInternalIntegracao", ConfereTextosDoDia(uiChaveNomeArquivo, true, true));
    // The record is packed. Aligned as a whole, it has its text positions aligned too, which are handed out
    // by reference.
    alignas(XVUInt) REG_CR_INTEGRACAO_MIDDLEWARE_V2 regGrava = MontaRegistro(*pregps);
    if (regGrava.regDataHoraInclusao.EhNula()) regGrava.regDataHoraInclusao = regAgora;

    XV_GRAVA_EM(operacao, "GravaInternalIntegracao", m_pDataBase->m_JSONIntegracao, uiChaveNomeArquivo,
                regGrava.ulPonteiroJSONRegistro, CXVStringPS::RegToString(pregps->regRegistroJSON));
    XV_GRAVA_EM(operacao, "GravaInternalIntegracao", m_pDataBase->m_MensagemIntegracao, uiChaveNomeArquivo,
                regGrava.ulPonteiroMensagemRetorno, CXVStringPS::RegToString(pregps->regMensagemIntegracao));
    XV_GRAVA_EM(operacao, "GravaInternalIntegracao", m_pDataBase->m_JSONRetornoIntegracao, uiChaveNomeArquivo,
                regGrava.ulPonteiroJSONRetornoIntegracao,
                CXVStringPS::RegToString(pregps->regJSONRetornoIntegracao));
    XVUInt uiPosicao = XVDATABASE_POSICAO_NOVO_REGISTRO;
    XV_GRAVA_EM(operacao, "GravaInternalIntegracao", m_pDataBase->m_Integracao, uiChaveNomeArquivo, uiPosicao,
                regGrava);

    REG_CR_INDEX_INTEGRACAO_V1 regIndex{};
    regIndex.regDmcIntegracao = REG_XVDMC::Cria(REG_XVDMC::k_uiTipoIntegracao, uiPosicao, regAgora.GetDma());
    regIndex.uiChaveIntegracaoSistemaTerceiro = pregps->uiChaveIntegracaoSistemaTerceiro;
    regIndex.eSistemaIntegracao = pregps->eSistemaIntegracao;
    regIndex.eStatusIntegracao = pregps->eStatusIntegracao;
    XV_CHECK_EM("GravaInternalIntegracao", ValidaPosicaoLivre(regIndex.regDmcIntegracao));
    XV_CHECK_EM("GravaInternalIntegracao",
                BuscaPosicaoIndexSistemaTerceiro(pregps, uiPosicao, regIndex.regDmcIntegracao));
    XV_GRAVA_EM(operacao, "GravaInternalIntegracao", m_pDataBase->m_IndexIntegracao, uiPosicao, regIndex);
    *pRegDmc = regIndex.regDmcIntegracao;
    return S_OK;
}

// A key that the index holds already must never come to name what is recorded now: the day's file lost
// records that the index knows.
HRESULT CBaseMiddleware::ValidaPosicaoLivre(REG_XVDMC regDmc) {
    XVUInt uiPosicaoIndex = 0;
    XV_CHECK(m_pDataBase->m_IndexIntegracao.ExisteIndex(
        CXVDataBase_CR_Middleware::GetChaveIndex(regDmc), uiPosicaoIndex,
        EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
    if (uiPosicaoIndex == 0) return S_OK;
    XVProfiler::RecordError(this, "CBaseMiddleware::GravaInternalIntegracao", XVNomeFonte(), __LINE__,
                            "A posição %u já é a do registro %u de %s", regDmc.GetPonteiro(), uiPosicaoIndex,
                            k_pszArquivoIndexIntegracao);
    return m_pDataBase->RecusaMembro(regDmc.GetDma().ToChave(), k_pszArquivoIntegracao);
}

// For the official bank a new integration takes over the index record of an earlier one with the same key, so
// that the key leads to the newest alone. Every other system gets a new index record: it may give one number
// to several documents.
HRESULT CBaseMiddleware::BuscaPosicaoIndexSistemaTerceiro(const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pregps,
                                                          XVUInt& uiPosicao, REG_XVDMC /*regDmcIntegracao*/) {
    uiPosicao = XVDATABASE_POSICAO_NOVO_REGISTRO;
    if (pregps->eSistemaIntegracao != OfficialBank) return S_OK;
    REG_CR_INDEX_INTEGRACAO_V1 regIndex;
    XV_CHECK(LocalizaIndexSistemaTerceiro(pregps->uiChaveIntegracaoSistemaTerceiro,
                                          pregps->eSistemaIntegracao, &regIndex, uiPosicao));
    return S_OK;
}

HRESULT CBaseMiddleware::LocalizaIndexSistemaTerceiro(XVUInt64 uiChaveIntegracaoSistemaTerceiro,
                                                      XVUInt eSistemaIntegracao,
                                                      REG_CR_INDEX_INTEGRACAO_V1* pregIndex,
                                                      XVUInt& uiPosicao) {
    uiPosicao = 0;
    const XVUInt64 uiChaveIndex = CXVDataBase_CR_Middleware::GetChaveIndexSistemaTerceiro(
        uiChaveIntegracaoSistemaTerceiro, eSistemaIntegracao);
    std::vector<XVUInt> listaPonteiros;
    XV_CHECK_EM("BuscaPosicaoIndexSistemaTerceiro",
                m_pDataBase->m_IndexIntegracao.ExisteIndex(
                    uiChaveIndex, listaPonteiros,
                    EColuna_Indexacao_Middleware::eIndexacao_ChaveIntegracaoComSistemaTerceiro));
    for (const XVUInt uiCandidata : listaPonteiros) {
        XV_CHECK_EM("BuscaPosicaoIndexSistemaTerceiro",
                    m_pDataBase->m_IndexIntegracao.Le(uiCandidata, pregIndex));
        if (pregIndex->uiChaveIntegracaoSistemaTerceiro != uiChaveIntegracaoSistemaTerceiro ||
            pregIndex->eSistemaIntegracao != eSistemaIntegracao)
            continue;
        uiPosicao = uiCandidata;
        return S_OK;
    }
    return S_OK;
}

HRESULT CBaseMiddleware::PreparaImportada(CXVOperacao& operacao, const SIntegracaoTransportada& rIntegracao) {
    using ETipo = SIntegracaoTransportada::ETipo;
    const CXVDadosCR_IntegracaoMiddleware& rDados = rIntegracao.dados;
    const XVUInt64 uiDia = rDados.regDmc.GetDma().ToChave();
    // The record is packed. Aligned as a whole, it has its text positions aligned too, which are handed out
    // by reference.
    alignas(XVUInt) REG_CR_INTEGRACAO_MIDDLEWARE_V2 regGrava{};
    if (rIntegracao.eTipo != ETipo::eVaga) {
        XV_CHECK_EM("ImportaIntegracao", ConfereTextosDoDia(uiDia, true, true));
        regGrava = MontaRegistro(rDados.ComoRegistro());
        XV_GRAVA_EM(operacao, "ImportaIntegracao", m_pDataBase->m_JSONIntegracao, uiDia,
                    regGrava.ulPonteiroJSONRegistro, rDados.sRegistroJSON);
        XV_GRAVA_EM(operacao, "ImportaIntegracao", m_pDataBase->m_MensagemIntegracao, uiDia,
                    regGrava.ulPonteiroMensagemRetorno, rDados.sMensagemIntegracao);
        XV_GRAVA_EM(operacao, "ImportaIntegracao", m_pDataBase->m_JSONRetornoIntegracao, uiDia,
                    regGrava.ulPonteiroJSONRetornoIntegracao, rDados.sJSONRetornoIntegracao);
    }
    XVUInt uiPosicao = XVDATABASE_POSICAO_NOVO_REGISTRO;
    XV_GRAVA_EM(operacao, "ImportaIntegracao", m_pDataBase->m_Integracao, uiDia, uiPosicao, regGrava);
    XV_CHECK_EM("ImportaIntegracao", ValidaPosicaoLivre(rDados.regDmc));
    if (rIntegracao.eTipo != ETipo::eInteira) return S_OK;
    XVUInt uiPosicaoIndice = XVDATABASE_POSICAO_NOVO_REGISTRO;
    const REG_CR_INDEX_INTEGRACAO_V1 regIndex = MontaIndice(rDados);
    XV_GRAVA_EM(operacao, "ImportaIntegracao", m_pDataBase->m_IndexIntegracao, uiPosicaoIndice, regIndex);
    return S_OK;
}

HRESULT CBaseMiddleware::PoeOrigem(REG_XVDMC regDmc, REG_XVDMC regDmcOrigem) {
    XV_ESCOPO({"regDmc", regDmc.uiValor});
    XV_CHECK(ValidaAcessoGravacao());
    XV_CHECK(XVValidacaoIntegracao::ValidaDmcIntegracao(regDmc));
    XV_CHECK(XVValidacaoIntegracao::ValidaDmc(regDmcOrigem));
    const CXVAcessoDefault acesso(this);
    return ExecutaOperacao(EFila::eSozinha, 0, [&](CXVOperacao& operacao) {
        const XVUInt64 uiDia = regDmc.GetDma().ToChave();
        XVUInt uiPosicao = regDmc.GetPonteiro();
        REG_CR_INTEGRACAO_MIDDLEWARE_V2 reg;
        XV_CHECK_EM("PoeOrigem", m_pDataBase->m_Integracao.Le(uiDia, uiPosicao, &reg));
        reg.regDmcIntegracaoOrigem = regDmcOrigem;
        XV_GRAVA_EM(operacao, "PoeOrigem", m_pDataBase->m_Integracao, uiDia, uiPosicao, reg);
        return S_OK;
    });
}
