// The golden stores of versions 0 to 4 and what their records are at version 5: bytes that were written
// without anything of the product (golden/generate.py). Every field holds another value, none of them 0.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "tests/harness/XVBytesBase.h"
#include "tests/harness/XVProcessoFilho.h"

using TArquivos = std::map<std::string, std::string>;  // name in the data directory -> bytes

// The files of a folder of golden ones.
inline TArquivos XVLePastaDourada(const std::string& sPasta) {
    const auto pasta = std::filesystem::path(XVProgramaVizinho("x")).parent_path() / "golden" / sPasta;
    TArquivos arquivos;
    for (const auto& entrada : std::filesystem::directory_iterator(pasta)) {
        std::ifstream arquivo(entrada.path(), std::ios::binary);
        std::ostringstream bytes;
        bytes << arquivo.rdbuf();
        arquivos[entrada.path().filename().string()] = bytes.str();
    }
    return arquivos;
}

// The days' files of every store.
inline constexpr const char* k_apszDias[] = {"CRINTEGMID20230605.dat", "CRINTEGMID20230606.dat",
                                             "CRINTEGMID20230607.dat"};

// Payloads, without header, that the files of such a store have after its conversion: all that any step
// writes. Which records began in the first layout is known by the version: the days' up to 2, the key map's
// up to 1.
inline TArquivos XVDadosConvertidos(unsigned uiVersao) {
    TArquivos dados = XVLePastaDourada("v5");
    const TArquivos primeiros = XVLePastaDourada("v5_first");
    if (uiVersao < 3)
        for (const char* pszDia : k_apszDias) dados[pszDia] = primeiros.at(pszDia);
    if (uiVersao < 2) dados["CRCHAVEREGTER.dat"] = primeiros.at("CRCHAVEREGTER.dat");
    return dados;
}

// The store as programs of this version left it. bCabecalho: with headers, as all but the oldest wrote them.
inline TArquivos XVBaseDourada(unsigned uiVersao, bool bCabecalho) {
    TArquivos arquivos = XVLePastaDourada("v" + std::to_string(uiVersao == 5 ? 4 : uiVersao));
    if (uiVersao != 0)
        for (auto& [sNome, sBytes] : arquivos) sBytes.erase(0, 240);
    if (uiVersao == 5)
        for (const auto& [sNome, sDados] : XVDadosConvertidos(5)) arquivos[sNome] = sDados;
    if (bCabecalho)
        for (auto& [sNome, sBytes] : arquivos) sBytes = XVArquivoDoTeste({sNome, 3, 1, 5, 6}, sBytes);
    return arquivos;
}
