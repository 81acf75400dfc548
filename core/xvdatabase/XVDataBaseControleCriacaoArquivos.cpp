#include "core/xvdatabase/XVDataBaseControleCriacaoArquivos.h"

#include <algorithm>

#include "core/xvdatabase/XVCabecalho.h"
#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVImagemArquivo.h"
#include "core/xvdatabase/XVMarcas.h"
#include "core/xvdatabase/XVModoAbertura.h"
#include "core/xvdatabase/XVNomeArquivo.h"
#include "core/xvdatabase/XVTextFile.h"
#include "platform/XVTentativas.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"
#include "support/values/XVTextoAscii.h"

namespace {

const std::string k_sNomeControle(XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS);

// The control's own short-lived database: reads share the file with its writers.
class CXVDataBaseControle : public CXVDataBase {
  public:
    enum class EUso { eLeitura, eEscrita };
    CXVDataBaseControle(EModulo eModulo, const std::string& sNomeArquivo, EUso eUso)
        : CXVDataBase(eModulo), m_xvTextFile(sNomeArquivo, this) {
        SetSomenteLeituraSemBloqueio(eUso == EUso::eLeitura);
    }
    ~CXVDataBaseControle() override { XVIgnora(Finaliza()); }
    CXVTextFile& GetArquivo() { return m_xvTextFile; }

  private:
    CXVTextFile m_xvTextFile;
};

// Of the directory's journal, when this process has one; the list is about to change.
CXVNomesControlados* NomesDe(const std::string& sDiretorio) {
    CXVDiario* pDiario = CXVDiario::Busca(sDiretorio);
    return pDiario == nullptr ? nullptr : &pDiario->GetNomesControlados();
}

}  // namespace

HRESULT CXVDataBaseControleCriacaoArquivos::OnInicializa() {
    XV_CHECK_SUPER(CXVInicializador, OnInicializa());
    return S_OK;
}

HRESULT CXVDataBaseControleCriacaoArquivos::OnFinaliza() {
    XV_CHECK_SUPER(CXVInicializador, OnFinaliza());
    return S_OK;
}

HRESULT CXVDataBaseControleCriacaoArquivos::GerenciaControleCriacaoArquivos(XVUInt eModoAbertura) {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo}, {"(XVUInt) eModoAbertura", XVUInt64{eModoAbertura}});
    if (eModoAbertura != eModoLeituraGravacao || XVNomeArquivo::EhIsento(m_sNomeArquivo)) return S_OK;
    if (m_bDesabilitado) {
        XV_CHECK(RemoveControleCriacaoArquivos());
        return S_OK;
    }
    bool bPossui = false;
    XV_CHECK(PossuiControleCriacaoArquivos(&bPossui));
    std::string sPathArquivo;
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(m_eModulo, GetEmpresa(), m_sNomeArquivo.c_str(), &sPathArquivo));
    std::string sNomeReal;
    bool bExiste = false;
    XV_CHECK(CXVDataBaseUtil::ExistePath(this, sPathArquivo, &bExiste, &sNomeReal));
    if (bPossui && !bExiste) {
        XVProfiler::RecordError(
            this, "CXVDataBaseControleCriacaoArquivos::GerenciaControleCriacaoArquivos", XVNomeFonte(),
            __LINE__,
            "Arquivo controlado não encontrado: %s\tE_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS",
            sPathArquivo.c_str());
        return XVArquivoRecusado::Anota(E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, sPathArquivo, this);
    }
    // Only a file is listed. A directory of this name is refused by the opening that follows; were it listed,
    // its removal would later look like the loss of a file.
    const EExistencia eExistencia =
        !bPossui && bExiste ? XVPlataforma::SistemaArquivos().Existe(sPathArquivo) : EExistencia::eAusente;
    if (eExistencia == EExistencia::eSemAcesso)
        return XVArquivoRecusado::Anota(eAccessDenied, sPathArquivo, this);
    if (eExistencia == EExistencia::eArquivo) {
        // A store on a full disk has to be readable all the same: the next opening lists the file.
        const HRESULT hr = XV_REGISTRA(CriaControleCriacaoArquivos());
        if (FAILED(hr) && hr != eDiskFull) return hr;
    }
    return S_OK;
}

