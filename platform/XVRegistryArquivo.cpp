#include "platform/XVRegistryArquivo.h"

#include <fstream>
#include <system_error>

#include "platform/XVAmbienteSO.h"

namespace {

constexpr std::uintmax_t k_uiTamanhoMaximo = std::uintmax_t{1}
                                             << 20;  // bytes; nothing that is larger is a registry

std::filesystem::path CaminhoUtf8(const std::string& sCaminho) {
    return std::filesystem::path(std::u8string(sCaminho.begin(), sCaminho.end()));
}

}  // namespace

bool CXVRegistryArquivo::EstaConfigurado() {
    return XVAmbienteSO::GetVariavelAmbiente(k_pszVariavel).has_value();
}

std::optional<std::string> CXVRegistryArquivo::LeTexto(std::string_view sChave, std::string_view sValor) {
    const std::lock_guard trava(m_mutex);
    Atualiza();
    return m_texto.LeTexto(sChave, sValor);
}

std::optional<XVUInt> CXVRegistryArquivo::LeNumero(std::string_view sChave, std::string_view sValor) {
    const std::lock_guard trava(m_mutex);
    Atualiza();
    return m_texto.LeNumero(sChave, sValor);
}

void CXVRegistryArquivo::Atualiza() {
    const std::string sCaminho = XVAmbienteSO::GetVariavelAmbiente(k_pszVariavel).value_or(std::string());
    const std::filesystem::path caminho = CaminhoUtf8(sCaminho);
    std::error_code erro;
    // A pipe or device would block the reader.
    if (sCaminho.empty() || !std::filesystem::is_regular_file(caminho, erro)) {
        m_instante.reset();
        m_texto.Carrega({});
        return;
    }
    const std::filesystem::file_time_type instante = std::filesystem::last_write_time(caminho, erro);
    const std::uintmax_t uiTamanho = erro ? 0 : std::filesystem::file_size(caminho, erro);
    if (!erro && m_instante == instante && m_uiTamanho == uiTamanho && m_sCaminho == sCaminho) {
        return;
    }
    std::string sConteudo;
    if (!erro && uiTamanho <= k_uiTamanhoMaximo) {
        sConteudo.resize(static_cast<std::size_t>(uiTamanho));
        std::ifstream arquivo(caminho, std::ios::binary);
        arquivo.read(sConteudo.data(), static_cast<std::streamsize>(sConteudo.size()));
        sConteudo.resize(static_cast<std::size_t>(arquivo.gcount()));
    }
    m_sCaminho = sCaminho;
    m_instante = instante;
    m_uiTamanho = uiTamanho;
    m_texto.Carrega(sConteudo);
}
