// Counted buffers of interface records: reading them with distrust, filling and freeing results.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "contract/XVCR_RegistrosPS.h"

namespace CXVStringPS {

// A count above 0 with a null pointer, or a NUL inside the text (it would not come back whole): false.
bool EhValido(const _REG_DF_TEXTOPS& reg);
// The bytes of a valid record; valid while the record's buffer lives.
std::string_view RegToString(const _REG_DF_TEXTOPS& reg);
// A record for a call over the text itself: nothing is copied, and it holds while the text lives unchanged.
// A text of 4 GiB or more gives a record that is not valid.
_REG_DF_TEXTOPS Vista(std::string_view sTexto);
// Fills an output record with a copy of the text (empty: null and 0). E_OUTOFMEMORY leaves it empty;
// a text of 4 GiB or more is E_INVALIDARG.
HRESULT StringToReg(std::string_view sTexto, _REG_DF_TEXTOPS* pReg);
void Libera(_REG_DF_TEXTOPS* pReg);

}  // namespace CXVStringPS

// Frees the buffers that a result record owns and clears them. Null is allowed.
void XVLiberaBuffers(tagREG_CR_INTEGRACAO_MIDDLEWAREPS* pReg);
void XVLiberaBuffers(_REG_DF_LISTA_XVDMCPS* pReg);
void XVLiberaBuffers(_REG_CR_LISTA_BYTESPS* pReg);
void XVLiberaBuffers(tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS* pReg);

// A list for a call over the keys themselves, as CXVStringPS::Vista.
_REG_DF_LISTA_XVDMCPS XVVista(const std::vector<REG_XVDMC>& lista);
