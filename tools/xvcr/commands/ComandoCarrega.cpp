// carrega: many integrations from JSON Lines.
#include <memory>

#include "platform/XVConsole.h"
#include "tools/xvcr/commands/XVCarga.h"
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/output/XVProgresso.h"
#include "tools/xvcr/text/XVFonteBytes.h"
#include "tools/xvcr/text/XVLeitorLinhas.h"

namespace {

struct SCarrega {
    std::string sArquivo;
    bool bContinua = false;
    bool bPara = false;
    XVUInt ulLinhaMaxima = 256U * 1024U * 1024U;  // bytes
};

struct SContagem {
    std::uint64_t uiLidas = 0;
    std::uint64_t uiGravadas = 0;
};

std::string DescreveProgresso(const CXVLeitorLinhas& rLeitor, std::uintmax_t uiTotal) {
    std::string sTexto = std::to_string(rLeitor.GetNumero()) + " linhas";
    if (uiTotal > 0) sTexto += " (" + std::to_string(rLeitor.GetBytes() * 100 / uiTotal) + "%)";
    return sTexto;
}

void MostraLinha(CXVSaida& rSaida, std::uint64_t uiLinha, const SResultadoLinha& rResultado) {
    const bool bStatus = rResultado.eOperacao == SResultadoLinha::EOperacao::eStatus;
    if (!rSaida.EhJson()) {
        const std::string sDmc = rResultado.regDmc.EhNulo() ? "" : rResultado.regDmc.ToString() + ' ';
        const char* pszFim = !rResultado.sErro.empty() ? "erro" : bStatus ? "status gravado" : "gravada";
        rSaida.Linha("linha " + std::to_string(uiLinha) + ": " + sDmc + pszFim);
        return;
    }
    XVJson json = XVJson::object();
    json["linha"] = uiLinha;
    json["operacao"] = bStatus ? "status" : "integracao";
    const bool bChegouABase = rResultado.sErro.empty() || FAILED(rResultado.hr);
    if (bChegouABase) json["hr"] = XVCliente::CodigoEmTexto(rResultado.hr);
    XVRegistroJson::Inclui(json, "regDmc", rResultado.regDmc);
    if (!rResultado.sErro.empty()) {
        if (!rResultado.sCampo.empty()) XVRegistroJson::Inclui(json, "campo", rResultado.sCampo);
        XVRegistroJson::Inclui(json, "erro", rResultado.sErro);
    }
    rSaida.LinhaJson(json);
}

void MostraContagem(CXVSaida& rSaida, const SContagem& rContagem) {
    const std::uint64_t uiErros = rContagem.uiLidas - rContagem.uiGravadas;
    if (rSaida.EhJson())
        rSaida.LinhaJson(
            XVJson{{"lidas", rContagem.uiLidas}, {"gravadas", rContagem.uiGravadas}, {"erros", uiErros}});
    else
        rSaida.Linha(std::to_string(rContagem.uiLidas) + " lidas, " + std::to_string(rContagem.uiGravadas) +
                     " gravadas, " + std::to_string(uiErros) + " com erro");
}

void EscreveErroDaLinha(std::uint64_t uiLinha, const SResultadoLinha& rResultado) {
    std::string sTexto = "linha " + std::to_string(uiLinha);
    if (!rResultado.sCampo.empty()) sTexto += ", campo \"" + rResultado.sCampo + '"';
    XVEscreveErro(sTexto + ": " + rResultado.sErro);
}

void Executa(const SCarrega& rCarrega, CXVContexto& rContexto) {
    const std::unique_ptr<IXVFonteBytes> pFonte = XVAbreFonte(rCarrega.sArquivo);
    CXVCarga carga(rContexto.Abre(EUsoDaBase::eGravacao));
    CXVLeitorLinhas leitor(*pFonte, rCarrega.ulLinhaMaxima);
    const auto pContagem = std::make_shared<SContagem>();  // the output asks for it until its end
    SContagem& rContagem = *pContagem;
    rContexto.saida.AoFalharDiz(
        [pContagem] { return std::to_string(pContagem->uiGravadas) + " linhas gravadas"; });
    {
        // On the terminal that shows no results.
        CXVProgresso progresso(XVConsole::ErroEhTerminal() && !XVConsole::SaidaEhTerminal());
        const std::uintmax_t uiTotal = pFonte->GetTamanho();
        std::string sLinha;
        for (;;) {
            const CXVLeitorLinhas::EResultado eResultado = leitor.Proxima(&sLinha);
            if (eResultado == CXVLeitorLinhas::EResultado::eFim) break;
            const bool bLonga = eResultado == CXVLeitorLinhas::EResultado::eLonga;
            if (!bLonga && sLinha.find_first_not_of(" \t") == std::string::npos) continue;
            SResultadoLinha resultado;
            if (bLonga)
                resultado.sErro = "mais de " + std::to_string(rCarrega.ulLinhaMaxima) + " bytes";
            else
                resultado = carga.Executa(sLinha);
            ++rContagem.uiLidas;
            if (resultado.sErro.empty()) ++rContagem.uiGravadas;
            MostraLinha(rContexto.saida, leitor.GetNumero(), resultado);
            if (!resultado.sErro.empty()) {
                EscreveErroDaLinha(leitor.GetNumero(), resultado);
                if (!rCarrega.bContinua) break;
            }
            progresso.Mostra([&] { return DescreveProgresso(leitor, uiTotal); });
        }
    }
    MostraContagem(rContexto.saida, rContagem);
    if (rContagem.uiGravadas != rContagem.uiLidas) rContexto.eSaida = ESaida::eFalha;
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
        "Com regDmc a linha altera a integração; com \"operacao\":\"status\" grava só o status.");
    XVOpcaoSimples(*pComando, "arquivo", "ARQUIVO|-",
                   "Arquivo com um objeto JSON por linha; - é a entrada padrão", &pCarrega->sArquivo)
        ->required();
    CLI::Option* pContinua =
        pComando->add_flag("--continua", pCarrega->bContinua, "Continua depois de uma linha com erro");
    pComando->add_flag("--para-no-erro,--para", pCarrega->bPara, "Para na primeira linha com erro (padrão)")
        ->excludes(pContinua);
    XVOpcaoContagem(*pComando, "--linha-maxima", "BYTES", "Tamanho máximo de uma linha (padrão: 256 MiB)",
                    &pCarrega->ulLinhaMaxima);
    XVDefineAcao(pComando, rContexto, [pCarrega, &rContexto] { Executa(*pCarrega, rContexto); });
}
