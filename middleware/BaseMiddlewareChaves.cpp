// CBaseMiddleware: the map between keys of the suite and of external systems, and the date-times of the
// exchanges. The CRC keys of both indexes may collide: every candidate's fields are compared.
#include "middleware/BaseMiddleware.h"
#include "middleware/XVValidacaoIntegracao.h"

namespace {

using REG_CHAVE = REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2;
using REG_CHAVEPS = tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS;
using REG_FILTRO_CHAVEPS = tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS;

REG_CHAVE DePS(const REG_CHAVEPS& reg) {
    return {reg.uiChaveRegistroSistemaTerceiro,
            reg.regDmcRegistroTelvo,
            reg.uiBaseDadosTerceiro,
            reg.eTipoIntegracao,
            reg.eSistemaIntegracao,
            reg.regDmcOrigemIntegracao};
}

REG_CHAVEPS ParaPS(const REG_CHAVE& reg) {
    return {reg.uiChaveRegistroSistemaTerceiro,
            reg.regDmcRegistroTelvo,
            reg.uiBaseDadosTerceiro,
            reg.eTipoIntegracao,
            reg.eSistemaIntegracao,
            reg.regDmcOrigemIntegracao};
}

REG_CHAVE DeFiltro(const REG_FILTRO_CHAVEPS& reg) {
    return {reg.uiChaveRegistroSistemaTerceiro,
            reg.regDmcRegistroTelvo,
            reg.uiBaseDadosTerceiro,
            reg.eTipoIntegracao,
            reg.eSistemaIntegracao,
            {}};
}

// A filter without a record of the suite, or without an external id, admits any.
bool CasaComFiltro(const REG_CHAVE& reg, const REG_FILTRO_CHAVEPS& regFiltro) {
    const REG_XVDMC regDmcRegistroTelvo = reg.regDmcRegistroTelvo;
    return (regFiltro.regDmcRegistroTelvo.EhNulo() || regDmcRegistroTelvo == regFiltro.regDmcRegistroTelvo) &&
           (regFiltro.uiChaveRegistroSistemaTerceiro == 0 ||
            reg.uiChaveRegistroSistemaTerceiro == regFiltro.uiChaveRegistroSistemaTerceiro) &&
           reg.eSistemaIntegracao == regFiltro.eSistemaIntegracao &&
           reg.eTipoIntegracao == regFiltro.eTipoIntegracao &&
           reg.uiBaseDadosTerceiro == regFiltro.uiBaseDadosTerceiro;
}

}  // namespace

HRESULT CBaseMiddleware::GetPonteiroIndexChaveRegistroParaTerceiro(
    const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2& reg, XVUInt& uiPonteiro) {
    uiPonteiro = 0;
    const XVUInt64 uiChaveIndex = m_pDataBase->GetChaveIndex(reg, eIndexacao_SistemaTipoIntegracaoChaveTelvo);
    std::vector<XVUInt> listaPonteiros;
    XV_CHECK(m_pDataBase->m_ChaveRegistroParaTerceiro.ExisteIndex(
        uiChaveIndex, listaPonteiros,
        EColuna_Indexacao_ChaveRegistroParaTerceiro::eIndexacao_SistemaTipoIntegracaoChaveTelvo));
    for (const XVUInt uiCandidato : listaPonteiros) {
        REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 regComparacao;
        XV_CHECK(m_pDataBase->m_ChaveRegistroParaTerceiro.Le(uiCandidato, &regComparacao));
        if (regComparacao.regDmcRegistroTelvo.uiValor == reg.regDmcRegistroTelvo.uiValor &&
            regComparacao.eSistemaIntegracao == reg.eSistemaIntegracao &&
            regComparacao.eTipoIntegracao == reg.eTipoIntegracao &&
            regComparacao.uiBaseDadosTerceiro == reg.uiBaseDadosTerceiro) {
            uiPonteiro = uiCandidato;
            return S_OK;
        }
    }
    return S_OK;
}

HRESULT CBaseMiddleware::GravaChaveRegistroTelvoParaTerceiro(
    const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regPS) {
    XV_ESCOPO({"regDmcRegistroTelvo", regPS.regDmcRegistroTelvo.uiValor});
    using namespace XVValidacaoIntegracao;
    XV_CHECK(ValidaAcessoGravacao());
    if (regPS.regDmcRegistroTelvo.EhNulo()) XV_FALHA(E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA);
    XV_CHECK(ValidaDmc(regPS.regDmcRegistroTelvo));
    XV_CHECK(ValidaDmc(regPS.regDmcOrigemIntegracao));
    XV_CHECK(ValidaTipoIntegracao(regPS.eTipoIntegracao));
    XV_CHECK(ValidaSistemaIntegracao(regPS.eSistemaIntegracao));
    const CXVAcessoDefault acesso(this);
    return ExecutaOperacao(EFila::eSozinha, 0, [&](CXVOperacao& operacao) {
        return PreparaChaveRegistro(operacao, DePS(regPS));
    });
}

