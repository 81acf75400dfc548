// verifica: is the store whole? Reads all of it and changes nothing.
#include <memory>

#include "client/XVChamador.h"
#include "client/XVRegistryComDiretorio.h"
#include "platform/XVConsole.h"
#include "support/XVAmbiente.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVSaidaVerificacao.h"
#include "tools/xvcr/output/XVProgresso.h"

namespace {

void Executa(bool bSela, CXVContexto& rContexto) {
    if (rContexto.bServidor) XVErroDeUso("--servidor: a verificação é feita na própria base");
    if (rContexto.loja.bSomenteLeitura && bSela)
        XVErroDeUso("--leitura não vale com --sela, que grava os selos");
    rContexto.CompletaAcesso();
    rContexto.ExigeBase();
    const CXVUsoDoDiretorio diretorio(rContexto.loja.sDiretorio);
    std::string sDiretorio;
    XVConfere(CAmbienteXV::GetPathDados(XV_DF, rContexto.identificacao.sEmpresa, &sDiretorio));
    SVerificacao verificacao;
    CXVProgresso progresso(XVConsole::ErroEhTerminal());
    const CXVChamador chamador(rContexto.identificacao);
    CXVVerificacao executor(sDiretorio, chamador, [&](XVUInt64 uiFeitos, XVUInt64 uiTotal) {
        progresso.Mostra([&] {
            return "verificando: " + std::to_string(uiTotal == 0 ? 100 : uiFeitos * 100 / uiTotal) + "%";
        });
    });
    XVConfere(executor.Executa(&verificacao));
    XVMostraVerificacao(rContexto.saida, rContexto.identificacao.sEmpresa, verificacao);
    if (!verificacao.EhIntegra()) rContexto.eSaida = ESaida::eFalha;
    if (!bSela) return;
    const HRESULT hr = executor.Sela();
    XVConfere(hr);
    if (hr == S_FALSE) XVFalha("a base não foi selada: um selo sobre um dano o esconderia");
    if (!rContexto.saida.EhJson()) rContexto.saida.Linha("A base foi selada.");
}

}  // namespace

void XVAdicionaVerifica(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pbSela = std::make_shared<bool>(false);
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "verifica", "Verifica se a base está íntegra, sem bloqueá-la nem mudá-la",
        "  xvcr verifica --empresa 001\n"
        "  xvcr verifica --empresa 001 --sela\n"
        "Diz quantas integrações estão inteiras, quais não estão e por quê, e o que fazer.\n"
        "Com --sela guarda somas de todos os arquivos: uma verificação posterior acusa cada bloco\n"
        "que mudou sem que a base o tenha gravado.\n"
        "Saída: 0 íntegra, 1 não, 2 linha de comando errada.");
    pComando->add_flag("--sela", *pbSela, "Se a base estiver íntegra, guarda as somas dos arquivos");
    XVDefineAcao(pComando, rContexto, [pbSela, &rContexto] { Executa(*pbSela, rContexto); });
}
