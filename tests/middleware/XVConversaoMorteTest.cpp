// A conversion killed, or failing once, at any file operation and run again ends with the bytes of one
// that was left in peace.
#include "support/XVCodigos.h"
#include "tests/apoio/XVSistemaArquivosFalhas.h"
#include "tests/apoio/XVSistemaArquivosMorte.h"
#include "tests/middleware/XVCenarioConversao.h"

namespace {

class CXVConversaoMorteTest : public CXVCenarioConversao, public testing::WithParamInterface<unsigned> {
  protected:
    CXVConversaoMorteTest() {
        Instala(CXVFabricaBases(GetParam(), GetParam() % 2 == 1).Cria(2, 3));
        m_inicio = m_Arquivos.Retrata();
        EXPECT_EQ(Converte(), S_OK);
        m_fim = RetratoSemLogs();
    }
    void ConfereFim(const std::string& sQuando) {
        ConfereSemRestos();
        EXPECT_EQ(m_Arquivos.Diferenca(m_fim, RetratoSemLogs()), "") << sQuando;
    }

    CXVSistemaArquivosMemoria::TRetrato m_inicio, m_fim;
};

TEST_P(CXVConversaoMorteTest, KilledAtEveryFileOperation) {
    CXVSistemaArquivosMorte morte(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(morte);
    XVUInt64 uiOperacao = 1;
    for (bool bMorreu = true; bMorreu && !HasFailure(); ++uiOperacao) {
        m_Arquivos.Restaura(m_inicio);
        morte.Nasce(uiOperacao);
        bMorreu = morte.Executa([&] { EXPECT_EQ(Converte(), S_OK); });
        if (bMorreu && uiOperacao % 5 == 0) {  // killed once more on the way back
            morte.Nasce(uiOperacao / 3 + 1);
            morte.Executa([&] { EXPECT_EQ(Converte(), S_OK); });
        }
        morte.Nasce(0);
        EXPECT_FALSE(morte.Executa([&] { EXPECT_EQ(Converte(), S_OK); }));
        ConfereFim("operation " + std::to_string(uiOperacao));
    }
    EXPECT_GT(uiOperacao, 20U) << "the sweep must have met the conversion";
}

TEST_P(CXVConversaoMorteTest, FailingOnceAtEveryFileOperation) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    XVUInt64 uiErros = 0;
    for (XVUInt64 uiOperacao = 1; !HasFailure(); ++uiOperacao) {
        m_Arquivos.Restaura(m_inicio);
        falhas.Programa({.eOperacao = std::nullopt, .uiNumero = uiOperacao});
        XVUShort usAntes = 0;
        const HRESULT hr = Converte();
        const bool bAtingida = falhas.GetFalhasOcorridas() != 0;
        falhas.Limpa();
        if (!bAtingida) break;
        if (FAILED(hr)) ++uiErros;
        CXVConversaoMiddleware conversao(nullptr);
        ASSERT_EQ(conversao.Inicializa(&m_Dono), S_OK);
        ASSERT_EQ(conversao.LeVersao(&usAntes), S_OK);
        EXPECT_GE(usAntes, GetParam());
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U) << uiOperacao;
        EXPECT_EQ(Converte(), S_OK) << uiOperacao;
        ConfereFim("operation " + std::to_string(uiOperacao));
    }
    EXPECT_GT(uiErros, 10U);
}

// A file system that does not tell once whether a file exists: no guess, and the next conversion does it all.
TEST_P(CXVConversaoMorteTest, CadaPerguntaSobreUmArquivoSemRespostaUmaVez) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    falhas.SetFiltro([this](const std::string& s) { return s.starts_with(PastaDados("")); });
    const CXVGuardaSistemaArquivos guarda(falhas);
    XVUInt64 uiPergunta = 1;
    for (; !HasFailure(); ++uiPergunta) {
        m_Arquivos.Restaura(m_inicio);
        falhas.Programa({.eOperacao = EOperacaoArquivo::eConsulta, .uiNumero = uiPergunta});
        const HRESULT hr = Converte();
        const bool bAtingida = falhas.GetFalhasOcorridas() != 0;
        falhas.Limpa();
        EXPECT_EQ(hr, bAtingida ? eAccessDenied : S_OK) << uiPergunta;
        if (!bAtingida) break;
        EXPECT_EQ(Converte(), S_OK) << uiPergunta;
        ConfereFim("question " + std::to_string(uiPergunta));
    }
    EXPECT_GT(uiPergunta, 5U);
}

INSTANTIATE_TEST_SUITE_P(Versoes, CXVConversaoMorteTest, testing::Range(0U, 5U));

}  // namespace
