#include "support/trace/XVProfilerErro.h"

#include "platform/XVAmbienteSO.h"
#include "support/trace/XVCapturaTrace.h"
#include "support/trace/XVProfilerConfig.h"
#include "support/trace/XVProfilerSaida.h"

namespace {

struct SVersoes {
    std::string sExecutavel = XVAmbienteSO::GetVersaoExecutavel();
    std::string sSistema = XVAmbienteSO::GetVersaoSistema();
};

// Found once, under the lock of the static's initialisation; never freed.
const SVersoes& Versoes() {
    static const SVersoes& s_rVersoes = *new SVersoes;
    return s_rVersoes;
}

// Whether the record still has to go to the file.
bool Captura(const SErroTrace& rErro, const std::string& sMensagem) {
    CXVCapturaTrace* pCaptura = CXVCapturaTrace::GetAtual();
    if (pCaptura == nullptr) return true;
    pCaptura->Inclui({rErro.hr, std::string(rErro.sExpressao), rErro.sFuncao, rErro.fonte.pszUnidade,
                      rErro.iLinha, sMensagem});
    return !pCaptura->EhSomenteCaptura();
}

}  // namespace

namespace XVProfilerErro {

void Grava(const SErroTrace& rErro, const std::string& sMensagem) {
    if (!Captura(rErro, sMensagem)) return;
    const auto pConfiguracao = XVProfilerConfig::GetAtual();
    SProfilerEvento evento(ETipoEvento::eErro, rErro.pDono);
    evento.uiMemoriaFim = evento.uiMemoriaInicio = XVAmbienteSO::GetMemoriaPrivadaProcesso();
    evento.sClasseFuncao = rErro.sFuncao;
    evento.sGuid = XVAmbienteSO::NovoGuid();
    evento.sArquivoFonte = rErro.fonte.pszArquivo;
    evento.iLinhaFonte = rErro.fonte.iLinha;
    evento.listaParametros = {{"VersaoTelvo", Versoes().sExecutavel},
                              {"VersaoSO", Versoes().sSistema},
                              {"Arquivo", rErro.fonte.pszUnidade},
                              {"Linha", std::to_string(rErro.iLinha)},
                              {"Log", sMensagem}};
    XVProfilerSaida::Escreve(*pConfiguracao, evento);
}

std::string NomeCompleto(std::string_view sClasse, std::string_view sFuncao) {
    std::string sNome(sClasse);
    if (!sNome.empty()) sNome += "::";
    sNome += sFuncao;
    return sNome;
}

}  // namespace XVProfilerErro