HRESULT CXVDataBaseControleCriacaoArquivos::PossuiControleCriacaoArquivos(bool* pbPossui) {
    *pbPossui = false;
    CXVNomesControlados* pNomes = m_pDiario == nullptr ? nullptr : &m_pDiario->GetNomesControlados();
    if (pNomes != nullptr)
        if (const std::optional<bool> bGuardado = pNomes->Possui(m_sNomeArquivo)) {
            *pbPossui = *bGuardado;
            return S_OK;
        }
    const XVUInt64 uiGeracao = pNomes == nullptr ? 0 : pNomes->GetGeracao();
    std::vector<std::string> listaNomes;
    const HRESULT hr = LeLista(&listaNomes);
    if (FAILED(hr)) return hr;
    *pbPossui = CXVNomesControlados::Contem(listaNomes, m_sNomeArquivo);
    if (pNomes != nullptr) pNomes->Guarda(uiGeracao, std::move(listaNomes));
    return S_OK;
}

HRESULT CXVDataBaseControleCriacaoArquivos::LeLista(std::vector<std::string>* plistaNomes) {
    CXVDataBaseControle xvDB(m_eModulo, k_sNomeControle, CXVDataBaseControle::EUso::eLeitura);
    XV_CHECK_EM("PossuiControleCriacaoArquivos", xvDB.Inicializa(this));
    XV_CHECK_EM("PossuiControleCriacaoArquivos", xvDB.GetArquivo().LeTodos(plistaNomes));
    return S_OK;
}

// The opening's check may add a name to the list. It runs here only for a name that is on the list already,
// where it changes nothing and only finds out whether the file is missing.
HRESULT CXVDataBaseControleCriacaoArquivos::ConfereArquivoControlado() {
    bool bPossui = false;
    XV_CHECK(PossuiControleCriacaoArquivos(&bPossui));
    if (bPossui) XV_CHECK(GerenciaControleCriacaoArquivos(eModoLeituraGravacao));
    return S_OK;
}

HRESULT CXVDataBaseControleCriacaoArquivos::LeNomesControlados(std::vector<std::string>* plistaNomes) {
    plistaNomes->clear();
    return LeLista(plistaNomes);
}

HRESULT CXVDataBaseControleCriacaoArquivos::CriaControleCriacaoArquivos() {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo});
    std::unique_ptr<IXVMarcaDiretorio> marca;
    XV_CHECK(ExecutaMarcaDiretorio(marca));
    std::string sDiretorio;
    XV_CHECK(CXVDataBaseUtil::GetPathDados(m_eModulo, GetEmpresa(), &sDiretorio));
    const CXVNomesControlados::CMudanca mudanca(NomesDe(sDiretorio));
    bool bPossui = false;
    XV_CHECK(PossuiControleCriacaoArquivos(&bPossui));
    if (bPossui) return S_OK;
    // On the heap, because a tool that checks the order of locks knows a lock by its address: on the stack
    // the locks of this database would lie where those of the one before it lay, and the tool would take the
    // two for one.
    const auto pDB = std::make_unique<CXVDataBaseControle>(m_eModulo, k_sNomeControle,
                                                           CXVDataBaseControle::EUso::eEscrita);
    XV_CHECK(pDB->Inicializa(this));
    CXVTextFile& xvTextFile = pDB->GetArquivo();
    XVUInt uiPosicao = 0;
    XV_CHECK(xvTextFile.Grava(uiPosicao, m_sNomeArquivo.c_str()));
    return S_OK;
}

HRESULT CXVDataBaseControleCriacaoArquivos::RemoveControleCriacaoArquivos() {
    XV_ESCOPO({"m_sNomeArquivo", m_sNomeArquivo});
    if (XVNomeArquivo::EhIsento(m_sNomeArquivo)) return S_OK;
    bool bPossui = false;
    XV_CHECK(PossuiControleCriacaoArquivos(&bPossui));
    if (!bPossui) return S_OK;
    std::unique_ptr<IXVMarcaDiretorio> marca;
    XV_CHECK(ExecutaMarcaDiretorio(marca));
    std::string sDiretorio;
    XV_CHECK(CXVDataBaseUtil::GetPathDados(m_eModulo, GetEmpresa(), &sDiretorio));
    const CXVNomesControlados::CMudanca mudanca(NomesDe(sDiretorio));
    const std::string sNomeTra = XVNomeArquivo::TrocaExtensao(k_sNomeControle, "tra");
    const std::string sPathTra = XVPlataforma::SistemaArquivos().Junta(sDiretorio, sNomeTra);
    bool bExiste = false;
    XV_CHECK(CXVDataBaseUtil::Existe(this, sPathTra, &bExiste));
    if (bExiste) XV_CHECK(XVArquivoRecusado::Anota(E_XVCR_ARQUIVO_TRA_ENCONTRADO, sPathTra, this));

    // From here on a ".tra" of this name is our own: whoever does not need it any more deletes it.
    CXVCopiaProtegida copia(CXVDiario::Busca(sDiretorio));
    XV_CHECK(copia.Inicia(this, sNomeTra));
    CXVImagemArquivo xvFileNew(m_eModulo, sNomeTra);
    XV_CHECK(xvFileNew.Inicializa(this));
    std::vector<std::string> aRegistrosNew;
    XV_CHECK(LeOutrosNomes(&aRegistrosNew));
    // The list is an image of the text file that it becomes, and is known as one that is written.
    if (!aRegistrosNew.empty())
        XV_CHECK_TEXTO(GravaLista(xvFileNew, aRegistrosNew),
                       "xvFileNew.GravaColecao(uiPosicao, aRegistrosNew)");
    // The name of the constant is part of a text that the readers of the log know.
    XV_CHECK_TEXTO(SubstituiLista(sPathTra, aRegistrosNew.empty()),
                   "CXVDataBaseUtil::RenomeiaArquivoTRA(this, m_eModulo, "
                   "XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS)");
    xvFileNew.Libera();
    return S_OK;
}

