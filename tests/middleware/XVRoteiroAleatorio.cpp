#include "tests/middleware/XVRoteiroAleatorio.h"

#include <algorithm>

namespace {
constexpr XVUInt64 k_uiDiaMs = 24ULL * 3600 * 1000;
}

CXVRoteiroAleatorio::CXVRoteiroAleatorio(XVUInt64 uiSemente, CXVRelogioFalso& rRelogio, std::size_t uiMaior)
    : m_sorteio(uiSemente), m_rRelogio(rRelogio), m_uiPassos(6 + m_sorteio.Ate(18)), m_uiMaior(uiMaior) {
    m_rRelogio.SetUTC({2024, 3, 15, 12, 0, 0});
}

bool CXVRoteiroAleatorio::Abre() {
    m_pLoja = std::make_unique<CBaseMiddleware>();
    const CXVDonoFixo dono("MATRIZ");
    return m_pLoja->Inicializa(&dono) == S_OK;
}

bool CXVRoteiroAleatorio::Passo() {
    const std::size_t uiSorte = m_sorteio.Ate(100);
    if (uiSorte < 40 || m_listaVivas.empty()) return SUCCEEDED(Inclui());
    if (uiSorte < 56) return SUCCEEDED(Altera());
    if (uiSorte < 72) return SUCCEEDED(Status());
    if (uiSorte < 80) return SUCCEEDED(Mapeia());
    if (uiSorte < 86) return SUCCEEDED(DataHora());
    if (uiSorte < 93) return SUCCEEDED(Reabre());
    m_rRelogio.Avanca(k_uiDiaMs);
    return SUCCEEDED(Inclui());
}

HRESULT CXVRoteiroAleatorio::Reabre() {
    const HRESULT hr = m_pLoja->Finaliza();
    return FAILED(hr) ? hr : Abre() ? S_OK : E_FAIL;
}

HRESULT CXVRoteiroAleatorio::Inclui() {
    m_rRelogio.Avanca(1000);
    const unsigned uiDono = ++m_uiDonos;
    const XVUInt eSistema = m_sorteio.Acontece(1, 5) ? OfficialBank : Mercos;
    CXVIntegracaoTeste integracao =
        XVIntegracaoComDono(uiDono, eSistema, eXVSMiddleware_Enviado, m_sorteio, m_uiMaior);
    REG_XVDMC regDmc;
    const HRESULT hr = m_pLoja->GravaIntegracao(&regDmc, integracao.Ptr());
    if (FAILED(hr)) return hr;
    m_mapaDonos[regDmc.uiValor] = uiDono;
    m_listaVivas.push_back(regDmc);
    if (eSistema == OfficialBank) {
        std::erase(m_listaVivas, m_regBanco);
        m_regBanco = regDmc;
    }
    return hr;
}

CXVRoteiroAleatorio::SSorteada CXVRoteiroAleatorio::Sorteia() {
    const REG_XVDMC regDmc = m_listaVivas[m_sorteio.Ate(m_listaVivas.size())];
    return {regDmc, m_mapaDonos.at(regDmc.uiValor)};
}

HRESULT CXVRoteiroAleatorio::Altera() {
    m_rRelogio.Avanca(1000);
    auto [regDmc, uiDono] = Sorteia();
    const auto eStatus = static_cast<XVUInt>(1 + m_sorteio.Ate(5));
    const XVUInt eSistema = regDmc == m_regBanco ? OfficialBank : Mercos;
    CXVIntegracaoTeste integracao = XVIntegracaoComDono(uiDono, eSistema, eStatus, m_sorteio, m_uiMaior);
    return m_pLoja->GravaIntegracao(&regDmc, integracao.Ptr());
}

HRESULT CXVRoteiroAleatorio::Status() {
    m_rRelogio.Avanca(1000);
    auto [regDmc, uiDono] = Sorteia();
    const bool bPorChave = m_sorteio.Acontece(1, 2) && !(regDmc == m_regBanco);
    const std::string sMensagem = XVTextoComDono(uiDono, k_cDonoMensagem, m_sorteio, m_uiMaior);
    const std::string sRetorno = XVTextoComDono(uiDono, k_cDonoRetorno, m_sorteio, m_uiMaior);
    const auto eStatus = static_cast<XVUInt>(1 + m_sorteio.Ate(4));
    return m_pLoja->GravaStatusIntegracao(XVStatusPS(
        bPorChave ? REG_XVDMC() : regDmc, bPorChave ? 1000 + uiDono : 0, eStatus, sMensagem, sRetorno));
}

HRESULT CXVRoteiroAleatorio::Mapeia() {
    const auto uiRegistro = static_cast<unsigned>(1 + m_sorteio.Ate(k_uiRegistrosMapa));
    const XVUInt64 uiId = XVIdDoRegistro(uiRegistro, ++m_uiVersao);
    const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS reg{
        uiId, XVRegistroMapa(uiRegistro), 1, k_eTipoMapa, Mercos, {}};
    return m_sorteio.Acontece(1, 4) ? m_pLoja->GravaChaveRegistroTelvoParaTerceiroPendente(reg)
                                    : m_pLoja->GravaChaveRegistroTelvoParaTerceiro(reg);
}

HRESULT CXVRoteiroAleatorio::DataHora() {
    const XVUInt eTipo = k_aTiposDataHora[m_sorteio.Ate(2)];
    const XVUInt eSistema = m_sorteio.Acontece(1, 2) ? Mercos : OfficialBank;
    const auto eData = static_cast<XVUInt>(1 + m_sorteio.Ate(2));
    return m_pLoja->GravaDataHoraIntegracaoTerceiro(
        {XVDataHoraDaChave(eTipo, eSistema, eData, ++m_uiVersao), eTipo, eSistema, eData, {}});
}
