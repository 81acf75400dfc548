// The server killed again and again while clients write. What was acknowledged must be there, as it was
// written; what was not may be there once or not at all.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>

#include "bench/server/XVCarga.h"
#include "platform/XVAmbienteSO.h"
#include "support/trace/XVCheck.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVServidores.h"

namespace XVCarga {

namespace {

constexpr int k_iClientes = 4;
constexpr std::size_t k_uiBytes = 1000;
constexpr std::size_t k_uiPorLeitura = 200;
constexpr const wchar_t* k_pszEventoFim = L"Local\\XVCargaFim";
// Counts what is acknowledged: a server is killed only once it has served.
constexpr const wchar_t* k_pszConfirmadas = L"Local\\XVCargaConfirmadas";
constexpr int k_iAntesDaMorte = 100;

// What a client knows of one recording of its own.
struct SGravada {
    REG_XVDMC regDmc{};       // none: no answer came
    std::string sMensagem{};  // of the status that was acknowledged; empty: of none
    bool bStatusIncerto = false;
};
using TGravadas = std::map<XVUInt64, SGravada>;

struct SContas {
    int iConfirmadas = 0, iSemResposta = 0, iSemRespostaGravadas = 0;
    int iPerdidas = 0, iDobradas = 0, iDiferentes = 0;
};

std::string Caminho(const std::string& sNumero) {
    return XVAmbienteSO::GetDiretorioExecutavel() + "\\mortes_" + sNumero + ".txt";
}

TGravadas LeGravadas() {
    TGravadas gravadas;
    for (int i = 1; i <= k_iClientes; ++i) {
        std::ifstream arquivo(Caminho(std::to_string(i)));
        XVUInt64 uiChave = 0;
        SGravada r;
        for (int iIncerto = 0; arquivo >> uiChave >> r.regDmc.uiValor >> iIncerto >> r.sMensagem;) {
            r.bStatusIncerto = iIncerto != 0;
            if (r.sMensagem == "-") r.sMensagem.clear();
            gravadas[uiChave] = r;
        }
        std::remove(Caminho(std::to_string(i)).c_str());
    }
    return gravadas;
}

// Every integration of the store, compared with what its client knows of it.
HRESULT Compara(XVCliente::CXVCliente& rCliente, TGravadas& rGravadas, SContas* pContas) {
    std::vector<REG_XVDMC> lista;
    HRESULT hr = rCliente.BuscaPonteiros({}, &lista);
    std::map<XVUInt64, int> vezes;
    for (std::size_t i = 0; SUCCEEDED(hr) && i < lista.size(); i += k_uiPorLeitura) {
        const std::vector<REG_XVDMC> parte(
            lista.begin() + static_cast<std::ptrdiff_t>(i),
            lista.begin() + static_cast<std::ptrdiff_t>(std::min(lista.size(), i + k_uiPorLeitura)));
        std::vector<CXVDadosCR_IntegracaoMiddleware> dados;
        hr = rCliente.LeIntegracoes(parte, 7, &dados);
        for (const auto& r : dados) {
            const XVUInt64 uiChave = r.uiChaveIntegracaoSistemaTerceiro;
            const SGravada& rGravada = rGravadas[uiChave];
            ++vezes[uiChave];
            const bool bConfirmada = !rGravada.regDmc.EhNulo();
            const bool bMensagem = rGravada.bStatusIncerto || r.sMensagemIntegracao == rGravada.sMensagem;
            if (r.sRegistroJSON != Integracao(uiChave, k_uiBytes).sRegistroJSON || !bMensagem ||
                (bConfirmada && !(rGravada.regDmc == r.regDmc)))
                ++pContas->iDiferentes;
        }
    }
    for (const auto& [uiChave, r] : rGravadas) {
        const bool bConfirmada = !r.regDmc.EhNulo();
        ++(bConfirmada ? pContas->iConfirmadas : pContas->iSemResposta);
        const int iVezes = vezes[uiChave];
        if (bConfirmada && iVezes == 0) ++pContas->iPerdidas;
        if (!bConfirmada && iVezes == 1) ++pContas->iSemRespostaGravadas;
        if (iVezes > 1) ++pContas->iDobradas;
    }
    return hr;
}

// The store as its own program checks it.
bool Verifica(const std::string& sEmpresa) {
    const auto construcao = std::filesystem::path(XVAmbienteSO::GetDiretorioExecutavel()) / ".." / "..";
    const auto xvcr = (construcao / "tools" / "xvcr" / "xvcr.exe").lexically_normal().make_preferred();
    const SExecucao execucao = XVExecuta(
        xvcr.string(), {"verifica", "--empresa", sEmpresa, "--diretorio", XVAmbienteCom::DiretorioModulo()});
    if (execucao.iSaida != 0) std::printf("%s%s", execucao.sSaida.c_str(), execucao.sErro.c_str());
    return execucao.iSaida == 0;
}

// Up again, and at work: so much of this server's is acknowledged. False: no server gets that far.
bool EsperaTrabalho(HANDLE hConfirmadas) {
    constexpr DWORD k_ulMaior = 120000;
    while (::WaitForSingleObject(hConfirmadas, 0) == WAIT_OBJECT_0)
        ;
    for (int i = 0; i < k_iAntesDaMorte; ++i)
        if (::WaitForSingleObject(hConfirmadas, k_ulMaior) != WAIT_OBJECT_0) return false;
    return true;
}

bool Confere(const std::string& sEmpresa, int iMortes) {
    if (!XVServidores::Encerra()) return std::puts("kills: the server does not end"), false;
    TGravadas gravadas = LeGravadas();
    SContas contas;
    XVCliente::CXVCliente cliente;
    HRESULT hr = cliente.ConectaLocal(
        {.sEmpresa = sEmpresa}, {.sDiretorio = XVAmbienteCom::DiretorioModulo(), .bSomenteLeitura = true});
    if (SUCCEEDED(hr)) hr = Compara(cliente, gravadas, &contas);
    if (FAILED(hr)) DizFalha("reading the store", hr);
    XVIgnora(cliente.Desconecta());
    const bool bInteira = Verifica(sEmpresa);
    std::printf(
        "kills: %d of the server under %d writing clients; %d acknowledged, of these %d lost, %d "
        "doubled, %d different; %d without answer, %d of them recorded; store %s\n",
        iMortes, k_iClientes, contas.iConfirmadas, contas.iPerdidas, contas.iDobradas, contas.iDiferentes,
        contas.iSemResposta, contas.iSemRespostaGravadas, bInteira ? "sound" : "NOT sound");
    return SUCCEEDED(hr) && bInteira && contas.iConfirmadas > 0 &&
           contas.iPerdidas + contas.iDobradas + contas.iDiferentes == 0;
}

}  // namespace

// company, number of the process. Records, and gives every third a status, until the event.
void MortesFilho(const TArgumentos& a) {
    const HANDLE hFim = ::OpenEventW(SYNCHRONIZE, FALSE, k_pszEventoFim);
    const HANDLE hConfirmadas = ::OpenSemaphoreW(SEMAPHORE_MODIFY_STATE, FALSE, k_pszConfirmadas);
    XVCliente::CXVCliente cliente;
    if (const HRESULT hr = cliente.Conecta({.sEmpresa = a.at(1), .usUsuario = 7}); FAILED(hr))
        DizFalha("Conecta", hr);
    std::cout << "pronto" << std::endl;
    TGravadas gravadas;
    for (XVUInt64 uiChave = std::stoull(a.at(2)) * 10000000;
         ::WaitForSingleObject(hFim, 0) == WAIT_TIMEOUT;) {
        SGravada& r = gravadas[++uiChave];
        HRESULT hr = cliente.GravaIntegracao(&r.regDmc, Integracao(uiChave, k_uiBytes));
        if (FAILED(hr))
            r.regDmc = {};
        else
            ::ReleaseSemaphore(hConfirmadas, 1, nullptr);
        if (SUCCEEDED(hr) && uiChave % 3 == 0) {
            const std::string sMensagem = "aceito" + std::to_string(uiChave);
            hr = cliente.GravaStatusIntegracao(
                {.regDmc = r.regDmc, .sMensagemIntegracao = sMensagem, .eStatusIntegracao = 3});
            r.bStatusIncerto = FAILED(hr);
            if (SUCCEEDED(hr)) r.sMensagem = sMensagem;
        }
        if (FAILED(hr)) DizFalha("writing", hr);
    }
    std::ofstream arquivo(Caminho(a.at(2)));
    for (const auto& [uiChave, r] : gravadas)
        arquivo << uiChave << ' ' << r.regDmc.uiValor << ' ' << r.bStatusIncerto << ' '
                << (r.sMensagem.empty() ? "-" : r.sMensagem) << '\n';
    arquivo.close();
    std::cout << (arquivo ? "fim" : "sem arquivo") << std::endl;
}

bool Mortes(int iMortes) {
    const std::string sEmpresa = XVAmbienteCom::NovaEmpresa();
    const HANDLE hFim = ::CreateEventW(nullptr, TRUE, FALSE, k_pszEventoFim);
    const HANDLE hConfirmadas = ::CreateSemaphoreW(nullptr, 0, 0x7FFFFFFF, k_pszConfirmadas);
    TFilhos filhos;
    for (int i = 1; i <= k_iClientes; ++i) filhos.push_back(Filho({"mortes", sEmpresa, std::to_string(i)}));
    bool bTodos = true;
    for (const auto& rpFilho : filhos) bTodos = rpFilho->LeLinha() == "pronto" && bTodos;
    int iFeitas = 0;
    for (int i = 0; bTodos && i < iMortes; ++i) {
        if (!EsperaTrabalho(hConfirmadas)) break;
        ::Sleep(static_cast<DWORD>(1000 + i * 397 % 2000));  // not always at the same place of its work
        XVAmbienteCom::EsqueceServidorMorto();
        XVServidores::Mata();
        ++iFeitas;
    }
    ::SetEvent(hFim);
    for (const auto& rpFilho : filhos) bTodos = rpFilho->LeLinha() == "fim" && bTodos;
    ::CloseHandle(hConfirmadas);
    ::CloseHandle(hFim);
    if (!bTodos) std::puts("a client did not come through");
    return Confere(sEmpresa, iFeitas) && bTodos && iFeitas == iMortes;
}

}  // namespace XVCarga
