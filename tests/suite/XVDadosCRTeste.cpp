// Interface records against data classes: distrust on the way in, ownership on the way out.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/XVCR_BuffersPS.h"
#include "contract/XVDadosCR.h"

namespace {

_REG_DF_TEXTOPS Texto(std::string& s) {
    return {static_cast<XVUInt>(s.size()), 0, reinterpret_cast<XVByte*>(s.data()), 0};
}

CXVDadosCR_IntegracaoMiddleware Exemplo() {
    CXVDadosCR_IntegracaoMiddleware dados;
    dados.sRegistroJSON = "{\"ação\":1}";
    dados.sJSONRetornoIntegracao = "{}";
    dados.regDmc = REG_XVDMC::Cria(1, 2, REG_XVDMA::Cria(2024, 3, 15));
    dados.regDmcIntegracaoOrigem = REG_XVDMC::Cria(1, 3, REG_XVDMA::Cria(2024, 3, 15));
    dados.regDmcMovimentoOrigem = REG_XVDMC::Cria(1, 4, REG_XVDMA::Cria(2024, 3, 15));
    dados.regDataHoraInclusao.uiValor = 5;
    dados.regDataHoraAlteracaoStatus.uiValor = 6;
    dados.uiChaveIntegracaoSistemaTerceiro = 7;
    dados.uiChaveRegistroSistemaTerceiro = 8;
    dados.uiBaseDadosTerceiro = 9;
    dados.eTipoIntegracao = 10;
    dados.eStatusIntegracao = 3;
    dados.eSistemaIntegracao = 16;
    dados.eTipoTransacao = 2;
    dados.ulPonteiroFilial = 11;
    dados.ulPonteiroUsuarioInclusao = 12;
    dados.ulPonteiroUsuarioCancelamento = 13;
    dados.ulPonteiroAuxiliar = 14;
    dados.cReconsultarIdTerceiros = 1;
    dados.ucTipoPonteiroAuxiliar = 15;
    return dados;
}

TEST(DadosCRTeste, IntegracaoVaiEVoltaSemPerderCampo) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg;
    std::memset(static_cast<void*>(&reg), 0xCC, sizeof(reg));
    ASSERT_EQ(Exemplo().CopiarParaPS(&reg), S_OK);
    EXPECT_EQ(reg.regMensagemIntegracao.pTexto, nullptr);
    EXPECT_EQ(reg.regMensagemIntegracao.ulQtdBytes, 0U);
    CXVDadosCR_IntegracaoMiddleware volta;
    volta.sMensagemIntegracao = "velha";
    ASSERT_EQ(volta.CopiarDe(reg), S_OK);
    XVLiberaBuffers(&reg);
    EXPECT_EQ(reg.regRegistroJSON.pTexto, nullptr);
    EXPECT_EQ(volta.sMensagemIntegracao, "");

    // Every byte of the record besides the text pointers: a field forgotten in either direction differs.
    CXVDadosCR_IntegracaoMiddleware exemplo = Exemplo();
    auto esperado = exemplo.ComoRegistro();
    auto obtido = volta.ComoRegistro();
    EXPECT_EQ(CXVStringPS::RegToString(obtido.regRegistroJSON),
              CXVStringPS::RegToString(esperado.regRegistroJSON));
    EXPECT_EQ(CXVStringPS::RegToString(obtido.regJSONRetornoIntegracao), "{}");
    const std::size_t uiInicio = offsetof(tagREG_CR_INTEGRACAO_MIDDLEWAREPS, regDmc);
    EXPECT_EQ(std::memcmp(reinterpret_cast<char*>(&obtido) + uiInicio,
                          reinterpret_cast<char*>(&esperado) + uiInicio, sizeof(obtido) - uiInicio),
              0);
    ASSERT_EQ(exemplo.CopiarDe(esperado), S_OK) << "a record that is a view into the object itself";
    EXPECT_EQ(exemplo.sRegistroJSON, "{\"ação\":1}");
}

