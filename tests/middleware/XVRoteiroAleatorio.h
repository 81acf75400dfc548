// A random script of operations on one store, several days and reopenings included. The same seed gives the
// same script; every content carries its owner (XVConteudoComDono.h).
#pragma once

#include "tests/middleware/XVConteudoComDono.h"
#include "tests/middleware/XVRetratoLoja.h"

class CXVRoteiroAleatorio {
  public:
    CXVRoteiroAleatorio(XVUInt64 uiSemente, CXVRelogioFalso& rRelogio, std::size_t uiMaior = k_uiMaiorTexto)
        : m_sorteio(uiSemente), m_rRelogio(rRelogio), m_uiPassos(6 + m_sorteio.Ate(18)), m_uiMaior(uiMaior) {
        m_rRelogio.SetUTC({2024, 3, 15, 12, 0, 0});
    }

    // Steps after the first, which opens the store.
    std::size_t GetQuantidade() const { return m_uiPassos; }
    // Opens the store and shows its empty picture.
    bool Abre() {
        m_pLoja = std::make_unique<CBaseMiddleware>();
        return XVInicializa(*m_pLoja) == S_OK;
    }
    // One step: false when it failed, which no step does on a sound device.
    bool Passo() {
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
    // Objects of one process share an open store: whoever looks at another device closes this one first.
    void Fecha() { m_pLoja.reset(); }
    bool EstaAberto() const { return m_pLoja != nullptr && m_pLoja->EstaInicializado(); }
    TRetratoLoja Retrata() { return XVRetrataLoja(*m_pLoja); }
    // Whose each integration is, by its key.
    const std::map<XVUInt64, unsigned>& GetDonos() const { return m_mapaDonos; }

  private:
    static constexpr XVUInt64 k_uiDiaMs = 24ULL * 3600 * 1000;

    HRESULT Inclui() {
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
    HRESULT Altera() {
        m_rRelogio.Avanca(1000);
        auto [regDmc, uiDono] = Sorteia();
        const auto eStatus = static_cast<XVUInt>(1 + m_sorteio.Ate(5));
        const XVUInt eSistema = regDmc == m_regBanco ? OfficialBank : Mercos;
        CXVIntegracaoTeste integracao = XVIntegracaoComDono(uiDono, eSistema, eStatus, m_sorteio, m_uiMaior);
        return m_pLoja->GravaIntegracao(&regDmc, integracao.Ptr());
    }
    HRESULT Status() {
        m_rRelogio.Avanca(1000);
        auto [regDmc, uiDono] = Sorteia();
        const bool bPorChave = m_sorteio.Acontece(1, 2) && !(regDmc == m_regBanco);
        const std::string sMensagem = XVTextoComDono(uiDono, k_cDonoMensagem, m_sorteio, m_uiMaior);
        const std::string sRetorno = XVTextoComDono(uiDono, k_cDonoRetorno, m_sorteio, m_uiMaior);
        const auto eStatus = static_cast<XVUInt>(1 + m_sorteio.Ate(4));
        return m_pLoja->GravaStatusIntegracao(XVStatusPS(
            bPorChave ? REG_XVDMC() : regDmc, bPorChave ? 1000 + uiDono : 0, eStatus, sMensagem, sRetorno));
    }
    HRESULT Mapeia() {
        const auto uiRegistro = static_cast<unsigned>(1 + m_sorteio.Ate(k_uiRegistrosMapa));
        const XVUInt64 uiId = XVIdDoRegistro(uiRegistro, ++m_uiVersao);
        const tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS reg{
            uiId, XVRegistroMapa(uiRegistro), 1, k_eTipoMapa, Mercos, {}};
        return m_sorteio.Acontece(1, 4) ? m_pLoja->GravaChaveRegistroTelvoParaTerceiroPendente(reg)
                                        : m_pLoja->GravaChaveRegistroTelvoParaTerceiro(reg);
    }
    HRESULT DataHora() {
        const XVUInt eTipo = k_aTiposDataHora[m_sorteio.Ate(2)];
        const XVUInt eSistema = m_sorteio.Acontece(1, 2) ? Mercos : OfficialBank;
        const auto eData = static_cast<XVUInt>(1 + m_sorteio.Ate(2));
        return m_pLoja->GravaDataHoraIntegracaoTerceiro(
            {XVDataHoraDaChave(eTipo, eSistema, eData, ++m_uiVersao), eTipo, eSistema, eData, {}});
    }
    HRESULT Reabre() {
        const HRESULT hr = m_pLoja->Finaliza();
        return FAILED(hr) ? hr : Abre() ? S_OK : E_FAIL;
    }
    // An integration that can still be named.
    struct SSorteada {
        REG_XVDMC regDmc;
        unsigned uiDono;
    };
    SSorteada Sorteia() {
        const REG_XVDMC regDmc = m_listaVivas[m_sorteio.Ate(m_listaVivas.size())];
        return {regDmc, m_mapaDonos.at(regDmc.uiValor)};
    }

    CXVSorteio m_sorteio;
    CXVRelogioFalso& m_rRelogio;
    std::size_t m_uiPassos;
    std::size_t m_uiMaior;  // bytes of a text
    TLoja m_pLoja;
    std::map<XVUInt64, unsigned> m_mapaDonos;
    std::vector<REG_XVDMC> m_listaVivas;
    REG_XVDMC m_regBanco;  // the one that holds the shared key
    unsigned m_uiDonos = 0;
    unsigned m_uiVersao = 0;
};
