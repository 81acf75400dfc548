#include "middleware/verificacao/XVExameTextos.h"

#include <algorithm>
#include <cstring>

#include "middleware/verificacao/XVRetomada.h"

namespace {
// So many zero bytes in a row are no text: of a sector that never reached the device there are hundreds.
constexpr unsigned k_uiZerosDeFalha = 16;
}  // namespace

HRESULT CXVExameTextos::Examina(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiAte,
                                const TSelos& rSelos) {
    *this = {};
    m_uiAte = uiAte;
    CXVConferenciaSelo conferencia(rSelos, rArquivo, true);
    const HRESULT hr = rLeitura.Percorre(
        rArquivo, uiAte,
        [&](XVUInt64 uiOffset, std::span<const char> aBytes) {
            Anda(aBytes, conferencia.Confere(uiOffset, aBytes));
        },
        &m_buracos);
    // Of a text that was not read to its end nothing is known.
    if (m_uiFalta > 0) Encurta(m_aMarcas.size() - 1);
    m_bPartida = m_bPartida || m_uiFimSao != uiAte;
    if (m_bPartida) Recua();
    m_uiSaos = m_aMarcas.size();
    m_uiBlocosAlterados = conferencia.GetAlterados();
    m_selo = conferencia.GetNovo();
    return hr;
}

void CXVExameTextos::Anda(std::span<const char> aBytes, bool bAlterado) {
    while (!aBytes.empty() && !m_bPartida) {
        if (m_uiFalta == 0) {
            m_bAlterado = m_uiPrefixo == 0 ? bAlterado : m_bAlterado || bAlterado;
            const std::size_t uiParte = std::min(sizeof(m_ulTamanho) - m_uiPrefixo, aBytes.size());
            std::memcpy(reinterpret_cast<char*>(&m_ulTamanho) + m_uiPrefixo, aBytes.data(), uiParte);
            m_uiPrefixo += uiParte;
            aBytes = aBytes.subspan(uiParte);
            if (m_uiPrefixo == sizeof(m_ulTamanho)) Comeca(m_bAlterado);
            continue;
        }
        const auto uiParte = static_cast<std::size_t>(std::min<XVUInt64>(m_uiFalta, aBytes.size()));
        ProcuraZeros(aBytes.first(uiParte));
        if (bAlterado) m_aMarcas.back() |= eTexto_Alterado;
        m_uiFalta -= uiParte;
        if (m_uiFalta == 0) Acaba();
        aBytes = aBytes.subspan(uiParte);
    }
}

void CXVExameTextos::Comeca(bool bAlterado) {
    m_uiPrefixo = 0;
    m_uiZeros = 0;
    if (m_ulTamanho > m_uiAte - m_uiFimSao - sizeof(m_ulTamanho) ||
        m_buracos.Toca(m_uiFimSao, m_uiFimSao + sizeof(m_ulTamanho))) {
        m_bPartida = true;
        return;
    }
    m_bTemNul = m_bTemNul && m_ulTamanho == 0;
    m_aMarcas.push_back(bAlterado ? eTexto_Alterado : 0);
    m_aInicios.push_back(m_uiFimSao);
    m_aulTamanhos.push_back(m_ulTamanho);
    m_uiFalta = m_ulTamanho;
    if (m_ulTamanho == 0) Acaba();
}

void CXVExameTextos::Acaba() {
    const XVUInt64 uiInicio = m_uiFimSao;
    m_uiFimSao += sizeof(m_ulTamanho) + m_ulTamanho;
    // One at the end may be the terminator of an earlier program; more are zeros that begin in this text.
    if (m_ulTamanho > 0 && m_uiZeros > 1) m_aMarcas.back() |= eTexto_Zerado;
    if (m_buracos.Toca(uiInicio, m_uiFimSao))
        m_aMarcas.back() = static_cast<XVByte>((m_aMarcas.back() & ~eTexto_Zerado) | eTexto_Ilegivel);
}

void CXVExameTextos::Encurta(std::size_t uiTextos) {
    if (uiTextos < m_aInicios.size()) m_uiFimSao = m_aInicios[uiTextos];
    m_aMarcas.resize(uiTextos);
    m_aInicios.resize(uiTextos);
    m_aulTamanhos.resize(uiTextos);
}

// A length that was changed shows only where it leads: the text that it was of ends in the middle of another,
// with bytes of a length in it, or is empty. Zeros may have begun in the last text that is not. No text holds
// a NUL byte.
void CXVExameTextos::Recua() {
    std::size_t uiTextos = m_aMarcas.size();
    while (uiTextos > 0 && m_aulTamanhos[uiTextos - 1] == 0) --uiTextos;
    if (uiTextos > 0 && m_bTemNul) --uiTextos;
    Encurta(uiTextos);
}

// The zeros that can have taken the place of texts: runs of empty texts, among the ones that are named, that
// are long enough for all that are too many. From the first of them to the end of the last. One text too many
// proves nothing: an earlier program that died left it behind.
bool CXVExameTextos::AchaZeros(XVUInt ulUltima, std::size_t* puiDe, std::size_t* puiAte) const {
    const std::size_t uiDemais = m_aMarcas.size() - ulUltima;
    *puiAte = 0;
    if (uiDemais < 2) return false;
    for (std::size_t i = 0; i < m_aulTamanhos.size();) {
        std::size_t uiFim = i;
        while (uiFim < m_aulTamanhos.size() && m_aulTamanhos[uiFim] == 0) ++uiFim;
        if (uiFim - i > uiDemais && i < ulUltima) {
            if (*puiAte == 0) *puiDe = i;
            *puiAte = uiFim;
        }
        i = std::max(uiFim, i + 1);
    }
    return *puiAte != 0;
}

