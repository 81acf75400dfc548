// Directories: names, deletion, replacement, listing, creation, marks.
#include "tests/platform/XVCenarioArquivos.h"

TEST_P(CXVSistemaArquivosTeste, NomeRealEAchadoSemOlharACaixa) {
    Cria("CRIndexInteg.dat", "x");
    for (const char* pszPedido : {"CRINDEXINTEG.DAT", "CRIndexInteg.dat"}) {
        EXPECT_EQ(BuscaNomeReal(pszPedido), ECausa::eNenhuma);
        EXPECT_EQ(m_sNomeReal, "CRIndexInteg.dat");
    }
    for (const char* pszAusente : {"CRIndexInteg.da", "CRIndexInteg.*", "CRIndexInteg.da?", "CRINDE~1.DAT",
                                   "..", "nao/CRIndexInteg.dat"}) {
        EXPECT_NE(BuscaNomeReal(pszAusente), ECausa::eNenhuma) << pszAusente;
        EXPECT_EQ(m_sNomeReal, "");
    }
}

TEST_P(CXVSistemaArquivosTeste, DoisNomesDoMesmoLugarTemUmCaminhoReal) {
    ASSERT_EQ(CriaDiretorio("a/b"), ECausa::eNenhuma);
    std::string sReal;
    std::string sOutro;
    ASSERT_TRUE(m_rSistema.GetCaminhoReal(Caminho("a"), sReal).Ok());
    EXPECT_TRUE(m_rSistema.GetCaminhoReal(Caminho("a/b/../."), sOutro).Ok());
    EXPECT_EQ(sOutro, sReal);
    ASSERT_TRUE(m_rSistema.GetCaminhoReal(Caminho("a/b"), sOutro).Ok());
    EXPECT_EQ(sOutro.substr(0, sReal.size()), sReal);
    EXPECT_EQ(m_rSistema.GetCaminhoReal(Caminho("nao"), sOutro).GetCausa(), ECausa::eCaminhoInvalido);
    EXPECT_EQ(sOutro, "");
}

TEST_P(CXVSistemaArquivosTeste, ArquivoAbertoPorAlguemNaoEApagadoNemSubstituido) {
    Cria("a.dat", "aaa");
    Cria("b.dat", "bbb");
    for (const SAberturaArquivo& rAbertura : {k_leitura, k_escrita, k_anexacao}) {
        ASSERT_EQ(Abre("a.dat", rAbertura), ECausa::eNenhuma);
        EXPECT_EQ(Apaga("a.dat"), ECausa::eViolacaoCompartilhamento);
        EXPECT_EQ(Substitui("a.dat", "b.dat"), ECausa::eViolacaoCompartilhamento);
        EXPECT_EQ(Substitui("a.dat", "c.dat"), ECausa::eViolacaoCompartilhamento);
        EXPECT_EQ(Substitui("b.dat", "a.dat"), ECausa::eViolacaoCompartilhamento);
    }
    m_pArquivo.reset();
    EXPECT_EQ(Conteudo("a.dat") + Conteudo("b.dat"), "aaabbb");
    EXPECT_EQ(Apaga("a.dat"), ECausa::eNenhuma);
    EXPECT_EQ(Existe("a.dat"), EExistencia::eAusente);
}

TEST_P(CXVSistemaArquivosTeste, SubstituirMoveOConteudoOuDizOQueImpede) {
    Cria("a.tra", "novo");
    Cria("a.dat", "conteudo antigo");
    ASSERT_EQ(CriaDiretorio("sub"), ECausa::eNenhuma);
    EXPECT_EQ(Substitui("nao.tra", "a.dat"), ECausa::eArquivoNaoEncontrado);
    EXPECT_EQ(Substitui("nao/a.tra", "a.dat"), ECausa::eCaminhoInvalido);
    EXPECT_EQ(Substitui("a.tra", "nao/a.dat"), ECausa::eCaminhoInvalido);
    EXPECT_EQ(Substitui("a.tra", "sub"), ECausa::eAcessoNegado);
    EXPECT_EQ(Substitui("sub", "b.dat"), ECausa::eAcessoNegado);
    EXPECT_EQ(Substitui("a.tra", "a.dat"), ECausa::eNenhuma);
    EXPECT_EQ(Existe("a.tra"), EExistencia::eAusente);
    EXPECT_EQ(Substitui("a.dat", "sub/B.dat"), ECausa::eNenhuma);
    EXPECT_EQ(Conteudo("sub/B.dat"), "novo");
    // A read-only file may be moved, keeps its attribute, and stands in the way of another.
    SetSomenteLeitura("sub/B.dat");
    EXPECT_EQ(Substitui("sub/B.dat", "b.DAT"), ECausa::eNenhuma);
    EXPECT_TRUE(m_rSistema.EhSomenteLeitura(Caminho("b.DAT")));
    Cria("c.dat", "outro");
    EXPECT_EQ(Substitui("c.dat", "b.DAT"), ECausa::eAcessoNegado);
    EXPECT_EQ(Conteudo("b.DAT") + Conteudo("c.dat"), "novooutro");
}

