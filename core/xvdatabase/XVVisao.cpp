#include "core/xvdatabase/XVVisao.h"

#include "platform/XVPlataforma.h"

namespace {
thread_local CXVVisao* g_pVisaoAtual = nullptr;
}

CXVVisao::CUso::CUso(CXVVisao* pVisao) : m_pAnterior(g_pVisaoAtual) {
    g_pVisaoAtual = pVisao;
}
CXVVisao::CUso::~CUso() {
    g_pVisaoAtual = m_pAnterior;
}
CXVVisao* CXVVisao::GetAtual() {
    return g_pVisaoAtual;
}

// An operation takes less than the first pauses, which only let others run.
void CXVVisao::Pausa(int iTentativa) {
    constexpr int k_iSemEspera = 8;
    XVPlataforma::Relogio().Dorme(iTentativa < k_iSemEspera ? 0 : 1);
}

bool CXVVisao::FoiEsperada(const SMarcaDiario& rMarca) {
    const std::lock_guard lock(m_Mutex);
    return !m_bGuardadaConcluida && m_marcaGuardada == rMarca;
}

template <class TLeitura>
CXVVisao::CSobreposta CXVVisao::Guarda(IXVArquivo& rDiario, const SMarcaDiario& rMarca, bool bConcluida,
                                       TLeitura leitura) {
    const std::lock_guard lock(m_Mutex);
    if (m_marcaGuardada == rMarca && m_bGuardadaConcluida == bConcluida) return m_pGuardada;
    // What the journal does not explain is nobody's failure here: each file is judged by itself.
    const CXVCapturaTrace captura;
    auto pNova = std::make_shared<CXVReconstrucao>();
    CSobreposta pResultado;
    if (leitura(*pNova, rDiario)) pResultado = std::move(pNova);
    m_marcaGuardada = rMarca;
    m_bGuardadaConcluida = bConcluida;
    m_pGuardada = pResultado;
    return pResultado;
}

CXVVisao::CSobreposta CXVVisao::Concluida(IXVArquivo& rDiario, const SMarcaDiario& rMarca) {
    return Guarda(rDiario, rMarca, true, [this](CXVReconstrucao& rNova, IXVArquivo& rArquivo) {
        return SUCCEEDED(rNova.Le(nullptr, m_sDiretorio, rArquivo)) && SUCCEEDED(rNova.Confere(nullptr));
    });
}

CXVVisao::CSobreposta CXVVisao::Anterior(IXVArquivo& rDiario, const SMarcaDiario& rMarca) {
    return Guarda(rDiario, rMarca, false, [&](CXVReconstrucao& rNova, IXVArquivo& rArquivo) {
        return rNova.LeDesfeita(m_sDiretorio, rArquivo, (rMarca.uiPalavra + 1) / 2).Ok();
    });
}