TEST(DadosCRTeste, TextoMentirosoERecusadoENadaMuda) {
    std::string sComNul("a\0b", 3);
    for (const _REG_DF_TEXTOPS& rTexto : {_REG_DF_TEXTOPS{5, 0, nullptr, 0}, Texto(sComNul)}) {
        for (_REG_DF_TEXTOPS tagREG_CR_INTEGRACAO_MIDDLEWAREPS::*pCampo :
             {&tagREG_CR_INTEGRACAO_MIDDLEWAREPS::regRegistroJSON,
              &tagREG_CR_INTEGRACAO_MIDDLEWAREPS::regMensagemIntegracao,
              &tagREG_CR_INTEGRACAO_MIDDLEWAREPS::regJSONRetornoIntegracao}) {
            CXVDadosCR_IntegracaoMiddleware dados = Exemplo();
            tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
            reg.*pCampo = rTexto;
            EXPECT_EQ(dados.CopiarDe(reg), E_INVALIDARG);
            EXPECT_EQ(dados.sRegistroJSON, Exemplo().sRegistroJSON);
            EXPECT_EQ(dados.eSistemaIntegracao, 16U);
        }
        CXVDadosCR_ConsultaSistemaTerceiro consulta;
        tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS reg{};
        reg.regChaveConsulta = rTexto;
        EXPECT_EQ(consulta.CopiarDe(reg), E_INVALIDARG);
    }
    EXPECT_TRUE(CXVStringPS::EhValido({}));
}

TEST(DadosCRTeste, FiltroGuardaSuasListasEDesconfia) {
    XVUInt aStatus[] = {1, 4};
    XVUInt aSistema[] = {16};
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.uiChaveIntegracaoSistemaTerceiroInicial = 5;
    reg.regDataHoraFinalInclusao = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2024, 2, 29), 86399);
    reg.ulQuantidadeStatusIntegracao = 2;
    reg.pListaStatusIntegracao = aStatus;
    reg.ulQuantidadeSistemaIntegracao = 1;
    reg.pListaSistemaIntegracao = aSistema;
    CXVDadosCR_FiltroIntegracaoMiddleware filtro;
    ASSERT_EQ(filtro.CopiarDe(reg), S_OK);
    aStatus[0] = 2;
    EXPECT_TRUE(filtro.FindStatusIntegracao(1) && filtro.FindStatusIntegracao(4));
    EXPECT_FALSE(filtro.FindStatusIntegracao(2) || filtro.FindTipoIntegracao(1));
    EXPECT_EQ(filtro.GetListaSistemaIntegracao(), std::vector<XVUInt>{16});
    EXPECT_EQ(filtro.GetDataHoraFinalInclusao(), reg.regDataHoraFinalInclusao);

    auto invalido = reg;
    invalido.ulQuantidadeTipoTransacao = 0xFFFFFFFFU;
    EXPECT_EQ(filtro.CopiarDe(invalido), E_INVALIDARG);
    for (REG_XVDMAHMSUTC tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS::*pCampo :
         {&tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS::regDataHoraInicialInclusao,
          &tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS::regDataHoraFinalInclusao,
          &tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS::regDataHoraInicialAlteracaoStatus,
          &tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS::regDataHoraFinalAlteracaoStatus}) {
        invalido = reg;
        invalido.*pCampo = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2023, 2, 29), 0);
        EXPECT_EQ(filtro.CopiarDe(invalido), E_INVALIDARG);
    }
    EXPECT_TRUE(filtro.FindStatusIntegracao(4)) << "a refused record leaves the filter as it was";
}

TEST(DadosCRTeste, RespostaDaConsultaLevaBytesComNulEListaVaziaNaoTemBuffer) {
    CXVDadosCR_StatusConsultaSistemaTerceiro dados;
    dados.eStatusConsulta = 1;
    dados.sJSONRetorno = "{}";
    dados.sDocumentoRetorno = std::string("%PDF\0\xFF", 6);
    tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS reg;
    ASSERT_EQ(dados.CopiarParaPS(&reg), S_OK);
    ASSERT_EQ(reg.ulTamanhoDocumentoRetorno, 6U);
    EXPECT_EQ(std::memcmp(reg.pDocumentoRetorno, "%PDF\0\xFF", 6), 0);
    XVLiberaBuffers(&reg);
    EXPECT_EQ(reg.pDocumentoRetorno, nullptr);
    XVLiberaBuffers(&reg);

    _REG_DF_LISTA_XVDMCPS lista{9, 9, nullptr, 9};
    ASSERT_EQ(XVListaToReg({}, &lista), S_OK);
    EXPECT_EQ(lista.ulQuantidade, 0U);
    EXPECT_EQ(lista.pLista, nullptr);
    ASSERT_EQ(XVListaToReg({{1}, {2}}, &lista), S_OK);
    EXPECT_EQ(lista.pLista[1].uiValor, 2U);
    XVLiberaBuffers(&lista);
    EXPECT_EQ(lista.ulQuantidade, 0U);
}

