#include "core/xvdatabase/XVTextFile.h"

#include <cstring>
#include <mutex>
#include <shared_mutex>

#include "core/xvdatabase/XVConteudo.h"
#include "core/xvdatabase/XVDataBase.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVProfiler.h"

namespace {
constexpr std::size_t k_uiTamanhoPrefixo = sizeof(XVUInt);
constexpr std::size_t k_uiMaximoTextos = 0xFFFFFFFFU;
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

HRESULT CXVTextFile::OnInicializa() {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
    XV_CHECK_SUPER(CXVFileBase, OnInicializa());
    XV_CHECK(AbreArquivo());
    XV_CHECK(Recusa(Carrega()));
    return S_OK;
}

HRESULT CXVTextFile::OnFinaliza() {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()});
    m_colecao.Limpa();
    m_listaBlocos.clear();
    XV_CHECK_SUPER(CXVFileBase, OnFinaliza());
    return S_OK;
}

HRESULT CXVTextFile::Carrega() {
    XVUInt64 uiSeek = 0;
    XVUInt64 uiTamanho = 0;
    std::unique_ptr<char[]> pDados;
    if (ExisteArquivo()) XV_CHECK(GetAreaDados(&uiSeek, &uiTamanho));
    if (uiTamanho > 0) {
        pDados.reset(new char[static_cast<std::size_t>(uiTamanho)]);
        if (const CXVErroArquivo erro = LeDados(uiSeek, pDados.get(), static_cast<std::size_t>(uiTamanho));
            const CXVErroArquivo* pEx = erro.GetFalha())
            XV_CHECK(CatchInicializacao(pEx));
    }
    m_colecao.Limpa();
    m_listaBlocos.clear();
    m_listaBlocos.push_back(std::move(pDados));
    XV_CHECK(InterpretaDados(m_listaBlocos.back().get(), 0, uiTamanho));
    m_uiFimCarregado = uiTamanho;
    return S_OK;
}

