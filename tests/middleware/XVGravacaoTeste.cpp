// Recording: where texts lie, what is told in the general log, several threads. What a store then answers is
// compared with a model elsewhere.
#include <set>

#include "contract/XVDadosCR.h"
#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {

class CXVGravacaoTeste : public CXVCenarioLoja {
  protected:
    CXVGravacaoTeste() : m_pLoja(Abre()) {}

    TLoja m_pLoja;
};

TEST_F(CXVGravacaoTeste, AlteracaoSoAnexaOsTextosQueMudaramEORetorno) {
    CXVIntegracaoTeste integracao(1, Mercos, eXVSMiddleware_Enviado);
    REG_XVDMC regDmc = Grava(*m_pLoja, integracao.Textos("{\"a\":1}", "enviado", "{\"r\":1}"));
    CXVIntegracaoTeste nova(2, OfficialBank, eXVSMiddleware_Enviado);
    nova.reg.regDataHoraAlteracaoStatus = {XVDataHora(k_uiHoje, 1)};
    ASSERT_EQ(m_pLoja->GravaIntegracao(&regDmc, nova.Textos("{\"a\":1}", "outra", "").Ptr()), S_OK);
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).sRetorno, "") << "without returned JSON the earlier one is unlinked";
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.regDataHoraAlteracaoStatus.uiValor, XVDataHora(k_uiHoje, 1));
    nova.Textos("{\"a\":1}", "outra", "{\"r\":1}");
    ASSERT_EQ(m_pLoja->GravaIntegracao(&regDmc, nova.Ptr()), S_OK);
    const SIntegracaoLida lida = XVLe(*m_pLoja, regDmc);
    EXPECT_EQ(lida.sJSON + lida.sMensagem + lida.sRetorno, "{\"a\":1}outra{\"r\":1}");
    EXPECT_EQ(Dados(Conteudo("CRINTEGMIDJSON20240315.dat")), CXVBytes().Texto("{\"a\":1}").Str());
    EXPECT_EQ(Dados(Conteudo("CRINTEGMIDJSONRET20240315.dat")),
              CXVBytes().Texto("{\"r\":1}").Texto("{\"r\":1}").Str());
    EXPECT_EQ(Dados(Conteudo("CRINTEGMIDMENS20240315.dat")),
              CXVBytes().Texto("enviado").Texto("outra").Str());
}

TEST_F(CXVGravacaoTeste, CadaOperacaoDeixaSuaLinhaNoLogGeralComOUsuario) {
    CXVIntegracaoTeste integracao(18446744073709551615ULL);
    REG_XVDMC regDmc = Grava(*m_pLoja, integracao);
    const TLoja pOutro = Abre(31, "MATRIZ", 5);
    ASSERT_EQ(pOutro->GravaIntegracao(&regDmc, integracao.Ptr()), S_OK);
    CXVDadosCR_StatusIntegracaoMiddleware status{.regDmc = regDmc, .eStatusIntegracao = eXVSMiddleware_Erro};
    ASSERT_EQ(m_pLoja->GravaStatusIntegracao(status.ComoRegistro()), S_OK);
    status.eStatusIntegracao = eXVSMiddleware_Cancelado;
    ASSERT_EQ(pOutro->GravaStatusIntegracao(status.ComoRegistro()), S_OK);
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.ulPonteiroUsuarioCancelamento, 31U) << "the user of the call";
    const std::string sFim =
        " - DMCIntegracao: 20240315-1-1 - ChaveSistemaTerceiro: 18446744073709551615 - "
        "DMCMovimentoOrigem: 20230102-5-2\n";
    const std::string sLog = LogGeral();
    EXPECT_NE(sLog.find("15/03/2024\t09:00:00\tMATRIZ\t7\t99\t1\t0\t0\tGravaInternalIntegracao" + sFim),
              std::string::npos)
        << sLog;
    EXPECT_NE(sLog.find("\tMATRIZ\t31\t5\t1\t0\t0\tGravaIntegracao" + sFim), std::string::npos) << sLog;
    EXPECT_NE(sLog.find("\tMATRIZ\t7\t99\t1\t0\t0\tGravaStatusIntegracao" + sFim), std::string::npos) << sLog;
}

