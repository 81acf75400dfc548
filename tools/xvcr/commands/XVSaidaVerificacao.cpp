#include "tools/xvcr/commands/XVSaidaVerificacao.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "client/XVClienteCodigos.h"
#include "tools/xvcr/text/XVTextoTela.h"

namespace {

constexpr std::size_t k_uiFaixasMostradas = 8;
constexpr std::size_t k_uiLugaresMostrados = 20;

struct SGravidade {
    EGravidade eGravidade;
    const char* pszTitulo;
    const char* pszNome;
};
constexpr SGravidade k_aGravidades[] = {{EGravidade::eDano, "Danos", "dano"},
                                        {EGravidade::eAviso, "Avisos", "aviso"},
                                        {EGravidade::eNota, "Notas", "nota"}};

std::string DmcEmTexto(XVUInt64 uiDia, XVUInt ulPonteiro) {
    return std::to_string(uiDia) + '-' + std::to_string(ulPonteiro) + "-1";
}

bool Tem(const SVerificacao& r, EAchado eTipo) {
    return std::any_of(r.listaAchados.begin(), r.listaAchados.end(),
                       [eTipo](const SXVAchado& rAchado) { return rAchado.eTipo == eTipo; });
}

XVJson AchadoEmJson(const SXVAchado& rAchado, bool bHaIlegivel) {
    const SDescricaoAchado& rDescricao = XVDescreveAchado(rAchado.eTipo);
    XVJson json{{"achado", rDescricao.pszNome}};
    for (const SGravidade& rGravidade : k_aGravidades)
        if (rGravidade.eGravidade == rDescricao.eGravidade) json["gravidade"] = rGravidade.pszNome;
    XVRegistroJson::Inclui(json, "arquivo", rAchado.sArquivo);
    if (rAchado.uiDia != 0) json["dia"] = rAchado.uiDia;
    if (FAILED(rAchado.hr)) json["hr"] = XVCliente::CodigoEmTexto(rAchado.hr);
    if (rAchado.uiQuantidade != 0) json["quantidade"] = rAchado.uiQuantidade;
    for (const SFaixa& rFaixa : rAchado.aFaixas)
        json["integracoes"].push_back(
            {DmcEmTexto(rAchado.uiDia, rFaixa.ulDe), DmcEmTexto(rAchado.uiDia, rFaixa.ulAte)});
    if (!rAchado.sDetalhe.empty()) XVRegistroJson::Inclui(json, "detalhe", rAchado.sDetalhe);
    json["frase"] = rDescricao.pszFrase;
    json["fazer"] = XVOQueFazer(rAchado.eTipo, bHaIlegivel);
    return json;
}

void MostraJson(CXVSaida& rSaida, const SVerificacao& r) {
    const bool bHaIlegivel = Tem(r, EAchado::eArquivoIlegivel);
    for (const bool bIlegiveis : {true, false})  // those first: the others may follow from them
        for (const SXVAchado& rAchado : r.listaAchados)
            if ((rAchado.eTipo == EAchado::eArquivoIlegivel) == bIlegiveis)
                rSaida.LinhaJson(AchadoEmJson(rAchado, bHaIlegivel));
    rSaida.LinhaJson(XVJson{{"integra", r.EhIntegra()},
                            {"integracoes", r.uiIntegracoes},
                            {"inteiras", r.uiInteiras},
                            {"substituidas", r.uiSubstituidas},
                            {"dias", r.uiDias},
                            {"arquivos", r.uiArquivos},
                            {"bytes", r.uiBytes},
                            {"textosMortos", r.uiTextosMortos},
                            {"bytesMortos", r.uiBytesMortos},
                            {"posicoesVagas", r.uiPosicoesVagas},
                            {"arquivosComSelo", r.uiSelados}});
}

std::string Resumo(const std::string& sEmpresa, const SVerificacao& r) {
    const std::string sInicio = "Empresa " + sEmpresa + ": ";
    if (Tem(r, EAchado::eVersaoAnterior) || Tem(r, EAchado::eVersaoPosterior))
        return sInicio + "a base é de outra versão, e as integrações não foram verificadas.";
    const XVUInt64 uiNao = r.uiIntegracoes - r.uiInteiras;
    if (uiNao > 0)
        return sInicio + "de " + XVContaIntegracoes(r.uiIntegracoes) + ", " + XVComPontos(r.uiInteiras) +
               (r.uiInteiras == 1 ? " está inteira e " : " estão inteiras e ") + XVComPontos(uiNao) + " não.";
    const std::string sDias = XVComPontos(r.uiDias) + (r.uiDias == 1 ? " dia" : " dias");
    const std::string sNenhuma =
        r.EhIntegra() ? "ainda não há integrações" : "nenhuma integração foi encontrada";
    const std::string sTodas = r.uiIntegracoes == 0   ? sNenhuma
                               : r.uiIntegracoes == 1 ? "a única integração está inteira"
                                                      : "todas as " + XVContaIntegracoes(r.uiIntegracoes) +
                                                            ", de " + sDias + ", estão inteiras";
    return sInicio + sTodas + (r.EhIntegra() ? ", e a base está íntegra." : ", mas a base tem danos.");
}

// One place where something was found: day, file, integrations, code, detail.
std::string Lugar(const SXVAchado& rAchado) {
    std::string sLugar = rAchado.uiDia == 0 ? "  " : "  " + XVDiaEmTexto(rAchado.uiDia) + "  ";
    sLugar += XVTextoTela::Escapa(rAchado.sArquivo, false);
    if (!rAchado.aFaixas.empty())
        sLugar += "  " + XVFaixasEmTexto(rAchado.uiDia, rAchado.aFaixas, k_uiFaixasMostradas);
    else if (rAchado.uiQuantidade > 1)
        sLugar += " (" + XVComPontos(rAchado.uiQuantidade) + ")";
    if (!rAchado.sDetalhe.empty()) sLugar += ": " + XVTextoTela::Escapa(rAchado.sDetalhe, false);
    if (FAILED(rAchado.hr)) sLugar += "\n    " + XVCliente::DescreveCodigo(rAchado.hr);
    return sLugar;
}

void MostraTipo(CXVSaida& rSaida, EAchado eTipo, const SVerificacao& r) {
    const SDescricaoAchado& rDescricao = XVDescreveAchado(eTipo);
    XVUInt64 uiIntegracoes = 0;
    std::size_t uiLugares = 0;
    std::string sLugares;
    for (const SXVAchado& rAchado : r.listaAchados) {
        if (rAchado.eTipo != eTipo) continue;
        if (!rAchado.aFaixas.empty()) uiIntegracoes += rAchado.uiQuantidade;
        if (++uiLugares <= k_uiLugaresMostrados) sLugares += Lugar(rAchado) + '\n';
    }
    if (uiLugares > k_uiLugaresMostrados)
        sLugares += "  e mais " + XVComPontos(uiLugares - k_uiLugaresMostrados) + " (todos com --json)\n";
    rSaida.Linha("- " + std::string(rDescricao.pszFrase) +
                 (uiIntegracoes > 0 ? " (" + XVContaIntegracoes(uiIntegracoes) + ")" : ""));
    rSaida.Escreve(sLugares);
    rSaida.Linha("  O que fazer: " + std::string(XVOQueFazer(eTipo, Tem(r, EAchado::eArquivoIlegivel))));
}

// Files that could not be read first: the other findings may follow from them.
std::vector<EAchado> NaOrdemDeMostrar() {
    std::vector<EAchado> listaTipos{EAchado::eArquivoIlegivel};
    for (unsigned i = 0; i < static_cast<unsigned>(EAchado::eQuantidade); ++i)
        if (const auto eTipo = static_cast<EAchado>(i); eTipo != EAchado::eArquivoIlegivel)
            listaTipos.push_back(eTipo);
    return listaTipos;
}

void MostraTexto(CXVSaida& rSaida, const std::string& sEmpresa, const SVerificacao& r) {
    rSaida.Linha(Resumo(sEmpresa, r));
    for (const SGravidade& rGravidade : k_aGravidades) {
        bool bTitulo = false;
        for (const EAchado eTipo : NaOrdemDeMostrar()) {
            if (XVDescreveAchado(eTipo).eGravidade != rGravidade.eGravidade || !Tem(r, eTipo)) continue;
            if (!std::exchange(bTitulo, true)) rSaida.Linha(std::string("\n") + rGravidade.pszTitulo + ':');
            MostraTipo(rSaida, eTipo, r);
        }
    }
    rSaida.Linha("\nArquivos lidos: " + XVComPontos(r.uiArquivos) + ", " + XVComPontos(r.uiBytes) +
                 " bytes; comparados com seu selo: " + XVComPontos(r.uiSelados) + ".");
    rSaida.Linha("Textos que nenhum registro aponta mais: " + XVComPontos(r.uiTextosMortos) + ", " +
                 XVComPontos(r.uiBytesMortos) + " bytes.");
    if (r.uiSubstituidas > 0)
        rSaida.Linha("Substituídas por outra do banco com a mesma chave: " + XVComPontos(r.uiSubstituidas) +
                     ".");
    if (r.uiPosicoesVagas > 0)
        rSaida.Linha("Posições vagas, de integrações que se perderam: " + XVComPontos(r.uiPosicoesVagas) +
                     ".");
}

}  // namespace

