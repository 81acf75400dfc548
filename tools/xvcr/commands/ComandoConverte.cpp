// converte: brings a store of an earlier version to the current one.
#include <memory>

#include "client/XVChamador.h"
#include "client/XVRegistryComDiretorio.h"
#include "middleware/ConversaoMiddleware.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVSaidaConversao.h"

namespace {

void Simula(CXVConversaoMiddleware& rConversao, CXVSaida& rSaida) {
    XVUShort usVersao = 0;
    std::vector<SPassoPrevisto> listaPassos;
    XVConfere(rConversao.Simula(&usVersao, &listaPassos));
    if (rSaida.EhJson()) {
        for (const SPassoPrevisto& rPasso : listaPassos)
            for (const SArquivoPrevisto& rArquivo : rPasso.listaArquivos)
                rSaida.LinhaJson(XVJson{{"passo", rPasso.usPasso},
                                        {"arquivo", rArquivo.sNomeArquivo},
                                        {"bytes", rArquivo.uiTamanho}});
        rSaida.LinhaJson(XVJson{{"versao", usVersao}, {"passos", listaPassos.size()}});
        return;
    }
    rSaida.Linha("versão da base: " + std::to_string(usVersao));
    if (listaPassos.empty()) rSaida.Linha("nada a converter");
    for (const SPassoPrevisto& rPasso : listaPassos) {
        rSaida.Linha("passo " + std::to_string(rPasso.usPasso) + ": " +
                     std::to_string(rPasso.listaArquivos.size()) + " arquivo(s)");
        for (const SArquivoPrevisto& rArquivo : rPasso.listaArquivos)
            rSaida.Linha("  " + rArquivo.sNomeArquivo + "  " + std::to_string(rArquivo.uiTamanho) + " bytes");
    }
}

void Executa(bool bSimula, CXVContexto& rContexto) {
    if (rContexto.bServidor) XVErroDeUso("--servidor: a conversão é feita na própria base");
    if (rContexto.loja.bSomenteLeitura && !bSimula)
        XVErroDeUso("--leitura não vale para um comando que grava");
    rContexto.CompletaAcesso();
    rContexto.ExigeBase();
    const CXVUsoDoDiretorio diretorio(rContexto.loja.sDiretorio);
    const CXVChamador chamador(rContexto.identificacao);
    CXVSaidaConversao observador(rContexto.saida);
    CXVConversaoMiddleware conversao(&observador);
    XVConfere(conversao.Inicializa(&chamador));
    if (bSimula) {
        Simula(conversao, rContexto.saida);
    } else {
        XVUShort usVersao = 0;
        XVConfere(conversao.LeVersao(&usVersao));
        XVConfere(conversao.ExecutaConversao());
        observador.Resume(usVersao);
    }
    XVConfere(conversao.Finaliza());
}

}  // namespace

void XVAdicionaConverte(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pbSimula = std::make_shared<bool>(false);
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "converte", "Converte uma base de versão anterior e diz o que foi feito",
        "  xvcr converte --empresa 001 --simula\n"
        "  xvcr converte --empresa 001\n"
        "Uma base de versão anterior também é convertida quando um comando que grava a abre.\n"
        "Uma conversão interrompida continua na próxima vez, sem perder nem repetir registros.");
    pComando->add_flag("--simula", *pbSimula, "Só diz o que seria feito");
    XVDefineAcao(pComando, rContexto, [pbSimula, &rContexto] { Executa(*pbSimula, rContexto); });
}
