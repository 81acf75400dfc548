#include "tools/xvcr/commands/XVLeituraIntegracoes.h"

#include <algorithm>

#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/output/XVTabela.h"
#include "tools/xvcr/text/XVArquivoSaida.h"

namespace {

// Integrations in memory at a time; their texts may be large. Without texts, as the table needs them, more.
constexpr std::size_t k_uiPorLeitura = 64;
constexpr std::size_t k_uiPorParteDaTabela = 256;

// Calls fRecebe for one part of the integrations after the other. A query of the external systems is made
// once for the whole list, so the list then stays whole.
template <class FRecebe>
void LeEmPartes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista, XVUInt64 uiFlags,
                std::size_t uiPorLeitura, FRecebe&& fRecebe) {
    XVCliente::CXVCliente& rCliente = rContexto.Abre(EUsoDaBase::eLeitura);
    std::vector<CXVDadosCR_IntegracaoMiddleware> listaDados(1);
    if (lista.size() == 1) {
        XVConfere(rCliente.LeIntegracao(lista.front(), uiFlags, &listaDados.front()));
        fRecebe(listaDados);
        return;
    }
    if ((uiFlags & k_ullConsultaSistemaTerceiro) != 0) uiPorLeitura = lista.size();
    for (std::size_t i = 0; i < lista.size(); i += uiPorLeitura) {
        const std::size_t uiFim = std::min(lista.size(), i + uiPorLeitura);
        const std::vector<REG_XVDMC> parte(lista.begin() + static_cast<std::ptrdiff_t>(i),
                                           lista.begin() + static_cast<std::ptrdiff_t>(uiFim));
        XVConfere(rCliente.LeIntegracoes(parte, uiFlags, &listaDados));
        fRecebe(listaDados);
    }
}

struct STextoLido {
    const char* pszCampo;
    std::string CXVDadosCR_IntegracaoMiddleware::*pMembro;
    XVUInt64 uiFlag;
    const char* pszFimNome;  // of the file that receives it
};

constexpr STextoLido k_aTextos[] = {
    {"regRegistroJSON", &CXVDadosCR_IntegracaoMiddleware::sRegistroJSON, k_ullLeJSON, ".enviado.json"},
    {"regMensagemIntegracao", &CXVDadosCR_IntegracaoMiddleware::sMensagemIntegracao, k_ullLeMensagem,
     ".mensagem.txt"},
    {"regJSONRetornoIntegracao", &CXVDadosCR_IntegracaoMiddleware::sJSONRetornoIntegracao, k_ullLeJSONRetorno,
     ".retorno.json"},
};

std::string ArquivoDoTexto(const CXVDadosCR_IntegracaoMiddleware& rDados, const STextoLido& rTexto,
                           const std::string& sPasta) {
    const std::string sCaminho = XVJuntaCaminho(sPasta, rDados.regDmc.ToString() + rTexto.pszFimNome);
    XVGravaArquivo(sCaminho, rDados.*rTexto.pMembro);
    return sCaminho;
}

// One integration in the form that was asked for; TForma makes it.
template <class TForma>
void MontaUma(TForma forma, const CXVDadosCR_IntegracaoMiddleware& rDados, XVUInt64 uiFlags,
              const std::string& sPasta) {
    for (const STextoLido& rTexto : k_aTextos) {
        if ((uiFlags & rTexto.uiFlag) == 0) continue;
        if (sPasta.empty())
            forma(rTexto.pszCampo, rDados.*rTexto.pMembro, false);
        else
            forma(std::string(rTexto.pszCampo) + "_arquivo", ArquivoDoTexto(rDados, rTexto, sPasta), true);
    }
}

void MostraUma(CXVContexto& rContexto, const CXVDadosCR_IntegracaoMiddleware& rDados, XVUInt64 uiFlags,
               const std::string& sPasta) {
    if (rContexto.saida.EhJson()) {
        XVJson json = XVRegistroJson::ParaJson(rDados, false);
        const auto inclui = [&json](const std::string& sNome, const std::string& sValor, bool bCaminho) {
            if (bCaminho)
                json[sNome] = sValor;
            else
                XVRegistroJson::Inclui(json, sNome, sValor);
        };
        MontaUma(inclui, rDados, uiFlags, sPasta);
        return rContexto.saida.LinhaJson(json);
    }
    XVRegistroJson::XVListaPares listaPares = XVRegistroJson::ParaPares(rDados, false);
    const auto inclui = [&listaPares](const std::string& sNome, const std::string& sValor, bool bCaminho) {
        listaPares.emplace_back(sNome, bCaminho ? sValor : XVRegistroJson::ParaPessoa(sValor));
    };
    MontaUma(inclui, rDados, uiFlags, sPasta);
    rContexto.saida.Pares(listaPares);
}

}  // namespace

