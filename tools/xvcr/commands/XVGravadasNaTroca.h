// How the operations of the exchange answer: every integration that they recorded, also where a later item
// failed, and what a failure means for what was sent already.
#pragma once

#include "tools/xvcr/commands/XVContexto.h"

// hr is what the operation answered. Writes the keys of what it recorded, one a line, or pszNada where there
// is nothing; then a failure is thrown. pszConselho follows what the failure is, in the place of any advice
// to repeat: items that are done would be done again.
void XVMostraGravadas(CXVContexto& rContexto, XVCliente::CXVCliente& rCliente, HRESULT hr,
                      const char* pszNada, const char* pszConselho);
