// Recording, updating, statuses.
#include <thread>

#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioLoja.h"

namespace {

class CXVGravacaoTest : public CXVCenarioLoja {
  protected:
    CXVGravacaoTest() : m_pLoja(Abre()) {}

    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS Status(REG_XVDMC regDmc, XVUInt64 uiChave, XVUInt eSistema,
                                                    XVUInt eStatus) {
        tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS reg{};
        reg.regDmc = regDmc;
        reg.uiChaveIntegracaoSistemaTerceiro = uiChave;
        reg.eSistemaIntegracao = eSistema;
        reg.eStatusIntegracao = eStatus;
        reg.regMensagemIntegracao = XVTextoPS(m_sMensagem);
        return reg;
    }
    std::size_t QuantidadeIndex() const { return Dados(Conteudo("CRINDEXINTEG.dat")).size() / 24; }

    std::string m_sMensagem = "recebido";
    TLoja m_pLoja;
};

TEST_F(CXVGravacaoTest, NewOnesOfADayTakeAscendingPositionsAndTheGivenInclusionStays) {
    CXVIntegracaoTeste integracao;
    integracao.reg.regDataHoraInclusao = {XVDataHora(XVDma(2020, 1, 1), 1)};
    EXPECT_EQ(Grava(*m_pLoja, integracao).uiValor, XVChaveDmc(k_uiHoje, 1));
    REG_XVDMC regDmc;
    ASSERT_EQ(m_pLoja->GravaInternalIntegracao(&regDmc, CXVIntegracaoTeste().Ptr()), S_OK);
    EXPECT_EQ(regDmc.uiValor, XVChaveDmc(k_uiHoje, 2));
    SetDia(16);
    const REG_XVDMC regAmanha = Grava(*m_pLoja, CXVIntegracaoTeste());
    EXPECT_EQ(regAmanha.uiValor, XVChaveDmc(XVDma(2024, 3, 16), 1)) << "each date has its own files";
    EXPECT_EQ(XVLe(*m_pLoja, {XVChaveDmc(k_uiHoje, 1)}).reg.regDataHoraInclusao.uiValor,
              XVDataHora(XVDma(2020, 1, 1), 1));
    EXPECT_EQ(XVLe(*m_pLoja, regAmanha).reg.regDataHoraInclusao.uiValor, XVDataHora(XVDma(2024, 3, 16), 12));
}

TEST_F(CXVGravacaoTest, DateAndStampComeFromOneReadingOfUtcEvenWhenLocalTimeIsAnotherDay) {
    m_Relogio.SetUTC({2024, 3, 16, 1, 30, 0});  // 22:30 of the 15th, local time
    const REG_XVDMC regDmc = Grava(*m_pLoja, CXVIntegracaoTeste());
    EXPECT_EQ(regDmc.GetDma().ToChave(), 20240316U);
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.regDataHoraInclusao.uiValor, XVDataHora(XVDma(2024, 3, 16), 1, 30));
}

