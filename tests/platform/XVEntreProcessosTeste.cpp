// What must hold between processes, and what the death of a process must free.
#include <gtest/gtest.h>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVProcessoFilho.h"

namespace {

class CXVEntreProcessosTeste : public testing::Test {
  protected:
    using TFilho = std::unique_ptr<CXVProcessoFilho>;

    static TFilho Filho(const std::vector<std::string>& listaArgumentos) {
        return std::make_unique<CXVProcessoFilho>(XVProgramaVizinho("xv_filho_plataforma"), listaArgumentos);
    }
    // The cause that the child met.
    static ECausaArquivo Causa(CXVProcessoFilho& rFilho) {
        const std::string sLinha = rFilho.LeLinha();
        EXPECT_NE(sLinha, "") << "the child ended without an answer";
        return static_cast<ECausaArquivo>(std::atoi(sLinha.c_str()));
    }
    TFilho FilhoQueAbre(EAcessoArquivo eAcesso, ECompartilhamentoArquivo eCompartilhamento) {
        return Filho({"abre", m_diretorio.Junta("a.dat"), std::to_string(static_cast<int>(eAcesso)),
                      std::to_string(static_cast<int>(eCompartilhamento))});
    }
    ECausaArquivo Abre(EAcessoArquivo eAcesso, ECompartilhamentoArquivo eCompartilhamento,
                       std::unique_ptr<IXVArquivo>& pArquivo) {
        const SAberturaArquivo abertura{eAcesso, eCompartilhamento, ECriacaoArquivo::eSomenteExistente};
        return m_rSistema.Abre(m_diretorio.Junta("a.dat"), abertura, pArquivo).GetCausa();
    }
    ECausaArquivo Abre(EAcessoArquivo eAcesso, ECompartilhamentoArquivo eCompartilhamento) {
        std::unique_ptr<IXVArquivo> pArquivo;
        return Abre(eAcesso, eCompartilhamento, pArquivo);
    }
    ECausaArquivo Marca(std::unique_ptr<IXVMarcaDiretorio>& pMarca) {
        return m_rSistema.MarcaDiretorio(m_diretorio.GetCaminho(), "DFXXMARCA1", pMarca).GetCausa();
    }

    IXVSistemaArquivos& m_rSistema = XVPlataforma::SistemaArquivosNativo();
    CXVDiretorioTeste m_diretorio;
};

using EAcesso = EAcessoArquivo;
using EComp = ECompartilhamentoArquivo;

}  // namespace

TEST_F(CXVEntreProcessosTeste, CompartilhamentoValeContraOutroProcessoAteSuaMorte) {
    m_diretorio.CriaArquivo("a.dat", "x");
    const TFilho pEscritor = FilhoQueAbre(EAcesso::eLeituraEscrita, EComp::eNegaEscrita);
    ASSERT_EQ(Causa(*pEscritor), ECausaArquivo::eNenhuma);
    EXPECT_EQ(Abre(EAcesso::eLeitura, EComp::eNegaNada), ECausaArquivo::eNenhuma);
    EXPECT_EQ(Abre(EAcesso::eLeitura, EComp::eNegaEscrita), ECausaArquivo::eViolacaoCompartilhamento);
    EXPECT_EQ(Abre(EAcesso::eLeituraEscrita, EComp::eNegaNada), ECausaArquivo::eViolacaoCompartilhamento);
    EXPECT_EQ(m_rSistema.Apaga(m_diretorio.Junta("a.dat")).GetCausa(),
              ECausaArquivo::eViolacaoCompartilhamento);
    pEscritor->Mata();
    std::unique_ptr<IXVArquivo> pArquivo;
    EXPECT_EQ(Abre(EAcesso::eLeituraEscrita, EComp::eNegaEscrita, pArquivo), ECausaArquivo::eNenhuma);
    EXPECT_EQ(Causa(*FilhoQueAbre(EAcesso::eAnexacao, EComp::eNegaNada)),
              ECausaArquivo::eViolacaoCompartilhamento);
    EXPECT_EQ(Causa(*FilhoQueAbre(EAcesso::eLeitura, EComp::eNegaNada)), ECausaArquivo::eNenhuma);
    pArquivo.reset();
    EXPECT_TRUE(m_rSistema.Apaga(m_diretorio.Junta("a.dat")).Ok());
}

TEST_F(CXVEntreProcessosTeste, MarcaEExclusivaETerminaComSeuProcesso) {
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    for (const bool bMata : {true, false}) {
        const TFilho pFilho = Filho({"marca", m_diretorio.GetCaminho(), "DFXXMARCA1"});
        ASSERT_EQ(Causa(*pFilho), ECausaArquivo::eNenhuma);
        EXPECT_EQ(Marca(pMarca), ECausaArquivo::eViolacaoCompartilhamento);
        if (bMata) {
            pFilho->Mata();
        } else {
            pFilho->FechaEntrada();
            EXPECT_EQ(pFilho->EsperaFim(), 0);
        }
        EXPECT_EQ(Marca(pMarca), ECausaArquivo::eNenhuma);
        EXPECT_EQ(Causa(*Filho({"marca", m_diretorio.GetCaminho(), "DFXXMARCA1"})),
                  ECausaArquivo::eViolacaoCompartilhamento);
        pMarca.reset();
        EXPECT_EQ(m_rSistema.Existe(m_diretorio.Junta("DFXXMARCA1")), EExistencia::eAusente);
    }
}
