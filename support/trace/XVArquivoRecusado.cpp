#include "support/trace/XVArquivoRecusado.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "support/trace/XVProfiler.h"
#include "support/values/XVData.h"

namespace {

thread_local CXVArquivosRecusados* g_pRecusadosAtual = nullptr;

// An operation that goes on in spite of its failures must not gather notes without end.
constexpr std::size_t k_uiMaximoRecusas = 16;
constexpr std::size_t k_uiTamanhoDia = 8;  // yyyymmdd
constexpr std::string_view k_sAntesDoArquivo = "Arquivo: ";
constexpr std::string_view k_sAntesDoDia = " (dia ";

REG_XVDMA DiaDoNome(std::string_view sNome) {
    sNome = sNome.substr(0, sNome.find('.'));
    if (sNome.size() < k_uiTamanhoDia) return {};
    const char* pDia = sNome.data() + sNome.size() - k_uiTamanhoDia;
    unsigned uiDia = 0;
    const auto [pFim, erro] = std::from_chars(pDia, pDia + k_uiTamanhoDia, uiDia);
    if (erro != std::errc{} || pFim != pDia + k_uiTamanhoDia) return {};
    const REG_XVDMA dma = REG_XVDMA::Cria(uiDia / 10000, uiDia / 100 % 100, uiDia % 100);
    return dma.EhValida() && dma.ToChave() == uiDia ? dma : REG_XVDMA{};
}

// The end of the text that fits in uiMaximo bytes after "...", beginning with a whole UTF-8 character.
std::string EncurtaInicio(std::string_view sTexto, std::size_t uiMaximo) {
    constexpr std::string_view k_sCorte = "...";
    if (sTexto.size() <= uiMaximo) return std::string(sTexto);
    if (uiMaximo <= k_sCorte.size()) return {};
    sTexto.remove_prefix(sTexto.size() - (uiMaximo - k_sCorte.size()));
    while (!sTexto.empty() && (static_cast<unsigned char>(sTexto.front()) & 0xC0U) == 0x80U)
        sTexto.remove_prefix(1);
    return std::string(k_sCorte).append(sTexto);
}

}  // namespace

CXVArquivosRecusados::CXVArquivosRecusados() : m_pAnterior(g_pRecusadosAtual) {
    g_pRecusadosAtual = this;
}

CXVArquivosRecusados::~CXVArquivosRecusados() {
    g_pRecusadosAtual = m_pAnterior;
    if (m_pAnterior == nullptr) return;
    for (const SRecusa& rRecusa : m_lista) m_pAnterior->Inclui(rRecusa.hr, rRecusa.sPath);
}

CXVArquivosRecusados* CXVArquivosRecusados::GetAtual() {
    return g_pRecusadosAtual;
}

std::string_view CXVArquivosRecusados::GetPath(HRESULT hr) const {
    const auto it =
        std::find_if(m_lista.begin(), m_lista.end(), [hr](const SRecusa& r) { return r.hr == hr; });
    return it == m_lista.end() ? std::string_view{} : it->sPath;
}

void CXVArquivosRecusados::Inclui(HRESULT hr, std::string_view sPath) noexcept {
    if (m_lista.size() == k_uiMaximoRecusas || !GetPath(hr).empty()) return;
    try {
        m_lista.push_back({hr, std::string(sPath)});
    } catch (...) {  // the failure is told without its file
    }
}

namespace XVArquivoRecusado {

void Interno::Registra(HRESULT hr, std::string_view sPath, const IXVDF_Profiler* pDono) noexcept {
    if (CXVArquivosRecusados* pAtual = CXVArquivosRecusados::GetAtual(); pAtual != nullptr)
        pAtual->Inclui(hr, sPath);
    try {
        XVProfiler::RecordError(pDono, "XVArquivoRecusado::Anota", "support/XVArquivoRecusado", __LINE__,
                                "Arquivo recusado: %s\thr = %#X", Descreve(sPath).c_str(),
                                static_cast<unsigned>(hr));
    } catch (...) {  // recording never fails outward
    }
}

std::string Descreve(std::string_view sPath) {
    std::string sTexto(sPath);
    const REG_XVDMA dma = DiaDoNome(sPath.substr(sPath.find_last_of("/\\") + 1));
    if (dma.EhNula()) return sTexto;
    char szDia[32];
    std::snprintf(szDia, sizeof(szDia), "%02u/%02u/%04u)", dma.GetDia(), dma.GetMes(), dma.GetAno());
    return sTexto.append(k_sAntesDoDia).append(szDia);
}

std::string Descreve(HRESULT hr) {
    const CXVArquivosRecusados* pAtual = CXVArquivosRecusados::GetAtual();
    const std::string_view sPath = pAtual == nullptr ? std::string_view{} : pAtual->GetPath(hr);
    return sPath.empty() ? std::string() : Descreve(sPath);
}

std::string Mensagem(std::string_view sMensagem, HRESULT hr, std::size_t uiMaximo) {
    std::string sTexto(sMensagem);
    const std::string sArquivo = Descreve(hr);
    if (sArquivo.empty()) return sTexto;
    if (!sTexto.empty()) sTexto += ' ';
    sTexto += k_sAntesDoArquivo;
    sTexto += EncurtaInicio(sArquivo, uiMaximo - std::min(uiMaximo, sTexto.size()));
    return sTexto;
}

std::string_view PathDaMensagem(std::string_view sMensagem) {
    const std::size_t uiArquivo = sMensagem.rfind(k_sAntesDoArquivo);
    if (uiArquivo == std::string_view::npos) return {};
    const std::string_view sArquivo = sMensagem.substr(uiArquivo + k_sAntesDoArquivo.size());
    return sArquivo.ends_with(')') ? sArquivo.substr(0, sArquivo.rfind(k_sAntesDoDia)) : sArquivo;
}

}  // namespace XVArquivoRecusado
