#include "tools/xvcr/commands/XVPreparo.h"

#include <utility>

#include "platform/XVInterrupcao.h"

namespace {

// A batch is large enough for its locks to cost nothing, and the next one is prepared meanwhile.
constexpr std::size_t k_uiLinhasPorLote = 64;
constexpr std::uint64_t k_uiBytesPorLote = 256U * 1024U;
// More than this is not read while it is not recorded: a line may be as long as the memory allows just once.
constexpr std::uint64_t k_uiBytesAFrente = 4 * k_uiBytesPorLote;

}  // namespace

CXVPreparo::CXVPreparo(IXVFonteBytes& rFonte, std::size_t uiLinhaMaxima)
    : m_Leitor(rFonte, uiLinhaMaxima), m_uiLinhaMaxima(uiLinhaMaxima), m_Thread([this] { Trabalha(); }) {}

CXVPreparo::~CXVPreparo() {
    {
        const std::lock_guard trava(m_Mutex);
        m_bDesiste = true;
    }
    m_Mudou.notify_all();
    XVInterrupcao::Desperta();
}

SLinhaCarga* CXVPreparo::Proxima() {
    if (m_uiProxima == m_LoteTomado.listaLinhas.size()) {
        m_LoteTomado.listaLinhas.clear();
        m_uiProxima = 0;
        std::unique_lock trava(m_Mutex);
        m_uiBytesTomados = 0;
        m_Mudou.notify_all();
        m_Mudou.wait(trava, [this] { return m_bFim || !m_LotePronto.listaLinhas.empty(); });
        std::swap(m_LoteTomado, m_LotePronto);
        m_uiBytesTomados = std::exchange(m_LoteTomado.uiBytes, 0);
        if (m_LoteTomado.listaLinhas.empty()) return nullptr;
    }
    return &m_LoteTomado.listaLinhas[m_uiProxima++];
}

void CXVPreparo::Trabalha() {
    std::exception_ptr falha;
    try {
        std::string sLinha;
        // Before it waits for more, and so before the end as well, it hands out what there is.
        for (;;) {
            const SLote& rLote = m_LoteEmPreparo;
            const bool bCheio =
                rLote.listaLinhas.size() >= k_uiLinhasPorLote || rLote.uiBytes >= k_uiBytesPorLote;
            if ((bCheio || m_Leitor.PrecisaLer()) && !Entrega()) break;
            const CXVLeitorLinhas::EResultado eResultado = m_Leitor.Proxima(&sLinha);
            if (eResultado == CXVLeitorLinhas::EResultado::eFim) break;
            Prepara(sLinha, eResultado == CXVLeitorLinhas::EResultado::eLonga);
        }
    } catch (...) {
        falha = std::current_exception();
    }
    const std::lock_guard trava(m_Mutex);
    m_Falha = falha;
    m_bFim = true;
    m_Mudou.notify_all();
}

void CXVPreparo::Prepara(std::string_view sLinha, bool bLonga) {
    if (!bLonga && sLinha.find_first_not_of(" \t") == std::string_view::npos) return;
    SLinhaCarga& rLinha = m_LoteEmPreparo.listaLinhas.emplace_back();
    rLinha.uiNumero = m_Leitor.GetNumero();
    rLinha.uiFim = m_Leitor.GetBytes();
    m_LoteEmPreparo.uiBytes += sLinha.size();
    if (bLonga)
        rLinha.resultado.sErro = "mais de " + std::to_string(m_uiLinhaMaxima) + " bytes";
    else
        XVPreparaLinha(sLinha, &rLinha);
}

bool CXVPreparo::Entrega() {
    std::unique_lock trava(m_Mutex);
    if (m_LoteEmPreparo.listaLinhas.empty()) return !m_bDesiste;
    m_Mudou.wait(trava, [this] { return m_bDesiste || m_LotePronto.listaLinhas.empty(); });
    if (m_bDesiste) return false;
    std::swap(m_LotePronto, m_LoteEmPreparo);
    m_LoteEmPreparo.listaLinhas.clear();
    m_LoteEmPreparo.uiBytes = 0;
    m_Mudou.notify_all();
    m_Mudou.wait(
        trava, [this] { return m_bDesiste || m_LotePronto.uiBytes + m_uiBytesTomados <= k_uiBytesAFrente; });
    return !m_bDesiste;
}
