// What must hold before anything of an operation is prepared: a free position, texts that are there, a clock
// that can be recorded. A refused operation writes nothing at all and names the file.
#include "support/trace/XVArquivoRecusado.h"
#include "tests/harness/XVTextoNoLog.h"
#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/XVOperacoesLoja.h"

namespace {

constexpr auto k_hrInconsistente = E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS;

class GravacaoRecusada : public CXVCenarioLoja {
  protected:
    GravacaoRecusada() : m_pLoja(Abre()) {
        EXPECT_TRUE(XVPovoaLoja(*m_pLoja, [&](unsigned uiDia) { SetDia(uiDia); }));
    }
    HRESULT Opera(const std::string& sNome) { return XVOperacaoLoja(sNome).fnExecuta(*m_pLoja); }
    // The whole tree stays, the general log in it. Apart: the journal, and the list of names, which grows
    // when files of a day are opened.
    CXVSistemaArquivosMemoria::TRetrato Retrato() const {
        auto retrato = m_Arquivos.Retrata();
        retrato.erase(PastaDados("XVDATABASE_ABERTA.srk"));
        retrato.erase(PastaDados("XVDATABASE_FILE_CTRL.dat"));
        return retrato;
    }
    void EsperaRecusa(HRESULT hr, const std::string& sNome, const std::string& sMensagem,
                      const std::string& sOperacao) {
        const auto antes = Retrato();
        const CXVCapturaTrace captura;
        const CXVArquivosRecusados recusados;
        EXPECT_EQ(Opera(sOperacao), hr) << sOperacao;
        EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, Retrato()), "");
        EXPECT_EQ(recusados.GetPath(hr), sNome.empty() ? "" : PastaDados(sNome));
        EXPECT_TRUE(XVTextoNoLog(captura, sMensagem)) << sMensagem;
    }
    // The store closed, the end of a file cut off and its header made to agree, and the store opened again.
    void Encurta(const std::string& sNome, std::size_t uiBytes) {
        m_pLoja.reset();
        std::string sDados = Dados(Conteudo(sNome));
        sDados.resize(sDados.size() - uiBytes);
        m_Arquivos.CriaArquivo(PastaDados(sNome), XVArquivoDoTeste({sNome}, sDados));
        m_pLoja = Abre();
        ASSERT_NE(m_pLoja, nullptr);
    }

    TLoja m_pLoja;
    const REG_XVDMC m_regDmc{XVChaveDmc(k_uiHoje, 1)};
};

// The day's file lost a record that the index knows: the key must not come to name another one.
TEST_F(GravacaoRecusada, PosicaoQueOIndiceJaConhece) {
    const std::string sDia = "CRINTEGMID20240315.dat";
    Encurta(sDia, 88);
    EsperaRecusa(k_hrInconsistente, sDia, "A posição 3 já é a do registro 6 de CRINDEXINTEG.dat",
                 "PosteriorDoDia");
    EXPECT_EQ(XVLe(*m_pLoja, m_regDmc).hr, S_OK);
    SetDia(16);
    EXPECT_EQ(Opera("PrimeiraDoDia"), S_OK) << "another day";
}

// A text file that lost its last text: a new one would be read under the record that points there.
TEST_F(GravacaoRecusada, RegistroQueApontaTextoQueNaoHa) {
    ASSERT_EQ(Opera("StatusPorDmcSemRetorno"), S_OK);  // one message more than other texts
    ASSERT_EQ(Opera("AlteracaoComRetorno"), S_OK);     // the last texts are not those of the last record
    ASSERT_EQ(m_pLoja->Finaliza(), S_OK);
    const auto inteira = m_Arquivos.Retrata();
    const char* const apszOperacoes[] = {"PosteriorDoDia", "AlteracaoComRetorno", "StatusPorDmcComRetorno",
                                         "AlteracaoSemRetorno", "StatusPorDmcSemRetorno"};
    const struct {
        const char* pszArquivo;
        unsigned uiTextos;
        std::size_t uiTexto;  // bytes of the last text with its length
        bool abRecusa[5];     // an operation that writes none of these texts takes place
    } aCasos[] = {{"CRINTEGMIDJSON20240315.dat", 4, 621, {true, true, false, true, false}},
                  {"CRINTEGMIDMENS20240315.dat", 5, 12, {true, true, true, true, true}},
                  {"CRINTEGMIDJSONRET20240315.dat", 4, 22, {true, true, true, false, false}}};
    for (const auto& [pszArquivo, uiTextos, uiTexto, abRecusa] : aCasos) {
        SCOPED_TRACE(pszArquivo);
        m_Arquivos.Restaura(inteira);
        Encurta(pszArquivo, uiTexto);
        for (std::size_t i = 0; i < std::size(apszOperacoes); ++i)
            if (abRecusa[i])
                EsperaRecusa(k_hrInconsistente, pszArquivo,
                             "Um registro de CRINTEGMID20240315.dat aponta o texto " +
                                 std::to_string(uiTextos) +
                                 "; textos no arquivo: " + std::to_string(uiTextos - 1),
                             apszOperacoes[i]);
            else
                EXPECT_EQ(Opera(apszOperacoes[i]), S_OK) << apszOperacoes[i];
        ASSERT_EQ(m_pLoja->Finaliza(), S_OK);
    }
}

TEST_F(GravacaoRecusada, RelogioQueNaoSePodeGravar) {
    for (const XVUShort usAno : {XVUShort{1847}, XVUShort{2360}}) {
        SCOPED_TRACE(usAno);
        m_Relogio.SetUTC({usAno, 12, 31, 12, 0, 0});
        EsperaRecusa(static_cast<HRESULT>(0x80070057), "", "", "PosteriorDoDia");
        EXPECT_EQ(XVLe(*m_pLoja, m_regDmc).hr, S_OK);
    }
    for (const XVUShort usAno : {XVUShort{1848}, XVUShort{2359}}) {
        m_Relogio.SetUTC({usAno, 12, 31, 12, 0, 0});
        EXPECT_EQ(Opera("PosteriorDoDia"), S_OK) << usAno;
    }
}

}  // namespace
