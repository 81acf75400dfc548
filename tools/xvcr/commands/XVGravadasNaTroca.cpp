#include "tools/xvcr/commands/XVGravadasNaTroca.h"

#include <algorithm>

#include "client/XVClienteCodigos.h"
#include "support/trace/XVArquivoRecusado.h"

namespace {

// Of the operation that has just ended on this client. Several items may have changed one integration, which
// is one all the same.
HRESULT LeGravadas(XVCliente::CXVCliente& rCliente, std::vector<REG_XVDMC>* pLista) {
    const HRESULT hr = rCliente.UltimasGravadas(pLista);
    pLista->erase(std::unique(pLista->begin(), pLista->end()), pLista->end());
    return hr;
}

// What happened, and the file of it. A code's sentence has advice behind its semicolon: to repeat, at times.
std::string DescreveSemConselho(HRESULT hr) {
    const std::string sDescricao = XVCliente::DescreveCodigo(hr);
    return XVArquivoRecusado::Mensagem(sDescricao.substr(0, sDescricao.find(';')), hr);
}

void Mostra(CXVSaida& rSaida, const std::vector<REG_XVDMC>& rLista) {
    for (const REG_XVDMC regDmc : rLista) {
        if (rSaida.EhJson()) {
            XVJson json = XVJson::object();
            XVRegistroJson::Inclui(json, "regDmc", regDmc);
            rSaida.LinhaJson(json);
        } else {
            rSaida.Linha(regDmc.ToString());
        }
    }
}

}  // namespace

void XVMostraGravadas(CXVContexto& rContexto, XVCliente::CXVCliente& rCliente, HRESULT hr,
                      const char* pszNada, const char* pszConselho) {
    const std::string sFalha = FAILED(hr) ? DescreveSemConselho(hr) : std::string();
    std::vector<REG_XVDMC> lista;
    const bool bSabidas = SUCCEEDED(LeGravadas(rCliente, &lista));
    const std::string sQuantas =
        bSabidas
            ? "integrações gravadas: " + std::to_string(lista.size())
            : std::string("quais integrações ficaram gravadas não se sabe: procure-as com \"xvcr busca\"");
    rContexto.saida.AoFalharDiz([sQuantas, lista] {
        return sQuantas + (lista.empty() ? "" : "; última integração: " + lista.back().ToString());
    });
    Mostra(rContexto.saida, lista);
    if (SUCCEEDED(hr)) {
        if (!bSabidas) XVFalha("a operação terminou bem; " + sQuantas);
        if (lista.empty() && !rContexto.saida.EhJson()) rContexto.saida.Linha(pszNada);
        return;
    }
    rContexto.saida.Termina();
    XVFalha(sFalha + "; " + sQuantas + "; " + pszConselho);
}
