// A result code as a person writes it down, in every form in which it is shown somewhere.
#pragma once

#include <string>
#include <string_view>

#include "platform/XVTipos.h"

namespace XVLeituraCodigo {

// "0x81080AAA", "81080AAA", "2164787882" or "-2130179414" (Windows shows negative numbers), or a symbolic
// name of this system's or of Windows' codes, any case. The explanation of what is wrong, or an empty text.
[[nodiscard]] std::string Le(std::string_view sTexto, HRESULT* phr);

}  // namespace XVLeituraCodigo
