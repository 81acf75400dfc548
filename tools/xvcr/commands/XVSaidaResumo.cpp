#include "tools/xvcr/commands/XVSaidaResumo.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tools/xvcr/commands/XVSaidaVerificacao.h"
#include "tools/xvcr/text/XVTextoTela.h"

namespace {

constexpr std::size_t k_uiLargura = 80;
constexpr std::size_t k_uiGruposMostrados = 10;
constexpr std::size_t k_uiDiasMostrados = 10;
constexpr const char* k_apszIdades[] = {"até 1 hora", "até 1 dia", "até 7 dias", "até 30 dias",
                                        "mais de 30 dias"};
static_assert(std::size(k_apszIdades) == k_auiIdades.size() + 1);

using TFalha = std::pair<std::string, SGrupoFalhas>;

// The largest first.
std::vector<TFalha> GruposOrdenados(const SResumoLoja& r) {
    std::vector<TFalha> lista(r.mapaFalhas.begin(), r.mapaFalhas.end());
    std::stable_sort(lista.begin(), lista.end(), [](const TFalha& a, const TFalha& b) {
        return a.second.uiQuantidade > b.second.uiQuantidade;
    });
    return lista;
}

std::string Tempo(XVUInt64 uiSegundos) {
    const XVUInt64 uiDias = uiSegundos / 86400;
    const XVUInt64 uiHoras = uiSegundos / 3600 % 24;
    if (uiDias > 0)
        return XVComPontos(uiDias) + (uiDias == 1 ? " dia e " : " dias e ") + std::to_string(uiHoras) + " h";
    return std::to_string(uiHoras) + " h " + std::to_string(uiSegundos / 60 % 60) + " min";
}

std::string Bytes(XVUInt64 ui) {
    constexpr const char* k_apszUnidades[] = {"bytes", "KB", "MB", "GB", "TB"};
    std::size_t i = 0;
    XVUInt64 uiDecimos = ui * 10;
    for (; uiDecimos >= 10240 && i + 1 < std::size(k_apszUnidades); ++i) uiDecimos = (uiDecimos + 512) / 1024;
    const std::string sInteiro = XVComPontos(uiDecimos / 10);
    return sInteiro + (i == 0 ? "" : "," + std::to_string(uiDecimos % 10)) + ' ' + k_apszUnidades[i];
}

std::string Linha(const std::string& sTexto) {
    return XVTextoTela::Corta(XVTextoTela::Escapa(sTexto, false), k_uiLargura);
}

std::string NumeroAEsquerdaDe(XVUInt64 uiNumero, const std::string& sTexto) {
    std::string sNumero = XVComPontos(uiNumero);
    sNumero.insert(0, sNumero.size() < 13 ? 13 - sNumero.size() : 0, ' ');
    return sNumero + "  " + sTexto;
}

void MostraPendentes(CXVSaida& rSaida, const SResumoLoja& r) {
    if (!r.maisAntiga) return rSaida.Linha("Nenhuma integração pendente.");
    rSaida.Linha("Pendentes: " + XVComPontos(r.Pendentes()) + "; a mais antiga, " +
                 r.maisAntiga->first.ToString() + ", espera há " + Tempo(r.maisAntiga->second) + '.');
    for (std::size_t i = 0; i < r.auiPendentes.size(); ++i)
        if (r.auiPendentes[i] > 0) rSaida.Linha(NumeroAEsquerdaDe(r.auiPendentes[i], k_apszIdades[i]));
}

void MostraFalhas(CXVSaida& rSaida, const SResumoLoja& r) {
    if (r.uiFalhas == 0) return rSaida.Linha("Nenhuma integração com erro.");
    rSaida.Linha("Com erro: " + XVComPontos(r.uiFalhas) + ", por mensagem:");
    const std::vector<TFalha> lista = GruposOrdenados(r);
    XVUInt64 uiResto = r.uiFalhas;
    for (std::size_t i = 0; i < std::min(lista.size(), k_uiGruposMostrados); ++i) {
        const SGrupoFalhas& rGrupo = lista[i].second;
        uiResto -= rGrupo.uiQuantidade;
        rSaida.Linha(Linha(NumeroAEsquerdaDe(rGrupo.uiQuantidade,
                                             lista[i].first.empty() ? "(sem mensagem)" : lista[i].first)));
        rSaida.Linha(Linha("               " + rGrupo.regDmc.ToString() +
                           (rGrupo.sExemplo.empty() ? "" : ": " + rGrupo.sExemplo)));
    }
    if (uiResto > 0) rSaida.Linha(NumeroAEsquerdaDe(uiResto, "com outras mensagens (--json mostra mais)"));
}

// Names with their counts, the largest first.
void MostraPor(CXVSaida& rSaida, const char* pszTitulo, EEnumeracao eEnumeracao,
               const std::map<XVUInt, XVUInt64>& rMapa) {
    std::vector<std::pair<XVUInt, XVUInt64>> lista(rMapa.begin(), rMapa.end());
    std::stable_sort(lista.begin(), lista.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    rSaida.Linha(std::string("\n") + pszTitulo);
    for (const auto& [ulValor, uiQuantidade] : lista)
        rSaida.Linha(NumeroAEsquerdaDe(uiQuantidade, XVEnumeracoesTexto::GetNomeCurto(eEnumeracao, ulValor)));
}

void MostraDias(CXVSaida& rSaida, const SResumoLoja& r) {
    rSaida.Linha("\nPor dia");
    std::size_t uiMostrados = 0;
    for (auto it = r.mapaDias.rbegin(); it != r.mapaDias.rend() && uiMostrados < k_uiDiasMostrados; ++it) {
        rSaida.Linha(NumeroAEsquerdaDe(it->second, XVDiaEmTexto(it->first)));
        ++uiMostrados;
    }
    if (r.mapaDias.size() > uiMostrados)
        rSaida.Linha("               e mais " + XVComPontos(r.mapaDias.size() - uiMostrados) +
                     (r.mapaDias.size() - uiMostrados == 1 ? " dia" : " dias") + " antes (todos com --json)");
}

// One of the two halves of status and system.
template <class TFn>
std::map<XVUInt, XVUInt64> Soma(const SResumoLoja& r, TFn fnParte) {
    std::map<XVUInt, XVUInt64> mapa;
    for (const auto& [chave, uiQuantidade] : r.mapaStatusSistema) mapa[fnParte(chave)] += uiQuantidade;
    return mapa;
}
auto PorStatus(const SResumoLoja& r) {
    return Soma(r, [](const auto& chave) { return chave.first; });
}
auto PorSistema(const SResumoLoja& r) {
    return Soma(r, [](const auto& chave) { return chave.second; });
}

XVJson Contagens(EEnumeracao eEnumeracao, const std::map<XVUInt, XVUInt64>& rMapa) {
    XVJson json = XVJson::object();
    for (const auto& [ulValor, uiQuantidade] : rMapa)
        json[XVEnumeracoesTexto::GetNomeCurto(eEnumeracao, ulValor)] = uiQuantidade;
    return json;
}

}  // namespace

void XVMostraResumo(CXVSaida& rSaida, const std::string& sEmpresa, const SResumoLoja& r, bool bPrimeira) {
    rSaida.Linha((bPrimeira ? "Empresa " : "\nEmpresa ") + sEmpresa + ", em " + r.regMomento.ToISO8601() +
                 ": " + XVContaIntegracoes(r.uiIntegracoes) + '.');
    MostraPendentes(rSaida, r);
    MostraFalhas(rSaida, r);
    if (r.uiIlegiveis > 0)
        rSaida.Linha("Sem registro legível: " + XVContaIntegracoes(r.uiIlegiveis) + "; veja xvcr verifica.");
    if (r.uiIntegracoes > 0) {
        MostraPor(rSaida, "Por status", EEnumeracao::eStatusIntegracao, PorStatus(r));
        MostraPor(rSaida, "Por sistema", EEnumeracao::eSistemaIntegracao, PorSistema(r));
        MostraPor(rSaida, "Por tipo", EEnumeracao::eTipoIntegracao, r.mapaTipos);
        MostraDias(rSaida, r);
    }
    if (!r.regUltima.EhNula())
        rSaida.Linha("\nIncluídas de " + r.regPrimeira.ToISO8601() + " a " + r.regUltima.ToISO8601() + '.');
    rSaida.Linha("\nArquivos de dados: " + XVComPontos(r.uiArquivos) + ", " + Bytes(r.uiBytes) +
                 "; de textos que nada mais aponta: " + Bytes(r.uiBytesMortos) + '.');
    rSaida.Linha("Memória do servidor para índice e mapa de chaves: " + Bytes(r.uiMemoria) +
                 "; mais a dos dias\nabertos, até MemoriaMembros.");
}

XVJson XVResumoEmJson(const std::string& sEmpresa, const SResumoLoja& r) {
    XVJson json{{"empresa", sEmpresa}};
    XVRegistroJson::Inclui(json, "momento", r.regMomento);
    json["integracoes"] = r.uiIntegracoes;
    json["ilegiveis"] = r.uiIlegiveis;
    XVJson pendentes{{"quantidade", r.Pendentes()}};
    for (std::size_t i = 0; i < r.auiPendentes.size(); ++i) {
        XVJson idade{{"quantidade", r.auiPendentes[i]}};
        if (i < k_auiIdades.size()) idade["ateSegundos"] = k_auiIdades[i];
        pendentes["idades"].push_back(std::move(idade));
    }
    if (r.maisAntiga) {
        pendentes["maisAntiga"] = XVJson{{"segundos", r.maisAntiga->second}};
        XVRegistroJson::Inclui(pendentes["maisAntiga"], "regDmc", r.maisAntiga->first);
    }
    json["pendentes"] = std::move(pendentes);
    XVJson erros{
        {"quantidade", r.uiFalhas}, {"foraDosGrupos", r.uiFalhasForaDosGrupos}, {"grupos", XVJson::array()}};
    for (const auto& [sMensagem, grupo] : GruposOrdenados(r)) {
        XVJson jsonGrupo{{"quantidade", grupo.uiQuantidade}};
        XVRegistroJson::Inclui(jsonGrupo, "mensagem", sMensagem);
        XVRegistroJson::Inclui(jsonGrupo, "exemplo", grupo.sExemplo);
        XVRegistroJson::Inclui(jsonGrupo, "regDmc", grupo.regDmc);
        erros["grupos"].push_back(std::move(jsonGrupo));
    }
    json["erros"] = std::move(erros);
    json["status"] = Contagens(EEnumeracao::eStatusIntegracao, PorStatus(r));
    json["sistemas"] = Contagens(EEnumeracao::eSistemaIntegracao, PorSistema(r));
    json["tipos"] = Contagens(EEnumeracao::eTipoIntegracao, r.mapaTipos);
    json["dias"] = XVJson::object();
    for (const auto& [uiDia, uiQuantidade] : r.mapaDias) json["dias"][std::to_string(uiDia)] = uiQuantidade;
    XVRegistroJson::Inclui(json, "primeiraInclusao", r.regPrimeira);
    XVRegistroJson::Inclui(json, "ultimaInclusao", r.regUltima);
    json["arquivos"] = r.uiArquivos;
    json["bytes"] = r.uiBytes;
    json["textosMortos"] = r.uiTextosMortos;
    json["bytesMortos"] = r.uiBytesMortos;
    json["memoriaIndices"] = r.uiMemoria;
    return json;
}
