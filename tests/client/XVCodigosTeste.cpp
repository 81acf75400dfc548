// What a code is called and means: the component's own, the system's, and those that nobody named.
#include <gtest/gtest.h>

#include "client/XVClienteCodigos.h"
#include "support/codes/XVCodigos.h"

TEST(CodigosDoCliente, NomeEFraseOuOndeProcurar) {
    const HRESULT hr = E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA;
    EXPECT_TRUE(XVCliente::FraseDoCodigo(hr).ends_with('.'));
    EXPECT_EQ(XVCliente::DescreveCodigo(hr), "0x81080AAA E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA: " +
                                                 std::string(XVCliente::FraseDoCodigo(hr)));
    EXPECT_EQ(XVCliente::DescreveCodigo(XVHResult(0x8007045BU)),
              "0x8007045B ERROR_SHUTDOWN_IN_PROGRESS: a operação falhou; veja o log de erros.");
    EXPECT_EQ(XVCliente::DescreveCodigo(XVHResult(0x8FFF03E6U)),
              "0x8FFF03E6: a operação falhou; veja o log de erros.");
}
