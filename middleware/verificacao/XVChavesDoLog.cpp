#include "middleware/verificacao/XVChavesDoLog.h"

#include <algorithm>
#include <charconv>

#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"

namespace {

constexpr std::size_t k_uiPedaco = 1U << 20;
constexpr std::size_t k_uiMaiorLinha = 4096;  // of the lines that speak of integrations, with room to spare

// What stands between a label and the next blank.
std::string_view Campo(std::string_view sLinha, std::string_view sRotulo) {
    const std::size_t uiOnde = sLinha.find(sRotulo);
    if (uiOnde == std::string_view::npos) return {};
    sLinha.remove_prefix(uiOnde + sRotulo.size());
    return sLinha.substr(0, sLinha.find(' '));
}

}  // namespace

void CXVChavesDoLog::Le(const std::string& sDiretorio, const std::vector<REG_XVDMC>& listaDmcs) {
    m_mapaChaves.clear();
    for (const REG_XVDMC regDmc : listaDmcs) m_mapaChaves.emplace(regDmc.uiValor, std::nullopt);
    if (listaDmcs.empty()) return;
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::vector<std::string> listaNomes;
    if (!rSistema.Lista(sDiretorio, "XVLogGeral_??????.log", listaNomes).Ok()) return;
    std::sort(listaNomes.begin(), listaNomes.end());  // month by month: the last line of all is the last one
    for (const std::string& rNome : listaNomes) LeArquivo(rSistema.Junta(sDiretorio, rNome));
}

void CXVChavesDoLog::LeArquivo(const std::string& sPath) {
    std::unique_ptr<IXVArquivo> pArquivo;
    XVUInt64 uiTamanho = 0;
    if (!XVPlataforma::SistemaArquivos().Abre(sPath, k_aberturaConsulta, pArquivo).Ok() ||
        !pArquivo->GetTamanho(uiTamanho).Ok())
        return;
    std::string sResto;
    std::string sPedaco;
    for (XVUInt64 uiOffset = 0; uiOffset < uiTamanho; uiOffset += sPedaco.size()) {
        sPedaco.resize(static_cast<std::size_t>(std::min<XVUInt64>(k_uiPedaco, uiTamanho - uiOffset)));
        if (!pArquivo->Le(uiOffset, sPedaco.data(), sPedaco.size()).Ok()) return;
        sResto += sPedaco;
        std::size_t uiInicio = 0;
        for (std::size_t uiFim = 0; (uiFim = sResto.find('\n', uiInicio)) != std::string::npos;
             uiInicio = uiFim + 1)
            LeLinha(std::string_view(sResto).substr(uiInicio, uiFim - uiInicio));
        sResto.erase(0, uiInicio);
        if (sResto.size() > k_uiMaiorLinha) sResto.clear();
    }
}

void CXVChavesDoLog::LeLinha(std::string_view sLinha) {
    REG_XVDMC regDmc;
    if (!REG_XVDMC::DeString(Campo(sLinha, "DMCIntegracao: "), &regDmc)) return;
    const auto it = m_mapaChaves.find(regDmc.uiValor);
    if (it == m_mapaChaves.end()) return;
    const std::string_view sChave = Campo(sLinha, "ChaveSistemaTerceiro: ");
    XVUInt64 uiChave = 0;
    const auto [pFim, erro] = std::from_chars(sChave.data(), sChave.data() + sChave.size(), uiChave);
    if (erro == std::errc() && pFim == sChave.data() + sChave.size() && !sChave.empty()) it->second = uiChave;
}

std::optional<XVUInt64> CXVChavesDoLog::GetChave(REG_XVDMC regDmc) const {
    const auto it = m_mapaChaves.find(regDmc.uiValor);
    return it == m_mapaChaves.end() ? std::nullopt : it->second;
}
