// carrega: many integrations from JSON Lines.
#include <memory>

#include "platform/XVConsole.h"
#include "platform/XVInterrupcao.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/commands/XVPreparo.h"
#include "tools/xvcr/commands/XVSaidaCarga.h"
#include "tools/xvcr/output/XVProgresso.h"

namespace {

struct SCarrega {
    std::string sArquivo;
    bool bContinua = false;
    bool bPara = false;
    bool bChaveUnica = false;
    bool bProgresso = false;
    XVUInt ulLinhaMaxima = 256U * 1024U * 1024U;  // bytes
};

// Rewritten on the terminal that shows no results; elsewhere only who asks for it is shown any.
EProgresso EscolheProgresso(bool bPedido) {
    if (XVConsole::ErroEhTerminal() && !XVConsole::SaidaEhTerminal()) return EProgresso::eNoTerminal;
    return bPedido ? EProgresso::eEmLinhas : EProgresso::eNenhum;
}

class CXVExecucao {
  public:
    CXVExecucao(const SCarrega& rCarrega, CXVContexto& rContexto, IXVFonteBytes& rFonte)
        : m_rCarrega(rCarrega),
          m_rContexto(rContexto),
          m_rFonte(rFonte),
          m_Carga(rContexto.Abre(EUsoDaBase::eGravacao), rCarrega.bChaveUnica),
          m_Saida(rContexto.saida, rCarrega.bChaveUnica),
          m_Progresso(EscolheProgresso(rCarrega.bProgresso)) {}

    void Executa() {
        // The output asks for it until its end.
        m_rContexto.saida.AoFalharDiz([pContagem = m_pContagem] {
            return std::to_string(pContagem->uiGravadas) + " linhas gravadas, até a linha " +
                   std::to_string(pContagem->uiUltimaLinha);
        });
        if (!XVInterrupcao::Observa()) XVFalha("não foi possível preparar a interrupção da carga");
        CXVPreparo preparo(m_rFonte, m_rCarrega.ulLinhaMaxima);
        // A request that comes meanwhile ends between two lines: what was read ahead is not recorded.
        SLinhaCarga* pLinha = preparo.Proxima();
        while (pLinha != nullptr && !XVInterrupcao::Pedida() && GravaLinha(*pLinha))
            pLinha = preparo.Proxima();
        m_Progresso.Apaga();
        m_Saida.Total(*m_pContagem);
        const bool bInterrompida = XVInterrupcao::Pedida();
        if (bInterrompida)
            XVEscreveErro("carga interrompida depois da linha " + std::to_string(m_pContagem->uiUltimaLinha) +
                          ": " + m_Saida.DescreveTotal(*m_pContagem));
        if (bInterrompida || m_pContagem->GetErros() != 0) m_rContexto.eSaida = ESaida::eFalha;
        if (pLinha == nullptr) preparo.Confere();
    }

  private:
    // False: this line is the last one.
    bool GravaLinha(SLinhaCarga& rLinha) {
        m_Carga.Executa(&rLinha);
        m_pContagem->Inclui(rLinha);
        m_Saida.Linha(rLinha);
        // Whoever sends the lines may wait for each answer, and a load that is killed has said what it did.
        if (!m_rFonte.EhArquivo()) m_rContexto.saida.Termina();
        if (!rLinha.resultado.sErro.empty()) {
            m_Progresso.Apaga();
            CXVSaidaCarga::Erro(rLinha);
            if (!m_rCarrega.bContinua) return false;
            if (!CXVCarga::EhDaLinha(rLinha.resultado)) {
                XVEscreveErro("a carga para aqui: a falha não é desta linha, e as seguintes a encontrariam");
                return false;
            }
        }
        m_Progresso.Mostra([&] {
            return XVDescreveProgressoCarga(rLinha.uiNumero, rLinha.uiFim, m_rFonte.GetTamanho(),
                                            m_Progresso.GetDecorrido());
        });
        return true;
    }

    const SCarrega& m_rCarrega;
    CXVContexto& m_rContexto;
    IXVFonteBytes& m_rFonte;
    CXVCarga m_Carga;
    CXVSaidaCarga m_Saida;
    CXVProgresso m_Progresso;
    const std::shared_ptr<SContagemCarga> m_pContagem = std::make_shared<SContagemCarga>();
};

void Executa(const SCarrega& rCarrega, CXVContexto& rContexto) {
    const std::unique_ptr<IXVFonteBytes> pFonte = XVAbreFonte(rCarrega.sArquivo);
    CXVExecucao(rCarrega, rContexto, *pFonte).Executa();
}

}  // namespace

void XVAdicionaCarrega(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pCarrega = std::make_shared<SCarrega>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "carrega", "Grava muitas integrações, uma por linha JSON",
        "  xvcr carrega integracoes.jsonl\n"
        "  gerador | xvcr carrega - --continua --json\n"
        "Os nomes são os campos do registro de integração; os textos são cadeias ou JSON embutido:\n"
        "  {\"eTipoIntegracao\":\"BuscaPedidos\",\"eStatusIntegracao\":1,\"eSistemaIntegracao\":\"Mercos\",\n"
        "   \"regRegistroJSON\":{\"pedido\":9001}}\n"
        "Com regDmc a linha altera a integração; com \"operacao\":\"status\" grava só o status.\n"
        "Cada linha é gravada e respondida quando chega. Ctrl-C termina entre duas linhas e diz quantas "
        "foram.");
    XVOpcaoSimples(*pComando, "arquivo", "ARQUIVO|-",
                   "Arquivo com um objeto JSON por linha; - é a entrada padrão", &pCarrega->sArquivo)
        ->required();
    CLI::Option* pContinua = pComando->add_flag(
        "--continua", pCarrega->bContinua,
        "Continua depois de uma linha com erro; não depois de uma falha da base ou do disco");
    pComando->add_flag("--para-no-erro,--para", pCarrega->bPara, "Para na primeira linha com erro (padrão)")
        ->excludes(pContinua);
    XVOpcaoContagem(*pComando, "--linha-maxima", "BYTES", "Tamanho máximo de uma linha (padrão: 256 MiB)",
                    &pCarrega->ulLinhaMaxima);
    pComando->add_flag("--chave-unica", pCarrega->bChaveUnica,
                       "Não grava de novo a integração cuja chave externa já está na base, no mesmo sistema, "
                       "tipo e transação (no OfficialBank, no sistema): responde com o DMC que já existe");
    pComando->add_flag("--progresso", pCarrega->bProgresso,
                       "Mostra o andamento na saída de erro mesmo fora de um terminal");
    XVDefineAcao(pComando, rContexto, [pCarrega, &rContexto] { Executa(*pCarrega, rContexto); });
}
