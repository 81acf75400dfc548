#include "tools/xvcr/text/XVArquivoSaida.h"

#include <fstream>

#include "tools/xvcr/text/XVErros.h"

std::filesystem::path XVCaminhoDeUtf8(std::string_view sCaminho) {
    return std::filesystem::path(std::u8string(sCaminho.begin(), sCaminho.end()));
}

void XVCriaPasta(const std::string& sPasta) {
    std::error_code erro;
    const std::filesystem::path caminho = XVCaminhoDeUtf8(sPasta);
    std::filesystem::create_directories(caminho, erro);
    if (!std::filesystem::is_directory(caminho, erro))
        XVFalha("não foi possível criar a pasta \"" + sPasta + "\"");
}

void XVGravaArquivo(const std::string& sCaminho, std::string_view sBytes) {
    std::ofstream arquivo(XVCaminhoDeUtf8(sCaminho), std::ios::binary | std::ios::trunc);
    arquivo.write(sBytes.data(), static_cast<std::streamsize>(sBytes.size()));
    arquivo.close();
    if (!arquivo) XVFalha("não foi possível gravar o arquivo \"" + sCaminho + '"' + XVSeDiscoCheio());
}

std::string XVJuntaCaminho(const std::string& sPasta, const std::string& sNome) {
    const std::u8string sJunto = (XVCaminhoDeUtf8(sPasta) / XVCaminhoDeUtf8(sNome)).u8string();
    return std::string(sJunto.begin(), sJunto.end());
}
