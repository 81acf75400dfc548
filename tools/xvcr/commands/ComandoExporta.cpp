// exporta: everything of a store, for another store or for those who analyse.
#include <memory>

#include "platform/XVConsole.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVLojaParaVer.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/output/XVProgresso.h"
#include "tools/xvcr/text/XVArquivoSaida.h"
#include "tools/xvcr/text/XVDestinoBytes.h"
#include "tools/xvcr/transport/XVExportacao.h"
#include "tools/xvcr/transport/XVFormatoExportacao.h"

namespace {

struct SExporta {
    std::string sPara;
    bool bPorDia = false;
    bool bCsv = false;
    bool bSql = false;
    bool bSemTextos = false;
    REG_XVDMAHMSUTC regDesde;
    REG_XVDMAHMSUTC regAte;
};

constexpr XVUInt64 k_uiUltimoDia = 99999999;

// The whole of one output, from its first line to its last.
class CXVSaidaExportacao {
  public:
    CXVSaidaExportacao(const SExporta& rExporta, const std::string& sEmpresa, const std::string& sCaminho)
        : m_destino(sCaminho),
          m_pFormato(XVCriaFormato(rExporta.bCsv   ? EFormatoExportacao::eCsv
                                   : rExporta.bSql ? EFormatoExportacao::eSql
                                                   : EFormatoExportacao::eJsonLines,
                                   !rExporta.bSemTextos)) {
        m_pFormato->Comeca(sEmpresa, &m_sLinha);
        Escreve();
    }
    template <class T>
    void Inclui(const T& rDados) {
        m_pFormato->Inclui(rDados, &m_sLinha);
        Escreve();
    }
    void Termina() {
        m_pFormato->Termina(&m_sLinha);
        Escreve();
        m_destino.Termina();
    }

  private:
    void Escreve() {
        m_destino.Escreve(m_sLinha);
        m_sLinha.clear();
    }

    CXVDestinoBytes m_destino;
    std::unique_ptr<IXVFormatoExportacao> m_pFormato;
    std::string m_sLinha;
};

class CXVExecucaoExporta {
  public:
    CXVExecucaoExporta(const SExporta& rExporta, CXVContexto& rContexto)
        : m_rExporta(rExporta), m_rContexto(rContexto), m_loja(rContexto), m_exportacao(*m_loja) {
        m_exportacao.m_fnNaoLida = [this](REG_XVDMC regDmc, HRESULT hr) {
            XVEscreveErro(regDmc.ToString() + ": " + XVDescreveFalha(hr));
            m_rContexto.eSaida = ESaida::eFalha;
        };
    }

    void Executa() {
        const XVUInt64 uiAte =
            m_rExporta.regAte.EhNula() ? k_uiUltimoDia : m_rExporta.regAte.GetDma().ToChave();
        XVConfere(m_exportacao.Prepara(m_rExporta.regDesde.GetDma().ToChave(), uiAte));
        if (m_rExporta.bPorDia)
            PorDia();
        else
            EmUm();
    }

  private:
    void EmUm() {
        CXVSaidaExportacao saida(m_rExporta, Empresa(), m_rExporta.sPara);
        for (const XVUInt64 uiDia : m_exportacao.GetDias()) EscreveDia(uiDia, saida);
        EscreveRestante(saida);
        saida.Termina();
    }

    // Their names sort in the order in which they are to be read back.
    void PorDia() {
        XVCriaPasta(m_rExporta.sPara);
        const std::string sFim = m_rExporta.bCsv ? ".csv" : m_rExporta.bSql ? ".sql" : ".jsonl";
        for (const XVUInt64 uiDia : m_exportacao.GetDias()) {
            CXVSaidaExportacao saida(m_rExporta, Empresa(),
                                     XVJuntaCaminho(m_rExporta.sPara, std::to_string(uiDia) + sFim));
            EscreveDia(uiDia, saida);
            saida.Termina();
        }
        if (m_rExporta.bCsv) return;
        CXVSaidaExportacao saida(m_rExporta, Empresa(), XVJuntaCaminho(m_rExporta.sPara, "mapa" + sFim));
        EscreveRestante(saida);
        saida.Termina();
    }

    void EscreveDia(XVUInt64 uiDia, CXVSaidaExportacao& rSaida) {
        m_exportacao.Percorre(uiDia, [&](const SIntegracaoTransportada& rIntegracao) {
            rSaida.Inclui(rIntegracao);
            ++m_uiEscritas;
            m_progresso.Mostra([&] {
                return "exportando: " + std::to_string(m_uiEscritas) + " de " +
                       std::to_string(m_exportacao.GetQuantidade());
            });
        });
    }