TEST_F(CXVGravacaoTest, BankKeyIsTakenOverByTheNewestAndOnlyThere) {
    const REG_XVDMC regPrimeira = Grava(*m_pLoja, CXVIntegracaoTeste(500, OfficialBank));
    const REG_XVDMC regSegunda = Grava(*m_pLoja, CXVIntegracaoTeste(500, OfficialBank));
    EXPECT_EQ(QuantidadeIndex(), 1U);
    EXPECT_EQ(XVLe(*m_pLoja, regPrimeira).hr, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_EQ(XVLe(*m_pLoja, regSegunda).hr, S_OK);
    Grava(*m_pLoja, CXVIntegracaoTeste(0, OfficialBank));
    Grava(*m_pLoja, CXVIntegracaoTeste(0, OfficialBank));
    EXPECT_EQ(QuantidadeIndex(), 3U) << "without a key there is nothing to take over";
    const REG_XVDMC regPedido = Grava(*m_pLoja, CXVIntegracaoTeste(500, Mercos));
    const REG_XVDMC regProduto = Grava(*m_pLoja, CXVIntegracaoTeste(500, Mercos));
    EXPECT_EQ(QuantidadeIndex(), 5U) << "other systems number orders and products apart";
    EXPECT_EQ(XVLe(*m_pLoja, regPedido).hr, S_OK);
    ASSERT_EQ(m_pLoja->GravaStatusIntegracao(Status({}, 500, Mercos, eXVSMiddleware_Sucesso)), S_OK);
    EXPECT_EQ(XVLe(*m_pLoja, regPedido).reg.eStatusIntegracao, eXVSMiddleware_Sucesso)
        << "the lowest position";
    EXPECT_EQ(XVLe(*m_pLoja, regProduto).reg.eStatusIntegracao, eXVSMiddleware_Pendente);
}

TEST_F(CXVGravacaoTest, UpdateReplacesEverythingButTwoTextsThatKeepTheirPlaceWhenEqual) {
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
    EXPECT_EQ(Dados(Conteudo("CRINTEGMIDMENS20240315.dat")),
              CXVBytes().Texto("enviado").Texto("outra").Str());

    nova.Textos("{\"a\":1}", "outra", "{\"r\":1}");
    nova.reg.eStatusIntegracao = eXVSMiddleware_Sucesso;
    ASSERT_EQ(m_pLoja->GravaIntegracao(&regDmc, nova.Ptr()), S_OK);
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).sRetorno, "{\"r\":1}");
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).reg.regDataHoraAlteracaoStatus.uiValor, XVDataHora(k_uiHoje, 13));
    EXPECT_EQ(Dados(Conteudo("CRINTEGMIDJSONRET20240315.dat")),
              CXVBytes().Texto("{\"r\":1}").Texto("{\"r\":1}").Str())
        << "a returned JSON of an update is always appended";
}

