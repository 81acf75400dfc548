// One key of the registry, open for reading and writing; closed with the object. 64-bit view.
#pragma once

#include <windows.h>

#include <string>

#include "platform/XVTipos.h"

class CXVChaveRegistry {
  public:
    CXVChaveRegistry() = default;
    ~CXVChaveRegistry() { Fecha(); }
    CXVChaveRegistry(const CXVChaveRegistry&) = delete;
    CXVChaveRegistry& operator=(const CXVChaveRegistry&) = delete;

    HRESULT Cria(HKEY hRaiz, const std::wstring& sCaminho);
    // Read only. Absent: the system's "file not found" as HRESULT.
    HRESULT Abre(HKEY hRaiz, const std::wstring& sCaminho);
    // An empty name is the key's default value.
    HRESULT GravaTexto(const std::wstring& sValor, const std::wstring& sTexto);
    HRESULT LeTexto(const std::wstring& sValor, std::wstring* psTexto) const;
    HKEY Get() const { return m_hChave; }

    // Deletes a key with all below it; absent: S_OK.
    static HRESULT ApagaArvore(HKEY hRaiz, const std::wstring& sCaminho);
    static bool Existe(HKEY hRaiz, const std::wstring& sCaminho);

  private:
    void Fecha();
    HKEY m_hChave = nullptr;
};
