// CBaseMiddleware: integrations out to another store, and in from one under the keys that they had there.
#include <algorithm>

#include "middleware/BaseMiddleware.h"
#include "middleware/XVValidacaoIntegracao.h"

namespace {

using ETipo = SIntegracaoTransportada::ETipo;

bool EhVago(const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg) {
    const auto* p = reinterpret_cast<const char*>(&reg);
    return std::all_of(p, p + sizeof(reg), [](char c) { return c == 0; });
}

bool SaoIguais(const SIntegracaoTransportada& rUma, const SIntegracaoTransportada& rOutra) {
    return rUma.eTipo == rOutra.eTipo && rUma.dados == rOutra.dados;
}

bool TemNul(const std::string& sTexto) {
    return sTexto.find('\0') != std::string::npos;
}

}  // namespace

bool XVPodeSerImportada(const SIntegracaoTransportada& rIntegracao) {
    using namespace XVValidacaoIntegracao;
    const CXVDadosCR_IntegracaoMiddleware& r = rIntegracao.dados;
    const HRESULT ahr[] = {ValidaDmcIntegracao(r.regDmc),
                           ValidaDmc(r.regDmcIntegracaoOrigem),
                           ValidaDmc(r.regDmcMovimentoOrigem),
                           ValidaDataHora(r.regDataHoraInclusao),
                           ValidaDataHora(r.regDataHoraAlteracaoStatus),
                           ValidaTipoIntegracao(r.eTipoIntegracao),
                           ValidaStatusIntegracao(r.eStatusIntegracao),
                           ValidaSistemaIntegracao(r.eSistemaIntegracao),
                           ValidaTipoTransacao(r.eTipoTransacao)};
    const bool bNoIndice =
        r.eStatusIntegracao != 0 || r.eSistemaIntegracao != 0 || r.uiChaveIntegracaoSistemaTerceiro != 0;
    return std::all_of(std::begin(ahr), std::end(ahr), [](HRESULT hr) { return SUCCEEDED(hr); }) &&
           r.regDmc.GetTipo() == REG_XVDMC::k_uiTipoIntegracao && r.uiChaveRegistroSistemaTerceiro == 0 &&
           (rIntegracao.eTipo == ETipo::eInteira || !bNoIndice) && !TemNul(r.sRegistroJSON) &&
           !TemNul(r.sMensagemIntegracao) && !TemNul(r.sJSONRetornoIntegracao);
}

HRESULT CBaseMiddleware::ListaDias(std::vector<XVUInt64>* pLista) {
    XV_ESCOPO();
    XV_CHECK(ValidaAcesso());
    *pLista = m_pDataBase->m_Integracao.GetChaves();
    return S_OK;
}

HRESULT CBaseMiddleware::ContaRegistrosDoDia(XVUInt64 uiDia, XVUInt* pulQuantidade) {
    XV_ESCOPO({"uiDia", uiDia});
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    XVUInt64 uiQuantidade = 0;
    const HRESULT hr = LeDeUmMomento([&] {
        XV_CHECK_EM("ContaRegistrosDoDia", m_pDataBase->m_Integracao.GetQtdRegistros(uiDia, &uiQuantidade));
        return S_OK;
    });
    *pulQuantidade = static_cast<XVUInt>(uiQuantidade);
    return hr;
}

HRESULT CBaseMiddleware::LeTransportadas(std::span<const REG_XVDMC> aDmcs,
                                         std::vector<SIntegracaoTransportada>* pLista) {
    XV_ESCOPO({"uiQuantidade", XVUInt64{aDmcs.size()}});
    XV_CHECK(ValidaAcesso());
    const CXVAcessoDefault acesso(this);
    return LeDeUmMomento([&] {
        pLista->clear();
        pLista->resize(aDmcs.size());
        for (std::size_t i = 0; i < aDmcs.size(); ++i)
            XV_CHECK_EM("LeTransportadas", LeTransportada(aDmcs[i], &(*pLista)[i]));
        return S_OK;
    });
}

