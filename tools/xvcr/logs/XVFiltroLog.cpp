#include "tools/xvcr/logs/XVFiltroLog.h"

#include "client/XVClienteCodigos.h"
#include "support/values/XVData.h"
#include "support/values/XVTextoAscii.h"
#include "tools/xvcr/text/XVLeituraCodigo.h"

bool SFiltroLog::Aceita(const SLinhaLog& rLinha) const {
    const auto igual = [](const std::string& sFiltro, const std::string& sValor) {
        return sFiltro.empty() || XVIgualSemCaixa(sFiltro, sValor);
    };
    if (!sDe.empty() && rLinha.sDataHora < sDe) return false;
    if (!sAte.empty() && rLinha.sDataHora > sAte) return false;
    if (!sFuncao.empty() && XVEmMinusculas(rLinha.sFuncao).find(XVEmMinusculas(sFuncao)) == std::string::npos)
        return false;
    return igual(sCodigo, rLinha.sCodigo) && igual(sEmpresa, rLinha.sEmpresa) &&
           igual(sUsuario, rLinha.sUsuario) && igual(sSessao, rLinha.sSessao);
}

std::string SFiltroLog::LeMomento(std::string_view sTexto, bool bFim, std::string* psMomento) {
    REG_XVDMAHMSUTC regMomento;
    if (sTexto.ends_with('Z') || !REG_XVDMAHMSUTC::DeISO8601(sTexto, &regMomento))
        return "esperada uma data-hora local, sem Z: 2026-11-21 ou 2026-11-21T13:05:09";
    std::string sMomento = regMomento.ToISO8601();
    sMomento.pop_back();
    // A day without time means all of it.
    if (bFim && sTexto.find('T') == std::string_view::npos)
        sMomento.replace(sMomento.find('T'), 9, "T23:59:59");
    *psMomento = std::move(sMomento);
    return {};
}

std::string SFiltroLog::LeCodigo(std::string_view sTexto, std::string* psCodigo) {
    HRESULT hr = S_OK;
    std::string sErro = XVLeituraCodigo::Le(sTexto, &hr);
    if (sErro.empty()) *psCodigo = XVCliente::CodigoEmTexto(hr);
    return sErro;
}
