// Where the texts of a file go on behind bytes of which nobody can tell where one ends.
//
// Thread rule: one thread.
#pragma once

#include <optional>

#include "middleware/verificacao/XVLeituraLoja.h"

// The first text that is not empty, from uiDe on, from which lengths and texts lead to uiAte, the end of the
// payload. Nothing where there is none, where another chain that begins within that text leads there too, or
// where telling takes too long.
std::optional<XVUInt64> XVAchaRetomada(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiDe,
                                       XVUInt64 uiAte, const CXVBuracos& rBuracos);
