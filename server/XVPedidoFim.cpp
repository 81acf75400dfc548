#include "server/XVPedidoFim.h"

#include <sddl.h>
#include <tlhelp32.h>

#include <set>
#include <string>
#include <vector>

#include "contract/XVCR_MiddlewareGuids.h"
#include "platform/XVAmbienteSO.h"
#include "platform/win32/XVTextoWindows.h"
#include "server/XVTemposFim.h"

namespace {

constexpr DWORD k_ulEntreOlhadas = 50;

// A name of the machine, for a server with an account runs in another session than those who use it. The
// process is part of it: nobody's server ends by a request that was made to another one.
std::wstring Nome(DWORD ulProcesso) {
    return L"Global\\XVCR_Middleware_" XV_LARGO(XV_TEXTO_UUID(XV_UUID_CLASSE_MIDDLEWARE)) L"_" +
           std::to_wstring(ulProcesso);
}

std::wstring NomeDoPrograma() {
    const std::string sCaminho = XVAmbienteSO::GetCaminhoExecutavel();
    std::wstring sNome;
    const bool bLargo = XVTextoWindows::ParaLargo(sCaminho.substr(sCaminho.find_last_of("\\/") + 1), sNome);
    return bLargo ? sNome : std::wstring();
}

// The other processes that run this program; those that serve, or wait for their turn to, have the event.
std::vector<DWORD> OutrosProcessos(const std::wstring& sPrograma) {
    std::vector<DWORD> lista;
    const HANDLE hFoto = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (hFoto == INVALID_HANDLE_VALUE) return lista;
    PROCESSENTRY32W entrada{};
    entrada.dwSize = sizeof(entrada);
    for (BOOL bTem = ::Process32FirstW(hFoto, &entrada); bTem != FALSE;
         bTem = ::Process32NextW(hFoto, &entrada))
        if (entrada.th32ProcessID != ::GetCurrentProcessId() &&
            ::lstrcmpiW(entrada.szExeFile, sPrograma.c_str()) == 0)
            lista.push_back(entrada.th32ProcessID);
    ::CloseHandle(hFoto);
    return lista;
}

enum class EPedido { eFeito, eNaoServe, eNegado };

EPedido PedeFim(DWORD ulProcesso) {
    const HANDLE hEvento = ::OpenEventW(EVENT_MODIFY_STATE, FALSE, Nome(ulProcesso).c_str());
    if (hEvento == nullptr)
        return ::GetLastError() == ERROR_ACCESS_DENIED ? EPedido::eNegado : EPedido::eNaoServe;
    const bool bFeito = ::SetEvent(hEvento) != FALSE;
    ::CloseHandle(hEvento);
    return bFeito ? EPedido::eFeito : EPedido::eNegado;
}

}  // namespace

HANDLE XVCriaPedidoFim() {
    constexpr const wchar_t* k_pszQuemPode = L"D:(A;;GA;;;SY)(A;;GA;;;BA)(A;;GA;;;OW)";
    SECURITY_ATTRIBUTES atributos{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
    HANDLE hEvento = nullptr;
    if (::ConvertStringSecurityDescriptorToSecurityDescriptorW(
            k_pszQuemPode, SDDL_REVISION_1, &atributos.lpSecurityDescriptor, nullptr) != 0) {
        hEvento = ::CreateEventW(&atributos, TRUE, FALSE, Nome(::GetCurrentProcessId()).c_str());
        ::LocalFree(atributos.lpSecurityDescriptor);
    }
    if (hEvento == nullptr) return ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    // The event of an earlier process of this number lives on while whoever ended that one still holds it.
    ::ResetEvent(hEvento);
    return hEvento;
}

std::string XVTextoDaParada(const SParada& rParada) {
    constexpr const char* k_pszOutro = " O servidor de outro usuário continua em execução.";
    if (rParada.uiTerminados == 0 && rParada.uiDeOutrosUsuarios == 0) return "nenhum servidor em execução.";
    const std::string sTexto = rParada.uiTerminados != 0 ? "o servidor terminou."
                                                         : "nenhum servidor que este usuário possa encerrar.";
    return rParada.uiDeOutrosUsuarios != 0 ? sTexto + k_pszOutro : sTexto;
}

SParada XVParaServidores() {
    const std::wstring sPrograma = NomeDoPrograma();
    const ULONGLONG uiInicio = ::GetTickCount64();
    std::set<DWORD> listaPedidos;
    SParada parada;
    for (;;) {
        bool bResta = false;
        parada.uiDeOutrosUsuarios = 0;
        for (const DWORD ulProcesso : OutrosProcessos(sPrograma)) {
            const EPedido ePedido = PedeFim(ulProcesso);
            if (ePedido == EPedido::eFeito) listaPedidos.insert(ulProcesso);
            if (ePedido == EPedido::eNegado) ++parada.uiDeOutrosUsuarios;
            // One that was asked is gone with its process: until then its files are in use.
            bResta = bResta || listaPedidos.contains(ulProcesso);
        }
        parada.uiTerminados = static_cast<unsigned>(listaPedidos.size());
        if (!bResta) return parada;
        if (::GetTickCount64() - uiInicio >= k_ulEsperaFimDoAnterior) {
            parada.hr = HRESULT_FROM_WIN32(ERROR_TIMEOUT);
            return parada;
        }
        ::Sleep(k_ulEntreOlhadas);
    }
}
