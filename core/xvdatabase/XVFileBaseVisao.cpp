// CXVFileBase: viewing.
#include "core/xvdatabase/XVArquivoVisto.h"
#include "core/xvdatabase/XVDataBase.h"
#include "core/xvdatabase/XVFileBase.h"
#include "support/trace/XVProfiler.h"

HRESULT CXVFileBase::AbreVisto(CXVVisao& rVisao) {
    auto pVisto = std::make_unique<CXVArquivoVisto>(rVisao, m_sNomeArquivo);
    SAreaVista area;
    XV_CHECK(TentaAbrir(m_sPathArquivo, [&] { return pVisto->GetArea(&area); }));
    if (!area.bExiste) return S_OK;
    m_pVisto = pVisto.get();
    m_pArquivo = std::move(pVisto);
    m_eModoAbertura = eModoLeituraSemBloqueio;
    // Length and header of one moment; a damaged file is refused to a viewer as to everybody.
    return rVisao.DeUmMomento([&] {
        LimpaCabecalho();
        if (const CXVErroArquivo erro = m_pVisto->GetArea(&area); const CXVErroArquivo* pEx = erro.GetFalha())
            XV_CHECK_EM("AbreVisto", Recusa(CatchInicializacao(pEx)));
        m_uiTamanhoArquivo = area.uiTamanho;
        if (GerenciarCabecalho()) XV_CHECK_EM("AbreVisto", ConfereCabecalho());
        return S_OK;
    });
}

CXVErroArquivo CXVFileBase::LeDadosEmPedacos(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho,
                                             std::size_t uiUnidade) {
    return m_pVisto != nullptr ? m_pVisto->LeEmPedacos(uiOffset, pDados, uiTamanho, uiUnidade)
                               : LeDados(uiOffset, pDados, uiTamanho);
}

CXVErroArquivo CXVFileBase::LeVistaAtual(SVistaCarregada* pVista) const {
    const CXVArquivoVisto arquivo(*m_pDataBase->GetVisao(), m_sNomeArquivo);
    const CXVMomento* pMomento = CXVMomento::GetAtual();
    pVista->uiChamada = pMomento == nullptr ? 0 : pMomento->GetChamada();
    return arquivo.GetArea(&pVista->area, &pVista->marca);
}

// Without a journal that counts the operations and without a header that says when, nothing tells whether a
// file of the same length is the same.
bool CXVFileBase::SVistaCarregada::EhIgual(const SVistaCarregada& rOutra) const {
    return marca == rOutra.marca && area.bExiste == rOutra.area.bExiste &&
           area.uiTamanho == rOutra.area.uiTamanho && area.uiSoma == rOutra.area.uiSoma &&
           (marca.uiSessao != 0 || area.uiSeek != 0 || !area.bExiste);
}
