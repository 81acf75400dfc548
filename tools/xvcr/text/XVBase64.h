// Base64 (RFC 4648, with padding) of texts that JSON cannot hold.
#pragma once

#include <string>
#include <string_view>

namespace XVBase64 {

std::string Codifica(std::string_view sBytes);
// False for anything but canonical base64; *psBytes is then unchanged.
bool Decodifica(std::string_view sTexto, std::string* psBytes);

}  // namespace XVBase64
