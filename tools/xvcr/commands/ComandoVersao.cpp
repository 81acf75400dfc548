// versao: the version of a store on disk and the one of this program.
#include "client/XVChamador.h"
#include "client/XVRegistryComDiretorio.h"
#include "middleware/ConversaoMiddleware.h"
#include "tools/xvcr/commands/XVComandos.h"

namespace {

const char* Situacao(XVUShort usVersao) {
    if (usVersao == k_usVersaoAtualBase) return "atual";
    return usVersao < k_usVersaoAtualBase ? "anterior" : "posterior";
}

void Executa(CXVContexto& rContexto) {
    if (rContexto.bServidor) XVErroDeUso("--servidor: a versão é lida na própria base");
    rContexto.CompletaAcesso();
    rContexto.ExigeBase();
    const CXVUsoDoDiretorio diretorio(rContexto.loja.sDiretorio);
    const CXVChamador chamador(rContexto.identificacao);
    CXVConversaoMiddleware conversao(nullptr);
    XVUShort usVersao = 0;
    XVConfere(conversao.Inicializa(&chamador));
    XVConfere(conversao.LeVersao(&usVersao));
    XVConfere(conversao.Finaliza());
    if (rContexto.saida.EhJson())
        rContexto.saida.LinhaJson(XVJson{
            {"versao", usVersao}, {"versaoAtual", k_usVersaoAtualBase}, {"situacao", Situacao(usVersao)}});
    else
        rContexto.saida.Pares({{"Versão da base", std::to_string(usVersao)},
                               {"Versão do programa", std::to_string(k_usVersaoAtualBase)},
                               {"Situação", Situacao(usVersao)}});
}

}  // namespace

void XVAdicionaVersao(CLI::App& rRaiz, CXVContexto& rContexto) {
    CLI::App* pComando = XVAdicionaComando(rRaiz, "versao", "Mostra a versão da base, sem mudar nada",
                                           "  xvcr versao --empresa 001");
    XVDefineAcao(pComando, rContexto, [&rContexto] { Executa(rContexto); });
}
