// Directories: names, deletion, replacement, listing, creation, marks.
#include <algorithm>

#include "tests/platform/XVCenarioSistemaArquivos.h"

namespace {

using TNomes = std::vector<std::string>;

}  // namespace

TEST_P(CXVSistemaArquivosTeste, NomeRealEAchadoSemOlharACaixa) {
    Cria("CRIndexInteg.dat", "x");
    std::string sNome;
    EXPECT_TRUE(Sistema().BuscaNomeReal(Caminho("CRINDEXINTEG.DAT"), sNome).Ok());
    EXPECT_EQ(sNome, "CRIndexInteg.dat");
    EXPECT_TRUE(Sistema().BuscaNomeReal(Caminho("CRIndexInteg.dat"), sNome).Ok());
    EXPECT_EQ(sNome, "CRIndexInteg.dat");
    for (const char* pszAusente : {"CRIndexInteg.da", "CRIndexInteg.*", "CRIndexInteg.da?", "CRINDE~1.DAT",
                                   "..", "nao/CRIndexInteg.dat"}) {
        EXPECT_FALSE(Sistema().BuscaNomeReal(Caminho(pszAusente), sNome).Ok()) << pszAusente;
        EXPECT_EQ(sNome, "");
    }
}

TEST_P(CXVSistemaArquivosTeste, ArquivoAbertoPorAlguemNaoEApagadoNemSubstituido) {
    Cria("a.dat", "aaa");
    Cria("b.dat", "bbb");
    for (const EAcessoArquivo eAcesso :
         {EAcessoArquivo::eLeitura, EAcessoArquivo::eLeituraEscrita, EAcessoArquivo::eAnexacao}) {
        const std::unique_ptr<IXVArquivo> pAberto = AbreBem(
            "a.dat", {eAcesso, ECompartilhamentoArquivo::eNegaNada, ECriacaoArquivo::eSomenteExistente});
        EXPECT_EQ(Sistema().Apaga(Caminho("a.dat")).GetCausa(), ECausaArquivo::eViolacaoCompartilhamento);
        EXPECT_EQ(Sistema().Substitui(Caminho("a.dat"), Caminho("b.dat")).GetCausa(),
                  ECausaArquivo::eViolacaoCompartilhamento);
        EXPECT_EQ(Sistema().Substitui(Caminho("a.dat"), Caminho("c.dat")).GetCausa(),
                  ECausaArquivo::eViolacaoCompartilhamento);
        EXPECT_EQ(Sistema().Substitui(Caminho("b.dat"), Caminho("a.dat")).GetCausa(),
                  ECausaArquivo::eViolacaoCompartilhamento);
    }
    EXPECT_EQ(Conteudo("a.dat"), "aaa");
    EXPECT_EQ(Conteudo("b.dat"), "bbb");
    EXPECT_TRUE(Sistema().Apaga(Caminho("a.dat")).Ok());
    EXPECT_EQ(Sistema().Existe(Caminho("a.dat")), EExistencia::eAusente);
}

TEST_P(CXVSistemaArquivosTeste, SubstituirMoveOConteudoDeUmaVez) {
    Cria("a.tra", "novo");
    Cria("a.dat", "conteudo antigo");
    EXPECT_TRUE(Sistema().Substitui(Caminho("a.tra"), Caminho("a.dat")).Ok());
    EXPECT_EQ(Conteudo("a.dat"), "novo");
    EXPECT_EQ(Sistema().Existe(Caminho("a.tra")), EExistencia::eAusente);
    EXPECT_TRUE(Sistema().Substitui(Caminho("a.dat"), Caminho("b.dat")).Ok());
    EXPECT_EQ(Conteudo("b.dat"), "novo");
    ASSERT_TRUE(Sistema().CriaDiretorio(Caminho("sub")).Ok());
    EXPECT_TRUE(Sistema().Substitui(Caminho("b.dat"), Caminho("sub/b.dat")).Ok());
    EXPECT_EQ(Conteudo("sub/b.dat"), "novo");
}

