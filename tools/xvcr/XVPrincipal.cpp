#include "platform/XVConsole.h"
#include "platform/XVInterrupcao.h"
#include "tools/xvcr/XVAplicacao.h"

int main(int iQuantidade, char** ppszArgumentos) {
    XVConsole::Prepara();
    return XVInterrupcao::Encerra(XVExecutaAplicacao(XVConsole::GetArgumentos(iQuantidade, ppszArgumentos)));
}
