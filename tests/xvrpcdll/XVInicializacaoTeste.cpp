// The initialisation record: which ones a component accepts, and what refusals leave behind.
#include <gtest/gtest.h>

#include <functional>
#include <new>

#include "support/trace/XVCapturaTrace.h"
#include "support/values/XVCrc64.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/xvrpcdll/XVLogicaFalsa.h"

namespace {

class CInicializacao : public ::testing::Test {
  protected:
    CXVRegistryFalso m_registry;
    CXVGuardaRegistry m_guarda{m_registry};
    SControleLogica m_controle;
    CXVCapturaTrace m_captura;

    static REG_DF_INICIALIZAPS Altera(const std::function<void(REG_DF_INICIALIZAPS&)>& fnAltera,
                                      bool bSela = true) {
        REG_DF_INICIALIZAPS reg = RegistroValido();
        fnAltera(reg);
        if (bSela) reg.uiCRC = XVCrc64(&reg, offsetof(REG_DF_INICIALIZAPS, uiCRC));
        return reg;
    }
    void DesligaControle() {
        m_registry.SetNumero(k_sChaveRegistrySuite, "DesabilitaControleInicializacao", 1);
    }
};

bool MesmosBytes(const REG_DF_INICIALIZAPS& a, const REG_DF_INICIALIZAPS& b) {
    return std::memcmp(&a, &b, sizeof(a)) == 0;
}

bool TudoZero(const REG_DF_INICIALIZAPS& reg) {
    return MesmosBytes(reg, REG_DF_INICIALIZAPS{});
}

}  // namespace

TEST_F(CInicializacao, AceitaRegistroSeladoNosDoisSlotsEGuardaCopia) {
    const REG_DF_INICIALIZAPS reg = RegistroValido();
    const CReferencia<CComponenteFalso> p;
    EXPECT_TRUE(TudoZero(p->GetRegistroInicializacao()));
    EXPECT_EQ(p->Inicializa_Padrao(&reg), S_OK);
    EXPECT_TRUE(MesmosBytes(reg, p->GetRegistroInicializacao()));
    const CReferencia<CComponenteFalso> q;
    EXPECT_EQ(q->Inicializa(&reg), S_OK);
    EXPECT_TRUE(m_captura.GetFalhas().empty());
}

TEST_F(CInicializacao, RecusaNaOrdemComCodigoELinhaDeCadaFalta) {
    struct SCaso {
        std::function<void(REG_DF_INICIALIZAPS&)> fnAltera;
        bool bSela;
        HRESULT hr;
        const char* pszExpressao;
        int iLinha;
    };
    const SCaso aCasos[] = {
        // Everything is wrong at once: the version speaks first, then the seal, then the structure.
        {[](auto& r) { r.usVersao = 126, r.cMarca = 'A', r.uiCRC = 0; }, false, E_XVCR_VERSAO_INCOMPATIVEL,
         "E_XVCR_VERSAO_INCOMPATIVEL", 36},
        {[](auto& r) { r.usVersao = 128; }, false, E_XVCR_VERSAO_INCOMPATIVEL, "E_XVCR_VERSAO_INCOMPATIVEL",
         36},
        {[](auto& r) { r.cMarca = 'A', r.uiCRC ^= 1; }, false, E_XVCR_CRC_INICIALIZACAO_INVALIDO,
         "E_XVCR_CRC_INICIALIZACAO_INVALIDO", 45},
        {[](auto& r) { r.cFiller[21] ^= 1; }, false, E_XVCR_CRC_INICIALIZACAO_INVALIDO,
         "E_XVCR_CRC_INICIALIZACAO_INVALIDO", 45},
        {[](auto& r) { r.ulNumeroChamador = 0; }, true, E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA,
         "E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA", 62},
        {[](auto& r) { r.szExecutavel[0] = 0; }, true, E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA,
         "E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA", 62},
        {[](auto& r) { r.szModulo[0] = 0; }, true, E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA,
         "E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA", 62},
        {[](auto& r) { r.szIdentificacao[0] = 0; }, true, E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA,
         "E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA", 62},
        {[](auto& r) { r.cMarca = 'b'; }, true, E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA,
         "E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA", 62},
    };
    for (const SCaso& rCaso : aCasos) {
        const CXVCapturaTrace captura;
        const REG_DF_INICIALIZAPS reg = Altera(rCaso.fnAltera, rCaso.bSela);
        const CReferencia<CComponenteFalso> p;
        EXPECT_EQ(p->Inicializa_Padrao(&reg), rCaso.hr);
        EXPECT_TRUE(TudoZero(p->GetRegistroInicializacao()));
        ASSERT_EQ(captura.GetFalhas().size(), 1U);
        const SFalhaCapturada& rFalha = captura.GetFalhas().front();
        EXPECT_EQ(rFalha.sExpressao, rCaso.pszExpressao);
        EXPECT_EQ(rFalha.iLinha, rCaso.iLinha);
        EXPECT_EQ(rFalha.sFonte, "core/xvrpcdll/T_XVUnknown");
        EXPECT_EQ(rFalha.sFuncao,
                  "T_XVUnknown<struct IXVCR_Middleware,class CLogicaFalsa>::Inicializa_Padrao");
        REG_DF_ULTIMO_ERROPS regErro;
        EXPECT_EQ(p->GetUltimoErro(&regErro), S_OK);
        EXPECT_EQ(regErro.hrErro, rCaso.hr);
        EXPECT_EQ(regErro.ulLinha, static_cast<XVUInt>(rCaso.iLinha));
    }
}

