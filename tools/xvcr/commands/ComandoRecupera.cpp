// recupera: a new store with everything of a damaged one whose bytes can be read.
#include <cstdio>
#include <memory>

#include "client/XVChamador.h"
#include "client/XVRegistryComDiretorio.h"
#include "middleware/verificacao/XVRecuperacao.h"
#include "platform/XVConsole.h"
#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVLugarDaCopia.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/commands/XVSaidaVerificacao.h"
#include "tools/xvcr/output/XVProgresso.h"
#include "tools/xvcr/text/XVTextoTela.h"

namespace {

struct SRecupera {
    std::string sPara;
    bool bVersaoAtual = false;
};

constexpr std::size_t k_uiMostradas = 50;

// Beside the companies of the module directory, named for the moment.
std::string PastaNova(const std::string& sDiretorioModulo) {
    const SDataHora agora = XVPlataforma::Relogio().AgoraLocal();
    char szNome[64];
    std::snprintf(szNome, sizeof(szNome), "recuperada-%04u%02u%02u-%02u%02u%02u", unsigned{agora.usAno},
                  unsigned{agora.ucMes}, unsigned{agora.ucDia}, unsigned{agora.ucHora},
                  unsigned{agora.ucMinuto}, unsigned{agora.ucSegundo});
    return XVPlataforma::SistemaArquivos().Junta(sDiretorioModulo, szNome);
}

// The motives of an integration by the names and sentences of the findings.
template <class TFn>
void PercorreMotivos(XVUInt ulMotivos, TFn fn) {
    for (unsigned i = 0; i < k_uiMotivos; ++i)
        if ((ulMotivos & (1U << i)) != 0) fn(XVDescreveAchado(static_cast<EAchado>(i)));
}

// A name may come out of a damaged list.
XVJson ArquivoEmJson(const char* pszChave, const std::string& sArquivo) {
    XVJson json = XVJson::object();
    XVRegistroJson::Inclui(json, pszChave, sArquivo);
    return json;
}
std::string ArquivoEmTexto(const std::string& sArquivo) {
    return XVTextoTela::Escapa(sArquivo, false);
}

void MostraJson(CXVSaida& rSaida, const SRecuperacao& r, const std::string& sPasta, bool bIntegra) {
    for (const SIntegracaoRecuperada& rIntegracao : r.listaIntegracoes) {
        XVJson json{{"resultado", rIntegracao.bPerdida ? "perdida" : "comFaltas"}};
        XVRegistroJson::Inclui(json, "regDmc", rIntegracao.regDmc);
        PercorreMotivos(rIntegracao.ulMotivos, [&](const SDescricaoAchado& rDescricao) {
            json["motivos"].push_back(rDescricao.pszNome);
        });
        if (rIntegracao.uiChave)
            json["uiChaveIntegracaoSistemaTerceiro"] = std::to_string(*rIntegracao.uiChave);
        rSaida.LinhaJson(json);
    }
    for (const SBytesSeparados& rBytes : r.listaSeparados) {
        XVJson json = ArquivoEmJson("separado", rBytes.sArquivo);
        json["byte"] = rBytes.uiOffset;
        json["bytes"] = rBytes.uiBytes;
        rSaida.LinhaJson(json);
    }
    for (const std::string& rArquivo : r.listaIlegiveis)
        rSaida.LinhaJson(ArquivoEmJson("ilegivel", rArquivo));
    for (const std::string& rArquivo : r.listaIncompletos)
        rSaida.LinhaJson(ArquivoEmJson("incompleto", rArquivo));
    XVJson json{{"inteiras", r.uiInteiras},
                {"comFaltas", r.uiComFaltas},
                {"perdidas", r.uiPerdidas},
                {"lancamentos", r.uiLancamentos},
                {"integra", bIntegra}};
    XVRegistroJson::Inclui(json, "diretorio", sPasta);
    rSaida.LinhaJson(json);
}

void MostraIntegracoes(CXVSaida& rSaida, const SRecuperacao& r, bool bPerdidas, const char* pszTitulo) {
    std::size_t uiVistas = 0;
    for (const SIntegracaoRecuperada& rIntegracao : r.listaIntegracoes) {
        if (rIntegracao.bPerdida != bPerdidas) continue;
        if (uiVistas == 0) rSaida.Linha(std::string("\n") + pszTitulo);
        if (++uiVistas > k_uiMostradas) continue;
        std::string sMotivos;
        PercorreMotivos(rIntegracao.ulMotivos, [&](const SDescricaoAchado& rDescricao) {
            sMotivos += (sMotivos.empty() ? "" : "; ") + std::string(rDescricao.pszFrase);
        });
        const std::string sChave = rIntegracao.uiChave.value_or(0) == 0
                                       ? ""
                                       : ", chave externa " + std::to_string(*rIntegracao.uiChave);
        rSaida.Linha("  " + rIntegracao.regDmc.ToString() + sChave + ": " + sMotivos);
    }
    if (uiVistas > k_uiMostradas)
        rSaida.Linha("  e mais " + XVComPontos(uiVistas - k_uiMostradas) + " (todas com --json)");
}

void MostraTexto(CXVSaida& rSaida, const SRecuperacao& r, const std::string& sSeparados) {
    rSaida.Linha("Inteiras: " + XVContaIntegracoes(r.uiInteiras) + ". Com faltas: " +
                 XVComPontos(r.uiComFaltas) + ". Perdidas: " + XVComPontos(r.uiPerdidas) + ".");
    rSaida.Linha("Do mapa de chaves e das datas: " + XVComPontos(r.uiLancamentos) +
                 (r.uiLancamentos == 1 ? " registro." : " registros."));
    MostraIntegracoes(rSaida, r, false,
                      "Voltaram com faltas, que a mensagem de cada uma diz; decida uma a uma:");
    MostraIntegracoes(rSaida, r, true, "Perderam-se:");
    if (!r.listaSeparados.empty()) rSaida.Linha("\nBytes sem lugar, guardados em " + sSeparados + ':');
    for (const SBytesSeparados& rBytes : r.listaSeparados)
        rSaida.Linha("  " + ArquivoEmTexto(rBytes.sArquivo) + ", do byte " + XVComPontos(rBytes.uiOffset) +
                     " em diante: " + XVComPontos(rBytes.uiBytes) + " bytes");
    for (const std::string& rArquivo : r.listaIlegiveis)
        rSaida.Linha("O sistema não deixou ler até o fim: " + ArquivoEmTexto(rArquivo));
    for (const std::string& rArquivo : r.listaIncompletos)
        rSaida.Linha("Não está na pasta, ou tem menos bytes do que o cabeçalho diz: " +
                     ArquivoEmTexto(rArquivo));
}

SRecuperacao Recupera(const SRecupera& rRecupera, const CXVRecuperacao::SPastas& rPastas,
                      CXVContexto& rContexto) {
    const CXVChamador chamador(rContexto.identificacao);
    CXVRecuperacao executor(rPastas, chamador, rRecupera.bVersaoAtual);
    CXVProgresso progresso(XVConsole::ErroEhTerminal());
    XVUInt64 uiLidos = 0;
    executor.m_fnProgresso = [&](XVUInt64 uiBytes) {
        uiLidos += uiBytes;
        progresso.Mostra([&] { return "recuperando: " + XVComPontos(uiLidos) + " bytes lidos"; });
    };
    SRecuperacao recuperacao;
    const HRESULT hr = executor.Executa(&recuperacao);
    using ERecusa = CXVRecuperacao::ERecusa;
    const ERecusa eRecusa = executor.GetRecusa();
    if (eRecusa == ERecusa::eDestinoOcupado)
        XVFalha("a pasta " + rPastas.sDestino +
                ", ou separados ao lado dela, já tem arquivos; diga outra com --para");
    if (eRecusa == ERecusa::eDestinoNaOrigem)
        XVFalha("a pasta " + rPastas.sDestino + " fica dentro da base danificada; diga outra com --para");
    if (eRecusa == ERecusa::eEmUso)
        XVFalha("a base está em uso; feche os programas que a usam e recupere de novo");
    if (FAILED(hr) && executor.Comecou())
        XVFalha(XVDescreveFalha(hr) + "; o que foi feito até aí está em " + rPastas.sDestino +
                " e não é uma base: apague essa pasta antes de recuperar de novo");
    if (hr == E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS)
        XVFalha("nada diz a versão da base; se ela era da versão atual, diga --versao-atual");
    if (FAILED(hr)) XVFalha(XVDescreveFalhaNoDestino(hr, rPastas.sDestino));
    return recuperacao;
}

void Executa(const SRecupera& rRecupera, CXVContexto& rContexto) {
    if (rContexto.bServidor) XVErroDeUso("--servidor: a recuperação é feita na própria base");
    if (rContexto.loja.bSomenteLeitura) XVErroDeUso("--leitura não vale para um comando que grava");
    rContexto.CompletaAcesso();
    rContexto.ExigeBase();
    const CXVUsoDoDiretorio diretorio(rContexto.loja.sDiretorio);
    const std::string& rEmpresa = rContexto.identificacao.sEmpresa;
    std::string sModulo;
    XVConfere(CAmbienteXV::GetDiretorioModulo(XV_DF, &sModulo));
    const std::string sPasta = rRecupera.sPara.empty() ? PastaNova(sModulo) : rRecupera.sPara;
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    const CXVRecuperacao::SPastas pastas{CAmbienteXV::MontaPathDados(XV_DF, sModulo, rEmpresa),
                                         CAmbienteXV::MontaPathDados(XV_DF, sPasta, rEmpresa),
                                         rSistema.Junta(rSistema.Junta(sPasta, rEmpresa), "separados")};
    const SRecuperacao recuperacao = Recupera(rRecupera, pastas, rContexto);
    SVerificacao verificacao;
    const CXVChamador chamador(rContexto.identificacao);
    XVConfere(CXVVerificacao(pastas.sDestino, chamador).Executa(&verificacao));
    CXVSaida& rSaida = rContexto.saida;
    if (rSaida.EhJson()) {
        MostraJson(rSaida, recuperacao, sPasta, verificacao.EhIntegra());
    } else {
        MostraTexto(rSaida, recuperacao, pastas.sSeparados);
        rSaida.Linha("\nA base nova está em " + pastas.sDestino + '.');
        XVMostraVerificacao(rSaida, rEmpresa, verificacao);
    }
    if (!verificacao.EhIntegra() || !recuperacao.TudoVoltou()) rContexto.eSaida = ESaida::eFalha;
}

}  // namespace

void XVAdicionaRecupera(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pRecupera = std::make_shared<SRecupera>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "recupera", "Faz uma base nova com tudo o que se pode ler de uma base danificada",
        "  xvcr recupera --empresa 001\n"
        "  xvcr recupera --empresa 001 --para /srv/recuperada\n"
        "A base danificada só é lida. Na nova, cada integração guarda o seu DMC; a que voltou com\n"
        "faltas diz na mensagem o que falta, e a que se perdeu deixa vago o seu lugar.\n"
        "Saída: 0 tudo voltou inteiro, 1 algo falta ou se perdeu, 2 linha de comando errada.");
    XVOpcaoSimples(*pComando, "--para", "PASTA",
                   "Diretório de módulo da base nova (padrão: recuperada-DATA-HORA, no da base)",
                   &pRecupera->sPara);
    pComando->add_flag("--versao-atual", pRecupera->bVersaoAtual,
                       "A base era da versão atual, embora o arquivo de versão não o diga mais");
    XVDefineAcao(pComando, rContexto, [pRecupera, &rContexto] { Executa(*pRecupera, rContexto); });
}
