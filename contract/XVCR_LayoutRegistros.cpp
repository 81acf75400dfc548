// The records' layout as the interface promises it.
#include "contract/XVCR_RegistrosPS.h"
#include "contract/XVRegistroInicializacao.h"

#define XV_TAMANHO(registro, tamanho) static_assert(sizeof(registro) == (tamanho));
#define XV_OFFSET(registro, campo, posicao) static_assert(offsetof(registro, campo) == (posicao));
#include "contract/XVCR_LayoutRegistros.inc"
#undef XV_TAMANHO
#undef XV_OFFSET