HRESULT CBaseMiddleware::LeTransportada(REG_XVDMC regDmc, SIntegracaoTransportada* pIntegracao) {
    *pIntegracao = {};
    XV_CHECK_EM("LeTransportadas",
                m_pDataBase->m_IndexIntegracao.ExisteIndex(
                    CXVDataBase_CR_Middleware::GetChaveIndex(regDmc), pIntegracao->ulPosicaoIndice,
                    EColuna_Indexacao_Middleware::eIndexacao_DMCIntegracao));
    if (pIntegracao->ulPosicaoIndice != 0) return LeRegistros(regDmc, &pIntegracao->dados, k_ullLeTextos);
    pIntegracao->eTipo = ETipo::eSubstituida;
    REG_CR_INTEGRACAO_MIDDLEWARE_V2 reg;
    XV_CHECK_EM("LeTransportadas",
                m_pDataBase->m_Integracao.Le(regDmc.GetDma().ToChave(), regDmc.GetPonteiro(), &reg));
    if (EhVago(reg)) pIntegracao->eTipo = ETipo::eVaga;
    return LeDoRegistro(regDmc, reg, &pIntegracao->dados, k_ullLeTextos);
}

HRESULT CBaseMiddleware::ImportaIntegracao(const SIntegracaoTransportada& rIntegracao,
                                           EImportada* peImportada) {
    const CXVDadosCR_IntegracaoMiddleware& rDados = rIntegracao.dados;
    XV_ESCOPO({"regDmc", rDados.regDmc.uiValor});
    XV_CHECK(ValidaAcessoGravacao());
    if (!XVPodeSerImportada(rIntegracao)) XV_FALHA(E_INVALIDARG);
    const CXVAcessoDefault acesso(this);
    // It decides by the positions of a day and by the keys of the bank, which any other may be changing.
    const HRESULT hr = ExecutaOperacao(EFila::eSozinha, 0, [&](CXVOperacao& operacao) {
        return PreparaImportacao(operacao, rIntegracao, peImportada);
    });
    if (FAILED(hr)) return hr;
    if (*peImportada == EImportada::eNova && rIntegracao.eTipo == ETipo::eInteira)
        GravaLinhaLogGeral("ImportaIntegracao", rDados.regDmc, rDados.uiChaveIntegracaoSistemaTerceiro,
                           rDados.regDmcMovimentoOrigem);
    return S_OK;
}

HRESULT CBaseMiddleware::PreparaImportacao(CXVOperacao& operacao, const SIntegracaoTransportada& rIntegracao,
                                           EImportada* peImportada) {
    const REG_XVDMC regDmc = rIntegracao.dados.regDmc;
    const XVUInt64 uiDia = regDmc.GetDma().ToChave();
    XVUInt64 uiQuantidade = 0;
    if (m_pDataBase->m_Integracao.TemMembro(uiDia))
        XV_CHECK_EM("ImportaIntegracao", m_pDataBase->m_Integracao.GetQtdRegistros(uiDia, &uiQuantidade));
    if (regDmc.GetPonteiro() <= uiQuantidade) {
        SIntegracaoTransportada atual;
        XV_CHECK_EM("ImportaIntegracao", LeTransportada(regDmc, &atual));
        *peImportada = SaoIguais(atual, rIntegracao) ? EImportada::eJaEstava : EImportada::eConflito;
        return S_OK;
    }
    *peImportada = EImportada::eNova;
    if (regDmc.GetPonteiro() != uiQuantidade + 1) {
        *peImportada = EImportada::eLacuna;
        return S_OK;
    }
    if (rIntegracao.eTipo == ETipo::eInteira) {
        const tagREG_CR_INTEGRACAO_MIDDLEWAREPS regPS = rIntegracao.dados.ComoRegistro();
        XVUInt uiPosicaoDoBanco = XVDATABASE_POSICAO_NOVO_REGISTRO;
        XV_CHECK_EM("ImportaIntegracao", BuscaPosicaoIndexSistemaTerceiro(&regPS, uiPosicaoDoBanco, regDmc));
        if (uiPosicaoDoBanco != XVDATABASE_POSICAO_NOVO_REGISTRO) {
            *peImportada = EImportada::eChaveDoBanco;
            return S_OK;
        }
    }
    return PreparaImportada(operacao, rIntegracao);
}

REG_CR_INDEX_INTEGRACAO_V1 CBaseMiddleware::MontaIndice(const CXVDadosCR_IntegracaoMiddleware& rDados) {
    return {rDados.uiChaveIntegracaoSistemaTerceiro, rDados.regDmc, rDados.eSistemaIntegracao,
            rDados.eStatusIntegracao};
}
