// empresas: which companies have a store in the module directory.
#include <algorithm>

#include "support/XVAmbiente.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVListaEmpresas.h"
#include "tools/xvcr/text/XVArquivoSaida.h"

std::vector<std::string> XVListaEmpresas(const std::string& sDiretorio) {
    std::error_code erro;
    std::filesystem::directory_iterator entrada(XVCaminhoDeUtf8(sDiretorio), erro);
    std::vector<std::string> listaEmpresas;
    for (; !erro && entrada != std::filesystem::directory_iterator(); entrada.increment(erro)) {
        const std::u8string sNome = entrada->path().filename().u8string();
        std::string sEmpresa(sNome.begin(), sNome.end());
        if (!CAmbienteXV::EhEmpresaValida(sEmpresa)) continue;
        const std::string sBase = CAmbienteXV::MontaPathDados(k_eModuloBase, sDiretorio, sEmpresa);
        std::error_code erroDaBase;  // who may not look into one company sees the others
        if (std::filesystem::is_directory(XVCaminhoDeUtf8(sBase), erroDaBase))
            listaEmpresas.push_back(std::move(sEmpresa));
    }
    if (erro) XVFalha("não foi possível listar o diretório \"" + sDiretorio + "\"");
    std::sort(listaEmpresas.begin(), listaEmpresas.end());
    return listaEmpresas;
}

namespace {

void Executa(CXVContexto& rContexto) {
    if (rContexto.bServidor) XVErroDeUso("--servidor: as empresas são as do diretório do módulo");
    rContexto.CompletaAcesso();
    const std::string sDiretorio = rContexto.GetDiretorioQueExiste();
    const std::vector<std::string> listaEmpresas = XVListaEmpresas(sDiretorio);
    for (const std::string& rEmpresa : listaEmpresas) {
        if (rContexto.saida.EhJson())
            rContexto.saida.LinhaJson(XVJson{{"empresa", rEmpresa}});
        else
            rContexto.saida.Linha(rEmpresa);
    }
    if (listaEmpresas.empty() && !rContexto.saida.EhJson())
        rContexto.saida.Linha("nenhuma empresa em \"" + sDiretorio + "\"");
}

}  // namespace

void XVAdicionaEmpresas(CLI::App& rRaiz, CXVContexto& rContexto) {
    CLI::App* pComando =
        XVAdicionaComando(rRaiz, "empresas", "Lista as empresas que têm base no diretório do módulo",
                          "  xvcr empresas\n"
                          "  xvcr empresas --diretorio . --json");
    XVDefineAcao(pComando, rContexto, [&rContexto] { Executa(rContexto); });
}
