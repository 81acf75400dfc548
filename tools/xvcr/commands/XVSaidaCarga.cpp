#include "tools/xvcr/commands/XVSaidaCarga.h"

#include "support/values/XVTextoDecimal.h"
#include "tools/xvcr/text/XVErros.h"

namespace {

using EOperacao = SResultadoLinha::EOperacao;

const char* DescreveFim(const SResultadoLinha& rResultado) {
    if (!rResultado.sErro.empty()) return "erro";
    if (rResultado.bExistente) return "já existente";
    return rResultado.eOperacao == EOperacao::eStatus ? "status gravado" : "gravada";
}

const char* GetNome(EOperacao eOperacao) {
    return eOperacao == EOperacao::eStatus ? "status" : "integracao";
}

}  // namespace

void SContagemCarga::Inclui(const SLinhaCarga& rLinha) {
    ++uiLidas;
    uiUltimaLinha = rLinha.uiNumero;
    if (rLinha.resultado.bExistente)
        ++uiExistentes;
    else if (rLinha.resultado.sErro.empty())
        ++uiGravadas;
}

void CXVSaidaCarga::Linha(const SLinhaCarga& rLinha) {
    const SResultadoLinha& rResultado = rLinha.resultado;
    if (m_rSaida.EhJson()) return LinhaJson(rLinha);
    m_sTexto = "linha ";
    XVAnexaDecimal(m_sTexto, rLinha.uiNumero);
    m_sTexto += ": ";
    if (!rResultado.regDmc.EhNulo()) {
        rResultado.regDmc.AnexaA(m_sTexto);
        m_sTexto += ' ';
    }
    m_sTexto += DescreveFim(rResultado);
    m_sTexto += '\n';
    m_rSaida.Escreve(m_sTexto);
}

// Written as text: no JSON object for each of a million lines that hold nothing to escape.
void CXVSaidaCarga::LinhaJson(const SLinhaCarga& rLinha) {
    const SResultadoLinha& rResultado = rLinha.resultado;
    if (!rResultado.sErro.empty()) return LinhaJsonComErro(rLinha);
    m_sTexto = R"({"linha":)";
    XVAnexaDecimal(m_sTexto, rLinha.uiNumero);
    m_sTexto += R"(,"operacao":")";
    m_sTexto += GetNome(rResultado.eOperacao);
    m_sTexto += R"(","hr":"0x00000000","regDmc":")";
    XVAnexaDecimal(m_sTexto, rResultado.regDmc.uiValor);
    m_sTexto += R"(","sDmc":")";
    rResultado.regDmc.AnexaA(m_sTexto);
    m_sTexto += rResultado.bExistente ? "\",\"existente\":true}\n" : "\"}\n";
    m_rSaida.Escreve(m_sTexto);
}

void CXVSaidaCarga::LinhaJsonComErro(const SLinhaCarga& rLinha) {
    const SResultadoLinha& rResultado = rLinha.resultado;
    XVJson json = XVJson::object();
    json["linha"] = rLinha.uiNumero;
    json["operacao"] = GetNome(rResultado.eOperacao);
    if (FAILED(rResultado.hr)) json["hr"] = XVCliente::CodigoEmTexto(rResultado.hr);
    XVRegistroJson::Inclui(json, "regDmc", rResultado.regDmc);
    if (!rResultado.sCampo.empty()) XVRegistroJson::Inclui(json, "campo", rResultado.sCampo);
    XVRegistroJson::Inclui(json, "erro", rResultado.sErro);
    m_rSaida.LinhaJson(json);
}

void CXVSaidaCarga::Total(const SContagemCarga& rContagem) {
    if (!m_rSaida.EhJson()) return m_rSaida.Linha(DescreveTotal(rContagem));
    XVJson json{{"lidas", rContagem.uiLidas}, {"gravadas", rContagem.uiGravadas}};
    if (m_bChaveUnica) json["existentes"] = rContagem.uiExistentes;
    json["erros"] = rContagem.GetErros();
    m_rSaida.LinhaJson(json);
}

void CXVSaidaCarga::Erro(const SLinhaCarga& rLinha) {
    std::string sTexto = "linha " + std::to_string(rLinha.uiNumero);
    if (!rLinha.resultado.sCampo.empty()) sTexto += ", campo \"" + rLinha.resultado.sCampo + '"';
    XVEscreveErro(sTexto + ": " + rLinha.resultado.sErro);
}

std::string CXVSaidaCarga::DescreveTotal(const SContagemCarga& rContagem) const {
    std::string sTexto =
        std::to_string(rContagem.uiLidas) + " lidas, " + std::to_string(rContagem.uiGravadas) + " gravadas, ";
    if (m_bChaveUnica) sTexto += std::to_string(rContagem.uiExistentes) + " já existentes, ";
    return sTexto + std::to_string(rContagem.GetErros()) + " com erro";
}

std::string XVDescreveProgressoCarga(std::uint64_t uiLinhas, std::uint64_t uiBytes, std::uint64_t uiTotal,
                                     XVUInt ulMilissegundos) {
    std::string sTexto = std::to_string(uiLinhas) + " linhas";
    if (uiTotal > 0) sTexto += " (" + std::to_string(uiBytes * 100 / uiTotal) + "%)";
    if (ulMilissegundos < 1000) return sTexto;
    sTexto += ", " + std::to_string(uiLinhas * 1000 / ulMilissegundos) + " linhas/s";
    if (uiTotal < uiBytes || uiBytes == 0) return sTexto;
    // A file of years and a load of hours: the product would pass 64 bits.
    const double dFaltam = static_cast<double>(uiTotal - uiBytes) / static_cast<double>(uiBytes) *
                           (static_cast<double>(ulMilissegundos) / 1000.0);
    const auto uiSegundos = static_cast<std::uint64_t>(dFaltam + 0.5);
    const std::string sSegundos = std::to_string(uiSegundos % 60);
    return sTexto + ", faltam " + std::to_string(uiSegundos / 60) + (sSegundos.size() == 1 ? ":0" : ":") +
           sSegundos;
}
