// CXVDiario: opening, closing, and the files that it knows.
#include "core/xvdatabase/XVDiario.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <random>

#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVReconstrucao.h"
#include "platform/XVAmbienteSO.h"
#include "platform/XVTentativas.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"
#include "support/values/XVSoma64.h"

namespace {

constexpr SAberturaArquivo k_abertura{EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita,
                                      ECriacaoArquivo::eCriaSeAusente};

// The open journals of the process.
struct SDiariosAbertos {
    std::mutex mutex;
    std::map<std::string, CXVDiario*> mapa;
};
SDiariosAbertos& Diarios() {
    static SDiariosAbertos diarios;
    return diarios;
}

// What cannot be guessed; 0 where the system has none.
XVUInt64 Acaso() {
    try {
        std::random_device dispositivo;
        return (XVUInt64{dispositivo()} << 32) | dispositivo();
    } catch (const std::exception&) {
        return 0;
    }
}

// Another number than that of any journal that the file may have held before, and none that a client could
// put into a text to make it look like an entry.
XVUInt64 NovaSessao() {
    static std::atomic<XVUInt64> uiAberturas = 0;
    const SDataHora dh = XVPlataforma::Relogio().AgoraUTC();
    const XVUInt64 aPartes[] = {
        Acaso(), ++uiAberturas, XVAmbienteSO::GetIdProcesso(), XVPlataforma::Relogio().GetTicks(),
        (XVUInt64{dh.usAno} << 40) | (XVUInt64{dh.ucMes} << 32) | (XVUInt64{dh.ucDia} << 24) |
            (XVUInt64{dh.ucHora} << 16) | (XVUInt64{dh.ucMinuto} << 8) | dh.ucSegundo};
    return XVSoma64(aPartes, sizeof(aPartes)) | 1;
}

bool EhDiscoCheio(const CXVErroArquivo& rErro) {
    return rErro.GetCausa() == ECausaArquivo::eDiscoCheio ||
           rErro.GetCausa() == ECausaArquivo::eDiretorioCheio;
}

bool Envolve(const CXVOperacao& rOperacao, const CXVFileBase& rFile) {
    const auto partes = rOperacao.GetPartes();
    return std::any_of(partes.begin(), partes.end(),
                       [&rFile](const CXVGravacaoPreparada* p) { return &p->GetArquivo() == &rFile; });
}

}  // namespace

CXVDiario::~CXVDiario() {
    Desregistra();
    m_pendente.Termina();
}

CXVDiario* CXVDiario::Busca(const std::string& sDiretorio) {
    SDiariosAbertos& rDiarios = Diarios();
    {
        const std::lock_guard lock(rDiarios.mutex);
        if (rDiarios.mapa.empty()) return nullptr;
    }
    const std::string sChave = ChaveDoDiretorio(sDiretorio);
    const std::lock_guard lock(rDiarios.mutex);
    const auto it = rDiarios.mapa.find(sChave);
    return it == rDiarios.mapa.end() ? nullptr : it->second;
}

// The company's directory is the last but one component: its spelling is the caller's.
std::string CXVDiario::ChaveDoDiretorio(const std::string& sDiretorio) {
    const std::size_t uiModulo = sDiretorio.find_last_of("/\\");
    if (uiModulo == std::string::npos) return sDiretorio;
    const std::string sDiretorioEmpresa = sDiretorio.substr(0, uiModulo);
    std::string sNomeReal;
    if (!XVPlataforma::SistemaArquivos().BuscaNomeReal(sDiretorioEmpresa, sNomeReal).Ok()) return sDiretorio;
    return sDiretorioEmpresa.substr(0, sDiretorioEmpresa.size() - sNomeReal.size()) + sNomeReal +
           sDiretorio.substr(uiModulo);
}

void CXVDiario::Desregistra() {
    const std::lock_guard lock(Diarios().mutex);
    const auto it = Diarios().mapa.find(m_sChave);
    if (it != Diarios().mapa.end() && it->second == this) Diarios().mapa.erase(it);
}

