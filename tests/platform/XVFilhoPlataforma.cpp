// The other process of the tests between processes. It does one thing, prints the number of the cause,
// and then holds what it got until its input ends.
//
//   abre <path> <access> <share>   marca <directory> <name>
//   herda <directory>   prints how many descriptors in the directory it was started with instead
//   carrega <name>      prints what became of the library of this name
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "platform/XVBibliotecaDinamica.h"
#include "platform/XVPlataforma.h"

namespace {

// Whether a library was found and its function answers; otherwise why it is refused.
const char* Carrega(const std::string& sNome) {
    const CXVBibliotecaDinamica biblioteca(sNome);
    const auto pfnSoma = biblioteca.GetFuncao<int (*)(int, int)>("XVSomaTeste");
    if (!biblioteca.GetMotivoFalha().empty()) return "recusada";
    return pfnSoma != nullptr && pfnSoma(2, 3) == 5 ? "serve" : "ausente";
}

auto Herda(const std::string& sDiretorio) {
    const std::filesystem::directory_iterator descritores("/proc/self/fd");
    return std::count_if(begin(descritores), end(descritores), [&](const auto& rEntrada) {
        std::error_code erro;
        return std::filesystem::read_symlink(rEntrada.path(), erro).string().starts_with(sDiretorio);
    });
}

}  // namespace

int main(int iQuantidade, char** apszArgumentos) {
    std::vector<std::string> a(apszArgumentos, apszArgumentos + iQuantidade);
    a.resize(5);
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::unique_ptr<IXVArquivo> pArquivo;
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    if (a[1] == "abre")
        std::cout << static_cast<int>(rSistema
                                          .Abre(a[2],
                                                {static_cast<EAcessoArquivo>(std::stoi(a[3])),
                                                 static_cast<ECompartilhamentoArquivo>(std::stoi(a[4])),
                                                 ECriacaoArquivo::eSomenteExistente},
                                                pArquivo)
                                          .GetCausa());
    else if (a[1] == "marca")
        std::cout << static_cast<int>(rSistema.MarcaDiretorio(a[2], a[3], pMarca).GetCausa());
    else
        a[1] == "carrega" ? std::cout << Carrega(a[2]) : std::cout << Herda(a[2]);
    std::cout << std::endl;
    std::getline(std::cin, a[0]);
    return 0;
}
