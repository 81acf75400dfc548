// The general log: one line for each record, whatever the text, the month, the thread or the fault.
#include <optional>

#include "support/codes/XVCodigos.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVGanchoArquivos.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/suite/XVCenarioSuite.h"

namespace {

constexpr const char* k_pszCabecalho =
    "Data\tHora\tEmpresa\tUsuario\tSessao\tServico\tTipoRegistro\tChave\tTexto\n";

class LogGeralTeste : public CXVCenarioSuite {
  protected:
    std::string Le(const char* pszNome = "XVLogGeral_202403.log") const {
        return m_Arquivos.LeConteudo(PastaDados(pszNome)).value_or("<ausente>");
    }
};

TEST_F(LogGeralTeste, LinhaTemTodasAsColunasEOTextoNuncaQuebraALinha) {
    CXVAcessoEmpresarial acesso(&m_Dono);
    EXPECT_EQ(acesso.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, "Conversão\tde\r\nbase \n"), S_OK);
    EXPECT_EQ(acesso.GravaLog({123, 21, 2, std::string("a\0b", 3)}), S_OK);
    EXPECT_EQ(Le(), std::string(k_pszCabecalho) +
                        "15/03/2024\t09:00:00\tMATRIZ\t7\t99\t1\t0\t0\tConversão de  base \n"
                        "15/03/2024\t09:00:00\tMATRIZ\t7\t99\t2\t21\t123\ta b\n");
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 1U) << "the handle is kept between lines";
    acesso.Fecha();
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
}

TEST_F(LogGeralTeste, MesNovoAbreArquivoNovoEArquivoVazioGanhaCabecalho) {
    m_Arquivos.CriaArquivo(PastaDados("XVLogGeral_202404.log"), "");
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    CXVAcessoEmpresarial acesso(&m_Dono);
    m_Relogio.SetUTC({2024, 4, 1, 2, 59, 59});  // 31 March, local
    EXPECT_EQ(acesso.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Alteracao, "a"), S_OK);
    falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava, .eCausa = ECausaArquivo::eDiscoCheio});
    EXPECT_EQ(acesso.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Alteracao, "perdida"), eDiskFull);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U) << "the next line opens the file anew";
    m_Relogio.Avanca(1000);
    EXPECT_EQ(acesso.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Alteracao, "b"), S_OK);
    EXPECT_TRUE(Le().ends_with("31/03/2024\t23:59:59\tMATRIZ\t7\t99\t3\t0\t0\ta\n"));
    EXPECT_EQ(Le("XVLogGeral_202404.log"),
              std::string(k_pszCabecalho) + "01/04/2024\t00:00:00\tMATRIZ\t7\t99\t3\t0\t0\tb\n");
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 1U);
    m_Relogio.SetUTC({2024, 5, 1, 12, 0, 0});
    EXPECT_EQ(acesso.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Alteracao, "c"), S_OK);
    EXPECT_TRUE(Le("XVLogGeral_202405.log").ends_with("\t3\t0\t0\tc\n"));
}

// Another process comes before the new file is made, or between it and its header: then it waits.
TEST_F(LogGeralTeste, CabecalhoEscreveQuemCriouOArquivo) {
    const CXVDonoFixo dono("MATRIZ", 8, 100);
    const std::string sLinha = "15/03/2024\t09:00:00\tMATRIZ\t8\t100\t1\t0\t0\t";
    for (const bool bAntes : {true, false}) {
        const std::string sAchado = bAntes ? "<ausente>" : "";
        const HRESULT hrEsperado = bAntes ? S_OK : eSharingViolation;
        CXVAcessoEmpresarial um(&m_Dono);
        CXVAcessoEmpresarial outro(&dono);
        std::optional<HRESULT> hrOutro;
        CXVSistemaArquivosGancho arquivos(m_Arquivos);
        const CXVGuardaSistemaArquivos guarda(arquivos);
        const CXVGanchoArquivos gancho([&] {
            if (!hrOutro && Le() == sAchado)
                hrOutro = outro.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, "2");
        });
        EXPECT_EQ(um.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, "1"), S_OK);
        EXPECT_EQ(hrOutro, hrEsperado) << "the header does not come in half a second";
        EXPECT_EQ(outro.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, "3"), S_OK);
        EXPECT_EQ(Le(), k_pszCabecalho + (bAntes ? sLinha + "2\n" : "") +
                            "15/03/2024\t09:00:00\tMATRIZ\t7\t99\t1\t0\t0\t1\n" + sLinha + "3\n");
        um.Fecha();
        outro.Fecha();
        ASSERT_TRUE(m_Arquivos.Apaga(PastaDados("XVLogGeral_202403.log")).Ok());
    }
}

