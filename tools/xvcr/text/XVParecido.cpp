#include "tools/xvcr/text/XVParecido.h"

#include <algorithm>
#include <vector>

#include "support/values/XVTextoAscii.h"

namespace {

// Insertions, deletions, changes and exchanges of neighbours that make one text of the other.
std::size_t Distancia(const std::string& sUm, const std::string& sOutro) {
    const std::size_t uiLargura = sOutro.size() + 1;
    std::vector<std::size_t> anteanterior(uiLargura);
    std::vector<std::size_t> anterior(uiLargura);
    std::vector<std::size_t> atual(uiLargura);
    for (std::size_t j = 0; j < uiLargura; ++j) atual[j] = j;
    for (std::size_t i = 1; i <= sUm.size(); ++i) {
        std::swap(anteanterior, anterior);
        std::swap(anterior, atual);
        atual[0] = i;
        for (std::size_t j = 1; j < uiLargura; ++j) {
            const bool bIgual = sUm[i - 1] == sOutro[j - 1];
            atual[j] = std::min({anterior[j] + 1, atual[j - 1] + 1, anterior[j - 1] + (bIgual ? 0U : 1U)});
            if (i > 1 && j > 1 && sUm[i - 1] == sOutro[j - 2] && sUm[i - 2] == sOutro[j - 1])
                atual[j] = std::min(atual[j], anteanterior[j - 2] + 1);
        }
    }
    return atual.back();
}

}  // namespace

std::string XVQuisDizer(std::string_view sTexto, std::span<const std::string> aNomes) {
    constexpr std::size_t k_uiMaior = 64;  // longer is no mistyped name, and would only cost time
    constexpr std::size_t k_uiLetrasPorErro = 3;
    if (sTexto.empty() || sTexto.size() > k_uiMaior) return {};
    const std::string sMinusculo = XVEmMinusculas(sTexto);
    std::size_t uiMenor = std::max<std::size_t>(1, sTexto.size() / k_uiLetrasPorErro) + 1;
    std::string sAchado;
    for (const std::string& rNome : aNomes) {
        const std::size_t uiDistancia = Distancia(sMinusculo, XVEmMinusculas(rNome));
        if (uiDistancia >= uiMenor) continue;
        uiMenor = uiDistancia;
        sAchado = rNome;
    }
    return sAchado.empty() ? sAchado : " (quis dizer " + sAchado + "?)";
}
