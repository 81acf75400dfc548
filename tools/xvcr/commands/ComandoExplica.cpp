// explica: what a code means, why it comes and what to do.
#include <memory>

#include "client/XVClienteCodigos.h"
#include "support/messages/XVMensagens.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/output/XVTabela.h"
#include "tools/xvcr/output/XVTerminal.h"
#include "tools/xvcr/text/XVLeituraCodigo.h"
#include "tools/xvcr/text/XVTextoTela.h"

namespace {

// The code that was asked about, or the first of the entry's.
void MostraJson(CXVSaida& rSaida, HRESULT hr, const SMensagemCodigo& rMensagem) {
    XVJson json{{"codigo", XVCliente::CodigoEmTexto(hr)}};
    if (rMensagem.hrUltimo != 0) json["ate"] = XVCliente::CodigoEmTexto(rMensagem.hrUltimo);
    if (!rMensagem.sNome.empty()) json["nome"] = rMensagem.sNome;
    json["assunto"] = XVNomeAssunto(rMensagem.eAssunto);
    json["frase"] = rMensagem.sDescricao;
    json["causa"] = rMensagem.sCausa;
    json["acao"] = rMensagem.sAcao;
    rSaida.LinhaJson(json);
}

// Of a code of Windows that the table does not hold the name is all that is known.
void MostraSoNome(CXVSaida& rSaida, HRESULT hr) {
    const std::string_view sNome = XVCliente::NomeDoCodigo(hr);
    const std::string sCodigo = XVCliente::CodigoEmTexto(hr);
    if (sNome.empty()) XVFalha(sCodigo + ": código desconhecido; nem este programa nem o Windows o nomeiam");
    if (rSaida.EhJson())
        rSaida.LinhaJson(XVJson{{"codigo", sCodigo}, {"nome", sNome}});
    else
        rSaida.Pares({{"Código", sCodigo + " " + std::string(sNome)},
                      {"O que houve", "Código do Windows, que este programa apenas repassa."}});
}

// On a terminal, lines that it can show; otherwise one.
std::string ParaOTerminal(std::string_view sTexto) {
    const std::size_t uiLargura = XVTerminal::GetLargura();
    if (uiLargura == 0) return std::string(sTexto);
    std::string sLinhas;
    for (const std::string& rLinha : XVTextoTela::Quebra(sTexto, uiLargura)) sLinhas += rLinha + '\n';
    return sLinhas;
}

void Mostra(CXVSaida& rSaida, HRESULT hr) {
    const SMensagemCodigo* pMensagem = XVBuscaMensagem(hr);
    if (pMensagem == nullptr) {
        MostraSoNome(rSaida, hr);
    } else if (rSaida.EhJson()) {
        MostraJson(rSaida, hr, *pMensagem);
    } else {
        const std::string_view sNome = pMensagem->sNome;
        rSaida.Pares({{"Código", XVCliente::CodigoEmTexto(hr).append(sNome.empty() ? "" : " ").append(sNome)},
                      {"O que houve", ParaOTerminal(pMensagem->sDescricao)},
                      {"Causa", ParaOTerminal(pMensagem->sCausa)},
                      {"O que fazer", ParaOTerminal(pMensagem->sAcao)}});
    }
}

void MostraTodos(CXVSaida& rSaida) {
    CXVTabela tabela({{"Código"}, {"Nome"}});
    for (const std::span<const SMensagemCodigo> aMensagens : XVListaMensagens()) {
        for (const SMensagemCodigo& rMensagem : aMensagens) {
            if (rSaida.EhJson())
                MostraJson(rSaida, rMensagem.hr, rMensagem);
            else
                tabela.Inclui({XVCliente::CodigoEmTexto(rMensagem.hr), std::string(rMensagem.sNome)});
        }
    }
    if (!rSaida.EhJson()) rSaida.Escreve(tabela.Monta());
}

void Executa(const std::vector<std::string>& listaCodigos, CXVSaida& rSaida) {
    std::vector<HRESULT> lista;
    for (const std::string& rCodigo : listaCodigos) {
        const std::string sErro = XVLeituraCodigo::Le(XVDesprotege(rCodigo), &lista.emplace_back());
        if (!sErro.empty()) XVErroDeUso("\"" + XVDesprotege(rCodigo) + "\": " + sErro);
    }
    if (lista.empty()) MostraTodos(rSaida);
    for (std::size_t i = 0; i < lista.size(); ++i) {
        if (i > 0 && !rSaida.EhJson()) rSaida.Linha("");
        Mostra(rSaida, lista[i]);
    }
}

}  // namespace

void XVAdicionaExplica(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pListaCodigos = std::make_shared<std::vector<std::string>>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "explica", "Diz o que um código significa, por que vem e o que fazer",
        "  xvcr explica 0x81080C08\n"
        "  xvcr explica E_XVCR_ARQUIVO_TRA_ENCONTRADO eDiskFull\n"
        "  xvcr explica -- -2147221164\n"
        "Vale todo código e nome que xvcr e os logs mostram. Sem código, a lista de todos.");
    pComando->add_option("codigo", *pListaCodigos, "Código ou nome simbólico")->type_name("CÓDIGO|NOME");
    XVDefineAcao(pComando, rContexto,
                 [pListaCodigos, &rContexto] { Executa(*pListaCodigos, rContexto.saida); });
}