TEST_F(LogGeralTeste, SemDiretorioAFalhaVoltaComoCodigoENadaECriado) {
    const CXVDonoFixo dono("OUTRA");
    CXVAcessoEmpresarial acesso(&dono);
    EXPECT_EQ(acesso.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, "x"), eBadPath);
    EXPECT_TRUE(m_Arquivos.CriaDiretorio("/telvo/OUTRA/DF").Ok());
    EXPECT_EQ(acesso.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, "x"), S_OK);
    const CXVDonoFixo invalido("../MATRIZ");
    EXPECT_EQ(CXVAcessoEmpresarial(&invalido).GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, "x"),
              E_INVALIDARG);
}

TEST_F(LogGeralTeste, CadaFalhaDoDiscoVoltaComoCodigoEALinhaSeguinteEntraInteira) {
    const std::string sArquivo = PastaDados("XVLogGeral_202403.log");
    bool bHouveFalha = true;
    for (XVUInt64 uiFalha = 1; bHouveFalha; ++uiFalha) {
        ASSERT_LT(uiFalha, 50U);
        if (m_Arquivos.Existe(sArquivo) != EExistencia::eAusente) {
            ASSERT_TRUE(m_Arquivos.Apaga(sArquivo).Ok());
        }
        CXVSistemaArquivosFalhas falhas(m_Arquivos);
        const CXVGuardaSistemaArquivos guarda(falhas);
        CXVAcessoEmpresarial acesso(&m_Dono);
        falhas.Programa({.eOperacao = std::nullopt,
                         .uiNumero = uiFalha,
                         .eCausa = ECausaArquivo::eDiscoCheio,
                         .bGravaMetade = true});
        const HRESULT hr = acesso.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, "primeira");
        bHouveFalha = falhas.GetFalhasOcorridas() != 0;
        EXPECT_EQ(hr, bHouveFalha ? eDiskFull : S_OK) << uiFalha;
        falhas.Limpa();
        EXPECT_EQ(acesso.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, "segunda"), S_OK) << uiFalha;
        EXPECT_TRUE(Le().ends_with("\n15/03/2024\t09:00:00\tMATRIZ\t7\t99\t1\t0\t0\tsegunda\n")) << uiFalha;
    }
}

// One object for all threads: the thread sanitizer watches it, and a second object stands for another
// process.
TEST_F(LogGeralTeste, ThreadsDeUmObjetoEOutroProcessoNaoMisturamLinhas) {
    const std::string sTexto(300, 'x');
    CXVAcessoEmpresarial comum(&m_Dono);
    CXVAcessoEmpresarial outro(&m_Dono);
    EXPECT_EQ(outro.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, sTexto), S_OK);  // with the header
    XVEmThreads(4, [&](unsigned iThread) {
        CXVAcessoEmpresarial& rAcesso = iThread == 3 ? outro : comum;
        for (int j = 0; j < 50; ++j) {
            EXPECT_EQ(rAcesso.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, sTexto), S_OK);
            if (j % 10 == 9) rAcesso.Fecha();
        }
    });
    std::string sEsperado = k_pszCabecalho;
    for (int i = 0; i < 201; ++i)
        sEsperado += "15/03/2024\t09:00:00\tMATRIZ\t7\t99\t1\t0\t0\t" + sTexto + "\n";
    EXPECT_EQ(Le(), sEsperado);
}

}  // namespace
