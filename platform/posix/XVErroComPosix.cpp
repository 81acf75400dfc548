#include "platform/XVErroCom.h"

bool XVErroCom::EmVoo(HRESULT*) noexcept {
    return false;
}
