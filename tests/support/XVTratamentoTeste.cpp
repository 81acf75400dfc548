// The treatment library beside the program: what the invalid-parameter trap tells it.
#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/XVAmbienteSO.h"
#include "platform/XVBibliotecaDinamica.h"
#include "support/faults/XVExcecoes.h"
#include "support/faults/XVMens.h"
#include "support/faults/XVTrapParametroInvalido.h"
#include "support/trace/XVCapturaTrace.h"

namespace {

HRESULT Dispara(std::string (*pGetServidor)()) {
    const XVTrapParametroInvalido trap(
        {nullptr, "CXVCR_Middleware::LeIntegracao", "XVCR_Middleware", 321, pGetServidor});
    try {
        errno = ERANGE;
        XVParametroInvalido(L"psz != nullptr", L"strcpy_s", L"a\u00E7\u00E3o.c", 12U);
    } catch (...) {
        return XVTranslateThrownExceptionToHresult();
    }
}

}  // namespace

TEST(Tratamento, RecebeCodigosServidorMetodoEModulo) {
    const CXVCapturaTrace captura;
    const CXVBibliotecaDinamica biblioteca(k_pszBibliotecaTratamento);  // keeps what it wrote down
    ASSERT_TRUE(biblioteca.EstaCarregada());
    const auto pUltima = biblioteca.GetFuncao<const char* (*)()>("XVMensUltimaChamada");
    ASSERT_NE(pUltima, nullptr);
    const std::string sFim = "|XVCR_Middleware|321|1|0|" + XVAmbienteSO::GetCaminhoExecutavel() +
                             "|Expression = psz != nullptr\tFunction = strcpy_s\tFile = ação.c\tLine = 12";
    EXPECT_EQ(Dispara([] { return std::string("SRV-1"); }), XVHResult(0x8004EAFBU));
    EXPECT_EQ(pUltima(), "81080BB1|8004EAFB|7FFFFFFF|SRV-1" + sFim);
    EXPECT_EQ(Dispara(nullptr), XVHResult(0x8004EAFBU));
    EXPECT_EQ(pUltima(), "81080BB1|8004EAFB|7FFFFFFF|" + sFim);
}

TEST(Tratamento, QueFalhaNaoMudaOResultado) {
    const CXVCapturaTrace captura;
    EXPECT_EQ(Dispara([]() -> std::string { throw std::runtime_error("sem servidor"); }),
              XVHResult(0x8004EAFBU));
    EXPECT_EQ(captura.GetFalhas().size(), 1U);
    // A parameter that the treatment itself passes wrongly starts no other treatment.
    EXPECT_EQ(Dispara([]() -> std::string {
                  XVParametroInvalido(L"outro", L"strcpy_s", L"outro.c", 13U);
                  return "";
              }),
              XVHResult(0x8004EAFBU));
    EXPECT_EQ(captura.GetFalhas().size(), 2U);
}
