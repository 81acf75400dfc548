// Programs of 32 bits, which hold no store themselves: only the door to the server.
#include "client/XVConexao.h"

namespace XVCliente {

HRESULT CXVCliente::ConectaLocal(const SIdentificacao&, const SLojaLocal&) {
    XVIgnora(Desconecta());
    return E_NOTIMPL;
}

}  // namespace XVCliente
