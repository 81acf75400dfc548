// Chooses where the operations of a store are carried out.
#pragma once

#include <memory>

#include "tools/xvcr/IXVOperacoes.h"

// bServidor: through the component's server; a program built without its client answers with a CXVErro of
// usage.
std::unique_ptr<IXVOperacoes> XVCriaOperacoes(bool bServidor);

// The operations through the server, from the one of servidor/'s sources that this build has.
std::unique_ptr<IXVOperacoes> XVCriaOperacoesServidor();
