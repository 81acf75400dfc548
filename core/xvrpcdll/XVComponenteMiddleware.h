// The component over the integration store: the one that the server hosts.
#pragma once

#include "core/xvrpcdll/XVCR_Middleware.h"
#include "middleware/verificacao/XVMiddlewareComSelos.h"

// Instantiated once, in XVComponenteMiddleware.cpp.
extern template class T_XVUnknown<IXVCR_Middleware, CXVMiddlewareComSelos>;
extern template class T_XVCR_Middleware<CXVMiddlewareComSelos>;

using CXVCR_Middleware = T_XVCR_Middleware<CXVMiddlewareComSelos>;
