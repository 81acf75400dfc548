#include "tools/xvcr/XVMensagensUso.h"

#include <algorithm>
#include <string_view>

namespace {

std::string_view Antes(std::string_view sTexto, std::string_view sMarca) {
    return sTexto.substr(0, sTexto.find(sMarca));
}

std::string_view Depois(std::string_view sTexto, std::string_view sMarca) {
    const std::size_t uiMarca = sTexto.find(sMarca);
    return uiMarca == std::string_view::npos ? sTexto : sTexto.substr(uiMarca + sMarca.size());
}

// The command-line library tells the kind of error by the class and the names only inside an English
// sentence.
std::string Descreve(const CLI::ParseError& rErro, const std::vector<std::string>& listaSobras) {
    const std::string_view sTexto = rErro.what();
    if (dynamic_cast<const CLI::ExtrasError*>(&rErro) != nullptr)
        return "argumento inesperado: " + std::string(Depois(sTexto, "expected: "));
    if (dynamic_cast<const CLI::RequiredError*>(&rErro) != nullptr) {
        const std::string_view sNome = Antes(sTexto, " is required");
        if (sNome != "A subcommand") return "falta " + std::string(sNome);
        return listaSobras.empty() ? "falta o comando" : "comando desconhecido: " + listaSobras.front();
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&rErro) != nullptr) {
        // "NAME: 1 required TYPE missing", "NAME: At Most 1 required but received 2", "Expected ... to NAME,
        // got 2".
        const bool bFalta = sTexto.find("missing") != std::string_view::npos;
        const std::string_view sNome = sTexto.starts_with("Expected ")
                                           ? Antes(Depois(sTexto, "arguments to "), ", got")
                                           : Antes(sTexto, ":");
        return std::string(sNome) +
               (bFalta ? ": falta o valor" : ": dada mais de uma vez ou com valores demais");
    }
    if (dynamic_cast<const CLI::ExcludesError*>(&rErro) != nullptr)
        return std::string(Antes(sTexto, " excludes ")) + " não vale junto com " +
               std::string(Depois(sTexto, " excludes "));
    if (dynamic_cast<const CLI::ConversionError*>(&rErro) != nullptr)
        return "valor não aceito: " + std::string(Depois(sTexto, "Could not convert: "));
    return std::string(sTexto);
}

}  // namespace

std::string XVDescreveErroDeUso(const CLI::ParseError& rErro, const std::vector<std::string>& listaSobras) {
    std::string sTexto = Descreve(rErro, listaSobras);
    // The mark of protected arguments is nothing that the user wrote.
    std::erase(sTexto, '\x01');
    return sTexto;
}
