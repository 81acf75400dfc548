// manual: the manual page, made from the declarations.
#include "tools/xvcr/commands/XVComandos.h"
#include "tools/xvcr/commands/XVDeclaracoes.h"

namespace {

// Text for troff: no character of it is a request or an escape.
std::string Troff(std::string_view sTexto) {
    std::string sSaida;
    bool bInicio = true;
    for (const char c : sTexto) {
        if (bInicio && (c == '.' || c == '\'')) sSaida += "\\&";
        if (c == '\\')
            sSaida += "\\e";
        else if (c == '-')
            sSaida += "\\-";
        else
            sSaida += c;
        bInicio = c == '\n';
    }
    return sSaida;
}

void EscreveOpcoes(const CLI::App& rComando, CXVSaida& rSaida) {
    for (const CLI::Option* pOpcao : rComando.get_options()) {
        std::string sNome = "\\fB" + Troff(XVDeclaracoes::GetNomesDaAjuda(*pOpcao)) + "\\fR";
        if (XVDeclaracoes::LevaValor(*pOpcao)) sNome += " \\fI" + Troff(pOpcao->get_type_name()) + "\\fR";
        if (pOpcao->get_required()) sNome += pOpcao->get_positional() ? " (obrigatório)" : " (obrigatória)";
        rSaida.Linha(".TP\n" + sNome + '\n' + Troff(pOpcao->get_description()));
        const EEnumeracao eEnumeracao = XVDeclaracoes::GetEnumeracao(*pOpcao);
        if (eEnumeracao != EEnumeracao::eNenhuma)
            rSaida.Linha(".br\nValores: " + Troff(XVEnumeracoesTexto::GetLista(eEnumeracao)));
    }
}

void EscreveComando(const CLI::App& rComando, CXVSaida& rSaida) {
    rSaida.Linha(".SH \"" + Troff(XVDeclaracoes::GetLinha(rComando)) + "\"\n" +
                 Troff(rComando.get_description()));
    EscreveOpcoes(rComando, rSaida);
    rSaida.Linha(".PP\n.nf\n" + Troff(rComando.get_footer()) + "\n.fi");
    for (const CLI::App* pComando : rComando.get_subcommands({})) EscreveComando(*pComando, rSaida);
}

void Executa(const CLI::App& rRaiz, CXVSaida& rSaida) {
    rSaida.Linha(".TH XVCR 1\n.SH NOME\nxvcr \\- " + Troff(rRaiz.get_description()) +
                 "\n.SH USO\n.B xvcr\n[opções gerais] COMANDO [opções]\n.SH \"OPÇÕES GERAIS\"");
    EscreveOpcoes(rRaiz, rSaida);
    for (const CLI::App* pComando : rRaiz.get_subcommands({})) EscreveComando(*pComando, rSaida);
    rSaida.Linha(".SH SAÍDA\n.nf\n" + Troff(rRaiz.get_footer()) + "\n.fi");
}

}  // namespace

void XVAdicionaManual(CLI::App& rRaiz, CXVContexto& rContexto) {
    CLI::App* pComando = XVAdicionaComando(rRaiz, "manual", "Escreve a página de manual (formato man)",
                                           "  xvcr manual > xvcr.1\n"
                                           "Mostra-se com \"man ./xvcr.1\".");
    XVDefineAcao(pComando, rContexto, [&rRaiz, &rContexto] { Executa(rRaiz, rContexto.saida); });
}
