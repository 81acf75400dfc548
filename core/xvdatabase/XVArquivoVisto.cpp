#include "core/xvdatabase/XVArquivoVisto.h"

#include <algorithm>

CXVErroArquivo CXVArquivoVisto::LeEmPedacos(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho,
                                            std::size_t uiUnidade) {
    CXVMomento* pAtual = CXVMomento::GetAtual();
    if (pAtual != nullptr && &pAtual->GetVisao() == &m_rVisao)
        return pAtual->Le(m_sNomeArquivo, uiOffset, pDados, uiTamanho);
    const std::size_t uiPedaco = std::max<std::size_t>(k_uiPedaco / uiUnidade, 1) * uiUnidade;
    CXVMomento momento(m_rVisao, 0);
    auto* p = static_cast<std::byte*>(pDados);
    while (uiTamanho > 0) {
        const std::size_t uiParte = std::min(uiPedaco, uiTamanho);
        const CXVErroArquivo erro = m_rVisao.NoMomento(
            momento, [&](CXVMomento& rMomento) { return rMomento.Le(m_sNomeArquivo, uiOffset, p, uiParte); });
        if (!erro.Ok()) return erro;
        uiOffset += uiParte;
        p += uiParte;
        uiTamanho -= uiParte;
    }
    return {};
}

CXVErroArquivo CXVArquivoVisto::GetArea(SAreaVista* pArea, SMarcaDiario* pMarca) const {
    return m_rVisao.NoMomento([&](CXVMomento& rMomento) {
        if (pMarca != nullptr) *pMarca = rMomento.GetMarca();
        return rMomento.GetArea(m_sNomeArquivo, pArea);
    });
}

CXVErroArquivo CXVArquivoVisto::GetTamanho(XVUInt64& uiTamanho) {
    SAreaVista area;
    const CXVErroArquivo erro = GetArea(&area);
    uiTamanho = area.uiTamanho;
    return erro.Ok() && !area.bExiste ? CXVErroArquivo(ECausaArquivo::eArquivoNaoEncontrado, 0) : erro;
}
