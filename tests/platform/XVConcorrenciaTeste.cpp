// Threads that open, delete and replace the same names at once on the operating system's file system.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVEmThreads.h"

namespace {

class CXVConcorrenciaTeste : public testing::Test {
  protected:
    static bool EhPassageiro(ECausaArquivo eCausa) {
        // On some systems a name whose deletion is under way is refused as such.
        return eCausa == ECausaArquivo::eViolacaoCompartilhamento || eCausa == ECausaArquivo::eAcessoNegado;
    }

    IXVSistemaArquivos& m_rSistema = XVPlataforma::SistemaArquivosNativo();
    CXVDiretorioTeste m_diretorio;
};

constexpr SAberturaArquivo k_exclusiva{EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaTudo,
                                       ECriacaoArquivo::eCriaSeAusente};

}  // namespace

TEST_F(CXVConcorrenciaTeste, AberturasExclusivasNuncaSeSobrepoem) {
    const std::string sCaminho = m_diretorio.Junta("a.dat");
    std::atomic<int> iDentro{0};
    std::atomic<int> iEntradas{0};
    XVEmThreads(4, [&](unsigned) {
        for (int i = 0; i < 100; ++i) {
            std::unique_ptr<IXVArquivo> pArquivo;
            const CXVErroArquivo erro = m_rSistema.Abre(sCaminho, k_exclusiva, pArquivo);
            if (!erro.Ok()) {
                EXPECT_EQ(erro.GetCausa(), ECausaArquivo::eViolacaoCompartilhamento);
                continue;
            }
            EXPECT_EQ(++iDentro, 1);
            ++iEntradas;
            std::this_thread::yield();
            --iDentro;
        }
    });
    EXPECT_GT(iEntradas.load(), 0);
}

TEST_F(CXVConcorrenciaTeste, ArquivoAbertoNuncaEUmApagado) {
    const std::string sCaminho = m_diretorio.Junta("a.dat");
    XVEmThreads(4, [&](unsigned iThread) {
        for (int i = 0; i < 100; ++i) {
            if (iThread % 2 == 0) {
                const ECausaArquivo eCausa = m_rSistema.Apaga(sCaminho).GetCausa();
                EXPECT_TRUE(eCausa == ECausaArquivo::eNenhuma || EhPassageiro(eCausa) ||
                            eCausa == ECausaArquivo::eArquivoNaoEncontrado)
                    << static_cast<int>(eCausa);
                continue;
            }
            std::unique_ptr<IXVArquivo> pArquivo;
            const CXVErroArquivo erro = m_rSistema.Abre(sCaminho, k_exclusiva, pArquivo);
            if (erro.Ok()) {
                EXPECT_EQ(m_rSistema.Existe(sCaminho), EExistencia::eArquivo);
            } else {
                EXPECT_TRUE(EhPassageiro(erro.GetCausa())) << static_cast<int>(erro.GetCausa());
            }
        }
    });
}

TEST_F(CXVConcorrenciaTeste, MovimentosCruzadosTerminamENadaPerdem) {
    const std::string sNome1 = m_diretorio.Junta("1.dat");
    const std::string sNome2 = m_diretorio.Junta("2.dat");
    for (int iRodada = 0; iRodada < 20; ++iRodada) {
        m_diretorio.CriaArquivo("1.dat", "um");
        m_diretorio.CriaArquivo("2.dat", "dois");
        XVEmThreads(2, [&](unsigned iThread) {
            const CXVErroArquivo erro =
                iThread == 0 ? m_rSistema.Substitui(sNome1, sNome2) : m_rSistema.Substitui(sNome2, sNome1);
            EXPECT_TRUE(erro.Ok() || EhPassageiro(erro.GetCausa()) ||
                        erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado)
                << static_cast<int>(erro.GetCausa());
        });
        std::vector<std::string> listaNomes;
        ASSERT_TRUE(m_rSistema.Lista(m_diretorio.GetCaminho(), "*", listaNomes).Ok());
        ASSERT_FALSE(listaNomes.empty());
        for (const std::string& sNome : listaNomes) {
            const std::string sConteudo = m_diretorio.LeConteudo(sNome).value_or("");
            EXPECT_TRUE(sConteudo == "um" || sConteudo == "dois") << sNome << ": " << sConteudo;
        }
    }
}

TEST_F(CXVConcorrenciaTeste, UmDeMuitosFicaComAMarca) {
    std::atomic<int> iDentro{0};
    XVEmThreads(4, [&](unsigned) {
        for (int i = 0; i < 100; ++i) {
            std::unique_ptr<IXVMarcaDiretorio> pMarca;
            const CXVErroArquivo erro = m_rSistema.MarcaDiretorio(m_diretorio.GetCaminho(), "M", pMarca);
            if (!erro.Ok()) {
                EXPECT_TRUE(EhPassageiro(erro.GetCausa())) << static_cast<int>(erro.GetCausa());
                continue;
            }
            EXPECT_EQ(++iDentro, 1);
            std::this_thread::yield();
            --iDentro;
        }
    });
}
