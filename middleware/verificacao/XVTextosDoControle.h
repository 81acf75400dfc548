// The names that the creation control lists, read without changing anything.
#pragma once

#include <string>
#include <vector>

#include "middleware/verificacao/XVLeituraLoja.h"

namespace XVTextosDoControle {
// An absent file lists nothing. *pbPartida: the list breaks off behind what was read.
HRESULT Le(CXVLeituraLoja& rLeitura, std::vector<std::string>* plistaNomes, bool* pbPartida);
}  // namespace XVTextosDoControle
