// What a call of each method leaves behind in the server's memory.
#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>

#include "bench/server/XVCarga.h"
#include "tests/com/XVAmbienteCom.h"

namespace XVCarga {

namespace {

constexpr std::size_t k_uiPartes = 5;
// Bytes of one part, beyond a byte a call, that a method that stores nothing may seem to take: a page or two.
constexpr double k_fPaginas = 2 * 4096;

constexpr const char* k_pszTabela = "12 bytes of the text file's table";

struct SMetodo {
    const char* pszNome;
    const char* pszDado;  // what of its growth is data; empty: nothing
    std::function<HRESULT(int)> fnChama;
    int iDivisor = 1;  // of the number of calls, for one that takes longer
};

using TMetodos = std::vector<SMetodo>;

void IncluiLeituras(TMetodos& rMetodos, XVCliente::CXVCliente& r, REG_XVDMC regDmc) {
    const auto inclui = [&](const char* pszNome, auto fnChama) {
        rMetodos.push_back({pszNome, "", [fnChama](int) { return fnChama(); }});
    };
    inclui("last error", [&r] {
        XVCliente::SUltimoErro erro;
        return r.GetUltimoErro(&erro);
    });
    inclui("read", [&r, regDmc] {
        CXVDadosCR_IntegracaoMiddleware lida;
        return r.LeIntegracao(regDmc, 7, &lida);
    });
    inclui("read refused", [&r] {
        CXVDadosCR_IntegracaoMiddleware lida;
        return FAILED(r.LeIntegracao({12345}, 7, &lida)) ? S_OK : E_FAIL;
    });
    inclui("read two", [&r, regDmc] {
        std::vector<CXVDadosCR_IntegracaoMiddleware> lista;
        return r.LeIntegracoes({regDmc, regDmc}, 7, &lista);
    });
    inclui("search", [&r] {
        std::vector<REG_XVDMC> lista;
        return r.BuscaPonteiros({.listaStatusIntegracao = {1}, .listaTipoTransacao = {1}}, &lista);
    });
    inclui("find key", [&r, regDmc] {
        CXVDadosCR_ChaveRegistroTelvoParaTerceiro chave{.regDmcRegistroTelvo = regDmc};
        return r.BuscaChaveRegistro(chave, &chave);
    });
    inclui("find date-time", [&r] {
        CXVDadosCR_DataHoraIntegracaoTerceiro dataHora;
        return r.BuscaDataHora({}, &dataHora);
    });
}

void IncluiGravacoes(TMetodos& rMetodos, XVCliente::CXVCliente& r, REG_XVDMC regDmc) {
    const auto status = [&r, regDmc](int iTexto) {
        return r.GravaStatusIntegracao({.regDmc = regDmc,
                                        .sMensagemIntegracao = std::to_string(1000000 + iTexto),
                                        .eStatusIntegracao = 1});
    };
    const auto altera = [&r, regDmc](int iTexto) {
        REG_XVDMC regMesma = regDmc;
        auto dados = Integracao(1, 200);
        dados.sRegistroJSON += std::to_string(1000000 + iTexto);
        return r.GravaIntegracao(&regMesma, dados);
    };
    const auto grava = [&r](int i) {
        REG_XVDMC regNova;
        return r.GravaIntegracao(&regNova, Integracao(static_cast<XVUInt64>(i), 200));
    };
    rMetodos.push_back({"record key again", "", [&r, regDmc](int) {
                            return r.GravaChaveRegistro(
                                {.uiChaveRegistroSistemaTerceiro = 5, .regDmcRegistroTelvo = regDmc});
                        }});
    rMetodos.push_back({"status, same text", "", [status](int) { return status(-1); }});
    rMetodos.push_back({"status, other text", k_pszTabela, status});
    rMetodos.push_back({"update, same", "", [altera](int) { return altera(-1); }});
    rMetodos.push_back({"update, other text", k_pszTabela, altera});
    rMetodos.push_back({"record", "index entries, record, table of texts", grava});
}

// Bytes that a call leaves behind: the middle one of several parts, so that what the runtime takes once, a
// thread or a block of its heap, does not count.
double Crescimento(const SMetodo& rMetodo, int iVezes, HRESULT* phr) {
    const int iPorParte = iVezes / static_cast<int>(k_uiPartes);
    std::array<double, k_uiPartes> partes;
    int i = 0;
    for (; SUCCEEDED(*phr) && i < iPorParte; ++i) *phr = rMetodo.fnChama(i);
    for (double& rfParte : partes) {
        const auto uiAntes = static_cast<double>(MemoriaServidor());
        for (int j = 0; SUCCEEDED(*phr) && j < iPorParte; ++j) *phr = rMetodo.fnChama(i++);
        rfParte = (static_cast<double>(MemoriaServidor()) - uiAntes) / iPorParte;
    }
    std::ranges::sort(partes);
    return partes[k_uiPartes / 2];
}

}  // namespace

bool Memoria(int iChamadas) {
    const std::string sEmpresa = XVAmbienteCom::NovaEmpresa();
    XVCliente::CXVCliente cliente;
    REG_XVDMC regDmc;
    HRESULT hr = cliente.Conecta({.sEmpresa = sEmpresa, .usUsuario = 7});
    if (SUCCEEDED(hr)) hr = cliente.GravaIntegracao(&regDmc, Integracao(1, 200));
    int iCrescem = 0;
    TMetodos metodos;
    IncluiLeituras(metodos, cliente, regDmc);
    IncluiGravacoes(metodos, cliente, regDmc);
    const auto conecta = [&sEmpresa](int) {
        XVCliente::CXVCliente outro;
        return outro.Conecta({.sEmpresa = sEmpresa});
    };
    metodos.push_back({"connect and leave", "", conecta, 20});
    for (const SMetodo& rMetodo : metodos) {
        const int iVezes = iChamadas / rMetodo.iDivisor;
        const double fBytes = Crescimento(rMetodo, iVezes, &hr);
        const bool bCresce = *rMetodo.pszDado == '\0' && fBytes > 1 + k_fPaginas * k_uiPartes / iVezes;
        iCrescem += bCresce ? 1 : 0;
        std::printf("%-20s %8.2f bytes a call  %s%s\n", rMetodo.pszNome, fBytes, rMetodo.pszDado,
                    bCresce ? "NOT DATA" : "");
    }
    if (FAILED(hr)) DizFalha("memory", hr);
    std::printf("memory: %d calls of each method, %d methods grow by what is not data\n", iChamadas,
                iCrescem);
    return SUCCEEDED(hr) && iCrescem == 0;
}

}  // namespace XVCarga
