#include "tools/xvcr/text/XVFonteBytes.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tools/xvcr/text/XVArquivoSaida.h"
#include "tools/xvcr/text/XVErros.h"

namespace {

class CXVFonteEntrada : public IXVFonteBytes {
  public:
    std::size_t Le(char* pDados, std::size_t uiTamanho) override {
        const std::size_t uiLidos = std::fread(pDados, 1, uiTamanho, stdin);
        if (uiLidos == 0 && std::ferror(stdin) != 0) XVFalha("não foi possível ler a entrada padrão");
        return uiLidos;
    }
};

class CXVFonteArquivo : public IXVFonteBytes {
  public:
    explicit CXVFonteArquivo(const std::string& sNome) : m_sNome(sNome) {
        const std::filesystem::path caminho = XVCaminhoDeUtf8(sNome);
        std::error_code erro;
        if (std::filesystem::is_directory(caminho, erro)) XVFalha("\"" + sNome + "\" é um diretório");
        m_Arquivo.open(caminho, std::ios::binary);
        if (!m_Arquivo) XVFalha("não foi possível abrir o arquivo \"" + sNome + "\"");
        m_uiTamanho = std::filesystem::file_size(caminho, erro);
        if (erro) m_uiTamanho = 0;
    }

    std::size_t Le(char* pDados, std::size_t uiTamanho) override {
        m_Arquivo.clear();
        // Some runtimes remember the end of a file until it is positioned anew, though it has grown since.
        if (m_bFim) m_Arquivo.seekg(m_iPosicao);
        m_Arquivo.clear();
        m_Arquivo.read(pDados, static_cast<std::streamsize>(uiTamanho));
        if (m_Arquivo.bad()) XVFalha("não foi possível ler o arquivo \"" + m_sNome + "\"");
        m_iPosicao += m_Arquivo.gcount();
        m_bFim = m_Arquivo.gcount() == 0;
        return static_cast<std::size_t>(m_Arquivo.gcount());
    }
    std::uintmax_t GetTamanho() const override { return m_uiTamanho; }

  private:
    std::string m_sNome;
    std::ifstream m_Arquivo;
    std::uintmax_t m_uiTamanho = 0;
    std::streamoff m_iPosicao = 0;
    bool m_bFim = false;
};

}  // namespace

std::unique_ptr<IXVFonteBytes> XVAbreFonte(const std::string& sNome) {
    if (sNome != "-") return std::make_unique<CXVFonteArquivo>(sNome);
    static bool s_bTomada = false;
    if (s_bTomada) XVErroDeUso("a entrada padrão (-) só pode ser lida uma vez por comando");
    s_bTomada = true;
    return std::make_unique<CXVFonteEntrada>();
}

std::string XVLeTudo(IXVFonteBytes& rFonte, std::size_t uiLimite) {
    std::string sTudo;
    constexpr std::size_t k_uiBloco = 65536;
    for (;;) {
        const std::size_t uiInicio = sTudo.size();
        sTudo.resize(uiInicio + k_uiBloco);
        const std::size_t uiLidos = rFonte.Le(sTudo.data() + uiInicio, k_uiBloco);
        sTudo.resize(uiInicio + uiLidos);
        if (uiLidos == 0) return sTudo;
        if (sTudo.size() > uiLimite)
            XVFalha("o texto passa do limite de " + std::to_string(uiLimite) + " bytes");
    }
}
