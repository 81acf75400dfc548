// A library's entry with another table than the interface's: must not compile.
#include "suite/providers/XVProvedorPlugin.h"

extern "C" int32_t XVPROVEDOR_CHAMADA XVProvedorObtem(uint32_t, XVProvedorDados*) {
    return 0;
}
