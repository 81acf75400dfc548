#include "tools/xvcr/commands/XVOpcoes.h"

#include "tools/xvcr/commands/XVDeclaracoes.h"
#include "tools/xvcr/text/XVErros.h"
#include "tools/xvcr/text/XVTextoEntrada.h"

namespace {

constexpr char k_cMarca = '\x01';

bool PrecisaMarca(std::string_view sValor) {
    return sValor.empty() || sValor.front() == '[' || sValor.front() == '{' || sValor.front() == k_cMarca;
}

}  // namespace

std::vector<std::string> XVProtegeArgumentos(std::vector<std::string> listaArgumentos) {
    for (std::string& rArgumento : listaArgumentos) {
        std::size_t uiValor = 0;
        if (rArgumento.starts_with('-')) {
            const std::size_t uiIgual = rArgumento.find('=');
            if (uiIgual == std::string::npos) continue;
            uiValor = uiIgual + 1;
        }
        if (PrecisaMarca(std::string_view(rArgumento).substr(uiValor)))
            rArgumento.insert(uiValor, 1, k_cMarca);
    }
    return listaArgumentos;
}

std::string XVDesprotege(const std::string& sArgumento) {
    return sArgumento.starts_with(k_cMarca) ? sArgumento.substr(1) : sArgumento;
}

CLI::Option* XVOpcao(CLI::App& rComando, const std::string& sNome, const std::string& sTipo,
                     const std::string& sDescricao, FLeOpcao fLe) {
    const auto fRecebe = [sNome, fLe = std::move(fLe)](const std::string& sArgumento) {
        const std::string sErro = fLe(XVDesprotege(sArgumento));
        if (!sErro.empty()) XVErroDeUso(sNome.substr(0, sNome.find(',')) + ": " + sErro);
    };
    return rComando.add_option_function<std::string>(sNome, fRecebe, sDescricao)
        ->type_name(sTipo)
        ->allow_extra_args(false);
}

CLI::Option* XVOpcaoContagem(CLI::App& rComando, const std::string& sNome, const std::string& sTipo,
                             const std::string& sDescricao, XVUInt* pulValor) {
    return XVOpcao(rComando, sNome, sTipo, sDescricao, [pulValor](std::string_view s) {
        std::string sErro = XVLeituraValor::Le(s, pulValor);
        return sErro.empty() && *pulValor == 0 ? "esperado um número a partir de 1" : sErro;
    });
}

CLI::Option* XVOpcaoSimples(CLI::App& rComando, const std::string& sNome, const std::string& sTipo,
                            const std::string& sDescricao, std::string* psValor) {
    return XVOpcao(rComando, sNome, sTipo, sDescricao, [psValor](std::string_view s) {
        *psValor = s;
        return std::string();
    });
}

CLI::Option* XVOpcaoTexto(CLI::App& rComando, const std::string& sNome, const std::string& sDescricao,
                          std::string* psValor) {
    return XVOpcao(rComando, sNome, "TEXTO|@ARQUIVO|-", sDescricao, [psValor](std::string_view s) {
        *psValor = XVLeTextoEntrada(s);
        return XVConfereTexto(*psValor);
    });
}

CLI::Option* XVOpcaoIntegracao(CLI::App& rComando, const std::string& sDescricao, REG_XVDMC* pDmc) {
    return XVOpcao(rComando, "--dmc", "DMC", sDescricao, [pDmc](std::string_view s) {
        std::string sErro = XVLeituraValor::Le(s, pDmc);
        return sErro.empty() && !pDmc->EhDeIntegracao() ? "este DMC não é de integração alguma" : sErro;
    });
}

CLI::Option* XVOpcaoEnumeracao(CLI::App& rComando, const std::string& sNome, const std::string& sDescricao,
                               EEnumeracao eEnumeracao, XVUInt* pulValor) {
    return XVOpcao(
        rComando, sNome, std::string(XVDeclaracoes::GetNomeDoTipo(eEnumeracao)), sDescricao,
        [eEnumeracao, pulValor](std::string_view s) { return XVLeituraValor::Le(s, eEnumeracao, pulValor); });
}

void XVOpcoesTipoESistema(CLI::App& rComando, XVUInt* peTipo, XVUInt* peSistema) {
    XVOpcaoEnumeracao(rComando, "--tipo", "Tipo de integração", EEnumeracao::eTipoIntegracao, peTipo)
        ->required();
    XVOpcaoEnumeracao(rComando, "--sistema", "Sistema externo", EEnumeracao::eSistemaIntegracao, peSistema)
        ->required();
}

CLI::Option* XVOpcaoLista(CLI::App& rComando, const std::string& sNome, const std::string& sDescricao,
                          EEnumeracao eEnumeracao, std::vector<XVUInt>* pLista) {
    const auto fRecebe = [sNome, eEnumeracao, pLista](const std::vector<std::string>& listaArgumentos) {
        for (const std::string& rArgumento : listaArgumentos) {
            for (const std::string& rNome : CLI::detail::split(XVDesprotege(rArgumento), ',')) {
                XVUInt ulValor = 0;
                const std::string sErro = XVLeituraValor::Le(rNome, eEnumeracao, &ulValor);
                if (!sErro.empty()) XVErroDeUso(sNome + ": \"" + rNome + "\": " + sErro);
                pLista->push_back(ulValor);
            }
        }
    };
    const std::string sTipo(XVDeclaracoes::GetNomeDoTipo(eEnumeracao));
    return rComando.add_option_function<std::vector<std::string>>(sNome, fRecebe, sDescricao)
        ->type_name(sTipo + "[," + sTipo + "...]")
        ->allow_extra_args(false);
}
