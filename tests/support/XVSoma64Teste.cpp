// The checksum of journal entries against values that another implementation computed from its description.
#include <gtest/gtest.h>

#include <string>

#include "support/values/XVSoma64.h"

namespace {

// Bytes 3, 10, 17 ... modulo 256.
std::string Sequencia(std::size_t uiTamanho) {
    std::string s(uiTamanho, '\0');
    for (std::size_t i = 0; i < uiTamanho; ++i) s[i] = static_cast<char>(i * 7 + 3);
    return s;
}

TEST(Soma64, ConfereComOutraImplementacao) {
    constexpr struct {
        std::size_t uiTamanho;
        std::uint64_t uiSoma;
    } k_aCasos[] = {{0, 0x324898C83F53FE0E},   {1, 0x42F5D7DB4468F83B},  {8, 0x5EC31A2AB950C3C6},
                    {63, 0x32F51E892E3DFC02},  {64, 0x6EB415D34AF8E562}, {65, 0x717EE0A6D2B24FFD},
                    {128, 0xB418000D20CC920B}, {200, 0xD86AF34B77637FE9}};
    for (const auto& rCaso : k_aCasos) {
        const std::string s = Sequencia(rCaso.uiTamanho);
        EXPECT_EQ(XVSoma64(s.data(), s.size()), rCaso.uiSoma) << rCaso.uiTamanho;
    }
}

// Every bit counts, the order of the groups too, and zeros at the end are not the same as none.
TEST(Soma64, VeCadaBitAOrdemEOTamanho) {
    const std::string s = Sequencia(130);
    const std::uint64_t uiSoma = XVSoma64(s.data(), s.size());
    for (std::size_t i = 0; i < s.size() * 8; ++i) {
        std::string sMudada = s;
        sMudada[i / 8] = static_cast<char>(sMudada[i / 8] ^ (1 << (i % 8)));
        ASSERT_NE(XVSoma64(sMudada.data(), sMudada.size()), uiSoma) << "bit " << i;
    }
    const std::string sTrocada = s.substr(64, 64) + s.substr(0, 64) + s.substr(128);
    EXPECT_NE(XVSoma64(sTrocada.data(), sTrocada.size()), uiSoma);
    const std::string sCheia = s + std::string(62, '\0');
    EXPECT_NE(XVSoma64(sCheia.data(), sCheia.size()), uiSoma);
}

}  // namespace
