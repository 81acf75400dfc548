// The writes of CXVFileBase: prepared, carried out, taken back.
#include <utility>

#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVFileBase.h"
#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVProfiler.h"

// A write of header bytes alone. One for each file, made when it is first needed.
class CXVFileBase::CXVCabecalhoPreparado final : public CXVGravacaoPreparada {
  public:
    explicit CXVCabecalhoPreparado(CXVFileBase& rFile) : m_rFile(rFile) {}

    CXVFileBase& GetArquivo() const override { return m_rFile; }
    XV_PONTOS_GRAVACAO("AtualizaArquivo", "AtualizaCabecalho", "AtualizaCabecalho()")
    void Publica() noexcept override {}
    void Devolve() noexcept override { m_rFile.DevolveGravacao(*this); }

  private:
    CXVFileBase& m_rFile;
};

// The first prepared write starts from the file as it is, the next from what the one before will make of it.
void CXVFileBase::IniciaPrevisao() {
    if (TemPreparadas()) return;
    m_uiTamanhoPrevisto = m_uiTamanhoArquivo;
    m_regPrevisto = m_regCabecalho.regB;
}

XVUInt64 CXVFileBase::GetTamanhoDadosPrevisto() {
    if (!ExisteArquivo()) return 0;
    IniciaPrevisao();
    return m_uiTamanhoPrevisto - GetSeekCabecalho();
}

// When the system does not tell, the file is not taken for absent: the opening that follows then says why it
// cannot be used.
bool CXVFileBase::EstaAusente() const {
    bool bExiste = false;
    std::string sNomeReal;
    return SUCCEEDED(CXVDataBaseUtil::ExistePath(this, m_sPathArquivo, &bExiste, &sNomeReal)) && !bExiste;
}

HRESULT CXVFileBase::PreparaGravacao(CXVOperacao& rOperacao, CXVGravacaoPreparada& rGravacao,
                                     XVUInt64 uiOffsetDados, std::span<const std::byte> aNovos,
                                     std::span<const std::byte> aAntigos) {
    if (rOperacao.EstaCheia()) XV_FALHA(E_OUTOFMEMORY);
    IniciaPrevisao();
    SGravacao& g = rGravacao.m_gravacao;
    g.bCria = !ExisteArquivo();
    if (g.bCria && TemPreparadas()) rOperacao.SetRepeteCriacao();
    if (g.bCria) m_bCriado = false;
    g.bTemCabecalho = g.bCria ? GerenciarCabecalho() : m_bCabecalhoValidado;
    if (g.bTemCabecalho && !g.bCria) AbreJanelaCabecalho();
    XVUInt64 uiSeek = GetSeekCabecalho();
    if (g.bCria) {
        uiSeek = g.bTemCabecalho ? k_uiTamanhoCabecalho : 0;
        REG_XVCABECALHO reg;
        XVCabecalho::Gera(reg, m_sNomeArquivo, *this, k_usVersaoArquivoInicial, 0);
        m_regPrevisto = reg.regB;
        m_uiTamanhoPrevisto = uiSeek;
    }
    g.uiOffset = uiSeek + uiOffsetDados;
    g.uiTamanhoAntes = m_uiTamanhoPrevisto;
    g.uiTamanhoDepois = std::max(m_uiTamanhoPrevisto, g.uiOffset + aNovos.size());
    g.pNovos = aNovos.data();
    g.uiNovos = aNovos.size();
    g.pAntigos = aAntigos.data();
    g.uiAntigos = aAntigos.size();
    if (g.bTemCabecalho) {
        g.regAntes = m_regPrevisto;
        XVCabecalho::Atualiza(m_regPrevisto, *this, g.uiTamanhoDepois - k_uiTamanhoCabecalho);
        g.regDepois = m_regPrevisto;
    }
    m_uiTamanhoPrevisto = g.uiTamanhoDepois;
    rGravacao.m_bEmUso = true;
    m_ulPreparadas.fetch_add(1, std::memory_order_relaxed);
    rOperacao.Inclui(rGravacao);
    return S_OK;
}

HRESULT CXVFileBase::EscreveGravacao(const CXVGravacaoPreparada& rGravacao) {
    const SGravacao& g = rGravacao.m_gravacao;
    if (g.bCria && !ExisteArquivo()) {
        const HRESULT hr = CriaArquivo(g);
        if (FAILED(hr)) return XVRegistraFalha(hr, rGravacao.GetPontos().abre, this);
    }
    const HRESULT hr =
        ExecutaComTentativas(rGravacao.GetPontos().tentativa, [&] { return TentaGravacao(rGravacao); });
    if (SUCCEEDED(hr)) m_bAlterado = true;
    return hr;
}

HRESULT CXVFileBase::TentaGravacao(const CXVGravacaoPreparada& rGravacao) {
    const SGravacao& g = rGravacao.m_gravacao;
    if (!ExisteArquivo()) XV_FALHA(eInvalidFile);
    if (g.uiNovos > 0) {
        const CXVErroArquivo erro = m_pArquivo->Grava(g.uiOffset, g.pNovos, g.uiNovos);
        if (!erro.Ok())
            return XVRegistraFalha(CatchGravacao(&erro), rGravacao.GetPontos().catchGravacao, this);
    }
    if (g.bTemCabecalho) {
        const HRESULT hr = AtualizaCabecalho(g.regDepois);
        if (FAILED(hr)) return XVRegistraFalha(hr, rGravacao.GetPontos().atualiza, this);
    }
    m_uiTamanhoArquivo = g.uiTamanhoDepois;
    return S_OK;
}

