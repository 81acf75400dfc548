#include "tools/xvcr/text/XVFonteBytes.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <utility>

#include "platform/XVFluxoEntrada.h"
#include "tools/xvcr/text/XVArquivoSaida.h"
#include "tools/xvcr/text/XVErros.h"

namespace {

class CXVFonteFluxo : public IXVFonteBytes {
  public:
    CXVFonteFluxo(std::unique_ptr<IXVFluxoEntrada> pFluxo, std::string sNome)
        : m_pFluxo(std::move(pFluxo)), m_sNome(std::move(sNome)) {
        if (m_pFluxo == nullptr) XVFalha("não foi possível abrir " + m_sNome);
    }

    std::size_t Le(char* pDados, std::size_t uiTamanho) override {
        std::size_t uiLidos = 0;
        if (!m_pFluxo->Le(pDados, uiTamanho, &uiLidos)) XVFalha("não foi possível ler " + m_sNome);
        return uiLidos;
    }
    bool EhArquivo() const override { return m_pFluxo->EhArquivo(); }
    std::uintmax_t GetTamanho() const override { return m_pFluxo->GetTamanho(); }

  private:
    std::unique_ptr<IXVFluxoEntrada> m_pFluxo;
    std::string m_sNome;
};

class CXVFonteArquivo : public IXVFonteBytes {
  public:
    CXVFonteArquivo(const std::filesystem::path& caminho, const std::string& sNome, std::uintmax_t uiInicio)
        : m_sNome(sNome), m_iPosicao(static_cast<std::streamoff>(uiInicio)), m_bFim(uiInicio > 0) {
        std::error_code erro;
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
    bool EhArquivo() const override { return true; }
    std::uintmax_t GetTamanho() const override { return m_uiTamanho; }

  private:
    std::string m_sNome;
    std::ifstream m_Arquivo;
    std::uintmax_t m_uiTamanho = 0;
    std::streamoff m_iPosicao;
    bool m_bFim;  // to be positioned before the next reading
};

std::filesystem::file_type Tipo(const std::string& sNome) {
    std::error_code erro;
    return std::filesystem::status(XVCaminhoDeUtf8(sNome), erro).type();
}

}  // namespace

std::unique_ptr<IXVFonteBytes> XVAbreFonte(const std::string& sNome, std::uintmax_t uiInicio) {
    if (sNome == "-") {
        static bool s_bTomada = false;
        if (s_bTomada) XVErroDeUso("a entrada padrão (-) só pode ser lida uma vez por comando");
        s_bTomada = true;
        return std::make_unique<CXVFonteFluxo>(XVFluxoEntradaPadrao(), "a entrada padrão");
    }
    if (Tipo(sNome) == std::filesystem::file_type::directory) XVFalha("\"" + sNome + "\" é um diretório");
    if (XVFonteSoSeLeUmaVez(sNome))
        return std::make_unique<CXVFonteFluxo>(XVAbreFluxoEntrada(sNome), '"' + sNome + '"');
    return std::make_unique<CXVFonteArquivo>(XVCaminhoDeUtf8(sNome), sNome, uiInicio);
}

bool XVFonteSoSeLeUmaVez(const std::string& sNome) {
    if (sNome == "-") return true;
    const std::filesystem::file_type eTipo = Tipo(sNome);
    return eTipo == std::filesystem::file_type::fifo || eTipo == std::filesystem::file_type::character;
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
