#include "support/names/XVNomesHResult.h"

#include <algorithm>

namespace XVNomesHResult {

const char* Busca(std::span<const SNomeCodigo> lista, XVUInt ulCodigo) {
    const auto it = std::lower_bound(lista.begin(), lista.end(), ulCodigo,
                                     [](const SNomeCodigo& r, XVUInt ul) { return r.ulCodigo < ul; });
    return it != lista.end() && it->ulCodigo == ulCodigo ? it->pszNome : nullptr;
}

}  // namespace XVNomesHResult
