#include "core/xvdatabase/XVFileBase.h"

#include <utility>

#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/messages/XVMensagens.h"
#include "support/trace/XVProfiler.h"

namespace {

SAberturaArquivo AberturaDoModo(XVUInt eModoAbertura) {
    if (eModoAbertura == eModoLeituraSemBloqueio) return k_aberturaConsulta;
    return {EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita,
            eModoAbertura == eModoLeituraGravacaoCriacao ? ECriacaoArquivo::eCriaSeAusente
                                                         : ECriacaoArquivo::eSomenteExistente};
}

}  // namespace

CXVFileBase::CXVFileBase(std::string sNomeArquivo, CXVDataBase* pDataBase, ERegistroArquivo eRegistro)
    : m_pDataBase(pDataBase),
      m_sNomeArquivo(std::move(sNomeArquivo)),
      m_eModulo(pDataBase->GetModulo()),
      m_eRegistro(eRegistro),
      m_ControleCriacaoArquivos(m_eModulo, m_sNomeArquivo) {
    if (m_eRegistro == ERegistroArquivo::eNoContainer) m_pDataBase->AddFile(this);
}

CXVFileBase::~CXVFileBase() {
    if (m_eRegistro == ERegistroArquivo::eNoContainer) m_pDataBase->RemoveFile(this);
}

HRESULT CXVFileBase::OnInicializa() {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo});
    XV_CHECK_SUPER(IXVFileBase, OnInicializa());
    m_sPathArquivo.clear();
    XV_CHECK(MontaPath());
    if (!XVNomeArquivo::EhArquivoControle(m_sNomeArquivo) &&
        !XVNomeArquivo::EhCopiaTransitoria(m_sNomeArquivo)) {
        const std::string sPathTra = XVNomeArquivo::TrocaExtensao(m_sPathArquivo, "tra");
        bool bExiste = false;
        XV_CHECK(CXVDataBaseUtil::Existe(this, sPathTra, &bExiste));
        if (bExiste) XV_CHECK(XVArquivoRecusado::Anota(E_XVCR_ARQUIVO_TRA_ENCONTRADO, sPathTra, this));
    }
    XV_CHECK(m_ControleCriacaoArquivos.Inicializa(this));
    m_ControleCriacaoArquivos.SetDiario(m_pDataBase->GetDiario());
    FechaArquivo();
    return S_OK;
}

HRESULT CXVFileBase::OnFinaliza() {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo});
    CXVDiario* pDiario = m_pDataBase->GetDiario();
    struct SFim {  // also when there is no memory for the last header: a file that stays open is in its own
                   // way
        CXVFileBase& rArquivo;
        CXVDiario* pDiario;
        ~SFim() {
            if (pDiario != nullptr) pDiario->EsqueceArquivo(rArquivo);
            rArquivo.FechaArquivo();
        }
    };
    if (pDiario != nullptr) pDiario->LargaPendente(*this);
    // The last header is written by a call: a flush through another opening brings along what calls wrote.
    FechaJanelaCabecalho();
    // A file that was not changed, or was refused, stays byte for byte as found.
    HRESULT hrAtualiza = S_OK;
    {
        const SFim fim{*this, pDiario};
        if (EstaInicializado() && m_bAlterado) hrAtualiza = XV_REGISTRA(AtualizaArquivo());
    }
    const HRESULT hrControle = XV_REGISTRA(m_ControleCriacaoArquivos.Finaliza());
    if (const HRESULT hr = XVPrimeiraFalha(hrAtualiza, hrControle); FAILED(hr)) return hr;
    XV_CHECK_SUPER(IXVFileBase, OnFinaliza());
    return S_OK;
}

HRESULT CXVFileBase::MontaPath() {
    if (!m_sPathArquivo.empty()) return S_OK;
    std::string sPathArquivo;
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(m_eModulo, GetEmpresa(), m_sNomeArquivo, &sPathArquivo));
    m_sPathArquivo = std::move(sPathArquivo);
    return S_OK;
}

