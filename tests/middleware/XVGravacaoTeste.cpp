// Recording: where texts lie, what is told in the general log, several threads. What a store then answers is
// compared with a model elsewhere.

#include "tests/harness/XVEmThreads.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {

class CXVGravacaoTeste : public CXVCenarioLoja {
  protected:
    CXVGravacaoTeste() : m_pLoja(Abre()) {}

    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS Status(REG_XVDMC regDmc, XVUInt eStatus) {
        tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS reg{};
        reg.regDmc = regDmc;
        reg.eStatusIntegracao = eStatus;
        reg.regMensagemIntegracao = XVTextoPS(m_sMensagem);
        return reg;
    }
    std::size_t Registros(const char* pszArquivo, std::size_t uiTamanho) const {
        return Dados(Conteudo(pszArquivo)).size() / uiTamanho;
    }

    std::string m_sMensagem = "recebido";
    TLoja m_pLoja;
};

TEST_F(CXVGravacaoTeste, DataECarimboVemDeUmaLeituraDeUtcMesmoEmOutroDiaLocal) {
    m_Relogio.SetUTC({2024, 3, 16, 1, 30, 0});  // 22:30 of the 15th, local time
    const REG_XVDMC regDmc = Grava(*m_pLoja, CXVIntegracaoTeste());
    EXPECT_EQ(regDmc.GetDma().ToChave(), 20240316U);
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.regDataHoraInclusao.uiValor, XVDataHora(XVDma(2024, 3, 16), 1, 30));
}

TEST_F(CXVGravacaoTeste, AlteracaoTrocaTudoMenosDoisTextosIguais) {
    CXVIntegracaoTeste integracao(1, Mercos, eXVSMiddleware_Enviado);
    integracao.Textos("{\"a\":1}", "enviado", "{\"r\":1}");
    integracao.reg.ulPonteiroFilial = 9;
    REG_XVDMC regDmc = Grava(*m_pLoja, integracao);
    SetDia(15, 13);
    CXVIntegracaoTeste nova(2, OfficialBank, eXVSMiddleware_Enviado);
    nova.Textos("{\"a\":1}", "outra", "");
    nova.reg.regDataHoraAlteracaoStatus = {XVDataHora(k_uiHoje, 1)};
    ASSERT_EQ(m_pLoja->GravaIntegracao(&regDmc, nova.Ptr()), S_OK);

    const SIntegracaoLida lida = XVLe(*m_pLoja, regDmc);
    EXPECT_EQ(lida.sJSON, "{\"a\":1}");
    EXPECT_EQ(lida.sMensagem, "outra");
    EXPECT_EQ(lida.sRetorno, "") << "an update without returned JSON unlinks the earlier one";
    EXPECT_EQ(lida.reg.regDataHoraInclusao.uiValor, 0U) << "the inclusion date-time is the input's, too";
    EXPECT_EQ(lida.reg.regDataHoraAlteracaoStatus.uiValor, XVDataHora(k_uiHoje, 1)) << "status kept";
    EXPECT_EQ(lida.reg.ulPonteiroFilial, 0U);
    EXPECT_EQ(lida.reg.uiChaveIntegracaoSistemaTerceiro, 2U);
    EXPECT_EQ(lida.reg.eSistemaIntegracao, OfficialBank);
    EXPECT_EQ(Dados(Conteudo("CRINTEGMIDJSON20240315.dat")), CXVBytes().Texto("{\"a\":1}").Str());

    nova.Textos("{\"a\":1}", "outra", "{\"r\":1}");
    nova.reg.eStatusIntegracao = eXVSMiddleware_Sucesso;
    ASSERT_EQ(m_pLoja->GravaIntegracao(&regDmc, nova.Ptr()), S_OK);
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).sRetorno, "{\"r\":1}");
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.regDataHoraAlteracaoStatus.uiValor, XVDataHora(k_uiHoje, 13));
    EXPECT_EQ(Dados(Conteudo("CRINTEGMIDJSONRET20240315.dat")),
              CXVBytes().Texto("{\"r\":1}").Texto("{\"r\":1}").Str())
        << "a returned JSON of an update is always appended";
    EXPECT_EQ(Dados(Conteudo("CRINTEGMIDMENS20240315.dat")), CXVBytes().Texto("enviado").Texto("outra").Str())
        << "an equal one is not";
}

TEST_F(CXVGravacaoTeste, CadaOperacaoDeixaSuaLinhaNoLogGeralComOUsuario) {
    CXVIntegracaoTeste integracao(18446744073709551615ULL);
    REG_XVDMC regDmc = Grava(*m_pLoja, integracao);
    const TLoja pOutro = Abre(31, "MATRIZ", 5);
    ASSERT_EQ(pOutro->GravaIntegracao(&regDmc, integracao.Ptr()), S_OK);
    ASSERT_EQ(m_pLoja->GravaStatusIntegracao(Status(regDmc, eXVSMiddleware_Erro)), S_OK);
    ASSERT_EQ(pOutro->GravaStatusIntegracao(Status(regDmc, eXVSMiddleware_Cancelado)), S_OK);
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

TEST_F(CXVGravacaoTeste, IntegracoesDeUmaChaveGravadasJuntasDiferemEDeixamUmRegistroDoIndice) {
    constexpr unsigned k_uiThreads = 4;
    std::vector<TListaDmc> listas(k_uiThreads);
    XVEmThreads(k_uiThreads, [&](std::size_t i) {
        const CXVCapturaTrace captura;
        for (std::size_t j = 0; j < 25; ++j) {
            const std::string sTexto = std::to_string(i * 1000 + j);
            const REG_XVDMC regDmc =
                Grava(*m_pLoja, CXVIntegracaoTeste(7, OfficialBank).Textos(sTexto, sTexto, sTexto));
            listas[i].push_back(regDmc.uiValor);
            const SIntegracaoLida lida = XVLe(*m_pLoja, regDmc);
            EXPECT_TRUE(FAILED(lida.hr) || lida.sJSON == sTexto) << "the index may name a later one already";
        }
    });
    TListaDmc todas;
    for (const auto& lista : listas) todas.insert(todas.end(), lista.begin(), lista.end());
    std::sort(todas.begin(), todas.end());
    EXPECT_EQ(std::adjacent_find(todas.begin(), todas.end()), todas.end());
    EXPECT_EQ(Registros("CRINDEXINTEG.dat", 24), 1U) << "one bank key, one index record";
}

TEST_F(CXVGravacaoTeste, MapeamentosEDatasDeUmaChaveGravadosJuntosDeixamUmRegistro) {
    XVEmThreads(4, [&](unsigned i) {
        const TLoja pPropria = Abre(static_cast<XVUShort>(i + 1));
        for (unsigned j = 1; j < 25; ++j) {
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
    EXPECT_EQ(Registros("CRCHAVEREGTER.dat", 40), 24U);
    EXPECT_EQ(Registros("CRDTHRINTEG.dat", 32), 18U);
}

}  // namespace
