// The other process of the tests between processes. It does one thing, prints the number of the cause,
// and then holds what it got until its input ends.
//
//   abre <path> <access> <share>   marca <directory> <name>
//   herda <directory>   prints how many descriptors in the directory it was started with instead
//   carrega <name>      prints what became of the library of this name, and ends
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "platform/XVBibliotecaDinamica.h"
#include "platform/XVPlataforma.h"

namespace {

int Responde(const CXVErroArquivo& rErro) {
    std::cout << static_cast<int>(rErro.GetCausa()) << std::endl;
    std::string sLinha;
    std::getline(std::cin, sLinha);
    return 0;
}

int Abre(char** apszArgumentos) {
    const SAberturaArquivo abertura{static_cast<EAcessoArquivo>(std::atoi(apszArgumentos[1])),
                                    static_cast<ECompartilhamentoArquivo>(std::atoi(apszArgumentos[2])),
                                    ECriacaoArquivo::eSomenteExistente};
    std::unique_ptr<IXVArquivo> pArquivo;
    return Responde(XVPlataforma::SistemaArquivos().Abre(apszArgumentos[0], abertura, pArquivo));
}

int Marca(char** apszArgumentos) {
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    return Responde(
        XVPlataforma::SistemaArquivos().MarcaDiretorio(apszArgumentos[0], apszArgumentos[1], pMarca));
}

// Whether a library was found and its function answers; otherwise why it is refused.
int Carrega(const std::string& sNome) {
    const CXVBibliotecaDinamica biblioteca(sNome);
    const auto pfnSoma = biblioteca.GetFuncao<int (*)(int, int)>("XVSomaTeste");
    const bool bServe = pfnSoma != nullptr && pfnSoma(2, 3) == 5 && biblioteca.GetMotivoFalha().empty();
    std::cout << (bServe                                ? "serve"
                  : biblioteca.GetMotivoFalha().empty() ? "ausente"
                                                        : "recusada")
              << std::endl;
    return 0;
}

int Herda(const std::string& sDiretorio) {
    const std::filesystem::directory_iterator descritores("/proc/self/fd");
    std::cout << std::count_if(begin(descritores), end(descritores), [&](const auto& rEntrada) {
        std::error_code erro;
        return std::filesystem::read_symlink(rEntrada.path(), erro).string().starts_with(sDiretorio);
    }) << std::endl;
    std::string sLinha;
    std::getline(std::cin, sLinha);
    return 0;
}

}  // namespace

int main(int iQuantidade, char** apszArgumentos) {
    const std::string sAcao = iQuantidade > 1 ? apszArgumentos[1] : "";
    if (sAcao == "abre" && iQuantidade == 5) {
        return Abre(apszArgumentos + 2);
    }
    if (sAcao == "marca" && iQuantidade == 4) {
        return Marca(apszArgumentos + 2);
    }
    if (sAcao == "carrega" && iQuantidade == 3) {
        return Carrega(apszArgumentos[2]);
    }
    if (sAcao == "herda" && iQuantidade == 3) {
        return Herda(apszArgumentos[2]);
    }
    return 2;
}
