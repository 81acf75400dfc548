// The values of which a registration consists, below the classes of a scope, and whose they are there.
//
// A copy of the component in another directory, and a later version, write the same keys. So a value is known
// by its text, and the class as a whole by the program that it starts.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

struct SValorInscricao {
    std::wstring sChave;
    std::wstring sNome;                  // empty: the default value
    std::optional<std::wstring> sTexto;  // nothing: the proxy/stub library chooses it

    // What stands there now; nothing: no such value.
    std::optional<std::wstring> Le(HKEY hClasses) const;
};

namespace XVValoresInscricao {

// Where the identity of the server and the permissions of its callers stand as well.
const std::wstring& ChaveAplicacao();
std::wstring CaminhoProxy();

// Class, application and programmatic identifiers of the running program; without the identifier that bears
// no version where a later version has it.
std::vector<SValorInscricao> Classe(HKEY hClasses);
// What the proxy/stub library beside the running program registers of itself.
std::vector<SValorInscricao> Proxy();
// The keys of others in which all of these stand.
std::vector<std::wstring> ChavesComuns();

// Whether another program is started for the class, and another library loaded for the interface.
bool ClasseEhDeOutro(HKEY hClasses);
bool ProxyEhDeOutro(HKEY hClasses);

}  // namespace XVValoresInscricao
