#include "tools/xvcr/commands/XVLugarDaCopia.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "middleware/copia/XVManifestoCopia.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVArquivoRecusado.h"
#include "tools/xvcr/text/XVArquivoSaida.h"
#include "tools/xvcr/text/XVErros.h"

namespace {

using std::filesystem::path;

bool EhOMesmo(const path& rUm, const path& rOutro) {
    std::error_code erro;
    return std::filesystem::equivalent(rUm, rOutro, erro) && !erro;
}

// Links are followed, as far as the path is there.
path Absoluto(const path& rCaminho) {
    std::error_code erro;
    path resultado = std::filesystem::weakly_canonical(std::filesystem::absolute(rCaminho), erro);
    if (erro) XVFalha("não foi possível chegar à pasta do destino ou da base: " + erro.message());
    return resultado;
}

// Whether rDentro is rFora or lies in it, by what the file system takes for the same.
bool FicaEm(const path& rDentro, const path& rFora) {
    for (path p = Absoluto(rDentro);; p = p.parent_path()) {
        if (EhOMesmo(p, rFora)) return true;
        if (!p.has_relative_path()) return false;
    }
}

// What may lie beside the copies: those of other companies, and the logs of programs that looked at them.
bool EhDeCopias(const std::filesystem::directory_entry& rEntrada) {
    std::error_code erro;
    if (rEntrada.is_directory(erro))
        return std::filesystem::exists(rEntrada.path() / k_pszManifestoCopia, erro) ||
               std::filesystem::is_empty(rEntrada.path(), erro);
    const std::u8string sNome = rEntrada.path().filename().u8string();
    return sNome.starts_with(u8"XVProfiler") && sNome.ends_with(u8".log");
}

}  // namespace

void XVExigeLugarDaCopia(const std::string& sDestino, const std::string& sOrigem,
                         const std::vector<std::string>& aPastas) {
    const path origem = XVCaminhoDeUtf8(sOrigem);
    const path destino = XVCaminhoDeUtf8(sDestino);
    const char* pszNaBase = "o destino fica dentro da própria base; copie para outra pasta";
    if (FicaEm(destino, origem)) XVFalha(pszNaBase);
    if (FicaEm(origem, destino)) XVFalha("a base fica dentro do destino; copie para outra pasta");
    for (const std::string& rPasta : aPastas)
        if (FicaEm(XVCaminhoDeUtf8(rPasta), origem)) XVFalha(pszNaBase);
    std::error_code erro;
    if (!std::filesystem::exists(destino, erro)) return;
    if (!std::filesystem::is_directory(destino, erro)) XVFalha("o destino não é uma pasta");
    const path daEmpresa = XVCaminhoDeUtf8(aPastas.front());
    for (std::filesystem::directory_iterator entrada(destino, erro), fim; !erro && entrada != fim;
         entrada.increment(erro))
        if (!EhDeCopias(*entrada) && !EhOMesmo(entrada->path(), daEmpresa))
            XVFalha("o destino tem arquivos e não é de cópias; nada foi mudado nele");
    if (erro) XVFalha("não foi possível listar a pasta \"" + sDestino + '"');
}

std::string XVDescreveFalhaNoDestino(HRESULT hr, const std::string& sDestino) {
    std::error_code erro;
    const bool bNaoFeito = (hr == eFileNotFound || hr == eBadPath) &&
                           XVArquivoRecusado::Descreve(hr).starts_with(sDestino) &&
                           !std::filesystem::is_directory(XVCaminhoDeUtf8(sDestino), erro);
    return bNaoFeito ? "não foi possível criar a pasta \"" + sDestino + "\"; confira o caminho"
                     : XVDescreveFalha(hr);
}
