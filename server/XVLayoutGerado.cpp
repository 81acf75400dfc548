// The records that the proxy carries have the layout of the records that component and client work with, and
// which the interface promises. A source of its own: the two definitions of the same names cannot meet in
// one.
#include <cstddef>

#include <XVCR_Middleware_idl.h>

#define XV_TAMANHO(registro, tamanho) static_assert(sizeof(registro) == (tamanho));
#define XV_OFFSET(registro, campo, posicao) static_assert(offsetof(registro, campo) == (posicao));
#include "contract/XVCR_LayoutRegistros.inc"
#undef XV_TAMANHO
#undef XV_OFFSET
