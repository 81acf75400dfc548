// Rules for the texts that name files, shared by every file system of the seam.
// The set of separators is an argument because it belongs to the system: "/" or "/\".
#pragma once

#include <string>
#include <string_view>

namespace XVCaminho {

// Not empty, without NUL and not ending in a separator: what can name a file.
bool PodeNomearArquivo(std::string_view sCaminho, std::string_view sSeparadores);

// Not empty and without NUL: what can name a directory.
bool PodeNomearDiretorio(std::string_view sCaminho);

// One component that stays inside its directory on every system: no separator of any system, no ':',
// no wildcard, no NUL, neither "." nor "..".
bool EhNomeSimples(std::string_view sNome);

struct SPartes {
    std::string sDiretorio;  // "." when the path is a bare name; keeps the root's separator
    std::string sNome;
};
SPartes Separa(std::string_view sCaminho, std::string_view sSeparadores);

// Directory and name with exactly one cSeparador between them; an empty directory gives the name alone.
std::string Junta(std::string_view sDiretorio, std::string_view sNome, char cSeparador,
                  std::string_view sSeparadores);

}  // namespace XVCaminho
