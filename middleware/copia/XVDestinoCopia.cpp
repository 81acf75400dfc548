#include "middleware/copia/XVDestinoCopia.h"

#include <algorithm>

#include "core/xvdatabase/XVDiarioFormato.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/verificacao/XVLeituraLoja.h"
#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"
#include "platform/XVTentativas.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/values/XVSoma64.h"

namespace {

constexpr SAberturaArquivo k_aberturaEscrita{
    EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaTudo, ECriacaoArquivo::eCriaSeAusente};
constexpr const char* k_pszMarca = "copia-em-curso";

IXVSistemaArquivos& Sistema() {
    return XVPlataforma::SistemaArquivos();
}

bool EhAusente(const CXVErroArquivo& rErro) {
    return rErro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado ||
           rErro.GetCausa() == ECausaArquivo::eCaminhoInvalido;
}

}  // namespace

CXVErroArquivo XVResumeArquivo(IXVArquivo& rArquivo, SArquivoCopiado* pResumo) {
    *pResumo = {};
    XVByte aInicio[k_uiTamanhoCabecalho];
    CXVErroArquivo erro = rArquivo.GetTamanho(pResumo->uiTamanho);
    const auto uiInicio = static_cast<std::size_t>(std::min<XVUInt64>(pResumo->uiTamanho, sizeof(aInicio)));
    if (erro.Ok() && uiInicio > 0) erro = rArquivo.Le(0, aInicio, uiInicio);
    if (erro.Ok()) pResumo->uiSoma = XVSoma64(aInicio, uiInicio);
    return erro;
}

CXVDestinoCopia::CXVDestinoCopia(SPastas pastas)
    : m_pastas(std::move(pastas)), m_sPalco(Sistema().Junta(m_pastas.sCopia, "parcial")) {}

HRESULT CXVDestinoCopia::Recusa(ERecusaCopia eRecusa, HRESULT hr) {
    m_eRecusa = eRecusa;
    return hr;
}

bool CXVDestinoCopia::Existe(const std::string& sPasta, const std::string& sNome) {
    return Sistema().Existe(Sistema().Junta(sPasta, sNome)) != EExistencia::eAusente;
}

HRESULT CXVDestinoCopia::Confere() {
    const HRESULT hr = XVManifestoCopia::Le(m_pastas.sCopia, &m_manifesto);
    if (hr == E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA) return Recusa(ERecusaCopia::eDestinoOcupado, hr);
    if (FAILED(hr)) return XVNotaCaminho(hr, m_pastas.sCopia, k_pszManifestoCopia);
    if (hr == S_OK) return S_OK;
    for (const std::string* psPasta : {&m_pastas.sCopia, &m_pastas.sDados, &m_sPalco})
        if (const HRESULT hrVazia = ExigeVazia(*psPasta); FAILED(hrVazia)) return hrVazia;
    return S_OK;
}

// What a copying that was killed before it wrote its manifest leaves is nothing.
HRESULT CXVDestinoCopia::ExigeVazia(const std::string& sPasta) {
    std::vector<std::string> listaNomes;
    const CXVErroArquivo erro = Sistema().Lista(sPasta, "*", listaNomes);
    if (!erro.Ok() && (!EhAusente(erro) || Sistema().Existe(sPasta) != EExistencia::eAusente))
        return XVNotaCaminho(XVCodigoArquivo(erro), sPasta);
    std::erase_if(listaNomes,
                  [](const std::string& s) { return s == k_pszMarca || s == k_pszManifestoCopiaNovo; });
    return listaNomes.empty() ? S_OK : Recusa(ERecusaCopia::eDestinoOcupado, eInvalidFile);
}

