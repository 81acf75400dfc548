#include "core/xvrpcdll/XVComponenteMiddleware.h"

template class T_XVUnknown<IXVCR_Middleware, CXVMiddlewareComSelos>;
template class T_XVCR_Middleware<CXVMiddlewareComSelos>;