TEST_F(CInicializacao, ControleDesligadoDispensaSeloEMarcaMasNaoAVersao) {
    DesligaControle();
    const REG_DF_INICIALIZAPS regSemSelo =
        Altera([](auto& r) { r.cMarca = 0, r.ulNumeroChamador = 0, r.uiCRC = 5; }, false);
    const CReferencia<CComponenteFalso> p;
    EXPECT_EQ(p->Inicializa_Padrao(&regSemSelo), S_OK);
    const REG_DF_INICIALIZAPS regVersao = Altera([](auto& r) { r.usVersao = 126; });
    EXPECT_EQ(p->Inicializa_Padrao(&regVersao), E_XVCR_VERSAO_INCOMPATIVEL);
}

// Sealed or not, with the control or without: what comes from outside is read only as far as its field goes.
TEST_F(CInicializacao, TextosSemTerminadorSaoSempreRecusados) {
    const std::function<void(REG_DF_INICIALIZAPS&)> aAlteracoes[] = {
        [](auto& r) { std::memset(r.szEmpresa, 'E', sizeof(r.szEmpresa)); },
        [](auto& r) { std::memset(r.szExecutavel, 'E', sizeof(r.szExecutavel)); },
        [](auto& r) { std::memset(r.szModulo, 'E', sizeof(r.szModulo)); },
        [](auto& r) { std::memset(r.szIdentificacao, 'E', sizeof(r.szIdentificacao)); },
        [](auto& r) { std::memset(r.szUsuarioLocal, 'E', sizeof(r.szUsuarioLocal)); },
    };
    for (const bool bControle : {true, false}) {
        if (!bControle) DesligaControle();
        for (const auto& fnAltera : aAlteracoes) {
            const REG_DF_INICIALIZAPS reg = Altera(fnAltera);
            const CReferencia<CComponenteFalso> p;
            EXPECT_EQ(p->Inicializa_Padrao(&reg), E_XVCR_ESTRUTURA_INICIALIZACAO_INVALIDA);
        }
    }
}

// Also what is thrown before the frame begins stays inside.
TEST_F(CInicializacao, RegistroDoSistemaQueLancaViraCodigo) {
    class CRegistroSemMemoria final : public IXVRegistry {
        std::optional<std::string> LeTexto(std::string_view, std::string_view) override { return {}; }
        std::optional<XVUInt> LeNumero(std::string_view, std::string_view) override {
            throw std::bad_alloc();
        }
    };
    const REG_DF_INICIALIZAPS reg = RegistroValido();
    const CReferencia<CComponenteFalso> p;
    {
        CRegistroSemMemoria registry;
        const CXVGuardaRegistry guarda(registry);
        EXPECT_EQ(p->Inicializa_Padrao(&reg), E_XV_BAD_ALLOC);
    }
    EXPECT_TRUE(TudoZero(p->GetRegistroInicializacao()));
    EXPECT_EQ(p->Inicializa_Padrao(&reg), S_OK);
}

