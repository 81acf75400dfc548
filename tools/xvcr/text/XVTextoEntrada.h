// A text as the user gives it on the command line: literally, "@file" for the bytes of a file, "-" for the
// standard input, "@@..." for a literal that begins with "@". Bytes are never converted.
#pragma once

#include <string>
#include <string_view>

// Failures are thrown as CXVErro.
std::string XVLeTextoEntrada(std::string_view sArgumento);

// Why the store cannot keep the text, or an empty text.
std::string XVConfereTexto(std::string_view sTexto);
