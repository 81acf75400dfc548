// A file system that passes every operation on to another one, with a TGuarda alive meanwhile.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/XVSistemaArquivos.h"

template <class TGuarda>
class TXVArquivoEnvolto final : public IXVArquivo {
  public:
    explicit TXVArquivoEnvolto(std::unique_ptr<IXVArquivo> pInterno) : m_pInterno(std::move(pInterno)) {}
    ~TXVArquivoEnvolto() override {
        const TGuarda guarda;
        m_pInterno.reset();
    }
    TXVArquivoEnvolto(const TXVArquivoEnvolto&) = delete;
    TXVArquivoEnvolto& operator=(const TXVArquivoEnvolto&) = delete;

    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) override {
        const TGuarda guarda;
        return m_pInterno->Le(uiOffset, pDados, uiTamanho);
    }
    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) override {
        const TGuarda guarda;
        return m_pInterno->Grava(uiOffset, pDados, uiTamanho);
    }
    CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) override {
        const TGuarda guarda;
        return m_pInterno->GetTamanho(uiTamanho);
    }
    CXVErroArquivo SetTamanho(XVUInt64 uiTamanho) override {
        const TGuarda guarda;
        return m_pInterno->SetTamanho(uiTamanho);
    }
    CXVErroArquivo Sincroniza() override {
        const TGuarda guarda;
        return m_pInterno->Sincroniza();
    }

  private:
    std::unique_ptr<IXVArquivo> m_pInterno;
};

template <class TGuarda>
class TXVSistemaArquivosEnvolto final : public IXVSistemaArquivos {
  public:
    explicit TXVSistemaArquivosEnvolto(IXVSistemaArquivos& rInterno) : m_rInterno(rInterno) {}

    CXVErroArquivo Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                        std::unique_ptr<IXVArquivo>& pArquivo) override {
        const TGuarda guarda;
        const CXVErroArquivo erro = m_rInterno.Abre(sCaminho, rAbertura, pArquivo);
        if (erro.Ok()) pArquivo = std::make_unique<TXVArquivoEnvolto<TGuarda>>(std::move(pArquivo));
        return erro;
    }
    EExistencia Existe(const std::string& sCaminho) override {
        const TGuarda guarda;
        return m_rInterno.Existe(sCaminho);
    }
    bool EhSomenteLeitura(const std::string& sCaminho) override {
        const TGuarda guarda;
        return m_rInterno.EhSomenteLeitura(sCaminho);
    }
    CXVErroArquivo BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) override {
        const TGuarda guarda;
        return m_rInterno.BuscaNomeReal(sCaminho, sNomeReal);
    }
    CXVErroArquivo Apaga(const std::string& sCaminho) override {
        const TGuarda guarda;
        return m_rInterno.Apaga(sCaminho);
    }
    CXVErroArquivo Substitui(const std::string& sOrigem, const std::string& sDestino) override {
        const TGuarda guarda;
        return m_rInterno.Substitui(sOrigem, sDestino);
    }
    CXVErroArquivo Lista(const std::string& sDiretorio, const std::string& sMascara,
                         std::vector<std::string>& listaNomes) override {
        const TGuarda guarda;
        return m_rInterno.Lista(sDiretorio, sMascara, listaNomes);
    }
    CXVErroArquivo CriaDiretorio(const std::string& sDiretorio) override {
        const TGuarda guarda;
        return m_rInterno.CriaDiretorio(sDiretorio);
    }
    CXVErroArquivo SincronizaDiretorio(const std::string& sDiretorio) override {
        const TGuarda guarda;
        return m_rInterno.SincronizaDiretorio(sDiretorio);
    }
    CXVErroArquivo MarcaDiretorio(const std::string& sDiretorio, const std::string& sMarca,
                                  std::unique_ptr<IXVMarcaDiretorio>& pMarca) override {
        const TGuarda guarda;
        return m_rInterno.MarcaDiretorio(sDiretorio, sMarca, pMarca);
    }
    std::string Junta(std::string_view sDiretorio, std::string_view sNome) const override {
        const TGuarda guarda;
        return m_rInterno.Junta(sDiretorio, sNome);
    }

  private:
    IXVSistemaArquivos& m_rInterno;
};