// The file becomes this object's open file only when it holds its header, so that readers never see it
// without.
HRESULT CXVFileBase::CriaArquivo(const SGravacao& g) {
    std::unique_ptr<IXVArquivo> pArquivo;
    XV_CHECK(AbreComTentativas(m_sPathArquivo, eModoLeituraGravacaoCriacao, pArquivo));
    XVUInt64 uiTamanho = 0;
    CXVErroArquivo erro = pArquivo->GetTamanho(uiTamanho);
    if (erro.Ok() && uiTamanho != 0) XV_FALHA(eSharingViolation);  // somebody else's since it was prepared
    m_bCriado = erro.Ok();
    REG_XVCABECALHO reg;
    if (erro.Ok() && g.bTemCabecalho) {
        reg.regA = XVCabecalho::BlocoA();
        reg.regB = g.regAntes;
        erro = pArquivo->Grava(0, &reg, sizeof(reg));
    }
    if (const CXVErroArquivo* pEx = erro.GetFalha()) {
        pArquivo.reset();
        DesfazArquivoCriado().Ignora();  // what fails here is done when the operation is undone
        XV_CHECK(CatchGravacao(pEx));
    }
    const std::unique_lock lock(GetLock());
    m_pArquivo = std::move(pArquivo);
    m_eModoAbertura = eModoLeituraGravacaoCriacao;
    m_uiTamanhoArquivo = g.uiTamanhoAntes;
    m_bCabecalhoProcurado = true;
    m_bCabecalhoPresente = m_bCabecalhoValidado = g.bTemCabecalho;
    if (g.bTemCabecalho) m_regCabecalho = reg;
    return S_OK;
}

CXVErroArquivo CXVFileBase::DesfazGravacao(const SGravacao& g) {
    if (g.bCria) return DesfazArquivoCriado();
    if (!ExisteArquivo()) return {ECausaArquivo::eArquivoInvalido, 0};
    CXVErroArquivo erro;
    FechaJanelaCabecalho();  // a file with a window cannot be made shorter
    if (g.uiTamanhoDepois > g.uiTamanhoAntes) erro = m_pArquivo->SetTamanho(g.uiTamanhoAntes);
    if (erro.Ok() && g.uiAntigos > 0) erro = m_pArquivo->Grava(g.uiOffset, g.pAntigos, g.uiAntigos);
    if (erro.Ok() && g.bTemCabecalho)
        erro = m_pArquivo->Grava(k_uiTamanhoBlocoA, &g.regAntes, sizeof(g.regAntes));
    if (!erro.Ok()) return erro;
    m_uiTamanhoArquivo = g.uiTamanhoAntes;
    if (g.bTemCabecalho) m_regCabecalho.regB = g.regAntes;
    return {};
}

// Only a file that this write made: one that had appeared meanwhile is somebody else's. Where its length
// could not be asked for, it is this write's as long as it is empty.
CXVErroArquivo CXVFileBase::DesfazArquivoCriado() {
    AbandonaArquivo();
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    XVUInt64 uiTamanho = 0;
    CXVErroArquivo erro;
    if (!m_bCriado) {
        std::unique_ptr<IXVArquivo> pArquivo;
        erro = rSistema.Abre(m_sPathArquivo, k_aberturaConsulta, pArquivo);
        if (erro.Ok()) erro = pArquivo->GetTamanho(uiTamanho);
    }
    if (erro.Ok() && uiTamanho == 0) erro = rSistema.Apaga(m_sPathArquivo);
    if (!erro.Ok() && erro.GetCausa() != ECausaArquivo::eArquivoNaoEncontrado) return erro;
    m_bCriado = false;
    return {};
}

CXVGravacaoPreparada& CXVFileBase::CabecalhoPreparado() {
    if (m_pCabecalhoPreparado == nullptr)
        m_pCabecalhoPreparado = std::make_unique<CXVCabecalhoPreparado>(*this);
    return *m_pCabecalhoPreparado;
}

HRESULT CXVFileBase::PreparaCabecalho(CXVOperacao& rOperacao) {
    if (!EstaAbertoParaGravacao() || !m_bCabecalhoValidado) return S_OK;
    XV_CHECK(PreparaGravacao(rOperacao, CabecalhoPreparado(), 0, {}, {}));
    return S_OK;
}

HRESULT CXVFileBase::AtualizaArquivo() {
    CXVOperacao operacao(m_pDataBase);
    XV_CHECK(PreparaCabecalho(operacao));
    // Where others leave it no place, the header of the last write stays, which vouches for all of the file.
    XV_CHECK(operacao.ExecutaSeCabe());
    return S_OK;
}

// The header of a file that is empty goes through the journal like every other write: half a header is no
// header, and no content either.
HRESULT CXVFileBase::GravaCabecalhoNovo() {
    CXVOperacao operacao(m_pDataBase);
    const auto aCabecalho = std::as_bytes(std::span(&m_regCabecalho, 1));
    // Until it stands there the file has no header to keep up, and its payload begins at 0.
    m_bCabecalhoPresente = false;
    XV_CHECK(PreparaGravacao(operacao, CabecalhoPreparado(), 0, aCabecalho, {}));
    XV_CHECK(operacao.Executa());
    m_bCabecalhoPresente = true;
    return S_OK;
}
