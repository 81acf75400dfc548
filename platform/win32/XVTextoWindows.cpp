#include "platform/win32/XVTextoWindows.h"

#include <windows.h>

#include <limits>

namespace XVTextoWindows {

bool ParaLargo(std::string_view sTexto, std::wstring& sLargo) {
    sLargo.clear();
    if (sTexto.empty()) {
        return true;
    }
    if (sTexto.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        return false;
    }
    const int iTamanho = static_cast<int>(sTexto.size());
    const int iLargo =
        MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, sTexto.data(), iTamanho, nullptr, 0);
    if (iLargo <= 0) {
        return false;
    }
    sLargo.resize(static_cast<std::size_t>(iLargo));
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, sTexto.data(), iTamanho, sLargo.data(), iLargo);
    return true;
}

std::string ParaUtf8(std::wstring_view sLargo) {
    if (sLargo.empty() || sLargo.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        return {};
    }
    const int iLargo = static_cast<int>(sLargo.size());
    const int iTamanho = WideCharToMultiByte(CP_UTF8, 0, sLargo.data(), iLargo, nullptr, 0, nullptr, nullptr);
    std::string sTexto(static_cast<std::size_t>(iTamanho > 0 ? iTamanho : 0), '\0');
    WideCharToMultiByte(CP_UTF8, 0, sLargo.data(), iLargo, sTexto.data(), iTamanho, nullptr, nullptr);
    return sTexto;
}

}  // namespace XVTextoWindows
