#include "core/xvrpcdll/XVQuadroMetodo.h"

void XVRegistraFalhaMetodo(HRESULT hr, const char* pszExpressao, const SMetodoInterface& rMetodo,
                           CXVBaseParaRotinas& rBase) noexcept {
    const SPontoFalha ponto{pszExpressao, rMetodo.pszClasse, rMetodo.pszFuncao, rMetodo.pszFonte,
                            rMetodo.iLinha};
    XVIgnora(XVRegistraFalha(hr, ponto, &rBase));
    if (SUCCEEDED(hr)) return;
    try {
        rBase.GetUltimoErro().Registra(hr, rMetodo.pszNomeCompleto, rMetodo.pszFonte,
                                       static_cast<XVUInt>(rMetodo.iLinha));
    } catch (...) {  // the caller still has the code
    }
}
