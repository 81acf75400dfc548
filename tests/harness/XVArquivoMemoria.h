// Contents, openings and marks of the file system in memory.
#pragma once

#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "platform/XVSistemaArquivos.h"

struct SConteudo {
    std::string sBytes;
    bool bSomenteLeitura = false;
    std::list<SAberturaArquivo> listaAberturas;

    // Whether every opening allows this one and this one allows every opening.
    bool PodeAbrir(const SAberturaArquivo& rNova) const;
};

// Names that differ only in the case of A-Z are one.
struct SSemCaixa {
    bool operator()(const std::string& s1, const std::string& s2) const;
};

// What all files of one file system share; the mutex guards everything in it.
struct SDiscoMemoria {
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<SConteudo>, SSemCaixa> mapaEntradas;  // null: a directory
    std::set<std::string, SSemCaixa> conjuntoMarcas;
    std::optional<XVUInt64> uiLimite;  // bytes of all contents

    XVUInt64 Livres() const;
};

class CXVArquivoMemoria final : public IXVArquivo {
  public:
    // The disk's mutex is held by the caller.
    CXVArquivoMemoria(std::shared_ptr<SDiscoMemoria> pDisco, std::shared_ptr<SConteudo> pConteudo,
                      const SAberturaArquivo& rAbertura);
    ~CXVArquivoMemoria() override;
    CXVArquivoMemoria(const CXVArquivoMemoria&) = delete;
    CXVArquivoMemoria& operator=(const CXVArquivoMemoria&) = delete;

    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) override;
    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) override;
    CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) override;
    CXVErroArquivo SetTamanho(XVUInt64 uiTamanho) override;
    CXVErroArquivo Sincroniza() override { return {}; }

  private:
    // Grows or shrinks as far as the space allows; false when that was not as far as asked.
    bool Redimensiona(XVUInt64 uiTamanho);

    std::shared_ptr<SDiscoMemoria> m_pDisco;
    std::shared_ptr<SConteudo> m_pConteudo;
    EAcessoArquivo m_eAcesso;
    std::list<SAberturaArquivo>::iterator m_itAbertura;
};

class CXVMarcaMemoria final : public IXVMarcaDiretorio {
  public:
    CXVMarcaMemoria(std::shared_ptr<SDiscoMemoria> pDisco, std::string sCaminho)
        : m_pDisco(std::move(pDisco)), m_sCaminho(std::move(sCaminho)) {}
    ~CXVMarcaMemoria() override {
        const std::lock_guard trava(m_pDisco->mutex);
        m_pDisco->conjuntoMarcas.erase(m_sCaminho);
    }
    CXVMarcaMemoria(const CXVMarcaMemoria&) = delete;
    CXVMarcaMemoria& operator=(const CXVMarcaMemoria&) = delete;

  private:
    std::shared_ptr<SDiscoMemoria> m_pDisco;
    std::string m_sCaminho;
};
