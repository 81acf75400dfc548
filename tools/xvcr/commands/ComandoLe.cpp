// le: integrations by their DMCs.
#include <memory>

#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVLeituraIntegracoes.h"
#include "tools/xvcr/commands/XVOpcoes.h"
#include "tools/xvcr/text/XVFonteBytes.h"
#include "tools/xvcr/text/XVLeitorLinhas.h"

namespace {

struct SLe {
    std::vector<std::string> listaArgumentos;
    SOpcoesLeitura opcoes;
};

REG_XVDMC LeDmc(const std::string& sTexto) {
    REG_XVDMC regDmc;
    const std::string sErro = XVLeituraValor::Le(sTexto, &regDmc);
    if (!sErro.empty()) XVErroDeUso("\"" + sTexto + "\": " + sErro);
    if (regDmc.EhNulo()) XVErroDeUso("\"" + sTexto + "\": o DMC nulo não é de integração alguma");
    return regDmc;
}

// One DMC a line.
void LeDaEntrada(std::vector<REG_XVDMC>& rLista) {
    constexpr std::size_t k_uiLimiteLinha = 256;
    const std::unique_ptr<IXVFonteBytes> pEntrada = XVAbreFonte("-");
    CXVLeitorLinhas leitor(*pEntrada, k_uiLimiteLinha);
    std::string sLinha;
    for (;;) {
        const CXVLeitorLinhas::EResultado eResultado = leitor.Proxima(&sLinha);
        if (eResultado == CXVLeitorLinhas::EResultado::eFim) return;
        if (eResultado == CXVLeitorLinhas::EResultado::eLonga)
            XVFalha("linha " + std::to_string(leitor.GetNumero()) + ": longa demais para um DMC");
        if (!sLinha.empty()) rLista.push_back(LeDmc(sLinha));
    }
}

void Executa(const SLe& rLe, CXVContexto& rContexto) {
    std::vector<REG_XVDMC> lista;
    for (const std::string& rArgumento : rLe.listaArgumentos) {
        if (rArgumento == "-")
            LeDaEntrada(lista);
        else
            lista.push_back(LeDmc(XVDesprotege(rArgumento)));
    }
    XVMostraIntegracoes(rContexto, lista, rLe.opcoes);
}

}  // namespace

void XVAdicionaLe(CLI::App& rRaiz, CXVContexto& rContexto) {
    auto pLe = std::make_shared<SLe>();
    CLI::App* pComando =
        XVAdicionaComando(rRaiz, "le", "Lê integrações pelos seus DMCs",
                          "  xvcr le 20261121-15-1 --todos\n"
                          "  xvcr le 20261121-15-1 20261121-16-1 --json --mensagem\n"
                          "  xvcr busca --status Erro --dmcs | xvcr le - --todos --pasta erros");
    pComando
        ->add_option("dmc", pLe->listaArgumentos, "DMCs das integrações; - lê um por linha da entrada padrão")
        ->type_name("DMC")
        ->required();
    pLe->opcoes.Adiciona(*pComando);
    XVDefineAcao(pComando, rContexto, [pLe, &rContexto] { Executa(*pLe, rContexto); });
}
