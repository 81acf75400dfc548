#include "tools/xvcr/XVAplicacao.h"

#include <algorithm>
#include <new>

#include "platform/XVAmbienteSO.h"
#include "support/trace/XVArquivoRecusado.h"
#include "tools/xvcr/XVFormatoAjuda.h"
#include "tools/xvcr/XVMensagensUso.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVCompleta.h"
#include "tools/xvcr/commands/XVOpcoes.h"

namespace {

constexpr XVUShort k_usMaiorUsuario = 65534;  // the one above stands for the conversion

void PoeEmPortugues(CLI::App& rRaiz) {
    rRaiz.formatter(std::make_shared<CXVFormatoAjuda>());
    rRaiz.set_help_flag("-h,--help", "Mostra esta ajuda");
    rRaiz.get_help_ptr()->group(k_szGrupoOpcoes);
    rRaiz.option_defaults()->group(k_szGrupoOpcoes);
}

void AdicionaOpcoesGlobais(CLI::App& rRaiz, CXVContexto& rContexto) {
    rRaiz.option_defaults()->group("Opções gerais");
    XVOpcaoSimples(rRaiz, "--diretorio", "PASTA",
                   "Diretório do módulo (ou XVCR_DIRETORIO; padrão: o da instalação)",
                   &rContexto.loja.sDiretorio);
    XVOpcaoSimples(rRaiz, "--empresa", "CÓDIGO", "Código da empresa (ou XVCR_EMPRESA)",
                   &rContexto.identificacao.sEmpresa);
    XVOpcao(rRaiz, "--usuario", "NÚMERO", "Usuário, de 0 a 65534 (padrão: 0)",
            [&rContexto](std::string_view s) {
                XVUShort usUsuario = 0;
                std::string sErro = XVLeituraValor::Le(s, &usUsuario);
                if (sErro.empty() ? usUsuario > k_usMaiorUsuario : sErro.starts_with("número acima"))
                    sErro = "o usuário vai de 0 a 65534";
                if (sErro.empty()) rContexto.identificacao.usUsuario = usUsuario;
                return sErro;
            });
    XVOpcaoValor(rRaiz, "--sessao", "NÚMERO", "Número da sessão (padrão: 0)",
                 &rContexto.identificacao.ulNumeroSessao);
    rRaiz.add_flag("--leitura", rContexto.loja.bSomenteLeitura,
                   "Só lê, sem bloquear: vale enquanto outro programa grava na mesma base");
    rRaiz.add_flag("--servidor", rContexto.bServidor,
                   "Usa o servidor do componente em vez de abrir a base aqui");
    rRaiz.add_flag_callback(
        "--json", [&rContexto] { rContexto.saida.SetJson(true); }, "Resultado em linhas JSON");
    rRaiz.option_defaults()->group(k_szGrupoOpcoes);
}

void AdicionaComandos(CLI::App& rRaiz, CXVContexto& rContexto) {
    XVAdicionaGrava(rRaiz, rContexto);
    XVAdicionaStatus(rRaiz, rContexto);
    XVAdicionaLe(rRaiz, rContexto);
    XVAdicionaBusca(rRaiz, rContexto);
    XVAdicionaAcompanha(rRaiz, rContexto);
    XVAdicionaCarrega(rRaiz, rContexto);
    XVAdicionaExporta(rRaiz, rContexto);
    XVAdicionaImporta(rRaiz, rContexto);
    XVAdicionaMapa(rRaiz, rContexto);
    XVAdicionaDataHora(rRaiz, rContexto);
    XVAdicionaPendencia(rRaiz, rContexto);
    XVAdicionaInstantanea(rRaiz, rContexto);
    XVAdicionaConsulta(rRaiz, rContexto);
    XVAdicionaConverte(rRaiz, rContexto);
    XVAdicionaVersao(rRaiz, rContexto);
    XVAdicionaResumo(rRaiz, rContexto);
    XVAdicionaVerifica(rRaiz, rContexto);
    XVAdicionaRecupera(rRaiz, rContexto);
    XVAdicionaCopia(rRaiz, rContexto);
    XVAdicionaRegistro(rRaiz, rContexto);
    XVAdicionaEmpresas(rRaiz, rContexto);
    XVAdicionaProvedores(rRaiz, rContexto);
    XVAdicionaExplica(rRaiz, rContexto);
    XVAdicionaCompleta(rRaiz, rContexto);
    XVAdicionaManual(rRaiz, rContexto);
}

// True when there is something to run; otherwise *piSaida is how the program ends.
bool LeArgumentos(CLI::App& rRaiz, const std::vector<std::string>& listaArgumentos, CXVSaida& rSaida,
                  int* piSaida) {
    if (std::string sErro = XVDescreveValorDemais(rRaiz, listaArgumentos); !sErro.empty())
        XVErroDeUso(std::move(sErro));
    try {
        std::vector<std::string> listaProtegida = XVProtegeArgumentos(listaArgumentos);
        std::reverse(listaProtegida.begin(), listaProtegida.end());
        rRaiz.parse(std::move(listaProtegida));
        return true;
    } catch (const CLI::CallForHelp&) {
        rSaida.Escreve(rRaiz.help());
        *piSaida = static_cast<int>(ESaida::eSucesso);
    } catch (const CLI::CallForVersion& rVersao) {
        rSaida.Linha(rVersao.what());
        *piSaida = static_cast<int>(ESaida::eSucesso);
    } catch (const CLI::ParseError& rErro) {
        XVErroDeUso(XVDescreveErroDeUso(rRaiz, listaArgumentos, rErro));
    }
    return false;
}

// What the shells' completion asks for; it is no command of the help.
int Completa(const CLI::App& rRaiz, const std::vector<std::string>& listaPalavras, CXVSaida& rSaida) {
    for (const std::string& rPalavra : XVCompletaPalavras(rRaiz, listaPalavras)) rSaida.Linha(rPalavra);
    rSaida.Termina();
    return static_cast<int>(ESaida::eSucesso);
}

int Executa(const std::vector<std::string>& listaArgumentos) {
    CXVContexto contexto;
    CLI::App raiz("Grava, lê e busca integrações de uma empresa", "xvcr");
    PoeEmPortugues(raiz);
    raiz.allow_windows_style_options(false);
    raiz.fallthrough();
    raiz.require_subcommand(1);
    raiz.set_version_flag("-V,--version", "xvcr " + XVAmbienteSO::GetVersaoExecutavel(),
                          "Mostra a versão do programa");
    AdicionaOpcoesGlobais(raiz, contexto);
    AdicionaComandos(raiz, contexto);
    raiz.footer(
        "\"xvcr COMANDO --help\" mostra as opções e os exemplos de um comando.\n"
        "Saída: 0 sucesso, 1 operação com falha, 2 linha de comando errada.");

    if (listaArgumentos.size() > 2 && listaArgumentos[0] == "completa" && listaArgumentos[1] == "palavras")
        return Completa(raiz, {listaArgumentos.begin() + 2, listaArgumentos.end()}, contexto.saida);
    try {
        int iSaida = 0;
        if (LeArgumentos(raiz, listaArgumentos, contexto.saida, &iSaida)) {
            contexto.fAcao();
            contexto.Fecha();
            iSaida = static_cast<int>(contexto.eSaida);
        }
        contexto.saida.Termina();
        return iSaida;
    } catch (const CXVErro& rErro) {
        if (rErro.GetSaida() != ESaida::eUso) throw;
        XVErroDeUso(rErro.what() + XVOndeHaAjuda(raiz, listaArgumentos));
    }
}

}  // namespace

int XVExecutaAplicacao(const std::vector<std::string>& listaArgumentos) {
    const CXVArquivosRecusados recusados;  // for the names in messages
    try {
        return Executa(listaArgumentos);
    } catch (const CXVErro& rErro) {
        XVEscreveErro(rErro.what());
        return static_cast<int>(rErro.GetSaida());
    } catch (const std::bad_alloc&) {
        XVEscreveErro("memória insuficiente");
    } catch (const std::exception& rErro) {
        XVEscreveErro(rErro.what());
    }
    return static_cast<int>(ESaida::eFalha);
}
