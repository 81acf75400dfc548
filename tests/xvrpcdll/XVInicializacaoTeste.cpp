// The initialisation record: which ones a component accepts, and what refusals leave behind.
#include "support/messages/XVMensagens.h"
#include "support/values/XVCrc64.h"
#include "tests/xvrpcdll/XVCenarioComponente.h"

namespace {

using TAltera = std::function<void(REG_DF_INICIALIZAPS&)>;

class CInicializacao : public CCenarioComponente {
  protected:
    static HRESULT InicializaAlterado(CComponenteFalso& r, const TAltera& fnAltera, bool bSela = true) {
        REG_DF_INICIALIZAPS reg = RegistroValido();
        fnAltera(reg);
        if (bSela) reg.uiCRC = XVCrc64(&reg, offsetof(REG_DF_INICIALIZAPS, uiCRC));
        return r.Inicializa_Padrao(&reg);
    }
    void DesligaControle() {
        m_registry.SetNumero(k_sChaveRegistrySuite, "DesabilitaControleInicializacao", 1);
    }
    // Whether the component holds this record.
    static bool Guarda(CComponenteFalso& r, const REG_DF_INICIALIZAPS& reg) {
        const REG_DF_INICIALIZAPS guardado = r.GetRegistroInicializacao();
        return std::memcmp(&guardado, &reg, sizeof(reg)) == 0;
    }
};

}  // namespace

TEST_F(CInicializacao, DeNovoFinalizaAntesEUmaRecusaNaoMudaNada) {
    const REG_DF_INICIALIZAPS reg = RegistroValido();
    EXPECT_TRUE(Guarda(*m_p, {}));
    ASSERT_EQ(m_p->Inicializa(&reg), S_OK);
    EXPECT_TRUE(m_captura.GetFalhas().empty());
    EXPECT_EQ(InicializaAlterado(
                  *m_p, [](auto& r) { r.uiCRC ^= 1; }, false),
              E_XVCR_CRC_INICIALIZACAO_INVALIDO);
    EXPECT_EQ(m_controle.iFinalizacoes, 0);
    EXPECT_TRUE(Guarda(*m_p, reg));
    EXPECT_EQ(InicializaAlterado(*m_p, [](auto& r) { r.ulUsuario = 8; }), S_OK);
    EXPECT_EQ(m_controle.iFinalizacoes, 1);
    EXPECT_EQ(m_controle.iVivas, 1);
    EXPECT_FALSE(Guarda(*m_p, reg));
}

TEST_F(CInicializacao, RecusaNaOrdemComCodigoELinhaDeCadaFalta) {
    constexpr HRESULT hrEstrutura = E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA;
    const struct {
        TAltera fnAltera;
        bool bSela;
        HRESULT hr;
        XVUInt ulLinha;
    } aCasos[] = {
        // Everything is wrong at once: the version speaks first, then the seal, then the structure.
        {[](auto& r) { r.usVersao = 126, r.cMarca = 'A', r.uiCRC = 0; }, false, E_XVCR_VERSAO_INCOMPATIVEL,
         36},
        {[](auto& r) { r.usVersao = 128; }, false, E_XVCR_VERSAO_INCOMPATIVEL, 36},
        {[](auto& r) { r.cMarca = 'A', r.uiCRC ^= 1; }, false, E_XVCR_CRC_INICIALIZACAO_INVALIDO, 45},
        {[](auto& r) { r.cFiller[21] ^= 1; }, false, E_XVCR_CRC_INICIALIZACAO_INVALIDO, 45},
        {[](auto& r) { r.ulNumeroChamador = 0; }, true, hrEstrutura, 62},
        {[](auto& r) { r.szExecutavel[0] = 0; }, true, hrEstrutura, 62},
        {[](auto& r) { r.szModulo[0] = 0; }, true, hrEstrutura, 62},
        {[](auto& r) { r.szIdentificacao[0] = 0; }, true, hrEstrutura, 62},
        {[](auto& r) { r.cMarca = 'b'; }, true, hrEstrutura, 62},
    };
    for (const auto& rCaso : aCasos) {
        const CXVCapturaTrace captura;
        EXPECT_EQ(InicializaAlterado(*m_p, rCaso.fnAltera, rCaso.bSela), rCaso.hr);
        EXPECT_TRUE(Guarda(*m_p, {}));
        ASSERT_EQ(captura.GetFalhas().size(), 1U);
        const SFalhaCapturada& rFalha = captura.GetFalhas().front();
        EXPECT_EQ(rFalha.sExpressao, XVBuscaMensagem(rCaso.hr)->sNome);
        EXPECT_EQ(static_cast<XVUInt>(rFalha.iLinha), rCaso.ulLinha);
        EXPECT_EQ(rFalha.sFonte, "core/xvrpcdll/T_XVUnknown");
        EXPECT_EQ(rFalha.sFuncao,
                  "T_XVUnknown<struct IXVCR_Middleware,class CLogicaFalsa>::Inicializa_Padrao");
        REG_DF_ULTIMO_ERROPS regErro;
        EXPECT_EQ(m_p->GetUltimoErro(&regErro), S_OK);
        EXPECT_EQ(regErro.hrErro, rCaso.hr);
        EXPECT_EQ(regErro.ulLinha, rCaso.ulLinha);
    }
}

