// Interface records against data classes: distrust on the way in, ownership on the way out.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/XVCR_BuffersPS.h"
#include "contract/XVDadosCR.h"

namespace {

constexpr REG_XVDMC k_regDmc = REG_XVDMC::Cria(1, 2, REG_XVDMA::Cria(2024, 3, 15));
constexpr REG_XVDMAHMSUTC k_regDataHora = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2024, 2, 29), 86396);

// The same with a value of its own, number ui.
template <class T>
T Outro(T reg, XVUInt64 ui) {
    reg.uiValor += ui;
    return reg;
}

CXVDadosCR_IntegracaoMiddleware Integracao() {
    CXVDadosCR_IntegracaoMiddleware dados;
    dados.sRegistroJSON = "{\"ação\":1}";
    dados.sJSONRetornoIntegracao = "{}";
    dados.regDmc = k_regDmc;
    dados.regDmcIntegracaoOrigem = Outro(k_regDmc, 1);
    dados.regDmcMovimentoOrigem = Outro(k_regDmc, 2);
    dados.regDataHoraInclusao = k_regDataHora;
    dados.regDataHoraAlteracaoStatus = Outro(k_regDataHora, 1);
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

const CXVDadosCR_FiltroIntegracaoMiddleware k_filtro{1,
                                                     2,
                                                     k_regDataHora,
                                                     Outro(k_regDataHora, 1),
                                                     Outro(k_regDataHora, 2),
                                                     Outro(k_regDataHora, 3),
                                                     {1, 2},
                                                     {3},
                                                     {8, 16},
                                                     {4, 5, 6}};

TEST(DadosCRTeste, IntegracaoVaiEVoltaSemPerderCampo) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg;
    std::memset(static_cast<void*>(&reg), 0xCC, sizeof(reg));
    ASSERT_EQ(Integracao().CopiarParaPS(&reg), S_OK);
    EXPECT_EQ(reg.regMensagemIntegracao.pTexto, nullptr);
    CXVDadosCR_IntegracaoMiddleware volta;
    volta.sMensagemIntegracao = "velha";
    ASSERT_EQ(volta.CopiarDe(reg), S_OK);
    XVLiberaBuffers(&reg);
    EXPECT_TRUE(volta == Integracao());
    EXPECT_EQ(reg.regRegistroJSON.pTexto, nullptr);
    EXPECT_EQ(reg.regJSONRetornoIntegracao.pTexto, nullptr);
    ASSERT_EQ(volta.CopiarDe(volta.ComoRegistro()), S_OK);
    EXPECT_TRUE(volta == Integracao()) << "a record that is a view into the object itself";
}

TEST(DadosCRTeste, OutrosValoresVaoEVoltamSemPerderCampo) {
    CXVDadosCR_FiltroIntegracaoMiddleware filtro;
    ASSERT_EQ(filtro.CopiarDe(k_filtro.ComoRegistro()), S_OK);
    EXPECT_TRUE(filtro == k_filtro);

    const CXVDadosCR_ChaveRegistroTelvoParaTerceiro chave{1, k_regDmc, 2, 3, 16, Outro(k_regDmc, 1)};
    CXVDadosCR_ChaveRegistroTelvoParaTerceiro outraChave;
    const auto regChave = chave.ComoRegistro();
    outraChave.CopiarDe(regChave);
    EXPECT_TRUE(outraChave == chave);
    const auto regFiltroChave = chave.ComoFiltro();
    EXPECT_EQ(std::memcmp(&regChave, &regFiltroChave, offsetof(decltype(regFiltroChave), cFiller)), 0);

    const CXVDadosCR_DataHoraIntegracaoTerceiro dataHora{k_regDataHora, 3, 16, 1};
    CXVDadosCR_DataHoraIntegracaoTerceiro outraDataHora;
    outraDataHora.CopiarDe(dataHora.ComoRegistro());
    EXPECT_TRUE(outraDataHora == dataHora);
    const auto regFiltroData = dataHora.ComoFiltro();
    EXPECT_EQ(regFiltroData.eTipoIntegracao, 3U);
    EXPECT_EQ(regFiltroData.eSistemaIntegracao, 16U);
    EXPECT_EQ(regFiltroData.eTipoData, 1U);

    const CXVDadosCR_ConsultaSistemaTerceiro consulta{"341", 6, 21, 22};
    CXVDadosCR_ConsultaSistemaTerceiro outraConsulta;
    ASSERT_EQ(outraConsulta.CopiarDe(consulta.ComoRegistro()), S_OK);
    EXPECT_TRUE(outraConsulta == consulta);

    const CXVDadosCR_StatusIntegracaoMiddleware status{k_regDmc, "feito", "{}", 5, 3, 16};
    const auto regStatus = status.ComoRegistro();
    EXPECT_EQ(regStatus.regDmc, k_regDmc);
    EXPECT_EQ(CXVStringPS::RegToString(regStatus.regMensagemIntegracao), "feito");
    EXPECT_EQ(CXVStringPS::RegToString(regStatus.regJSONRetornoIntegracao), "{}");
    EXPECT_EQ(regStatus.uiChaveIntegracaoSistemaTerceiro, 5U);
    EXPECT_EQ(regStatus.eStatusIntegracao, 3U);
    EXPECT_EQ(regStatus.eSistemaIntegracao, 16U);
}

