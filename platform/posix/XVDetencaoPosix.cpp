#include "platform/XVDetencao.h"

namespace XVDetencao {

void Detem() {}
void Espera() {}
bool SetIsenta(bool) {
    return false;
}

}  // namespace XVDetencao
