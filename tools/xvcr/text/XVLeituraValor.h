// Texts of the command line and of JSON turned into field values. A result other than an empty text is the
// Portuguese explanation of what was expected; the value is then unchanged.
#pragma once

#include <string>
#include <string_view>

#include "contract/XVEnumeracoesTexto.h"
#include "support/values/XVDmc.h"

namespace XVLeituraValor {

[[nodiscard]] std::string Le(std::string_view sTexto, XVUInt64* puiValor);
[[nodiscard]] std::string Le(std::string_view sTexto, XVUInt* pulValor);
[[nodiscard]] std::string Le(std::string_view sTexto, XVUShort* pusValor);
[[nodiscard]] std::string Le(std::string_view sTexto, XVByte* pucValor);
// Text form or decimal value; "0" is the null DMC.
[[nodiscard]] std::string Le(std::string_view sTexto, REG_XVDMC* pDmc);
// ISO 8601 or the packed decimal value; empty and "0" are none.
[[nodiscard]] std::string Le(std::string_view sTexto, REG_XVDMAHMSUTC* pDataHora);
[[nodiscard]] std::string Le(std::string_view sTexto, EEnumeracao eEnumeracao, XVUInt* pulValor);

}  // namespace XVLeituraValor
