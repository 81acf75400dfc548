#include "client/XVAusenciaServidor.h"

#include <algorithm>

#include "client/XVCliente.h"
#include "platform/XVPlataforma.h"

namespace XVCliente {

namespace {

struct SAusencia {
    XVUInt ulCodigo;
    EExecucao eExecucao;    // of a call that was answered with it
    bool bDizQueFoiEmbora;  // false: a component that is there answers it too
};

using enum EExecucao;

// clang-format off
constexpr SAusencia k_aAusencias[] = {
    {0x800706B5U, eNaoExecutada, true},   // RPC_S_UNKNOWN_IF
    {0x800706BAU, eNaoExecutada, true},   // RPC_S_SERVER_UNAVAILABLE
    {0x800706BBU, eNaoExecutada, true},   // RPC_S_SERVER_TOO_BUSY
    {0x80010012U, eNaoExecutada, true},   // RPC_E_SERVER_DIED_DNE
    {0x80010108U, eNaoExecutada, true},   // RPC_E_DISCONNECTED
    {0x800401FDU, eNaoExecutada, true},   // CO_E_OBJNOTCONNECTED
    {0x800706BEU, eIncerta,      true},   // RPC_S_CALL_FAILED
    {0x800706BFU, eIncerta,      true},   // RPC_S_CALL_FAILED_DNE
    {0x80010007U, eIncerta,      true},   // RPC_E_SERVER_DIED
    {0x80080008U, eIncerta,      true},   // CO_E_SERVER_STOPPING
    {0x80004005U, eIncerta,      false},  // E_FAIL
    {0x80080005U, eRespondida,   true},   // CO_E_SERVER_EXEC_FAILURE: it did not start in time
    {0x80004002U, eRespondida,   false},  // E_NOINTERFACE: a creation met a server that was not ready
};
// clang-format on

// For a moment of an update the program's name stands for no file, or for one that is still being written.
// Where there is no program at all the answer is the same for good.
constexpr XVUInt k_aulProgramaEmTroca[] = {
    0x80070002U,  // ERROR_FILE_NOT_FOUND
    0x80070020U,  // ERROR_SHARING_VIOLATION
};

const SAusencia* Busca(HRESULT hr) {
    const auto* p = std::ranges::find(k_aAusencias, static_cast<XVUInt>(hr), &SAusencia::ulCodigo);
    return p == std::end(k_aAusencias) ? nullptr : p;
}

}  // namespace

EExecucao ExecucaoDaChamada(HRESULT hr) {
    const SAusencia* const p = Busca(hr);
    return p == nullptr ? eRespondida : p->eExecucao;
}

EExecucao ExecucaoDaCriacao(HRESULT hr) {
    if (Busca(hr) != nullptr) return eNaoExecutada;
    const bool bEmTroca = std::ranges::count(k_aulProgramaEmTroca, static_cast<XVUInt>(hr)) != 0;
    return bEmTroca ? eSemPrograma : eRespondida;
}

bool ServidorFoiEmbora(HRESULT hr) {
    const SAusencia* const p = Busca(hr);
    return p != nullptr && p->bDizQueFoiEmbora;
}

void CXVEsperaServidor::Comeca() {
    if (!m_ulInicio) m_ulInicio = XVPlataforma::Relogio().GetTicks();
}

bool CXVEsperaServidor::Espera(EExecucao eExecucao) {
    if (eExecucao == eRespondida) return false;
    if (eExecucao == eIncerta && m_uiIncertas++ == k_uiIncertas) return false;
    Comeca();
    const XVUInt ulTotal = eExecucao == eSemPrograma ? k_ulTotalSemPrograma : k_ulTotal;
    if (XVPlataforma::Relogio().GetTicks() - *m_ulInicio + m_ulEspera > ulTotal) return false;
    XVPlataforma::Relogio().Dorme(m_ulEspera);
    m_ulEspera = std::min(2 * m_ulEspera, k_ulMaior);
    return true;
}

}  // namespace XVCliente
