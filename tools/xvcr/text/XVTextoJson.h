// JSON put behind a text, for lines that are written a million times. XVLinhaJson.h reads them.
#pragma once

#include <string>
#include <string_view>

namespace XVTextoJson {

// A string with its quotation marks. sTexto is valid UTF-8.
void AnexaTexto(std::string& rPara, std::string_view sTexto);

}  // namespace XVTextoJson
