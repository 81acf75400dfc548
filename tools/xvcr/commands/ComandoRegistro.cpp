// registro: the trace logs, decoded.
#include <charconv>
#include <map>
#include <memory>

#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"
#include "support/messages/XVMensagens.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/logs/XVArquivosLog.h"
#include "tools/xvcr/logs/XVFiltroLog.h"
#include "tools/xvcr/text/XVTextoTela.h"

namespace {

constexpr XVUInt k_ulEntreLeituras = 250;  // milliseconds

struct SPedidoLog {
    SOrigemLog origem;
    SFiltroLog filtro;
    CLI::Option* pPor = nullptr;
    XVUInt ulPor = 0;      // seconds that --segue lasts; 0: until it is interrupted
    XVUInt ulUltimos = 0;  // 0: all
};

const SMensagemCodigo* MensagemDoCodigo(std::string_view sCodigo) {
    constexpr std::size_t k_uiPrefixo = 2;  // "0x"
    if (sCodigo.size() <= k_uiPrefixo) return nullptr;
    XVUInt ulCodigo = 0;
    const auto lido =
        std::from_chars(sCodigo.data() + k_uiPrefixo, sCodigo.data() + sCodigo.size(), ulCodigo, 16);
    return lido.ec == std::errc() ? XVBuscaMensagem(XVHResult(ulCodigo)) : nullptr;
}

XVJson ParaJson(const SLinhaLog& rLinha) {
    XVJson json = XVJson::object();
    const auto inclui = [&](const char* pszNome, const std::string& sValor) {
        if (!sValor.empty()) XVRegistroJson::Inclui(json, pszNome, sValor);
    };
    inclui("DataHora", rLinha.sDataHora);
    inclui("Tipo", rLinha.sTipo);
    inclui("Empresa", rLinha.sEmpresa);
    inclui("Usuario", rLinha.sUsuario);
    inclui("Sessao", rLinha.sSessao);
    inclui("Processo", rLinha.sProcesso);
    inclui("UsuarioLocal", rLinha.sUsuarioLocal);
    inclui("ThreadID", rLinha.sThread);
    inclui("ClasseFuncao", rLinha.sFuncao);
    inclui("Arquivo", rLinha.sArquivo);
    inclui("Linha", rLinha.sLinha);
    inclui("Codigo", rLinha.sCodigo);
    if (const SMensagemCodigo* pMensagem = MensagemDoCodigo(rLinha.sCodigo); pMensagem != nullptr)
        inclui("Nome", std::string(pMensagem->sNome));
    inclui("Expressao", rLinha.sExpressao);
    inclui("Mensagem", rLinha.sMensagem);
    inclui("Duracao", rLinha.sDuracao);
    inclui("MemoriaComponente", rLinha.sMemoria);
    inclui("DeltaMemoria", rLinha.sDeltaMemoria);
    inclui("Guid", rLinha.sGuid);
    inclui("Perdidas", rLinha.sPerdidas);
    for (const std::string& rParametro : rLinha.listaParametros) {
        XVJson texto = XVTextoTela::Escapa(rParametro, false);
        json["Parametros"].push_back(std::move(texto));
    }
    return json;
}

void AnexaColuna(std::string& sLinha, const std::string& sValor, std::size_t uiLargura) {
    const std::string sCelula = XVTextoTela::Escapa(sValor, false);
    const std::size_t uiTamanho = XVTextoTela::GetLargura(sCelula);
    sLinha += sCelula;
    sLinha.append(uiTamanho < uiLargura ? uiLargura - uiTamanho : 0, ' ');
    sLinha += "  ";
}

// A small number for each call, the same at its entry and its exit, in place of the Guid that joins them.
class CXVChamadas {
  public:
    // 0 for what belongs to no call.
    unsigned Numero(const SLinhaLog& rLinha) {
        if (rLinha.sGuid.empty() || (rLinha.sTipo != "ENTROU" && rLinha.sTipo != "SAIU")) return 0;
        const auto [p, bNova] = m_mapAbertas.try_emplace(rLinha.sGuid, m_uiUltima + 1);
        if (bNova) ++m_uiUltima;
        const unsigned uiNumero = p->second;
        if (rLinha.sTipo == "SAIU") m_mapAbertas.erase(p);
        return uiNumero;
    }

