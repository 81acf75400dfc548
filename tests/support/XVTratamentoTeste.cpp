// The invalid-parameter trap, and what it tells the treatment library beside the program.
#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>

#include "platform/XVAmbienteSO.h"
#include "platform/XVBibliotecaDinamica.h"
#include "support/faults/XVExcecoes.h"
#include "support/faults/XVMens.h"
#include "support/faults/XVTrapParametroInvalido.h"
#include "support/trace/XVCapturaTrace.h"

namespace {

HRESULT Recusa() {
    try {
        errno = ERANGE;
        XVParametroInvalido(L"psz != nullptr", L"strcpy_s", L"a\u00E7\u00E3o.c", 12U);
    } catch (...) {
        return XVTranslateThrownExceptionToHresult();
    }
}

SMetodoTrap Metodo(int iLinha, std::string (*pGetServidor)()) {
    return {nullptr, "CXVCR_Middleware::LeIntegracao", "XVCR_Middleware", iLinha, pGetServidor};
}

constexpr HRESULT k_hrErange = XVHResult(0x8004EAFBU);

}  // namespace

// With traps in one another the inner one tells, and once it is gone the outer one.
TEST(Tratamento, RecebeCodigosServidorMetodoEModuloDoMaisInterno) {
    const CXVCapturaTrace captura;
    EXPECT_EQ(Recusa(), k_hrErange);
    EXPECT_TRUE(captura.GetFalhas().empty()) << "without a trap there is nobody to tell of";
    const CXVBibliotecaDinamica biblioteca(k_pszBibliotecaTratamento);  // keeps what it wrote down
    ASSERT_TRUE(biblioteca.EstaCarregada());
    const auto pUltima = biblioteca.GetFuncao<const char* (*)()>("XVMensUltimaChamada");
    ASSERT_NE(pUltima, nullptr);
    const std::string sMensagem =
        "Expression = psz != nullptr\tFunction = strcpy_s\tFile = ação.c\tLine = 12";
    const auto chamada = [&](const std::string& sServidor, int iLinha) {
        return "81080BB1|8004EAFB|7FFFFFFF|" + sServidor + "|XVCR_Middleware|" + std::to_string(iLinha) +
               "|1|0|" + XVAmbienteSO::GetCaminhoExecutavel() + "|" + sMensagem;
    };
    const XVTrapParametroInvalido fora(Metodo(321, nullptr));
    {
        const XVTrapParametroInvalido dentro(Metodo(5, [] { return std::string("SRV-1"); }));
        EXPECT_EQ(Recusa(), k_hrErange);
        EXPECT_EQ(pUltima(), chamada("SRV-1", 5));
    }
    for (std::size_t i = 2; i <= 3; ++i) {
        EXPECT_EQ(Recusa(), k_hrErange);
        EXPECT_EQ(pUltima(), chamada("", 321));
        ASSERT_EQ(captura.GetFalhas().size(), i);
    }
    const SFalhaCapturada& r = captura.GetFalhas().back();
    EXPECT_EQ(r.sFuncao, "CXVCR_Middleware::LeIntegracao");
    EXPECT_EQ(r.sFonte, "XVCR_Middleware");
    EXPECT_EQ(r.iLinha, 321);
    EXPECT_EQ(r.sMensagem, sMensagem);
}

TEST(Tratamento, QueFalhaNaoMudaOResultado) {
    const CXVCapturaTrace captura;
    {
        const XVTrapParametroInvalido trap(
            Metodo(1, []() -> std::string { throw std::runtime_error("sem servidor"); }));
        EXPECT_EQ(Recusa(), k_hrErange);
    }
    EXPECT_EQ(captura.GetFalhas().size(), 1U);
    // A parameter that the treatment itself passes wrongly starts no other treatment.
    const XVTrapParametroInvalido trap(Metodo(2, [] { return std::string(Recusa() == S_OK ? "a" : "b"); }));
    EXPECT_EQ(Recusa(), k_hrErange);
    EXPECT_EQ(captura.GetFalhas().size(), 2U);
}
