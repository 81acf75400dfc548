#include "suite/simulation/XVNomesSimulacao.h"

#include "contract/XVEnumeracoesTexto.h"

namespace {

// The short names of the enumeration but "none", without what every one of them begins with.
std::vector<SNomeValor> Nomes(EEnumeracao eEnumeracao, std::string_view sInicio = {}) {
    std::vector<SNomeValor> lista;
    for (const SNomeEnumeracao& rNome : XVEnumeracoesTexto::GetNomes(eEnumeracao))
        if (rNome.ulValor != 0) lista.push_back({rNome.GetCurto().substr(sInicio.size()), rNome.ulValor});
    return lista;
}

constexpr std::string_view k_sConsulta = "Consulta";

}  // namespace

const std::vector<SNomeValor>& XVNomesSimulacao::TipoIntegracao() {
    static const std::vector<SNomeValor> s_lista = Nomes(EEnumeracao::eTipoIntegracao);
    return s_lista;
}

const std::vector<SNomeValor>& XVNomesSimulacao::TipoTransacao() {
    static const std::vector<SNomeValor> s_lista = Nomes(EEnumeracao::eTipoTransacao);
    return s_lista;
}

const std::vector<SNomeValor>& XVNomesSimulacao::StatusIntegracao() {
    static const std::vector<SNomeValor> s_lista = Nomes(EEnumeracao::eStatusIntegracao);
    return s_lista;
}

const std::vector<SNomeValor>& XVNomesSimulacao::TipoConsulta() {
    static const std::vector<SNomeValor> s_lista = Nomes(EEnumeracao::eTipoConsulta, k_sConsulta);
    return s_lista;
}

const std::vector<SNomeValor>& XVNomesSimulacao::StatusConsulta() {
    static const std::vector<SNomeValor> s_lista = Nomes(EEnumeracao::eStatusConsulta, k_sConsulta);
    return s_lista;
}