// With the control or without: what comes from outside is read only as far as its field goes, and names no
// directory but its own.
TEST_F(CInicializacao, ControleDesligadoSoDispensaSeloEEstrutura) {
    constexpr HRESULT hrEstrutura = E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA;
    const std::pair<TAltera, HRESULT> aCasos[] = {
        {[](auto& r) { std::memset(r.szEmpresa, 'E', sizeof(r.szEmpresa)); }, hrEstrutura},
        {[](auto& r) { std::memset(r.szExecutavel, 'E', sizeof(r.szExecutavel)); }, hrEstrutura},
        {[](auto& r) { std::memset(r.szModulo, 'E', sizeof(r.szModulo)); }, hrEstrutura},
        {[](auto& r) { std::memset(r.szIdentificacao, 'E', sizeof(r.szIdentificacao)); }, hrEstrutura},
        {[](auto& r) { std::memset(r.szUsuarioLocal, 'E', sizeof(r.szUsuarioLocal)); }, hrEstrutura},
        {[](auto& r) { r.ulUsuario = 65535; }, E_INVALIDARG},
        {[](auto& r) { r.ulUsuario = 0x1FFFF; }, E_INVALIDARG},
        {[](auto& r) { r.szEmpresa[0] = 0; }, E_INVALIDARG},
        {[](auto& r) { r.szEmpresa[1] = '/'; }, E_INVALIDARG},
        {[](auto& r) { r.usVersao = 126; }, E_XVCR_VERSAO_INCOMPATIVEL},
    };
    for (const bool bControle : {true, false}) {
        if (!bControle) DesligaControle();
        for (const auto& [fnAltera, hr] : aCasos) {
            EXPECT_EQ(InicializaAlterado(*m_p, fnAltera), hr);
            EXPECT_TRUE(Guarda(*m_p, {}));
        }
    }
    const auto fnSemSelo = [](auto& r) { r.cMarca = 0, r.ulNumeroChamador = 0, r.uiCRC = 5; };
    EXPECT_EQ(InicializaAlterado(*m_p, fnSemSelo, false), S_OK);
}

// Also what is thrown before the frame begins stays inside.
TEST_F(CInicializacao, RegistroDoSistemaQueLancaViraCodigo) {
    m_registry.fnAoLer = [] { throw std::bad_alloc(); };
    EXPECT_EQ(Inicializa(*m_p), E_XV_BAD_ALLOC);
    EXPECT_TRUE(Guarda(*m_p, {}));
}

TEST_F(CInicializacao, FalhaDaLogicaZeraACopiaEPermiteTentarDeNovo) {
    m_controle.hrInicializa = eSharingViolation;
    EXPECT_EQ(Inicializa(*m_p), eSharingViolation);
    EXPECT_TRUE(Guarda(*m_p, {}));
    EXPECT_TRUE(m_captura.Contem("pfInSEHFuncao()"));
    EXPECT_EQ(Chama(*m_p), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    REG_DF_ULTIMO_ERROPS regErro;
    EXPECT_EQ(m_p->GetUltimoErro(&regErro), S_OK);
    EXPECT_EQ(regErro.hrErro, eSharingViolation) << "what refused the store, not that there is none";
    EXPECT_STREQ(regErro.szFuncao,
                 "T_XVUnknown<struct IXVCR_Middleware,class CLogicaFalsa>::Inicializa_Padrao");
    m_controle.hrInicializa = S_OK;
    EXPECT_EQ(Inicializa(*m_p), S_OK);

    m_controle.bConstrucaoLanca = true;
    const CReferencia p;
    EXPECT_EQ(p->GetResultadoConstrucao(), E_XV_BAD_ALLOC);
    EXPECT_EQ(Inicializa(*p), E_XV_BAD_ALLOC);
    EXPECT_EQ(p->Inicializa_Padrao(nullptr), E_POINTER);
}
