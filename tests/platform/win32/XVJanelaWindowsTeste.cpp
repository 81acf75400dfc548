// What only holds for windows through memory.
#include <gtest/gtest.h>
#include <windows.h>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTemporario.h"

// The system refuses to shorten a file that is mapped, and only then: so the window on a file on a fixed disk
// is one, and ends with its object.
TEST(CXVJanelaWindowsTeste, JanelaDeDiscoFixoPassaPelaMemoria) {
    const CXVDiretorioTeste diretorio;
    const std::string sRaiz = diretorio.GetCaminho().substr(0, 3);
    ASSERT_EQ(GetDriveTypeA(sRaiz.c_str()), UINT{DRIVE_FIXED}) << sRaiz;
    diretorio.CriaArquivo("v.srk", std::string(1 << 16, 'x'));
    std::unique_ptr<IXVArquivo> pArquivo;
    ASSERT_TRUE(XVPlataforma::SistemaArquivosNativo()
                    .Abre(diretorio.Junta("v.srk"),
                          {EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita,
                           ECriacaoArquivo::eSomenteExistente},
                          pArquivo)
                    .Ok());
    std::unique_ptr<IXVJanela> pJanela;
    ASSERT_TRUE(pArquivo->AbreJanela(1 << 16, pJanela).Ok());
    EXPECT_EQ(pArquivo->SetTamanho(1).GetCausa(), ECausaArquivo::eViolacaoCompartilhamento);
    EXPECT_TRUE(pJanela->Grava(0, "abc", 3).Ok());
    EXPECT_TRUE(pArquivo->Sincroniza().Ok());
    pJanela.reset();
    EXPECT_TRUE(pArquivo->SetTamanho(3).Ok());
    EXPECT_TRUE(pArquivo->Sincroniza().Ok()) << "of windows that are gone nothing is left to flush";
    // Longer than the file: a mapping would make the file longer.
    ASSERT_TRUE(pArquivo->AbreJanela(1 << 16, pJanela).Ok());
    pJanela.reset();
    pArquivo.reset();
    EXPECT_EQ(diretorio.LeConteudo("v.srk"), "abc");
}
