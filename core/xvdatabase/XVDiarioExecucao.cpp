// CXVDiario: operations carried out, and undone.
#include <algorithm>
#include <exception>
#include <utility>

#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVFileBase.h"
#include "platform/XVTentativas.h"
#include "support/codes/XVCodigos.h"
#include "support/codes/XVCodigosArquivo.h"

namespace {

// A file that nobody has open any more is flushed through an opening of its own; a backup may be reading it.
CXVErroArquivo SincronizaFechado(const std::string& sPath) {
    constexpr SAberturaArquivo k_abertura{EAcessoArquivo::eLeituraEscrita,
                                          ECompartilhamentoArquivo::eNegaNada,
                                          ECriacaoArquivo::eSomenteExistente};
    std::unique_ptr<IXVArquivo> pArquivo;
    const CXVErroArquivo erro = XVTentaEnquantoOcupado(k_iTentativasCurtas, [&] {
        return XVPlataforma::SistemaArquivos().Abre(sPath, k_abertura, pArquivo);
    });
    if (erro.Ok()) return pArquivo->Sincroniza();
    // The file was deleted since, or the operation that made it was undone: there is nothing left to flush.
    return erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado ? CXVErroArquivo() : erro;
}

}  // namespace

XVUInt64 CXVDiario::GetUltimaAplicada() const {
    return m_fila.empty() ? m_anel.GetUltima() : m_fila.front()->uiNumero - 1;
}

void CXVDiario::MarcaAlterado(CXVFileBase& rFile) {
    if (rFile.EstaMarcadoNoDiario()) return;
    m_mapAlterados[rFile.GetNomeArquivo()] = &rFile;
    rFile.SetMarcadoNoDiario(true);
}

CXVErroArquivo CXVDiario::SincronizaAlterados() {
    if (m_mapAlterados.empty()) return {};
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    for (const auto& [sNome, pFile] : m_mapAlterados) {
        const CXVErroArquivo erro =
            pFile != nullptr ? pFile->Sincroniza() : SincronizaFechado(rSistema.Junta(m_sDiretorio, sNome));
        if (!erro.Ok()) return erro;
    }
    if (const CXVErroArquivo erro = rSistema.SincronizaDiretorio(m_sDiretorio); !erro.Ok()) return erro;
    for (const auto& [sNome, pFile] : m_mapAlterados)
        if (pFile != nullptr) pFile->SetMarcadoNoDiario(false);
    m_mapAlterados.clear();
    m_uiSegura = GetUltimaAplicada();
    return {};
}

// Written, and on the device before the place of an entry that it gives up is used: an opening must never
// look for an entry that is not there any more.
CXVErroArquivo CXVDiario::DispensaSeguras() {
    return DispensaAte(std::min(m_uiSegura, PrimeiraDeCopia() - 1));
}

CXVErroArquivo CXVDiario::DispensaAte(XVUInt64 uiAte) {
    CXVErroArquivo erro = m_anel.Dispensa(uiAte);
    if (erro.Ok() && m_bDuravel) erro = m_pArquivo->Sincroniza();
    if (erro.Ok()) m_uiDispensada = uiAte;
    return erro;
}

void CXVDiario::MontaEntrada(CXVOperacao& rOperacao) {
    m_anel.IniciaEntrada(ETipoEntrada::eGravacao);
    for (const CXVGravacaoPreparada* p : rOperacao.GetPartes()) {
        MarcaAlterado(p->GetArquivo());
        m_anel.IncluiParte(p->GetArquivo().GetNomeArquivo(), p->m_gravacao);
    }
}

// S_FALSE: there is no place before the queue is empty.
HRESULT CXVDiario::RegistraEntrada(CXVOperacao& rOperacao, XVUInt64* puiNumero) {
    const HRESULT hr = GarantePronto();
    if (FAILED(hr)) return hr;
    CXVErroArquivo erro = ApagaCopias();
    if (!erro.Ok()) return Codigo(erro, "ApagaCopias()");
    MontaEntrada(rOperacao);
    while (SubstituiCopia()) {
        if (!m_fila.empty()) return S_FALSE;
        erro = RegravaCopias();
        if (!erro.Ok()) return Codigo(erro, "RegravaCopias()");
        MontaEntrada(rOperacao);
    }
    const XVUInt64 uiSubstituida = m_anel.GetSubstituida();
    if (uiSubstituida > GetUltimaAplicada()) return S_FALSE;
    if (m_bDuravel && uiSubstituida > m_uiDispensada) {
        erro = SincronizaAlterados();
        if (erro.Ok()) erro = DispensaSeguras();
        if (erro.Ok())
            for (const CXVGravacaoPreparada* p : rOperacao.GetPartes()) MarcaAlterado(p->GetArquivo());
    }
    if (erro.Ok()) erro = m_anel.GravaEntrada(*puiNumero);
    return erro.Ok() ? S_OK : Codigo(erro, "m_anel.GravaEntrada(*puiNumero)");
}