HRESULT CXVDiario::Codigo(const CXVErroArquivo& rErro, const char* pszExpressao) const {
    const HRESULT hr = XVCodigosArquivo::DeExcecao(rErro.GetCausa()).hr;
    return CheckHr(hr, pszExpressao, "CXVDiario::Executa", XVNomeFonte(), __LINE__, nullptr);
}

HRESULT CXVDiario::Abre(const IXVDF_Profiler* pDono, EModulo eModulo, const std::string& sDiretorio) {
    m_sDiretorio = sDiretorio;
    m_sPath = XVPlataforma::SistemaArquivos().Junta(sDiretorio, k_pszNomeDiario);
    XV_CHECK_DONO(pDono, AbreArquivo(pDono));
    const HRESULT hr = XV_REGISTRA_DONO(pDono, Reconstroi(pDono));
    if (FAILED(hr)) {
        m_pArquivo.reset();
        return hr;
    }
    LeDurabilidade(pDono, eModulo);
    m_uiSegura = m_uiDispensada = 0;
    m_nomesControlados.Esquece();
    m_bAberto = true;
    m_sChave = ChaveDoDiretorio(sDiretorio);
    const std::lock_guard lock(Diarios().mutex);
    Diarios().mapa[m_sChave] = this;
    return S_OK;
}

HRESULT CXVDiario::AbreArquivo(const IXVDF_Profiler* pDono) {
    const CXVErroArquivo erro = XVTentaEnquantoOcupado(k_iTentativasLongas, [this] {
        return XVPlataforma::SistemaArquivos().Abre(m_sPath, k_abertura, m_pArquivo);
    });
    // Without space for a name the store is still there to be read; its files deny a second writer.
    if (!erro.Ok() && !EhDiscoCheio(erro))
        XV_CHECK_DONO(pDono,
                      XVArquivoRecusado::Anota(XVCodigosArquivo::CodigoDeExcecao(erro), m_sPath, pDono));
    return S_OK;
}

HRESULT CXVDiario::Reconstroi(const IXVDF_Profiler* pDono) {
    if (m_pArquivo == nullptr) return S_OK;
    CXVReconstrucao reconstrucao;
    XV_CHECK_DONO(pDono, reconstrucao.Le(pDono, m_sDiretorio, *m_pArquivo));
    XV_CHECK_DONO(pDono, reconstrucao.Confere(pDono));
    if (!reconstrucao.EhVazia())
        XV_CHECK_DONO(pDono, XVCodigosArquivo::CodigoDeExcecao(CXVDiarioAnel::MarcaConclusao(*m_pArquivo)));
    XV_CHECK_DONO(pDono, reconstrucao.Aplica(pDono));
    // What follows changes files in ways that the old entries do not know.
    XV_CHECK_DONO(pDono, XVCodigosArquivo::CodigoDeExcecao(CXVDiarioAnel::Invalida(*m_pArquivo)));
    return S_OK;
}

void CXVDiario::LeDurabilidade(const IXVDF_Profiler* pDono, EModulo eModulo) {
    const XVUInt ulDurabilidade =
        XVPlataforma::Registry().LeNumero(CAmbienteXV::GetChaveRegistry(eModulo), "Durabilidade").value_or(0);
    m_bDuravel = ulDurabilidade != 0;
    if (ulDurabilidade > 1)
        XVProfiler::RecordError(pDono, "CXVDiario::Abre", XVNomeFonte(), __LINE__,
                                "Valor desconhecido no registro: Durabilidade = %u; vale 1", ulDurabilidade);
}

