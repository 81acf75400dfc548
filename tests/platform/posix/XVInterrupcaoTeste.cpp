// Requests to end: which signals are taken for one, once, and what the program ends with.
#include "platform/XVInterrupcao.h"

#include <gtest/gtest.h>
#include <signal.h>

namespace {

bool EhDoSistema(int iSinal) {
    struct sigaction acao {};
    return ::sigaction(iSinal, nullptr, &acao) == 0 && acao.sa_handler == SIG_DFL;
}

TEST(Interrupcao, PedidaUmaVezEIgnoradaPorQuemNaoQuerSaber) {
    const int aSinais[] = {SIGINT, SIGTERM, SIGHUP};
    struct sigaction aAntes[3];
    for (int i = 0; i < 3; ++i) ::sigaction(aSinais[i], nullptr, &aAntes[i]);
    for (const int iSinal : aSinais) {
        SCOPED_TRACE(iSinal);
        for (const int iOutro : aSinais) ::signal(iOutro, SIG_DFL);
        ASSERT_TRUE(XVInterrupcao::Observa());
        EXPECT_FALSE(XVInterrupcao::Pedida());
        EXPECT_EQ(XVInterrupcao::Encerra(3), 3);
        EXPECT_EQ(::raise(iSinal), 0);
        EXPECT_TRUE(XVInterrupcao::Pedida());
        EXPECT_TRUE(EhDoSistema(iSinal)) << "a second one ends the program at once";
        EXPECT_EXIT(XVInterrupcao::Encerra(3), testing::KilledBySignal(iSinal), "");
        ::signal(iSinal, SIG_IGN);  // as nohup leaves them
        ASSERT_TRUE(XVInterrupcao::Observa());
        EXPECT_EQ(::raise(iSinal), 0);
        EXPECT_FALSE(XVInterrupcao::Pedida());
    }
    for (int i = 0; i < 3; ++i) ::sigaction(aSinais[i], &aAntes[i], nullptr);
}

}  // namespace