HRESULT CBaseMiddleware::PreparaChaveRegistro(CXVOperacao& operacao,
                                              REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 reg) {
    XVUInt uiPonteiro = 0;
    XV_CHECK_EM("GravaChaveRegistroTelvoParaTerceiro",
                GetPonteiroIndexChaveRegistroParaTerceiro(reg, uiPonteiro));
    const REG_XVDMC regDmcOrigemIntegracao = reg.regDmcOrigemIntegracao;
    if (uiPonteiro != 0 && regDmcOrigemIntegracao.EhNulo()) {
        // An update that names no origin does not clear the one that is known.
        REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 regChaveRegistroTelvoAtual;
        XV_CHECK_EM("GravaChaveRegistroTelvoParaTerceiro",
                    m_pDataBase->m_ChaveRegistroParaTerceiro.Le(uiPonteiro, &regChaveRegistroTelvoAtual));
        reg.regDmcOrigemIntegracao = regChaveRegistroTelvoAtual.regDmcOrigemIntegracao;
    }
    XV_GRAVA_EM(operacao, "GravaChaveRegistroTelvoParaTerceiro", m_pDataBase->m_ChaveRegistroParaTerceiro,
                uiPonteiro, reg);
    return S_OK;
}

HRESULT CBaseMiddleware::GravaChaveRegistroTelvoParaTerceiroPendente(
    const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regPS) {
    XV_ESCOPO({"regDmcRegistroTelvo", regPS.regDmcRegistroTelvo.uiValor});
    using namespace XVValidacaoIntegracao;
    XV_CHECK(ValidaAcessoGravacao());
    if (regPS.regDmcRegistroTelvo.EhNulo()) XV_FALHA(E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA);
    XV_CHECK(ValidaDmc(regPS.regDmcRegistroTelvo));
    XV_CHECK(ValidaDmc(regPS.regDmcOrigemIntegracao));
    XV_CHECK(ValidaTipoIntegracao(regPS.eTipoIntegracao));
    XV_CHECK(ValidaSistemaIntegracao(regPS.eSistemaIntegracao));
    const CXVAcessoDefault acesso(this);
    return ExecutaOperacao(EFila::eSozinha, 0, [&](CXVOperacao& operacao) {
        return PreparaChaveRegistroPendente(operacao, regPS);
    });
}

HRESULT CBaseMiddleware::PreparaChaveRegistroPendente(
    CXVOperacao& operacao, const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regPS) {
    tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS regFiltroPS{};
    regFiltroPS.regDmcRegistroTelvo = regPS.regDmcRegistroTelvo;
    regFiltroPS.uiBaseDadosTerceiro = regPS.uiBaseDadosTerceiro;
    regFiltroPS.eTipoIntegracao = regPS.eTipoIntegracao;
    regFiltroPS.eSistemaIntegracao = regPS.eSistemaIntegracao;
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS regRetornoFiltro;
    XV_CHECK_EM("GravaChaveRegistroTelvoParaTerceiroPendente",
                BuscaChaveRegistroTelvoParaTerceiro(regFiltroPS, &regRetornoFiltro));
    if (!regRetornoFiltro.regDmcRegistroTelvo.EhNulo()) return S_OK;
    REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 reg = DePS(regPS);
    reg.uiChaveRegistroSistemaTerceiro = 0;
    XVUInt uiPonteiro = XVDATABASE_POSICAO_NOVO_REGISTRO;
    XV_GRAVA_EM(operacao, "GravaChaveRegistroTelvoParaTerceiroPendente",
                m_pDataBase->m_ChaveRegistroParaTerceiro, uiPonteiro, reg);
    return S_OK;
}

