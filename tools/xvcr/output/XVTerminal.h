// What the standard output can show. Elsewhere than on a terminal, into a file or a pager, the output is
// plain and as wide as it needs to be.
#pragma once

#include <cstddef>

namespace XVTerminal {

// Columns of the terminal, 0 for no limit. The environment variable COLUMNS goes before what the terminal
// says, and counts into files too.
std::size_t GetLargura();

// Never where NO_COLOR is set to anything, or on a terminal that understands no attributes.
bool UsaCores();

}  // namespace XVTerminal
