#include "core/xvrpcdll/XVComponenteMiddleware.h"

// The records' layout as the interface promises it.
#define XV_TAMANHO(registro, tamanho) static_assert(sizeof(registro) == (tamanho));
#define XV_OFFSET(registro, campo, posicao) static_assert(offsetof(registro, campo) == (posicao));
#include "contract/XVCR_LayoutRegistros.inc"
#undef XV_TAMANHO
#undef XV_OFFSET

template class T_XVUnknown<IXVCR_Middleware, CBaseMiddleware>;
template class T_XVCR_Middleware<CBaseMiddleware>;
