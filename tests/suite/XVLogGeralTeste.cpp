// The general log: one line for each record, whatever the text, the month, the thread or the fault.
#include "support/codes/XVCodigos.h"
#include "tests/harness/XVGanchoArquivos.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/suite/XVCenarioSuite.h"

namespace {

constexpr const char* k_pszCabecalho =
    "Data\tHora\tEmpresa\tUsuario\tSessao\tServico\tTipoRegistro\tChave\tTexto\n";
constexpr const char* k_pszArquivo = "XVLogGeral_202403.log";

class LogGeralTeste : public CXVCenarioSuite {
  protected:
    static HRESULT Grava(CXVAcessoEmpresarial& r, const std::string& sTexto) {
        return r.GravaLogGeral(DFSLOG_Servico::eDFSLOG_Inclusao, sTexto);
    }
    // A line that Grava writes on the day of the clock.
    static std::string Linha(const std::string& sTexto, const char* pszQuem = "7\t99") {
        return std::string("15/03/2024\t09:00:00\tMATRIZ\t") + pszQuem + "\t1\t0\t0\t" + sTexto + "\n";
    }
    std::string Le(const char* pszNome = k_pszArquivo) const {
        return m_Arquivos.LeConteudo(PastaDados(pszNome)).value_or("<ausente>");
    }
    CXVAcessoEmpresarial m_Acesso{&m_Dono};
};

TEST_F(LogGeralTeste, MesNovoAbreArquivoNovoEArquivoVazioGanhaCabecalho) {
    m_Arquivos.CriaArquivo(PastaDados("XVLogGeral_202404.log"), "");
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    m_Relogio.SetUTC({2024, 4, 1, 2, 59, 59});  // 31 March, local
    EXPECT_EQ(Grava(m_Acesso, "a"), S_OK);
    falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava, .eCausa = ECausaArquivo::eDiscoCheio});
    EXPECT_EQ(Grava(m_Acesso, "perdida"), eDiskFull);
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U) << "the next line opens the file anew";
    m_Relogio.Avanca(1000);
    EXPECT_EQ(Grava(m_Acesso, "b"), S_OK);
    EXPECT_TRUE(Le().ends_with("31/03/2024\t23:59:59\tMATRIZ\t7\t99\t1\t0\t0\ta\n"));
    EXPECT_EQ(Le("XVLogGeral_202404.log"),
              std::string(k_pszCabecalho) + "01/04/2024\t00:00:00\tMATRIZ\t7\t99\t1\t0\t0\tb\n");
    m_Relogio.SetUTC({2024, 5, 1, 12, 0, 0});
    EXPECT_EQ(m_Acesso.GravaLog({123, 21, 2, std::string("a\tb\r\nc\0d ", 9)}), S_OK);
    EXPECT_EQ(Le("XVLogGeral_202405.log"),
              std::string(k_pszCabecalho) + "01/05/2024\t09:00:00\tMATRIZ\t7\t99\t2\t21\t123\ta b  c d \n")
        << "no text breaks its line";
    EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 1U) << "the handle is kept between lines";
}

// Another process comes before the new file is made, or between it and its header: then it waits.
TEST_F(LogGeralTeste, CabecalhoEscreveQuemCriouOArquivo) {
    const CXVDonoFixo dono("MATRIZ", 8, 100);
    for (const bool bAntes : {true, false}) {
        const std::string sAchado = bAntes ? "<ausente>" : "";
        CXVAcessoEmpresarial outro(&dono);
        std::optional<HRESULT> hrOutro;
        CXVSistemaArquivosGancho arquivos(m_Arquivos);
        const CXVGuardaSistemaArquivos guarda(arquivos);
        const CXVGanchoArquivos gancho([&] {
            if (!hrOutro && Le() == sAchado) hrOutro = Grava(outro, "2");
        });
        EXPECT_EQ(Grava(m_Acesso, "1"), S_OK);
        EXPECT_EQ(hrOutro, bAntes ? S_OK : eSharingViolation) << "the header does not come in half a second";
        EXPECT_EQ(Grava(outro, "3"), S_OK);
        EXPECT_EQ(Le(),
                  k_pszCabecalho + (bAntes ? Linha("2", "8\t100") : "") + Linha("1") + Linha("3", "8\t100"));
        m_Acesso.Fecha();
        outro.Fecha();
        ASSERT_TRUE(m_Arquivos.Apaga(PastaDados(k_pszArquivo)).Ok());
    }
}

TEST_F(LogGeralTeste, CadaFalhaDoDiscoVoltaComoCodigoEALinhaSeguinteEntraInteira) {
    const auto retrato = m_Arquivos.Retrata();
    bool bHouveFalha = true;
    XVUInt64 uiFalha = 1;
    for (; bHouveFalha; ++uiFalha) {
        ASSERT_LT(uiFalha, 50U);
        m_Acesso.Fecha();
        m_Arquivos.Restaura(retrato);
        CXVSistemaArquivosFalhas falhas(m_Arquivos);
        const CXVGuardaSistemaArquivos guarda(falhas);
        falhas.Programa({.eOperacao = std::nullopt,
                         .uiNumero = uiFalha,
                         .eCausa = ECausaArquivo::eDiscoCheio,
                         .bGravaMetade = true});
        const HRESULT hr = Grava(m_Acesso, "primeira");
        bHouveFalha = falhas.GetFalhasOcorridas() != 0;
        EXPECT_EQ(hr, bHouveFalha ? eDiskFull : S_OK) << uiFalha;
        falhas.Limpa();
        EXPECT_EQ(Grava(m_Acesso, "segunda"), S_OK) << uiFalha;
        EXPECT_TRUE(Le().ends_with("\n" + Linha("segunda"))) << uiFalha;
    }
    EXPECT_GT(uiFalha, 3U) << "the sweep must have met the operation";
}

}  // namespace
