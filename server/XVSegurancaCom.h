// Security of the calls that the process receives and makes.
#pragma once

#include "platform/XVTipos.h"

// Level of authentication (RPC_C_AUTHN_LEVEL_...) that the suite's registry values ask for: privacy, so
// that every call is authenticated and encrypted; integrity with "DesabilitaEncriptacaoDCOM"; none with
// "DesabilitaAutenticacaoDCOM", which also overrides the other.
XVUInt XVNivelAutenticacaoDCOM();

// Sets the process's security. Once per process, after the apartment and before the first proxy.
HRESULT XVInicializaSegurancaCom();
