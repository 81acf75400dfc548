// Opening: share modes, creation, attributes, causes of failure.
#include "tests/platform/XVCenarioSistemaArquivos.h"

namespace {

constexpr EAcessoArquivo k_aAcessos[] = {EAcessoArquivo::eLeitura, EAcessoArquivo::eLeituraEscrita,
                                         EAcessoArquivo::eAnexacao};
constexpr ECompartilhamentoArquivo k_aCompartilhamentos[] = {ECompartilhamentoArquivo::eNegaTudo,
                                                             ECompartilhamentoArquivo::eNegaEscrita,
                                                             ECompartilhamentoArquivo::eNegaNada};

bool Nega(ECompartilhamentoArquivo eCompartilhamento, EAcessoArquivo eAcesso) {
    return eCompartilhamento == ECompartilhamentoArquivo::eNegaTudo ||
           (eCompartilhamento == ECompartilhamentoArquivo::eNegaEscrita &&
            eAcesso != EAcessoArquivo::eLeitura);
}

std::vector<SAberturaArquivo> TodasAsAberturas() {
    std::vector<SAberturaArquivo> lista;
    for (const EAcessoArquivo eAcesso : k_aAcessos) {
        for (const ECompartilhamentoArquivo eCompartilhamento : k_aCompartilhamentos) {
            lista.push_back({eAcesso, eCompartilhamento, ECriacaoArquivo::eSomenteExistente});
        }
    }
    return lista;
}

std::string Descreve(const SAberturaArquivo& r) {
    return "access " + std::to_string(static_cast<int>(r.eAcesso)) + " share " +
           std::to_string(static_cast<int>(r.eCompartilhamento));
}

}  // namespace

TEST_P(CXVSistemaArquivosTeste, CadaParDeAberturasSegueARegraDeCompartilhamento) {
    Cria("a.dat", "x");
    for (const SAberturaArquivo& rPrimeira : TodasAsAberturas()) {
        const std::unique_ptr<IXVArquivo> pPrimeiro = AbreBem("a.dat", rPrimeira);
        for (const SAberturaArquivo& rSegunda : TodasAsAberturas()) {
            const bool bConflito = Nega(rPrimeira.eCompartilhamento, rSegunda.eAcesso) ||
                                   Nega(rSegunda.eCompartilhamento, rPrimeira.eAcesso);
            std::unique_ptr<IXVArquivo> pSegundo;
            EXPECT_EQ(Abre("a.dat", rSegunda, pSegundo),
                      bConflito ? ECausaArquivo::eViolacaoCompartilhamento : ECausaArquivo::eNenhuma)
                << Descreve(rPrimeira) << ", then " << Descreve(rSegunda);
        }
    }
}

TEST_P(CXVSistemaArquivosTeste, FecharLiberaSoAPropriaAbertura) {
    Cria("a.dat", "x");
    std::unique_ptr<IXVArquivo> pLeitor1 = AbreBem("a.dat", k_aberturaLeitura);
    std::unique_ptr<IXVArquivo> pLeitor2 = AbreBem("a.dat", k_aberturaLeitura);
    const SAberturaArquivo exclusiva{EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaTudo,
                                     ECriacaoArquivo::eSomenteExistente};
    std::unique_ptr<IXVArquivo> pExclusivo;
    EXPECT_EQ(Abre("a.dat", exclusiva, pExclusivo), ECausaArquivo::eViolacaoCompartilhamento);
    pLeitor1.reset();
    EXPECT_EQ(Abre("a.dat", exclusiva, pExclusivo), ECausaArquivo::eViolacaoCompartilhamento);
    pLeitor2.reset();
    EXPECT_EQ(Abre("a.dat", exclusiva, pExclusivo), ECausaArquivo::eNenhuma);
}

TEST_P(CXVSistemaArquivosTeste, CriaSoQuandoPedidoENuncaTrunca) {
    for (const EAcessoArquivo eAcesso : k_aAcessos) {
        const std::string sNome = "novo" + std::to_string(static_cast<int>(eAcesso));
        SAberturaArquivo abertura{eAcesso, ECompartilhamentoArquivo::eNegaEscrita,
                                  ECriacaoArquivo::eSomenteExistente};
        std::unique_ptr<IXVArquivo> pArquivo;
        EXPECT_EQ(Abre(sNome, abertura, pArquivo), ECausaArquivo::eArquivoNaoEncontrado);
        EXPECT_EQ(Sistema().Existe(Caminho(sNome)), EExistencia::eAusente);
        abertura.eCriacao = ECriacaoArquivo::eCriaSeAusente;
        EXPECT_EQ(Abre(sNome, abertura, pArquivo), ECausaArquivo::eNenhuma);
        pArquivo.reset();
        EXPECT_EQ(Conteudo(sNome), "");
        Cria(sNome, "conteudo");
        EXPECT_EQ(Abre(sNome, abertura, pArquivo), ECausaArquivo::eNenhuma);
        pArquivo.reset();
        EXPECT_EQ(Conteudo(sNome), "conteudo");
    }
}

