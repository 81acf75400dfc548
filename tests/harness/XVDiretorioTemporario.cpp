#include "tests/harness/XVDiretorioTemporario.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"

namespace fs = std::filesystem;

namespace {

fs::path DeUtf8(const std::string& sTexto) {
    return fs::path(std::u8string(sTexto.begin(), sTexto.end()));
}

std::string ParaUtf8(const fs::path& rCaminho) {
    const std::u8string sTexto = rCaminho.u8string();
    return std::string(sTexto.begin(), sTexto.end());
}

}  // namespace

CXVDiretorioTeste::CXVDiretorioTeste()
    : m_caminho(fs::temp_directory_path() / ("xvteste-" + XVAmbienteSO::NovoGuid())),
      m_sCaminho(ParaUtf8(m_caminho)) {
    fs::create_directories(m_caminho);
}

CXVDiretorioTeste::~CXVDiretorioTeste() {
    std::error_code erro;
    // Windows refuses to remove a read-only file.
    for (fs::recursive_directory_iterator it(m_caminho, erro), fim; !erro && it != fim; it.increment(erro)) {
        std::error_code erroPermissao;
        fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, erroPermissao);
    }
    fs::remove_all(m_caminho, erro);
}

std::string CXVDiretorioTeste::Junta(const std::string& sNome) const {
    return XVPlataforma::SistemaArquivosNativo().Junta(m_sCaminho, sNome);
}

void CXVDiretorioTeste::CriaArquivo(const std::string& sNome, const std::string& sConteudo) const {
    std::ofstream arquivo(m_caminho / DeUtf8(sNome), std::ios::binary | std::ios::trunc);
    arquivo.write(sConteudo.data(), static_cast<std::streamsize>(sConteudo.size()));
}

std::optional<std::string> CXVDiretorioTeste::LeConteudo(const std::string& sNome) const {
    std::ifstream arquivo(m_caminho / DeUtf8(sNome), std::ios::binary);
    if (!arquivo) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(arquivo), {});
}

void CXVDiretorioTeste::SetSomenteLeitura(const std::string& sNome, bool bSomenteLeitura) const {
    constexpr fs::perms k_escrita = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    fs::permissions(m_caminho / DeUtf8(sNome), bSomenteLeitura ? k_escrita : fs::perms::owner_write,
                    bSomenteLeitura ? fs::perm_options::remove : fs::perm_options::add);
}