  private:
    std::map<std::string, unsigned> m_mapAbertas;
    unsigned m_uiUltima = 0;
};

// Columns of a fixed least width, so that records can be shown as they come.
std::string ParaPessoa(const SLinhaLog& rLinha, CXVChamadas& rChamadas) {
    std::string sLinha;
    AnexaColuna(sLinha, rLinha.sDataHora, 19);
    AnexaColuna(sLinha, rLinha.sTipo, 8);
    AnexaColuna(sLinha, rLinha.sEmpresa.empty() ? "-" : rLinha.sEmpresa, 6);
    AnexaColuna(sLinha, "u" + rLinha.sUsuario + "/s" + rLinha.sSessao, 9);
    AnexaColuna(sLinha, rLinha.sCodigo.empty() ? "-" : rLinha.sCodigo, 10);
    AnexaColuna(sLinha, rLinha.sFuncao, 44);
    if (!rLinha.sArquivo.empty()) AnexaColuna(sLinha, rLinha.sArquivo + ':' + rLinha.sLinha, 26);
    const SMensagemCodigo* pMensagem = MensagemDoCodigo(rLinha.sCodigo);
    const std::string_view sNome = pMensagem == nullptr ? std::string_view() : pMensagem->sNome;
    if (!sNome.empty()) AnexaColuna(sLinha, std::string(sNome), 0);
    // A code that a function decides on itself has only its own name as expression.
    if (!rLinha.sExpressao.empty() && rLinha.sExpressao != sNome) AnexaColuna(sLinha, rLinha.sExpressao, 0);
    if (rLinha.sCodigo.empty()) AnexaColuna(sLinha, rLinha.sMensagem, 0);
    if (const unsigned uiChamada = rChamadas.Numero(rLinha); uiChamada != 0)
        AnexaColuna(sLinha, "#" + std::to_string(uiChamada), 0);
    if (rLinha.sTipo == "SAIU" && !rLinha.sMemoria.empty() && rLinha.sMemoria != "0")
        AnexaColuna(sLinha, "memória " + rLinha.sMemoria + " (" + rLinha.sDeltaMemoria + ")", 0);
    if (!rLinha.sDuracao.empty()) AnexaColuna(sLinha, rLinha.sDuracao + " ms", 0);
    // A call's, or what a failure without expression says of its file.
    if (!rLinha.sDuracao.empty() || (!rLinha.sCodigo.empty() && rLinha.sExpressao.empty()))
        for (const std::string& rParametro : rLinha.listaParametros) AnexaColuna(sLinha, rParametro, 0);
    if (!rLinha.sPerdidas.empty()) AnexaColuna(sLinha, "(" + rLinha.sPerdidas + " antes não gravadas)", 0);
    sLinha.resize(sLinha.find_last_not_of(' ') + 1);
    return sLinha;
}

// What is there now; only the last ones where a number of them is asked for.
void MostraExistentes(const SPedidoLog& rPedido, CXVLeitoresLog& rLeitores, CXVSaida& rSaida,
                      const std::function<void(const SLinhaLog&)>& fMostra) {
    const auto fAceita = [&](const SLinhaLog& rLinha) { return rPedido.filtro.Aceita(rLinha); };
    if (rPedido.ulUltimos > 0) {
        for (const SLinhaLog& rLinha : rLeitores.LeUltimos(rPedido.ulUltimos, fAceita)) fMostra(rLinha);
    } else {
        rLeitores.LeNovos([&](const SLinhaLog& rLinha) {
            if (fAceita(rLinha)) fMostra(rLinha);
        });
    }
    rSaida.Termina();
}

void Segue(const SPedidoLog& rPedido, CXVLeitoresLog& rLeitores, CXVSaida& rSaida,
           const std::function<void(const SLinhaLog&)>& fMostra) {
    IXVRelogio& rRelogio = XVPlataforma::Relogio();
    const XVUInt ulInicio = rRelogio.GetTicks();
    const XVUInt64 uiPor = XVUInt64{rPedido.ulPor} * 1000;  // milliseconds
    while (uiPor == 0 || rRelogio.GetTicks() - ulInicio < uiPor) {
        rRelogio.Dorme(k_ulEntreLeituras);
        rLeitores.LeNovos([&](const SLinhaLog& rLinha) {
            if (rPedido.filtro.Aceita(rLinha)) fMostra(rLinha);
        });
        rSaida.Termina();
    }
}

// The company's own log, or the programs' where no company is given.
std::string DiretorioDosLogs(CXVContexto& rContexto, bool bPerfil) {
    rContexto.CompletaAcesso();
    const bool bDaEmpresa = !bPerfil && !rContexto.identificacao.sEmpresa.empty();
    if (!bDaEmpresa) return rContexto.GetDiretorioQueExiste();
    rContexto.ExigeBase();
    const std::string sDiretorio = rContexto.GetDiretorioModulo();
    return CAmbienteXV::MontaPathDados(k_eModuloBase, sDiretorio, rContexto.identificacao.sEmpresa);
}

void Executa(SPedidoLog& rPedido, CXVContexto& rContexto) {
    if (rPedido.pPor->count() > 0 && !rPedido.origem.bSegue) XVErroDeUso("--por só vale com --segue");
    if (rPedido.origem.sArquivo.empty())
        rPedido.origem.sDiretorio = DiretorioDosLogs(rContexto, rPedido.origem.bPerfil);
    CXVSaida& rSaida = rContexto.saida;
    CXVChamadas chamadas;
    const auto fMostra = [&](const SLinhaLog& rLinha) {
        if (rSaida.EhJson())
            rSaida.LinhaJson(ParaJson(rLinha));
        else
            rSaida.Linha(ParaPessoa(rLinha, chamadas));
    };
    CXVLeitoresLog leitores(rPedido.origem);
    MostraExistentes(rPedido, leitores, rSaida, fMostra);
    if (rPedido.origem.bSegue) Segue(rPedido, leitores, rSaida, fMostra);
}

void AdicionaFiltro(CLI::App& rComando, SFiltroLog& rFiltro) {
    XVOpcao(rComando, "--de", "DATA-HORA", "Deste momento em diante (hora local)",
            [&rFiltro](std::string_view s) { return SFiltroLog::LeMomento(s, false, &rFiltro.sDe); });
    XVOpcao(rComando, "--ate", "DATA-HORA", "Até este momento (hora local)",
            [&rFiltro](std::string_view s) { return SFiltroLog::LeMomento(s, true, &rFiltro.sAte); });
    XVOpcaoSimples(rComando, "--funcao", "TEXTO", "Parte do nome da função", &rFiltro.sFuncao);
    XVOpcao(rComando, "--codigo", "CÓDIGO|NOME", "Código da falha",
            [&rFiltro](std::string_view s) { return SFiltroLog::LeCodigo(s, &rFiltro.sCodigo); });
    XVOpcaoSimples(rComando, "--da-empresa", "CÓDIGO", "Empresa de quem gerou a linha", &rFiltro.sEmpresa);
    const auto numero = [&](const char* pszNome, const char* pszDescricao, std::string* psValor) {
        XVOpcao(rComando, pszNome, "NÚMERO", pszDescricao, [psValor](std::string_view s) {
            XVUInt ulNumero = 0;
            std::string sErro = XVLeituraValor::Le(s, &ulNumero);
            if (sErro.empty()) *psValor = std::to_string(ulNumero);
            return sErro;
        });
    };
    numero("--do-usuario", "Usuário de quem gerou a linha", &rFiltro.sUsuario);
    numero("--da-sessao", "Sessão de quem gerou a linha", &rFiltro.sSessao);
}

std::string LeAnoMes(std::string_view sTexto, std::string* psAnoMes) {
    XVUInt ulAnoMes = 0;
    const bool bNumero = sTexto.size() == 6 && XVLeituraValor::Le(sTexto, &ulAnoMes).empty();
    if (!bNumero || ulAnoMes % 100 < 1 || ulAnoMes % 100 > 12) return "esperado um mês: AAAAMM";
    *psAnoMes = sTexto;
    return {};
}

}  // namespace

