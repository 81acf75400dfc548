// Interface records against data classes: distrust on the way in, ownership on the way out.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/XVCR_BuffersPS.h"
#include "contract/XVListaAchadas.h"
#include "tests/suite/XVIntegracaoCheia.h"

namespace {

constexpr auto DataHora = XVDataHoraTeste;

const CXVDadosCR_FiltroIntegracaoMiddleware k_filtro{
    1, 2, DataHora(96), DataHora(97), DataHora(98), DataHora(99), {1, 2}, {3}, {8, 16}, {4, 5, 6}};

TEST(DadosCRTeste, IntegracaoVaiEVoltaSemPerderCampo) {
    CXVDadosCR_IntegracaoMiddleware dados = XVIntegracaoCheia();
    CXVDadosCR_IntegracaoMiddleware volta;
    ASSERT_EQ(volta.CopiarDe(dados.ComoRegistro()), S_OK);
    EXPECT_TRUE(volta == dados);
    ASSERT_EQ(volta.CopiarDe(volta.ComoRegistro()), S_OK);
    EXPECT_TRUE(volta == dados) << "a record that is a view into the object itself";
    dados.sMensagemIntegracao.clear();
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg;
    std::memset(static_cast<void*>(&reg), 0xCC, sizeof(reg));
    ASSERT_EQ(dados.CopiarParaPS(&reg), S_OK);
    EXPECT_EQ(reg.regMensagemIntegracao.pTexto, nullptr);
    ASSERT_EQ(volta.CopiarDe(reg), S_OK);
    XVLiberaBuffers(&reg);
    EXPECT_TRUE(volta == dados);
    EXPECT_EQ(reg.regRegistroJSON.pTexto, nullptr);
    EXPECT_EQ(reg.regJSONRetornoIntegracao.pTexto, nullptr);
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
    reg.ulTamanhoDocumentoRetorno = 3;
    EXPECT_EQ(volta.CopiarDe(reg), E_INVALIDARG) << "a document that is not there";
    EXPECT_TRUE(volta == resposta);

    _REG_DF_LISTA_XVDMCPS lista{9, 9, nullptr, 9};
    CXVListaAchadas achadas;
    ASSERT_EQ(achadas.Entrega(&lista), S_OK);
    EXPECT_EQ(lista.ulQuantidade, 0U);
    for (const XVUInt64 ui : {1U, 2U}) achadas.Inclui({ui});
    ASSERT_EQ(achadas.Entrega(&lista), S_OK);
    ASSERT_EQ(lista.ulQuantidade, 2U);
    EXPECT_EQ(lista.pLista[0].uiValor, 1U);
    EXPECT_EQ(lista.pLista[1].uiValor, 2U);
    XVLiberaBuffers(&lista);
    EXPECT_EQ(lista.ulQuantidade, 0U);
}

TEST(DadosCRTeste, TextoMentirosoERecusadoENadaMuda) {
    using TReg = tagREG_CR_INTEGRACAO_MIDDLEWAREPS;
    char szComNul[] = "a\0b";
    for (const _REG_DF_TEXTOPS& rTexto :
         {_REG_DF_TEXTOPS{5, 0, nullptr, 0}, _REG_DF_TEXTOPS{3, 0, reinterpret_cast<XVByte*>(szComNul), 0},
          CXVStringPS::Vista({szComNul, std::size_t{1} << 32})}) {  // more bytes than a record can count
        for (_REG_DF_TEXTOPS TReg::*pCampo :
             {&TReg::regRegistroJSON, &TReg::regMensagemIntegracao, &TReg::regJSONRetornoIntegracao}) {
            CXVDadosCR_IntegracaoMiddleware dados = XVIntegracaoCheia();
            TReg reg{};
            reg.*pCampo = rTexto;
            EXPECT_EQ(dados.CopiarDe(reg), E_INVALIDARG);
            EXPECT_TRUE(dados == XVIntegracaoCheia());
        }
        CXVDadosCR_ConsultaSistemaTerceiro consulta;
        tagREG_CR_CONSULTA_SISTEMA_TERCEIROPS reg{};
        reg.regChaveConsulta = rTexto;
        EXPECT_EQ(consulta.CopiarDe(reg), E_INVALIDARG);
    }
}

TEST(DadosCRTeste, FiltroVaiInteiroEImpossivelERecusadoENadaMuda) {
    using TReg = tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS;
    CXVDadosCR_FiltroIntegracaoMiddleware filtro;
    ASSERT_EQ(filtro.CopiarDe(k_filtro.ComoRegistro()), S_OK);
    EXPECT_TRUE(filtro == k_filtro);
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
        reg.*pCampo = DataHora(86400);
        EXPECT_EQ(filtro.CopiarDe(reg), E_INVALIDARG);
    }
    EXPECT_TRUE(filtro == k_filtro);
    EXPECT_TRUE(filtro.FindTipoIntegracao(2) && filtro.FindTipoTransacao(6));
    EXPECT_FALSE(filtro.FindStatusIntegracao(4) || filtro.FindSistemaIntegracao(3));
}

}  // namespace