HRESULT CXVDiario::Executa(CXVOperacao& rOperacao) {
    CXVOperacao resolvida(nullptr);
    HRESULT hr = S_OK;
    {
        const std::lock_guard lock(m_Mutex);
        hr = ResolvePendente(resolvida);
        XVUInt64 uiNumero = 0;
        if (SUCCEEDED(hr)) hr = RegistraEntrada(rOperacao, &uiNumero);
        if (hr == S_OK && m_bDuravel)
            if (const CXVErroArquivo erro = m_pArquivo->Sincroniza(); !erro.Ok()) {
                Desfaz(rOperacao, uiNumero);
                hr = Codigo(erro, "m_pArquivo->Sincroniza()");
            }
        if (hr == S_OK) hr = Conclui(rOperacao, uiNumero, false);
    }
    rOperacao.Termina();
    return hr;
}

// Writes the operation to its files and then to memory. Where that fails, it is undone.
HRESULT CXVDiario::Conclui(CXVOperacao& rOperacao, XVUInt64 uiNumero, bool bDaFila) {
    if (const CXVErroArquivo erro = m_anel.MarcaEmCurso(uiNumero); !erro.Ok()) {
        if (bDaFila) AnulaFila();
        Desfaz(rOperacao, uiNumero);  // no file was touched yet; only the entry is taken back
        return Codigo(erro, "m_anel.MarcaEmCurso(uiNumero)");
    }
    const HRESULT hr = rOperacao.Escreve();
    if (FAILED(hr)) {
        if (bDaFila) AnulaFila();
        Desfaz(rOperacao, uiNumero);
        return hr;
    }
    rOperacao.Publica();
    m_anel.MarcaConcluida(uiNumero).Ignora();
    return S_OK;
}

void CXVDiario::Desfaz(CXVOperacao& rOperacao, XVUInt64 uiNumero) {
    if (TentaDesfazer(rOperacao, uiNumero).Ok()) return;
    m_pendente.Assume(rOperacao);
    m_uiPendente = uiNumero;
}

// The entry says that it is to be undone before the first byte is taken back, and that it is nothing any more
// when all bytes are back where a power failure cannot lose them. Entries that were prepared on top of it are
// void before that: without it they would not follow from anything.
CXVErroArquivo CXVDiario::TentaDesfazer(CXVOperacao& rOperacao, XVUInt64 uiNumero) {
    CXVErroArquivo erro = MarcaAnuladas();
    if (erro.Ok()) erro = m_anel.MarcaEstado(uiNumero, EEstadoEntrada::eDesfazer);
    // Rare, and worth a flush whatever the durability: an operation that failed must not come back.
    if (erro.Ok()) erro = m_pArquivo->Sincroniza();
    if (erro.Ok()) erro = rOperacao.Desfaz();
    try {
        if (erro.Ok() && m_bDuravel) erro = SincronizaAlterados();
    } catch (const std::exception&) {  // out of memory: tried again later
        erro = {ECausaArquivo::eGenerica, 0};
    }
    if (erro.Ok()) erro = m_anel.MarcaEstado(uiNumero, EEstadoEntrada::eNula);
    if (erro.Ok()) m_anel.MarcaConcluida(uiNumero).Ignora();
    return erro;
}

HRESULT CXVDiario::ConcluiPendente() {
    CXVOperacao resolvida(nullptr);
    const std::lock_guard lock(m_Mutex);
    return ResolvePendente(resolvida);
}

// rResolvida takes the operation that is over; it ends when the lock is released.
HRESULT CXVDiario::ResolvePendente(CXVOperacao& rResolvida) {
    if (const CXVErroArquivo erro = MarcaAnuladas(); !erro.Ok()) return Codigo(erro, "MarcaAnuladas()");
    if (m_uiPendente == 0) return S_OK;
    if (m_pendente.EhVazia())
        return Codigo({ECausaArquivo::eArquivoInvalido, 0}, "ResolvePendente(resolvida)");
    const CXVErroArquivo erro = TentaDesfazer(m_pendente, m_uiPendente);
    if (!erro.Ok()) return Codigo(erro, "TentaDesfazer(m_pendente, m_uiPendente)");
    m_uiPendente = 0;
    rResolvida.Assume(m_pendente);
    return S_OK;
}
