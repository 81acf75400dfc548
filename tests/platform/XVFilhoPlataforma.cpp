// The other process of the tests between processes. It does one thing, prints the number of the cause,
// and then holds what it got until its input ends.
//
//   abre <path> <access> <share>   marca <directory> <name>
//   carrega <name>      prints what became of the library of this name
#include <iostream>
#include <memory>
#include <string>
#include <vector>

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
        std::cout << Carrega(a[2]);
    std::cout << std::endl;
    std::getline(std::cin, a[0]);
    return 0;
}
