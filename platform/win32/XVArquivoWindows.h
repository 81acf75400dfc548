// An open file over a handle.
#pragma once

#include "platform/XVSistemaArquivos.h"
#include "platform/win32/XVHandleWindows.h"
#include "platform/win32/XVJanelaWindows.h"

class CXVArquivoWindows final : public IXVArquivo {
  public:
    CXVArquivoWindows(CXVHandleArquivo&& rHandle, EAcessoArquivo eAcesso)
        : m_handle(std::move(rHandle)), m_eAcesso(eAcesso) {}
    ~CXVArquivoWindows() override;
    CXVArquivoWindows(const CXVArquivoWindows&) = delete;
    CXVArquivoWindows& operator=(const CXVArquivoWindows&) = delete;

    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) override;
    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) override;
    CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) override;
    CXVErroArquivo SetTamanho(XVUInt64 uiTamanho) override;
    CXVErroArquivo Sincroniza() override;
    CXVErroArquivo AbreJanela(XVUInt64 uiTamanho, std::unique_ptr<IXVJanela>& pJanela) override;

  private:
    CXVErroArquivo GravaEm(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho);

    CXVJanelasDoArquivo m_janelas;
    CXVHandleArquivo m_handle;
    EAcessoArquivo m_eAcesso;
};
