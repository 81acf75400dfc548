#include "bench/compare/XVBenchLoja.h"

#include <cstdio>
#include <filesystem>

#include "contract/XVCR_BuffersPS.h"
#include "middleware/BaseMiddleware.h"

namespace {

SDataHora MeioDia(unsigned uiDia) {
    const REG_XVDMA dma = CXVGeradorBench::Data(uiDia);
    return {static_cast<XVUShort>(dma.GetAno()),
            static_cast<XVByte>(dma.GetMes()),
            static_cast<XVByte>(dma.GetDia()),
            12,
            0,
            0};
}

void Exige(HRESULT hr, const char* pszO) {
    if (SUCCEEDED(hr)) return;
    char szCodigo[16];
    std::snprintf(szCodigo, sizeof(szCodigo), ": 0x%08X", static_cast<unsigned>(hr));
    XVTermina(std::string(pszO) + szCodigo);
}

// A list of a record that only goes in: nobody writes through it.
void Empresta(const std::vector<XVUInt>& rLista, XVUInt* pulQuantidade, XVUInt** ppLista) {
    *pulQuantidade = static_cast<XVUInt>(rLista.size());
    *ppLista = const_cast<XVUInt*>(rLista.data());
}

class CDono final : public IXVDF_Profiler {
  public:
    explicit CDono(std::string sEmpresa) : m_sEmpresa(std::move(sEmpresa)) {}
    std::string_view GetEmpresa() const override { return m_sEmpresa; }
    XVUShort GetUsuario() const override { return 1; }
    XVUInt GetNumeroSessao() const override { return 1; }

  private:
    std::string m_sEmpresa;
};

class CXVLojaBench final : public IXVBenchAdversario {
  public:
    CXVLojaBench(CXVAmbienteBench& rAmbiente, const SAberturaBench& rAbertura)
        : m_rAmbiente(rAmbiente), m_pasta(rAbertura.sPasta), m_dono(m_pasta.filename().string()) {
        rAmbiente.SetDuracao(rAbertura.eDuracao);
        std::filesystem::create_directories(m_pasta / "DF");
        Exige(m_loja.Inicializa(&m_dono), "Inicializa");
    }
    ~CXVLojaBench() override {
        Libera();
        Exige(m_loja.Finaliza(), "Finaliza");
    }

    void Grava(const SIntegracaoBench& rIntegracao) override;
    void GravaStatus(const SStatusBench& rStatus) override;
    SLidaBench Le(REG_XVDMC regDmc) override;
    std::span<const REG_XVDMC> Busca(const SFiltroBench& rFiltro) override;
    XVUInt64 BytesEmDisco() override;

  private:
    // What the last answer lent.
    void Libera() {
        XVLiberaBuffers(&m_regLida);
        XVLiberaBuffers(&m_regAchadas);
    }