TEST_P(CXVSistemaArquivosTeste, MoverPodeMudarSoACaixaDoNome) {
    Cria("a.DAT", "x");
    EXPECT_EQ(Substitui("a.DAT", "a.dat"), ECausa::eNenhuma);
    EXPECT_EQ(Lista(""), ECausa::eNenhuma);
    ASSERT_EQ(m_listaNomes.size(), 1U);
    // A foreign file system under the native one may keep the old spelling of a name it ignores case in.
    const bool bIgnoraCaixa = !m_bMemoria && Existe("a.DAT") != EExistencia::eAusente;
    EXPECT_TRUE(m_listaNomes[0] == "a.dat" || bIgnoraCaixa) << m_listaNomes[0];
    EXPECT_EQ(Substitui("a.dat", "a.dat"), ECausa::eNenhuma);
    EXPECT_EQ(Conteudo("a.dat"), "x");
}

TEST_P(CXVSistemaArquivosTeste, ListaOsArquivosDaMascaraInteira) {
    const TNomes listaTodos{"CRINTEGMID20240101.dat",
                            "CRINTEGMIDJSON20240101.dat",
                            "a.dat.tra",
                            "a.datx",
                            "crintegmid20240102.DAT",
                            "semextensao"};
    for (const std::string& sNome : listaTodos) Cria(sNome, "");
    ASSERT_EQ(CriaDiretorio("CRINTEGMID20240103.dat"), ECausa::eNenhuma);
    const std::vector<std::pair<std::string, TNomes>> listaCasos{
        {"CRINTEGMID????????.dat", {listaTodos[0], listaTodos[4]}},
        {"*.dat", {listaTodos[0], listaTodos[1], listaTodos[4]}},
        {"*", listaTodos},
        {"*.xyz", {}}};
    for (const auto& [sMascara, listaEsperada] : listaCasos) {
        EXPECT_EQ(Lista("", sMascara), ECausa::eNenhuma);
        EXPECT_EQ(m_listaNomes, listaEsperada) << sMascara;
    }
    for (const char* pszDiretorio : {"nao", "a.datx"}) {
        EXPECT_EQ(Lista(pszDiretorio), ECausa::eCaminhoInvalido);
        EXPECT_EQ(m_listaNomes, TNomes{});
    }
}

TEST_P(CXVSistemaArquivosTeste, CriaDiretoriosComOsDeCima) {
    for (const char* pszDiretorio : {"x/y/z", "x/y/z", "x/y/"})
        EXPECT_EQ(CriaDiretorio(pszDiretorio), ECausa::eNenhuma);
    EXPECT_EQ(Existe("x/y/z"), EExistencia::eDiretorio);
    Cria("a.dat", "x");
    EXPECT_EQ(CriaDiretorio("a.dat"), ECausa::eCaminhoInvalido);
    EXPECT_EQ(CriaDiretorio("a.dat/b/c"), ECausa::eCaminhoInvalido);
    const std::string sSimples = m_rSistema.Junta("d", "n");
    ASSERT_EQ(sSimples.size(), 3U);
    EXPECT_EQ(m_rSistema.Junta("d//", "/n"), sSimples);
    EXPECT_EQ(m_rSistema.Junta("", "n"), "n");
    EXPECT_EQ(m_rSistema.Junta("/", "n").size(), 2U);
}

TEST_P(CXVSistemaArquivosTeste, MarcaEExclusivaAteSerLiberada) {
    std::unique_ptr<IXVMarcaDiretorio> pOutra;
    EXPECT_EQ(Marca("DFXXMARCA1"), ECausa::eNenhuma);
    EXPECT_EQ(Marca("DFXXMARCA1", pOutra), ECausa::eViolacaoCompartilhamento);
    EXPECT_EQ(pOutra, nullptr);
    EXPECT_EQ(Marca("DFXXMARCA2", pOutra), ECausa::eNenhuma);
    m_pMarca.reset();
    EXPECT_EQ(Marca("DFXXMARCA1"), ECausa::eNenhuma);
    m_pMarca.reset();
    pOutra.reset();
    EXPECT_EQ(Lista(""), ECausa::eNenhuma);
    EXPECT_EQ(m_listaNomes, TNomes{}) << "a released mark leaves nothing behind";
    EXPECT_EQ(m_rSistema.MarcaDiretorio(Caminho("nao"), "M", m_pMarca).GetCausa(), ECausa::eCaminhoInvalido);
    for (const char* pszMarca : {"", ".", "..", "a/b", "a\\b", "a:b", "a*"})
        EXPECT_EQ(Marca(pszMarca), ECausa::eCaminhoInvalido) << pszMarca;
}