// What a client hands over is a view: nothing is copied, and every field is there.
TEST(DadosCRTeste, VistasDosValoresLevamTodosOsCampos) {
    const REG_XVDMC dmc = REG_XVDMC::Cria(2, 7, REG_XVDMA::Cria(2024, 3, 15));
    const CXVDadosCR_StatusIntegracaoMiddleware status{dmc, "feito", "{}", 5, 3, 16};
    const tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS regStatus = status.ComoRegistro();
    EXPECT_EQ(regStatus.regDmc, dmc);
    EXPECT_EQ(static_cast<const void*>(regStatus.regMensagemIntegracao.pTexto),
              status.sMensagemIntegracao.data());
    EXPECT_EQ(CXVStringPS::RegToString(regStatus.regJSONRetornoIntegracao), "{}");
    EXPECT_EQ(regStatus.uiChaveIntegracaoSistemaTerceiro, 5U);
    EXPECT_EQ(regStatus.eStatusIntegracao, 3U);
    EXPECT_EQ(regStatus.eSistemaIntegracao, 16U);

    const REG_XVDMAHMSUTC dataHora = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2024, 2, 29), 1);
    const CXVDadosCR_FiltroIntegracaoMiddleware filtro{
        1, 2, dataHora, {}, {dataHora.uiValor + 1}, dataHora, {1, 2}, {3}, {8, 16}, {}};
    CXVDadosCR_FiltroIntegracaoMiddleware volta;
    volta.listaTipoTransacao = {9};
    ASSERT_EQ(volta.CopiarDe(filtro.ComoRegistro()), S_OK);
    EXPECT_EQ(volta.uiChaveIntegracaoSistemaTerceiroInicial, 1U);
    EXPECT_EQ(volta.uiChaveIntegracaoSistemaTerceiroFinal, 2U);
    EXPECT_EQ(volta.regDataHoraInicialInclusao, dataHora);
    EXPECT_TRUE(volta.regDataHoraFinalInclusao.EhNula());
    EXPECT_EQ(volta.regDataHoraInicialAlteracaoStatus.uiValor, dataHora.uiValor + 1);
    EXPECT_EQ(volta.regDataHoraFinalAlteracaoStatus, dataHora);
    EXPECT_EQ(volta.listaTipoIntegracao, (std::vector<XVUInt>{1, 2}));
    EXPECT_EQ(volta.listaStatusIntegracao, std::vector<XVUInt>{3});
    EXPECT_EQ(volta.listaSistemaIntegracao, (std::vector<XVUInt>{8, 16}));
    EXPECT_TRUE(volta.listaTipoTransacao.empty());

    const CXVDadosCR_ChaveRegistroTelvoParaTerceiro chave{1, dmc, 2, 3, 16, {dmc.uiValor + 1}};
    CXVDadosCR_ChaveRegistroTelvoParaTerceiro outra;
    outra.CopiarDe(chave.ComoRegistro());
    const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS regChave = chave.ComoRegistro();
    const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS regOutra = outra.ComoRegistro();
    EXPECT_EQ(std::memcmp(&regChave, &regOutra, sizeof(regChave)), 0);
    const auto regFiltro = chave.ComoFiltro();
    EXPECT_EQ(std::memcmp(&regChave, &regFiltro, offsetof(decltype(regFiltro), cFiller)), 0);
    EXPECT_EQ(regChave.regDmcOrigemIntegracao.uiValor, dmc.uiValor + 1);
}

// No test has such a text: the view counts its bytes and does not look at them.
TEST(DadosCRTeste, TextoQueNenhumRegistroContaDaUmRegistroRecusado) {
    const char szTexto[] = "x";
    const _REG_DF_TEXTOPS reg = CXVStringPS::Vista({szTexto, std::size_t{1} << 32});
    EXPECT_EQ(reg.pTexto, nullptr);
    EXPECT_FALSE(CXVStringPS::EhValido(reg));
    EXPECT_TRUE(CXVStringPS::EhValido(CXVStringPS::Vista({szTexto, 1})));
}

TEST(DadosCRTeste, RespostaComDocumentoQueFaltaERecusada) {
    CXVDadosCR_StatusConsultaSistemaTerceiro dados;
    dados.sDocumentoRetorno = "antes";
    tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS reg{};
    reg.ulTamanhoDocumentoRetorno = 3;
    EXPECT_EQ(dados.CopiarDe(reg), E_INVALIDARG);
    EXPECT_EQ(dados.sDocumentoRetorno, "antes");
    XVByte aDocumento[] = {'a', 0, 'b'};
    reg.pDocumentoRetorno = aDocumento;
    reg.eStatusConsulta = 4;
    EXPECT_EQ(dados.CopiarDe(reg), S_OK);
    EXPECT_EQ(dados.sDocumentoRetorno, std::string("a\0b", 3));
    EXPECT_EQ(dados.eStatusConsulta, 4U);
}

}  // namespace
