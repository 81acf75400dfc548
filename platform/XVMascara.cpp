#include "platform/XVMascara.h"

#include <algorithm>

namespace XVMascara {
namespace {

// Start of the character after the one at uiPosicao; a stray byte counts as one character.
std::size_t ProximoCaractere(std::string_view sTexto, std::size_t uiPosicao) {
    ++uiPosicao;
    while (uiPosicao < sTexto.size() && (static_cast<unsigned char>(sTexto[uiPosicao]) & 0xC0U) == 0x80U) {
        ++uiPosicao;
    }
    return uiPosicao;
}

}  // namespace

bool Confere(std::string_view sMascara, std::string_view sNome) {
    // On a mismatch only the last '*' needs to be given one character more, so the cost is bounded by
    // the product of the lengths whatever the mask.
    std::size_t uiMascara = 0;
    std::size_t uiNome = 0;
    std::size_t uiDepoisDaEstrela = std::string_view::npos;
    std::size_t uiNomeDaEstrela = 0;
    while (uiNome < sNome.size()) {
        if (uiMascara < sMascara.size() && sMascara[uiMascara] == '*') {
            uiDepoisDaEstrela = ++uiMascara;
            uiNomeDaEstrela = uiNome;
        } else if (uiMascara < sMascara.size() && sMascara[uiMascara] == '?') {
            ++uiMascara;
            uiNome = ProximoCaractere(sNome, uiNome);
        } else if (uiMascara < sMascara.size() &&
                   Minuscula(sMascara[uiMascara]) == Minuscula(sNome[uiNome])) {
            ++uiMascara;
            ++uiNome;
        } else if (uiDepoisDaEstrela != std::string_view::npos) {
            uiMascara = uiDepoisDaEstrela;
            uiNomeDaEstrela = ProximoCaractere(sNome, uiNomeDaEstrela);
            uiNome = uiNomeDaEstrela;
        } else {
            return false;
        }
    }
    return sMascara.find_first_not_of('*', uiMascara) == std::string_view::npos;
}

bool NomesIguais(std::string_view sNome1, std::string_view sNome2) {
    return std::equal(sNome1.begin(), sNome1.end(), sNome2.begin(), sNome2.end(),
                      [](char c1, char c2) { return Minuscula(c1) == Minuscula(c2); });
}

}  // namespace XVMascara
