// A store of the company MATRIZ in memory, on a clock that stands at 2024-03-15 12:00:00 UTC (09:00 local),
// opened by user 7 in session 99.
#pragma once

#include <vector>

#include "contract/XVCR_BuffersPS.h"
#include "contract/XVDadosCR.h"
#include "core/xvdatabase/XVDiarioAnel.h"
#include "middleware/BaseMiddleware.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/harness/XVBytesBase.h"
#include "tests/suite/XVCenarioSuite.h"

inline constexpr XVUInt64 k_uiHoje = XVDma(2024, 3, 15);

// An input record that owns its texts.
class CXVIntegracaoTeste {
  public:
    explicit CXVIntegracaoTeste(XVUInt64 uiChave = 0, XVUInt eSistema = Mercos,
                                XVUInt eStatus = eXVSMiddleware_Pendente) {
        reg.uiChaveIntegracaoSistemaTerceiro = uiChave;
        reg.eSistemaIntegracao = eSistema;
        reg.eStatusIntegracao = eStatus;
        reg.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
        reg.eTipoTransacao = eXVSMiddleware_Inclusao;
        reg.regDmcMovimentoOrigem = {XVChaveDmc(XVDma(2023, 1, 2), 5, 2)};
    }
    CXVIntegracaoTeste& Textos(std::string sJSON, std::string sMensagem, std::string sRetorno) {
        m_sJSON = std::move(sJSON);
        m_sMensagem = std::move(sMensagem);
        m_sRetorno = std::move(sRetorno);
        return *this;
    }
    const tagREG_CR_INTEGRACAO_MIDDLEWAREPS* Ptr() {
        if (!m_sJSON.empty()) reg.regRegistroJSON = CXVStringPS::Vista(m_sJSON);
        if (!m_sMensagem.empty()) reg.regMensagemIntegracao = CXVStringPS::Vista(m_sMensagem);
        if (!m_sRetorno.empty()) reg.regJSONRetornoIntegracao = CXVStringPS::Vista(m_sRetorno);
        return &reg;
    }

    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};

  private:
    std::string m_sJSON, m_sMensagem, m_sRetorno;
};

// A status for what a DMC or an external key names; a view of the texts.
inline tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS XVStatusPS(REG_XVDMC regDmc, XVUInt64 uiChave, XVUInt eStatus,
                                                           const std::string& sMensagem,
                                                           const std::string& sRetorno,
                                                           XVUInt eSistema = Mercos) {
    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.regDmc = regDmc;
    reg.uiChaveIntegracaoSistemaTerceiro = uiChave;
    reg.eSistemaIntegracao = eSistema;
    reg.eStatusIntegracao = eStatus;
    reg.regMensagemIntegracao = CXVStringPS::Vista(sMensagem);
    reg.regJSONRetornoIntegracao = CXVStringPS::Vista(sRetorno);
    return reg;
}

// What was read, with its buffers freed.
struct SIntegracaoLida {
    HRESULT hr = S_OK;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};  // text pointers are no longer valid
    std::string sJSON, sMensagem, sRetorno;
};

// What to search for.
struct SFiltroTeste {
    XVUInt64 de = 0, ate = 0;  // external key
    REG_XVDMAHMSUTC incluidaDe{}, incluidaAte{}, alteradaDe{}, alteradaAte{};
    std::vector<XVUInt> tipos{}, status{}, sistemas{}, transacoes{};
};

using TLoja = std::unique_ptr<CBaseMiddleware>;
using TListaDmc = std::vector<XVUInt64>;