    CXVAmbienteBench& m_rAmbiente;
    std::filesystem::path m_pasta;
    CDono m_dono;
    CBaseMiddleware m_loja;
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS m_regLida{};
    _REG_DF_LISTA_XVDMCPS m_regAchadas{};
};

void CXVLojaBench::Grava(const SIntegracaoBench& rIntegracao) {
    m_rAmbiente.SetDia(rIntegracao.uiDia);
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.regRegistroJSON = CXVStringPS::Vista(rIntegracao.sJSON);
    reg.regMensagemIntegracao = CXVStringPS::Vista(rIntegracao.sMensagem);
    reg.regJSONRetornoIntegracao = CXVStringPS::Vista(rIntegracao.sRetorno);
    reg.uiChaveIntegracaoSistemaTerceiro = rIntegracao.uiChave;
    reg.eSistemaIntegracao = rIntegracao.eSistema;
    reg.eStatusIntegracao = rIntegracao.eStatus;
    reg.eTipoIntegracao = rIntegracao.eTipo;
    reg.eTipoTransacao = eXVSMiddleware_Inclusao;
    REG_XVDMC regDmc;
    Exige(m_loja.GravaIntegracao(&regDmc, &reg), "GravaIntegracao");
    if (regDmc != rIntegracao.regDmc && !rIntegracao.bQualquerPosicao)
        XVTermina("the store gave " + regDmc.ToString() + " to " + rIntegracao.regDmc.ToString());
}

void CXVLojaBench::GravaStatus(const SStatusBench& rStatus) {
    m_rAmbiente.SetDia(rStatus.uiDia);
    tagREG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.regMensagemIntegracao = CXVStringPS::Vista(rStatus.sMensagem);
    reg.regJSONRetornoIntegracao = CXVStringPS::Vista(rStatus.sRetorno);
    reg.uiChaveIntegracaoSistemaTerceiro = rStatus.uiChave;
    reg.eStatusIntegracao = rStatus.eStatus;
    reg.eSistemaIntegracao = rStatus.eSistema;
    Exige(m_loja.GravaStatusIntegracao(reg), "GravaStatusIntegracao");
}

SLidaBench CXVLojaBench::Le(REG_XVDMC regDmc) {
    Libera();
    Exige(m_loja.LeIntegracao(regDmc, &m_regLida, k_ullLeTextos), "LeIntegracao");
    return {m_regLida.uiChaveIntegracaoSistemaTerceiro,
            m_regLida.eSistemaIntegracao,
            m_regLida.eStatusIntegracao,
            m_regLida.eTipoIntegracao,
            CXVStringPS::RegToString(m_regLida.regRegistroJSON),
            CXVStringPS::RegToString(m_regLida.regMensagemIntegracao),
            CXVStringPS::RegToString(m_regLida.regJSONRetornoIntegracao)};
}

std::span<const REG_XVDMC> CXVLojaBench::Busca(const SFiltroBench& rFiltro) {
    Libera();
    tagREG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.uiChaveIntegracaoSistemaTerceiroInicial = rFiltro.uiChaveInicial;
    // With a system and no final key the store finds the first key itself.
    if (!rFiltro.EhExato()) reg.uiChaveIntegracaoSistemaTerceiroFinal = rFiltro.uiChaveFinal;
    if (!rFiltro.diaInicial.EhNula())
        reg.regDataHoraInicialInclusao = REG_XVDMAHMSUTC::Cria(rFiltro.diaInicial, 0);
    if (!rFiltro.diaFinal.EhNula()) reg.regDataHoraFinalInclusao = REG_XVDMAHMSUTC::Cria(rFiltro.diaFinal, 0);
    Empresta(rFiltro.listaTipos, &reg.ulQuantidadeTipoIntegracao, &reg.pListaTipoIntegracao);
    Empresta(rFiltro.listaStatus, &reg.ulQuantidadeStatusIntegracao, &reg.pListaStatusIntegracao);
    Empresta(rFiltro.listaSistemas, &reg.ulQuantidadeSistemaIntegracao, &reg.pListaSistemaIntegracao);
    Exige(m_loja.BuscaPonteiros(reg, &m_regAchadas), "BuscaPonteiros");
    return {m_regAchadas.pLista, m_regAchadas.ulQuantidade};
}

XVUInt64 CXVLojaBench::BytesEmDisco() {
    // The journal is there only while the store is open, as SQLite's log is, which is not counted either.
    XVUInt64 uiBytes = 0;
    for (const auto& rEntrada : std::filesystem::directory_iterator(m_pasta / "DF"))
        if (rEntrada.path().extension() == ".dat") uiBytes += rEntrada.file_size();
    return uiBytes;
}

}  // namespace

CXVAmbienteBench::CXVAmbienteBench(std::string sPasta) : m_sPasta(std::move(sPasta)), m_agora(MeioDia(0)) {
    XVPlataforma::TrocaRegistry(this);
    XVPlataforma::TrocaRelogio(this);
}

CXVAmbienteBench::~CXVAmbienteBench() {
    XVPlataforma::TrocaRelogio(nullptr);
    XVPlataforma::TrocaRegistry(nullptr);
}

void CXVAmbienteBench::SetDia(unsigned uiDia) {
    if (uiDia == m_uiDia) return;
    m_uiDia = uiDia;
    m_agora = MeioDia(uiDia);
}

std::optional<std::string> CXVAmbienteBench::LeTexto(std::string_view, std::string_view sValor) {
    if (sValor != "Path") return std::nullopt;
    return m_sPasta;
}

std::optional<XVUInt> CXVAmbienteBench::LeNumero(std::string_view, std::string_view sValor) {
    if (sValor != "Durabilidade") return std::nullopt;
    return m_eDuracao == EDuracaoBench::eDispositivo ? 1 : 0;
}

std::unique_ptr<IXVBenchAdversario> XVAbreLoja(CXVAmbienteBench& rAmbiente, const SAberturaBench& rAbertura) {
    return std::make_unique<CXVLojaBench>(rAmbiente, rAbertura);
}
