// A window that works by the calls of its file.
#pragma once

#include "platform/XVSistemaArquivos.h"

class CXVJanelaPorChamadas final : public IXVJanela {
  public:
    // rArquivo must outlive the window.
    CXVJanelaPorChamadas(IXVArquivo& rArquivo, XVUInt64 uiTamanho)
        : m_rArquivo(rArquivo), m_uiTamanho(uiTamanho) {}

    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) override;
    CXVErroArquivo GravaPalavra(XVUInt64 uiOffset, XVUInt64 uiPalavra) override;

  private:
    IXVArquivo& m_rArquivo;
    XVUInt64 m_uiTamanho;
};
