// The messages library beside the program: what it answers and what the trace makes of it.
#include <gtest/gtest.h>

#include "platform/XVBibliotecaDinamica.h"
#include "support/codes/XVCodigos.h"
#include "support/messages/XVLMensagem.h"
#include "support/messages/XVMensagens.h"
#include "support/trace/XVDescricaoHResult.h"
#include "tests/support/XVBancadaTrace.h"

TEST(BibliotecaMensagens, TextosNuncaPassamDoEspacoNemCortamCaracteres) {
    const CXVBibliotecaDinamica biblioteca(k_pszBibliotecaMensagens);
    ASSERT_TRUE(biblioteca.EstaCarregada());
    const auto pDescricao = biblioteca.GetFuncao<PFuncaoXVGetDescricaoHRESULT>(k_pszXVGetDescricaoHRESULT);
    const auto pEhFacility = biblioteca.GetFuncao<PFuncaoEhFacilityMT>(k_pszEhFacilityMT);
    ASSERT_NE(pDescricao, nullptr);
    ASSERT_NE(pEhFacility, nullptr);
    const std::string_view sInteiro = XVBuscaMensagem(E_XVCR_ARQUIVO_CAB_ENCONTRADO)->sDescricao;
    EXPECT_EQ(pDescricao(E_XVCR_ARQUIVO_CAB_ENCONTRADO, nullptr, 0), sInteiro.size());
    for (XVUInt ul = 1; ul <= sInteiro.size() + 1; ++ul) {
        std::string sTexto(ul + 1, '#');
        const XVUInt ulTamanho = pDescricao(E_XVCR_ARQUIVO_CAB_ENCONTRADO, sTexto.data(), ul);
        ASSERT_LT(ulTamanho, ul);
        EXPECT_EQ(sTexto[ulTamanho], '\0');
        EXPECT_EQ(sTexto.back(), '#');
        EXPECT_EQ(sTexto.substr(0, ulTamanho), sInteiro.substr(0, ulTamanho));
        const bool bCaractereInteiro = ulTamanho == sInteiro.size() ||
                                       (static_cast<unsigned char>(sInteiro[ulTamanho]) & 0xC0U) != 0x80U;
        EXPECT_TRUE(bCaractereInteiro) << ul;
    }
    char szTexto[4] = "abc";
    EXPECT_EQ(pDescricao(XVHResult(0x81089999U), szTexto, sizeof szTexto), 0U);
    EXPECT_STREQ(szTexto, "");
    EXPECT_EQ(pEhFacility(0x108), 1);
    EXPECT_EQ(pEhFacility(7), 0);
    EXPECT_EQ(pEhFacility(8), 0);
    szTexto[0] = '#';
    EXPECT_EQ(pDescricao(E_XVCR_ARQUIVO_CAB_ENCONTRADO, szTexto, 0), sInteiro.size());
    EXPECT_EQ(szTexto[0], '#');
}

TEST(BibliotecaMensagens, TraceMostraASentencaEONomeWin32) {
    const CXVBancadaTrace bancada;
    EXPECT_EQ(XVDescricaoHResult::GetMensagem(E_XVCR_ARQUIVO_NAO_EXISTE),
              XVBuscaMensagem(E_XVCR_ARQUIVO_NAO_EXISTE)->sDescricao);
    EXPECT_EQ(XVDescricaoHResult::GetMensagem(XVHResult(0x81089999U)), "");
    EXPECT_STREQ(XVDescricaoHResult::GetDescricao_CODE(E_INVALIDARG), "ERROR_INVALID_PARAMETER");
    EXPECT_STREQ(XVDescricaoHResult::GetDescricao_CODE(XVHResult(0x80040057U)), "");  // facility 4
    EXPECT_STREQ(XVDescricaoHResult::GetDescricao_CODE(XVHResult(0x81080057U)), "");  // the suite's
}
