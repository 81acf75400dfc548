// Sorting of what a search found. The date of a DMC stands in its highest bits, so the records of one file
// come together. Thread rule: none but the caller's; the list is the caller's alone.
#pragma once

#include "contract/XVListaAchadas.h"

// Ascending. Needs memory for a second list; throws std::bad_alloc and leaves the list as it was.
void XVOrdenaDmcs(CXVListaAchadas& lista);