TEST(DadosCRTeste, RespostaEListaSaoBuffersDeQuemRecebe) {
    const CXVDadosCR_StatusConsultaSistemaTerceiro resposta{"pago", "{\"v\":1}", std::string("%PDF\0\xFF", 6),
                                                            4};
    tagREG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS reg;
    ASSERT_EQ(resposta.CopiarParaPS(&reg), S_OK);
    CXVDadosCR_StatusConsultaSistemaTerceiro volta;
    ASSERT_EQ(volta.CopiarDe(reg), S_OK);
    EXPECT_TRUE(volta == resposta);
    XVLiberaBuffers(&reg);
    EXPECT_EQ(reg.pDocumentoRetorno, nullptr);
    XVLiberaBuffers(&reg);
    reg.ulTamanhoDocumentoRetorno = 3;
    EXPECT_EQ(volta.CopiarDe(reg), E_INVALIDARG) << "a document that is not there";
    EXPECT_TRUE(volta == resposta);

    _REG_DF_LISTA_XVDMCPS lista{9, 9, nullptr, 9};
    ASSERT_EQ(XVListaToReg({}, &lista), S_OK);
    EXPECT_EQ(lista.ulQuantidade, 0U);
    ASSERT_EQ(XVListaToReg({{1}, {2}}, &lista), S_OK);
    ASSERT_EQ(lista.ulQuantidade, 2U);
    EXPECT_EQ(lista.pLista[1].uiValor, 2U);
    XVLiberaBuffers(&lista);
    EXPECT_EQ(lista.ulQuantidade, 0U);
}

TEST(DadosCRTeste, TextoMentirosoERecusadoENadaMuda) {
    char szComNul[] = "a\0b";
    for (const _REG_DF_TEXTOPS& rTexto :
         {_REG_DF_TEXTOPS{5, 0, nullptr, 0}, _REG_DF_TEXTOPS{3, 0, reinterpret_cast<XVByte*>(szComNul), 0},
          CXVStringPS::Vista({szComNul, std::size_t{1} << 32})}) {  // more bytes than a record can count
        for (_REG_DF_TEXTOPS tagREG_CR_INTEGRACAO_MIDDLEWAREPS::*pCampo :
             {&tagREG_CR_INTEGRACAO_MIDDLEWAREPS::regRegistroJSON,
              &tagREG_CR_INTEGRACAO_MIDDLEWAREPS::regMensagemIntegracao,
              &tagREG_CR_INTEGRACAO_MIDDLEWAREPS::regJSONRetornoIntegracao}) {
            CXVDadosCR_IntegracaoMiddleware dados = Integracao();
            tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
            reg.*pCampo = rTexto;
            EXPECT_EQ(dados.CopiarDe(reg), E_INVALIDARG);
            EXPECT_TRUE(dados == Integracao());
        }
        CXVDadosCR_ConsultaSistemaTerceiro consulta;
        tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS reg{};
        reg.regChaveConsulta = rTexto;
        EXPECT_EQ(consulta.CopiarDe(reg), E_INVALIDARG);
    }
}

TEST(DadosCRTeste, FiltroImpossivelERecusadoENadaMuda) {
    using TReg = tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS;
    CXVDadosCR_FiltroIntegracaoMiddleware filtro = k_filtro;
    for (XVUInt* TReg::*pLista : {&TReg::pListaTipoIntegracao, &TReg::pListaStatusIntegracao,
                                  &TReg::pListaSistemaIntegracao, &TReg::pListaTipoTransacao}) {
        TReg reg = k_filtro.ComoRegistro();
        reg.*pLista = nullptr;
        EXPECT_EQ(filtro.CopiarDe(reg), E_INVALIDARG);
    }
    for (REG_XVDMAHMSUTC TReg::*pCampo :
         {&TReg::regDataHoraInicialInclusao, &TReg::regDataHoraFinalInclusao,
          &TReg::regDataHoraInicialAlteracaoStatus, &TReg::regDataHoraFinalAlteracaoStatus}) {
        TReg reg = k_filtro.ComoRegistro();
        reg.*pCampo = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2023, 2, 29), 0);
        EXPECT_EQ(filtro.CopiarDe(reg), E_INVALIDARG);
    }
    EXPECT_TRUE(filtro == k_filtro);
    EXPECT_TRUE(filtro.FindTipoIntegracao(2) && filtro.FindTipoTransacao(6));
    EXPECT_FALSE(filtro.FindStatusIntegracao(4) || filtro.FindSistemaIntegracao(3));
}

}  // namespace
