#include "tests/xvcr/XVExecutaAqui.h"

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>

#include "tools/xvcr/XVAplicacao.h"

SExecucao XVExecutaAqui(const std::vector<std::string>& listaArgumentos) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int iSaida = XVExecutaAplicacao(listaArgumentos);
    return {iSaida, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

std::vector<std::string> XVPalavras(const std::string& sLinha) {
    std::istringstream fluxo(sLinha);
    return {std::istream_iterator<std::string>(fluxo), {}};
}

std::vector<nlohmann::json> XVLinhasJson(const std::string& sTexto) {
    std::vector<nlohmann::json> listaLinhas;
    std::istringstream fluxo(sTexto);
    for (std::string sLinha; std::getline(fluxo, sLinha);)
        listaLinhas.push_back(nlohmann::json::parse(sLinha));
    return listaLinhas;
}
