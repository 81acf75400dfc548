#include "client/XVCliente.h"

#include <limits>

#include "client/XVConexao.h"

namespace XVCliente {

namespace {

constexpr HResult k_hrArgumento = static_cast<HResult>(0x80070057U);
constexpr HResult k_hrNaoConectado =
    static_cast<HResult>(0x81080A04U);  // the component's own "not initialised"

// An array of integrations that COM allocated, with the texts of each.
class CListaIntegracoes {
  public:
    CListaIntegracoes() = default;
    ~CListaIntegracoes() {
        for (ULONG i = 0; m_pLista != nullptr && i < m_ulQuantidade; ++i) Libera(m_pLista[i]);
        ::CoTaskMemFree(m_pLista);
    }
    CListaIntegracoes(const CListaIntegracoes&) = delete;
    CListaIntegracoes& operator=(const CListaIntegracoes&) = delete;

    ULONG m_ulQuantidade = 0;
    REG_CR_INTEGRACAO_MIDDLEWAREPS* m_pLista = nullptr;
};

bool ParaRegistro(const std::vector<std::uint64_t>& lista, _REG_DF_LISTA_XVDMCPS* pReg) {
    static_assert(sizeof(REG_XVDMC) == sizeof(std::uint64_t));
    *pReg = {};
    if (lista.size() > std::numeric_limits<ULONG>::max()) return false;
    pReg->ulQuantidade = static_cast<ULONG>(lista.size());
    if (!lista.empty()) pReg->pLista = reinterpret_cast<REG_XVDMC*>(const_cast<std::uint64_t*>(lista.data()));
    return true;
}

}  // namespace

CApartamento::CApartamento() : m_hr(::CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
CApartamento::~CApartamento() {
    if (m_hr >= 0) ::CoUninitialize();
}

CXVCliente::CXVCliente() = default;
CXVCliente::~CXVCliente() = default;

HResult CXVCliente::Conecta(const SIdentificacao& rIdentificacao) {
    Desconecta();
    REG_DF_INICIALIZAPS reg;
    if (!MontaRegistroInicializacao(rIdentificacao, &reg)) return k_hrArgumento;
    m_pConexao = std::make_unique<CConexao>(reg);
    return m_pConexao->Abre();
}

HResult CXVCliente::Reconecta() {
    return m_pConexao == nullptr ? k_hrNaoConectado : m_pConexao->Abre();
}

void CXVCliente::Desconecta() {
    m_pConexao.reset();
}

bool CXVCliente::EstaConectado() const {
    return m_pConexao != nullptr && m_pConexao->EstaAberta();
}

HResult CXVCliente::GravaIntegracao(std::uint64_t* puiDmc, const SIntegracao& rDados) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    REG_CR_INTEGRACAO_MIDDLEWAREPS reg;
    if (!ParaRegistro(rDados, &reg)) return k_hrArgumento;
    REG_XVDMC regDmc{*puiDmc};
    const HResult hr =
        m_pConexao->Executa(false, [&](IXVCR_Middleware& r) { return r.GravaIntegracao(&regDmc, &reg); });
    *puiDmc = regDmc.uiValor;
    return hr;
}

HResult CXVCliente::GravaIntegracaoInstantanea(std::uint64_t* puiDmc, const SIntegracao& rDados) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    REG_CR_INTEGRACAO_MIDDLEWAREPS reg;
    if (!ParaRegistro(rDados, &reg)) return k_hrArgumento;
    REG_XVDMC regDmc{*puiDmc};
    const HResult hr = m_pConexao->Executa(
        false, [&](IXVCR_Middleware& r) { return r.GravaIntegracaoInstantanea(&regDmc, &reg); });
    *puiDmc = regDmc.uiValor;
    return hr;
}

HResult CXVCliente::GravaPendenciaIntegracao(std::uint64_t uiDmcOrigem, const SIntegracao& rDados) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    REG_CR_INTEGRACAO_MIDDLEWAREPS reg;
    if (!ParaRegistro(rDados, &reg)) return k_hrArgumento;
    return m_pConexao->Executa(
        false, [&](IXVCR_Middleware& r) { return r.GravaPendenciaIntegracao(uiDmcOrigem, &reg); });
}

HResult CXVCliente::GravaStatusIntegracao(const SStatusIntegracao& rDados) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    REG_CR_STATUS_INTEGRACAO_MIDDLEWAREPS reg;
    if (!ParaRegistro(rDados, &reg)) return k_hrArgumento;
    return m_pConexao->Executa(false, [&](IXVCR_Middleware& r) { return r.GravaStatusIntegracao(&reg); });
}

HResult CXVCliente::LeIntegracao(std::uint64_t uiDmc, std::uint64_t uiFlags, SIntegracao* pDados) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    TSaida<REG_CR_INTEGRACAO_MIDDLEWAREPS> saida;
    const HResult hr = m_pConexao->Executa(
        true, [&](IXVCR_Middleware& r) { return r.LeIntegracao(uiDmc, &saida, uiFlags); });
    if (hr >= 0) *pDados = DeRegistro(saida.Get());
    return hr;
}

