// A fresh directory of the operating system for one test, removed with all it holds at the end.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

class CXVDiretorioTeste {
  public:
    CXVDiretorioTeste();
    ~CXVDiretorioTeste();
    CXVDiretorioTeste(const CXVDiretorioTeste&) = delete;
    CXVDiretorioTeste& operator=(const CXVDiretorioTeste&) = delete;

    const std::string& GetCaminho() const { return m_sCaminho; }  // absolute, UTF-8
    std::string Junta(const std::string& sNome) const;

    // Beside the seam: whole contents and the read-only attribute.
    void CriaArquivo(const std::string& sNome, const std::string& sConteudo) const;
    std::optional<std::string> LeConteudo(const std::string& sNome) const;
    void SetSomenteLeitura(const std::string& sNome, bool bSomenteLeitura) const;

  private:
    std::filesystem::path m_caminho;
    std::string m_sCaminho;
};
