#include <windows.h>

#include <algorithm>

#include "platform/XVFluxoEntrada.h"
#include "platform/win32/XVAlarmeWindows.h"
#include "platform/win32/XVHandleWindows.h"
#include "platform/win32/XVTextoWindows.h"

namespace {

class CXVFluxoEntradaWindows : public IXVFluxoEntrada {
  public:
    // None is the standard input, which stays open.
    explicit CXVFluxoEntradaWindows(CXVHandleArquivo aberto) : m_Aberto(std::move(aberto)) {
        LARGE_INTEGER uiTotal{};
        LARGE_INTEGER uiPosicao{};
        m_bArquivo = GetFileType(Handle()) == FILE_TYPE_DISK;
        if (m_bArquivo && GetFileSizeEx(Handle(), &uiTotal) &&
            SetFilePointerEx(Handle(), {}, &uiPosicao, FILE_CURRENT) && uiPosicao.QuadPart < uiTotal.QuadPart)
            m_uiTamanho = static_cast<std::uint64_t>(uiTotal.QuadPart - uiPosicao.QuadPart);
    }

    bool Le(char* pDados, std::size_t uiTamanho, std::size_t* puiLidos) override {
        constexpr std::size_t k_uiMaior = 1U << 30;
        *puiLidos = 0;
        const CXVLeituraDespertavel leitura;
        if (!leitura.PodeComecar()) return XVFoiDespertada();
        DWORD ulLidos = 0;
        if (ReadFile(Handle(), pDados, static_cast<DWORD>(std::min(uiTamanho, k_uiMaior)), &ulLidos,
                     nullptr)) {
            *puiLidos = ulLidos;
            return true;
        }
        // The end of a pipe is the end of its last writer.
        const DWORD dwErro = GetLastError();
        return dwErro == ERROR_BROKEN_PIPE || dwErro == ERROR_HANDLE_EOF || XVFoiDespertada();
    }
    bool EhArquivo() const override { return m_bArquivo; }
    std::uint64_t GetTamanho() const override { return m_uiTamanho; }

  private:
    HANDLE Handle() const { return m_Aberto.EhValido() ? m_Aberto.Get() : GetStdHandle(STD_INPUT_HANDLE); }

    CXVHandleArquivo m_Aberto;
    bool m_bArquivo = false;
    std::uint64_t m_uiTamanho = 0;
};

}  // namespace

std::unique_ptr<IXVFluxoEntrada> XVFluxoEntradaPadrao() {
    return std::make_unique<CXVFluxoEntradaWindows>(CXVHandleArquivo());
}

std::unique_ptr<IXVFluxoEntrada> XVAbreFluxoEntrada(const std::string& sCaminho) {
    std::wstring sLargo;
    if (!XVTextoWindows::ParaLargo(sCaminho, sLargo)) return nullptr;
    CXVHandleArquivo aberto(CreateFileW(sLargo.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!aberto.EhValido()) return nullptr;
    return std::make_unique<CXVFluxoEntradaWindows>(std::move(aberto));
}