TEST_F(CXVGravacaoTest, UpdateWithoutExternalKeyOnlyWhilePendingInErrorOrCancelled) {
    REG_XVDMC regDmc = Grava(*m_pLoja, CXVIntegracaoTeste(1, Mercos, eXVSMiddleware_Enviado));
    const auto retrato = RetratoSemLogs();
    for (const XVUInt eStatus :
         {eXVSMiddleware_NenhumStatus, eXVSMiddleware_Enviado, eXVSMiddleware_Sucesso}) {
        EXPECT_EQ(m_pLoja->GravaIntegracao(&regDmc, CXVIntegracaoTeste(0, Mercos, eStatus).Ptr()),
                  E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA);
    }
    EXPECT_EQ(m_Arquivos.Diferenca(retrato, RetratoSemLogs()), "");
    for (const XVUInt eStatus : {eXVSMiddleware_Pendente, eXVSMiddleware_Erro, eXVSMiddleware_Cancelado})
        EXPECT_EQ(m_pLoja->GravaIntegracao(&regDmc, CXVIntegracaoTeste(0, Mercos, eStatus).Ptr()), S_OK);
    REG_XVDMC regAusente{XVChaveDmc(k_uiHoje, 2)};
    EXPECT_EQ(m_pLoja->GravaIntegracao(&regAusente, CXVIntegracaoTeste(1).Ptr()),
              E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
}

TEST_F(CXVGravacaoTest, StatusByDmcAndByKeyStampsNowAndNamesTheCanceller) {
    CXVIntegracaoTeste integracao(42, Mercos, eXVSMiddleware_Enviado);
    const REG_XVDMC regDmc = Grava(*m_pLoja, integracao.Textos("{}", "m", "{\"r\":0}"));
    SetDia(17, 8);
    ASSERT_EQ(m_pLoja->GravaStatusIntegracao(Status(regDmc, 0, 0, eXVSMiddleware_Enviado)), S_OK);
    SIntegracaoLida lida = XVLe(*m_pLoja, regDmc);
    EXPECT_EQ(lida.reg.regDataHoraAlteracaoStatus.uiValor, XVDataHora(XVDma(2024, 3, 17), 8)) << "always now";
    EXPECT_EQ(lida.sMensagem, "recebido");
    EXPECT_EQ(lida.sRetorno, "{\"r\":0}") << "no returned JSON given: the old one stays";
    EXPECT_EQ(lida.reg.ulPonteiroUsuarioCancelamento, 0U);
    EXPECT_EQ(lida.reg.uiChaveIntegracaoSistemaTerceiro, 42U) << "a status changes neither key nor system";

    const std::string sRetorno = "{\"r\":2}";
    auto status = Status({}, 42, Mercos, eXVSMiddleware_Cancelado);
    status.regJSONRetornoIntegracao = XVTextoPS(sRetorno);
    const TLoja pOutro = Abre(31, "MATRIZ", 5);
    ASSERT_EQ(pOutro->GravaStatusIntegracao(status), S_OK);
    lida = XVLe(*m_pLoja, regDmc);
    EXPECT_EQ(lida.reg.eStatusIntegracao, eXVSMiddleware_Cancelado);
    EXPECT_EQ(lida.reg.ulPonteiroUsuarioCancelamento, 31U) << "the user of the call";
    EXPECT_EQ(lida.sRetorno, sRetorno);
}

TEST_F(CXVGravacaoTest, StatusThatNamesNothingIsRefusedByItsOwnCode) {
    using enum XVSMiddleware_StatusIntegracao;
    const REG_XVDMC regFora{XVChaveDmc(k_uiHoje, 7)};
    EXPECT_EQ(m_pLoja->GravaStatusIntegracao(Status(regFora, 0, 0, eXVSMiddleware_Erro)),
              E_XVCR_TENTATIVA_LER_POSICAO_ZERO)
        << "empty index";
    Grava(*m_pLoja, CXVIntegracaoTeste(42));
    const auto retrato = RetratoSemLogs();
    EXPECT_EQ(m_pLoja->GravaStatusIntegracao(Status(regFora, 0, 0, eXVSMiddleware_Erro)),
              E_XVCR_TENTATIVA_LER_POSICAO_ZERO);
    EXPECT_TRUE(m_Captura.Contem("m_pDataBase->m_IndexIntegracao.Le(uiPosicaoIndex, pregIndex)"));
    EXPECT_EQ(m_pLoja->GravaStatusIntegracao(Status({}, 0, Mercos, eXVSMiddleware_Erro)),
              E_XVCR_INDEXACAO_CHAVE_INTEGRACAO_SISTEMA_TERCEIRO_ZERADA);
    EXPECT_EQ(m_pLoja->GravaStatusIntegracao(Status({}, 42, Tipo_Nenhum, eXVSMiddleware_Erro)),
              E_XVCR_INDEXACAO_CHAVE_INTEGRACAO_SISTEMA_TERCEIRO_ZERADA);
    EXPECT_EQ(m_pLoja->GravaStatusIntegracao(Status({}, 42, OfficialBank, eXVSMiddleware_Erro)),
              E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_EQ(m_pLoja->GravaStatusIntegracao(Status({}, 43, Mercos, eXVSMiddleware_Erro)),
              E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_EQ(m_Arquivos.Diferenca(retrato, RetratoSemLogs()), "");
}

TEST_F(CXVGravacaoTest, EveryOperationLeavesItsLineInTheGeneralLogWithTheCallersUser) {
    CXVIntegracaoTeste integracao(18446744073709551615ULL);
    REG_XVDMC regDmc = Grava(*m_pLoja, integracao);
    const TLoja pOutro = Abre(31, "MATRIZ", 5);
    ASSERT_EQ(pOutro->GravaIntegracao(&regDmc, integracao.Ptr()), S_OK);
    ASSERT_EQ(m_pLoja->GravaStatusIntegracao(Status(regDmc, 0, 0, eXVSMiddleware_Erro)), S_OK);
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

TEST_F(CXVGravacaoTest, LogThatCannotBeWrittenDoesNotUndoWhatWasRecorded) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    falhas.SetFiltro([](const std::string& s) { return s.ends_with(".log"); });
    const CXVGuardaSistemaArquivos guarda(falhas);
    falhas.Programa({.bPermanente = true, .eCausa = ECausaArquivo::eDiscoCheio});
    const REG_XVDMC regDmc = Grava(*m_pLoja, CXVIntegracaoTeste(1));
    EXPECT_EQ(XVLe(*m_pLoja, regDmc).hr, S_OK);
    EXPECT_TRUE(m_Captura.Contem("GetAcessoEmpresarial()->GravaLogGeral(eServico, sTexto)"));
}

TEST_F(CXVGravacaoTest, FullDiskIsToldNothingIsLostAndTheNextRecordingWorks) {
    Grava(*m_pLoja, CXVIntegracaoTeste(1).Textos("{}", "m", ""));
    const std::string sIntegracoes = Conteudo("CRINTEGMID20240315.dat");
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    m_Arquivos.LimitaEspaco(0);
    REG_XVDMC regDmc;
    EXPECT_EQ(m_pLoja->GravaIntegracao(&regDmc, CXVIntegracaoTeste(2).Textos("{\"grande\":1}", "", "").Ptr()),
              eDiskFull);
    EXPECT_TRUE(regDmc.EhNulo());
    ASSERT_FALSE(m_Captura.GetFalhas().empty());
    EXPECT_TRUE(m_Captura.Contem(
        "m_pDataBase->m_JSONIntegracao.Grava(uiChaveNomeArquivo, regGrava.ulPonteiroJSONRegistro, "
        "CXVStringPS::RegToString(pregps->regRegistroJSON))"));
    EXPECT_EQ(m_Captura.GetFalhas().back().sFuncao, "CBaseMiddleware::GravaIntegracao");
    EXPECT_EQ(Conteudo("CRINTEGMID20240315.dat"), sIntegracoes);
    EXPECT_EQ(Dados(Conteudo("CRINTEGMIDJSON20240315.dat")), CXVBytes().Texto("{}").Str());
    m_Arquivos.LimitaEspaco(std::nullopt);
    EXPECT_EQ(Grava(*m_pLoja, CXVIntegracaoTeste(2)).GetPonteiro(), 2U);
}

TEST_F(CXVGravacaoTest, RecordersOnSeveralThreadsGetDifferentIntegrations) {
    constexpr std::size_t k_uiThreads = 4;
    constexpr std::size_t k_uiPorThread = 50;
    std::vector<TListaDmc> listas(k_uiThreads);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < k_uiThreads; ++i)
        threads.emplace_back([&, i] {
            const CXVCapturaTrace captura;
            for (std::size_t j = 0; j < k_uiPorThread; ++j) {
                const auto sTexto = std::to_string(i * 1000 + j);
                const REG_XVDMC regDmc =
                    Grava(*m_pLoja, CXVIntegracaoTeste(7, OfficialBank).Textos(sTexto, sTexto, sTexto));
                listas[i].push_back(regDmc.uiValor);
                const SIntegracaoLida lida = XVLe(*m_pLoja, regDmc);
                EXPECT_TRUE(FAILED(lida.hr) || lida.sJSON == sTexto);
            }
        });
    for (auto& rThread : threads) rThread.join();
    TListaDmc todas;
    for (const auto& lista : listas) todas.insert(todas.end(), lista.begin(), lista.end());
    std::sort(todas.begin(), todas.end());
    EXPECT_EQ(std::adjacent_find(todas.begin(), todas.end()), todas.end());
    EXPECT_EQ(QuantidadeIndex(), 1U) << "one bank key, one index record";
}

}  // namespace
