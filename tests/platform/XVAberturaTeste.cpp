// Opening: share modes, creation, attributes, causes of failure.
#include "tests/platform/XVCenarioArquivos.h"

INSTANTIATE_TEST_SUITE_P(Cenarios, CXVSistemaArquivosTeste, testing::Bool(),
                         [](const auto& rInfo) { return rInfo.param ? "Memory" : "Native"; });

// Closing the second one each time must leave the first one's marks alone, and closing that one none.
TEST_P(CXVSistemaArquivosTeste, CadaParDeAberturasSegueARegraDeCompartilhamento) {
    // Reads, reads and writes, appends; of each: denies all, denies writing, denies nothing. 1: both may be
    // open.
    const char* apszPodem[9] = {"000000000", "011000000", "011011011",  //
                                "000000000", "001000000", "001001001",  //
                                "000000000", "001000000", "001001001"};
    const auto fnAbertura = [](int i) {
        return SAberturaArquivo{static_cast<EAcessoArquivo>(i / 3),
                                static_cast<ECompartilhamentoArquivo>(i % 3),
                                ECriacaoArquivo::eSomenteExistente};
    };
    Cria("a.dat", "x");
    for (int i = 0; i < 9; ++i) {
        ASSERT_EQ(Abre("a.dat", fnAbertura(i)), ECausa::eNenhuma);
        for (int j = 0; j < 9; ++j) {
            std::unique_ptr<IXVArquivo> pSegundo;
            EXPECT_EQ(Abre("a.dat", fnAbertura(j), pSegundo),
                      apszPodem[i][j] == '1' ? ECausa::eNenhuma : ECausa::eViolacaoCompartilhamento)
                << i << ", then " << j;
        }
        m_pArquivo.reset();
    }
}

TEST_P(CXVSistemaArquivosTeste, CriaSoQuandoPedidoENuncaTrunca) {
    for (const EAcessoArquivo eAcesso :
         {EAcessoArquivo::eLeitura, EAcessoArquivo::eLeituraEscrita, EAcessoArquivo::eAnexacao}) {
        const std::string sNome = "novo" + std::to_string(static_cast<int>(eAcesso));
        SAberturaArquivo abertura{eAcesso, ECompartilhamentoArquivo::eNegaEscrita,
                                  ECriacaoArquivo::eSomenteExistente};
        EXPECT_EQ(Abre(sNome, abertura), ECausa::eArquivoNaoEncontrado);
        EXPECT_EQ(Existe(sNome), EExistencia::eAusente);
        abertura.eCriacao = ECriacaoArquivo::eCriaSeAusente;
        for (const std::string sConteudo : {"", "conteudo"}) {
            ASSERT_EQ(Abre(sNome, abertura), ECausa::eNenhuma);
            XVUInt64 uiTamanho = 99;
            EXPECT_TRUE(m_pArquivo->GetTamanho(uiTamanho).Ok());
            EXPECT_EQ(uiTamanho, sConteudo.size());
            m_pArquivo.reset();
            EXPECT_EQ(Conteudo(sNome), sConteudo);
            Cria(sNome, "conteudo");
        }
    }
}

TEST_P(CXVSistemaArquivosTeste, ArquivoAusenteDiretorioAusenteEDiretorioSeDistinguem) {
    Cria("a.dat", "x");
    ASSERT_EQ(CriaDiretorio("sub"), ECausa::eNenhuma);
    const struct {
        const char* pszNome;
        EExistencia eExistencia;
        ECausa eCausa;
    } aCasos[] = {{"b.dat", EExistencia::eAusente, ECausa::eArquivoNaoEncontrado},
                  {"nao/a.dat", EExistencia::eAusente, ECausa::eCaminhoInvalido},
                  {"a.dat/b.dat", EExistencia::eAusente, ECausa::eCaminhoInvalido},
                  {"sub", EExistencia::eDiretorio, ECausa::eAcessoNegado}};
    for (const auto& [pszNome, eExistencia, eCausa] : aCasos) {
        EXPECT_EQ(Existe(pszNome), eExistencia) << pszNome;
        EXPECT_FALSE(m_rSistema.EhSomenteLeitura(Caminho(pszNome))) << pszNome;
        EXPECT_EQ(Abre(pszNome, k_leitura), eCausa) << pszNome;
        EXPECT_EQ(Apaga(pszNome), eCausa) << pszNome;
        if (eCausa != ECausa::eArquivoNaoEncontrado) {
            EXPECT_EQ(Abre(pszNome, k_criacao), eCausa) << pszNome;
        }
    }
}

TEST_P(CXVSistemaArquivosTeste, TextosQueNaoSaoCaminhoSaoRecusadosEmTudo) {
    for (const std::string& sCaminho :
         {std::string(), Caminho(std::string("a\0b", 3)), Caminho("a.dat") + "/"}) {
        EXPECT_EQ(m_rSistema.Abre(sCaminho, k_criacao, m_pArquivo).GetCausa(), ECausa::eCaminhoInvalido);
        EXPECT_EQ(m_rSistema.Apaga(sCaminho).GetCausa(), ECausa::eCaminhoInvalido);
        EXPECT_EQ(m_rSistema.Existe(sCaminho), EExistencia::eAusente);
        EXPECT_FALSE(m_rSistema.BuscaNomeReal(sCaminho, m_sNomeReal).Ok());
    }
    EXPECT_EQ(m_rSistema.CriaDiretorio("").GetCausa(), ECausa::eCaminhoInvalido);
    EXPECT_EQ(CriaDiretorio(std::string("a\0b", 3)), ECausa::eCaminhoInvalido);
}

TEST_P(CXVSistemaArquivosTeste, ArquivoSoDeLeituraExisteEAbreSoParaLer) {
    Cria("a.dat", "x");
    EXPECT_FALSE(m_rSistema.EhSomenteLeitura(Caminho("a.dat")));
    SetSomenteLeitura("a.dat");
    EXPECT_TRUE(m_rSistema.EhSomenteLeitura(Caminho("a.dat")));
    EXPECT_EQ(Existe("a.dat"), EExistencia::eArquivo);
    for (const SAberturaArquivo& rAbertura : {k_escrita, k_criacao, k_anexacao})
        EXPECT_EQ(Abre("a.dat", rAbertura), ECausa::eAcessoNegado);
    EXPECT_EQ(Apaga("a.dat"), ECausa::eAcessoNegado);
    ASSERT_EQ(Abre("a.dat", k_leitura), ECausa::eNenhuma);
    EXPECT_EQ(Le(0, 1), ECausa::eNenhuma);
    EXPECT_EQ(m_sLido, "x");
}

TEST_P(CXVSistemaArquivosTeste, NomesForaDoAsciiECaminhosLongosServem) {
    std::string sLongo = "integra\xC3\xA7\xC3\xA3o \xE2\x82\xAC";
    for (int i = 0; i < 8; ++i) sLongo = m_rSistema.Junta(sLongo, std::string(60, 'x'));
    ASSERT_EQ(CriaDiretorio(sLongo), ECausa::eNenhuma);
    sLongo = m_rSistema.Junta(sLongo, "\xC3\xA7.dat");
    ASSERT_EQ(Abre(sLongo, k_criacao), ECausa::eNenhuma);
    EXPECT_EQ(Grava(0, "longe"), ECausa::eNenhuma);
    EXPECT_EQ(BuscaNomeReal(sLongo), ECausa::eNenhuma);
    EXPECT_EQ(m_sNomeReal, "\xC3\xA7.dat");
    m_pArquivo.reset();
    EXPECT_EQ(Apaga(sLongo), ECausa::eNenhuma);
}