HResult CXVCliente::LeIntegracoes(const std::vector<std::uint64_t>& listaDmc, std::uint64_t uiFlags,
                                  std::vector<SIntegracao>* pLista) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    _REG_DF_LISTA_XVDMCPS regLista;
    if (!ParaRegistro(listaDmc, &regLista)) return k_hrArgumento;
    CListaIntegracoes saida;
    const HResult hr = m_pConexao->Executa(true, [&](IXVCR_Middleware& r) {
        return r.LeIntegracoes(&regLista, &saida.m_ulQuantidade, &saida.m_pLista, uiFlags);
    });
    if (hr < 0) return hr;
    pLista->clear();
    pLista->reserve(saida.m_ulQuantidade);
    for (ULONG i = 0; i < saida.m_ulQuantidade; ++i) pLista->push_back(DeRegistro(saida.m_pLista[i]));
    return hr;
}

HResult CXVCliente::BuscaPonteiros(const SFiltroIntegracao& rFiltro, std::vector<std::uint64_t>* pLista) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    REG_CR_FILTRO_INTEGRACAO_MIDDLEWAREPS reg;
    if (!ParaRegistro(rFiltro, &reg)) return k_hrArgumento;
    TSaida<_REG_DF_LISTA_XVDMCPS> saida;
    const HResult hr =
        m_pConexao->Executa(true, [&](IXVCR_Middleware& r) { return r.BuscaPonteiros(&reg, &saida); });
    if (hr < 0) return hr;
    pLista->clear();
    pLista->reserve(saida.Get().ulQuantidade);
    for (ULONG i = 0; i < saida.Get().ulQuantidade; ++i) pLista->push_back(saida.Get().pLista[i].uiValor);
    return hr;
}

HResult CXVCliente::GravaChaveRegistro(const SChaveRegistro& rDados) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    const auto reg = ParaRegistro(rDados);
    return m_pConexao->Executa(
        false, [&](IXVCR_Middleware& r) { return r.GravaChaveRegistroTelvoParaTerceiro(&reg); });
}

HResult CXVCliente::GravaChaveRegistroPendente(const SChaveRegistro& rDados) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    const auto reg = ParaRegistro(rDados);
    return m_pConexao->Executa(
        false, [&](IXVCR_Middleware& r) { return r.GravaChaveRegistroTelvoParaTerceiroPendente(&reg); });
}

HResult CXVCliente::BuscaChaveRegistro(const SChaveRegistro& rFiltro, SChaveRegistro* pDados) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    const auto reg = ParaFiltro(rFiltro);
    REG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS regAchado{};
    const HResult hr = m_pConexao->Executa(
        true, [&](IXVCR_Middleware& r) { return r.BuscaChaveRegistroTelvoParaTerceiro(&reg, &regAchado); });
    if (hr >= 0) *pDados = DeRegistro(regAchado);
    return hr;
}

HResult CXVCliente::GravaDataHora(const SDataHoraIntegracao& rDados) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    const auto reg = ParaRegistro(rDados);
    return m_pConexao->Executa(false,
                               [&](IXVCR_Middleware& r) { return r.GravaDataHoraIntegracaoTerceiro(&reg); });
}

HResult CXVCliente::BuscaDataHora(const SDataHoraIntegracao& rFiltro, SDataHoraIntegracao* pDados) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    const auto reg = ParaFiltro(rFiltro);
    REG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS regAchado{};
    const HResult hr = m_pConexao->Executa(
        true, [&](IXVCR_Middleware& r) { return r.BuscaDataHoraIntegracaoTerceiro(&reg, &regAchado); });
    if (hr >= 0) *pDados = DeRegistro(regAchado);
    return hr;
}

HResult CXVCliente::BuscaDadosSistemaTerceiro(const SConsultaTerceiro& rConsulta,
                                              SRespostaConsulta* pResposta) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    REG_CR_CONSULTA_SISTEMA_TERCEIROPS reg;
    if (!ParaRegistro(rConsulta, &reg)) return k_hrArgumento;
    TSaida<REG_CR_STATUS_CONSULTA_SISTEMA_TERCEIROPS> saida;
    const HResult hr = m_pConexao->Executa(
        true, [&](IXVCR_Middleware& r) { return r.BuscaDadosSistemaTerceiro(&reg, &saida); });
    if (hr >= 0) *pResposta = DeRegistro(saida.Get());
    return hr;
}

HResult CXVCliente::FuncaoGenerica(std::uint32_t ulFuncao, const std::string& sEntrada,
                                   std::string* psSaida) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    _REG_DF_TEXTOPS texto;
    if (!ParaRegistro(sEntrada, &texto)) return k_hrArgumento;
    const _REG_CR_LISTA_BYTESPS entrada{texto.ulQtdBytes, 0, texto.pTexto, 0};
    TSaida<_REG_CR_LISTA_BYTESPS> saida;
    const HResult hr = m_pConexao->Executa(
        false, [&](IXVCR_Middleware& r) { return r.FuncaoGenerica(ulFuncao, &entrada, &saida); });
    if (hr >= 0) *psSaida = DeBytes(saida.Get().pListaBytes, saida.Get().ulQtdBytes);
    return hr;
}

HResult CXVCliente::GetUltimoErro(SUltimoErro* pErro) {
    if (m_pConexao == nullptr) return k_hrNaoConectado;
    if (!EstaConectado()) {
        // The component went with its refusal; its last error did not.
        if (m_pConexao->GetRecusa().hrErro == 0) return k_hrNaoConectado;
        *pErro = DeRegistro(m_pConexao->GetRecusa());
        return 0;
    }
    REG_DF_ULTIMO_ERROPS reg{};
    // Never connects again: a new component has no last error.
    const HResult hr = m_pConexao->Executa(false, [&](IXVCR_Middleware& r) { return r.GetUltimoErro(&reg); });
    if (hr >= 0) *pErro = DeRegistro(reg);
    return hr;
}

}  // namespace XVCliente
