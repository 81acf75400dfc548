#include "middleware/verificacao/XVExameTextos.h"

#include <algorithm>
#include <cstring>

namespace {
// So many zero bytes in a row are no text: of a sector that never reached the device there are hundreds.
constexpr unsigned k_uiZerosDeFalha = 16;
}  // namespace

HRESULT CXVExameTextos::Examina(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiAte,
                                const TSelos& rSelos) {
    *this = {};
    m_uiAte = uiAte;
    CXVConferenciaSelo conferencia(rSelos, rArquivo, true);
    const HRESULT hr =
        rLeitura.Percorre(rArquivo, uiAte, [&](XVUInt64 uiOffset, std::span<const char> aBytes) {
            Anda(aBytes, conferencia.Confere(uiOffset, aBytes));
        });
    m_bPartida = m_bPartida || (SUCCEEDED(hr) && m_uiFimSao != uiAte);
    // Of a text that was not read to its end nothing is known.
    if (m_uiFalta > 0) {
        m_aMarcas.pop_back();
        m_aInicios.pop_back();
    }
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
        if (m_uiFalta == 0) m_uiFimSao += sizeof(m_ulTamanho) + m_ulTamanho;
        aBytes = aBytes.subspan(uiParte);
    }
}

void CXVExameTextos::Comeca(bool bAlterado) {
    m_uiPrefixo = 0;
    m_uiZeros = 0;
    if (m_ulTamanho > m_uiAte - m_uiFimSao - sizeof(m_ulTamanho)) {
        m_bPartida = true;
        return;
    }
    m_aMarcas.push_back(bAlterado ? eTexto_Alterado : 0);
    m_aInicios.push_back(m_uiFimSao);
    m_uiFalta = m_ulTamanho;
    if (m_ulTamanho == 0) m_uiFimSao += sizeof(m_ulTamanho);
}

void CXVExameTextos::ProcuraZeros(std::span<const char> aBytes) {
    if (m_uiZeros == 0 && std::memchr(aBytes.data(), 0, aBytes.size()) == nullptr) return;
    for (const char c : aBytes) {
        m_uiZeros = c == '\0' ? m_uiZeros + 1 : 0;
        if (m_uiZeros >= k_uiZerosDeFalha) {
            m_aMarcas.back() |= eTexto_Zerado;
            m_uiZeros = k_uiZerosDeFalha;
        }
    }
}

bool CXVExameTextos::Aponta(XVUInt uiPosicao) {
    if (uiPosicao == 0 || uiPosicao > m_aMarcas.size()) return false;
    XVByte& rucMarcas = m_aMarcas[uiPosicao - 1];
    rucMarcas |= (rucMarcas & eTexto_Apontado) != 0 ? eTexto_Repetido : eTexto_Apontado;
    return true;
}

void CXVExameTextos::MarcaZerosNoFim() {
    auto ul = static_cast<XVUInt>(m_aMarcas.size());
    if (ul == 0 || (m_aMarcas.back() & eTexto_Apontado) != 0) return;
    for (; ul > 0 && GetTamanho(ul) == 0; --ul) m_aMarcas[ul - 1] |= eTexto_ZerosNoFim;
}

void CXVExameTextos::ContaMortos(XVUInt64* puiTextos, XVUInt64* puiBytes) const {
    for (XVUInt ul = 1; ul <= m_aMarcas.size(); ++ul) {
        if ((GetMarcas(ul) & eTexto_Apontado) != 0) continue;
        ++*puiTextos;
        *puiBytes += sizeof(XVUInt) + GetTamanho(ul);
    }
}
