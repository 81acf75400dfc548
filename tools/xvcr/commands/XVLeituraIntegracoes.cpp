#include "tools/xvcr/commands/XVLeituraIntegracoes.h"

#include <algorithm>

#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/output/XVTabela.h"
#include "tools/xvcr/output/XVTerminal.h"
#include "tools/xvcr/text/XVArquivoSaida.h"

namespace {

// Integrations in memory at a time; their texts may be large. Without texts, as the table needs them, more.
constexpr std::size_t k_uiPorLeitura = 64;
constexpr std::size_t k_uiPorParteDaTabela = 256;

void EscreveNaoLida(CXVContexto& rContexto, REG_XVDMC regDmc, HRESULT hr) {
    rContexto.saida.Termina();  // what was read before stands before it
    XVEscreveErro(regDmc.ToString() + ": " + XVDescreveFalha(hr));
    rContexto.eSaida = ESaida::eFalha;
}

// One by one those of a part that cannot be read as a whole: each that cannot be read is named, and the
// others are there all the same.
void LeUmaAUma(CXVContexto& rContexto, const std::vector<REG_XVDMC>& parte, XVUInt64 uiFlags,
               std::vector<CXVDadosCR_IntegracaoMiddleware>* pLista) {
    pLista->clear();
    for (const REG_XVDMC regDmc : parte) {
        CXVDadosCR_IntegracaoMiddleware dados;
        const HRESULT hr = rContexto.Abre(EUsoDaBase::eLeitura).LeIntegracao(regDmc, uiFlags, &dados);
        if (SUCCEEDED(hr))
            pLista->push_back(std::move(dados));
        else if (XVCliente::ServidorFoiEmbora(hr))
            XVConfere(hr);
        else
            EscreveNaoLida(rContexto, regDmc, hr);
    }
}

// Calls fRecebe for one part of the integrations after the other. A query of the external systems is made
// once for the whole list, so the list then stays whole, and is not made again for each of them.
template <class FRecebe>
void LeEmPartes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista, XVUInt64 uiFlags,
                std::size_t uiPorLeitura, FRecebe&& fRecebe) {
    XVCliente::CXVCliente& rCliente = rContexto.Abre(EUsoDaBase::eLeitura);
    const bool bConsulta = (uiFlags & k_ullConsultaSistemaTerceiro) != 0;
    if (bConsulta) uiPorLeitura = lista.size();
    std::vector<CXVDadosCR_IntegracaoMiddleware> listaDados;
    for (std::size_t i = 0; i < lista.size(); i += uiPorLeitura) {
        const std::size_t uiFim = std::min(lista.size(), i + uiPorLeitura);
        const std::vector<REG_XVDMC> parte(lista.begin() + static_cast<std::ptrdiff_t>(i),
                                           lista.begin() + static_cast<std::ptrdiff_t>(uiFim));
        const HRESULT hr =
            !bConsulta && parte.size() == 1 ? S_FALSE : rCliente.LeIntegracoes(parte, uiFlags, &listaDados);
        if (FAILED(hr) && bConsulta) XVConfere(hr);
        if (hr != S_OK) LeUmaAUma(rContexto, parte, uiFlags, &listaDados);
        fRecebe(listaDados);
    }
}

struct STextoLido {
    const char* pszCampo;
    const char* pszRotulo;
    std::string CXVDadosCR_IntegracaoMiddleware::*pMembro;
    XVUInt64 uiFlag;
    const char* pszFimNome;  // of the file that receives it
};

constexpr STextoLido k_aTextos[] = {
    {"regRegistroJSON", "JSON enviado", &CXVDadosCR_IntegracaoMiddleware::sRegistroJSON, k_ullLeJSON,
     ".enviado.json"},
    {"regMensagemIntegracao", "Mensagem", &CXVDadosCR_IntegracaoMiddleware::sMensagemIntegracao,
     k_ullLeMensagem, ".mensagem.txt"},
    {"regJSONRetornoIntegracao", "JSON de retorno", &CXVDadosCR_IntegracaoMiddleware::sJSONRetornoIntegracao,
     k_ullLeJSONRetorno, ".retorno.json"},
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
            forma(rTexto, rDados.*rTexto.pMembro, false);
        else
            forma(rTexto, ArquivoDoTexto(rDados, rTexto, sPasta), true);
    }
}

