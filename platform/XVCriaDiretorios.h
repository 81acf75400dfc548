// Creating a directory with the missing ones above it, given how the system creates a single one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/XVCaminho.h"
#include "platform/XVErroArquivo.h"

// fnCriaUm creates one directory: success when it is there afterwards, eArquivoNaoEncontrado when the
// one above it is missing.
template <class TCriaUm>
CXVErroArquivo XVCriaDiretorios(std::string sDiretorio, std::string_view sSeparadores, TCriaUm fnCriaUm) {
    if (!XVCaminho::PodeNomearDiretorio(sDiretorio)) {
        return {ECausaArquivo::eCaminhoInvalido, 0};
    }
    while (sDiretorio.size() > 1 && sSeparadores.find(sDiretorio.back()) != std::string_view::npos) {
        sDiretorio.pop_back();
    }
    // Up to the deepest directory that is there or can be made, then down again.
    std::vector<std::string> listaPendentes;
    CXVErroArquivo erro = fnCriaUm(sDiretorio);
    while (erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado) {
        std::string sAcima = XVCaminho::Separa(sDiretorio, sSeparadores).sDiretorio;
        if (sAcima == sDiretorio || sDiretorio == ".") {
            return {ECausaArquivo::eCaminhoInvalido, erro.GetErroSistema()};
        }
        listaPendentes.push_back(std::move(sDiretorio));
        sDiretorio = std::move(sAcima);
        erro = fnCriaUm(sDiretorio);
    }
    for (; erro.Ok() && !listaPendentes.empty(); listaPendentes.pop_back()) {
        erro = fnCriaUm(listaPendentes.back());
    }
    return erro;
}
