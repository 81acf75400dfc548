#include "tools/xvcr/text/XVTextoEntrada.h"

#include "tools/xvcr/text/XVErros.h"
#include "tools/xvcr/text/XVFonteBytes.h"

namespace {

constexpr std::size_t k_uiLimiteTexto = 0x7FFFFFFFU;  // bytes; the store counts a text in 32 bits

}  // namespace

std::string XVLeTextoEntrada(std::string_view sArgumento) {
    if (sArgumento == "-") return XVLeTudo(*XVAbreFonte("-"), k_uiLimiteTexto);
    if (sArgumento.starts_with("@@")) return std::string(sArgumento.substr(1));
    if (sArgumento.starts_with('@'))
        return XVLeTudo(*XVAbreFonte(std::string(sArgumento.substr(1))), k_uiLimiteTexto);
    return std::string(sArgumento);
}

std::string XVConfereTexto(std::string_view sTexto) {
    if (sTexto.find('\0') != std::string_view::npos)
        return "o texto contém um byte zero na posição " + std::to_string(sTexto.find('\0')) +
               ", que não pode ser guardado";
    return {};
}
