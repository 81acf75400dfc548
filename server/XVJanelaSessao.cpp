#include "server/XVJanelaSessao.h"

#include "server/XVVidaServidor.h"

namespace {

constexpr const wchar_t* k_pszClasseJanela = L"XVCR_Middleware";

LRESULT CALLBACK Procedimento(HWND hJanela, UINT uiMensagem, WPARAM wParam, LPARAM lParam) {
    switch (uiMensagem) {
        case WM_QUERYENDSESSION:
            return TRUE;
        case WM_ENDSESSION:
            if (wParam != FALSE) {
                CXVVidaServidor::Get().PedeFim();
                // The stores are closed inside this message, because the system may end the process as soon
                // as the message is answered.
                CXVVidaServidor::Get().Encerra();
            }
            return 0;
        case WM_CLOSE:
            CXVVidaServidor::Get().PedeFim();
            return 0;
        default:
            return ::DefWindowProcW(hJanela, uiMensagem, wParam, lParam);
    }
}

}  // namespace

CXVJanelaSessao::CXVJanelaSessao() : m_hJanela(nullptr) {
    WNDCLASSW classe{};
    classe.lpfnWndProc = &Procedimento;
    classe.hInstance = ::GetModuleHandleW(nullptr);
    classe.lpszClassName = k_pszClasseJanela;
    if (::RegisterClassW(&classe) != 0)
        m_hJanela = ::CreateWindowExW(0, k_pszClasseJanela, k_pszClasseJanela, WS_POPUP, 0, 0, 0, 0, nullptr,
                                      nullptr, classe.hInstance, nullptr);
}

CXVJanelaSessao::~CXVJanelaSessao() {
    if (m_hJanela != nullptr) ::DestroyWindow(m_hJanela);
}