// Opened by a user of MATRIZ.
inline HRESULT XVInicializa(CBaseMiddleware& rLoja, bool bSomenteLeitura = false) {
    const CXVDonoFixo dono("MATRIZ");
    rLoja.SetSomenteLeitura(bSomenteLeitura);
    return rLoja.Inicializa(&dono);
}
// An output record with its texts; its buffers are freed.
inline SIntegracaoLida XVToma(tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg) {
    SIntegracaoLida lida;
    lida.reg = reg;
    lida.sJSON = CXVStringPS::RegToString(reg.regRegistroJSON);
    lida.sMensagem = CXVStringPS::RegToString(reg.regMensagemIntegracao);
    lida.sRetorno = CXVStringPS::RegToString(reg.regJSONRetornoIntegracao);
    XVLiberaBuffers(&reg);
    return lida;
}
inline SIntegracaoLida XVLe(CBaseMiddleware& rLoja, REG_XVDMC regDmc, XVUInt64 ullFlags = 7) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    const HRESULT hr = rLoja.LeIntegracao(regDmc, &reg, ullFlags);
    SIntegracaoLida lida = XVToma(reg);
    lida.hr = hr;
    return lida;
}
struct SBuscaFeita {
    HRESULT hr = S_OK;
    TListaDmc lista;
};
inline SBuscaFeita XVBuscaComCodigo(CBaseMiddleware& rLoja, const SFiltroTeste& rFiltro) {
    const CXVDadosCR_FiltroIntegracaoMiddleware valor{
        rFiltro.de,          rFiltro.ate,   rFiltro.incluidaDe, rFiltro.incluidaAte, rFiltro.alteradaDe,
        rFiltro.alteradaAte, rFiltro.tipos, rFiltro.status,     rFiltro.sistemas,    rFiltro.transacoes};
    _REG_DF_LISTA_XVDMCPS regLista{};
    SBuscaFeita feita;
    feita.hr = rLoja.BuscaPonteiros(valor.ComoRegistro(), &regLista);
    for (XVUInt i = 0; i < regLista.ulQuantidade; ++i) feita.lista.push_back(regLista.pLista[i].uiValor);
    EXPECT_EQ(regLista.pLista == nullptr, feita.lista.empty());
    XVLiberaBuffers(&regLista);
    return feita;
}
// The keys found; a failure is a failure of the test.
inline TListaDmc XVBusca(CBaseMiddleware& rLoja, const SFiltroTeste& rFiltro = {}) {
    const SBuscaFeita feita = XVBuscaComCodigo(rLoja, rFiltro);
    EXPECT_EQ(feita.hr, S_OK);
    return feita.lista;
}

class CXVCenarioLoja : public CXVCenarioSuite {
  protected:
    // Every opening for writing fills a ring; of one of the usual size that is most of a sweep's time.
    CXVCenarioLoja() { CXVDiarioAnel::SetTamanhoAnel(64U << 10); }
    ~CXVCenarioLoja() override { CXVDiarioAnel::SetTamanhoAnel(1U << 20); }

    // An open store; null and a failed test when it does not open.
    TLoja Abre(XVUShort usUsuario = 7, const std::string& sEmpresa = "MATRIZ", XVUInt ulSessao = 99) const {
        auto pLoja = std::make_unique<CBaseMiddleware>();
        const CXVDonoFixo dono(sEmpresa, usUsuario, ulSessao);
        const HRESULT hr = pLoja->Inicializa(&dono);
        EXPECT_EQ(hr, S_OK);
        return SUCCEEDED(hr) ? std::move(pLoja) : nullptr;
    }
    // Records a new one that must succeed.
    static REG_XVDMC Grava(CBaseMiddleware& rLoja, CXVIntegracaoTeste integracao) {
        REG_XVDMC regDmc;
        EXPECT_EQ(rLoja.GravaIntegracao(&regDmc, integracao.Ptr()), S_OK);
        return regDmc;
    }
    std::string Conteudo(const std::string& sNome) const {
        return m_Arquivos.LeConteudo(PastaDados(sNome)).value_or("<ausente>");
    }
    static std::string Dados(const std::string& sConteudo) {
        return sConteudo.size() < 240 ? sConteudo : sConteudo.substr(240);
    }
    std::string LogGeral() const { return Conteudo("XVLogGeral_202403.log"); }
    // All files of the data directory but the logs.
    CXVSistemaArquivosMemoria::TRetrato RetratoSemLogs() const {
        auto retrato = m_Arquivos.Retrata();
        std::erase_if(retrato, [](const auto& it) { return it.first.ends_with(".log"); });
        return retrato;
    }
    void SetDia(unsigned uiDia, unsigned uiHora = 12) {
        m_Relogio.SetUTC({2024, 3, static_cast<XVByte>(uiDia), static_cast<XVByte>(uiHora), 0, 0});
    }

    CXVCapturaTrace m_Captura;  // failures are expected here; nothing goes to a log
};
