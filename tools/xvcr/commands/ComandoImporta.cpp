// importa: what exporta wrote, into a store.
#include <algorithm>
#include <memory>

#include "client/XVChamador.h"
#include "client/XVRegistryComDiretorio.h"
#include "platform/XVConsole.h"
#include "support/XVAmbiente.h"
#include "support/trace/XVArquivoRecusado.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/output/XVProgresso.h"
#include "tools/xvcr/text/XVArquivoSaida.h"
#include "tools/xvcr/text/XVFonteBytes.h"
#include "tools/xvcr/text/XVLeitorLinhas.h"
#include "tools/xvcr/transport/XVImportacao.h"

namespace {

struct SImporta {
    std::string sFonte;
    bool bChavesNovas = false;
    bool bContinua = false;
    XVUInt ulLinhaMaxima = 256U * 1024U * 1024U;  // bytes
};

// A file, or those of a folder in the order of their names.
std::vector<std::string> ListaFontes(const std::string& sFonte) {
    std::error_code erro;
    if (sFonte == "-" || !std::filesystem::is_directory(XVCaminhoDeUtf8(sFonte), erro)) return {sFonte};
    std::vector<std::string> lista;
    std::filesystem::directory_iterator it(XVCaminhoDeUtf8(sFonte), erro);
    for (; !erro && it != std::filesystem::directory_iterator(); it.increment(erro)) {
        const std::u8string sNome = it->path().filename().u8string();
        if (it->path().extension() == ".jsonl")
            lista.push_back(XVJuntaCaminho(sFonte, std::string(sNome.begin(), sNome.end())));
    }
    if (erro) XVFalha("não foi possível ler a pasta \"" + sFonte + '"');
    if (lista.empty()) XVFalha("a pasta \"" + sFonte + "\" não tem arquivos .jsonl");
    std::sort(lista.begin(), lista.end());
    return lista;
}

class CXVExecucaoImporta {
  public:
    CXVExecucaoImporta(const SImporta& rImporta, CXVContexto& rContexto, const std::string& sDiretorio)
        : m_rImporta(rImporta),
          m_rContexto(rContexto),
          m_chamador(rContexto.identificacao),
          m_importacao(sDiretorio, m_chamador,
                       rImporta.bChavesNovas ? EChavesImportacao::eNovas : EChavesImportacao::eMantidas) {
        m_importacao.m_fnNova = [this](REG_XVDMC regAntiga, REG_XVDMC regNova) {
            Mostra(regAntiga, regNova);
        };
        m_rContexto.saida.AoFalharDiz(
            [this] { return std::to_string(m_importacao.GetContagem().uiNovas) + " integrações gravadas"; });
    }
    ~CXVExecucaoImporta() { m_rContexto.saida.AoFalharDiz({}); }

    void Executa() {
        const std::vector<std::string> listaFontes = ListaFontes(m_rImporta.sFonte);
        for (const std::string& rFonte : listaFontes) Confere(rFonte);
        for (auto it = listaFontes.begin(); it != listaFontes.end() && !m_bParou; ++it) ImportaFonte(*it);
        const HRESULT hr = m_importacao.Termina();
        if (FAILED(hr)) Falhou(XVDescreveFalha(hr));
        MostraContagem();
    }

  private:
    // What can be read twice is looked at whole before anything of it is recorded.
    void Confere(const std::string& sFonte) const {
        if (XVFonteSoSeLeUmaVez(sFonte)) return;
        const std::unique_ptr<IXVFonteBytes> pFonte = XVAbreFonte(sFonte);
        const std::string sErro = XVConfereExportacao(*pFonte, m_rImporta.ulLinhaMaxima);
        if (!sErro.empty())
            XVFalha(sFonte + ": " + sErro +
                    "; nada foi importado (o que há é importado por \"xvcr importa - < ARQUIVO\")");
    }

    void ImportaFonte(const std::string& sFonte) {
        const std::unique_ptr<IXVFonteBytes> pFonte = XVAbreFonte(sFonte);
        CXVLeitorLinhas leitor(*pFonte, m_rImporta.ulLinhaMaxima);
        const std::string sOnde = sFonte == "-" ? "" : sFonte + ", ";
        std::string sLinha;
        while (!m_bParou) {
            const CXVLeitorLinhas::EResultado eResultado = leitor.Proxima(&sLinha);
            if (eResultado == CXVLeitorLinhas::EResultado::eFim) break;
            const CXVArquivosRecusados recusados;  // of this line alone
            const bool bLonga = eResultado == CXVLeitorLinhas::EResultado::eLonga;
            const CXVImportacao::SErro erro =
                bLonga ? CXVImportacao::SErro{{"", XVDescreveLinhaLonga(m_rImporta.ulLinhaMaxima)}}
                       : m_importacao.Importa(sLinha);
            if (!erro.Ok()) RecusaLinha(sOnde + "linha " + std::to_string(leitor.GetNumero()), erro);
            m_progresso.Mostra(
                [&] { return "importando: " + std::to_string(leitor.GetNumero()) + " linhas"; });
        }
        if (!m_bParou && m_importacao.FaltaFim())
            Falhou((sFonte == "-" ? "entrada padrão" : sFonte) +
                   ": a exportação termina antes da sua linha final; o que veio antes foi importado");
    }

