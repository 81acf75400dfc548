#include "platform/win32/XVCaminhoWindows.h"

#include <windows.h>

#include <algorithm>
#include <string_view>

#include "platform/XVCaminho.h"
#include "platform/win32/XVErroWindows.h"
#include "platform/win32/XVTextoWindows.h"

namespace XVCaminhoWindows {
namespace {

constexpr std::wstring_view k_sPrefixoLongo = L"\\\\?\\";
constexpr std::wstring_view k_sPrefixoDispositivo = L"\\\\.\\";
constexpr std::wstring_view k_sPrefixoRede = L"\\\\";
constexpr std::size_t k_uiLimiteCurto = MAX_PATH - 12 - 1;  // a directory must leave room for an 8.3 name

constexpr CXVErroArquivo k_erroCaminho(ECausaArquivo::eCaminhoInvalido, 0);

// A ':' stands behind a drive letter and nowhere else; anywhere else it opens a stream of a file.
bool TemFluxo(std::wstring_view sCaminho) {
    const std::size_t uiDoisPontos = sCaminho.rfind(L':');
    return uiDoisPontos != std::wstring_view::npos && uiDoisPontos != 1;
}

CXVErroArquivo Alonga(std::wstring& sCaminho) {
    const DWORD ulNecessario = GetFullPathNameW(sCaminho.c_str(), 0, nullptr, nullptr);
    std::wstring sAbsoluto(ulNecessario, L'\0');
    const DWORD ulTamanho = GetFullPathNameW(sCaminho.c_str(), ulNecessario, sAbsoluto.data(), nullptr);
    if (ulTamanho == 0 || ulTamanho >= ulNecessario) {
        return XVErroWindows::DeUltimo();
    }
    sAbsoluto.resize(ulTamanho);
    if (sAbsoluto.starts_with(k_sPrefixoRede)) {
        sCaminho.assign(k_sPrefixoLongo).append(L"UNC").append(sAbsoluto, 1);
    } else {
        sCaminho.assign(k_sPrefixoLongo).append(sAbsoluto);
    }
    return {};
}

}  // namespace

CXVErroArquivo Converte(const std::string& sCaminho, std::wstring& sLargo) {
    if (!XVCaminho::PodeNomearDiretorio(sCaminho) || !XVTextoWindows::ParaLargo(sCaminho, sLargo)) {
        return k_erroCaminho;
    }
    std::replace(sLargo.begin(), sLargo.end(), L'/', L'\\');
    std::wstring_view sSemPrefixo = sLargo;
    const bool bLongo = sLargo.starts_with(k_sPrefixoLongo);
    if (bLongo) {
        sSemPrefixo.remove_prefix(k_sPrefixoLongo.size());
    }
    if (sLargo.starts_with(k_sPrefixoDispositivo) || TemFluxo(sSemPrefixo)) {
        return k_erroCaminho;
    }
    return bLongo || sLargo.size() < k_uiLimiteCurto ? CXVErroArquivo() : Alonga(sLargo);
}

CXVErroArquivo ConverteArquivo(const std::string& sCaminho, std::wstring& sLargo) {
    return XVCaminho::PodeNomearArquivo(sCaminho, k_pszSeparadores) ? Converte(sCaminho, sLargo)
                                                                    : k_erroCaminho;
}

}  // namespace XVCaminhoWindows
