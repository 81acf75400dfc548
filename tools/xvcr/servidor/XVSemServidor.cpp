// Systems on which the component has no server.
#include "tools/xvcr/XVErros.h"
#include "tools/xvcr/XVFabricaOperacoes.h"

std::unique_ptr<IXVOperacoes> XVCriaOperacoesServidor() {
    XVErroDeUso("--servidor: este programa foi feito sem o cliente do servidor");
}