// The file's space is taken by the first operation, not by opening: a full disk can still be looked at.
HRESULT CXVDiario::GarantePronto() {
    if (m_anel.EstaPronto()) return S_OK;
    CXVErroArquivo erro;
    if (m_pArquivo == nullptr) erro = XVPlataforma::SistemaArquivos().Abre(m_sPath, k_abertura, m_pArquivo);
    if (erro.Ok()) erro = m_anel.Prepara(*m_pArquivo, NovaSessao(), !m_bDuravel);
    if (erro.Ok() && m_bDuravel) {
        erro = m_pArquivo->Sincroniza();
        if (erro.Ok()) erro = XVPlataforma::SistemaArquivos().SincronizaDiretorio(m_sDiretorio);
    }
    if (erro.Ok()) return S_OK;
    m_anel.Fecha();
    return Codigo(erro, "m_anel.Prepara(*m_pArquivo, NovaSessao())");
}

HRESULT CXVDiario::Fecha(const IXVDF_Profiler* pDono) {
    if (!m_bAberto) return S_OK;
    CXVOperacao resolvida(nullptr);
    const HRESULT hr = XV_REGISTRA_DONO(pDono, ResolvePendente(resolvida));
    CXVErroArquivo erro = ApagaCopias();
    if (erro.Ok() && SUCCEEDED(hr)) erro = SincronizaAlterados();
    m_bAberto = false;
    Desregistra();
    m_anel.Fecha();
    m_pendente.Termina();
    m_uiPendente = 0;
    m_listaAnular.clear();
    m_mapAlterados.clear();
    m_mapCopias.clear();
    // From here on the entries stand for nothing, whether the file goes or not.
    const bool bConcluido = SUCCEEDED(hr) && erro.Ok();
    if (bConcluido && m_pArquivo != nullptr) erro = CXVDiarioAnel::Invalida(*m_pArquivo);
    m_pArquivo.reset();
    if (bConcluido && erro.Ok()) XVPlataforma::SistemaArquivos().Apaga(m_sPath).Ignora();
    XV_CHECK_DONO(pDono, XVCodigosArquivo::CodigoDeExcecao(erro));
    return hr;
}

HRESULT CXVDiario::PontoSeguro(const IXVDF_Profiler* pDono) {
    CXVOperacao resolvida(nullptr);
    const std::lock_guard lock(m_Mutex);
    if (!m_bAberto || !m_anel.EstaPronto()) return S_OK;
    XV_CHECK_DONO(pDono, ResolvePendente(resolvida));
    CXVErroArquivo erro = SincronizaAlterados();
    if (erro.Ok()) erro = DispensaSeguras();
    XV_CHECK_DONO(pDono, XVCodigosArquivo::CodigoDeExcecao(erro));
    return S_OK;
}

void CXVDiario::LembraArquivo(CXVFileBase& rFile) {
    const std::lock_guard lock(m_Mutex);
    const auto it = m_mapAlterados.find(rFile.GetNomeArquivo());
    if (it == m_mapAlterados.end()) return;
    it->second = &rFile;
    rFile.SetMarcadoNoDiario(true);
}

// An operation whose undoing failed points to its files: when the first of them goes it is tried once more
// and then given up.
void CXVDiario::LargaPendente(const CXVFileBase& rFile) {
    CXVOperacao abandonada(nullptr);  // ends when the lock is released
    const std::lock_guard lock(m_Mutex);
    AbandonaPendente(rFile, abandonada);
}

void CXVDiario::AbandonaPendente(const CXVFileBase& rFile, CXVOperacao& rAbandonada) {
    if (m_uiPendente == 0 || !Envolve(m_pendente, rFile)) return;
    if (TentaDesfazer(m_pendente, m_uiPendente).Ok()) m_uiPendente = 0;
    for (CXVGravacaoPreparada* p : m_pendente.GetPartes()) p->m_pGrupo = nullptr;  // goes with its members
    rAbandonada.Assume(m_pendente);
}

void CXVDiario::EsqueceArquivo(CXVFileBase& rFile) {
    CXVOperacao abandonada(nullptr);
    const std::lock_guard lock(m_Mutex);
    AbandonaPendente(rFile, abandonada);
    rFile.SetMarcadoNoDiario(false);
    const auto it = m_mapAlterados.find(rFile.GetNomeArquivo());
    if (it != m_mapAlterados.end()) it->second = nullptr;
}
