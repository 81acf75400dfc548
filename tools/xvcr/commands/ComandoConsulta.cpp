// consulta: a direct query of an external system; nothing is stored.
#include <memory>

#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/text/XVArquivoSaida.h"
#include "tools/xvcr/text/XVBase64.h"

namespace {

struct SConsulta {
    CXVDadosCR_ConsultaSistemaTerceiro consulta;
    std::string sArquivo;  // of the document; empty: the document goes into the output
};

void Executa(const SConsulta& rConsulta, CXVContexto& rContexto) {
    CXVDadosCR_StatusConsultaSistemaTerceiro resposta;
    XVConfere(rContexto.Abre(EUsoDaBase::eLeitura).BuscaDadosSistemaTerceiro(rConsulta.consulta, &resposta));
    const std::size_t uiTamanho = resposta.sDocumentoRetorno.size();
    if (!rConsulta.sArquivo.empty()) {
        XVGravaArquivo(rConsulta.sArquivo, resposta.sDocumentoRetorno);
        resposta.sDocumentoRetorno.clear();
    }
    if (rContexto.saida.EhJson()) {
        XVJson json = XVRegistroJson::ParaJson(resposta);
        json["ulTamanhoDocumentoRetorno"] = uiTamanho;
        // A document is bytes of any kind, so its form does not depend on what it happens to hold.
        json.erase("pDocumentoRetorno");
        json.erase("pDocumentoRetorno_base64");
        if (rConsulta.sArquivo.empty())
            json["pDocumentoRetorno_base64"] = XVBase64::Codifica(resposta.sDocumentoRetorno);
        else
            XVRegistroJson::Inclui(json, "pDocumentoRetorno_arquivo", rConsulta.sArquivo);
        rContexto.saida.LinhaJson(json);
        return;
    }
    using XVRegistroJson::ParaPessoa;
    rContexto.saida.Pares({{"Resultado", ParaPessoa(EEnumeracao::eStatusConsulta, resposta.eStatusConsulta)},
                           {"Mensagem", ParaPessoa(resposta.sMensagemRetorno)},
                           {"JSON", ParaPessoa(resposta.sJSONRetorno)},
                           {"Documento", std::to_string(uiTamanho) + " bytes"}});
}

}  // namespace

void XVAdicionaConsulta(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pConsulta = std::make_shared<SConsulta>();
    CLI::App* pComando = XVAdicionaComando(
        rRaiz, "consulta", "Consulta um sistema externo, sem gravar nada",
        "  xvcr consulta --tipo-consulta ConsultaCnpj --chave-consulta 11222333000181\n"
        "  xvcr consulta --tipo-consulta ConsultaBoleto --chave-consulta 9001 --documento boleto.pdf");
    CXVDadosCR_ConsultaSistemaTerceiro& rDados = pConsulta->consulta;
    XVOpcaoEnumeracao(*pComando, "--tipo-consulta", "O que é consultado", EEnumeracao::eTipoConsulta,
                      &rDados.eTipoConsulta)
        ->required();
    XVOpcaoTexto(*pComando, "--chave-consulta", "Chave da consulta", &rDados.sChaveConsulta)->required();
    XVOpcaoValor(*pComando, "--auxiliar", "NÚMERO", "Ponteiro auxiliar", &rDados.ulPonteiroAuxiliar);
    XVOpcaoValor(*pComando, "--tipo-auxiliar", "NÚMERO", "Tipo do ponteiro auxiliar",
                 &rDados.ucTipoPonteiroAuxiliar);
    XVOpcaoSimples(*pComando, "--documento", "ARQUIVO", "Arquivo que recebe o documento devolvido",
                   &pConsulta->sArquivo);
    XVDefineAcao(pComando, rContexto, [pConsulta, &rContexto] { Executa(*pConsulta, rContexto); });
}
