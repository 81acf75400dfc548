#include "core/xvdatabase/XVTextFile.h"

#include <cstring>
#include <shared_mutex>

#include "core/xvdatabase/XVConteudo.h"
#include "core/xvdatabase/XVDataBase.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVProfiler.h"

namespace {

// A string that is filled as a CXVBufferSaida is.
class CTextoEmString {
  public:
    explicit CTextoEmString(std::string& rTexto) : m_rTexto(rTexto) {}

    char* Prepara(std::size_t uiTamanho) {
        m_rTexto.resize(uiTamanho);
        return m_rTexto.data();
    }
    void Recorta(std::size_t uiInicio, std::size_t uiTamanho) {
        m_rTexto.erase(0, uiInicio);
        m_rTexto.resize(uiTamanho);
    }
    void Limpa() { m_rTexto.clear(); }
    const char* GetDados() const { return m_rTexto.data(); }

  private:
    std::string& m_rTexto;
};

std::size_t TamanhoAteNul(const char* pTexto, std::size_t uiTamanho) {
    const void* pNul = uiTamanho == 0 ? nullptr : std::memchr(pTexto, 0, uiTamanho);
    return pNul == nullptr ? uiTamanho : static_cast<std::size_t>(static_cast<const char*>(pNul) - pTexto);
}

template <class TDestino>
void Copia(std::string_view sOrigem, TDestino& sDestino) {
    if (!sOrigem.empty()) std::memcpy(sDestino.Prepara(sOrigem.size()), sOrigem.data(), sOrigem.size());
}

}  // namespace

HRESULT CXVTextFile::OnInicializa() {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
    XV_CHECK_SUPER(CXVFileBase, OnInicializa());
    XV_CHECK(AbreArquivo());
    XV_CHECK(Recusa(Carrega()));
    return S_OK;
}

HRESULT CXVTextFile::OnFinaliza() {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
    m_aOffsets.Limpa();
    m_aSomas.Limpa();
    m_lidos.Limpa();
    XV_CHECK_SUPER(CXVFileBase, OnFinaliza());
    return S_OK;
}

HRESULT CXVTextFile::Carrega() {
    XVUInt64 uiTamanho = 0;
    m_uiSeek = 0;
    if (ExisteArquivo()) XV_CHECK(GetAreaDados(&m_uiSeek, &uiTamanho));
    m_aOffsets.Limpa();
    m_lidos.Limpa();
    m_uiFim = 0;
    const HRESULT hr = XV_REGISTRA(CarregaTabela(uiTamanho));
    if (FAILED(hr)) m_aOffsets.Limpa();
    m_aSomas.Limpa();
    m_uiSemSoma = m_aOffsets.size();
    return hr;
}

CXVErroArquivo CXVTextFile::LePayload(XVUInt64 uiOffsetDados, void* pDados, std::size_t uiTamanho) const {
    if (CXVVisao* pVisao = GetDataBase()->GetVisao())
        return LePayloadVisto(*pVisao, uiOffsetDados, pDados, uiTamanho);
    return LeDados(m_uiSeek + uiOffsetDados, pDados, uiTamanho);
}

// Adds the texts from m_uiFim to uiFim of the payload. After a failure the table holds those before it
// and may be loaded on.
HRESULT CXVTextFile::CarregaTabela(XVUInt64 uiFim) {
    const XVUInt64 uiInicio = m_uiFim;
    bool bIntegro = false;
    const CXVErroArquivo erro = XVPercorreTextos(
        uiFim - uiInicio, &bIntegro,
        [&](XVUInt64 uiOffset, void* p, std::size_t n) { return LePayload(uiInicio + uiOffset, p, n); },
        [&](XVUInt64 uiOffset, XVUInt ulTamanho) {
            m_aOffsets.Inclui(uiInicio + uiOffset);
            m_uiFim = uiInicio + uiOffset + k_uiTamanhoPrefixo + ulTamanho;
        });
    if (const CXVErroArquivo* pEx = erro.GetFalha()) XV_CHECK(CatchInicializacao(pEx));
    if (!bIntegro) XV_FALHA(E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
    return S_OK;
}

CXVErroArquivo CXVTextFile::ConfereConteudo(XVUInt64 uiTamanho, bool* pbIntegro) {
    return XVConfereTextos(uiTamanho, pbIntegro, [this](XVUInt64 uiOffset, void* p, std::size_t n) {
        return LeDados(uiOffset, p, n);
    });
}

HRESULT CXVTextFile::Le(XVUInt uiPosicao, std::string& sTexto) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}});
    CTextoEmString texto(sTexto);
    return LePara(uiPosicao, texto);
}

HRESULT CXVTextFile::Le(XVUInt uiPosicao, CXVBufferSaida* pTexto) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}});
    return LePara(uiPosicao, *pTexto);
}

