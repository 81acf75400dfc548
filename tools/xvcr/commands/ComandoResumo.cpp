// resumo: what a store holds, and first what of it needs somebody.
#include <memory>

#include "client/XVRegistryComDiretorio.h"
#include "platform/XVConsole.h"
#include "support/XVAmbiente.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVEmpresas.h"
#include "tools/xvcr/commands/XVSaidaResumo.h"
#include "tools/xvcr/output/XVProgresso.h"
#include "tools/xvcr/text/XVErros.h"

namespace {

struct SOpcoesResumo {
    bool bTodas = false;
    bool bPrometheus = false;
};

std::vector<std::string> Empresas(const SOpcoesResumo& rOpcoes, CXVContexto& rContexto) {
    if (rOpcoes.bTodas) return XVListaEmpresas(rContexto.GetDiretorioQueExiste());
    rContexto.ExigeBase();
    return {rContexto.identificacao.sEmpresa};
}

SResumoLoja Resume(const std::string& sEmpresa, const SOpcoesResumo& rOpcoes) {
    std::string sDiretorio;
    XVConfere(CAmbienteXV::GetPathDados(k_eModuloBase, sEmpresa, &sDiretorio));
    CXVResumoLoja executor(
        sDiretorio, rOpcoes.bPrometheus ? CXVResumoLoja::EAlcance::eNumeros : CXVResumoLoja::EAlcance::eTudo);
    CXVProgresso progresso(XVConsole::ErroEhTerminal());
    XVUInt64 uiLidos = 0;
    executor.m_fnProgresso = [&](XVUInt64 uiBytes) {
        uiLidos += uiBytes;
        progresso.Mostra([&] { return sEmpresa + ": " + std::to_string(uiLidos >> 20) + " MB lidos"; });
    };
    SResumoLoja resumo;
    XVConfere(executor.Executa(&resumo));
    return resumo;
}

// Of several companies one that cannot be resumed is named, and the others are shown.
void Executa(const SOpcoesResumo& rOpcoes, CXVContexto& rContexto) {
    CXVSaida& rSaida = rContexto.saida;
    if (rContexto.bServidor) XVErroDeUso("--servidor: o resumo é feito na própria base");
    if (rOpcoes.bPrometheus && rSaida.EhJson()) XVErroDeUso("--prometheus não vale junto com --json");
    rContexto.CompletaAcesso();
    const std::vector<std::string> listaEmpresas = Empresas(rOpcoes, rContexto);
    const CXVUsoDoDiretorio diretorio(rContexto.loja.sDiretorio);
    CXVPrometheus prometheus;
    bool bPrimeira = true;
    for (const std::string& rEmpresa : listaEmpresas) {
        try {
            const SResumoLoja resumo = Resume(rEmpresa, rOpcoes);
            if (rOpcoes.bPrometheus)
                prometheus.Inclui(rEmpresa, resumo);
            else if (rSaida.EhJson())
                rSaida.LinhaJson(XVResumoEmJson(rEmpresa, resumo));
            else
                XVMostraResumo(rSaida, rEmpresa, resumo, bPrimeira);
            bPrimeira = false;
        } catch (const CXVErro& rErro) {
            if (!rOpcoes.bTodas) throw;
            XVEscreveErro("empresa " + rEmpresa + ": " + rErro.what());
            rContexto.eSaida = ESaida::eFalha;
        }
    }
    if (rOpcoes.bPrometheus) rSaida.Escreve(prometheus.Monta());
}

}  // namespace

void XVAdicionaResumo(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pOpcoes = std::make_shared<SOpcoesResumo>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "resumo", "Resume o que a base tem, e primeiro o que nela espera por alguém",
        "  xvcr resumo\n"
        "  xvcr resumo --todas --json\n"
        "  xvcr resumo --todas --prometheus\n"
        "As pendentes vêm por idade, as que falharam por mensagem, com a última como exemplo:\n"
        "o que nas mensagens tem algarismos conta como igual. Nada é bloqueado nem mudado.");
    pComando->add_flag("--todas", pOpcoes->bTodas, "Todas as empresas do diretório do módulo");
    pComando->add_flag("--prometheus", pOpcoes->bPrometheus,
                       "Só números e idades, no formato de texto do Prometheus; não lê texto algum");
    XVDefineAcao(pComando, rContexto, [pOpcoes, &rContexto] { Executa(*pOpcoes, rContexto); });
}
