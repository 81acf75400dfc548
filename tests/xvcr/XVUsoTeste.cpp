// xvcr on a disk whose calls fail, and what no session shows of its commands.
#include <gmock/gmock.h>

#include "support/XVAmbiente.h"
#include "support/codes/XVCodigos.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"
#include "tests/xvcr/XVPrograma.h"
#include "tools/xvcr/commands/XVGravadasNaTroca.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Every command, also one that comes later.
TEST(Uso, AjudaDeCadaComandoTemExemplos) {
    const TArgumentos listaComandos = XVPalavras(XVExecutaAqui({"completa", "palavras", ""}).sSaida);
    EXPECT_GT(listaComandos.size(), 20U);
    for (const std::string& rComando : listaComandos) {
        const SExecucao ajuda = XVExecutaAqui({rComando, "--help"});
        EXPECT_EQ(ajuda.iSaida, 0) << rComando;
        EXPECT_THAT(ajuda.sSaida, HasSubstr("  xvcr " + rComando));
        EXPECT_THAT(ajuda.sSaida, Not(HasSubstr("REQUIRED")));
    }
    EXPECT_EQ(XVExecutaAqui({"-V"}).sSaida, XVExecutaAqui({"--version"}).sSaida);
    const std::string sManual = XVExecutaAqui({"manual"}).sSaida;
    for (const char* pszTexto : {".SH \"xvcr mapa lista\"", "\\fB\\-\\-alteracao\\-status\\fR", "16=Mercos",
                                 "\\-\\-json\\-enviado @pedido.json"})
        EXPECT_THAT(sManual, HasSubstr(pszTexto));
}

// The installation's store, on a disk in memory.
class UsoEmMemoria : public testing::Test {
  protected:
    UsoEmMemoria() {
        m_Registry.SetTexto(CAmbienteXV::GetChaveRegistry(k_eModuloBase), "Path", "/dados");
        // The first makes the files, the second lists them; from then on each writes as often as the one
        // before.
        for (int i = 0; i < 3; ++i) {
            m_Falhas.Limpa();
            EXPECT_EQ(Executa("grava --filial 1").iSaida, 0);
        }
    }
    static SExecucao Executa(const std::string& sLinha) {
        return XVExecutaAqui(XVPalavras("--empresa 001 " + sLinha));
    }

    CXVSistemaArquivosMemoria m_Arquivos;
    CXVSistemaArquivosFalhas m_Falhas{m_Arquivos};
    CXVRegistryFalso m_Registry;
    CXVRelogioFalso m_Relogio;
    const CXVGuardaRelogio m_GuardaRelogio{m_Relogio};
    const CXVGuardaSistemaArquivos m_GuardaSistema{m_Falhas};
    const CXVGuardaRegistry m_GuardaRegistry{m_Registry};
};

// What is missing because a file cannot be read is no reason to restore anything.
TEST_F(UsoEmMemoria, ArquivoIlegivelVemAntesDoQueDependeDele) {
    m_Falhas.SetFiltro([](const std::string& s) { return s.ends_with("CRINDEXINTEG.dat"); });
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eLe, .bPermanente = true});
    const std::string sTexto = Executa("verifica").sSaida;
    EXPECT_THAT(sTexto, HasSubstr("Danos:\n- o arquivo não pôde ser lido até o fim\n"));
    EXPECT_THAT(sTexto, HasSubstr("O que fazer: Primeiro torne legível o arquivo acima"));
    EXPECT_THAT(sTexto, Not(HasSubstr("estaure")));
    const auto linhas = XVLinhasJson(Executa("verifica --json").sSaida);
    EXPECT_EQ(linhas.at(0)["achado"], "arquivoIlegivel");
    EXPECT_THAT(linhas.at(1).value("fazer", ""), StartsWith("Primeiro torne legível"));
    EXPECT_THAT(Executa("recupera --para /nova").sSaida,
                HasSubstr("O sistema não deixou ler até o fim: CRINDEXINTEG.dat\n"));
    m_Falhas.Programa(
        {.eOperacao = EOperacaoArquivo::eAbre, .bPermanente = true, .eCausa = ECausaArquivo::eAcessoNegado});
    EXPECT_THAT(Executa("recupera --para /outra").sErro,
                HasSubstr(" Arquivo: /dados/001/DF/CRINDEXINTEG.dat"))
        << "who may not read the index is to be let, before every status is given up";
}

TEST_F(UsoEmMemoria, DiretorioQueNaoSePodeOlharNaoEDitoAusente) {
    m_Falhas.SetFiltro([](const std::string& s) { return s == "/dados"; });
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eConsulta, .bPermanente = true});
    const SExecucao execucao = Executa("--diretorio /dados busca");
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_EQ(execucao.sErro,
              "xvcr: " + XVCliente::DescreveCodigo(eAccessDenied) + " Diretório do módulo: /dados\n");
}

// What is known only when the store closes is a failure of the command too.
TEST_F(UsoEmMemoria, FalhaAoFecharABaseSaiComUm) {
    const XVUInt64 uiGravacoes = m_Falhas.GetQuantidade(EOperacaoArquivo::eGrava);
    m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava,
                       .uiNumero = uiGravacoes,
                       .bPermanente = true,
                       .eCausa = ECausaArquivo::eDiscoCheio});
    const SExecucao execucao = Executa("grava --filial 1");
    EXPECT_EQ(execucao.iSaida, 1) << "the last write of all is one of the closing";
    EXPECT_NE(execucao.sSaida, "") << "the integration was recorded";
    EXPECT_THAT(execucao.sErro, HasSubstr("xvcr: 0x"));
    EXPECT_GT(m_Falhas.GetFalhasOcorridas(), 0U);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
}

// The server died in an exchange, or right after one: what is in the store is not said to be nothing.
TEST(GravadasNaTroca, DeUmServidorQueMorreuNaoSeSabemAsGravadas) {
    for (const HRESULT hr : {S_OK, XVHResult(0x800706BEU)}) {
        CXVContexto contexto;
        XVCliente::CXVCliente cliente;
        try {
            XVMostraGravadas(contexto, cliente, hr, "nada gravado", "confira antes");
            FAIL() << "a failure is thrown";
        } catch (const CXVErro& rErro) {
            EXPECT_THAT(rErro.what(),
                        HasSubstr("quais integrações ficaram gravadas não se sabe: procure-as"));
            EXPECT_THAT(rErro.what(), testing::EndsWith(FAILED(hr) ? "; confira antes" : "\"xvcr busca\""));
        }
    }
}

}  // namespace