// Whether the zeros that begin here, at the end of a text, begin in the text.
bool CXVExameTextos::TerminaEmZero(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiFim) {
    bool bZero = false;
    XVIgnora(rLeitura.Percorre(rArquivo, uiFim - 1, uiFim, [&](XVUInt64, std::span<const char> aBytes) {
        bZero = aBytes.front() == '\0';
    }));
    return bZero;
}

void CXVExameTextos::Emenda(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt ulUltima) {
    std::size_t uiDe = 0;
    std::size_t uiAte = 0;
    if (m_bPartida) {
        const std::optional<XVUInt64> uiRetomada =
            XVAchaRetomada(rLeitura, rArquivo, m_uiFimSao, m_uiAte, m_buracos);
        if (!uiRetomada) return;
        CXVExameTextos cauda;
        cauda.m_uiFimSao = *uiRetomada;
        cauda.m_uiAte = m_uiAte;
        cauda.m_buracos = m_buracos;
        XVIgnora(rLeitura.Percorre(
            rArquivo, *uiRetomada, m_uiAte,
            [&](XVUInt64, std::span<const char> aBytes) { cauda.Anda(aBytes, false); }, &cauda.m_buracos));
        if (!cauda.m_bPartida) Junta(cauda, 0, ulUltima);
    } else if (m_aMarcas.size() > ulUltima && AchaZeros(ulUltima, &uiDe, &uiAte)) {
        const CXVExameTextos cauda = *this;
        m_bDeslocada = true;
        if (uiDe > 0 && TerminaEmZero(rLeitura, rArquivo, m_aInicios[uiDe])) --uiDe;
        Encurta(uiDe);
        m_uiSaos = uiDe;
        if (uiAte < cauda.m_aMarcas.size()) Junta(cauda, uiAte, ulUltima);
    }
}

// The texts of rCauda from uiPrimeiro on are the last of the file, which has ulUltima of them.
void CXVExameTextos::Junta(const CXVExameTextos& rCauda, std::size_t uiPrimeiro, XVUInt ulUltima) {
    const std::size_t uiTextos = rCauda.m_aMarcas.size() - uiPrimeiro;
    const XVUInt64 uiRetomada = rCauda.m_aInicios[uiPrimeiro];
    if (m_aMarcas.size() + uiTextos >= ulUltima) return;
    const std::size_t uiPerdidos = ulUltima - m_aMarcas.size() - uiTextos;
    if (uiPerdidos > (uiRetomada - m_uiFimSao) / sizeof(XVUInt)) return;
    m_uiPerdidos = uiPerdidos;
    m_uiRetomada = uiRetomada;
    m_aMarcas.resize(m_aMarcas.size() + uiPerdidos, eTexto_Perdido);
    m_aInicios.resize(m_aMarcas.size(), m_uiFimSao);
    m_aulTamanhos.resize(m_aMarcas.size(), 0);
    for (std::size_t i = uiPrimeiro; i < rCauda.m_aMarcas.size(); ++i) {
        m_aMarcas.push_back(static_cast<XVByte>(rCauda.m_aMarcas[i] | eTexto_Deduzido));
        m_aInicios.push_back(rCauda.m_aInicios[i]);
        m_aulTamanhos.push_back(rCauda.m_aulTamanhos[i]);
    }
}

void CXVExameTextos::ProcuraZeros(std::span<const char> aBytes) {
    if (m_uiZeros == 0 && std::memchr(aBytes.data(), 0, aBytes.size()) == nullptr) return;
    m_bTemNul = true;
    for (const char c : aBytes) {
        m_uiZeros = c == '\0' ? m_uiZeros + 1 : 0;
        if (m_uiZeros >= k_uiZerosDeFalha) {
            m_aMarcas.back() |= eTexto_Zerado;
            m_uiZeros = k_uiZerosDeFalha;
        }
    }
}

bool CXVExameTextos::Aponta(XVUInt uiPosicao) {
    if (uiPosicao == 0 || uiPosicao > m_aMarcas.size() || (GetMarcas(uiPosicao) & eTexto_Perdido) != 0)
        return false;
    XVByte& rucMarcas = m_aMarcas[uiPosicao - 1];
    rucMarcas |= (rucMarcas & eTexto_Apontado) != 0 ? eTexto_Repetido : eTexto_Apontado;
    return true;
}

void CXVExameTextos::MarcaZerosNoFim(XVUInt64 uiRegistrosPerdidos) {
    auto ul = static_cast<XVUInt>(m_aMarcas.size());
    const auto ultimoApontado = std::find_if(m_aMarcas.rbegin(), m_aMarcas.rend(),
                                             [](XVByte uc) { return (uc & eTexto_Apontado) != 0; });
    if (static_cast<XVUInt64>(ultimoApontado - m_aMarcas.rbegin()) <= uiRegistrosPerdidos) return;
    for (; ul > 0 && GetTamanho(ul) == 0; --ul) m_aMarcas[ul - 1] |= eTexto_ZerosNoFim;
}

void CXVExameTextos::ContaMortos(XVUInt64* puiTextos, XVUInt64* puiBytes) const {
    for (XVUInt ul = 1; ul <= m_aMarcas.size(); ++ul) {
        if ((GetMarcas(ul) & (eTexto_Apontado | eTexto_Perdido)) != 0) continue;
        ++*puiTextos;
        *puiBytes += sizeof(XVUInt) + GetTamanho(ul);
    }
}
