#include "core/xvdatabase/XVNomeArquivo.h"

#include <algorithm>
#include <charconv>

#include "support/values/XVTextoAscii.h"

namespace {

// '?' in the pattern stands for any one character; case is ignored.
bool CasaComPadrao(std::string_view sNome, std::string_view sPadrao) {
    return std::equal(sNome.begin(), sNome.end(), sPadrao.begin(), sPadrao.end(),
                      [](char cNome, char cPadrao) {
                          return cPadrao == '?' || XVMinuscula(cNome) == XVMinuscula(cPadrao);
                      });
}

}  // namespace

namespace XVNomeArquivo {

std::string_view GetExtensao(std::string_view sNome) {
    const std::size_t uiPonto = sNome.rfind('.');
    if (uiPonto == std::string_view::npos) return {};
    const std::string_view sExtensao = sNome.substr(uiPonto + 1);
    return sExtensao.starts_with('\\') ? std::string_view{} : sExtensao;
}

std::string TrocaExtensao(std::string_view sNome, std::string_view sExtensao) {
    const std::size_t uiSeparador = sNome.find_last_of("/\\");
    const std::size_t uiPonto = sNome.rfind('.');
    const bool bTemPonto =
        uiPonto != std::string_view::npos && (uiSeparador == std::string_view::npos || uiPonto > uiSeparador);
    std::string sNovo(bTemPonto ? sNome.substr(0, uiPonto) : sNome);
    sNovo += '.';
    sNovo += sExtensao;
    return sNovo;
}

bool EhCopiaTransitoria(std::string_view sNome) {
    const std::string_view sExtensao = GetExtensao(sNome);
    return XVIgualSemCaixa(sExtensao, "cab") || XVIgualSemCaixa(sExtensao, "srk") ||
           XVIgualSemCaixa(sExtensao, "tra");
}

bool EhArquivoControle(std::string_view sNome) {
    return XVIgualSemCaixa(sNome, XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS);
}

std::optional<XVUInt64> NomeParaChave(std::string_view sNome, std::string_view sPadrao) {
    const std::size_t uiInicio = sPadrao.find('?');
    if (uiInicio == std::string_view::npos || !CasaComPadrao(sNome, sPadrao)) return std::nullopt;
    std::string_view sChave = sNome.substr(uiInicio);
    sChave = sChave.substr(0, sChave.find('.'));
    XVUInt64 uiChave = 0;
    const auto [pFim, erro] = std::from_chars(sChave.data(), sChave.data() + sChave.size(), uiChave);
    if (erro != std::errc{} || pFim != sChave.data() + sChave.size()) return std::nullopt;
    return uiChave;
}

std::string ChaveParaNome(XVUInt64 uiChave, std::string_view sPadrao) {
    std::string sResto;
    std::size_t uiLargura = 0;
    for (const char c : sPadrao) {
        if (c == '?')
            ++uiLargura;
        else
            sResto += c;
    }
    std::string sChave = std::to_string(uiChave);
    if (sChave.size() < uiLargura) sChave.insert(0, uiLargura - sChave.size(), '0');
    const std::size_t uiPonto = sResto.find('.');
    sResto.insert(uiPonto == std::string::npos ? 0 : uiPonto, sChave);
    return sResto;
}

}  // namespace XVNomeArquivo
