#include "middleware/verificacao/XVEscritaRecuperada.h"

#include "core/xvdatabase/XVCabecalho.h"
#include "middleware/verificacao/XVLeituraLoja.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigosArquivo.h"

namespace {
constexpr std::size_t k_uiBuffer = 1U << 20;
}

CXVEscritaRecuperada::CXVEscritaRecuperada(std::string sDiretorio, std::string sNome, ECabecalho eCabecalho,
                                           std::string sNoDisco)
    : m_sDiretorio(std::move(sDiretorio)),
      m_sNome(std::move(sNome)),
      m_sNoDisco(sNoDisco.empty() ? m_sNome : std::move(sNoDisco)),
      m_uiInicio(eCabecalho == ECabecalho::eCom ? k_uiTamanhoCabecalho : 0),
      m_uiOffset(m_uiInicio) {}

HRESULT CXVEscritaRecuperada::Abre() {
    constexpr SAberturaArquivo k_abertura{EAcessoArquivo::eLeituraEscrita,
                                          ECompartilhamentoArquivo::eNegaTudo,
                                          ECriacaoArquivo::eCriaSeAusente};
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    CXVErroArquivo erro = rSistema.Abre(rSistema.Junta(m_sDiretorio, m_sNoDisco), k_abertura, m_pArquivo);
    if (erro.Ok()) erro = m_pArquivo->SetTamanho(m_uiInicio);
    return XVNotaCaminho(XVCodigoArquivo(erro), m_sDiretorio, m_sNoDisco);
}

HRESULT CXVEscritaRecuperada::Grava(std::string_view sBytes) {
    m_sBuffer += sBytes;
    return m_sBuffer.size() >= k_uiBuffer ? Descarrega() : S_OK;
}

HRESULT CXVEscritaRecuperada::GravaTexto(std::string_view sTexto) {
    const auto ulTamanho = static_cast<XVUInt>(sTexto.size());
    const HRESULT hr = Grava({reinterpret_cast<const char*>(&ulTamanho), sizeof(ulTamanho)});
    return FAILED(hr) ? hr : Grava(sTexto);
}

HRESULT CXVEscritaRecuperada::Descarrega() {
    const CXVErroArquivo erro = m_pArquivo->Grava(m_uiOffset, m_sBuffer.data(), m_sBuffer.size());
    m_uiOffset += m_sBuffer.size();
    m_sBuffer.clear();
    return XVNotaCaminho(XVCodigoArquivo(erro), m_sDiretorio, m_sNoDisco);
}

HRESULT CXVEscritaRecuperada::Conclui(const IXVDF_Profiler& rDono, XVUShort usVersaoArquivo) {
    const HRESULT hr = Descarrega();
    if (FAILED(hr)) return hr;
    CXVErroArquivo erro;
    if (m_uiInicio != 0) {
        REG_XVCABECALHO reg;
        XVCabecalho::Gera(reg, m_sNome, rDono, usVersaoArquivo, m_uiOffset - m_uiInicio);
        erro = m_pArquivo->Grava(0, &reg, sizeof(reg));
    }
    if (erro.Ok()) erro = m_pArquivo->Sincroniza();
    m_pArquivo.reset();
    return XVNotaCaminho(XVCodigoArquivo(erro), m_sDiretorio, m_sNoDisco);
}