void MostraUma(CXVContexto& rContexto, const CXVDadosCR_IntegracaoMiddleware& rDados, XVUInt64 uiFlags,
               const std::string& sPasta) {
    if (rContexto.saida.EhJson()) {
        XVJson json = XVRegistroJson::ParaJson(rDados, false);
        const auto inclui = [&json](const STextoLido& rTexto, const std::string& sValor, bool bCaminho) {
            const std::string sCampo = rTexto.pszCampo;
            XVRegistroJson::Inclui(json, bCaminho ? sCampo + "_arquivo" : sCampo, sValor);
        };
        MontaUma(inclui, rDados, uiFlags, sPasta);
        return rContexto.saida.LinhaJson(json);
    }
    XVRegistroJson::XVListaPares listaPares = XVRegistroJson::ParaPares(rDados, false);
    const auto inclui = [&listaPares](const STextoLido& rTexto, const std::string& sValor, bool bCaminho) {
        if (bCaminho)
            listaPares.emplace_back(std::string(rTexto.pszRotulo) + ", arquivo", sValor);
        else
            listaPares.emplace_back(rTexto.pszRotulo, XVRegistroJson::ParaPessoa(sValor));
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
    XVOpcaoSimples(rComando, "--pasta,--para-pasta", "PASTA",
                   "Grava cada texto lido num arquivo desta pasta em vez de mostrá-lo", &sPasta);
}

XVUInt64 SOpcoesLeitura::GetFlags() const {
    if (bOperacaoPosterior && !bConsultaTerceiro)
        XVErroDeUso("--operacao-posterior só vale com --consulta-terceiro");
    XVUInt64 uiFlags = bTodos ? k_ullLeTextos : 0;
    if (bRegistroJSON) uiFlags |= k_ullLeJSON;
    if (bMensagem) uiFlags |= k_ullLeMensagem;
    if (bJSONRetorno) uiFlags |= k_ullLeJSONRetorno;
    if (!sPasta.empty() && uiFlags == 0) XVErroDeUso("--pasta pede ao menos um texto (--todos, por exemplo)");
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

std::size_t XVTabelaIntegracoes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista) {
    const auto cor = [](std::string_view sStatus) -> std::string_view {
        if (sStatus == "Erro") return "31";
        if (sStatus == "Pendente") return "33";
        return sStatus == "Sucesso" ? "32" : std::string_view();
    };
    using enum CXVTabela::EAlinhamento;
    CXVTabela tabela({{"DMC"},
                      {"Inclusão", eEsquerda, 4, 17},
                      {"Tipo", eEsquerda, 2, 10},
                      {"Transação", eEsquerda, 6},
                      {"Sistema", eEsquerda, 5, 7},
                      {"Status", eEsquerda, 1, 0, cor},
                      {"Chave externa", eDireita, 3},
                      {"Movimento de origem", eEsquerda, 7}},
                     XVTerminal::GetLargura(), XVTerminal::UsaCores());
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
    std::size_t uiMostradas = 0;
    LeEmPartes(rContexto, lista, 0, k_uiPorParteDaTabela, [&](const auto& rParte) {
        for (const CXVDadosCR_IntegracaoMiddleware& rDados : rParte) inclui(rDados);
        uiMostradas += rParte.size();
        rContexto.saida.Escreve(tabela.Monta());
    });
    if (lista.empty()) rContexto.saida.Escreve(tabela.Monta());
    return uiMostradas;
}

void XVCsvIntegracoes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista) {
    const auto escreve = [&](const CXVDadosCR_IntegracaoMiddleware& rDados, auto&& fCelula) {
        std::string sLinha;
        for (const auto& [sNome, sValor] : XVRegistroJson::ParaPares(rDados, false)) {
            if (!sLinha.empty()) sLinha += ';';
            sLinha += fCelula(sNome, sValor);
        }
        rContexto.saida.Linha(sLinha + '\r');
    };
    // No cell needs quotes: names, numbers, keys and times hold neither semicolon nor quote nor line end.
    escreve({}, [](const std::string& sNome, const std::string&) { return sNome; });
    LeEmPartes(rContexto, lista, 0, k_uiPorParteDaTabela, [&](const auto& rParte) {
        for (const CXVDadosCR_IntegracaoMiddleware& rDados : rParte)
            escreve(rDados, [](const std::string&, const std::string& sValor) {
                return sValor == "-" ? std::string() : sValor;
            });
    });
}

std::vector<REG_XVDMC> XVOrdenaIntegracoes(CXVContexto& rContexto, const std::vector<REG_XVDMC>& lista,
                                           EOrdem eOrdem, bool bDecrescente) {
    std::vector<std::pair<XVUInt64, REG_XVDMC>> listaChaves;
    // Day and time of a moment, and date and pointer of a DMC, lie in their values in the order that sorts.
    const auto chave = [eOrdem](const CXVDadosCR_IntegracaoMiddleware& rDados) {
        switch (eOrdem) {
            case EOrdem::eInclusao:
                return rDados.regDataHoraInclusao.uiValor;
            case EOrdem::eAlteracao:
                return rDados.regDataHoraAlteracaoStatus.uiValor;
            case EOrdem::eChave:
                return rDados.uiChaveIntegracaoSistemaTerceiro;
            case EOrdem::eDmc:
                break;
        }
        return rDados.regDmc.uiValor;
    };
    LeEmPartes(rContexto, lista, 0, k_uiPorParteDaTabela, [&](const auto& rParte) {
        for (const CXVDadosCR_IntegracaoMiddleware& rDados : rParte)
            listaChaves.emplace_back(chave(rDados), rDados.regDmc);
    });
    std::stable_sort(listaChaves.begin(), listaChaves.end(), [bDecrescente](const auto& a, const auto& b) {
        return bDecrescente ? b.first < a.first : a.first < b.first;
    });
    std::vector<REG_XVDMC> listaOrdenada;
    listaOrdenada.reserve(listaChaves.size());
    for (const auto& [uiChave, regDmc] : listaChaves) listaOrdenada.push_back(regDmc);
    return listaOrdenada;
}