TEST_P(CXVSistemaArquivosTeste, SubstituirDizOQueImpede) {
    Cria("a.tra", "novo");
    Cria("a.dat", "antigo");
    ASSERT_TRUE(Sistema().CriaDiretorio(Caminho("sub")).Ok());
    const auto fnCausa = [&](const std::string& sOrigem, const std::string& sDestino) {
        return Sistema().Substitui(Caminho(sOrigem), Caminho(sDestino)).GetCausa();
    };
    EXPECT_EQ(fnCausa("nao.tra", "a.dat"), ECausaArquivo::eArquivoNaoEncontrado);
    EXPECT_EQ(fnCausa("nao/a.tra", "a.dat"), ECausaArquivo::eCaminhoInvalido);
    EXPECT_EQ(fnCausa("a.tra", "nao/a.dat"), ECausaArquivo::eCaminhoInvalido);
    EXPECT_EQ(fnCausa("a.tra", "sub"), ECausaArquivo::eAcessoNegado);
    EXPECT_EQ(fnCausa("sub", "b.dat"), ECausaArquivo::eAcessoNegado);
    SetSomenteLeitura("a.dat");
    EXPECT_EQ(fnCausa("a.tra", "a.dat"), ECausaArquivo::eAcessoNegado);
    EXPECT_EQ(Conteudo("a.dat"), "antigo");
    EXPECT_EQ(Conteudo("a.tra"), "novo");
    // A read-only file may be moved, and keeps its attribute.
    EXPECT_EQ(fnCausa("a.dat", "b.dat"), ECausaArquivo::eNenhuma);
    EXPECT_TRUE(Sistema().EhSomenteLeitura(Caminho("b.dat")));
}

TEST_P(CXVSistemaArquivosTeste, MoverPodeMudarSoACaixaDoNome) {
    Cria("a.DAT", "x");
    EXPECT_TRUE(Sistema().Substitui(Caminho("a.DAT"), Caminho("a.dat")).Ok());
    TNomes listaNomes;
    EXPECT_TRUE(Sistema().Lista(Caminho(""), "*", listaNomes).Ok());
    ASSERT_EQ(listaNomes.size(), 1U);
    // A foreign file system under the native one may keep the old spelling of a name it ignores case in.
    const bool bIgnoraCaixa = Sistema().Existe(Caminho("a.DAT")) != EExistencia::eAusente;
    EXPECT_EQ(listaNomes[0], EhNativo() && bIgnoraCaixa ? listaNomes[0] : "a.dat");
    EXPECT_EQ(Conteudo("a.dat"), "x");
    EXPECT_TRUE(Sistema().Substitui(Caminho("a.dat"), Caminho("a.dat")).Ok());
    EXPECT_EQ(Conteudo("a.dat"), "x");
}

TEST_P(CXVSistemaArquivosTeste, ListaOsArquivosDaMascaraInteira) {
    for (const char* pszNome : {"CRINTEGMID20240101.dat", "crintegmid20240102.DAT",
                                "CRINTEGMIDJSON20240101.dat", "a.datx", "a.dat.tra", "semextensao"}) {
        Cria(pszNome, "");
    }
    ASSERT_TRUE(Sistema().CriaDiretorio(Caminho("CRINTEGMID20240103.dat")).Ok());
    const auto fnLista = [&](const std::string& sMascara) {
        TNomes listaNomes{"sobra"};
        EXPECT_TRUE(Sistema().Lista(Caminho(""), sMascara, listaNomes).Ok());
        std::sort(listaNomes.begin(), listaNomes.end());
        return listaNomes;
    };
    EXPECT_EQ(fnLista("CRINTEGMID????????.dat"),
              (TNomes{"CRINTEGMID20240101.dat", "crintegmid20240102.DAT"}));
    EXPECT_EQ(fnLista("*.dat"),
              (TNomes{"CRINTEGMID20240101.dat", "CRINTEGMIDJSON20240101.dat", "crintegmid20240102.DAT"}));
    EXPECT_EQ(fnLista("*").size(), 6U);
    EXPECT_EQ(fnLista("*.xyz"), TNomes{});
    TNomes listaNomes{"sobra"};
    EXPECT_EQ(Sistema().Lista(Caminho("nao"), "*", listaNomes).GetCausa(), ECausaArquivo::eCaminhoInvalido);
    EXPECT_EQ(Sistema().Lista(Caminho("a.datx"), "*", listaNomes).GetCausa(),
              ECausaArquivo::eCaminhoInvalido);
    EXPECT_EQ(listaNomes, TNomes{});
}

