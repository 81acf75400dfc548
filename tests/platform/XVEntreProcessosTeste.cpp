// What must hold between processes, and what the death of a process must free.
#include <gtest/gtest.h>

#include <algorithm>

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
    ECausaArquivo Abre(EAcessoArquivo eAcesso, ECompartilhamentoArquivo eCompartilhamento) {
        std::unique_ptr<IXVArquivo> pArquivo;
        return m_rSistema
            .Abre(m_diretorio.Junta("a.dat"),
                  {eAcesso, eCompartilhamento, ECriacaoArquivo::eSomenteExistente}, pArquivo)
            .GetCausa();
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
    EXPECT_EQ(Abre(EAcesso::eLeituraEscrita, EComp::eNegaTudo), ECausaArquivo::eNenhuma);
    EXPECT_TRUE(m_rSistema.Apaga(m_diretorio.Junta("a.dat")).Ok());
}

TEST_F(CXVEntreProcessosTeste, AberturaPropriaEVistaPorOutroProcesso) {
    m_diretorio.CriaArquivo("a.dat", "x");
    std::unique_ptr<IXVArquivo> pArquivo;
    ASSERT_TRUE(m_rSistema
                    .Abre(m_diretorio.Junta("a.dat"),
                          {EAcesso::eLeituraEscrita, EComp::eNegaEscrita, ECriacaoArquivo::eSomenteExistente},
                          pArquivo)
                    .Ok());
    EXPECT_EQ(Causa(*FilhoQueAbre(EAcesso::eAnexacao, EComp::eNegaNada)),
              ECausaArquivo::eViolacaoCompartilhamento);
    EXPECT_EQ(Causa(*FilhoQueAbre(EAcesso::eLeitura, EComp::eNegaNada)), ECausaArquivo::eNenhuma);
    pArquivo.reset();
    EXPECT_EQ(Causa(*FilhoQueAbre(EAcesso::eAnexacao, EComp::eNegaNada)), ECausaArquivo::eNenhuma);
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

TEST_F(CXVEntreProcessosTeste, AnexosDeVariosProcessosNaoSeSobrepoemNemSePartem) {
    constexpr int k_iLinhas = 50;
    std::vector<TFilho> listaFilhos;
    for (const char* pszLetra : {"a", "b", "c"}) {
        listaFilhos.push_back(
            Filho({"anexa", m_diretorio.Junta("log"), pszLetra, std::to_string(k_iLinhas)}));
    }
    for (const TFilho& pFilho : listaFilhos) {
        EXPECT_EQ(Causa(*pFilho), ECausaArquivo::eNenhuma);
    }
    const std::string sConteudo = m_diretorio.LeConteudo("log").value_or("");
    ASSERT_EQ(sConteudo.size(), std::size_t{3 * k_iLinhas * 100});
    for (const char cLetra : {'a', 'b', 'c'}) {
        EXPECT_EQ(std::count(sConteudo.begin(), sConteudo.end(), cLetra), k_iLinhas * 99);
    }
}