// Walks the prefixes from uiInicio of the payload on; the texts stay where they were read.
HRESULT CXVTextFile::InterpretaDados(const char* pDados, XVUInt64 uiInicio, XVUInt64 uiTamanho) {
    XVUInt64 uiOffset = 0;
    while (uiOffset < uiTamanho) {
        if (uiTamanho - uiOffset < k_uiTamanhoPrefixo)
            XV_FALHA(E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
        XVUInt ulTexto = 0;
        std::memcpy(&ulTexto, pDados + uiOffset, k_uiTamanhoPrefixo);
        if (ulTexto > uiTamanho - uiOffset - k_uiTamanhoPrefixo)
            XV_FALHA(E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA);
        m_colecao.Inclui({uiInicio + uiOffset, pDados + uiOffset + k_uiTamanhoPrefixo, ulTexto});
        uiOffset += k_uiTamanhoPrefixo + ulTexto;
    }
    return S_OK;
}

CXVErroArquivo CXVTextFile::ConfereConteudo(XVUInt64 uiTamanho, bool* pbIntegro) {
    return XVConfereTextos(uiTamanho, pbIntegro, [this](XVUInt64 uiOffset, void* p, std::size_t n) {
        return LeDados(uiOffset, p, n);
    });
}

HRESULT CXVTextFile::Le(XVUInt uiPosicao, std::string& sTexto) const {
    XV_ESCOPO({"m_sNomeArquivo", GetNomeArquivo()}, {"uiPosicao", XVUInt64{uiPosicao}});
    sTexto.clear();
    if (uiPosicao == 0) XV_FALHA(E_XVCR_TENTATIVA_LER_POSICAO_ZERO);
    if (GetDataBase()->GetVisao() != nullptr && uiPosicao > GetQtdRegistros()) {
        XV_CHECK(LeVisto(uiPosicao, sTexto));
        return S_OK;
    }
    const std::shared_lock lock(GetLock());
    if (!ExisteArquivo()) XV_FALHA(E_XVCR_ARQUIVO_NAO_EXISTE);
    if (uiPosicao > m_colecao.size()) XV_FALHA(E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
    const std::string_view sGuardado = m_colecao[uiPosicao - 1].GetTexto();
    sTexto = sGuardado.substr(0, sGuardado.find('\0'));
    return S_OK;
}

bool CXVTextFile::PrecisaGravar(XVUInt uiPosicao, std::span<const std::string_view> aRegistros) const {
    if (uiPosicao == 0 || uiPosicao - 1 + aRegistros.size() > m_colecao.size()) return true;
    for (std::size_t k = 0; k < aRegistros.size(); ++k)
        if (m_colecao[uiPosicao - 1 + k].GetTexto() != aRegistros[k]) return true;
    return false;
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
    if (uiPosicao > m_colecao.size()) XV_FALHA(E_XVCR_POSICAO_GRAVACAO_SUPERIOR_QUANTIDADE_ARQUIVO);
    if (!ExisteArquivo() && !EstaAusente()) XV_CHECK(AbreParaGravacao());
    if (!PrecisaGravar(uiPosicao, aRegistros)) return S_OK;
    CPreparados& rPreparados = PreparadaLivre(m_listaPreparados, *this);
    XV_CHECK(MontaBloco(aRegistros, &rPreparados));
    m_colecao.Reserva(m_uiTextosPreparados + aRegistros.size());
    if (m_listaBlocos.size() + GetPreparadas() + 1 > m_listaBlocos.capacity())
        m_listaBlocos.reserve((m_listaBlocos.size() + GetPreparadas()) * 2 + 16);
    rPreparados.m_uiOffsetDados = GetTamanhoDadosPrevisto();
    XV_CHECK(PreparaGravacao(rOperacao, rPreparados, rPreparados.m_uiOffsetDados,
                             std::as_bytes(std::span(rPreparados.m_pDados.get(), rPreparados.m_uiTamanho)),
                             {}));
    uiPosicao = static_cast<XVUInt>(m_colecao.size() + m_uiTextosPreparados + 1);
    m_uiTextosPreparados += aRegistros.size();
    return S_OK;
}

// Takes over a file that appeared since: its texts come first.
HRESULT CXVTextFile::AbreParaGravacao() {
    return AbreECarrega([this] { return Carrega(); });
}

// Prefixes and texts one after the other: the run reaches the disk in one write and the same block then
// holds the texts in memory.
HRESULT CXVTextFile::MontaBloco(std::span<const std::string_view> aRegistros, CPreparados* pPreparados) {
    if (aRegistros.size() > k_uiMaximoTextos - m_colecao.size() - m_uiTextosPreparados)
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

void CXVTextFile::AtualizaMemoria(CPreparados& rPreparados) {
    const std::unique_lock lock(GetLock());
    m_listaBlocos.push_back(std::move(rPreparados.m_pDados));
    const char* pTexto = m_listaBlocos.back().get();
    XVUInt64 uiOffsetDados = rPreparados.m_uiOffsetDados;
    for (std::size_t k = 0; k < rPreparados.m_uiTextos; ++k) {
        XVUInt ulTamanho = 0;
        std::memcpy(&ulTamanho, pTexto, k_uiTamanhoPrefixo);
        m_colecao.Inclui({uiOffsetDados, pTexto + k_uiTamanhoPrefixo, ulTamanho});
        pTexto += k_uiTamanhoPrefixo + ulTamanho;
        uiOffsetDados += k_uiTamanhoPrefixo + ulTamanho;
    }
}

XVUInt64 CXVTextFile::GetQtdRegistros() const {
    const std::shared_lock lock(GetLock());
    return m_colecao.size();
}

const CXVTextFile::CColecao* CXVTextFile::GetPtrRegistros() const {
    return GetDataBase()->PermiteAcessoDireto() ? &m_colecao : nullptr;
}