// Under the mark: every name of the list but this one.
HRESULT CXVDataBaseControleCriacaoArquivos::LeOutrosNomes(std::vector<std::string>* plistaNomes) {
    XV_CHECK(LeNomesControlados(plistaNomes));
    std::erase_if(*plistaNomes,
                  [this](const std::string& sNome) { return XVIgualSemCaixa(sNome, m_sNomeArquivo); });
    return S_OK;
}

// The shorter list takes the place of the control file; a list without names is no file at all. Nothing
// follows the move: the control file has no header, and is under nobody's control.
HRESULT CXVDataBaseControleCriacaoArquivos::SubstituiLista(const std::string& sPathTra, bool bVazia) {
    if (bVazia) return CXVDataBaseUtil::DeletaSemControle(this, m_eModulo, k_sNomeControle);
    std::string sPathControle;
    XV_CHECK(CXVDataBaseUtil::GetPathArquivo(m_eModulo, GetEmpresa(), k_sNomeControle, &sPathControle));
    return CXVDataBaseUtil::MovePath(this, sPathTra, sPathControle);
}

// Returns when the list has reached the device: only then may it take the place of the old one.
HRESULT CXVDataBaseControleCriacaoArquivos::GravaLista(CXVImagemArquivo& xvFileNew,
                                                       const std::vector<std::string>& aRegistrosNew) {
    XV_CHECK(xvFileNew.AbreArquivo());
    for (const std::string& sNome : aRegistrosNew) {
        const auto ulTamanho = static_cast<XVUInt>(sNome.size());
        XV_CHECK(xvFileNew.Grava(&ulTamanho, sizeof(ulTamanho)));
        XV_CHECK(xvFileNew.Grava(sNome.data(), sNome.size()));
    }
    XV_CHECK(xvFileNew.Conclui());
    return S_OK;
}

HRESULT CXVDataBaseControleCriacaoArquivos::ExecutaMarcaDiretorio(std::unique_ptr<IXVMarcaDiretorio>& marca) {
    std::string sDiretorioMarca;
    // Readers of the log know the call with its output passed by reference.
    XV_CHECK_TEXTO(CXVDataBaseUtil::GetPathDados(m_eModulo, GetEmpresa(), &sDiretorioMarca),
                   "CXVDataBaseUtil::GetPathDados(m_eModulo, GetEmpresa(), sDiretorioMarca)");
    const std::string sMarca = XVMarcas::Nome(m_eModulo, IXVArqMarcaEnum::ControleCriacaoArquivosInMemory);
    const CXVErroArquivo erro = XVTentaMarca(k_iTentativasLongas, sDiretorioMarca, sMarca, marca);
    if (erro.Ok()) return S_OK;
    const HRESULT hr = XVCodigosArquivo::DeExcecao(erro.GetCausa()).hr;
    XVProfiler::RecordError(this, "CXVDataBaseControleCriacaoArquivos::ExecutaMarcaDiretorio", XVNomeFonte(),
                            __LINE__, "%s\t%s = %d\tHR = %#X\tDescrição = marca do diretório %s recusada",
                            sMarca.c_str(), "iRetorno", static_cast<int>(erro.GetErroSistema()),
                            static_cast<unsigned>(hr), sDiretorioMarca.c_str());
    XVIgnora(
        XVArquivoRecusado::Anota(hr, XVPlataforma::SistemaArquivos().Junta(sDiretorioMarca, sMarca), this));
    // The mark is placed by the file system; readers of the log know the suite's own object.
    XV_CHECK_TEXTO(
        hr,
        "marca.Marca(sDiretorioMarca, IXVArqMarcaEnum::ControleCriacaoArquivosInMemory, GetUsuario(), "
        "CAmbienteXV::GetSiglaModulo(m_eModulo))");
    return hr;
}
