// The checksum of journal entries against values that another implementation computed from its description.
#include <gtest/gtest.h>

#include <string>

#include "support/values/XVSoma64.h"

TEST(Soma64, ConfereComOutraImplementacao) {
    constexpr struct {
        std::size_t uiTamanho;
        std::uint64_t uiSoma;
    } k_aCasos[] = {{0, 0x324898C83F53FE0E},   {1, 0x42F5D7DB4468F83B},  {8, 0x5EC31A2AB950C3C6},
                    {63, 0x32F51E892E3DFC02},  {64, 0x6EB415D34AF8E562}, {65, 0x717EE0A6D2B24FFD},
                    {128, 0xB418000D20CC920B}, {200, 0xD86AF34B77637FE9}};
    for (const auto& rCaso : k_aCasos) {
        std::string s(rCaso.uiTamanho, '\0');
        for (std::size_t i = 0; i < s.size(); ++i) s[i] = static_cast<char>(i * 7 + 3);
        EXPECT_EQ(XVSoma64(s.data(), s.size()), rCaso.uiSoma) << rCaso.uiTamanho;
    }
}
