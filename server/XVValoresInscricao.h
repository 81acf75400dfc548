// The values of which a registration consists, below the classes of a scope, and whose they are there. A
// scope is the key in which "Software\\Classes" stands: the machine's or the current user's.
//
// A copy of the component in another directory, and a later version, write the same keys. So a value is known
// by its text, and the class as a whole by the program that it starts.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "server/XVChaveRegistry.h"

struct SValorInscricao {
    std::wstring sChave;
    std::wstring sNome;                  // empty: the default value
    std::optional<std::wstring> sTexto;  // nothing: the proxy/stub library chooses it
    EVisaoRegistry eVisao = EVisaoRegistry::e64;

    // What stands there now; nothing: no such value.
    std::optional<std::wstring> Le(HKEY hEscopo) const;
    // Whether it stands there, with its text where it has one.
    bool Confere(HKEY hEscopo) const;
    HRESULT Grava(HKEY hEscopo) const;
    // Absent: S_OK.
    HRESULT Apaga(HKEY hEscopo) const;
};

namespace XVValoresInscricao {

// Below it are all keys. Reached anew for each, because the views part below it.
inline constexpr const wchar_t* k_pszClasses = L"Software\\Classes\\";

// Where the identity of the server and the permissions of its callers stand as well.
const std::wstring& ChaveAplicacao();
std::wstring CaminhoProxy();

// Class, application and programmatic identifiers of the running program; without the identifier that bears
// no version where a later version has it.
std::vector<SValorInscricao> Classe(HKEY hEscopo);
// What the proxy/stub library beside the running program registers of itself.
std::vector<SValorInscricao> Proxy();
// The same of the library for callers of 32 bits, in the view that they see. This program cannot load it, so
// all but its path is what the other one has registered (nothing: not registered).
std::vector<SValorInscricao> Proxy32(HKEY hEscopo);
// Whether that library lies beside the running program.
bool TemProxy32();
// Whether the scope has a view of 32 bits of its own; asked once the other library is registered. Wine keeps
// one for a user's classes, in which the other library's values would be overwritten.
bool VisoesSeparadas(HKEY hEscopo);
// The keys of others in which all of these stand.
std::vector<std::wstring> ChavesComuns();

// Whether another program is started for the class, and another library loaded for the interface.
bool ClasseEhDeOutro(HKEY hEscopo);
bool ProxyEhDeOutro(HKEY hEscopo);
// Whether callers of 32 bits load the library that belongs beside the running program, there or not.
bool Proxy32EhNosso(HKEY hEscopo);

}  // namespace XVValoresInscricao
