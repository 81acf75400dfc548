#include "middleware/verificacao/XVVersaoZero.h"

#include <algorithm>

#include "core/xvdatabase/XVRegistroVersao.h"
#include "middleware/ConversaoIndicios.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/verificacao/XVTextosDoControle.h"
#include "support/XVAmbiente.h"
#include "support/trace/XVCapturaTrace.h"

bool XVEhVersaoZero(CXVLeituraLoja& rLeitura, const std::string& sDiretorio, const IXVDF_Profiler& rDono) {
    std::string sConfigurado;
    if (FAILED(CAmbienteXV::GetPathDados(XV_DF, rDono.GetEmpresa(), &sConfigurado)) ||
        sConfigurado != sDiretorio)
        return false;
    std::vector<std::string> listaNomes;
    bool bPartida = false;
    if (FAILED(XVTextosDoControle::Le(rLeitura, &listaNomes, &bPartida))) return false;
    // A listed version file was lost.
    if (std::any_of(listaNomes.begin(), listaNomes.end(),
                    [](const std::string& r) { return XVIgualSemCaixa(r, k_pszArquivoVersao); }))
        return false;
    const CXVCapturaTrace captura;
    CXVIndiciosVersao indicios;
    return SUCCEEDED(indicios.Inicializa(&rDono)) && SUCCEEDED(indicios.ConfereVersaoZero()) &&
           indicios.TemDados();
}