    void RecusaLinha(const std::string& sOnde, const CXVImportacao::SErro& rErro) {
        const std::string sCampo = rErro.campo.sCampo.empty() ? "" : ", campo \"" + rErro.campo.sCampo + '"';
        Falhou(sOnde + sCampo + ": " + rErro.campo.sMensagem);
        ++m_uiRecusadas;
        m_bParou = rErro.bDefinitivo || !m_rImporta.bContinua;
    }

    void Falhou(const std::string& sMensagem) {
        m_rContexto.saida.Termina();  // what was recorded before stands before it
        XVEscreveErro(sMensagem);
        m_rContexto.eSaida = ESaida::eFalha;
    }

    void Mostra(REG_XVDMC regAntiga, REG_XVDMC regNova) {
        if (!m_rContexto.saida.EhJson())
            return m_rContexto.saida.Linha(regAntiga.ToString() + ' ' + regNova.ToString());
        m_rContexto.saida.LinhaJson(XVJson{{"sDmc", regAntiga.ToString()}, {"sDmcNovo", regNova.ToString()}});
    }

    void MostraContagem() {
        const SContagemImportacao& r = m_importacao.GetContagem();
        const bool bCompleta = m_rContexto.eSaida == ESaida::eSucesso;
        if (m_rContexto.saida.EhJson())
            return m_rContexto.saida.LinhaJson(XVJson{{"novas", r.uiNovas},
                                                      {"jaEstavam", r.uiJaEstavam},
                                                      {"deixadas", r.uiDeixadas},
                                                      {"lancamentos", r.uiLancamentos},
                                                      {"origensVazias", r.uiOrigensVazias},
                                                      {"recusadas", m_uiRecusadas},
                                                      {"completa", bCompleta}});
        const std::string sOrigens = r.uiOrigensVazias == 0
                                         ? ""
                                         : "; " + std::to_string(r.uiOrigensVazias) +
                                               " origens esvaziadas, de integrações que não vieram";
        m_rContexto.saida.Linha(
            std::to_string(r.uiNovas) + " integrações gravadas, " + std::to_string(r.uiJaEstavam) +
            " já estavam, " + std::to_string(r.uiDeixadas) + " deixadas; " + std::to_string(r.uiLancamentos) +
            " do mapa e das datas-horas; " + std::to_string(m_uiRecusadas) + " linhas recusadas" + sOrigens);
    }

    const SImporta& m_rImporta;
    CXVContexto& m_rContexto;
    const CXVChamador m_chamador;
    CXVImportacao m_importacao;
    CXVProgresso m_progresso{XVConsole::ErroEhTerminal() && !XVConsole::SaidaEhTerminal()};
    XVUInt64 m_uiRecusadas = 0;
    bool m_bParou = false;
};

void Executa(const SImporta& rImporta, CXVContexto& rContexto) {
    if (rContexto.bServidor) XVErroDeUso("--servidor: a importação é feita na própria base");
    if (rContexto.loja.bSomenteLeitura) XVErroDeUso("--leitura não vale para um comando que grava");
    rContexto.CompletaAcesso();
    rContexto.ExigeEmpresa();
    static_cast<void>(rContexto.GetDiretorioQueExiste());
    const CXVUsoDoDiretorio diretorio(rContexto.loja.sDiretorio);
    std::string sModulo;
    XVConfere(CAmbienteXV::GetDiretorioModulo(XV_DF, &sModulo));
    const std::string sDados = CAmbienteXV::MontaPathDados(XV_DF, sModulo, rContexto.identificacao.sEmpresa);
    CXVExecucaoImporta(rImporta, rContexto, sDados).Executa();
}

}  // namespace

void XVAdicionaImporta(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pImporta = std::make_shared<SImporta>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "importa", "Grava numa base o que exporta escreveu",
        "  xvcr importa base.jsonl --empresa 002\n"
        "  xvcr importa exportada\n"
        "  xvcr exporta --empresa 001 | xvcr importa - --empresa 002\n"
        "Cada integração guarda o seu DMC: uma igual que já está na base fica como está, e uma que é\n"
        "outra faz a linha ser recusada. Com --chaves-novas todas são gravadas como novas, e cada\n"
        "linha da saída diz o DMC que veio e o que ficou; a origem que não veio fica vazia.");
    XVOpcaoSimples(*pComando, "fonte", "ARQUIVO|PASTA|-",
                   "Arquivo ou pasta que exporta escreveu; - é a entrada padrão", &pImporta->sFonte)
        ->required();
    pComando->add_flag("--chaves-novas", pImporta->bChavesNovas, "Grava cada integração com um DMC novo");
    pComando->add_flag("--continua", pImporta->bContinua, "Continua depois de uma linha recusada");
    XVOpcaoContagem(*pComando, "--linha-maxima", "BYTES", "Tamanho máximo de uma linha (padrão: 256 MiB)",
                    &pImporta->ulLinhaMaxima);
    XVDefineAcao(pComando, rContexto, [pImporta, &rContexto] { Executa(*pImporta, rContexto); });
}
