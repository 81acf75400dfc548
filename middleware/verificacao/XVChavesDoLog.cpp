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

void CXVChavesDoLog::Le(const std::string& sDiretorio, const std::vector<REG_XVDMC>& listaDmcs,
                        const std::vector<TChaveDmc>& aDoBanco) {
    m_mapaUltimas.clear();
    m_doBanco.clear();
    m_substituidas.clear();
    m_aTiveram.clear();
    m_uiLinha = 0;
    for (const REG_XVDMC regDmc : listaDmcs) m_mapaUltimas.try_emplace(regDmc.uiValor);
    if (listaDmcs.empty()) return;
    for (const auto& [uiChave, uiDmc] : aDoBanco) {
        m_doBanco.insert(uiDmc);
        m_aTiveram.push_back({uiChave, ~XVUInt64{0}, uiDmc});
    }
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::vector<std::string> listaNomes;
    if (!rSistema.Lista(sDiretorio, "XVLogGeral_??????.log", listaNomes).Ok()) return;
    std::sort(listaNomes.begin(), listaNomes.end());  // month by month: the last line of all is the last one
    for (const std::string& rNome : listaNomes) LeArquivo(rSistema.Junta(sDiretorio, rNome));
    JulgaSubstituidas();
}

// From the last line to the first, so that it is known of each successor whether it was replaced itself.
void CXVChavesDoLog::JulgaSubstituidas() {
    std::sort(m_aTiveram.begin(), m_aTiveram.end());
    std::vector<STeve> aUltimas;
    for (const auto& [uiDmc, ultima] : m_mapaUltimas)
        if (ultima.uiChave.value_or(0) != 0) aUltimas.push_back({*ultima.uiChave, ultima.uiLinha, uiDmc});
    std::sort(aUltimas.begin(), aUltimas.end(),
              [](const STeve& a, const STeve& b) { return a.uiLinha > b.uiLinha; });
    for (const STeve& rUltima : aUltimas) {
        auto it = std::upper_bound(m_aTiveram.begin(), m_aTiveram.end(), rUltima);
        const auto eSucessora = [&](const STeve& r) {
            return m_doBanco.contains(r.uiDmc) || m_substituidas.contains(r.uiDmc);
        };
        while (it != m_aTiveram.end() && it->uiChave == rUltima.uiChave && !eSucessora(*it)) ++it;
        if (it != m_aTiveram.end() && it->uiChave == rUltima.uiChave) m_substituidas.insert(rUltima.uiDmc);
    }
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
    ++m_uiLinha;
    const auto it = m_mapaUltimas.find(regDmc.uiValor);
    if (it == m_mapaUltimas.end() && !m_doBanco.contains(regDmc.uiValor)) return;
    const std::string_view sChave = Campo(sLinha, "ChaveSistemaTerceiro: ");
    XVUInt64 uiChave = 0;
    const auto [pFim, erro] = std::from_chars(sChave.data(), sChave.data() + sChave.size(), uiChave);
    if (erro != std::errc() || pFim != sChave.data() + sChave.size() || sChave.empty()) return;
    if (it != m_mapaUltimas.end()) it->second = {m_uiLinha, uiChave};
    m_aTiveram.push_back({uiChave, m_uiLinha, regDmc.uiValor});
}

std::optional<XVUInt64> CXVChavesDoLog::GetChave(REG_XVDMC regDmc) const {
    const auto it = m_mapaUltimas.find(regDmc.uiValor);
    return it == m_mapaUltimas.end() ? std::nullopt : it->second.uiChave;
}
