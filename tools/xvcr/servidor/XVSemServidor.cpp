// Systems on which the component has no server.
#include "tools/xvcr/XVFabricaOperacoes.h"
#include "tools/xvcr/text/XVErros.h"

std::unique_ptr<IXVOperacoes> XVCriaOperacoesServidor() {
    XVErroDeUso("--servidor: este programa foi feito sem o cliente do servidor");
}
