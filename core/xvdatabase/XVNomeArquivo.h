// Names of database files: extensions, exempt names, and the pattern
// of group files with its key.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/XVTipos.h"

inline constexpr std::string_view XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS =
    "XVDATABASE_FILE_CTRL.dat";

namespace XVNomeArquivo {

// The text after the last '.', or empty.
std::string_view GetExtensao(std::string_view sNome);
// The name with its extension replaced (or appended).
std::string TrocaExtensao(std::string_view sNome, std::string_view sExtensao);

// Extension "cab", "srk" or "tra": transient copies, which have no header and are not listed.
bool EhCopiaTransitoria(std::string_view sNome);
bool EhArquivoControle(std::string_view sNome);
// Neither header nor creation control.
inline bool EhIsento(std::string_view sNome) {
    return EhCopiaTransitoria(sNome) || EhArquivoControle(sNome);
}

// A group pattern holds one run of '?'.
inline bool EhPadraoGrupo(std::string_view sNome) {
    return sNome.find('?') != std::string_view::npos;
}
// The key of a member's name; nothing when the name is no member of the pattern.
std::optional<XVUInt64> NomeParaChave(std::string_view sNome, std::string_view sPadrao);
// The member's name: the key in decimal, zero-padded to the length of the run, in the run's place.
std::string ChaveParaNome(XVUInt64 uiChave, std::string_view sPadrao);

}  // namespace XVNomeArquivo
