#include <algorithm>
#include <limits>

#include "contract/XVDadosCR.h"

namespace {

bool EhListaValida(XVUInt ulQuantidade, const XVUInt* pLista) {
    return ulQuantidade == 0 || pLista != nullptr;
}

std::vector<XVUInt> Lista(XVUInt ulQuantidade, const XVUInt* pLista) {
    if (ulQuantidade == 0) return {};
    return {pLista, pLista + ulQuantidade};
}

// A list over lista itself; one that no record can count is refused by every reader.
void PoeLista(const std::vector<XVUInt>& lista, XVUInt* pulQuantidade, XVUInt** ppLista) {
    const bool bCabe = lista.size() <= std::numeric_limits<XVUInt>::max();
    *pulQuantidade = bCabe ? static_cast<XVUInt>(lista.size()) : std::numeric_limits<XVUInt>::max();
    // Only read through a record that goes in.
    *ppLista = bCabe && !lista.empty() ? const_cast<XVUInt*>(lista.data()) : nullptr;
}

}  // namespace

HRESULT CXVDadosCR_FiltroIntegracaoMiddleware::Valida(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg) {
    if (!EhListaValida(reg.ulQuantidadeTipoIntegracao, reg.pListaTipoIntegracao) ||
        !EhListaValida(reg.ulQuantidadeStatusIntegracao, reg.pListaStatusIntegracao) ||
        !EhListaValida(reg.ulQuantidadeSistemaIntegracao, reg.pListaSistemaIntegracao) ||
        !EhListaValida(reg.ulQuantidadeTipoTransacao, reg.pListaTipoTransacao))
        return E_INVALIDARG;
    for (const REG_XVDMAHMSUTC& rDataHora :
         {reg.regDataHoraInicialInclusao, reg.regDataHoraFinalInclusao, reg.regDataHoraInicialAlteracaoStatus,
          reg.regDataHoraFinalAlteracaoStatus})
        if (!rDataHora.EhValida()) return E_INVALIDARG;
    return S_OK;
}

HRESULT CXVDadosCR_FiltroIntegracaoMiddleware::CopiarDe(const tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS& reg) {
    if (const HRESULT hr = Valida(reg); FAILED(hr)) return hr;
    uiChaveIntegracaoSistemaTerceiroInicial = reg.uiChaveIntegracaoSistemaTerceiroInicial;
    uiChaveIntegracaoSistemaTerceiroFinal = reg.uiChaveIntegracaoSistemaTerceiroFinal;
    regDataHoraInicialInclusao = reg.regDataHoraInicialInclusao;
    regDataHoraFinalInclusao = reg.regDataHoraFinalInclusao;
    regDataHoraInicialAlteracaoStatus = reg.regDataHoraInicialAlteracaoStatus;
    regDataHoraFinalAlteracaoStatus = reg.regDataHoraFinalAlteracaoStatus;
    listaTipoIntegracao = Lista(reg.ulQuantidadeTipoIntegracao, reg.pListaTipoIntegracao);
    listaStatusIntegracao = Lista(reg.ulQuantidadeStatusIntegracao, reg.pListaStatusIntegracao);
    listaSistemaIntegracao = Lista(reg.ulQuantidadeSistemaIntegracao, reg.pListaSistemaIntegracao);
    listaTipoTransacao = Lista(reg.ulQuantidadeTipoTransacao, reg.pListaTipoTransacao);
    return S_OK;
}

tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS CXVDadosCR_FiltroIntegracaoMiddleware::ComoRegistro() const {
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.uiChaveIntegracaoSistemaTerceiroInicial = uiChaveIntegracaoSistemaTerceiroInicial;
    reg.uiChaveIntegracaoSistemaTerceiroFinal = uiChaveIntegracaoSistemaTerceiroFinal;
    reg.regDataHoraInicialInclusao = regDataHoraInicialInclusao;
    reg.regDataHoraFinalInclusao = regDataHoraFinalInclusao;
    reg.regDataHoraInicialAlteracaoStatus = regDataHoraInicialAlteracaoStatus;
    reg.regDataHoraFinalAlteracaoStatus = regDataHoraFinalAlteracaoStatus;
    PoeLista(listaTipoIntegracao, &reg.ulQuantidadeTipoIntegracao, &reg.pListaTipoIntegracao);
    PoeLista(listaStatusIntegracao, &reg.ulQuantidadeStatusIntegracao, &reg.pListaStatusIntegracao);
    PoeLista(listaSistemaIntegracao, &reg.ulQuantidadeSistemaIntegracao, &reg.pListaSistemaIntegracao);
    PoeLista(listaTipoTransacao, &reg.ulQuantidadeTipoTransacao, &reg.pListaTipoTransacao);
    return reg;
}

bool CXVDadosCR_FiltroIntegracaoMiddleware::Find(const std::vector<XVUInt>& lista, XVUInt e) {
    return std::find(lista.begin(), lista.end(), e) != lista.end();
}