TEST_F(CInicializacao, UsuarioDaConversaoEEmpresaQueNaoEhNomeSaoRecusados) {
    DesligaControle();
    const auto recusado = [&](const std::function<void(REG_DF_INICIALIZAPS&)>& fnAltera) {
        const REG_DF_INICIALIZAPS reg = Altera(fnAltera);
        const CReferencia<CComponenteFalso> p;
        return p->Inicializa_Padrao(&reg) == E_INVALIDARG && TudoZero(p->GetRegistroInicializacao());
    };
    EXPECT_TRUE(recusado([](auto& r) { r.ulUsuario = 65535; }));
    EXPECT_TRUE(recusado([](auto& r) { r.ulUsuario = 0x1FFFF; }));
    for (const char* pszEmpresa : {"", "..", "a/b", "a\\b", "CON", "lpt1", "a b", "C:"})
        EXPECT_TRUE(recusado([&](auto& r) {
            std::memset(r.szEmpresa, 0, sizeof(r.szEmpresa));
            std::memcpy(r.szEmpresa, pszEmpresa, std::strlen(pszEmpresa));
        })) << pszEmpresa;
}

TEST_F(CInicializacao, FalhaDaLogicaZeraACopiaEPermiteTentarDeNovo) {
    const REG_DF_INICIALIZAPS reg = RegistroValido();
    m_controle.hrInicializa = eSharingViolation;
    const CReferencia<CComponenteFalso> p;
    EXPECT_EQ(p->Inicializa_Padrao(&reg), eSharingViolation);
    EXPECT_TRUE(TudoZero(p->GetRegistroInicializacao()));
    EXPECT_TRUE(m_captura.Contem("pfInSEHFuncao()"));
    EXPECT_EQ(p->GravaStatusIntegracao(nullptr), E_XVCR_COMPONENTE_NAO_INICIALIZADO);
    m_controle.hrInicializa = S_OK;
    EXPECT_EQ(p->Inicializa_Padrao(&reg), S_OK);
}

TEST_F(CInicializacao, DeNovoFinalizaAntesEUmaRecusaNaoMudaNada) {
    const REG_DF_INICIALIZAPS reg = RegistroValido();
    const CReferencia<CComponenteFalso> p;
    ASSERT_EQ(p->Inicializa_Padrao(&reg), S_OK);
    const REG_DF_INICIALIZAPS regRuim = Altera([](auto& r) { r.uiCRC ^= 1; }, false);
    EXPECT_EQ(p->Inicializa_Padrao(&regRuim), E_XVCR_CRC_INICIALIZACAO_INVALIDO);
    EXPECT_EQ(m_controle.iFinalizacoes, 0);
    EXPECT_TRUE(MesmosBytes(reg, p->GetRegistroInicializacao()));
    const REG_DF_INICIALIZAPS regOutro = Altera([](auto& r) { r.ulUsuario = 8; });
    EXPECT_EQ(p->Inicializa_Padrao(&regOutro), S_OK);
    EXPECT_EQ(m_controle.iFinalizacoes, 1);
    EXPECT_EQ(m_controle.iVivas, 1);
}

TEST_F(CInicializacao, ConstrucaoQueLancaRespondeAInicializacaoComSeuCodigo) {
    m_controle.bConstrucaoLanca = true;
    const CReferencia<CComponenteFalso> p;
    EXPECT_EQ(p->GetResultadoConstrucao(), E_XV_BAD_ALLOC);
    const REG_DF_INICIALIZAPS reg = RegistroValido();
    EXPECT_EQ(p->Inicializa_Padrao(&reg), E_XV_BAD_ALLOC);
    EXPECT_EQ(p->Inicializa_Padrao(nullptr), E_POINTER);
}