void SOpcoesLeitura::Adiciona(CLI::App& rComando) {
    rComando.add_flag("--json-enviado", bRegistroJSON, "Lê o JSON enviado");
    rComando.add_flag("--mensagem", bMensagem, "Lê a mensagem de retorno");
    rComando.add_flag("--json-retorno", bJSONRetorno, "Lê o JSON devolvido");
    rComando.add_flag("--todos", bTodos, "Lê os três textos");
    rComando.add_flag("--consulta-terceiro", bConsultaTerceiro,
                      "Consulta de novo os dados da integração no sistema externo");
    rComando.add_flag("--operacao-posterior", bOperacaoPosterior,
                      "Com --consulta-terceiro: faz também a operação que encerra a consulta");
    XVOpcaoSimples(rComando, "--para-pasta", "PASTA",
                   "Grava cada texto lido num arquivo desta pasta em vez de mostrá-lo", &sPasta);
}

XVUInt64 SOpcoesLeitura::GetFlags() const {
    if (bOperacaoPosterior && !bConsultaTerceiro)
        XVErroDeUso("--operacao-posterior só vale com --consulta-terceiro");
    XVUInt64 uiFlags = bTodos ? k_ullLeTextos : 0;
    if (bRegistroJSON) uiFlags |= k_ullLeJSON;
    if (bMensagem) uiFlags |= k_ullLeMensagem;
    if (bJSONRetorno) uiFlags |= k_ullLeJSONRetorno;
    if (!sPasta.empty() && uiFlags == 0)
        XVErroDeUso("--para-pasta pede ao menos um texto (--todos, por exemplo)");
    if (bConsultaTerceiro) uiFlags |= k_ullConsultaSistemaTerceiro;
    if (bOperacaoPosterior) uiFlags |= k_ullOperacaoPosterior;
    return uiFlags;
}

void XVMostraIntegracoes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista,
                         const SOpcoesLeitura& rOpcoes) {
    const XVUInt64 uiFlags = rOpcoes.GetFlags();
    if (!rOpcoes.sPasta.empty()) XVCriaPasta(rOpcoes.sPasta);
    bool bPrimeira = true;
    LeEmPartes(rContexto, lista, uiFlags, k_uiPorLeitura, [&](const auto& rParte) {
        for (const CXVDadosCR_IntegracaoMiddleware& rDados : rParte) {
            if (!bPrimeira && !rContexto.saida.EhJson()) rContexto.saida.Linha("");
            bPrimeira = false;
            MostraUma(rContexto, rDados, uiFlags, rOpcoes.sPasta);
        }
    });
}

void XVTabelaIntegracoes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista) {
    CXVTabela tabela({{"DMC"},
                      {"Inclusão"},
                      {"Tipo"},
                      {"Transação"},
                      {"Sistema"},
                      {"Status"},
                      {"Chave externa", CXVTabela::EAlinhamento::eDireita},
                      {"Movimento de origem"}});
    const auto inclui = [&](const CXVDadosCR_IntegracaoMiddleware& rDados) {
        using XVRegistroJson::ParaPessoa;
        tabela.Inclui({ParaPessoa(rDados.regDmc), ParaPessoa(rDados.regDataHoraInclusao),
                       ParaPessoa(EEnumeracao::eTipoIntegracao, rDados.eTipoIntegracao),
                       ParaPessoa(EEnumeracao::eTipoTransacao, rDados.eTipoTransacao),
                       ParaPessoa(EEnumeracao::eSistemaIntegracao, rDados.eSistemaIntegracao),
                       ParaPessoa(EEnumeracao::eStatusIntegracao, rDados.eStatusIntegracao),
                       ParaPessoa(rDados.uiChaveIntegracaoSistemaTerceiro),
                       ParaPessoa(rDados.regDmcMovimentoOrigem)});
    };
    LeEmPartes(rContexto, lista, 0, k_uiPorParteDaTabela, [&](const auto& rParte) {
        for (const CXVDadosCR_IntegracaoMiddleware& rDados : rParte) inclui(rDados);
        rContexto.saida.Escreve(tabela.Monta());
    });
    if (lista.empty()) rContexto.saida.Escreve(tabela.Monta());
}
