// UTF-8, in which the system keeps its texts, and UTF-16, which the operating system takes.
#pragma once

#include <string>
#include <string_view>

namespace XVTextoWindows {

// False, and an empty result, when the text is no valid UTF-8.
bool ParaLargo(std::string_view sTexto, std::wstring& sLargo);
// Unpaired surrogates become U+FFFD.
std::string ParaUtf8(std::wstring_view sLargo);

}  // namespace XVTextoWindows