    void EscreveRestante(CXVSaidaExportacao& rSaida) {
        std::vector<REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIRO_V2> listaMapa;
        XVConfere((*m_loja).ListaChavesRegistro(&listaMapa));
        for (const auto& reg : listaMapa) {
            CXVDadosMapa dados;
            dados.CopiarDe({reg.uiChaveRegistroSistemaTerceiro, reg.regDmcRegistroTelvo,
                            reg.uiBaseDadosTerceiro, reg.eTipoIntegracao, reg.eSistemaIntegracao,
                            reg.regDmcOrigemIntegracao});
            rSaida.Inclui(dados);
        }
        std::vector<REG_CR_DATA_HORA_INTEGRACAO_TERCEIRO_V1> listaDatas;
        XVConfere((*m_loja).ListaDatasHoras(&listaDatas));
        for (const auto& reg : listaDatas) {
            CXVDadosDataHora dados;
            dados.CopiarDe({reg.regDataHora, reg.eTipoIntegracao, reg.eSistemaIntegracao, reg.eTipoData, {}});
            rSaida.Inclui(dados);
        }
    }

    const std::string& Empresa() const { return m_rContexto.identificacao.sEmpresa; }

    const SExporta& m_rExporta;
    CXVContexto& m_rContexto;
    CXVLojaParaVer m_loja;
    CXVExportacao m_exportacao;
    CXVProgresso m_progresso{XVConsole::ErroEhTerminal() && !XVConsole::SaidaEhTerminal()};
    XVUInt64 m_uiEscritas = 0;
};

void Executa(const SExporta& rExporta, CXVContexto& rContexto) {
    if (rExporta.bPorDia && rExporta.sPara.empty()) XVErroDeUso("--por-dia pede --para PASTA");
    if (rExporta.bPorDia && rExporta.bSql) XVErroDeUso("--por-dia não vale junto com --sql");
    if (rExporta.bSemTextos && !rExporta.bCsv && !rExporta.bSql)
        XVErroDeUso("--sem-textos só vale com --csv ou --sql");
    if (!rExporta.regAte.EhNula() && rExporta.regAte.GetDma() < rExporta.regDesde.GetDma())
        XVErroDeUso("--ate é uma data anterior a --desde");
    CXVExecucaoExporta(rExporta, rContexto).Executa();
}

}  // namespace

void XVAdicionaExporta(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pExporta = std::make_shared<SExporta>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "exporta", "Escreve tudo o que a base responde, para outra base ou para análise",
        "  xvcr exporta --para base.jsonl\n"
        "  xvcr exporta --para exportada --por-dia\n"
        "  xvcr exporta --csv --sem-textos > integracoes.csv\n"
        "  xvcr exporta --sql | sqlite3 integracoes.db\n"
        "As linhas JSON, que xvcr importa lê de volta, levam integrações com todos os campos e textos,\n"
        "mapa de chaves e datas-horas. A base só é lida. Uma integração que não se pode ler é dita na\n"
        "saída de erros, e a saída do programa é 1.");
    XVOpcaoSimples(*pComando, "--para", "ARQUIVO|PASTA",
                   "Arquivo novo, ou com --por-dia a pasta (padrão: saída)", &pExporta->sPara);
    pComando->add_flag("--por-dia", pExporta->bPorDia,
                       "Um arquivo por dia, AAAAMMDD, e um para o mapa e as datas-horas");
    CLI::Option* pCsv = pComando->add_flag("--csv", pExporta->bCsv,
                                           "Só as integrações, em valores separados por vírgula (RFC 4180)");
    pComando
        ->add_flag("--sql", pExporta->bSql, "Tabelas e linhas em comandos que SQLite e PostgreSQL aceitam")
        ->excludes(pCsv);
    pComando->add_flag("--sem-textos", pExporta->bSemTextos, "Com --csv ou --sql: sem os três textos");
    XVOpcaoValor(*pComando, "--desde", "DATA", "Só os dias de gravação desta data em diante",
                 &pExporta->regDesde);
    XVOpcaoValor(*pComando, "--ate", "DATA", "Só os dias de gravação até esta data", &pExporta->regAte);
    XVDefineAcao(pComando, rContexto, [pExporta, &rContexto] { Executa(*pExporta, rContexto); });
}
