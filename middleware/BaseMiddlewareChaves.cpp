// CBaseMiddleware: the map between keys of the suite and of external systems, and the date-times of the
// exchanges. The CRC keys of both indexes may collide: every candidate's fields are compared.
#include "middleware/BaseMiddleware.h"
#include "middleware/XVCheckOperacao.h"
#include "middleware/XVValidacaoIntegracao.h"

namespace {

REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 DePS(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& reg) {
    return {reg.uiChaveRegistroSistemaTerceiro,
            reg.regDmcRegistroTelvo,
            reg.uiBaseDadosTerceiro,
            reg.eTipoIntegracao,
            reg.eSistemaIntegracao,
            reg.regDmcOrigemIntegracao};
}

tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS ParaPS(
    const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2& reg) {
    return {reg.uiChaveRegistroSistemaTerceiro,
            reg.regDmcRegistroTelvo,
            reg.uiBaseDadosTerceiro,
            reg.eTipoIntegracao,
            reg.eSistemaIntegracao,
            reg.regDmcOrigemIntegracao};
}

}  // namespace

// The text of a check is its trace text: such lines are not broken.
// clang-format off

HRESULT CBaseMiddleware::GetPonteiroIndexChaveRegistroParaTerceiro(const REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2& reg, XVUInt& uiPonteiro) {
    uiPonteiro = 0;
    const XVUInt64 uiChaveIndex = m_pDataBase->GetChaveIndex(reg, eIndexacao_SistemaTipoIntegracaoChaveTelvo);
    std::vector<XVUInt> listaPonteiros;
    XV_CHECK(m_pDataBase->m_ChaveRegistroParaTerceiro.ExisteIndex(uiChaveIndex, listaPonteiros, EColuna_Indexacao_ChaveRegistroParaTerceiro::eIndexacao_SistemaTipoIntegracaoChaveTelvo));
    for (const XVUInt uiCandidato : listaPonteiros) {
        REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 regComparacao;
        XV_CHECK_TEXTO(m_pDataBase->m_ChaveRegistroParaTerceiro.Le(uiCandidato, &regComparacao),
                       "m_pDataBase->m_ChaveRegistroParaTerceiro.Le(uiPonteiro, &regComparacao)");
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

HRESULT CBaseMiddleware::GravaChaveRegistroTelvoParaTerceiro(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regPS) {
    XV_ESCOPO({"regDmcRegistroTelvo", regPS.regDmcRegistroTelvo.uiValor});
    using namespace XVValidacaoIntegracao;
    XV_CHECK(ValidaAcessoGravacao());
    if (regPS.regDmcRegistroTelvo.EhNulo()) XV_FALHA(E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA);
    XV_CHECK(ValidaDmc(regPS.regDmcRegistroTelvo));
    XV_CHECK(ValidaDmc(regPS.regDmcOrigemIntegracao));
    XV_CHECK(ValidaTipoIntegracao(regPS.eTipoIntegracao));
    XV_CHECK(ValidaSistemaIntegracao(regPS.eSistemaIntegracao));
    const CXVAcessoDefault acesso(this);
    return ExecutaOperacao(EFila::eSozinha, 0, [&](CXVOperacao& operacao) { return PreparaChaveRegistro(operacao, DePS(regPS)); });
}

HRESULT CBaseMiddleware::PreparaChaveRegistro(CXVOperacao& operacao, REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 reg) {
    XVUInt uiPonteiro = 0;
    XV_CHECK_EM("GravaChaveRegistroTelvoParaTerceiro", GetPonteiroIndexChaveRegistroParaTerceiro(reg, uiPonteiro));
    const REG_XVDMC regDmcOrigemIntegracao = reg.regDmcOrigemIntegracao;
    if (uiPonteiro != 0 && regDmcOrigemIntegracao.EhNulo()) {
        // An update that names no origin does not clear the one that is known.
        REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 regChaveRegistroTelvoAtual;
        XV_CHECK_EM("GravaChaveRegistroTelvoParaTerceiro", m_pDataBase->m_ChaveRegistroParaTerceiro.Le(uiPonteiro, &regChaveRegistroTelvoAtual));
        reg.regDmcOrigemIntegracao = regChaveRegistroTelvoAtual.regDmcOrigemIntegracao;
    }
    XV_PREPARA_EM(operacao, "GravaChaveRegistroTelvoParaTerceiro", m_pDataBase->m_ChaveRegistroParaTerceiro.Prepara(operacao, uiPonteiro, reg),
                  "m_pDataBase->m_ChaveRegistroParaTerceiro.Grava(uiPonteiro, reg)");
    return S_OK;
}

HRESULT CBaseMiddleware::GravaChaveRegistroTelvoParaTerceiroPendente(const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regPS) {
    XV_ESCOPO({"regDmcRegistroTelvo", regPS.regDmcRegistroTelvo.uiValor});
    using namespace XVValidacaoIntegracao;
    XV_CHECK(ValidaAcessoGravacao());
    if (regPS.regDmcRegistroTelvo.EhNulo()) XV_FALHA(E_XVCR_CHAVE_REGISTRO_TELVO_ZERADA);
    XV_CHECK(ValidaDmc(regPS.regDmcRegistroTelvo));
    XV_CHECK(ValidaDmc(regPS.regDmcOrigemIntegracao));
    XV_CHECK(ValidaTipoIntegracao(regPS.eTipoIntegracao));
    XV_CHECK(ValidaSistemaIntegracao(regPS.eSistemaIntegracao));
    const CXVAcessoDefault acesso(this);
    return ExecutaOperacao(EFila::eSozinha, 0, [&](CXVOperacao& operacao) { return PreparaChaveRegistroPendente(operacao, regPS); });
}

HRESULT CBaseMiddleware::PreparaChaveRegistroPendente(CXVOperacao& operacao, const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regPS) {
    tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS regFiltroPS{};
    regFiltroPS.regDmcRegistroTelvo = regPS.regDmcRegistroTelvo;
    regFiltroPS.uiBaseDadosTerceiro = regPS.uiBaseDadosTerceiro;
    regFiltroPS.eTipoIntegracao = regPS.eTipoIntegracao;
    regFiltroPS.eSistemaIntegracao = regPS.eSistemaIntegracao;
    tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS regRetornoFiltro;
    XV_CHECK_EM("GravaChaveRegistroTelvoParaTerceiroPendente", BuscaChaveRegistroTelvoParaTerceiro(regFiltroPS, &regRetornoFiltro));
    if (!regRetornoFiltro.regDmcRegistroTelvo.EhNulo()) return S_OK;
    REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 reg = DePS(regPS);
    reg.uiChaveRegistroSistemaTerceiro = 0;
    XVUInt uiPonteiro = XVDATABASE_POSICAO_NOVO_REGISTRO;
    XV_PREPARA_EM(operacao, "GravaChaveRegistroTelvoParaTerceiroPendente", m_pDataBase->m_ChaveRegistroParaTerceiro.Prepara(operacao, uiPonteiro, reg),
                  "m_pDataBase->m_ChaveRegistroParaTerceiro.Grava(uiPonteiro, reg)");
    return S_OK;
}

HRESULT CBaseMiddleware::BuscaChaveRegistroTelvoParaTerceiro(const tagREG_CR_FILTRO_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS& regFiltroPS,
                                                             tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS* pRegRetornoFiltro) {
    XV_ESCOPO({"regDmcRegistroTelvo", regFiltroPS.regDmcRegistroTelvo.uiValor});
    if (pRegRetornoFiltro == nullptr) XV_FALHA(E_POINTER);
    *pRegRetornoFiltro = {};
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 regFiltro{};
    regFiltro.uiChaveRegistroSistemaTerceiro = regFiltroPS.uiChaveRegistroSistemaTerceiro;
    regFiltro.regDmcRegistroTelvo = regFiltroPS.regDmcRegistroTelvo;
    regFiltro.uiBaseDadosTerceiro = regFiltroPS.uiBaseDadosTerceiro;
    regFiltro.eTipoIntegracao = regFiltroPS.eTipoIntegracao;
    regFiltro.eSistemaIntegracao = regFiltroPS.eSistemaIntegracao;
    const XVUInt uiColunasIndex = regFiltro.uiChaveRegistroSistemaTerceiro != 0 ? eIndexacao_SistemaTipoIntegracaoIDTerceiro
                                                                               : eIndexacao_SistemaTipoIntegracaoChaveTelvo;
    const XVUInt64 uiChaveIndex = m_pDataBase->GetChaveIndex(regFiltro, uiColunasIndex);
    return LeDeUmMomento([&] {
        *pRegRetornoFiltro = {};
        std::vector<XVUInt> listaPonteiros;
        XV_CHECK_EM("BuscaChaveRegistroTelvoParaTerceiro", m_pDataBase->m_ChaveRegistroParaTerceiro.ExisteIndex(uiChaveIndex, listaPonteiros, uiColunasIndex));
        for (const XVUInt uiPonteiro : listaPonteiros) {
            REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2 reg;
            XV_CHECK_EM("BuscaChaveRegistroTelvoParaTerceiro", m_pDataBase->m_ChaveRegistroParaTerceiro.Le(uiPonteiro, &reg));
            const REG_XVDMC regDmcRegistroTelvo = reg.regDmcRegistroTelvo;
            if ((regFiltroPS.regDmcRegistroTelvo.EhNulo() || regDmcRegistroTelvo == regFiltroPS.regDmcRegistroTelvo) &&
                (regFiltroPS.uiChaveRegistroSistemaTerceiro == 0 || reg.uiChaveRegistroSistemaTerceiro == regFiltroPS.uiChaveRegistroSistemaTerceiro) &&
                reg.eSistemaIntegracao == regFiltroPS.eSistemaIntegracao && reg.eTipoIntegracao == regFiltroPS.eTipoIntegracao &&
                reg.uiBaseDadosTerceiro == regFiltroPS.uiBaseDadosTerceiro) {
                *pRegRetornoFiltro = ParaPS(reg);
                return S_OK;
            }
        }
        return S_OK;
    });
}

HRESULT CBaseMiddleware::GetPonteiroIndexDataHoraIntegracao(const REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1& reg, XVUInt& uiPonteiro) {
    uiPonteiro = 0;
    const XVUInt64 uiChaveIndex = m_pDataBase->GetChaveIndex(reg, eIndexacao_SistemaTipoIntegracaoTipoData);
    std::vector<XVUInt> listaPonteiros;
    XV_CHECK(m_pDataBase->m_DataHoraIntegracao.ExisteIndex(uiChaveIndex, listaPonteiros, EColuna_Indexacao_DataHoraIntegracao::eIndexacao_SistemaTipoIntegracaoTipoData));
    for (const XVUInt uiCandidato : listaPonteiros) {
        REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1 regComparacao;
        XV_CHECK_TEXTO(m_pDataBase->m_DataHoraIntegracao.Le(uiCandidato, &regComparacao),
                       "m_pDataBase->m_DataHoraIntegracao.Le(uiPonteiro, &regComparacao)");
        if (regComparacao.eTipoIntegracao == reg.eTipoIntegracao && regComparacao.eSistemaIntegracao == reg.eSistemaIntegracao &&
            regComparacao.eTipoData == reg.eTipoData) {
            uiPonteiro = uiCandidato;
            return S_OK;
        }
    }
    return S_OK;
}

HRESULT CBaseMiddleware::GravaDataHoraIntegracaoTerceiro(const tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS& regPS) {
    XV_ESCOPO({"regDataHora", regPS.regDataHora.uiValor});
    using namespace XVValidacaoIntegracao;
    XV_CHECK(ValidaAcessoGravacao());
    XV_CHECK(ValidaDataHora(regPS.regDataHora));
    XV_CHECK(ValidaTipoIntegracao(regPS.eTipoIntegracao));
    XV_CHECK(ValidaSistemaIntegracao(regPS.eSistemaIntegracao));
    XV_CHECK(ValidaTipoData(regPS.eTipoData));
    const CXVAcessoDefault acesso(this);
    return ExecutaOperacao(EFila::eSozinha, 0, [&](CXVOperacao& operacao) {
        const REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1 reg{regPS.regDataHora, regPS.eTipoIntegracao, regPS.eSistemaIntegracao, regPS.eTipoData, {}};
        XVUInt uiPonteiro = 0;
        XV_CHECK_EM("GravaDataHoraIntegracaoTerceiro", GetPonteiroIndexDataHoraIntegracao(reg, uiPonteiro));
        XV_PREPARA_EM(operacao, "GravaDataHoraIntegracaoTerceiro", m_pDataBase->m_DataHoraIntegracao.Prepara(operacao, uiPonteiro, reg),
                      "m_pDataBase->m_DataHoraIntegracao.Grava(uiPonteiro, reg)");
        return S_OK;
    });
}

HRESULT CBaseMiddleware::BuscaDataHoraIntegracaoTerceiro(const tagREG_CR_FILTRO_DATA_HORA_INTEGRACAO_TERCEIROPS& regFiltroPS,
                                                         tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS* pRegRetorno) {
    XV_ESCOPO();
    if (pRegRetorno == nullptr) XV_FALHA(E_POINTER);
    *pRegRetorno = {};
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    const REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1 regFiltro{{}, regFiltroPS.eTipoIntegracao, regFiltroPS.eSistemaIntegracao, regFiltroPS.eTipoData, {}};
    return LeDeUmMomento([&] {
        *pRegRetorno = {};
        XVUInt uiPonteiro = 0;
        XV_CHECK_EM("BuscaDataHoraIntegracaoTerceiro", GetPonteiroIndexDataHoraIntegracao(regFiltro, uiPonteiro));
        if (uiPonteiro == 0) return S_OK;
        REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1 reg;
        XV_CHECK_EM("BuscaDataHoraIntegracaoTerceiro", m_pDataBase->m_DataHoraIntegracao.Le(uiPonteiro, &reg));
        *pRegRetorno = {reg.regDataHora, reg.eTipoIntegracao, reg.eSistemaIntegracao, reg.eTipoData, {}};
        return S_OK;
    });
}
// clang-format on
