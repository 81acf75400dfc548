// Security of the calls that the process receives and makes.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "platform/XVTipos.h"

// Level of authentication (RPC_C_AUTHN_LEVEL_...) that the suite's registry values ask for: privacy, so
// that every call is authenticated and encrypted; integrity with "DesabilitaEncriptacaoDCOM"; none with
// "DesabilitaAutenticacaoDCOM", which also overrides the other.
XVUInt XVNivelAutenticacaoDCOM();

// Who may call, as a self-relative security descriptor: the access permissions of the component's application
// where an administrator has set them, or else the server's own choice. A permission that cannot be read is a
// failure.
HRESULT XVEscolheAcesso(std::vector<BYTE>* pDescritor);

// The self-relative security descriptor of a text in the system's notation.
HRESULT XVDescritorDeTexto(const std::wstring& sTexto, std::vector<BYTE>* pDescritor);

// Sets the process's security. Once per process, after the apartment and before the first proxy.
HRESULT XVInicializaSegurancaCom();