TEST_P(CXVSistemaArquivosTeste, CriaDiretoriosComOsDeCima) {
    EXPECT_TRUE(Sistema().CriaDiretorio(Caminho("x/y/z")).Ok());
    EXPECT_EQ(Sistema().Existe(Caminho("x/y/z")), EExistencia::eDiretorio);
    EXPECT_TRUE(Sistema().CriaDiretorio(Caminho("x/y/z")).Ok());
    EXPECT_TRUE(Sistema().CriaDiretorio(Caminho("x/y/") + "/").Ok());
    Cria("a.dat", "x");
    EXPECT_EQ(Sistema().CriaDiretorio(Caminho("a.dat")).GetCausa(), ECausaArquivo::eCaminhoInvalido);
    EXPECT_EQ(Sistema().CriaDiretorio(Caminho("a.dat/b/c")).GetCausa(), ECausaArquivo::eCaminhoInvalido);
    EXPECT_EQ(Conteudo("a.dat"), "x");
}

TEST_P(CXVSistemaArquivosTeste, MarcaEExclusivaAteSerLiberada) {
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    std::unique_ptr<IXVMarcaDiretorio> pOutra;
    const auto fnMarca = [&](const std::string& sMarca, std::unique_ptr<IXVMarcaDiretorio>& rpMarca) {
        return Sistema().MarcaDiretorio(Caminho(""), sMarca, rpMarca).GetCausa();
    };
    EXPECT_EQ(fnMarca("DFXXMARCA1", pMarca), ECausaArquivo::eNenhuma);
    EXPECT_EQ(fnMarca("DFXXMARCA1", pOutra), ECausaArquivo::eViolacaoCompartilhamento);
    EXPECT_EQ(pOutra, nullptr);
    EXPECT_EQ(fnMarca("DFXXMARCA2", pOutra), ECausaArquivo::eNenhuma);
    pMarca.reset();
    EXPECT_EQ(fnMarca("DFXXMARCA1", pMarca), ECausaArquivo::eNenhuma);
    pMarca.reset();
    pOutra.reset();
    TNomes listaNomes;
    EXPECT_TRUE(Sistema().Lista(Caminho(""), "*", listaNomes).Ok());
    EXPECT_EQ(listaNomes, TNomes{}) << "a released mark leaves nothing behind";
    EXPECT_EQ(Sistema().MarcaDiretorio(Caminho("nao"), "M", pMarca).GetCausa(),
              ECausaArquivo::eCaminhoInvalido);
    for (const char* pszMarca : {"", ".", "..", "a/b", "a\\b", "a:b", "a*"}) {
        EXPECT_EQ(fnMarca(pszMarca, pMarca), ECausaArquivo::eCaminhoInvalido) << pszMarca;
    }
}

TEST_P(CXVSistemaArquivosTeste, JuntarPoeUmSeparadorSo) {
    const std::string sSimples = Sistema().Junta("d", "n");
    ASSERT_EQ(sSimples.size(), 3U);
    EXPECT_EQ(Sistema().Junta("d/", "n"), sSimples);
    EXPECT_EQ(Sistema().Junta("d//", "/n"), sSimples);
    EXPECT_EQ(Sistema().Junta("", "n"), "n");
    EXPECT_EQ(Sistema().Junta("/", "n").size(), 2U);
}
