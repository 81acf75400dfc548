#include "core/xvdatabase/XVOperacao.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVFileBase.h"
#include "core/xvdatabase/XVGroupFileBase.h"

namespace {

bool Aumenta(const CXVGravacaoPreparada* p) {
    return p->m_gravacao.bCria || p->m_gravacao.uiTamanhoDepois > p->m_gravacao.uiTamanhoAntes;
}

// Memory may run out while a file is made: the operation is undone then like after any other failure.
HRESULT EscreveSemExcecao(const CXVGravacaoPreparada& rParte) {
    try {
        return rParte.GetArquivo().EscreveGravacao(rParte);
    } catch (const std::exception&) {
        return E_OUTOFMEMORY;
    }
}

// What cannot be undone for lack of memory is undone later.
CXVErroArquivo DesfazSemExcecao(const CXVGravacaoPreparada& rParte) {
    try {
        return rParte.GetArquivo().DesfazGravacao(rParte.m_gravacao);
    } catch (const std::exception&) {
        return {ECausaArquivo::eGenerica, 0};
    }
}

}  // namespace

void CXVOperacao::Anota(std::size_t uiPrimeira, const SPontoFalha& rPonto) {
    for (std::size_t i = uiPrimeira; i < m_uiPartes; ++i) {
        CXVGravacaoPreparada& rParte = *m_aPartes[i];
        if (rParte.m_uiPontos < CXVGravacaoPreparada::k_uiPontos)
            rParte.m_aPontos[rParte.m_uiPontos++] = &rPonto;
    }
}

HRESULT CXVOperacao::Inicia() {
    CXVDiario* pDiario = m_pDataBase->GetDiario();
    return pDiario == nullptr ? S_OK : pDiario->ConcluiPendente();
}

HRESULT CXVOperacao::Executa() {
    const HRESULT hr = ExecutaSeCabe();
    return hr == S_FALSE ? eDiskFull : hr;
}

HRESULT CXVOperacao::ExecutaSeCabe() {
    if (EhVazia()) return S_OK;
    if (CXVDiario* pDiario = m_pDataBase->GetDiario()) return pDiario->Executa(*this);
    const HRESULT hr = Escreve();
    if (SUCCEEDED(hr)) {
        Publica();
    } else if (!Desfaz().Ok()) {
        // Nobody is left to finish the undoing: what is on disk must not be used further.
        for (CXVGravacaoPreparada* p : GetPartes()) p->GetArquivo().AbandonaArquivo();
    }
    Termina();
    return hr;
}

// What appends may meet a full disk, and is then taken back by giving a length back; what overwrites needs no
// space. So it comes last.
HRESULT CXVOperacao::Escreve() {
    const auto itFim =
        std::copy_if(m_aPartes.begin(), m_aPartes.begin() + m_uiPartes, m_aOrdem.begin(), Aumenta);
    std::copy_if(m_aPartes.begin(), m_aPartes.begin() + m_uiPartes, itFim,
                 [](const CXVGravacaoPreparada* p) { return !Aumenta(p); });
    for (m_uiEscritas = 0; m_uiEscritas < m_uiPartes;) {
        CXVGravacaoPreparada& rParte = *m_aOrdem[m_uiEscritas++];
        const HRESULT hr = EscreveSemExcecao(rParte);
        if (SUCCEEDED(hr)) continue;
        for (std::size_t i = 0; i < rParte.m_uiPontos; ++i)
            XVIgnora(XVRegistraFalha(hr, *rParte.m_aPontos[i], &rParte.GetArquivo()));
        return hr;
    }
    return S_OK;
}

CXVErroArquivo CXVOperacao::Desfaz() {
    for (; m_uiEscritas > 0; --m_uiEscritas) {
        const CXVGravacaoPreparada& rParte = *m_aOrdem[m_uiEscritas - 1];
        const CXVErroArquivo erro = DesfazSemExcecao(rParte);
        if (!erro.Ok()) return erro;
    }
    return {};
}

void CXVOperacao::Publica() noexcept {
    m_pDataBase->IniciaPublicacao();
    for (CXVGravacaoPreparada* p : GetPartes()) p->Publica();
    m_pDataBase->TerminaPublicacao();
}

void CXVOperacao::Termina() noexcept {
    for (CXVGravacaoPreparada* p : GetPartes()) {
        CXVGroupFileBase* pGrupo = p->m_pGrupo;
        p->m_uiPontos = 0;
        p->m_pGrupo = nullptr;
        if (pGrupo != nullptr)
            pGrupo->DevolveNoMembroNovo(*p);
        else
            p->Devolve();
    }
    m_uiPartes = 0;
    m_uiEscritas = 0;
}

void CXVOperacao::Assume(CXVOperacao& rOutra) noexcept {
    m_pDataBase = rOutra.m_pDataBase;
    m_aPartes = rOutra.m_aPartes;
    m_aOrdem = rOutra.m_aOrdem;
    m_uiPartes = std::exchange(rOutra.m_uiPartes, 0);
    m_uiEscritas = std::exchange(rOutra.m_uiEscritas, 0);
}
