// CXVTextFile: writing.
#include <cstring>
#include <mutex>

#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVTextFile.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVProfiler.h"
#include "support/values/XVSoma64.h"

namespace {

constexpr std::size_t k_uiMaximoTextos = 0xFFFFFFFFU;

XVUInt SomaDoTexto(std::string_view sTexto) {
    return static_cast<XVUInt>(XVSoma64(sTexto.data(), sTexto.size()));
}

}  // namespace

class CXVTextFile::CPreparados final : public CXVGravacaoPreparada {
  public:
    explicit CPreparados(CXVTextFile& rFile) : m_rFile(rFile) {}

    CXVFileBase& GetArquivo() const override { return m_rFile; }
    XV_PONTOS_GRAVACAO("GravaColecao", "GravaRegistros", "GravaRegistros(uiPosicao, aRegistros)")
    void Publica() noexcept override { m_rFile.AtualizaMemoria(*this); }
    void Devolve() noexcept override {
        m_pDados.reset();
        {
            const std::unique_lock lock(m_rFile.GetLock());
            m_rFile.m_uiTextosPreparados -= m_uiTextos;
        }
        m_rFile.DevolveGravacao(*this);
    }

    std::unique_ptr<char[]> m_pDados;
    std::size_t m_uiTamanho = 0;  // bytes
    std::size_t m_uiTextos = 0;
    XVUInt64 m_uiOffsetDados = 0;  // in the payload

  private:
    CXVTextFile& m_rFile;
};

CXVTextFile::CXVTextFile(std::string sNomeArquivo, CXVDataBase* pDataBase, ERegistroArquivo eRegistro)
    : CXVFileBase(std::move(sNomeArquivo), pDataBase, eRegistro) {}
CXVTextFile::~CXVTextFile() = default;

// As far as memory tells.
bool CXVTextFile::PodeSerOTexto(std::size_t uiIndice, std::string_view sTexto) const {
    if (GetTamanhoTexto(uiIndice) != sTexto.size()) return false;
    return uiIndice < m_uiSemSoma || m_aSomas[uiIndice - m_uiSemSoma] == SomaDoTexto(sTexto);
}

HRESULT CXVTextFile::PrecisaGravar(XVUInt uiPosicao, std::span<const std::string_view> aRegistros,
                                   bool* pbPrecisa) const {
    *pbPrecisa = true;
    if (uiPosicao == 0 || !ExisteArquivo()) return S_OK;
    if (uiPosicao - 1 + aRegistros.size() > m_aOffsets.size()) return S_OK;
    for (std::size_t k = 0; k < aRegistros.size(); ++k)
        if (!PodeSerOTexto(uiPosicao - 1 + k, aRegistros[k])) return S_OK;
    std::string sGuardado;
    for (std::size_t k = 0; k < aRegistros.size(); ++k) {
        XV_CHECK(LeTexto(uiPosicao - 1 + k, sGuardado));
        if (sGuardado != aRegistros[k]) return S_OK;
    }
    *pbPrecisa = false;
    return S_OK;
}

HRESULT CXVTextFile::Grava(XVUInt& uiPosicao, std::string_view sTexto) {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}});
    const std::span<const std::string_view> aRegistros(&sTexto, 1);
    XV_CHECK(GravaColecao(uiPosicao, aRegistros));
    return S_OK;
}

HRESULT CXVTextFile::GravaColecao(XVUInt& uiPosicao, const std::vector<std::string>& aRegistros) {
    const std::vector<std::string_view> aTextos(aRegistros.begin(), aRegistros.end());
    return GravaColecao(uiPosicao, std::span<const std::string_view>(aTextos));
}

HRESULT CXVTextFile::GravaColecao(XVUInt& uiPosicao, std::span<const std::string_view> aRegistros) {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}},
              {"aRegistros.size()", XVUInt64{aRegistros.size()}});
    return CXVOperacao::ExecutaSozinha(GetDataBase(), GetMutexGravacao(), uiPosicao,
                                       [&](CXVOperacao& rOperacao, XVUInt& uiPosicaoNova) {
                                           return PreparaColecao(rOperacao, uiPosicaoNova, aRegistros);
                                       });
}

