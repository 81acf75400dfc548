// A view over memory into which the system maps the file. Whoever makes the mapping derives from it and
// undoes the mapping at its end.
#pragma once

#include "platform/XVVista.h"

class CXVVistaMapeada : public IXVVista {
  public:
    CXVVistaMapeada(const CXVVistaMapeada&) = delete;
    CXVVistaMapeada& operator=(const CXVVistaMapeada&) = delete;

    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) final;
    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) final;
    CXVErroArquivo LePalavra(XVUInt64 uiOffset, XVUInt64& uiPalavra) final;
    CXVErroArquivo GravaPalavra(XVUInt64 uiOffset, XVUInt64 uiPalavra) final;

  protected:
    // pInicio: the first byte of the file, at a multiple of 8; uiTamanho bytes from it can be read, and
    // written unless bSomenteLeitura.
    CXVVistaMapeada(void* pInicio, std::size_t uiTamanho, bool bSomenteLeitura)
        : m_pInicio(static_cast<std::byte*>(pInicio)),
          m_uiTamanho(uiTamanho),
          m_bSomenteLeitura(bSomenteLeitura) {}

    std::byte* GetInicio() const { return m_pInicio; }
    std::size_t GetTamanho() const { return m_uiTamanho; }

  private:
    std::byte* m_pInicio;
    std::size_t m_uiTamanho;
    bool m_bSomenteLeitura;
};
