#include "platform/XVVistaPorChamadas.h"

namespace {
constexpr CXVErroArquivo k_erroOffset(ECausaArquivo::ePosicionamentoInvalido, 0);
}

CXVErroArquivo CXVVistaPorChamadas::Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) {
    return Cabe(uiOffset, uiTamanho, m_uiTamanho) ? m_rArquivo.Le(uiOffset, pDados, uiTamanho) : k_erroOffset;
}

CXVErroArquivo CXVVistaPorChamadas::Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) {
    return Cabe(uiOffset, uiTamanho, m_uiTamanho) ? m_rArquivo.Grava(uiOffset, pDados, uiTamanho)
                                                  : k_erroOffset;
}

CXVErroArquivo CXVVistaPorChamadas::LePalavra(XVUInt64 uiOffset, XVUInt64& uiPalavra) {
    uiPalavra = 0;
    return CabePalavra(uiOffset, m_uiTamanho) ? m_rArquivo.Le(uiOffset, &uiPalavra, sizeof(uiPalavra))
                                              : k_erroOffset;
}

CXVErroArquivo CXVVistaPorChamadas::GravaPalavra(XVUInt64 uiOffset, XVUInt64 uiPalavra) {
    return CabePalavra(uiOffset, m_uiTamanho) ? m_rArquivo.Grava(uiOffset, &uiPalavra, sizeof(uiPalavra))
                                              : k_erroOffset;
}

CXVErroArquivo IXVArquivo::Mapeia(XVUInt64 uiTamanho, std::unique_ptr<IXVVista>& pVista) {
    pVista = std::make_unique<CXVVistaPorChamadas>(*this, uiTamanho);
    return {};
}
