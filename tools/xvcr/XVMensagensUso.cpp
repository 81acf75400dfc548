#include "tools/xvcr/XVMensagensUso.h"

#include <algorithm>
#include <string_view>

#include "tools/xvcr/commands/XVDeclaracoes.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/text/XVParecido.h"

namespace {

using TCaminho = std::vector<const CLI::App*>;

// The first option of the commands of the line for which bVale is true, or null.
template <class FVale>
const CLI::Option* Procura(const TCaminho& listaCaminho, FVale&& bVale) {
    for (const CLI::App* pComando : listaCaminho)
        for (const CLI::Option* pOpcao : pComando->get_options())
            if (bVale(*pOpcao)) return pOpcao;
    return nullptr;
}

// The argument that belongs to no command or option and stands first in the line, or an empty text.
std::string PrimeiraSobra(const CLI::App& rRaiz, const std::vector<std::string>& listaArgumentos) {
    const std::vector<std::string> listaSobras = rRaiz.remaining(true);
    const auto bSobra = [&](const std::string& rArgumento) {
        return std::any_of(listaSobras.begin(), listaSobras.end(),
                           [&](const std::string& rSobra) { return XVDesprotege(rSobra) == rArgumento; });
    };
    const auto p = std::find_if(listaArgumentos.begin(), listaArgumentos.end(), bSobra);
    return p == listaArgumentos.end() ? std::string() : *p;
}

std::string DescreveSobra(const TCaminho& listaCaminho, const std::string& sSobra) {
    const std::vector<std::string> listaComandos = XVDeclaracoes::GetNomesDeComandos(*listaCaminho.back());
    if (!sSobra.starts_with('-') && !listaComandos.empty())
        return "comando desconhecido: " + sSobra + XVQuisDizer(sSobra, listaComandos);
    if (!sSobra.starts_with('-')) return "argumento inesperado: " + sSobra;
    return "opção desconhecida: " + sSobra +
           XVQuisDizer(sSobra.substr(0, sSobra.find('=')), XVDeclaracoes::GetNomesDeOpcoes(listaCaminho));
}

std::string DescreveFalta(const TCaminho& listaCaminho) {
    const CLI::Option* pFalta =
        Procura(listaCaminho, [](const CLI::Option& r) { return r.get_required() && r.count() == 0; });
    return pFalta == nullptr ? "falta o comando" : "falta " + XVDeclaracoes::GetNome(*pFalta);
}

// An option with too many values or too few.
std::string DescreveQuantidade(const TCaminho& listaCaminho,
                               const std::vector<std::string>& listaArgumentos) {
    const auto bDemais = [](const CLI::Option& r) {
        return XVDeclaracoes::LevaValor(r) &&
               r.count() > static_cast<std::size_t>(r.get_items_expected_max());
    };
    if (const CLI::Option* pDemais = Procura(listaCaminho, bDemais); pDemais != nullptr)
        return XVDeclaracoes::GetNome(*pDemais) + ": dada mais de uma vez";
    for (auto p = listaArgumentos.begin(); p != listaArgumentos.end(); ++p) {
        const CLI::Option* pOpcao = XVDeclaracoes::GetOpcao(listaCaminho, *p);
        if (pOpcao == nullptr) continue;
        const bool bComIgual = p->find('=') != std::string::npos;
        const bool bFim = std::next(p) == listaArgumentos.end();
        if (XVDeclaracoes::LevaValor(*pOpcao) && !bComIgual &&
            (bFim || XVDeclaracoes::GetOpcao(listaCaminho, *std::next(p)) != nullptr))
            return XVDeclaracoes::GetNome(*pOpcao) + ": falta o valor";
    }
    return "quantidade errada de valores";
}

std::string DescreveExclusao(const TCaminho& listaCaminho) {
    std::string sTexto = "opções que se excluem";
    Procura(listaCaminho, [&](const CLI::Option& r) {
        for (const CLI::Option* pOutra : r.get_excludes())
            if (r.count() > 0 && pOutra->count() > 0)
                sTexto = XVDeclaracoes::GetNome(r) + " não vale junto com " + XVDeclaracoes::GetNome(*pOutra);
        return false;
    });
    return sTexto;
}

}  // namespace

std::string XVDescreveValorDemais(const CLI::App& rRaiz, const std::vector<std::string>& listaArgumentos) {
    const TCaminho listaCaminho = XVDeclaracoes::GetCaminho(rRaiz, listaArgumentos);
    bool bEhValor = false;  // of the option before it, whatever it looks like
    for (const std::string& rArgumento : listaArgumentos) {
        if (rArgumento == "--" && !bEhValor) break;
        const CLI::Option* pOpcao = bEhValor ? nullptr : XVDeclaracoes::GetOpcao(listaCaminho, rArgumento);
        const bool bComIgual = rArgumento.find('=') != std::string::npos;
        const bool bLevaValor = pOpcao != nullptr && XVDeclaracoes::LevaValor(*pOpcao);
        if (pOpcao != nullptr && !bLevaValor && bComIgual)
            return XVDeclaracoes::GetNome(*pOpcao) + ": não leva valor";
        bEhValor = bLevaValor && !bComIgual;
    }
    return {};
}

std::string XVDescreveErroDeUso(const CLI::App& rRaiz, const std::vector<std::string>& listaArgumentos,
                                const CLI::ParseError& rErro) {
    const TCaminho listaCaminho = XVDeclaracoes::GetCaminho(rRaiz, listaArgumentos);
    // What was mistyped is what is missing, mostly.
    if (const std::string sSobra = PrimeiraSobra(rRaiz, listaArgumentos); !sSobra.empty())
        return DescreveSobra(listaCaminho, sSobra);
    if (dynamic_cast<const CLI::RequiredError*>(&rErro) != nullptr) return DescreveFalta(listaCaminho);
    if (dynamic_cast<const CLI::ExcludesError*>(&rErro) != nullptr) return DescreveExclusao(listaCaminho);
    return DescreveQuantidade(listaCaminho, listaArgumentos);
}

std::string XVOndeHaAjuda(const CLI::App& rRaiz, const std::vector<std::string>& listaArgumentos) {
    return " (veja \"" + XVDeclaracoes::GetLinha(*XVDeclaracoes::GetCaminho(rRaiz, listaArgumentos).back()) +
           " --help\")";
}
