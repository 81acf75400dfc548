// Viewing single files while the directory under the viewer changes.
#include "core/xvdatabase/XVDiarioFormato.h"
#include "core/xvdatabase/XVVisao.h"
#include "tests/xvdatabase/XVCenarioBanco.h"
#include "tests/xvdatabase/XVDiarioBytes.h"

namespace {

class Vista : public CXVCenarioBanco {
  protected:
    CXVVisao m_visao{PastaDados()};
    const CXVVisao::CUso m_uso{&m_visao};
};

// As after a backup of another moment was put in place.
TEST_F(Vista, ChaveNaoDaORegistroDeOutra) {
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 2, 3}})));
    TXVBanco<CXVFileTeste> banco("A.dat");
    banco.xvDB.SetSomenteLeituraSemBloqueio(true);
    const SChavesTeste chaves;
    ASSERT_EQ(banco->IncluiIndex(&chaves, 0), S_OK);
    ASSERT_EQ(Abre(banco), S_OK);
    std::string sOutro = ArquivoComCabecalho("A.dat", Bytes({{4, 5, 6}}));
    Poe<XVUInt64>(sOutro, 80, 1);  // written to once more
    FechaCrc(sOutro);
    Cria("A.dat", sOutro);
    REG_TESTE reg{};
    EXPECT_EQ(banco->LeIndex(1, &reg, 0), E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_EQ(banco->LeIndex(4, &reg, 0), S_OK);
    EXPECT_EQ(reg, (REG_TESTE{4, 5, 6}));
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

// Without a header only the journal tells where a file ended before an operation that is being written.
TEST_F(Vista, ArquivoSemCabecalhoAcabaOndeAcabavaAntesDaOperacao) {
    const std::string sAntes = Prefixado("um");
    const std::string sNovos = Prefixado("dois");
    Cria("C.dat", sAntes + sNovos.substr(0, 6));
    const SParteBytes anexa{"C.dat", sAntes.size(), sAntes.size(), sAntes.size() + sNovos.size(), sNovos, ""};
    std::string sDiario = DiarioBytes(1, {EntradaBytes(1, {1, {anexa}})});
    Poe<XVUInt64>(sDiario, 512, 1);
    Cria(k_pszNomeDiario, sDiario);
    const std::unique_ptr<IXVArquivo> pEscritor = Segura(k_pszNomeDiario);
    TXVBanco<CXVTextFile> banco("C.dat");
    banco.xvDB.SetSomenteLeituraSemBloqueio(true);
    ASSERT_EQ(Abre(banco), S_OK);
    EXPECT_EQ(banco->GetQtdRegistros(), 1U);
    std::string sTexto;
    EXPECT_EQ(banco->Le(1, sTexto), S_OK);
    EXPECT_EQ(sTexto, "um");
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

}  // namespace