TEST_P(CXVSistemaArquivosTeste, ArquivoAusenteDiretorioAusenteEDiretorioSeDistinguem) {
    Cria("a.dat", "x");
    ASSERT_TRUE(Sistema().CriaDiretorio(Caminho("sub")).Ok());
    std::unique_ptr<IXVArquivo> pArquivo;
    for (const SAberturaArquivo& rAbertura : {k_aberturaLeitura, k_aberturaEscrita}) {
        EXPECT_EQ(Abre("nao/a.dat", rAbertura, pArquivo), ECausaArquivo::eCaminhoInvalido);
        EXPECT_EQ(Abre("a.dat/b.dat", rAbertura, pArquivo), ECausaArquivo::eCaminhoInvalido);
        EXPECT_EQ(Abre("sub", rAbertura, pArquivo), ECausaArquivo::eAcessoNegado);
    }
    EXPECT_EQ(Abre("b.dat", k_aberturaLeitura, pArquivo), ECausaArquivo::eArquivoNaoEncontrado);
    EXPECT_FALSE(Sistema().EhSomenteLeitura(Caminho("b.dat")));
    for (const std::string sNome : {"b.dat", "nao/a.dat", "a.dat/b.dat"}) {
        EXPECT_EQ(Sistema().Existe(Caminho(sNome)), EExistencia::eAusente) << sNome;
    }
    EXPECT_EQ(Sistema().Existe(Caminho("sub")), EExistencia::eDiretorio);
    EXPECT_EQ(Sistema().Apaga(Caminho("b.dat")).GetCausa(), ECausaArquivo::eArquivoNaoEncontrado);
    EXPECT_EQ(Sistema().Apaga(Caminho("nao/b.dat")).GetCausa(), ECausaArquivo::eCaminhoInvalido);
    EXPECT_EQ(Sistema().Apaga(Caminho("sub")).GetCausa(), ECausaArquivo::eAcessoNegado);
}

TEST_P(CXVSistemaArquivosTeste, TextosQueNaoSaoCaminhoSaoRecusadosEmTudo) {
    std::unique_ptr<IXVArquivo> pArquivo;
    for (const std::string& sCaminho :
         {std::string(), Caminho(std::string("a\0b", 3)), Caminho("a.dat") + "/"}) {
        EXPECT_EQ(Sistema().Abre(sCaminho, k_aberturaEscrita, pArquivo).GetCausa(),
                  ECausaArquivo::eCaminhoInvalido);
        EXPECT_EQ(Sistema().Apaga(sCaminho).GetCausa(), ECausaArquivo::eCaminhoInvalido);
        EXPECT_EQ(Sistema().Existe(sCaminho), EExistencia::eAusente);
        std::string sNome;
        EXPECT_FALSE(Sistema().BuscaNomeReal(sCaminho, sNome).Ok());
    }
    EXPECT_EQ(Sistema().CriaDiretorio("").GetCausa(), ECausaArquivo::eCaminhoInvalido);
    EXPECT_EQ(Sistema().CriaDiretorio(Caminho(std::string("a\0b", 3))).GetCausa(),
              ECausaArquivo::eCaminhoInvalido);
}

TEST_P(CXVSistemaArquivosTeste, ArquivoSoDeLeituraExisteEAbreSoParaLer) {
    Cria("a.dat", "x");
    EXPECT_FALSE(Sistema().EhSomenteLeitura(Caminho("a.dat")));
    SetSomenteLeitura("a.dat");
    EXPECT_TRUE(Sistema().EhSomenteLeitura(Caminho("a.dat")));
    EXPECT_EQ(Sistema().Existe(Caminho("a.dat")), EExistencia::eArquivo);
    std::unique_ptr<IXVArquivo> pArquivo;
    for (const EAcessoArquivo eAcesso : {EAcessoArquivo::eLeituraEscrita, EAcessoArquivo::eAnexacao}) {
        for (const ECriacaoArquivo eCriacao :
             {ECriacaoArquivo::eSomenteExistente, ECriacaoArquivo::eCriaSeAusente}) {
            EXPECT_EQ(Abre("a.dat", {eAcesso, ECompartilhamentoArquivo::eNegaEscrita, eCriacao}, pArquivo),
                      ECausaArquivo::eAcessoNegado);
        }
    }
    EXPECT_EQ(Sistema().Apaga(Caminho("a.dat")).GetCausa(), ECausaArquivo::eAcessoNegado);
    EXPECT_EQ(Conteudo("a.dat"), "x");
}

TEST_P(CXVSistemaArquivosTeste, NomesForaDoAsciiECaminhosLongosServem) {
    const std::string sNome = "integra\xC3\xA7\xC3\xA3o \xE2\x82\xAC.dat";
    Cria(sNome, "x");
    std::string sReal;
    EXPECT_TRUE(Sistema().BuscaNomeReal(Caminho(sNome), sReal).Ok());
    EXPECT_EQ(sReal, sNome);
    std::string sFundo = "d";
    for (int i = 0; i < 8; ++i) {
        sFundo = Sistema().Junta(sFundo, std::string(60, 'x'));
    }
    ASSERT_TRUE(Sistema().CriaDiretorio(Caminho(sFundo)).Ok());
    const std::string sLongo = Sistema().Junta(sFundo, "a.dat");
    Cria(sLongo, "longe");
    EXPECT_EQ(Conteudo(sLongo), "longe");
    EXPECT_TRUE(Sistema().Apaga(Caminho(sLongo)).Ok());
}
