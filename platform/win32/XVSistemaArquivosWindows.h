// The operating system's file system.
#pragma once

#include "platform/XVSistemaArquivos.h"

class CXVSistemaArquivosWindows final : public IXVSistemaArquivos {
  public:
    CXVErroArquivo Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                        std::unique_ptr<IXVArquivo>& pArquivo) override;
    EExistencia Existe(const std::string& sCaminho) override;
    bool EhSomenteLeitura(const std::string& sCaminho) override;
    CXVErroArquivo BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) override;
    CXVErroArquivo GetCaminhoReal(const std::string& sDiretorio, std::string& sReal) override;
    CXVErroArquivo Apaga(const std::string& sCaminho) override;
    CXVErroArquivo Substitui(const std::string& sOrigem, const std::string& sDestino) override;
    CXVErroArquivo Lista(const std::string& sDiretorio, const std::string& sMascara,
                         std::vector<std::string>& listaNomes) override;
    CXVErroArquivo CriaDiretorio(const std::string& sDiretorio) override;
    CXVErroArquivo SincronizaDiretorio(const std::string& sDiretorio) override;
    CXVErroArquivo MarcaDiretorio(const std::string& sDiretorio, const std::string& sMarca,
                                  std::unique_ptr<IXVMarcaDiretorio>& pMarca) override;
    std::string Junta(std::string_view sDiretorio, std::string_view sNome) const override;
};