void XVAdicionaRegistro(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pPedido = std::make_shared<SPedidoLog>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "registro", "Mostra os logs de erros e de chamadas, decodificados",
        "  xvcr registro --empresa 001 --ultimos 20\n"
        "  xvcr registro --empresa 001 --codigo E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA --de 2026-11-21\n"
        "  xvcr registro --empresa 001 --segue --json\n"
        "Sem empresa, os logs dos programas, que ficam no diretório do módulo.");
    SOrigemLog& rOrigem = pPedido->origem;
    CLI::Option* pMes = XVOpcao(*pComando, "--mes", "AAAAMM", "Só o arquivo deste mês",
                                [&rOrigem](std::string_view s) { return LeAnoMes(s, &rOrigem.sAnoMes); });
    XVOpcaoSimples(*pComando, "--arquivo", "ARQUIVO", "Um arquivo de log pelo caminho", &rOrigem.sArquivo)
        ->excludes(pMes);
    pComando->add_flag("--perfil", rOrigem.bPerfil, "Entradas, saídas e criações de objetos em vez de erros")
        ->excludes(pMes);
    AdicionaFiltro(*pComando, pPedido->filtro);
    XVOpcaoContagem(*pComando, "--ultimos", "NÚMERO", "Só os últimos que há (padrão: todos)",
                    &pPedido->ulUltimos);
    pComando->add_flag("--segue", rOrigem.bSegue,
                       "Continua mostrando as linhas que chegam, até ser interrompido");
    pPedido->pPor = XVOpcaoValor(*pComando, "--por", "SEGUNDOS", "Com --segue: termina depois deste tempo",
                                 &pPedido->ulPor);
    XVDefineAcao(pComando, rContexto, [pPedido, &rContexto] { Executa(*pPedido, rContexto); });
}