HRESULT CXVTextFile::PreparaColecao(CXVOperacao& rOperacao, XVUInt& uiPosicao,
                                    std::span<const std::string_view> aRegistros) {
    if (aRegistros.empty()) return S_OK;
    const std::unique_lock lock(GetLock());
    XV_CHECK(ValidaGravacao());
    if (uiPosicao > m_aOffsets.size()) XV_FALHA(E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO);
    if (!ExisteArquivo() && !EstaAusente()) XV_CHECK(AbreParaGravacao());
    bool bPrecisa = true;
    XV_CHECK(PrecisaGravar(uiPosicao, aRegistros, &bPrecisa));
    if (!bPrecisa) return S_OK;
    CPreparados& rPreparados = PreparadaLivre(m_listaPreparados, *this);
    XV_CHECK(MontaBloco(aRegistros, &rPreparados));
    m_aOffsets.Reserva(m_uiTextosPreparados + aRegistros.size());
    m_aSomas.Reserva(m_uiTextosPreparados + aRegistros.size());
    rPreparados.m_uiOffsetDados = GetTamanhoDadosPrevisto();
    XV_CHECK(PreparaGravacao(rOperacao, rPreparados, rPreparados.m_uiOffsetDados,
                             std::as_bytes(std::span(rPreparados.m_pDados.get(), rPreparados.m_uiTamanho)),
                             {}));
    uiPosicao = static_cast<XVUInt>(m_aOffsets.size() + m_uiTextosPreparados + 1);
    m_uiTextosPreparados += aRegistros.size();
    return S_OK;
}

// Takes over a file that appeared since: its texts come first.
HRESULT CXVTextFile::AbreParaGravacao() {
    return AbreECarrega([this] { return Carrega(); });
}

// Prefixes and texts one after the other: the run reaches the disk in one write.
HRESULT CXVTextFile::MontaBloco(std::span<const std::string_view> aRegistros, CPreparados* pPreparados) {
    if (aRegistros.size() > k_uiMaximoTextos - m_aOffsets.size() - m_uiTextosPreparados)
        XV_FALHA(eDirectoryFull);
    pPreparados->m_uiTamanho = 0;
    pPreparados->m_uiTextos = aRegistros.size();
    for (const std::string_view sTexto : aRegistros) {
        if (sTexto.size() > 0xFFFFFFFFU) XV_FALHA(E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
        pPreparados->m_uiTamanho += k_uiTamanhoPrefixo + sTexto.size();
    }
    pPreparados->m_pDados.reset(new char[pPreparados->m_uiTamanho]);
    char* p = pPreparados->m_pDados.get();
    for (const std::string_view sTexto : aRegistros) {
        const auto ulTamanho = static_cast<XVUInt>(sTexto.size());
        std::memcpy(p, &ulTamanho, k_uiTamanhoPrefixo);
        std::copy(sTexto.begin(), sTexto.end(), p + k_uiTamanhoPrefixo);
        p += k_uiTamanhoPrefixo + sTexto.size();
    }
    return S_OK;
}

void CXVTextFile::AtualizaMemoria(const CPreparados& rPreparados) {
    const std::unique_lock lock(GetLock());
    m_uiSeek =
        rPreparados.m_gravacao.uiOffset - rPreparados.m_uiOffsetDados;  // the write may have made the file
    for (std::size_t i = 0; i < rPreparados.m_uiTamanho;) {
        XVUInt ulTamanho = 0;
        std::memcpy(&ulTamanho, rPreparados.m_pDados.get() + i, k_uiTamanhoPrefixo);
        m_aOffsets.Inclui(rPreparados.m_uiOffsetDados + i);
        m_aSomas.Inclui(SomaDoTexto({rPreparados.m_pDados.get() + i + k_uiTamanhoPrefixo, ulTamanho}));
        i += k_uiTamanhoPrefixo + ulTamanho;
    }
    m_uiFim = rPreparados.m_uiOffsetDados + rPreparados.m_uiTamanho;
}