std::string XVComPontos(XVUInt64 uiNumero) {
    std::string sNumero = std::to_string(uiNumero);
    for (std::size_t i = sNumero.size(); i > 3;) sNumero.insert(i -= 3, 1, '.');
    return sNumero;
}

std::string XVContaIntegracoes(XVUInt64 uiQuantidade) {
    return XVComPontos(uiQuantidade) + (uiQuantidade == 1 ? " integração" : " integrações");
}

std::string XVDiaEmTexto(XVUInt64 uiDia) {
    char szDia[32];
    std::snprintf(szDia, sizeof(szDia), "%02u/%02u/%04u", static_cast<unsigned>(uiDia % 100),
                  static_cast<unsigned>(uiDia / 100 % 100), static_cast<unsigned>(uiDia / 10000 % 10000));
    return szDia;
}

std::string XVFaixasEmTexto(XVUInt64 uiDia, const std::vector<SFaixa>& aFaixas, std::size_t uiMaximo) {
    std::string sTexto;
    for (std::size_t i = 0; i < std::min(aFaixas.size(), uiMaximo); ++i) {
        if (i > 0) sTexto += ", ";
        sTexto += DmcEmTexto(uiDia, aFaixas[i].ulDe);
        if (aFaixas[i].ulAte != aFaixas[i].ulDe) sTexto += " a " + DmcEmTexto(uiDia, aFaixas[i].ulAte);
    }
    return aFaixas.size() > uiMaximo ? sTexto + " e outras (todas com --json)" : sTexto;
}

void XVMostraVerificacao(CXVSaida& rSaida, const std::string& sEmpresa, const SVerificacao& rVerificacao) {
    if (rSaida.EhJson())
        MostraJson(rSaida, rVerificacao);
    else
        MostraTexto(rSaida, sEmpresa, rVerificacao);
}
