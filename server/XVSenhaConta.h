// The password of the server's account.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "platform/XVTipos.h"

// A password, wiped from memory with the object.
class CXVSenha {
  public:
    CXVSenha() = default;
    ~CXVSenha() { ::SecureZeroMemory(m_sTexto.data(), m_sTexto.size() * sizeof(wchar_t)); }
    CXVSenha(const CXVSenha&) = delete;
    CXVSenha& operator=(const CXVSenha&) = delete;

    // One line of the standard input, in UTF-8, of 1 to 256 bytes. E_INVALIDARG: there is none.
    HRESULT LeDaEntrada();
    const std::wstring& Get() const { return m_sTexto; }

  private:
    std::wstring m_sTexto;
};

// Gives the account the right to be logged on for a program, tries the password, and keeps it as the one with
// which the system logs on the account of the component's application. aSid: the account's identifier;
// sDominio and sNome: its name. On failure the account has the rights that it had before.
HRESULT XVGuardaSenhaDaConta(const std::vector<BYTE>& aSid, const std::wstring& sDominio,
                             const std::wstring& sNome, const CXVSenha& rSenha);
