#include "tests/com/XVFilho.h"

#include <windows.h>

#include <cstdio>
#include <stdexcept>

#include "client/XVCliente.h"
#include "platform/win32/XVTextoWindows.h"
#include "server/XVTratamentoCrash.h"
#include "tests/com/XVAmbienteCom.h"

namespace {

int Falha(const char* pszPasso, HRESULT hr) {
    std::fprintf(stderr, "%s: 0x%08lX\n", pszPasso, static_cast<unsigned long>(hr));
    return 1;
}

int Grava(const std::string& sEmpresa, int iQuantidade, int iUsuario) {
    const XVCliente::CApartamento apartamento;
    XVCliente::CXVCliente cliente;
    HRESULT hr = cliente.Conecta(
        {.sEmpresa = sEmpresa, .usUsuario = static_cast<std::uint16_t>(iUsuario), .ulNumeroSessao = 1});
    if (hr < 0) return Falha("Conecta", hr);
    for (int i = 0; i < iQuantidade; ++i) {
        const auto dados = XVAmbienteCom::IntegracaoPendente("{\"usuario\":" + std::to_string(iUsuario) +
                                                             ",\"n\":" + std::to_string(i) + "}");
        REG_XVDMC regDmc;
        if (hr = cliente.GravaIntegracao(&regDmc, dados); hr < 0) return Falha("GravaIntegracao", hr);
        CXVDadosCR_IntegracaoMiddleware lida;
        if (hr = cliente.LeIntegracao(regDmc, 7, &lida); hr < 0) return Falha("LeIntegracao", hr);
        if (lida.sRegistroJSON != dados.sRegistroJSON) return Falha("texto lido", 1);
    }
    return 0;
}

int Prende(const std::string& sEmpresa, const std::wstring& sEvento, bool bChama) {
    const XVCliente::CApartamento apartamento;
    XVCliente::CXVCliente cliente;
    const HRESULT hr = cliente.Conecta({.sEmpresa = sEmpresa, .usUsuario = 9});
    if (hr < 0) return Falha("Conecta", hr);
    const HANDLE hEvento = ::OpenEventW(EVENT_MODIFY_STATE, FALSE, sEvento.c_str());
    ::SetEvent(hEvento);
    const auto dados = XVAmbienteCom::IntegracaoPendente(std::string(4 << 20, 'x'));
    for (;;) {
        if (!bChama) ::Sleep(INFINITE);
        REG_XVDMC regDmc;
        if (cliente.GravaIntegracao(&regDmc, dados) < 0) return 1;
    }
}

int Quebra(const std::wstring& sDiretorio, bool bComMinidump) {
    XVTratamentoCrash::Instala(sDiretorio, bComMinidump);
    volatile int* volatile piNulo = nullptr;
    *piNulo = 1;
    return 0;
}

int Termina(const std::wstring& sDiretorio) {
    XVTratamentoCrash::Instala(sDiretorio, false);
    throw std::runtime_error("ninguém trata");
}

}  // namespace

int XVExecutaFilho(const std::vector<std::wstring>& a) {
    const std::wstring& sModo = a.at(0);
    if (sModo == L"crash") return Quebra(a.at(1), a.at(2) == L"1");
    if (sModo == L"termina") return Termina(a.at(1));
    const std::string sEmpresa = XVTextoWindows::ParaUtf8(a.at(1));
    if (sModo == L"grava") return Grava(sEmpresa, std::stoi(a.at(2)), std::stoi(a.at(3)));
    if (sModo == L"espera" || sModo == L"chama") return Prende(sEmpresa, a.at(2), sModo == L"chama");
    return 2;
}