HRESULT CXVDestinoCopia::Prepara() {
    CXVErroArquivo erro = Sistema().CriaDiretorio(m_sPalco);
    if (erro.Ok()) erro = Sistema().MarcaDiretorio(m_pastas.sCopia, k_pszMarca, m_pMarca);
    if (erro.GetCausa() == ECausaArquivo::eViolacaoCompartilhamento)
        return Recusa(ERecusaCopia::eDestinoEmUso, eSharingViolation);
    if (!erro.Ok()) return XVNotaCaminho(XVCodigoArquivo(erro), m_pastas.sCopia);
    HRESULT hr = Confere();  // again: another copying may have ended meanwhile
    if (SUCCEEDED(hr) && m_manifesto.eEstado == EEstadoCopia::eTroca) hr = TerminaTroca();
    if (SUCCEEDED(hr) && m_manifesto.eEstado == EEstadoCopia::eIncompleta)
        hr = XVNotaCaminho(XVManifestoCopia::Grava(m_pastas.sCopia, m_manifesto), m_pastas.sCopia);
    if (SUCCEEDED(hr)) hr = ConfereArquivos();
    return SUCCEEDED(hr) ? LimpaPalco() : hr;
}

// A copy that was opened for writing has other headers, or the journal of whoever has it open. Its logs may
// have grown.
HRESULT CXVDestinoCopia::ConfereArquivos() {
    if (Existe(m_pastas.sDados, k_pszNomeDiario))
        return Recusa(ERecusaCopia::eCopiaMudada,
                      XVNotaCaminho(eSharingViolation, m_pastas.sDados, k_pszNomeDiario));
    for (const auto& [sNome, arquivo] : m_manifesto.mapaArquivos) {
        if (sNome.ends_with(".log")) continue;
        SArquivoCopiado agora;
        HRESULT hr = Resume(sNome, &agora);
        if (SUCCEEDED(hr) && agora != arquivo) hr = XVNotaCaminho(eInvalidFile, m_pastas.sDados, sNome);
        if (FAILED(hr)) return Recusa(ERecusaCopia::eCopiaMudada, hr);
    }
    return S_OK;
}

HRESULT CXVDestinoCopia::LimpaPalco() {
    std::vector<std::string> listaNomes;
    CXVErroArquivo erro = Sistema().Lista(m_sPalco, "*", listaNomes);
    for (auto it = listaNomes.begin(); it != listaNomes.end() && erro.Ok(); ++it)
        erro = Sistema().Apaga(Sistema().Junta(m_sPalco, *it));
    m_palco.clear();
    return XVNotaCaminho(XVCodigoArquivo(erro), m_sPalco);
}

void CXVDestinoCopia::Desiste() {
    XVIgnora(LimpaPalco());
}

HRESULT CXVDestinoCopia::Nota(const CXVErroArquivo& rErro, const std::string& sNome) const {
    return XVNotaCaminho(XVCodigoArquivo(rErro), GetPasta(sNome), sNome);
}

CXVErroArquivo CXVDestinoCopia::Abre(const std::string& sNome, const SAberturaArquivo& rAbertura,
                                     std::unique_ptr<IXVArquivo>* ppArquivo) const {
    return Sistema().Abre(Sistema().Junta(GetPasta(sNome), sNome), rAbertura, *ppArquivo);
}

bool CXVDestinoCopia::LeCabecalho(const std::string& sNome, REG_XVCABECALHO* pReg) const {
    std::unique_ptr<IXVArquivo> pArquivo;
    return Abre(sNome, k_aberturaConsulta, &pArquivo).Ok() && pArquivo->Le(0, pReg, sizeof(*pReg)).Ok() &&
           XVCabecalho::AssinaturaConfere(pReg->regA);
}

HRESULT CXVDestinoCopia::Resume(const std::string& sNome, SArquivoCopiado* pResumo) const {
    std::unique_ptr<IXVArquivo> pArquivo;
    CXVErroArquivo erro = Abre(sNome, k_aberturaConsulta, &pArquivo);
    if (erro.Ok()) erro = XVResumeArquivo(*pArquivo, pResumo);
    return Nota(erro, sNome);
}

HRESULT CXVDestinoCopia::AbreNoPalco(const std::string& sNome, std::unique_ptr<IXVArquivo>* ppArquivo) {
    m_palco.insert(sNome);
    return Nota(Abre(sNome, k_aberturaEscrita, ppArquivo), sNome);
}