template <class TDestino>
HRESULT CXVTextFile::LePara(XVUInt uiPosicao, TDestino& sTexto) const {
    sTexto.Limpa();
    if (uiPosicao == 0) XV_FALHA_EM("Le", E_XVCR_TENTATIVA_LER_POSICAO_ZERO);
    if (GetDataBase()->GetVisao() != nullptr && uiPosicao > GetQtdRegistros()) {
        std::string sVisto;
        XV_CHECK_EM("Le", LeVisto(uiPosicao, sVisto));
        Copia(sVisto, sTexto);
        return S_OK;
    }
    const std::shared_lock lock(GetLock());
    if (!ExisteArquivo()) XV_FALHA_EM("Le", E_XVCR_ARQUIVO_NAO_EXISTE);
    if (uiPosicao > m_aOffsets.size()) XV_FALHA_EM("Le", E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
    const std::size_t uiTexto = GetTamanhoTexto(uiPosicao - 1);
    const XVUInt64 uiOffset = m_aOffsets[uiPosicao - 1] + k_uiTamanhoPrefixo;
    if (const CXVTextosLidos::SPedaco* pPedaco = m_lidos.Busca(uiOffset, uiTexto)) {
        const char* pTexto = pPedaco->GetTexto(uiOffset);
        Copia({pTexto, pPedaco->bTemNul ? TamanhoAteNul(pTexto, uiTexto) : uiTexto}, sTexto);
        return S_OK;
    }
    XV_CHECK_EM("Le", LeTexto(uiPosicao - 1, sTexto));
    sTexto.Recorta(0, TamanhoAteNul(sTexto.GetDados(), uiTexto));
    m_lidos.ContaLeitura(k_uiTamanhoPrefixo + uiTexto);
    return S_OK;
}

XVUInt64 CXVTextFile::CarregaTextosLidos(XVUInt64 uiMaximo) const {
    if (!m_lidos.FoiMuitoLido()) return 0;
    const std::shared_lock lock(GetLock());
    if (m_uiFim > uiMaximo || !ExisteArquivo() || GetDataBase()->GetVisao() != nullptr) return 0;
    return m_lidos.Carrega(m_uiFim, [this](CXVTextosLidos::SPedaco& rPedaco) {
        const auto uiTamanho = static_cast<std::size_t>(rPedaco.uiFim - rPedaco.uiInicio);
        // What fails here fails again, and is recorded, in the reading that needs it.
        if (!LePayload(rPedaco.uiInicio, rPedaco.pDados.get(), uiTamanho).Ok()) return false;
        return ConferePedaco(rPedaco);
    });
}

std::size_t CXVTextFile::GetTamanhoTexto(std::size_t uiIndice) const {
    const XVUInt64 uiFim = uiIndice + 1 < m_aOffsets.size() ? m_aOffsets[uiIndice + 1] : m_uiFim;
    return static_cast<std::size_t>(uiFim - m_aOffsets[uiIndice]) - k_uiTamanhoPrefixo;
}

// The lock is held. All bytes of a text; empty on failure.
template <class TDestino>
HRESULT CXVTextFile::LeTexto(std::size_t uiIndice, TDestino& sTexto) const {
    const std::size_t uiTexto = GetTamanhoTexto(uiIndice);
    char* pDados = sTexto.Prepara(k_uiTamanhoPrefixo + uiTexto);
    const CXVErroArquivo erro = LePayload(m_aOffsets[uiIndice], pDados, k_uiTamanhoPrefixo + uiTexto);
    XVUInt ulTamanho = 0;
    if (erro.Ok()) std::memcpy(&ulTamanho, pDados, k_uiTamanhoPrefixo);
    const bool bLido = erro.Ok() && ulTamanho == uiTexto;
    sTexto.Recorta(k_uiTamanhoPrefixo, bLido ? uiTexto : 0);
    if (const CXVErroArquivo* pEx = erro.GetFalha()) return Recusa(CatchInicializacao(pEx));
    return bLido ? S_OK : Recusa(E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
}

HRESULT CXVTextFile::LeTexto(std::size_t uiIndice, std::string& sTexto) const {
    CTextoEmString texto(sTexto);
    return LeTexto(uiIndice, texto);
}

// Every prefix must still be the one that was found there; notes whether a text holds a NUL byte.
bool CXVTextFile::ConferePedaco(CXVTextosLidos::SPedaco& rPedaco) const {
    for (std::size_t i = m_aOffsets.size(); i-- > 0 && m_aOffsets[i] >= rPedaco.uiInicio;) {
        const std::size_t uiTexto = GetTamanhoTexto(i);
        const char* pPrefixo = rPedaco.GetTexto(m_aOffsets[i]);
        XVUInt ulTamanho = 0;
        std::memcpy(&ulTamanho, pPrefixo, k_uiTamanhoPrefixo);
        if (ulTamanho != uiTexto) return false;
        rPedaco.bTemNul |= std::memchr(pPrefixo + k_uiTamanhoPrefixo, 0, uiTexto) != nullptr;
    }
    return true;
}

HRESULT CXVTextFile::LeTodos(std::vector<std::string>* plistaTextos) const {
    const std::shared_lock lock(GetLock());
    for (std::size_t i = 0; i < m_aOffsets.size(); ++i) XV_CHECK(LeTexto(i, plistaTextos->emplace_back()));
    return S_OK;
}

XVUInt64 CXVTextFile::GetQtdRegistros() const {
    const std::shared_lock lock(GetLock());
    return m_aOffsets.size();
}

XVUInt64 CXVTextFile::GetMemoria() const {
    const std::shared_lock lock(GetLock());
    return sizeof(*this) + m_aOffsets.GetMemoria() + m_aSomas.GetMemoria() + m_lidos.GetFim();
}
