// An open file over a descriptor.
#pragma once

#include <atomic>

#include "platform/XVSistemaArquivos.h"
#include "platform/posix/XVDescritorPosix.h"

class CXVArquivoPosix final : public IXVArquivo {
  public:
    CXVArquivoPosix(CXVDescritor&& rDescritor, EAcessoArquivo eAcesso)
        : m_descritor(std::move(rDescritor)), m_eAcesso(eAcesso) {}

    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) override;
    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) override;
    CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) override;
    CXVErroArquivo SetTamanho(XVUInt64 uiTamanho) override;
    CXVErroArquivo Sincroniza() override;
    CXVErroArquivo AbreJanela(XVUInt64 uiTamanho, std::unique_ptr<IXVJanela>& pJanela) override;

  private:
    bool EncurtariaJanela(XVUInt64 uiTamanho);

    std::atomic<unsigned> m_ulJanelas = 0;  // through memory; those by calls are of no concern here
    CXVDescritor m_descritor;
    EAcessoArquivo m_eAcesso;
};
