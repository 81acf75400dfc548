// copia: a copy of the store as it is at one moment, while others write to it.
#include <memory>

#include "client/XVChamador.h"
#include "client/XVClienteCodigos.h"
#include "client/XVRegistryComDiretorio.h"
#include "middleware/copia/XVCopia.h"
#include "middleware/verificacao/XVVerificacao.h"
#include "platform/XVConsole.h"
#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVArquivoRecusado.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVLugarDaCopia.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/commands/XVSaidaVerificacao.h"
#include "tools/xvcr/output/XVProgresso.h"

namespace {

struct SComandoCopia {
    std::string sDestino;
    bool bSemVerificar = false;
};

std::string DescreveRecusa(ERecusaCopia eRecusa) {
    switch (eRecusa) {
        case ERecusaCopia::eNenhuma:
            break;
        case ERecusaCopia::eDestinoOcupado:
            return "o destino tem arquivos e não é uma cópia desta base; nada foi mudado nele";
        case ERecusaCopia::eDestinoEmUso:
            return "outra cópia para o mesmo destino está em andamento";
        case ERecusaCopia::eCopiaMudada:
            return "a cópia que está no destino foi aberta para gravação ou danificada e não é mais o que se "
                   "copiou; copie para outra pasta";
        case ERecusaCopia::eOutraBase:
            return "o destino tem a cópia de outra base; copie para outra pasta";
        case ERecusaCopia::eCopiaMaisNova:
            return "a cópia que está no destino é mais nova do que a base; guarde-a e copie para outra pasta";
        case ERecusaCopia::eArquivoSumiu:
            return "a base não tem mais um arquivo que a cópia tem; verifique a base, e guarde a cópia";
        case ERecusaCopia::eOrigemDanificada:
            return "a base não está íntegra (xvcr verifica diz onde); nada foi mudado no destino";
        case ERecusaCopia::eConversao:
            return "há uma conversão da base em andamento ou interrompida; conclua-a com xvcr converte";
        case ERecusaCopia::eSemSossego:
            return "a base foi gravada mais depressa do que se pôde copiar; copie com menos movimento";
    }
    return "";
}

SCopia Copia(const std::string& sOrigem, const std::string& sDestino,
             const CXVDestinoCopia::SPastas& rPastas) {
    CXVCopia executor(sOrigem, rPastas);
    CXVProgresso progresso(XVConsole::ErroEhTerminal());
    XVUInt64 uiLidos = 0;
    executor.m_fnProgresso = [&](XVUInt64 uiBytes) {
        uiLidos += uiBytes;
        progresso.Mostra([&] { return "copiando: " + XVComPontos(uiLidos) + " bytes lidos"; });
    };
    SCopia copia;
    const HRESULT hr = executor.Executa(&copia);
    if (SUCCEEDED(hr)) return copia;
    if (executor.FicouNaTroca())
        XVFalha(XVDescreveFalha(hr) +
                "; os arquivos novos estavam tomando o seu lugar e a cópia está incompleta: copie de novo");
    const std::string sRecusa = DescreveRecusa(executor.GetRecusa());
    // Many refusals share this code, whose sentence speaks of none of them.
    if (!sRecusa.empty() && hr == eInvalidFile)
        XVFalha(XVArquivoRecusado::Mensagem(sRecusa + " (" + XVCliente::CodigoEmTexto(hr) + ' ' +
                                                std::string(XVCliente::NomeDoCodigo(hr)) + ").",
                                            hr));
    if (!sRecusa.empty()) XVFalha(sRecusa + ". " + XVDescreveFalha(hr));
    XVFalha("nada foi copiado. " + XVDescreveFalhaNoDestino(hr, sDestino));
}

std::string MomentoEmTexto(const SDataHora& rMomento) {
    char szTexto[64];
    std::snprintf(szTexto, sizeof(szTexto), "%04u-%02u-%02uT%02u:%02u:%02uZ", unsigned{rMomento.usAno},
                  unsigned{rMomento.ucMes}, unsigned{rMomento.ucDia}, unsigned{rMomento.ucHora},
                  unsigned{rMomento.ucMinuto}, unsigned{rMomento.ucSegundo});
    return szTexto;
}

void Mostra(CXVSaida& rSaida, const SCopia& rCopia, const std::string& sPasta,
            const SVerificacao* pVerificacao) {
    if (!rSaida.EhJson()) {
        rSaida.Linha("Copiadas " + XVContaIntegracoes(rCopia.uiIntegracoes) + ", como estavam em " +
                     MomentoEmTexto(rCopia.momento) + ".");
        rSaida.Linha("Arquivos: " + XVComPontos(rCopia.uiArquivos) + ", dos quais " +
                     XVComPontos(rCopia.uiCopiados) +
                     " copiados agora. Bytes copiados: " + XVComPontos(rCopia.uiBytesCopiados) +
                     "; iguais aos da cópia anterior: " + XVComPontos(rCopia.uiBytesIguais) + ".");
        rSaida.Linha("A cópia está em " + sPasta + '.');
        return;
    }
    XVJson json{{"integracoes", rCopia.uiIntegracoes},   {"arquivos", rCopia.uiArquivos},
                {"arquivosCopiados", rCopia.uiCopiados}, {"bytesCopiados", rCopia.uiBytesCopiados},
                {"bytesIguais", rCopia.uiBytesIguais},   {"momento", MomentoEmTexto(rCopia.momento)}};
    XVRegistroJson::Inclui(json, "diretorio", sPasta);
    if (pVerificacao != nullptr) json["integra"] = pVerificacao->EhIntegra();
    rSaida.LinhaJson(json);
}

// The seals of the copy tell, when it is repeated or verified later, what its disk has changed since.
void Verifica(CXVContexto& rContexto, const std::string& sDados, SVerificacao* pVerificacao) {
    const CXVChamador chamador(rContexto.identificacao);
    CXVProgresso progresso(XVConsole::ErroEhTerminal());
    CXVVerificacao executor(sDados, chamador, [&](XVUInt64 uiFeitos, XVUInt64 uiTotal) {
        progresso.Mostra([&] {
            return "verificando a cópia: " + std::to_string(uiTotal == 0 ? 100 : uiFeitos * 100 / uiTotal) +
                   "%";
        });
    });
    XVConfere(executor.Executa(pVerificacao));
    XVConfere(executor.Sela());
    if (!pVerificacao->EhIntegra()) rContexto.eSaida = ESaida::eFalha;
}

void Executa(const SComandoCopia& rComando, CXVContexto& rContexto) {
    if (rContexto.bServidor) XVErroDeUso("--servidor: a cópia é feita da própria base");
    if (rComando.sDestino.empty()) XVErroDeUso("destino: diga a pasta da cópia");
    rContexto.CompletaAcesso();
    rContexto.ExigeBase();
    const CXVUsoDoDiretorio diretorio(rContexto.loja.sDiretorio);
    const std::string& rEmpresa = rContexto.identificacao.sEmpresa;
    std::string sOrigem;
    XVConfere(CAmbienteXV::GetPathDados(XV_DF, rEmpresa, &sOrigem));
    const CXVDestinoCopia::SPastas pastas{XVPlataforma::SistemaArquivos().Junta(rComando.sDestino, rEmpresa),
                                          CAmbienteXV::MontaPathDados(XV_DF, rComando.sDestino, rEmpresa)};
    XVExigeLugarDaCopia(rComando.sDestino, sOrigem, {pastas.sCopia, pastas.sDados});
    const SCopia copia = Copia(sOrigem, rComando.sDestino, pastas);
    SVerificacao verificacao;
    if (!rComando.bSemVerificar) Verifica(rContexto, pastas.sDados, &verificacao);
    Mostra(rContexto.saida, copia, rComando.sDestino, rComando.bSemVerificar ? nullptr : &verificacao);
    if (rComando.bSemVerificar || rContexto.saida.EhJson()) return;
    if (!verificacao.EhIntegra())
        rContexto.saida.Linha(
            "O que segue é da cópia. Verifique a base com xvcr verifica: se ela está íntegra, apague "
            "a cópia e copie de novo.");
    XVMostraVerificacao(rContexto.saida, rEmpresa, verificacao);
}

}  // namespace

void XVAdicionaCopia(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pCopia = std::make_shared<SComandoCopia>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "copia", "Copia a base como está em um momento, enquanto outros gravam nela",
        "  xvcr copia --empresa 001 /mnt/copias\n"
        "  xvcr copia --empresa 001 /mnt/copias --sem-verificar\n"
        "A cópia é uma base fechada: DESTINO serve de --diretorio. Repetida para o mesmo DESTINO, copia\n"
        "só o que mudou; até estar completa, a cópia anterior fica como estava. No fim ela é verificada\n"
        "e selada.\n"
        "Saída: 0 copiada e íntegra, 1 não, 2 linha de comando errada.");
    XVOpcaoSimples(*pComando, "destino", "DESTINO", "Pasta vazia ou nova, ou que tem uma cópia anterior",
                   &pCopia->sDestino)
        ->required();
    pComando->add_flag("--sem-verificar", pCopia->bSemVerificar, "Não lê a cópia para verificá-la");
    XVDefineAcao(pComando, rContexto, [pCopia, &rContexto] { Executa(*pCopia, rContexto); });
}
