// A program's directory that cannot be listed, with libraries of providers in it.
#include <gtest/gtest.h>

#include <cerrno>

#include "suite/providers/XVProvedorIntegracao.h"
#include "tests/platform/posix/XVChamadas.h"

TEST(CXVDiretorioSemLista, TodasAsBibliotecasSaoProcuradasPeloNome) {
    CXVChamadas chamadas;
    chamadas.Falha(EChamada::eReaddir, EIO);
    const std::vector<SSituacaoProvedor>& rSituacao = XVProvedores::Situacao();
    EXPECT_EQ(chamadas.Conta(EChamada::eReaddir), 1U);
    std::string sBibliotecas;
    for (const SSituacaoProvedor& r : rSituacao) sBibliotecas += r.sBiblioteca + ' ';
    EXPECT_EQ(sBibliotecas,
              " XVProvedor4.dll XVProvedor16.dll XVProvedor32.dll XVProvedor64.dll XVProvedor128.dll "
              "XVProvedor256.dll XVProvedor2147483648.dll ")
        << "the simulation first, which has none";
}
