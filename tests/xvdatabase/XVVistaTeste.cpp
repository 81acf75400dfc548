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
    // A file that cannot be loaded any more answers with its code, however often it is asked.
    Cria("A.dat", sOutro.substr(0, sOutro.size() - 1));
    for (int i = 0; i < 2; ++i) EXPECT_EQ(banco->LeIndex(4, &reg, 0), E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE);
    Cria("A.dat", sOutro);
    EXPECT_EQ(banco->LeIndex(4, &reg, 0), S_OK);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

// Without a header only the journal tells where a file ended before an operation that is being written. When
// its writer is gone, or an opening is concluding it, the operation has taken place.
TEST_F(Vista, ArquivoSemCabecalhoAcabaOndeODiarioDiz) {
    const std::string sAntes = Prefixado("um");
    const std::string sNovos = Prefixado("dois");
    Cria("C.dat", sAntes + sNovos.substr(0, 6));
    Cria("A.dat", Bytes({{1, 2, 3}}));
    const SParteBytes texto{"C.dat", sAntes.size(), sAntes.size(), sAntes.size() + sNovos.size(), sNovos, ""};
    const SParteBytes registros{"A.dat", 16, 16, 48, Bytes({{4, 5, 6}, {7, 8, 9}}), ""};
    std::string sDiario = DiarioBytes(1, {EntradaBytes(1, {1, {texto, registros}})});
    std::unique_ptr<IXVArquivo> pEscritor;
    const auto escreve = [&](XVUInt64 uiPalavra) {
        Poe<XVUInt64>(sDiario, 512, uiPalavra);
        Cria(k_pszNomeDiario, sDiario);
        pEscritor = Segura(k_pszNomeDiario);
    };
    const auto espera = [&](const std::vector<std::string>& rTextos, HRESULT hrTerceiro) {
        TXVBanco<CXVTextFile> textos("C.dat");
        TXVBanco<CXVFileTeste> banco("A.dat");
        textos.xvDB.SetSomenteLeituraSemBloqueio(true);
        banco.xvDB.SetSomenteLeituraSemBloqueio(true);
        ASSERT_EQ(Abre(textos), S_OK);
        ASSERT_EQ(Abre(banco), S_OK);
        EXPECT_EQ(textos->GetQtdRegistros(), rTextos.size());
        std::string sTexto;
        for (std::size_t i = 0; i < rTextos.size(); ++i) {
            EXPECT_EQ(textos->Le(static_cast<XVUInt>(i + 1), sTexto), S_OK);
            EXPECT_EQ(sTexto, rTextos[i]);
        }
        REG_TESTE reg{};
        EXPECT_EQ(banco->Le(3, &reg), hrTerceiro);
        EXPECT_EQ(reg, (SUCCEEDED(hrTerceiro) ? REG_TESTE{7, 8, 9} : REG_TESTE{}));
        ASSERT_EQ(textos.xvDB.Finaliza(), S_OK);
        ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    };
    ASSERT_NO_FATAL_FAILURE(escreve(1));
    espera({"um"}, E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
    pEscritor.reset();
    espera({"um", "dois"}, S_OK);
    ASSERT_NO_FATAL_FAILURE(escreve(k_uiPalavraConclusao));
    espera({"um", "dois"}, S_OK);
}

// Longer than what is read at a time: each piece from its own place.
TEST_F(Vista, ArquivoLongoSeLeInteiro) {
    std::vector<REG_TESTE> lista;
    for (unsigned i = 1; i <= 20000; ++i) lista.push_back({i, i % 7, i * 3});
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes(lista)));
    std::string sLongo;
    for (unsigned i = 0; i < 20000; ++i) sLongo += std::to_string(i) + ' ';
    Cria("C.dat", Prefixado(sLongo) + Prefixado("dois"));
    TXVBanco<CXVFileTeste> banco("A.dat");
    TXVBanco<CXVTextFile> textos("C.dat");
    banco.xvDB.SetSomenteLeituraSemBloqueio(true);
    textos.xvDB.SetSomenteLeituraSemBloqueio(true);
    const SChavesTeste chaves;
    ASSERT_EQ(banco->IncluiIndex(&chaves, 0), S_OK);
    ASSERT_EQ(Abre(banco), S_OK);
    ASSERT_EQ(Abre(textos), S_OK);
    for (const REG_TESTE& rEsperado : lista) {
        REG_TESTE reg{};
        ASSERT_EQ(banco->LeIndex(rEsperado.uiChave, &reg, 0), S_OK) << rEsperado.uiChave;
        ASSERT_EQ(reg, rEsperado);
    }
    std::vector<REG_TESTE> vista;
    const auto junta = [&vista](std::span<const REG_TESTE> aParte, std::size_t uiPrimeiro, const auto*) {
        EXPECT_EQ(uiPrimeiro, vista.size());
        vista.insert(vista.end(), aParte.begin(), aParte.end());
    };
    EXPECT_EQ(banco->Percorre(junta), S_OK);
    EXPECT_TRUE(vista == lista);
    std::string sTexto;
    EXPECT_EQ(textos->Le(1, sTexto), S_OK);
    EXPECT_TRUE(sTexto == sLongo);
    EXPECT_EQ(textos->Le(2, sTexto), S_OK);
    EXPECT_EQ(sTexto, "dois");
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    ASSERT_EQ(textos.xvDB.Finaliza(), S_OK);
}

// What came to a file since it was loaded, and is damaged, is no text.
TEST_F(Vista, TextoNovoComPrefixoDanificadoNaoSeLe) {
    Cria("C.dat", Prefixado("um"));
    TXVBanco<CXVTextFile> banco("C.dat");
    banco.xvDB.SetSomenteLeituraSemBloqueio(true);
    ASSERT_EQ(Abre(banco), S_OK);
    Cria("C.dat", Prefixado("um") + "\xFF\xFF\xFF\x7F" + "dois");
    std::string sTexto;
    EXPECT_EQ(banco->Le(2, sTexto), E_XVCR_POSICAO_LEITURA_SUPERIOR_QUANTIDADE_ARQUIVO);
    const std::string sComNul("dois\0x", 6);
    Cria("C.dat", Prefixado("um") + Prefixado(sComNul));
    EXPECT_EQ(banco->Le(2, sTexto), S_OK);
    EXPECT_EQ(sTexto, "dois") << "a text ends where it always ended";
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
}

}  // namespace
