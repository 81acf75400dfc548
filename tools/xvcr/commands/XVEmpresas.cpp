#include "tools/xvcr/commands/XVEmpresas.h"

#include <algorithm>

#include "support/XVAmbiente.h"
#include "tools/xvcr/text/XVArquivoSaida.h"
#include "tools/xvcr/text/XVErros.h"

std::vector<std::string> XVListaEmpresas(const std::string& sDiretorioModulo) {
    std::error_code erro;
    std::filesystem::directory_iterator entrada(XVCaminhoDeUtf8(sDiretorioModulo), erro);
    std::vector<std::string> listaEmpresas;
    for (; !erro && entrada != std::filesystem::directory_iterator(); entrada.increment(erro)) {
        const std::u8string sNome = entrada->path().filename().u8string();
        std::string sEmpresa(sNome.begin(), sNome.end());
        if (!CAmbienteXV::EhEmpresaValida(sEmpresa)) continue;
        const std::string sBase = CAmbienteXV::MontaPathDados(k_eModuloBase, sDiretorioModulo, sEmpresa);
        std::error_code erroDaBase;  // who may not look into one company sees the others
        if (std::filesystem::is_directory(XVCaminhoDeUtf8(sBase), erroDaBase))
            listaEmpresas.push_back(std::move(sEmpresa));
    }
    if (erro) XVFalha("não foi possível listar o diretório \"" + sDiretorioModulo + "\"");
    std::sort(listaEmpresas.begin(), listaEmpresas.end());
    return listaEmpresas;
}
