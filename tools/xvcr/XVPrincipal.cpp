#include "platform/XVConsole.h"
#include "tools/xvcr/XVAplicacao.h"

int main(int iQuantidade, char** ppszArgumentos) {
    XVConsole::Prepara();
    return XVExecutaAplicacao(XVConsole::GetArgumentos(iQuantidade, ppszArgumentos));
}