TEST_F(CXVGravacaoTeste, LogQueNaoSeGravaNaoDesfazOQueFoiGravado) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    falhas.SetFiltro([](const std::string& s) { return s.ends_with(".log"); });
    const CXVGuardaSistemaArquivos guarda(falhas);
    falhas.Programa({.bPermanente = true, .eCausa = ECausaArquivo::eDiscoCheio});
    const REG_XVDMC regDmc = Grava(*m_pLoja, CXVIntegracaoTeste(1));
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).hr, S_OK);
    EXPECT_TRUE(m_Captura.Contem("GetAcessoEmpresarial()->GravaLogGeral(eServico, sTexto)"));
}

// The error log names who asked for the write that failed, and not who wrote to the same file before.
TEST_F(CXVGravacaoTeste, FalhaNomeiaSoQuemAPediu) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    falhas.SetFiltro([](const std::string& s) { return s.ends_with("CRINDEXINTEG.dat"); });
    const CXVGuardaSistemaArquivos guarda(falhas);
    m_pLoja = nullptr;
    m_pLoja = Abre();  // through the file system that fails
    const REG_XVDMC regDmc = Grava(*m_pLoja, CXVIntegracaoTeste(1));
    const CXVCapturaTrace captura;
    falhas.Programa({.bPermanente = true, .eCausa = ECausaArquivo::eDiscoCheio});
    const CXVDadosCR_StatusIntegracaoMiddleware status{.regDmc = regDmc,
                                                       .eStatusIntegracao = eXVSMiddleware_Erro};
    EXPECT_EQ(m_pLoja->GravaStatusIntegracao(status.ComoRegistro()), eDiskFull);
    falhas.Limpa();
    std::set<std::string> quem;
    for (const SFalhaCapturada& r : captura.GetFalhas()) quem.insert(r.sFuncao + ": " + r.sExpressao);
    const std::string sArquivo = "CXVFile<struct REG_CR_INDEX_INTEGRACAO_V1>::";
    EXPECT_EQ(quem,
              (std::set<std::string>{"CBaseMiddleware::GravaStatusIntegracao: "
                                     "m_pDataBase->m_IndexIntegracao.Grava(uiPosicaoIndex, regIndex)",
                                     sArquivo + "GravaColecao: GravaRegistros(uiPosicao, aRegistros)",
                                     sArquivo + "GravaRegistros: CatchGravacao(pEx)",
                                     "CXVFileBase::CatchGravacao: eDiskFull", "XVArquivoRecusado::Anota: "}));
}

TEST_F(CXVGravacaoTeste, RegistrosDeUmaChaveGravadosJuntosFicamUm) {
    constexpr unsigned k_uiThreads = 4;
    std::vector<TListaDmc> listas(k_uiThreads);
    XVEmThreads(k_uiThreads, [&](unsigned i) {
        const CXVCapturaTrace captura;
        const TLoja pPropria = Abre(static_cast<XVUShort>(i + 1));
        for (unsigned j = 1; j < 25; ++j) {
            const std::string s = std::to_string(i * 1000 + j);
            const REG_XVDMC regDmc = Grava(*pPropria, CXVIntegracaoTeste(7, OfficialBank).Textos(s, s, s));
            listas[i].push_back(regDmc.uiValor);
            const SIntegracaoLida lida = XVLe(*pPropria, regDmc);
            EXPECT_TRUE(FAILED(lida.hr) || lida.sJSON == s) << "the index may name a later one already";
            const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS chave{
                i * 100 + j + 1, {XVChaveDmc(0, j, 2)}, 1, 6, Mercos, {}};
            EXPECT_EQ(i % 2 == 0 ? pPropria->GravaChaveRegistroTelvoParaTerceiro(chave)
                                 : pPropria->GravaChaveRegistroTelvoParaTerceiroPendente(chave),
                      S_OK);
            EXPECT_EQ(
                pPropria->GravaDataHoraIntegracaoTerceiro({{XVDataHora(k_uiHoje, i)}, j % 18, Mercos, 1, {}}),
                S_OK);
        }
    });
    std::set<XVUInt64> todas;
    for (const auto& lista : listas) todas.insert(lista.begin(), lista.end());
    EXPECT_EQ(todas.size(), 24 * k_uiThreads) << "every integration has a key of its own";
    const auto registros = [&](const char* pszArquivo, std::size_t uiTamanho) {
        return Dados(Conteudo(pszArquivo)).size() / uiTamanho;
    };
    EXPECT_EQ(registros("CRINDEXINTEG.dat", 24), 1U) << "one bank key, one index record";
    EXPECT_EQ(registros("CRCHAVEREGTER.dat", 40), 24U);
    EXPECT_EQ(registros("CRDTHRINTEG.dat", 32), 18U);
}

}  // namespace
