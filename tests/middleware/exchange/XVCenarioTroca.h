// A store whose system 16 is served by the library that writes everything down. Every field of every record
// here has a value of its own, so that none can stand in for another.
#pragma once

#include "platform/XVBibliotecaDinamica.h"
#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/exchange/XVGravador.h"

class CXVCenarioTroca : public CXVCenarioLoja {
  protected:
    CXVCenarioTroca()
        : m_rGravador(*m_Biblioteca.GetFuncao<PFXVGravador>(k_pszFuncaoGravador)()), m_pLoja(Abre()) {
        m_rGravador = {};
        m_rGravador.iResultadoLista = 1;
        m_rGravador.mapParametros["Posterior"].iResultado = m_rGravador.mapParametros["Atualiza"].iResultado =
            1;
    }
    ~CXVCenarioTroca() override {
        EXPECT_EQ(m_rGravador.lBuffersVivos, 0) << "every buffer went back to the library";
        m_rGravador = {};
    }

    static constexpr XVUInt64 k_uiOrigem = XVChaveDmc(XVDma(2024, 3, 1), 15, 2);     // of the integration
    static constexpr XVUInt64 k_uiMovimento = XVChaveDmc(XVDma(2024, 3, 1), 16, 2);  // of the item
    static constexpr const char* k_pszMovimento = "20240301-16-2";

    // What a caller may hand over: what counts for the exchange, and everything else, which must not leak.
    static tagREG_CR_INTEGRACAO_MIDDLEWAREPS Pedido(XVUInt eTransacao) {
        static const std::string s_sIntruso = "do chamador";
        tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
        reg.regDmcIntegracaoOrigem = {k_uiOrigem};
        reg.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
        reg.eTipoTransacao = eTransacao;
        reg.eSistemaIntegracao = Mercos;
        reg.ulPonteiroFilial = 3;
        reg.ulPonteiroAuxiliar = 21;
        reg.ucTipoPonteiroAuxiliar = 22;
        reg.regRegistroJSON = reg.regMensagemIntegracao = reg.regJSONRetornoIntegracao =
            CXVStringPS::Vista(s_sIntruso);
        reg.regDmc = {XVChaveDmc(k_uiHoje, 77)};
        reg.regDmcMovimentoOrigem = {XVChaveDmc(XVDma(2024, 3, 1), 17, 2)};
        reg.regDataHoraInclusao = {XVDataHora(XVDma(2024, 3, 1), 1)};
        reg.regDataHoraAlteracaoStatus = {XVDataHora(XVDma(2024, 3, 1), 2)};
        reg.uiChaveIntegracaoSistemaTerceiro = 991;
        reg.uiChaveRegistroSistemaTerceiro = 992;
        reg.uiBaseDadosTerceiro = 993;
        reg.eStatusIntegracao = eXVSMiddleware_Enviado;
        reg.ulPonteiroUsuarioInclusao = 994;
        reg.ulPonteiroUsuarioCancelamento = 995;
        reg.cReconsultarIdTerceiros = 96;
        return reg;
    }
    static SItemGravador Item(const std::string& sJSON = "{\"p\":1}") {
        return {sJSON, {{}, k_uiMovimento, 101, 102, Mercos, 103, 1, {}}};
    }
    // An answer that changes every field, those that are not a provider's as well.
    static SRespostaDados Resposta(unsigned uiBase, XVUInt eStatus) {
        const std::string sBase = std::to_string(uiBase);
        SRespostaDados resposta{1, true, {}, "json " + sBase, "mensagem " + sBase, "retorno " + sBase};
        XVProvedorDados& reg = resposta.reg;
        reg.uiChaveIntegracaoSistemaTerceiro = uiBase + 1;
        reg.uiChaveRegistroSistemaTerceiro = uiBase + 2;
        reg.uiBaseDadosTerceiro = uiBase + 3;
        reg.ulPonteiroFilial = uiBase + 4;
        reg.eStatusIntegracao = eStatus;
        reg.cReconsultarIdTerceiros = static_cast<std::uint8_t>(uiBase / 100);
        reg.uiDmc = reg.uiDmcIntegracaoOrigem = reg.uiDmcMovimentoOrigem = 1U << 14;
        reg.uiDataHoraInclusao = reg.uiDataHoraAlteracaoStatus = 1;
        reg.eTipoIntegracao = reg.eSistemaIntegracao = reg.eTipoTransacao = 2;
        reg.ulPonteiroAuxiliar = reg.ucTipoPonteiroAuxiliar = 99;
        return resposta;  // S_FALSE and its like are no failures, whoever answers them
    }

