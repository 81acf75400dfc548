// acompanha: new and changed integrations of one or many companies, as JSON Lines, while they are recorded.
#include <memory>

#include "platform/XVConsole.h"
#include "platform/XVInterrupcao.h"
#include "platform/XVPlataforma.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/commands/XVSeguidas.h"
#include "tools/xvcr/text/XVLeitorLinhas.h"

namespace {

constexpr XVUInt k_ulEntreRodadas = 250;  // milliseconds
// Also where nothing comes: whoever reads knows that it has all, and a reader that is gone is noticed.
constexpr unsigned k_uiRodadasEntreSinais = 8;

struct SPedidoAcompanha {
    SSelecaoSeguidas selecao;
    bool bUmaVez = false;
    bool bSemTextos = false;
    XVUInt ulPor = 0;  // seconds; 0: until it is interrupted
};

std::string LeToken(std::string_view sTexto, SSelecaoSeguidas* pSelecao) {
    SFicha ficha;
    if (!SFicha::DeString(sTexto, &ficha)) return "isto não é um token de \"xvcr acompanha\"";
    const std::string sEmpresa = ficha.sEmpresa;
    const bool bUnico = pSelecao->mapFichas.try_emplace(sEmpresa, std::move(ficha)).second;
    return bUnico ? std::string() : "há mais de um token da empresa " + sEmpresa;
}

// One token a line.
std::string LeTokens(const std::string& sArquivo, SSelecaoSeguidas* pSelecao) {
    constexpr std::size_t k_uiLimiteLinha = 1024;
    const std::unique_ptr<IXVFonteBytes> pFonte = XVAbreFonte(sArquivo);
    CXVLeitorLinhas leitor(*pFonte, k_uiLimiteLinha);
    std::string sLinha;
    for (;;) {
        const CXVLeitorLinhas::EResultado eResultado = leitor.Proxima(&sLinha);
        if (eResultado == CXVLeitorLinhas::EResultado::eFim) return {};
        if (eResultado == CXVLeitorLinhas::EResultado::eLinha && sLinha.empty()) continue;
        const std::string sErro = LeToken(sLinha, pSelecao);
        if (!sErro.empty()) return "linha " + std::to_string(leitor.GetNumero()) + ": " + sErro;
    }
}

void Segue(const SPedidoAcompanha& rPedido, CXVSeguidas& rSeguidas, CXVSaida& rSaida) {
    IXVRelogio& rRelogio = XVPlataforma::Relogio();
    const XVUInt ulInicio = rRelogio.GetTicks();
    const XVUInt64 uiPor = XVUInt64{rPedido.ulPor} * 1000;  // milliseconds
    for (unsigned uiRodada = 1;; ++uiRodada) {
        const bool bEscreveu = rSeguidas.Rodada();
        if (bEscreveu || uiRodada % k_uiRodadasEntreSinais == 0)
            rSaida.LinhaJson(XVJson{{"evento", "emDia"}});
        rSaida.Termina();
        if (rPedido.bUmaVez || rSeguidas.FalhamTodas() || XVInterrupcao::Pedida()) return;
        if (uiPor != 0 && rRelogio.GetTicks() - ulInicio >= uiPor) return;
        rRelogio.Dorme(k_ulEntreRodadas);
    }
}

void Executa(const SPedidoAcompanha& rPedido, CXVContexto& rContexto) {
    if (rContexto.bServidor) XVErroDeUso("--servidor: este comando lê os arquivos da própria base");
    rContexto.CompletaAcesso();
    const SAcompanha tudo{rContexto, rContexto.GetDiretorioQueExiste(),
                          rPedido.bSemTextos ? 0 : k_ullLeTextos, XVInterrupcao::Pedida};
    if (!XVInterrupcao::Observa()) XVFalha("não foi possível preparar a interrupção do acompanhamento");
    XVConsole::CanoSemLeitorEhFalha();
    CXVSeguidas seguidas(rPedido.selecao, tudo);
    Segue(rPedido, seguidas, rContexto.saida);
}

}  // namespace

void XVAdicionaAcompanha(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pPedido = std::make_shared<SPedidoAcompanha>();
    SSelecaoSeguidas& rSelecao = pPedido->selecao;
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "acompanha", "Escreve as integrações novas e alteradas à medida que são gravadas",
        "  xvcr acompanha --empresa 001,002\n"
        "  xvcr acompanha --todas --desde-o-inicio --tokens tokens.txt\n"
        "  xvcr acompanha --empresa 001 --uma-vez --desde-o-inicio > integracoes.jsonl\n"
        "Uma linha JSON por integração, lida da base depois que o log geral a anunciou. O token de uma\n"
        "linha diz até onde o log está contado: com ele um acompanhamento continua depois dela. Uma\n"
        "integração pode vir mais de uma vez, e vale a última; nenhuma que o log anunciou fica de fora.\n"
        "Sem token começa no fim do log ou, com --desde-o-inicio, por tudo o que a base tem.");
    pComando->add_flag("--todas", rSelecao.bTodas,
                       "Todas as empresas do diretório do módulo, também as novas");
    pComando
        ->add_option_function<std::vector<std::string>>(
            "--token",
            [&rSelecao](const std::vector<std::string>& lista) {
                for (const std::string& rToken : lista)
                    if (const std::string sErro = LeToken(XVDesprotege(rToken), &rSelecao); !sErro.empty())
                        XVErroDeUso("--token: " + sErro);
            },
            "Continua depois da linha que trouxe este token; um por empresa")
        ->type_name("TOKEN")
        ->allow_extra_args(false);
    XVOpcao(*pComando, "--tokens", "ARQUIVO|-", "O mesmo, com um token por linha",
            [&rSelecao](std::string_view s) { return LeTokens(std::string(s), &rSelecao); });
    pComando->add_flag("--desde-o-inicio", rSelecao.bDesdeOInicio,
                       "Empresa sem token: primeiro tudo o que a base tem");
    CLI::Option* pUmaVez = pComando->add_flag("--uma-vez", pPedido->bUmaVez,
                                              "Termina quando não há mais o que contar (para o cron)");
    pComando->add_flag("--sem-textos", pPedido->bSemTextos, "Não lê os três textos");
    XVOpcaoContagem(*pComando, "--por", "SEGUNDOS", "Termina depois deste tempo", &pPedido->ulPor)
        ->excludes(pUmaVez);
    XVDefineAcao(pComando, rContexto, [pPedido, &rContexto] { Executa(*pPedido, rContexto); });
}