HRESULT CXVFileBase::AbreArquivo(XVUInt eModoAbertura) {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo}, {"eModoAbertura", ModoAberturaToString(eModoAbertura)});
    if (m_pDataBase->EhSomenteLeituraSemBloqueio()) eModoAbertura = eModoLeituraSemBloqueio;
    if (eModoAbertura == m_eModoAbertura) return S_OK;
    FechaArquivo();
    XV_CHECK(MontaPath());
    if (CXVVisao* pVisao = m_pDataBase->GetVisao()) return AbreVisto(*pVisao);

    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::string sNomeReal;
    bool bExiste = false;
    XV_CHECK(CXVDataBaseUtil::ExistePath(this, m_sPathArquivo, &bExiste, &sNomeReal));
    XV_CHECK(m_ControleCriacaoArquivos.GerenciaControleCriacaoArquivos(eModoAbertura));
    if (!bExiste && eModoAbertura != eModoLeituraGravacaoCriacao) return S_OK;

    std::string sPath = m_sPathArquivo;
    if (bExiste && sNomeReal != m_sNomeArquivo) {
        const std::string sPathReal = sPath.substr(0, sPath.size() - m_sNomeArquivo.size()) + sNomeReal;
        if (eModoAbertura != eModoLeituraGravacao || !rSistema.Substitui(sPathReal, sPath).Ok())
            sPath = sPathReal;
    }
    XV_CHECK(AbreComTentativas(sPath, eModoAbertura, m_pArquivo));
    m_eModoAbertura = eModoAbertura;
    if (CXVDiario* pDiario = m_pDataBase->GetDiario(); pDiario != nullptr && EstaAbertoParaGravacao())
        pDiario->LembraArquivo(*this);
    HRESULT hr = LeTamanho();
    const bool bCriado = !bExiste && m_uiTamanhoArquivo == 0;
    if (SUCCEEDED(hr) && eModoAbertura != eModoLeituraSemBloqueio) hr = XV_REGISTRA(GerenciaCabecalho());
    if (FAILED(hr) && bCriado) DesfazCriacao();
    return Recusa(hr);
}

HRESULT CXVFileBase::AbreComTentativas(const std::string& sPath, XVUInt eModoAbertura,
                                       std::unique_ptr<IXVArquivo>& pArquivo) {
    const SAberturaArquivo abertura = AberturaDoModo(eModoAbertura);
    return TentaAbrir(sPath, [&] { return XVPlataforma::SistemaArquivos().Abre(sPath, abertura, pArquivo); });
}

// Causes that have a code at once are not waited for, and handles not where members can give theirs.
HRESULT CXVFileBase::TentaAbrir(const std::string& sPath, const std::function<CXVErroArquivo()>& abre) {
    const auto abreOuCede = [&] {
        const CXVErroArquivo erroAbre = abre();
        const bool bCede = erroAbre.GetCausa() == ECausaArquivo::eMuitosArquivosAbertos &&
                           m_pDataBase->GetMemoriaMembros().CedeHandles();
        return bCede ? abre() : erroAbre;
    };
    const CXVErroArquivo erro = XVTenta(k_iTentativasLongas, abreOuCede, [](const CXVErroArquivo& rErro) {
        return !rErro.Ok() && XVCodigosArquivo::DeAberturaImediata(rErro.GetCausa()).pszNome == nullptr;
    });
    if (erro.Ok()) return S_OK;
    SCodigoArquivo codigo = XVCodigosArquivo::DeAberturaImediata(erro.GetCausa());
    if (codigo.pszNome == nullptr) {
        // That a file may not be written explains nothing to who only looks.
        const bool bProtegido = !m_pDataBase->EhSomenteLeituraSemBloqueio() &&
                                XVPlataforma::SistemaArquivos().EhSomenteLeitura(sPath);
        codigo = XVCodigosArquivo::DeAberturaFinal(erro.GetCausa(), bProtegido);
    }
    return Recusa(
        CheckHr(codigo.hr, codigo.pszNome, "CXVFileBase::AbreArquivo", XVNomeFonte(), __LINE__, this));
}

// A file whose length is not known is of no use to anyone: it is closed.
HRESULT CXVFileBase::LeTamanho() {
    XVUInt64 uiTamanho = 0;
    const CXVErroArquivo erro = m_pArquivo->GetTamanho(uiTamanho);
    if (const CXVErroArquivo* pEx = erro.GetFalha()) {
        FechaArquivo();
        XV_CHECK(CatchInicializacao(pEx));
    }
    m_uiTamanhoArquivo = uiTamanho;
    return S_OK;
}

void CXVFileBase::FechaArquivo() {
    m_eModoAbertura = eModoFechado;
    m_bAlterado = false;
    m_uiTamanhoArquivo = 0;
    LimpaCabecalho();
    FechaJanelaCabecalho();
    m_pArquivo.reset();
    m_pVisto = nullptr;
}

void CXVFileBase::AbandonaArquivo() {
    const std::unique_lock lock(GetLock());
    FechaArquivo();
}

