#include "platform/XVGanchoParametroInvalido.h"

CXVGanchoParametroInvalido::CXVGanchoParametroInvalido(PTratadorParametroInvalido) noexcept {}

CXVGanchoParametroInvalido::~CXVGanchoParametroInvalido() = default;

bool CXVGanchoParametroInvalido::TemRuntime() noexcept {
    return false;
}
