#include "middleware/verificacao/XVSelos.h"

#include <cstring>

#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"
#include "platform/XVTentativas.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/values/XVSoma64.h"

namespace {

constexpr XVUInt64 k_uiAssinatura = 0x31304F4C45535658ULL;  // "XVSELO01"
constexpr XVUInt64 k_uiMaximo = 1U << 30;                   // bytes: seals of a hundred terabytes

void Anexa(std::string& rs, XVUInt64 ui) {
    rs.append(reinterpret_cast<const char*>(&ui), sizeof(ui));
}

// Takes a number off the front; false when there is none.
bool Tira(std::string_view& rs, XVUInt64* pui) {
    if (rs.size() < sizeof(*pui)) return false;
    std::memcpy(pui, rs.data(), sizeof(*pui));
    rs.remove_prefix(sizeof(*pui));
    return true;
}

bool TiraSelo(std::string_view& rs, TSelos* pSelos) {
    XVUInt64 uiNome = 0;
    if (!Tira(rs, &uiNome) || uiNome > rs.size()) return false;
    const std::string sNome(rs.substr(0, static_cast<std::size_t>(uiNome)));
    rs.remove_prefix(static_cast<std::size_t>(uiNome));
    SSelo selo;
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
    XVUInt64 uiAssinatura = 0;
    XVUInt64 uiSelos = 0;
    XVUInt64 uiSoma = 0;
    if (sBytes.size() < 3 * sizeof(XVUInt64)) return false;
    std::string_view sSoma = sBytes.substr(sBytes.size() - sizeof(uiSoma));
    sBytes.remove_suffix(sizeof(uiSoma));
    Tira(sSoma, &uiSoma);
    if (uiSoma != XVSoma64(sBytes.data(), sBytes.size())) return false;
    if (!Tira(sBytes, &uiAssinatura) || uiAssinatura != k_uiAssinatura || !Tira(sBytes, &uiSelos))
        return false;
    for (XVUInt64 ui = 0; ui < uiSelos; ++ui)
        if (!TiraSelo(sBytes, pSelos)) return false;
    return sBytes.empty();
}

std::string Compoe(const TSelos& rSelos) {
    std::string sBytes;
    Anexa(sBytes, k_uiAssinatura);
    Anexa(sBytes, rSelos.size());
    for (const auto& [sNome, selo] : rSelos) {
        Anexa(sBytes, sNome.size());
        sBytes += sNome;
        Anexa(sBytes, selo.uiContador);
        Anexa(sBytes, selo.uiVoltas);
        Anexa(sBytes, selo.uiTamanho);
        for (const XVUInt64 uiSoma : selo.aSomas) Anexa(sBytes, uiSoma);
    }
    Anexa(sBytes, XVSoma64(sBytes.data(), sBytes.size()));
    return sBytes;
}

}  // namespace

HRESULT XVSelos::Le(const std::string& sDiretorio, TSelos* pSelos) {
    pSelos->clear();
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::unique_ptr<IXVArquivo> pArquivo;
    CXVErroArquivo erro =
        rSistema.Abre(rSistema.Junta(sDiretorio, k_pszArquivoSelos), k_aberturaConsulta, pArquivo);
    if (erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado) return S_OK;
    XVUInt64 uiTamanho = 0;
    if (erro.Ok()) erro = pArquivo->GetTamanho(uiTamanho);
    if (erro.Ok() && uiTamanho > k_uiMaximo) return E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA;
    std::string sBytes(static_cast<std::size_t>(uiTamanho), '\0');
    if (erro.Ok()) erro = pArquivo->Le(0, sBytes.data(), sBytes.size());
    if (!erro.Ok()) return XVCodigoArquivo(erro);
    if (Interpreta(sBytes, pSelos)) return S_OK;
    pSelos->clear();
    return E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA;
}

HRESULT XVSelos::Grava(const std::string& sDiretorio, const TSelos& rSelos) {
    constexpr SAberturaArquivo k_abertura{EAcessoArquivo::eLeituraEscrita,
                                          ECompartilhamentoArquivo::eNegaTudo,
                                          ECriacaoArquivo::eCriaSeAusente};
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    const std::string sNovo = rSistema.Junta(sDiretorio, k_pszArquivoSelosNovo);
    const std::string sBytes = Compoe(rSelos);
    std::unique_ptr<IXVArquivo> pArquivo;
    CXVErroArquivo erro = rSistema.Abre(sNovo, k_abertura, pArquivo);
    if (!erro.Ok()) return XVCodigoArquivo(erro);
    erro = pArquivo->SetTamanho(0);
    if (erro.Ok()) erro = pArquivo->Grava(0, sBytes.data(), sBytes.size());
    if (erro.Ok()) erro = pArquivo->Sincroniza();
    pArquivo.reset();
    if (erro.Ok())
        erro = XVTentaEnquantoOcupado(k_iTentativasCurtas, [&] {
            return rSistema.Substitui(sNovo, rSistema.Junta(sDiretorio, k_pszArquivoSelos));
        });
    if (!erro.Ok()) rSistema.Apaga(sNovo).Ignora();
    return XVCodigoArquivo(erro);
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
