// All that a verification finds and all that a recovery says and makes, as lines that can be compared whole.
#pragma once

#include <map>
#include <string>

#include "middleware/verificacao/XVRecuperacao.h"
#include "middleware/verificacao/XVVerificacao.h"

// Every count, then every finding with every field of it.
std::string XVRelata(const SVerificacao& rVerificacao);
// Every count, then what did not come back as it was, what was put aside, and what could not be read.
std::string XVRelata(const SRecuperacao& rRecuperacao);

// Bytes by name.
using TBytesPorNome = std::map<std::string, std::string>;
// A line for each file that is not as it was: what stands in which place of its payload instead of what was
// there. A header is told where it is not the one of a new file, as is a creation control that does not list
// exactly the files that are there.
std::string XVRelataMudancas(const TBytesPorNome& rAntes, const TBytesPorNome& rDepois);

// The lines below "# sNome" in golden/relatos.txt. Where the environment variable XV_RELATOS_OBTIDOS names a
// file what was obtained is written to its end, to become the expected text once somebody has read it.
std::string XVRelatoEsperado(const std::string& sNome, const std::string& sObtido);
