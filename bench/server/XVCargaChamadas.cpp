// How many calls a second the server answers.
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>

#include "bench/server/XVCarga.h"
#include "tests/com/XVAmbienteCom.h"

namespace XVCarga {

namespace {

constexpr std::size_t k_uiBytes = 2048;

using TChamada = std::function<HRESULT(XVCliente::CXVCliente&, REG_XVDMC)>;

HRESULT Pergunta(XVCliente::CXVCliente& r, REG_XVDMC) {
    XVCliente::SUltimoErro erro;
    return r.GetUltimoErro(&erro);
}
HRESULT Le(XVCliente::CXVCliente& r, REG_XVDMC regDmc) {
    CXVDadosCR_IntegracaoMiddleware lida;
    return r.LeIntegracao(regDmc, 7, &lida);
}
HRESULT Busca(XVCliente::CXVCliente& r, REG_XVDMC) {
    std::vector<REG_XVDMC> lista;
    return r.BuscaPonteiros(
        {.uiChaveIntegracaoSistemaTerceiroInicial = 1, .uiChaveIntegracaoSistemaTerceiroFinal = 10}, &lista);
}
HRESULT Status(XVCliente::CXVCliente& r, REG_XVDMC regDmc) {
    return r.GravaStatusIntegracao(
        {.regDmc = regDmc, .sMensagemIntegracao = "aceito", .eStatusIntegracao = 3});
}
HRESULT Grava(XVCliente::CXVCliente& r, REG_XVDMC) {
    static const auto s_dados = Integracao(0, k_uiBytes);
    REG_XVDMC regNova;
    return r.GravaIntegracao(&regNova, s_dados);
}

const std::vector<std::pair<std::string, TChamada>> k_chamadas{{"last error", Pergunta},
                                                               {"read 2 KB", Le},
                                                               {"search 10 keys", Busca},
                                                               {"status", Status},
                                                               {"record 2 KB", Grava}};

}  // namespace

// company, seconds, number of the process; a line from the parent starts each kind of call
void ChamadasFilho(const TArgumentos& a) {
    XVCliente::CXVCliente cliente;
    REG_XVDMC regDmc;
    HRESULT hr = cliente.Conecta({.sEmpresa = a.at(1), .usUsuario = 7});
    if (SUCCEEDED(hr)) hr = cliente.GravaIntegracao(&regDmc, Integracao(std::stoull(a.at(3)), k_uiBytes));
    if (FAILED(hr)) return DizFalha("Conecta", hr);
    std::cout << "pronto" << std::endl;
    std::string sVai;
    for (const auto& [sNome, fnChama] : k_chamadas) {
        std::getline(std::cin, sVai);
        int iChamadas = 0;
        const CCronometro cronometro;
        for (; SUCCEEDED(hr) && cronometro.Segundos() < std::stod(a.at(2)); ++iChamadas)
            hr = fnChama(cliente, regDmc);
        if (FAILED(hr)) return DizFalha(sNome.c_str(), hr);
        std::cout << iChamadas / cronometro.Segundos() << std::endl;
    }
}

bool Chamadas(int iSegundos) {
    std::map<int, std::vector<double>> porSegundo;
    bool bTodas = true;
    for (const int iClientes : {1, 4}) {
        const std::string sEmpresa = XVAmbienteCom::NovaEmpresa();
        TFilhos filhos;
        for (int i = 0; i < iClientes; ++i)
            filhos.push_back(Filho({"chamadas", sEmpresa, std::to_string(iSegundos), std::to_string(i + 1)}));
        for (const auto& rpFilho : filhos) bTodas = rpFilho->LeLinha() == "pronto" && bTodas;
        for (std::size_t i = 0; bTodas && i < k_chamadas.size(); ++i) {
            for (const auto& rpFilho : filhos) rpFilho->Escreve("vai\n");
            double fSoma = 0;
            for (const auto& rpFilho : filhos) {
                const double fSua = std::atof(rpFilho->LeLinha().c_str());
                bTodas = fSua > 0 && bTodas;
                fSoma += fSua;
            }
            porSegundo[iClientes].push_back(fSoma);
        }
    }
    std::string sResumo;
    for (std::size_t i = 0; bTodas && i < k_chamadas.size(); ++i) {
        char szLinha[96];
        std::snprintf(szLinha, sizeof(szLinha), "%s%s %.0f and %.0f", i == 0 ? "" : ", ",
                      k_chamadas[i].first.c_str(), porSegundo[1][i], porSegundo[4][i]);
        sResumo += szLinha;
    }
    std::printf("calls a second, 1 and 4 clients: %s\n", bTodas ? sResumo.c_str() : "a client failed");
    return bTodas;
}

}  // namespace XVCarga
