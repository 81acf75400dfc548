#include "middleware/verificacao/XVRetomada.h"

#include <array>
#include <cstring>
#include <map>

namespace {

constexpr XVUInt64 k_uiPassos = 1U << 26;  // lengths looked at before it is given up
constexpr std::size_t k_uiBlocos = 256;    // kept in memory at a time

class CXVCadeia {
  public:
    CXVCadeia(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiAte,
              const CXVBuracos& rBuracos)
        : m_rLeitura(rLeitura), m_rArquivo(rArquivo), m_uiAte(uiAte), m_rBuracos(rBuracos) {}

    bool EstaEsgotada() const { return m_uiPassos >= k_uiPassos; }
    // Whether texts lie one behind the other from here to the end; passes over the empty ones at the front.
    bool Chega(XVUInt64* puiDe) {
        SVazios& rVazios = m_aVazios[*puiDe % m_aVazios.size()];
        if (*puiDe >= rVazios.uiDe && *puiDe < rVazios.uiAte) return false;
        const XVUInt64 uiDe = *puiDe;
        while (*puiDe < m_uiAte && EhTexto(*puiDe) && m_ulTamanho == 0) *puiDe += sizeof(m_ulTamanho);
        XVUInt64 ui = *puiDe;
        while (ui < m_uiAte && EhTexto(ui)) ui += sizeof(m_ulTamanho) + m_ulTamanho;
        if (ui == m_uiAte && *puiDe < m_uiAte) return true;
        rVazios = {uiDe, *puiDe};
        return false;
    }
    // Of a text that is part of a chain.
    XVUInt64 GetFim(XVUInt64 uiDe) { return EhTexto(uiDe) ? uiDe + sizeof(m_ulTamanho) + m_ulTamanho : uiDe; }

  private:
    // Empty texts, one behind the other, that lead to nothing: so does each of them.
    struct SVazios {
        XVUInt64 uiDe = 0;
        XVUInt64 uiAte = 0;
    };

    // Whether a text can begin here, and how long it is.
    bool EhTexto(XVUInt64 uiDe) {
        const XVUInt64 uiFim = uiDe + sizeof(m_ulTamanho);
        if (++m_uiPassos >= k_uiPassos || uiFim > m_uiAte || m_rBuracos.Toca(uiDe, uiFim)) return false;
        unsigned char aBytes[sizeof(m_ulTamanho)];
        for (std::size_t i = 0; i < sizeof(aBytes); ++i)
            if (!LeByte(uiDe + i, &aBytes[i])) return false;
        std::memcpy(&m_ulTamanho, aBytes, sizeof(aBytes));
        return m_ulTamanho <= m_uiAte - uiFim;
    }
    bool LeByte(XVUInt64 uiOffset, unsigned char* puc) {
        const XVUInt64 uiBloco = uiOffset / CXVLeituraLoja::k_uiBloco;
        if (m_psBloco == nullptr || uiBloco != m_uiBloco) {
            if (m_mapaBlocos.size() >= k_uiBlocos) m_mapaBlocos.clear();
            const auto [it, bNovo] = m_mapaBlocos.try_emplace(uiBloco);
            if (bNovo) LeBloco(uiBloco, &it->second);
            m_uiBloco = uiBloco;
            m_psBloco = &it->second;
        }
        const auto uiNoBloco = static_cast<std::size_t>(uiOffset % CXVLeituraLoja::k_uiBloco);
        if (uiNoBloco >= m_psBloco->size()) return false;
        *puc = static_cast<unsigned char>((*m_psBloco)[uiNoBloco]);
        return true;
    }
    // A block that cannot be read at all stays empty.
    void LeBloco(XVUInt64 uiBloco, std::string* psBytes) {
        const XVUInt64 uiDe = uiBloco * CXVLeituraLoja::k_uiBloco;
        CXVBuracos buracos;
        XVIgnora(m_rLeitura.Percorre(
            m_rArquivo, uiDe, std::min<XVUInt64>(m_uiAte, uiDe + CXVLeituraLoja::k_uiBloco),
            [&](XVUInt64, std::span<const char> aBytes) { psBytes->assign(aBytes.data(), aBytes.size()); },
            &buracos));
    }

    CXVLeituraLoja& m_rLeitura;
    const SArquivoLoja& m_rArquivo;
    XVUInt64 m_uiAte;
    const CXVBuracos& m_rBuracos;
    XVUInt64 m_uiPassos = 0;
    XVUInt m_ulTamanho = 0;
    std::array<SVazios, sizeof(XVUInt)> m_aVazios{};
    std::map<XVUInt64, std::string> m_mapaBlocos;
    XVUInt64 m_uiBloco = 0;
    const std::string* m_psBloco = nullptr;
};

}  // namespace

std::optional<XVUInt64> XVAchaRetomada(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiDe,
                                       XVUInt64 uiAte, const CXVBuracos& rBuracos) {
    CXVCadeia cadeia(rLeitura, rArquivo, uiAte, rBuracos);
    std::optional<XVUInt64> uiAchada;
    XVUInt64 uiFimDaAchada = 0;
    for (XVUInt64 ui = uiDe; ui < uiAte && !(uiAchada && ui >= uiFimDaAchada); ++ui) {
        XVUInt64 uiInicio = ui;
        if (cadeia.EstaEsgotada()) return std::nullopt;
        if (!cadeia.Chega(&uiInicio)) continue;
        if (uiAchada && uiInicio != *uiAchada && uiInicio < uiFimDaAchada) return std::nullopt;
        if (uiAchada) continue;
        uiAchada = uiInicio;
        uiFimDaAchada = cadeia.GetFim(uiInicio);
    }
    return cadeia.EstaEsgotada() ? std::nullopt : uiAchada;
}