HRESULT CBaseMiddleware::BuscaChaveRegistroTelvoParaTerceiro(
    const tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regFiltroPS,
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pRegRetornoFiltro) {
    XV_ESCOPO({"regDmcRegistroTelvo", regFiltroPS.regDmcRegistroTelvo.uiValor});
    if (pRegRetornoFiltro == nullptr) XV_FALHA(E_POINTER);
    *pRegRetornoFiltro = {};
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 regFiltro = DeFiltro(regFiltroPS);
    const XVUInt uiColunasIndex = regFiltro.uiChaveRegistroSistemaTerceiro != 0
                                      ? eIndexacao_SistemaTipoIntegracaoIDTerceiro
                                      : eIndexacao_SistemaTipoIntegracaoChaveTelvo;
    const XVUInt64 uiChaveIndex = m_pDataBase->GetChaveIndex(regFiltro, uiColunasIndex);
    return LeDeUmMomento([&] {
        *pRegRetornoFiltro = {};
        std::vector<XVUInt> listaPonteiros;
        XV_CHECK_EM("BuscaChaveRegistroTelvoParaTerceiro",
                    m_pDataBase->m_ChaveRegistroParaTerceiro.ExisteIndex(uiChaveIndex, listaPonteiros,
                                                                         uiColunasIndex));
        for (const XVUInt uiPonteiro : listaPonteiros) {
            REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 reg;
            XV_CHECK_EM("BuscaChaveRegistroTelvoParaTerceiro",
                        m_pDataBase->m_ChaveRegistroParaTerceiro.Le(uiPonteiro, &reg));
            if (CasaComFiltro(reg, regFiltroPS)) {
                *pRegRetornoFiltro = ParaPS(reg);
                return S_OK;
            }
        }
        return S_OK;
    });
}

HRESULT CBaseMiddleware::GetPonteiroIndexDataHoraIntegracao(
    const REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1& reg, XVUInt& uiPonteiro) {
    uiPonteiro = 0;
    const XVUInt64 uiChaveIndex = m_pDataBase->GetChaveIndex(reg, eIndexacao_SistemaTipoIntegracaoTipoData);
    std::vector<XVUInt> listaPonteiros;
    XV_CHECK(m_pDataBase->m_DataHoraIntegracao.ExisteIndex(
        uiChaveIndex, listaPonteiros,
        EColuna_Indexacao_DataHoraIntegracao::eIndexacao_SistemaTipoIntegracaoTipoData));
    for (const XVUInt uiCandidato : listaPonteiros) {
        REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1 regComparacao;
        XV_CHECK(m_pDataBase->m_DataHoraIntegracao.Le(uiCandidato, &regComparacao));
        if (regComparacao.eTipoIntegracao == reg.eTipoIntegracao &&
            regComparacao.eSistemaIntegracao == reg.eSistemaIntegracao &&
            regComparacao.eTipoData == reg.eTipoData) {
            uiPonteiro = uiCandidato;
            return S_OK;
        }
    }
    return S_OK;
}

HRESULT CBaseMiddleware::GravaDataHoraIntegracaoTerceiro(
    const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS& regPS) {
    XV_ESCOPO({"regDataHora", regPS.regDataHora.uiValor});
    using namespace XVValidacaoIntegracao;
    XV_CHECK(ValidaAcessoGravacao());
    XV_CHECK(ValidaDataHora(regPS.regDataHora));
    XV_CHECK(ValidaTipoIntegracao(regPS.eTipoIntegracao));
    XV_CHECK(ValidaSistemaIntegracao(regPS.eSistemaIntegracao));
    XV_CHECK(ValidaTipoData(regPS.eTipoData));
    const CXVAcessoDefault acesso(this);
    return ExecutaOperacao(EFila::eSozinha, 0, [&](CXVOperacao& operacao) {
        const REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1 reg{
            regPS.regDataHora, regPS.eTipoIntegracao, regPS.eSistemaIntegracao, regPS.eTipoData, {}};
        XVUInt uiPonteiro = 0;
        XV_CHECK_EM("GravaDataHoraIntegracaoTerceiro", GetPonteiroIndexDataHoraIntegracao(reg, uiPonteiro));
        XV_GRAVA_EM(operacao, "GravaDataHoraIntegracaoTerceiro", m_pDataBase->m_DataHoraIntegracao,
                    uiPonteiro, reg);
        return S_OK;
    });
}

HRESULT CBaseMiddleware::BuscaDataHoraIntegracaoTerceiro(
    const tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS& regFiltroPS,
    tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS* pRegRetorno) {
    XV_ESCOPO();
    if (pRegRetorno == nullptr) XV_FALHA(E_POINTER);
    *pRegRetorno = {};
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    const REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1 regFiltro{
        {}, regFiltroPS.eTipoIntegracao, regFiltroPS.eSistemaIntegracao, regFiltroPS.eTipoData, {}};
    return LeDeUmMomento([&] {
        *pRegRetorno = {};
        XVUInt uiPonteiro = 0;
        XV_CHECK_EM("BuscaDataHoraIntegracaoTerceiro",
                    GetPonteiroIndexDataHoraIntegracao(regFiltro, uiPonteiro));
        if (uiPonteiro == 0) return S_OK;
        REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1 reg;
        XV_CHECK_EM("BuscaDataHoraIntegracaoTerceiro",
                    m_pDataBase->m_DataHoraIntegracao.Le(uiPonteiro, &reg));
        *pRegRetorno = {reg.regDataHora, reg.eTipoIntegracao, reg.eSistemaIntegracao, reg.eTipoData, {}};
        return S_OK;
    });
}
