// What several writes make of a file together, against the same writes in an array.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "core/xvdatabase/XVFaixas.h"

namespace {

constexpr std::size_t k_uiBytes = 6;

// Every order of three writes of every place and length, each of a letter of its own.
TEST(Faixas, ValemOsBytesMaisNovosDeCadaLugar) {
    const auto prova = [](std::initializer_list<unsigned> listaEscritas) {
        CXVFaixas faixas;
        std::string sEsperado(k_uiBytes, '.'), sNome;
        char cLetra = 'a';
        for (const unsigned ui : listaEscritas) {
            const std::size_t uiDe = ui / k_uiBytes, uiAte = ui % k_uiBytes + 1;
            const std::string sBytes(uiAte > uiDe ? uiAte - uiDe : 0, cLetra++);
            faixas.Mescla(uiDe, sBytes);
            sEsperado.replace(uiDe, sBytes.size(), sBytes);
            sNome += std::to_string(uiDe) + '+' + std::to_string(sBytes.size()) + ' ';
        }
        std::string sObtido(k_uiBytes, '.');
        XVUInt64 uiFim = 0;
        for (const auto& [uiOffset, sBytes] : faixas) {
            ASSERT_TRUE(!sBytes.empty() && uiOffset >= uiFim) << sNome << "ascending, none over another";
            uiFim = uiOffset + sBytes.size();
            ASSERT_LE(uiFim, k_uiBytes) << sNome;
            sObtido.replace(static_cast<std::size_t>(uiOffset), sBytes.size(), sBytes);
        }
        ASSERT_EQ(sObtido, sEsperado) << sNome;
    };
    constexpr unsigned k_uiEscritas = k_uiBytes * k_uiBytes;
    for (unsigned i = 0; i < k_uiEscritas; ++i)
        for (unsigned j = 0; j < k_uiEscritas; ++j)
            for (unsigned k = 0; k < k_uiEscritas; ++k) prova({i, j, k});
}

}  // namespace
