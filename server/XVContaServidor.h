// Under which account the server runs, and who may start and call it: values of the application's key, which
// the system's own tool for components shows and changes as well.
//
// The password of an account is kept where the system looks for it: among the secrets of its security
// authority, never in the registry, in a file or in a log.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "server/XVOpcoesInscricao.h"
#include "server/XVResultadoInscricao.h"

class CXVContaServidor {
  public:
    // Finds out what the options name. For an account that has a password it reads that from the standard
    // input, tries it, lets the account log on for programs, and keeps the password. Nothing of the registry
    // of classes is changed.
    SResultadoInscricao Prepara(const SOpcoesInscricao& rOpcoes);
    // Writes what was prepared below the classes of a scope.
    HRESULT Grava(HKEY hEscopo) const;

  private:
    SResultadoInscricao PreparaConta(const std::wstring& sConta);
    SResultadoInscricao PreparaAcesso(const std::wstring& sAcesso);

    // Nothing: stays as it is. Empty: is removed.
    std::optional<std::wstring> m_sIdentidade;
    std::optional<std::vector<BYTE>> m_InicioPermitido;
    std::optional<std::vector<BYTE>> m_AcessoPermitido;
};
