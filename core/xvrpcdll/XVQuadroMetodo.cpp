#include "core/xvrpcdll/XVQuadroMetodo.h"

#include "support/faults/XVExcecoes.h"

void XVRegistraFalhaMetodo(HRESULT hr, const char* pszExpressao, const SMetodoInterface& rMetodo,
                           CXVBaseParaRotinas& rBase) noexcept {
    const SPontoFalha ponto{pszExpressao, rMetodo.pszClasse, rMetodo.pszFuncao, rMetodo.fonte,
                            rMetodo.iLinha};
    XVIgnora(XVRegistraFalha(hr, ponto, &rBase));
    if (SUCCEEDED(hr)) return;
    // The caller has the code, whatever becomes of its description.
    XVIgnora(XVNaFronteira([&] {
        rBase.GetUltimoErro().Registra(hr, rMetodo.pszNomeCompleto, rMetodo.fonte.pszUnidade,
                                       static_cast<XVUInt>(rMetodo.iLinha));
        return S_OK;
    }));
}