HRESULT CXVDestinoCopia::CortaLinhaPartida(const std::string& sNome) {
    constexpr XVUInt64 k_uiPedaco = 4096;
    std::unique_ptr<IXVArquivo> pArquivo;
    XVUInt64 uiFim = 0;
    CXVErroArquivo erro = Abre(sNome, k_aberturaEscrita, &pArquivo);
    if (erro.Ok()) erro = pArquivo->GetTamanho(uiFim);
    while (erro.Ok() && uiFim > 0) {
        std::string sPedaco(static_cast<std::size_t>(std::min(uiFim, k_uiPedaco)), '\0');
        erro = pArquivo->Le(uiFim - sPedaco.size(), sPedaco.data(), sPedaco.size());
        const std::size_t uiLinha = sPedaco.rfind('\n');
        uiFim -= sPedaco.size();
        if (uiLinha == std::string::npos) continue;
        uiFim += uiLinha + 1;
        break;
    }
    if (erro.Ok()) erro = pArquivo->SetTamanho(uiFim);
    return Nota(erro, sNome);
}

// Everything of the stage to the device: the exchange begins when nothing can be missing any more.
HRESULT CXVDestinoCopia::SincronizaPalco() const {
    CXVErroArquivo erro;
    for (const std::string& rNome : m_palco) {
        std::unique_ptr<IXVArquivo> pArquivo;
        erro = Abre(rNome, k_aberturaEscrita, &pArquivo);
        if (erro.Ok()) erro = pArquivo->Sincroniza();
        if (!erro.Ok()) return Nota(erro, rNome);
    }
    erro = Sistema().SincronizaDiretorio(m_sPalco);
    if (erro.Ok()) erro = Sistema().CriaDiretorio(m_pastas.sDados);
    return XVNotaCaminho(XVCodigoArquivo(erro), m_pastas.sDados);
}

HRESULT CXVDestinoCopia::Troca(const std::set<std::string>& nomes, bool* pbComecou) {
    *pbComecou = false;
    SManifestoCopia novo;
    novo.eEstado = EEstadoCopia::eTroca;
    HRESULT hr = SincronizaPalco();
    for (auto it = nomes.begin(); it != nomes.end() && SUCCEEDED(hr); ++it)
        hr = Resume(*it, &novo.mapaArquivos[*it]);
    if (FAILED(hr)) return hr;
    hr = XVManifestoCopia::Grava(m_pastas.sCopia, novo);
    if (FAILED(hr)) return XVNotaCaminho(hr, m_pastas.sCopia, k_pszManifestoCopia);
    *pbComecou = true;
    m_manifesto = std::move(novo);
    return TerminaTroca();
}

HRESULT CXVDestinoCopia::Move(const std::string& sDe, const std::string& sPara,
                              const std::string& sNome) const {
    if (!Existe(sDe, sNome)) return S_OK;
    const CXVErroArquivo erro = XVTentaEnquantoOcupado(k_iTentativasCurtas, [&] {
        return Sistema().Substitui(Sistema().Junta(sDe, sNome), Sistema().Junta(sPara, sNome));
    });
    return XVNotaCaminho(XVCodigoArquivo(erro), sPara, sNome);
}

HRESULT CXVDestinoCopia::TerminaTroca() {
    HRESULT hr = S_OK;
    if (!Existe(m_sPalco, k_pszArquivoVersao)) hr = Move(m_pastas.sDados, m_sPalco, k_pszArquivoVersao);
    for (const auto& [sNome, arquivo] : m_manifesto.mapaArquivos)
        if (SUCCEEDED(hr) && sNome != k_pszArquivoVersao) hr = Move(m_sPalco, m_pastas.sDados, sNome);
    if (SUCCEEDED(hr)) hr = Move(m_sPalco, m_pastas.sDados, k_pszArquivoVersao);
    if (SUCCEEDED(hr))
        hr = XVNotaCaminho(XVCodigoArquivo(Sistema().SincronizaDiretorio(m_pastas.sDados)), m_pastas.sDados);
    if (FAILED(hr)) return hr;
    m_palco.clear();
    m_manifesto.eEstado = EEstadoCopia::eInteira;
    return XVNotaCaminho(XVManifestoCopia::Grava(m_pastas.sCopia, m_manifesto), m_pastas.sCopia,
                         k_pszManifestoCopia);
}
