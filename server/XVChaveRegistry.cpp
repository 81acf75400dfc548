#include "server/XVChaveRegistry.h"

HRESULT CXVChaveRegistry::Cria(HKEY hRaiz, const std::wstring& sCaminho) {
    Fecha();
    return HRESULT_FROM_WIN32(static_cast<DWORD>(::RegCreateKeyExW(
        hRaiz, sCaminho.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
        KEY_READ | KEY_WRITE | static_cast<REGSAM>(m_eVisao), nullptr, &m_hChave, nullptr)));
}

HRESULT CXVChaveRegistry::Abre(HKEY hRaiz, const std::wstring& sCaminho, REGSAM ulAcesso) {
    Fecha();
    return HRESULT_FROM_WIN32(static_cast<DWORD>(
        ::RegOpenKeyExW(hRaiz, sCaminho.c_str(), 0, ulAcesso | static_cast<REGSAM>(m_eVisao), &m_hChave)));
}

HRESULT CXVChaveRegistry::GravaTexto(const std::wstring& sValor, const std::wstring& sTexto) {
    const auto ulBytes = static_cast<DWORD>((sTexto.size() + 1) * sizeof(wchar_t));
    return HRESULT_FROM_WIN32(
        static_cast<DWORD>(::RegSetValueExW(m_hChave, sValor.empty() ? nullptr : sValor.c_str(), 0, REG_SZ,
                                            reinterpret_cast<const BYTE*>(sTexto.c_str()), ulBytes)));
}

HRESULT CXVChaveRegistry::LeTexto(const std::wstring& sValor, std::wstring* psTexto) const {
    psTexto->clear();
    wchar_t szTexto[MAX_PATH * 4];
    DWORD ulBytes = sizeof(szTexto);
    const auto ulErro =
        static_cast<DWORD>(::RegGetValueW(m_hChave, nullptr, sValor.empty() ? nullptr : sValor.c_str(),
                                          RRF_RT_REG_SZ, nullptr, szTexto, &ulBytes));
    if (ulErro != ERROR_SUCCESS) return HRESULT_FROM_WIN32(ulErro);
    *psTexto = szTexto;
    return S_OK;
}

HRESULT CXVChaveRegistry::GravaBinario(const std::wstring& sValor, std::span<const BYTE> aBytes) {
    return HRESULT_FROM_WIN32(static_cast<DWORD>(::RegSetValueExW(
        m_hChave, sValor.c_str(), 0, REG_BINARY, aBytes.data(), static_cast<DWORD>(aBytes.size()))));
}

HRESULT CXVChaveRegistry::LeBinario(const std::wstring& sValor, std::vector<BYTE>* pBytes) const {
    pBytes->assign(65536, 0);  // no access list is longer
    auto ulBytes = static_cast<DWORD>(pBytes->size());
    const auto ulErro = static_cast<DWORD>(::RegGetValueW(
        m_hChave, nullptr, sValor.c_str(), RRF_RT_REG_BINARY, nullptr, pBytes->data(), &ulBytes));
    pBytes->resize(ulErro == ERROR_SUCCESS ? ulBytes : 0);
    return HRESULT_FROM_WIN32(ulErro);
}

HRESULT CXVChaveRegistry::ApagaValor(const std::wstring& sValor) {
    const LSTATUS lErro = ::RegDeleteValueW(m_hChave, sValor.empty() ? nullptr : sValor.c_str());
    return lErro == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(lErro));
}

HRESULT CXVChaveRegistry::ApagaSeVazia(HKEY hRaiz, const std::wstring& sCaminho, EVisaoRegistry eVisao) {
    CXVChaveRegistry chave(eVisao);
    const HRESULT hr = chave.Abre(hRaiz, sCaminho);
    if (hr == HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)) return S_OK;
    if (FAILED(hr)) return hr;
    DWORD ulChaves = 0;
    DWORD ulValores = 0;
    const LSTATUS lErro = ::RegQueryInfoKeyW(chave.Get(), nullptr, nullptr, nullptr, &ulChaves, nullptr,
                                             nullptr, &ulValores, nullptr, nullptr, nullptr, nullptr);
    if (lErro != ERROR_SUCCESS) return HRESULT_FROM_WIN32(static_cast<DWORD>(lErro));
    if (ulChaves != 0 || ulValores != 0) return S_OK;
    chave.Fecha();
    return HRESULT_FROM_WIN32(
        static_cast<DWORD>(::RegDeleteKeyExW(hRaiz, sCaminho.c_str(), static_cast<REGSAM>(eVisao), 0)));
}

bool CXVChaveRegistry::Existe(HKEY hRaiz, const std::wstring& sCaminho) {
    CXVChaveRegistry chave;
    return SUCCEEDED(chave.Abre(hRaiz, sCaminho));
}

void CXVChaveRegistry::Fecha() {
    if (m_hChave != nullptr) ::RegCloseKey(m_hChave);
    m_hChave = nullptr;
}
