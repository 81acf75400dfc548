#include "middleware/verificacao/XVSelos.h"

#include "middleware/verificacao/XVBytesDeArquivo.h"
#include "platform/XVPlataforma.h"
#include "support/values/XVSoma64.h"

namespace {

using XVBytesDeArquivo::Anexa;
using XVBytesDeArquivo::AnexaTexto;
using XVBytesDeArquivo::Tira;
using XVBytesDeArquivo::TiraTexto;

constexpr XVUInt64 k_uiAssinatura = 0x31304F4C45535658ULL;  // "XVSELO01"

bool TiraSelo(std::string_view& rs, TSelos* pSelos) {
    std::string sNome;
    SSelo selo;
    if (!TiraTexto(rs, &sNome)) return false;
    if (!Tira(rs, &selo.uiContador) || !Tira(rs, &selo.uiVoltas) || !Tira(rs, &selo.uiTamanho)) return false;
    const XVUInt64 uiBlocos = selo.uiTamanho / CXVLeituraLoja::k_uiBloco +
                              (selo.uiTamanho % CXVLeituraLoja::k_uiBloco != 0 ? 1 : 0);
    if (uiBlocos > rs.size() / sizeof(XVUInt64)) return false;
    selo.aSomas.resize(static_cast<std::size_t>(uiBlocos));
    for (XVUInt64& rui : selo.aSomas)
        if (!Tira(rs, &rui)) return false;
    return pSelos->emplace(sNome, std::move(selo)).second;
}

bool Interpreta(std::string_view sBytes, TSelos* pSelos) {
    XVUInt64 uiSelos = 0;
    if (!Tira(sBytes, &uiSelos)) return false;
    for (XVUInt64 ui = 0; ui < uiSelos; ++ui)
        if (!TiraSelo(sBytes, pSelos)) return false;
    return sBytes.empty();
}

std::string Path(const std::string& sDiretorio, const char* pszNome) {
    return XVPlataforma::SistemaArquivos().Junta(sDiretorio, pszNome);
}

}  // namespace

HRESULT XVSelos::Le(const std::string& sDiretorio, TSelos* pSelos) {
    pSelos->clear();
    std::string sBytes;
    const HRESULT hr = XVBytesDeArquivo::Le(Path(sDiretorio, k_pszArquivoSelos), k_uiAssinatura, &sBytes);
    if (hr == S_FALSE) return S_OK;
    if (FAILED(hr) || Interpreta(sBytes, pSelos)) return hr;
    pSelos->clear();
    return E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA;
}

HRESULT XVSelos::Grava(const std::string& sDiretorio, const TSelos& rSelos) {
    std::string sBytes;
    Anexa(sBytes, rSelos.size());
    for (const auto& [sNome, selo] : rSelos) {
        AnexaTexto(sBytes, sNome);
        Anexa(sBytes, selo.uiContador);
        Anexa(sBytes, selo.uiVoltas);
        Anexa(sBytes, selo.uiTamanho);
        for (const XVUInt64 uiSoma : selo.aSomas) Anexa(sBytes, uiSoma);
    }
    return XVBytesDeArquivo::Grava(Path(sDiretorio, k_pszArquivoSelos),
                                   Path(sDiretorio, k_pszArquivoSelosNovo), k_uiAssinatura, sBytes);
}

CXVConferenciaSelo::CXVConferenciaSelo(const TSelos& rSelos, const SArquivoLoja& rArquivo, bool bSoAnexa) {
    m_novo.uiContador = rArquivo.regB.uiContadorAtualizacao;
    m_novo.uiVoltas = rArquivo.regB.usVoltasContador;
    const auto it = rSelos.find(XVEmMinusculas(rArquivo.sNome));
    if (it == rSelos.end() || !rArquivo.bCabecalho) return;
    const SSelo& rAntigo = it->second;
    if (bSoAnexa || (rAntigo.uiContador == m_novo.uiContador && rAntigo.uiVoltas == m_novo.uiVoltas))
        m_pAntigo = &rAntigo;
}

bool CXVConferenciaSelo::Confere(XVUInt64 uiOffset, std::span<const char> aBytes) {
    m_novo.uiTamanho = uiOffset + aBytes.size();
    m_novo.aSomas.push_back(XVSoma64(aBytes.data(), aBytes.size()));
    if (m_pAntigo == nullptr || uiOffset >= m_pAntigo->uiTamanho) return false;
    const XVUInt64 uiSelados = std::min<XVUInt64>(aBytes.size(), m_pAntigo->uiTamanho - uiOffset);
    const std::size_t uiBloco = m_novo.aSomas.size() - 1;
    const bool bAlterado =
        m_pAntigo->aSomas[uiBloco] != (uiSelados == aBytes.size()
                                           ? m_novo.aSomas.back()
                                           : XVSoma64(aBytes.data(), static_cast<std::size_t>(uiSelados)));
    m_uiAlterados += bAlterado ? 1 : 0;
    return bAlterado;
}
