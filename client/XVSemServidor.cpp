// Systems that have no server of the component, and no COM: only the door to a store in this process.
#include "client/XVConexao.h"

namespace XVCliente {

bool TemServidor() {
    return false;
}

CApartamento::CApartamento() : m_hr(S_OK) {}
CApartamento::~CApartamento() = default;

HRESULT CXVCliente::Conecta(const SIdentificacao&) {
    XVIgnora(Desconecta());
    return E_NOTIMPL;
}

}  // namespace XVCliente
