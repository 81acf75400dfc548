// Opening: share modes, creation, attributes, causes of failure.
#include "tests/platform/XVCenarioArquivos.h"

INSTANTIATE_TEST_SUITE_P(Cenarios, CXVSistemaArquivosTeste, testing::Bool(),
                         [](const auto& rInfo) { return rInfo.param ? "Memory" : "Native"; });

namespace {

constexpr EAcessoArquivo k_aAcessos[] = {EAcessoArquivo::eLeitura, EAcessoArquivo::eLeituraEscrita,
                                         EAcessoArquivo::eAnexacao};

bool Nega(ECompartilhamentoArquivo eCompartilhamento, EAcessoArquivo eAcesso) {
    return eCompartilhamento == ECompartilhamentoArquivo::eNegaTudo ||
           (eCompartilhamento == ECompartilhamentoArquivo::eNegaEscrita &&
            eAcesso != EAcessoArquivo::eLeitura);
}

std::vector<SAberturaArquivo> TodasAsAberturas() {
    std::vector<SAberturaArquivo> lista;
    for (const EAcessoArquivo eAcesso : k_aAcessos)
        for (const ECompartilhamentoArquivo eCompartilhamento :
             {ECompartilhamentoArquivo::eNegaTudo, ECompartilhamentoArquivo::eNegaEscrita,
              ECompartilhamentoArquivo::eNegaNada})
            lista.push_back({eAcesso, eCompartilhamento, ECriacaoArquivo::eSomenteExistente});
    return lista;
}

}  // namespace

// Closing the second one each time must leave the first one's marks alone, and closing that one none.
TEST_P(CXVSistemaArquivosTeste, CadaParDeAberturasSegueARegraDeCompartilhamento) {
    Cria("a.dat", "x");
    const std::vector<SAberturaArquivo> lista = TodasAsAberturas();
    for (std::size_t i = 0; i < lista.size(); ++i) {
        ASSERT_EQ(Abre("a.dat", lista[i]), ECausa::eNenhuma);
        for (std::size_t j = 0; j < lista.size(); ++j) {
            const bool bConflito = Nega(lista[i].eCompartilhamento, lista[j].eAcesso) ||
                                   Nega(lista[j].eCompartilhamento, lista[i].eAcesso);
            std::unique_ptr<IXVArquivo> pSegundo;
            EXPECT_EQ(Abre("a.dat", lista[j], pSegundo),
                      bConflito ? ECausa::eViolacaoCompartilhamento : ECausa::eNenhuma)
                << i << ", then " << j;
        }
        m_pArquivo.reset();
    }
}

TEST_P(CXVSistemaArquivosTeste, CriaSoQuandoPedidoENuncaTrunca) {
    for (const EAcessoArquivo eAcesso : k_aAcessos) {
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
