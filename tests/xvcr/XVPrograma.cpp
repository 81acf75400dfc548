#include "tests/xvcr/XVPrograma.h"

#include <cstdlib>
#include <iterator>
#include <list>
#include <sstream>

#include "tools/xvcr/XVAplicacao.h"

SExecucao XVExecutaAqui(const TArgumentos& listaArgumentos) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int iSaida = XVExecutaAplicacao(listaArgumentos);
    return {iSaida, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

// putenv makes no copy: what it was given stays for good.
void XVPoeVariavel(const std::string& sAtribuicao) {
    static std::list<std::string> s_lista;
    putenv(s_lista.emplace_back(sAtribuicao).data());
}

void XVLimpaAmbiente() {
    for (const char* pszNome : {"XVCR_DIRETORIO=", "XVCR_EMPRESA=", "COLUMNS="}) XVPoeVariavel(pszNome);
}

[[maybe_unused]] static const bool k_bLimpo = (XVLimpaAmbiente(), true);

TArgumentos XVPalavras(const std::string& sLinha) {
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

SExecucao XVPrograma::Xvcr(const std::string& sPalavras, const TArgumentos& rMais,
                           const std::string& sEntrada) const {
    TArgumentos listaTudo = XVPalavras("--empresa 001 --usuario 7 --sessao 42 " + sPalavras);
    listaTudo.insert(listaTudo.begin(), {"--diretorio", m_Diretorio.GetCaminho()});
    listaTudo.insert(listaTudo.end(), rMais.begin(), rMais.end());
    return m_bAqui ? XVExecutaAqui(listaTudo) : XVExecuta(XVProgramaVizinho("xvcr"), listaTudo, sEntrada);
}

std::vector<nlohmann::json> XVPrograma::Json(const std::string& sPalavras, const TArgumentos& rMais,
                                             const std::string& sEntrada) const {
    const SExecucao execucao = Xvcr("--json " + sPalavras, rMais, sEntrada);
    EXPECT_EQ(execucao.iSaida, 0) << execucao.sErro;
    return XVLinhasJson(execucao.sSaida);
}

std::string XVPrograma::Grava(const std::string& sPalavras, const TArgumentos& rMais,
                              const std::string& sEntrada) const {
    return Json(sPalavras, rMais, sEntrada).at(0).value("sDmc", "");
}

CXVProcessoFilho XVPrograma::Carrega(const std::string& sArquivo) const {
    return CXVProcessoFilho(
        XVProgramaVizinho("xvcr"),
        {"--diretorio", m_Diretorio.GetCaminho(), "--empresa", "001", "carrega", sArquivo},
        {.sErro = m_Diretorio.Junta("erro")});
}
