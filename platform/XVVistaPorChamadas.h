// A view that works by the calls of its file.
#pragma once

#include "platform/XVSistemaArquivos.h"

class CXVVistaPorChamadas final : public IXVVista {
  public:
    // rArquivo must outlive the view.
    CXVVistaPorChamadas(IXVArquivo& rArquivo, XVUInt64 uiTamanho)
        : m_rArquivo(rArquivo), m_uiTamanho(uiTamanho) {}

    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) override;
    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) override;
    CXVErroArquivo LePalavra(XVUInt64 uiOffset, XVUInt64& uiPalavra) override;
    CXVErroArquivo GravaPalavra(XVUInt64 uiOffset, XVUInt64 uiPalavra) override;

  private:
    IXVArquivo& m_rArquivo;
    XVUInt64 m_uiTamanho;
};
