// What must hold before anything of an operation is prepared: a free position, texts that are there, a clock
// that can be recorded. A refused operation writes nothing at all and names the file.
#include <functional>

#include "contract/XVDadosCR.h"
#include "support/trace/XVArquivoRecusado.h"
#include "tests/harness/XVTextoNoLog.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {

constexpr auto k_hrInconsistente = E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS;

class GravacaoRecusada : public CXVCenarioLoja {
  protected:
    GravacaoRecusada() {
        m_pLoja = Abre();
        m_regDmc = Grava(*m_pLoja, Integracao(1));
        Grava(*m_pLoja, Integracao(2));
    }
    static CXVIntegracaoTeste Integracao(XVUInt64 uiChave) {
        return CXVIntegracaoTeste(uiChave, Mercos, eXVSMiddleware_Enviado)
            .Textos("{\"j\":1}", "mensagem", "{\"r\":1}");
    }
    HRESULT Status(const std::string& sRetorno) {
        const CXVDadosCR_StatusIntegracaoMiddleware status{.regDmc = m_regDmc,
                                                           .sMensagemIntegracao = "status",
                                                           .sJSONRetornoIntegracao = sRetorno,
                                                           .eStatusIntegracao = eXVSMiddleware_Sucesso,
                                                           .eSistemaIntegracao = Mercos};
        return m_pLoja->GravaStatusIntegracao(status.ComoRegistro());
    }
    HRESULT Inclui() {
        REG_XVDMC regNova;
        return m_pLoja->GravaIntegracao(&regNova, Integracao(3).Ptr());
    }
    HRESULT Altera(const std::string& sRetorno) {
        CXVIntegracaoTeste nova(4, Mercos, eXVSMiddleware_Enviado);
        nova.Textos("{\"outro\":1}", "outra", sRetorno);
        REG_XVDMC regDmc = m_regDmc;
        return m_pLoja->GravaIntegracao(&regDmc, nova.Ptr());
    }
    // The whole tree stays, the general log in it. Apart: the journal, and the list of names, which grows
    // when files of a day are opened.
    CXVSistemaArquivosMemoria::TRetrato Retrato() const {
        auto retrato = m_Arquivos.Retrata();
        retrato.erase(PastaDados("XVDATABASE_ABERTA.srk"));
        retrato.erase(PastaDados("XVDATABASE_FILE_CTRL.dat"));
        return retrato;
    }
    void EsperaRecusa(HRESULT hr, const std::string& sNome, const std::string& sMensagem,
                      const std::function<HRESULT()>& fnOperacao) {
        const auto antes = Retrato();
        const CXVCapturaTrace captura;
        const CXVArquivosRecusados recusados;
        EXPECT_EQ(fnOperacao(), hr);
        EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, Retrato()), "");
        EXPECT_EQ(recusados.GetPath(hr), sNome.empty() ? "" : PastaDados(sNome));
        EXPECT_TRUE(XVTextoNoLog(captura, sMensagem)) << sMensagem;
    }
    // The store closed, the end of a file cut off and its header made to agree, and the store opened again.
    void Encurta(const std::string& sNome, std::size_t uiBytes) {
        m_pLoja.reset();
        std::string s = Conteudo(sNome);
        s.resize(s.size() - uiBytes);
        s.replace(72, 8, CXVBytes().U64(s.size() - 240).Str());
        s.replace(232, 8, CXVBytes().U64(CrcBitABit(s.substr(24, 208))).Str());
        m_Arquivos.CriaArquivo(PastaDados(sNome), s);
        m_pLoja = Abre();
        ASSERT_NE(m_pLoja, nullptr);
    }

    TLoja m_pLoja;
    REG_XVDMC m_regDmc;
};

// The day's file lost a record that the index knows: the key must not come to name another one.
TEST_F(GravacaoRecusada, PosicaoQueOIndiceJaConhece) {
    const std::string sDia = "CRINTEGMID20240315.dat";
    Encurta(sDia, 88);
    EsperaRecusa(k_hrInconsistente, sDia, "A posição 2 já é a do registro 2 de CRINDEXINTEG.dat",
                 [&] { return Inclui(); });
    EXPECT_EQ(XVLe(*m_pLoja, m_regDmc).hr, S_OK);
    SetDia(16);
    EXPECT_EQ(Inclui(), S_OK) << "another day";
}

// A text file that lost its last text: a new one would be read under the record that points there.
TEST_F(GravacaoRecusada, RegistroQueApontaTextoQueNaoHa) {
    ASSERT_EQ(Altera("{\"r\":9}"), S_OK);  // the last texts are not those of the last record
    ASSERT_EQ(m_pLoja->Finaliza(), S_OK);
    const auto inteira = m_Arquivos.Retrata();
    const std::function<HRESULT()> aOperacoes[] = {
        [&] { return Inclui(); }, [&] { return Altera("{\"r\":2}"); }, [&] { return Status("{\"r\":2}"); },
        [&] { return Altera(""); }, [&] { return Status(""); }};
    const struct {
        const char* pszArquivo;
        std::size_t uiTexto;  // bytes of the last text with its length
        bool abRecusa[5];     // an operation that writes none of these texts takes place
    } aCasos[] = {{"CRINTEGMIDJSON20240315.dat", 15, {true, true, false, true, false}},
                  {"CRINTEGMIDMENS20240315.dat", 9, {true, true, true, true, true}},
                  {"CRINTEGMIDJSONRET20240315.dat", 11, {true, true, true, false, false}}};
    for (const auto& [pszArquivo, uiTexto, abRecusa] : aCasos) {
        m_Arquivos.Restaura(inteira);
        Encurta(pszArquivo, uiTexto);
        for (std::size_t i = 0; i < std::size(aOperacoes); ++i) {
            SCOPED_TRACE(std::string(pszArquivo) + ", operation " + std::to_string(i));
            if (abRecusa[i])
                EsperaRecusa(k_hrInconsistente, pszArquivo,
                             "Um registro de CRINTEGMID20240315.dat aponta o texto 3; textos no arquivo: 2",
                             aOperacoes[i]);
            else
                EXPECT_EQ(aOperacoes[i](), S_OK);
        }
        ASSERT_EQ(m_pLoja->Finaliza(), S_OK);
    }
}

TEST_F(GravacaoRecusada, RelogioQueNaoSePodeGravar) {
    for (const XVUShort usAno : {XVUShort{1847}, XVUShort{2360}}) {
        SCOPED_TRACE(usAno);
        m_Relogio.SetUTC({usAno, 12, 31, 12, 0, 0});
        EsperaRecusa(static_cast<HRESULT>(0x80070057), "", "", [&] { return Inclui(); });
        EXPECT_EQ(XVLe(*m_pLoja, m_regDmc).hr, S_OK);
    }
    for (const XVUShort usAno : {XVUShort{1848}, XVUShort{2359}}) {
        m_Relogio.SetUTC({usAno, 12, 31, 12, 0, 0});
        EXPECT_EQ(Inclui(), S_OK) << usAno;
    }
}

}  // namespace
