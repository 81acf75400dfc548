// One key of the registry, open for reading and writing; closed with the object.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

#include "platform/XVTipos.h"

// The classes of programs of one size: a part of the registry exists once for each.
enum class EVisaoRegistry : REGSAM {
    e64 = KEY_WOW64_64KEY,
    e32 = KEY_WOW64_32KEY,
};

class CXVChaveRegistry {
  public:
    explicit CXVChaveRegistry(EVisaoRegistry eVisao = EVisaoRegistry::e64) : m_eVisao(eVisao) {}
    ~CXVChaveRegistry() { Fecha(); }
    CXVChaveRegistry(const CXVChaveRegistry&) = delete;
    CXVChaveRegistry& operator=(const CXVChaveRegistry&) = delete;

    HRESULT Cria(HKEY hRaiz, const std::wstring& sCaminho);
    // Read only. Absent: the system's "file not found" as HRESULT.
    HRESULT Abre(HKEY hRaiz, const std::wstring& sCaminho) { return Abre(hRaiz, sCaminho, KEY_READ); }
    // The same, for changing values that are there.
    HRESULT AbreParaGravar(HKEY hRaiz, const std::wstring& sCaminho) {
        return Abre(hRaiz, sCaminho, KEY_READ | KEY_WRITE);
    }
    // An empty name is the key's default value.
    HRESULT GravaTexto(const std::wstring& sValor, const std::wstring& sTexto);
    HRESULT LeTexto(const std::wstring& sValor, std::wstring* psTexto) const;
    HRESULT GravaBinario(const std::wstring& sValor, std::span<const BYTE> aBytes);
    // Of another type: the system's "data type unsupported".
    HRESULT LeBinario(const std::wstring& sValor, std::vector<BYTE>* pBytes) const;
    // Absent: S_OK.
    HRESULT ApagaValor(const std::wstring& sValor);
    HKEY Get() const { return m_hChave; }

    // Deletes a key that has neither values nor keys of its own; any other stays. Absent: S_OK.
    static HRESULT ApagaSeVazia(HKEY hRaiz, const std::wstring& sCaminho, EVisaoRegistry eVisao);
    static bool Existe(HKEY hRaiz, const std::wstring& sCaminho);

  private:
    HRESULT Abre(HKEY hRaiz, const std::wstring& sCaminho, REGSAM ulAcesso);
    void Fecha();
    EVisaoRegistry m_eVisao;
    HKEY m_hChave = nullptr;
};