HRESULT CXVFileBase::DeletaArquivo() {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo});
    FechaArquivo();
    XV_CHECK(
        CXVDataBaseUtil::DeletaArquivo(this, m_eModulo, m_sNomeArquivo, CXVDataBaseUtil::eRemoveDoControle));
    CXVProfilerEmpresa xvProfiler;
    xvProfiler.SetProfiler(*this);
    XV_CHECK(Finaliza());
    XV_CHECK(Inicializa(&xvProfiler));
    return S_OK;
}

bool CXVFileBase::EstaAbertoParaGravacao() const {
    return m_eModoAbertura == eModoLeituraGravacao || m_eModoAbertura == eModoLeituraGravacaoCriacao;
}

HRESULT CXVFileBase::GravaVersaoArquivo(XVUShort usVersaoArquivo) {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo}, {"usVersaoArquivo", XVUInt64{usVersaoArquivo}});
    if (!GerenciarCabecalho()) return S_OK;
    XV_CHECK(ValidaGravacao());
    if (!EstaAbertoParaGravacao()) {
        const HRESULT hrAbre =
            XV_REGISTRA(AbreArquivo(EXVDataBase_ModoAbertura::eModoLeituraGravacaoCriacao));
        if (FAILED(hrAbre)) {
            FechaArquivo();
            return hrAbre;
        }
    }
    if (m_regCabecalho.regB.usVersaoArquivo == usVersaoArquivo) return S_OK;
    CXVOperacao operacao(m_pDataBase);
    XV_CHECK(PreparaCabecalho(operacao));
    if (!operacao.EhVazia()) {
        REG_XVCABECALHO_B& regDepois = CabecalhoPreparado().m_gravacao.regDepois;
        regDepois.usVersaoArquivo = usVersaoArquivo;
        XVCabecalho::Sela(regDepois);
    }
    XV_CHECK(operacao.Executa());
    return S_OK;
}

XVUShort CXVFileBase::GetVersaoArquivo() {
    return GerenciarCabecalho() && PossuiCabecalho() ? m_regCabecalho.regB.usVersaoArquivo : XVUShort{0};
}

HRESULT CXVFileBase::CatchGravacao(const CXVErroArquivo* pEx) const {
    const SCodigoArquivo codigo = XVCodigosArquivo::DeExcecao(pEx->GetCausa());
    return CheckHr(codigo.hr, codigo.pszNome, "CXVFileBase::CatchGravacao", XVNomeFonte(), __LINE__, this);
}

HRESULT CXVFileBase::CatchInicializacao(const CXVErroArquivo* pEx) const {
    const SCodigoArquivo codigo = XVCodigosArquivo::DeExcecao(pEx->GetCausa());
    return CheckHr(codigo.hr, codigo.pszNome, "CXVFileBase::CatchInicializacao", XVNomeFonte(), __LINE__,
                   this);
}

void CXVFileBase::RegistraFalhaLeitura(HRESULT hr, XVUInt uiPosicao, std::size_t uiTamanhoRegistro,
                                       XVUInt64 uiQtdRegistros) const {
    const SMensagemCodigo* pMensagem = XVBuscaMensagem(hr);
    const std::string sDescricao(pMensagem != nullptr ? pMensagem->sDescricao : std::string_view{});
    XVProfiler::RecordError(
        this, "CXVFile::Le", "core/xvdatabase/XVFile", __LINE__,
        "hr = 0x%08X\tDescrição = %s\tArquivo = %s\tPosição = %d\tRegistro = %d\tQtd. Registros = %lld",
        static_cast<unsigned>(hr), sDescricao.c_str(), m_sNomeArquivo.c_str(), static_cast<int>(uiPosicao),
        static_cast<int>(uiTamanhoRegistro), static_cast<long long>(uiQtdRegistros));
}

HRESULT CXVFileBase::ValidaGravacao() {
    return m_pDataBase->EhSomenteLeituraSemBloqueio() ? eXVReadOnly : S_OK;
}

CXVErroArquivo CXVFileBase::LeDados(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) const {
    return m_pArquivo->Le(uiOffset, pDados, uiTamanho);
}

void CXVFileBase::DesfazCriacao() {
    FechaArquivo();
    XVPlataforma::SistemaArquivos().Apaga(m_sPathArquivo).Ignora();
}

bool CXVFileBase::EhUmaExcecaoFatal(HRESULT hr) {
    return hr == eBadSeek || hr == eEndOfFile || hr == eHardIO || hr == eFileNotFound || hr == eBadPath ||
           hr == E_XVCR_INDEXACAO_COM_POSICAO_ZERO || hr == E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA;
}
