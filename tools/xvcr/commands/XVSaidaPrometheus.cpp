#include <initializer_list>
#include <utility>

#include "tools/xvcr/commands/XVSaidaResumo.h"

namespace {

struct SMedida {
    const char* pszNome;
    const char* pszAjuda;
};
constexpr SMedida k_aMedidas[] = {
    {"xvcr_integracoes", "Integrações da base, por status e sistema externo."},
    {"xvcr_integracoes_ilegiveis", "Integrações que o índice conhece e cujo registro não pode ser lido."},
    {"xvcr_pendentes", "Integrações pendentes, por idade desde a inclusão."},
    {"xvcr_pendente_mais_antiga_segundos", "Idade da pendente mais antiga; 0 sem pendentes."},
    {"xvcr_ultima_inclusao_segundos", "Tempo desde a última inclusão; ausente sem integrações."},
    {"xvcr_arquivos_bytes", "Tamanho dos arquivos de dados da base."},
    {"xvcr_memoria_indices_bytes", "Memória de que um servidor precisa para o índice e o mapa de chaves."},
};
constexpr const char* k_apszIdades[] = {"ate_1_hora", "ate_1_dia", "ate_7_dias", "ate_30_dias", "maior"};
static_assert(std::size(k_apszIdades) == k_auiIdades.size() + 1);

using TRotulos = std::initializer_list<std::pair<const char*, std::string>>;

std::string Amostra(const char* pszNome, const TRotulos& rRotulos, XVUInt64 uiValor) {
    std::string sLinha = std::string(pszNome) + '{';
    for (const auto& [pszRotulo, sValor] : rRotulos) {
        if (sLinha.back() != '{') sLinha += ',';
        sLinha += std::string(pszRotulo) + "=\"";
        for (const char c : sValor) {
            if (c == '\\' || c == '"') sLinha += '\\';
            if (c == '\n')
                sLinha += "\\n";
            else
                sLinha += c;
        }
        sLinha += '"';
    }
    return sLinha + "} " + std::to_string(uiValor) + '\n';
}

}  // namespace

void CXVPrometheus::Inclui(const std::string& sEmpresa, const SResumoLoja& r) {
    const auto poe = [this](const char* pszNome, const TRotulos& rRotulos, XVUInt64 uiValor) {
        m_mapaAmostras[pszNome] += Amostra(pszNome, rRotulos, uiValor);
    };
    using XVEnumeracoesTexto::GetNomeCurto;
    for (const auto& [chave, uiQuantidade] : r.mapaStatusSistema)
        poe("xvcr_integracoes",
            {{"empresa", sEmpresa},
             {"status", GetNomeCurto(EEnumeracao::eStatusIntegracao, chave.first)},
             {"sistema", GetNomeCurto(EEnumeracao::eSistemaIntegracao, chave.second)}},
            uiQuantidade);
    for (std::size_t i = 0; i < r.auiPendentes.size(); ++i)
        poe("xvcr_pendentes", {{"empresa", sEmpresa}, {"idade", k_apszIdades[i]}}, r.auiPendentes[i]);
    const TRotulos rotulos{{"empresa", sEmpresa}};
    poe("xvcr_integracoes_ilegiveis", rotulos, r.uiIlegiveis);
    poe("xvcr_pendente_mais_antiga_segundos", rotulos, r.maisAntiga ? r.maisAntiga->second : 0);
    if (!r.regUltima.EhNula())
        poe("xvcr_ultima_inclusao_segundos", rotulos, XVIdadeEmSegundos(r.regMomento, r.regUltima));
    poe("xvcr_arquivos_bytes", rotulos, r.uiBytes);
    poe("xvcr_memoria_indices_bytes", rotulos, r.uiMemoria);
}

std::string CXVPrometheus::Monta() const {
    std::string sTexto;
    for (const SMedida& rMedida : k_aMedidas) {
        const auto it = m_mapaAmostras.find(rMedida.pszNome);
        if (it == m_mapaAmostras.end()) continue;
        const std::string sNome = rMedida.pszNome;
        sTexto += "# HELP " + sNome + ' ' + rMedida.pszAjuda + "\n# TYPE " + sNome + " gauge\n" + it->second;
    }
    return sTexto;
}
