// A conversion killed, or failing once, at any file operation ends with the next opening as one that was left
// in peace.
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosMorte.h"
#include "tests/middleware/XVCenarioConversao.h"
#include "tests/middleware/XVCenarioVarredura.h"

namespace {

const unsigned k_uiSalto = XVSaltoVarredura(1, 3);

// Version, and whether its files have headers, which carry the steps' stamps.
class CXVConversaoMorteTeste : public CXVCenarioConversao,
                               public testing::WithParamInterface<std::tuple<unsigned, bool>> {
  protected:
    CXVConversaoMorteTeste() {
        TArquivos base = XVBaseDourada(std::get<0>(GetParam()), std::get<1>(GetParam()));
        // Without the texts, which no step looks into.
        std::erase_if(base, [](const auto& it) {
            return it.first.starts_with("CRINTEGMIDJSON") || it.first.starts_with("CRINTEGMIDMENS");
        });
        Instala(base);
        m_inicio = m_Arquivos.Retrata();
        EXPECT_EQ(Converte(), S_OK);
        EXPECT_EQ(AbreEFecha(false), S_OK);
        m_fim = RetratoSemLogs();
    }
    // A name that was half listed is no matter of the conversion: whoever lists names puts it in order.
    bool ControleInteiro() const {
        std::string s = Conteudo(k_pszControle);
        if (s == "<ausente>") return true;
        while (s.size() >= 4) {
            const std::size_t uiNome = static_cast<unsigned char>(s[0]);
            if (4 + uiNome > s.size()) return false;
            s.erase(0, 4 + uiNome);
        }
        return s.empty();
    }
    void AbreEConfere(XVUInt64 uiOperacao) {
        SCOPED_TRACE(uiOperacao);
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
        EXPECT_EQ(AbreEFecha(false), S_OK);
        ConfereSemRestos();
        auto fim = RetratoSemLogs();
        // It lists the same names, in the order in which they were met.
        const std::string sControle = PastaDados(k_pszControle);
        EXPECT_EQ(fim[sControle].sConteudo.size(), m_fim[sControle].sConteudo.size());
        fim[sControle] = m_fim[sControle];
        EXPECT_EQ(m_Arquivos.Diferenca(m_fim, fim), "");
    }

    CXVSistemaArquivosMemoria::TRetrato m_inicio, m_fim;
};

// With bMetade every write leaves the first half of its bytes: copies, the journal, the version record. Now
// and then it dies once more on the way back.
TEST_P(CXVConversaoMorteTeste, MortaEmCadaAlteracaoALojaAbreSozinha) {
    CXVSistemaArquivosMorte morte(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(morte);
    for (const bool bMetade : {false, true}) {
        const auto converte = [&](XVUInt64 uiMorte) {
            morte.Nasce(uiMorte, bMetade);
            EXPECT_TRUE(Converte() == S_OK || morte.EstaMorto());
            SetDia(15);  // whoever dies waiting for an answer moves the clock
            return morte.EstaMorto();
        };
        XVUInt64 uiOperacao = 1;
        for (bool bMorreu = true; bMorreu && !HasFailure(); uiOperacao += k_uiSalto) {
            m_Arquivos.Restaura(m_inicio);
            bMorreu = converte(uiOperacao);
            if (bMorreu && uiOperacao % 5 == 0 && ControleInteiro()) converte(uiOperacao / 3 + 1);
            morte.Nasce(0);
            if (ControleInteiro()) AbreEConfere(uiOperacao);
        }
        EXPECT_GT(uiOperacao, 10U) << "the sweep must have met the conversion";
    }
}

// Besides single failures a file system that from some question on does not tell whether a file exists: no
// guess.
TEST_P(CXVConversaoMorteTeste, FalhaEmCadaOperacaoOuPerguntaSemResposta) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    for (const bool bPerguntas : {false, true}) {
        falhas.SetFiltro([&](const std::string& s) {
            return !bPerguntas || (s.starts_with(PastaDados("")) &&
                                   (s.ends_with(".dat") || s.ends_with(".tra") || s.ends_with(".srk")));
        });
        XVUInt64 uiErros = 0;
        bool bAtingida = true;
        for (XVUInt64 uiOperacao = 1; bAtingida && !HasFailure(); uiOperacao += k_uiSalto) {
            m_Arquivos.Restaura(m_inicio);
            SFalhaArquivo falha{.eOperacao = std::nullopt, .uiNumero = uiOperacao, .bPermanente = bPerguntas};
            if (bPerguntas) falha.eOperacao = EOperacaoArquivo::eConsulta;
            falhas.Programa(falha);
            const HRESULT hr = Converte();
            bAtingida = falhas.GetFalhasOcorridas() != 0;
            falhas.Limpa();
            if (bPerguntas) {
                EXPECT_EQ(hr, bAtingida ? eAccessDenied : S_OK) << uiOperacao;
            }
            if (FAILED(hr)) ++uiErros;
            AbreEConfere(uiOperacao);
        }
        EXPECT_GT(uiErros, bPerguntas ? 5U : 10U);
    }
}

INSTANTIATE_TEST_SUITE_P(Versoes, CXVConversaoMorteTeste,
                         testing::Combine(testing::Range(0U, 5U), testing::Bool()));

}  // namespace
