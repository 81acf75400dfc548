// What a copy of a store holds: "XVDATABASE_COPIA.srk" beside its data directory. Without it a directory is
// no copy. docs/formats.md describes it.
#pragma once

#include <map>
#include <string>

#include "support/codes/XVCodigos.h"

inline constexpr const char* k_pszManifestoCopia = "XVDATABASE_COPIA.srk";
inline constexpr const char* k_pszManifestoCopiaNovo = "XVDATABASE_COPIAN.srk";  // while it is written

enum class EEstadoCopia : XVUInt64 {
    eIncompleta = 0,  // the first copy has begun; there is no store yet
    eInteira = 1,
    eTroca = 2,  // all files of the new copy are on the device, and are taking the places of the old ones
};

struct SArquivoCopiado {
    XVUInt64 uiTamanho = 0;
    XVUInt64 uiSoma = 0;  // of the first 240 bytes: of its header, where it has one
    bool operator==(const SArquivoCopiado&) const = default;
};

struct SManifestoCopia {
    EEstadoCopia eEstado = EEstadoCopia::eIncompleta;
    std::map<std::string, SArquivoCopiado> mapaArquivos;  // by name, as it stands in the directory
};

namespace XVManifestoCopia {
// S_FALSE: there is none. One that does not hold: E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA.
HRESULT Le(const std::string& sDiretorio, SManifestoCopia* pManifesto);
// Replaces the file in one step.
HRESULT Grava(const std::string& sDiretorio, const SManifestoCopia& rManifesto);
}  // namespace XVManifestoCopia
