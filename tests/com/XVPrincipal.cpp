#include <gtest/gtest.h>

#include "client/XVCliente.h"
#include "tests/com/XVAmbienteCom.h"
#include "tests/com/XVFilho.h"

namespace {

class CMaquina final : public ::testing::Environment {
  public:
    void SetUp() override { ASSERT_TRUE(XVAmbienteCom::Prepara()); }
    void TearDown() override { XVAmbienteCom::Desfaz(); }
};

}  // namespace

int main(int argc, char** argv) {
    if (argc > 2 && std::string(argv[1]) == "--filho") return XVExecutaFilho({argv + 2, argv + argc});
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new CMaquina);
    const XVCliente::CApartamento apartamento;
    return RUN_ALL_TESTS();
}
