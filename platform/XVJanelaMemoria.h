// A window over memory into which the system maps the file. Whoever makes the mapping derives from it and
// undoes the mapping at its end.
#pragma once

#include "platform/XVJanela.h"

class CXVJanelaMemoria : public IXVJanela {
  public:
    CXVJanelaMemoria(const CXVJanelaMemoria&) = delete;
    CXVJanelaMemoria& operator=(const CXVJanelaMemoria&) = delete;

    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) final;
    CXVErroArquivo GravaPalavra(XVUInt64 uiOffset, XVUInt64 uiPalavra) final;

  protected:
    // pInicio: the first byte of the file, at a multiple of 8; uiTamanho bytes from it can be written.
    CXVJanelaMemoria(void* pInicio, std::size_t uiTamanho)
        : m_pInicio(static_cast<std::byte*>(pInicio)), m_uiTamanho(uiTamanho) {}

    std::byte* GetInicio() const { return m_pInicio; }
    std::size_t GetTamanho() const { return m_uiTamanho; }

  private:
    std::byte* m_pInicio;
    std::size_t m_uiTamanho;
};
