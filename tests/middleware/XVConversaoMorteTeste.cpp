// A conversion killed, or failing once, at any file operation and run again ends with the bytes of one
// that was left in peace.
#include "middleware/BaseMiddleware.h"
#include "support/codes/XVCodigos.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosMorte.h"
#include "tests/middleware/XVCenarioConversao.h"
#include "tests/middleware/XVCenarioVarredura.h"

namespace {

const unsigned k_uiSalto = XVSaltoVarredura(1, 3);

class CXVConversaoMorteTeste : public CXVCenarioConversao, public testing::WithParamInterface<unsigned> {
  protected:
    CXVConversaoMorteTeste() {
        Instala(Base(GetParam() % 2 == 1));
        m_inicio = m_Arquivos.Retrata();
        EXPECT_EQ(Converte(), S_OK);
        m_fim = RetratoSemLogs();
    }
    // Without the texts, which no step looks into.
    static TArquivos Base(bool bCabecalho) {
        TArquivos base = XVBaseDourada(GetParam(), bCabecalho);
        std::erase_if(base, [](const auto& it) {
            return it.first.starts_with("CRINTEGMIDJSON") || it.first.starts_with("CRINTEGMIDMENS");
        });
        return base;
    }
    // Dies at every operation that is counted, now and then once more on the way back; the number of them.
    XVUInt64 Varre(CXVSistemaArquivosMorte& rMorte, bool bGravaMetade) {
        XVUInt64 uiOperacao = 1;
        for (bool bMorreu = true; bMorreu && !HasFailure(); uiOperacao += k_uiSalto) {
            m_Arquivos.Restaura(m_inicio);
            rMorte.Nasce(uiOperacao, bGravaMetade);
            bMorreu = rMorte.Executa([&] { EXPECT_EQ(Converte(), S_OK); });
            if (bMorreu && uiOperacao % 5 == 0 && ControleInteiro()) {
                rMorte.Nasce(uiOperacao / 3 + 1, bGravaMetade);
                rMorte.Executa([&] { EXPECT_EQ(Converte(), S_OK); });
            }
            rMorte.Nasce(0);
            if (!ControleInteiro()) continue;
            EXPECT_FALSE(rMorte.Executa([&] { EXPECT_EQ(Converte(), S_OK); }));
            ConfereFim("operation " + std::to_string(uiOperacao));
        }
        return uiOperacao;
    }
    // A name that was half listed is no matter of the conversion: whoever lists names puts it in order.
    bool ControleInteiro() const {
        std::string s = Conteudo("XVDATABASE_FILE_CTRL.dat");
        if (s == "<ausente>") return true;
        while (s.size() >= 4) {
            const std::size_t uiNome = static_cast<unsigned char>(s[0]);
            if (4 + uiNome > s.size()) return false;
            s.erase(0, 4 + uiNome);
        }
        return s.empty();
    }
    void ConfereFim(const std::string& sQuando) {
        ConfereSemRestos();
        EXPECT_EQ(m_Arquivos.Diferenca(m_fim, RetratoSemLogs()), "") << sQuando;
    }

    const CXVSistemaArquivosMemoria::TRetrato m_vazio = m_Arquivos.Retrata();
    CXVSistemaArquivosMemoria::TRetrato m_inicio, m_fim;
};

TEST_P(CXVConversaoMorteTeste, MortaEmCadaOperacaoDeArquivo) {
    CXVSistemaArquivosMorte morte(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(morte);
    EXPECT_GT(Varre(morte, false), 20U) << "the sweep must have met the conversion";
}

// Every write leaves the first half of its bytes: copies, the journal, the version record.
TEST_P(CXVConversaoMorteTeste, MortaComCadaGravacaoPelaMetade) {
    CXVSistemaArquivosMorte morte(m_Arquivos, EContagem::eAlteracoes);
    const CXVGuardaSistemaArquivos guarda(morte);
    EXPECT_GT(Varre(morte, true), 10U);
}

// Old files without header carry no stamp. Opening the store afterwards is all that is needed.
TEST_P(CXVConversaoMorteTeste, MortaEmQualquerPontoALojaAbreSozinha) {
    m_Arquivos.Restaura(m_vazio);
    Instala(Base(false));
    m_inicio = m_Arquivos.Retrata();
    CXVSistemaArquivosMorte morte(m_Arquivos, EContagem::eAlteracoes);
    const CXVGuardaSistemaArquivos guarda(morte);
    bool bMorreu = true;
    for (XVUInt64 uiOperacao = 1; bMorreu && !HasFailure(); ++uiOperacao) {
        m_Arquivos.Restaura(m_inicio);
        morte.Nasce(uiOperacao, uiOperacao % 2 == 0);
        bMorreu = morte.Executa([&] { EXPECT_EQ(Converte(), S_OK); });
        morte.Nasce(0);
        if (!ControleInteiro()) continue;
        CBaseMiddleware loja;
        ASSERT_EQ(loja.Inicializa(&m_Dono), S_OK) << uiOperacao;
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
        EXPECT_EQ(loja.LeIntegracao({XVChaveDmc(XVDma(2023, 6, 6), 3)}, &reg, 0), S_OK) << uiOperacao;
        EXPECT_EQ(loja.Finaliza(), S_OK);
        for (const auto& [sNome, sDados] : XVDadosConvertidos(GetParam())) {
            // A day that no step rewrites gets its header when it is first opened.
            const std::string sConteudo = Conteudo(sNome);
            EXPECT_TRUE(sConteudo == sDados || Dados(sConteudo) == sDados) << uiOperacao << sNome;
        }
    }
}

TEST_P(CXVConversaoMorteTeste, FalhaUmaVezEmCadaOperacaoDeArquivo) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    XVUInt64 uiErros = 0;
    for (XVUInt64 uiOperacao = 1; !HasFailure(); uiOperacao += k_uiSalto) {
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

// A file system that from some question on does not tell whether a file exists: no guess, and the next
// conversion does it all.
TEST_P(CXVConversaoMorteTeste, PerguntasSobreArquivosSemRespostaAPartirDeCadaUma) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    falhas.SetFiltro([this](const std::string& s) {
        return s.starts_with(PastaDados("")) &&
               (s.ends_with(".dat") || s.ends_with(".tra") || s.ends_with(".srk"));
    });
    const CXVGuardaSistemaArquivos guarda(falhas);
    const std::string sControle = PastaDados("XVDATABASE_FILE_CTRL.dat");
    XVUInt64 uiPergunta = 1;
    for (; !HasFailure(); uiPergunta += k_uiSalto) {
        m_Arquivos.Restaura(m_inicio);
        falhas.Programa(
            {.eOperacao = EOperacaoArquivo::eConsulta, .uiNumero = uiPergunta, .bPermanente = true});
        const HRESULT hr = Converte();
        const bool bAtingida = falhas.GetFalhasOcorridas() != 0;
        falhas.Limpa();
        EXPECT_EQ(hr, bAtingida ? eAccessDenied : S_OK) << uiPergunta;
        if (!bAtingida) break;
        EXPECT_EQ(Converte(), S_OK) << uiPergunta;
        ConfereSemRestos();
        auto fim = RetratoSemLogs();
        fim[sControle] = m_fim[sControle];  // lists the same names, in the order in which they were met
        EXPECT_EQ(m_Arquivos.Diferenca(m_fim, fim), "") << uiPergunta;
    }
    EXPECT_GT(uiPergunta, 5U);
}

INSTANTIATE_TEST_SUITE_P(Versoes, CXVConversaoMorteTeste, testing::Range(0U, 5U));

}  // namespace
