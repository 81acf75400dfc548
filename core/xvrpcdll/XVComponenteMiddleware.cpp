#include "core/xvrpcdll/XVComponenteMiddleware.h"

template class T_XVUnknown<IXVCR_Middleware, CBaseMiddleware>;
template class T_XVCR_Middleware<CBaseMiddleware>;
