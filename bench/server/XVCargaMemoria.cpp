// What a call of each method leaves behind in the server's memory.
#include <cstdio>
#include <functional>

#include "bench/server/XVCarga.h"
#include "tests/com/XVAmbienteCom.h"

namespace XVCarga {

namespace {

constexpr double k_fSemDados = 4;  // bytes a call, of one that stores nothing: pages of the allocator

struct SMetodo {
    const char* pszNome;
    const char* pszDado;  // what of its growth is data; empty: nothing
    std::function<HRESULT(int)> fnChama;
    int iDivisor = 1;  // of the number of calls, for one that takes longer
};

std::vector<SMetodo> Metodos(const std::string& sEmpresa, XVCliente::CXVCliente& r, REG_XVDMC regDmc) {
    const auto status = [&r, regDmc](const std::string& sMensagem) {
        return r.GravaStatusIntegracao(
            {.regDmc = regDmc, .sMensagemIntegracao = sMensagem, .eStatusIntegracao = 1});
    };
    const auto altera = [&r, regDmc](XVUInt64 uiTexto) {
        REG_XVDMC regMesma = regDmc;
        auto dados = Integracao(1, 200);
        dados.sRegistroJSON += std::to_string(1000000 + uiTexto);
        return r.GravaIntegracao(&regMesma, dados);
    };
    return {{"last error", "",
             [&r](int) {
                 XVCliente::SUltimoErro erro;
                 return r.GetUltimoErro(&erro);
             }},
            {"read", "",
             [&r, regDmc](int) {
                 CXVDadosCR_IntegracaoMiddleware lida;
                 return r.LeIntegracao(regDmc, 7, &lida);
             }},
            {"read refused", "",
             [&r](int) {
                 CXVDadosCR_IntegracaoMiddleware lida;
                 return r.LeIntegracao({12345}, 7, &lida) < 0 ? S_OK : E_FAIL;
             }},
            {"read two", "",
             [&r, regDmc](int) {
                 std::vector<CXVDadosCR_IntegracaoMiddleware> lista;
                 return r.LeIntegracoes({regDmc, regDmc}, 7, &lista);
             }},
            {"search", "",
             [&r](int) {
                 std::vector<REG_XVDMC> lista;
                 return r.BuscaPonteiros({.listaStatusIntegracao = {1}, .listaTipoTransacao = {1}}, &lista);
             }},
            {"find key", "",
             [&r, regDmc](int) {
                 CXVDadosCR_ChaveRegistroTelvoParaTerceiro chave{.regDmcRegistroTelvo = regDmc};
                 return r.BuscaChaveRegistro(chave, &chave);
             }},
            {"find date-time", "",
             [&r](int) {
                 CXVDadosCR_DataHoraIntegracaoTerceiro dataHora;
                 return r.BuscaDataHora({}, &dataHora);
             }},
            {"record key again", "",
             [&r, regDmc](int) {
                 return r.GravaChaveRegistro(
                     {.uiChaveRegistroSistemaTerceiro = 5, .regDmcRegistroTelvo = regDmc});
             }},
            {"status, same text", "", [status](int) { return status("igual"); }},
            {"status, other text", "12 bytes of the text file's table",
             [status](int i) { return status(std::to_string(1000000 + i)); }},
            {"update, same", "", [altera](int) { return altera(0); }},
            {"update, other text", "12 bytes of the text file's table",
             [altera](int i) { return altera(static_cast<XVUInt64>(i)); }},
            {"connect and leave", "",
             [sEmpresa](int) {
                 XVCliente::CXVCliente outro;
                 return outro.Conecta({.sEmpresa = sEmpresa});
             },
             20},
            {"record", "index entries, record, table", [&r](int i) {
                 REG_XVDMC regNova;
                 return r.GravaIntegracao(&regNova, Integracao(static_cast<XVUInt64>(i), 200));
             }}};
}

}  // namespace

bool Memoria(int iChamadas) {
    const std::string sEmpresa = XVAmbienteCom::NovaEmpresa();
    XVCliente::CXVCliente cliente;
    REG_XVDMC regDmc;
    HRESULT hr = cliente.Conecta({.sEmpresa = sEmpresa, .usUsuario = 7});
    if (SUCCEEDED(hr)) hr = cliente.GravaIntegracao(&regDmc, Integracao(1, 200));
    int iCrescem = 0;
    for (const SMetodo& rMetodo : Metodos(sEmpresa, cliente, regDmc)) {
        const int iVezes = iChamadas / rMetodo.iDivisor;
        int i = 0;
        for (; SUCCEEDED(hr) && i < iVezes / 4; ++i) hr = rMetodo.fnChama(i);
        const auto uiAntes = static_cast<double>(MemoriaServidor());
        for (; SUCCEEDED(hr) && i < iVezes / 4 + iVezes; ++i) hr = rMetodo.fnChama(i);
        const double fBytes = (static_cast<double>(MemoriaServidor()) - uiAntes) / iVezes;
        const bool bCresce = *rMetodo.pszDado == '\0' && fBytes > k_fSemDados;
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
