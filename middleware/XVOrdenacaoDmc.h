// Sorting of long lists of DMCs. Their date stands in the highest bits, so that the records of one file come
// together. Thread rule: none but the caller's; the list is the caller's alone.
#pragma once

#include <vector>

#include "support/values/XVDmc.h"

// Ascending. Needs memory for a second list; throws std::bad_alloc and leaves the list as it was.
void XVOrdenaDmcs(std::vector<REG_XVDMC>& lista);
