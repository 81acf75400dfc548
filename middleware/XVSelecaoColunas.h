// The second level of a search, over the columns of one day.
//
// Thread rule: none but the caller's.
#pragma once

#include <span>

#include "contract/XVListaAchadas.h"
#include "middleware/XVColunasIntegracao.h"
#include "middleware/XVFiltroBusca.h"

// Adds to rAchadas those of the integrations that pass. False: the columns cannot tell, for one of the
// positions or for all; nothing is added then, and the records have to be read.
bool XVSelecionaPorColunas(const CXVFiltroBusca& rFiltro,
                           const TXVColunas<REG_CR_INTEGRACAO_MIDDLEWARE_V2>& rColunas,
                           std::span<const REG_XVDMC> aDmcs, CXVListaAchadas& rAchadas);
