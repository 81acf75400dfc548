// What must hold between processes, and what the death of a process must free.
#include "tests/harness/XVProcessoFilho.h"
#include "tests/platform/XVCenarioArquivos.h"

namespace {

// Another process that holds what it got until its input ends.
struct SFilho {
    explicit SFilho(const std::vector<std::string>& listaArgumentos)
        : processo(XVProgramaVizinho("xv_filho_plataforma"), listaArgumentos),
          eCausa(static_cast<ECausaArquivo>(std::atoi(processo.LeLinha().c_str()))) {}
    CXVProcessoFilho processo;
    ECausaArquivo eCausa;
};

class CXVEntreProcessosTeste : public CXVCenarioArquivos {
  protected:
    std::vector<std::string> Abertura(EAcessoArquivo eAcesso,
                                      ECompartilhamentoArquivo eCompartilhamento) const {
        return {"abre", Caminho("a.dat"), std::to_string(static_cast<int>(eAcesso)),
                std::to_string(static_cast<int>(eCompartilhamento))};
    }
    std::vector<std::string> Marcacao() const { return {"marca", Caminho(""), "DFXXMARCA1"}; }
};

using EAcesso = EAcessoArquivo;
using EComp = ECompartilhamentoArquivo;

}  // namespace

TEST_F(CXVEntreProcessosTeste, CompartilhamentoValeContraOutroProcessoAteSuaMorte) {
    Cria("a.dat", "x");
    SFilho escritor(Abertura(EAcesso::eLeituraEscrita, EComp::eNegaEscrita));
    ASSERT_EQ(escritor.eCausa, ECausa::eNenhuma);
    EXPECT_EQ(Abre("a.dat", k_leitura), ECausa::eNenhuma);
    m_pArquivo.reset();
    EXPECT_EQ(Abre("a.dat", {EAcesso::eLeitura, EComp::eNegaEscrita}), ECausa::eViolacaoCompartilhamento);
    EXPECT_EQ(Abre("a.dat", {EAcesso::eLeituraEscrita, EComp::eNegaNada}), ECausa::eViolacaoCompartilhamento);
    EXPECT_EQ(Apaga("a.dat"), ECausa::eViolacaoCompartilhamento);
    escritor.processo.Mata();
    EXPECT_EQ(Abre("a.dat", k_escrita), ECausa::eNenhuma);
    EXPECT_EQ(SFilho(Abertura(EAcesso::eAnexacao, EComp::eNegaNada)).eCausa,
              ECausa::eViolacaoCompartilhamento);
    EXPECT_EQ(SFilho(Abertura(EAcesso::eLeitura, EComp::eNegaNada)).eCausa, ECausa::eNenhuma);
    m_pArquivo.reset();
    EXPECT_EQ(Apaga("a.dat"), ECausa::eNenhuma);
}

TEST_F(CXVEntreProcessosTeste, MarcaEExclusivaETerminaComSeuProcesso) {
    for (const bool bMata : {true, false}) {
        SFilho filho(Marcacao());
        ASSERT_EQ(filho.eCausa, ECausa::eNenhuma);
        EXPECT_EQ(Marca("DFXXMARCA1"), ECausa::eViolacaoCompartilhamento);
        bMata ? filho.processo.Mata() : filho.processo.FechaEntrada();
        EXPECT_TRUE(bMata || filho.processo.EsperaFim() == 0);
        EXPECT_EQ(Marca("DFXXMARCA1"), ECausa::eNenhuma);
        EXPECT_EQ(SFilho(Marcacao()).eCausa, ECausa::eViolacaoCompartilhamento);
        m_pMarca.reset();
        EXPECT_EQ(Existe("DFXXMARCA1"), EExistencia::eAusente);
    }
}
