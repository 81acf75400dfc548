// empresas: which companies have a store in the module directory.
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVEmpresas.h"

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
