#include "tests/xvcr/XVPrograma.h"

#include "tests/harness/XVProcessoFilho.h"

SExecucao XVPrograma::Xvcr(const std::vector<std::string>& listaArgumentos,
                           const std::string& sEntrada) const {
    std::vector<std::string> listaTudo{
        "--diretorio", m_Diretorio.GetCaminho(), "--empresa", "001", "--usuario", "7"};
    listaTudo.insert(listaTudo.end(), listaArgumentos.begin(), listaArgumentos.end());
    return XVExecuta(XVProgramaVizinho("xvcr"), listaTudo, sEntrada);
}

std::vector<nlohmann::json> XVPrograma::Json(std::vector<std::string> listaArgumentos,
                                             const std::string& sEntrada) const {
    listaArgumentos.insert(listaArgumentos.begin(), "--json");
    const SExecucao execucao = Xvcr(listaArgumentos, sEntrada);
    EXPECT_EQ(execucao.iSaida, 0) << execucao.sErro;
    return XVLinhasJson(execucao.sSaida);
}

std::string XVPrograma::Grava(std::vector<std::string> listaOpcoes) const {
    listaOpcoes.insert(listaOpcoes.begin(), "grava");
    const std::vector<nlohmann::json> listaLinhas = Json(std::move(listaOpcoes));
    return listaLinhas.size() == 1 ? listaLinhas[0].value("sDmc", "") : std::string();
}
