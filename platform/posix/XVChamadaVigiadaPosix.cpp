#include "platform/XVChamadaVigiada.h"

// Signals end the process by themselves.
void XVVigiaFalhas(PXVFalha) {}

void XVExecutaVigiada(void (*pfnChamada)(void*), void* pDados) {
    pfnChamada(pDados);
}
