// The component as a client sees it that uses no library: the raw interface, which repeats nothing.
#pragma once

#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <functional>
#include <memory>

#include "client/XVConexao.h"
#include "platform/XVTentativas.h"
#include "support/values/XVCrc64.h"

namespace XVComponenteCru {

struct CLarga {
    void operator()(IXVCR_Middleware* p) const { p->Release(); }
};
using PComponente = std::unique_ptr<IXVCR_Middleware, CLarga>;

// Asked again while the server of the test before is ending, which has many codes.
inline PComponente Cria() {
    CLSID clsid;
    IXVCR_Middleware* p = nullptr;
    EXPECT_EQ(::CLSIDFromProgID(L"XVCR.Middleware.1", &clsid), S_OK);
    const auto cria = [&] {
        return ::CoCreateInstance(clsid, nullptr, CLSCTX_LOCAL_SERVER, IXVCR_Middleware::k_iidInterface,
                                  reinterpret_cast<void**>(&p));
    };
    EXPECT_EQ(XVTenta(k_iTentativasLongas, cria, [](HRESULT hr) { return FAILED(hr); }), S_OK);
    return PComponente(p);
}

// With a record that is changed, and sealed again or not.
inline HRESULT Inicializa(
    IXVCR_Middleware& rComponente, const std::string& sEmpresa,
    const std::function<void(REG_DF_INICIALIZAPS&)>& fnAltera = [](auto&) {}, bool bSela = true) {
    REG_DF_INICIALIZAPS reg;
    EXPECT_TRUE(XVCliente::MontaRegistroInicializacao({.sEmpresa = "HOSTIL", .usUsuario = 3}, &reg));
    std::fill(std::begin(reg.szEmpresa), std::end(reg.szEmpresa), '\0');
    std::copy(sEmpresa.begin(), sEmpresa.end(), reg.szEmpresa);
    fnAltera(reg);
    if (bSela) reg.uiCRC = XVCrc64(&reg, offsetof(REG_DF_INICIALIZAPS, uiCRC));
    return rComponente.Inicializa(&reg);
}

}  // namespace XVComponenteCru
