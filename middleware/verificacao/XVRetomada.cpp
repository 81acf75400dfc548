#include "middleware/verificacao/XVRetomada.h"

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
        bool bVazios = true;
        for (XVUInt64 ui = *puiDe; ui < m_uiAte;) {
            XVUInt ulTamanho = 0;
            if (++m_uiPassos >= k_uiPassos || !LeTamanho(ui, &ulTamanho)) return false;
            if (bVazios && ulTamanho != 0) {
                bVazios = false;
                *puiDe = ui;
            }
            ui += sizeof(ulTamanho) + ulTamanho;
        }
        return !bVazios;
    }
    // The length at a text that is part of a chain.
    XVUInt GetTamanho(XVUInt64 uiDe) {
        XVUInt ulTamanho = 0;
        LeTamanho(uiDe, &ulTamanho);
        return ulTamanho;
    }

  private:
    // False: no text can begin here.
    bool LeTamanho(XVUInt64 uiDe, XVUInt* pulTamanho) {
        const XVUInt64 uiFim = uiDe + sizeof(*pulTamanho);
        if (uiFim > m_uiAte || m_rBuracos.Toca(uiDe, uiFim)) return false;
        unsigned char aBytes[sizeof(*pulTamanho)];
        for (std::size_t i = 0; i < sizeof(aBytes); ++i)
            if (!LeByte(uiDe + i, &aBytes[i])) return false;
        std::memcpy(pulTamanho, aBytes, sizeof(aBytes));
        return *pulTamanho <= m_uiAte - uiFim;
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
        uiFimDaAchada = uiInicio + sizeof(XVUInt) + cadeia.GetTamanho(uiInicio);
    }
    return cadeia.EstaEsgotada() ? std::nullopt : uiAchada;
}
