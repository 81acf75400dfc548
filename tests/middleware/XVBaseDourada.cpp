#include "tests/middleware/XVBaseDourada.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/harness/XVProcessoFilho.h"

namespace {

TArquivos LePasta(const std::string& sPasta) {
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

}  // namespace

TArquivos XVBaseDourada(unsigned uiVersao, bool bCabecalho) {
    TArquivos arquivos = LePasta("v" + std::to_string(uiVersao == 5 ? 4 : uiVersao));
    if (uiVersao != 0)
        for (auto& [sNome, sBytes] : arquivos) sBytes.erase(0, 240);
    if (uiVersao == 5)
        for (const auto& [sNome, sDados] : XVDadosConvertidos(5)) arquivos[sNome] = sDados;
    if (bCabecalho)
        for (auto& [sNome, sBytes] : arquivos) sBytes = XVArquivoDoTeste({sNome, 3, 1, 5, 6}, sBytes);
    return arquivos;
}

// Which records began in the first layout is known by the version: the days' up to 2, the key map's up to 1.
TArquivos XVDadosConvertidos(unsigned uiVersao) {
    TArquivos dados = LePasta("v5");
    const TArquivos primeiros = LePasta("v5_first");
    if (uiVersao < 3)
        for (const char* pszDia : k_apszDias) dados[pszDia] = primeiros.at(pszDia);
    if (uiVersao < 2) dados["CRCHAVEREGTER.dat"] = primeiros.at("CRCHAVEREGTER.dat");
    return dados;
}
