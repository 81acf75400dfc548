#include "platform/XVJanelaPorChamadas.h"

namespace {
constexpr CXVErroArquivo k_erroOffset(ECausaArquivo::ePosicionamentoInvalido, 0);
}

CXVErroArquivo CXVJanelaPorChamadas::Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) {
    return Cabe(uiOffset, uiTamanho, m_uiTamanho) ? m_rArquivo.Grava(uiOffset, pDados, uiTamanho)
                                                  : k_erroOffset;
}

CXVErroArquivo CXVJanelaPorChamadas::GravaPalavra(XVUInt64 uiOffset, XVUInt64 uiPalavra) {
    return CabePalavra(uiOffset, m_uiTamanho) ? m_rArquivo.Grava(uiOffset, &uiPalavra, sizeof(uiPalavra))
                                              : k_erroOffset;
}

CXVErroArquivo IXVArquivo::AbreJanela(XVUInt64 uiTamanho, std::unique_ptr<IXVJanela>& pJanela) {
    pJanela = std::make_unique<CXVJanelaPorChamadas>(*this, uiTamanho);
    return {};
}
