// The other process of the tests between processes. It does one thing, prints the number of the cause,
// and then holds what it got until its input ends.
//
//   abre <path> <access> <share>   marca <directory> <name>   anexa <path> <letter> <lines>
//   herda <directory>   prints how many descriptors in the directory it was started with instead
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

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

int Anexa(char** apszArgumentos) {
    const SAberturaArquivo abertura{EAcessoArquivo::eAnexacao, ECompartilhamentoArquivo::eNegaNada,
                                    ECriacaoArquivo::eCriaSeAusente};
    const std::string sLinha = std::string(99, apszArgumentos[1][0]) + '\n';
    std::unique_ptr<IXVArquivo> pArquivo;
    CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Abre(apszArgumentos[0], abertura, pArquivo);
    for (int i = std::atoi(apszArgumentos[2]); i > 0 && erro.Ok(); --i) {
        erro = pArquivo->Grava(0, sLinha.data(), sLinha.size());
    }
    return Responde(erro);
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
    if (sAcao == "anexa" && iQuantidade == 5) {
        return Anexa(apszArgumentos + 2);
    }
    if (sAcao == "herda" && iQuantidade == 3) {
        return Herda(apszArgumentos[2]);
    }
    return 2;
}