    // Parts of the lines in which the library and the tests describe records.
    static std::string Comuns(XVUInt eTransacao, unsigned uiChaveRegistro, unsigned uiBase,
                              unsigned uiFilial) {
        return " tipo=9 sistema=16 transacao=" + std::to_string(eTransacao) +
               " auxiliar=21/22 chaveRegistro=" + std::to_string(uiChaveRegistro) +
               " base=" + std::to_string(uiBase) + " filial=" + std::to_string(uiFilial);
    }
    static std::string Respondido(unsigned uiBase, XVUInt eStatus) {
        const std::string sBase = std::to_string(uiBase);
        return " chave=" + std::to_string(uiBase + 1) + " status=" + std::to_string(eStatus) +
               " reconsultar=" + std::to_string(uiBase / 100) + " textos=[json " + sBase + "][mensagem " +
               sBase + "][retorno " + sBase + "]";
    }
    static std::string Descreve(const SIntegracaoLida& rLida) {
        if (FAILED(rLida.hr)) return "falha " + std::to_string(rLida.hr);
        const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg = rLida.reg;
        return "dmc=" + XVDescreveDmc(reg.regDmc.uiValor) +
               " origens=" + XVDescreveDmc(reg.regDmcIntegracaoOrigem.uiValor) + '/' +
               XVDescreveDmc(reg.regDmcMovimentoOrigem.uiValor) +
               " datas=" + XVDescreveDataHora(reg.regDataHoraInclusao.uiValor) + '/' +
               XVDescreveDataHora(reg.regDataHoraAlteracaoStatus.uiValor) + XVDescreveComuns(reg) +
               XVDescreveSituacao(reg, rLida.sJSON, rLida.sMensagem, rLida.sRetorno) +
               " usuarios=" + std::to_string(reg.ulPonteiroUsuarioInclusao) + '/' +
               std::to_string(reg.ulPonteiroUsuarioCancelamento);
    }
    static std::string Le(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 ullFlags = 7) {
        return Descreve(XVLe(rLoja, regDmc, ullFlags));
    }

    HRESULT Troca(XVUInt eTransacao, REG_XVDMC* pDmc) {
        return m_pLoja->GravaIntegracaoInstantanea(pDmc, Pedido(eTransacao));
    }
    // Messages of the error log that speak of an exchange without record.
    std::vector<std::string> LinhasPerdidas() const {
        std::vector<std::string> lista;
        for (const SFalhaCapturada& rFalha : m_Captura.GetFalhas())
            if (rFalha.sMensagem.find("Troca com o sistema externo") != std::string::npos)
                lista.push_back(rFalha.sMensagem);
        return lista;
    }
    unsigned Chamadas(const std::string& sOperacao) const {
        return static_cast<unsigned>(std::ranges::count_if(
            m_rGravador.listaChamadas, [&](const std::string& s) { return s.starts_with(sOperacao + " "); }));
    }
    // An integration of system 16 with this key, recorded by user 33 two days before.
    REG_XVDMC GravaAnterior(XVUInt64 uiChave, XVUInt eStatus) {
        SetDia(13, 8);
        CXVIntegracaoTeste anterior(uiChave, Mercos, eStatus);
        anterior.reg.ulPonteiroUsuarioInclusao = 33;
        anterior.reg.regDmcIntegracaoOrigem = {XVChaveDmc(XVDma(2024, 3, 1), 18, 2)};
        const REG_XVDMC regDmc =
            Grava(*m_pLoja, anterior.Textos("json velho", "mensagem velha", "retorno velho"));
        SetDia(15);
        return regDmc;
    }

    CXVBibliotecaDinamica m_Biblioteca{"XVProvedor16.dll"};
    SGravador& m_rGravador;
    TLoja m_pLoja;
};
