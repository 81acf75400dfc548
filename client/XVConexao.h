// A component of a caller's own, initialised, and the rules for getting another one; the doors by which it is
// had are derived from it.
#pragma once

#include <algorithm>
#include <string_view>

#include "client/XVAusenciaServidor.h"
#include "client/XVCliente.h"
#include "contract/IXVCR_Middleware.h"
#include "support/trace/XVCheck.h"

namespace XVCliente {

// Builds the initialisation record of the caller and seals it. False: a text does not fit its field.
bool MontaRegistroInicializacao(const SIdentificacao& rIdentificacao, REG_DF_INICIALIZAPS* pReg);

// The text of a record's field; a record that came from outside may lack its end.
template <std::size_t N>
std::string_view TextoDoCampo(const char (&szCampo)[N]) {
    return {szCampo, static_cast<std::size_t>(std::find(szCampo, szCampo + N, '\0') - szCampo)};
}

class CXVCliente::CConexao {
  public:
    explicit CConexao(const REG_DF_INICIALIZAPS& reg) : m_reg(reg) {}
    virtual ~CConexao() { Larga(); }
    CConexao(const CConexao&) = delete;
    CConexao& operator=(const CConexao&) = delete;

    // A new component, created and initialised; the one in hand goes first. A server that is ending or
    // starting is waited for.
    HRESULT Abre() {
        CXVEsperaServidor espera;
        return Abre(espera);
    }
    // What the component says of its end; it goes in any case.
    HRESULT Fecha();
    bool EstaAberta() const { return m_pComponente != nullptr; }
    // Of the component in hand, or else what the last one said of its own refusal to initialise, or why none
    // could be made (hrErro 0: nothing was refused).
    HRESULT GetUltimoErro(REG_DF_ULTIMO_ERROPS* pReg);

    // Calls fnChamada(IXVCR_Middleware&), connected again first where the server had gone; the call is
    // repeated where that can double nothing.
    template <class TChamada>
    HRESULT Executa(EOperacao eOperacao, TChamada&& fnChamada) {
        CXVEsperaServidor espera;
        for (;;) {
            HRESULT hr = Garante(eOperacao, espera);
            if (FAILED(hr)) return hr;
            hr = fnChamada(*m_pComponente);
            if (FAILED(hr)) OnFalha(hr);
            if (!espera.Espera(LargaSeFoiEmbora(eOperacao, hr))) return hr;
        }
    }

    // The same by the component in hand alone, which has to be there: for what only it knows.
    template <class TChamada>
    HRESULT ExecutaNoMesmo(TChamada&& fnChamada) {
        const HRESULT hr = fnChamada(*m_pComponente);
        if (FAILED(hr)) OnFalha(hr);
        return hr;
    }

  protected:
    // A component that is not yet initialised. On failure *ppComponente stays null.
    virtual HRESULT Cria(IXVCR_Middleware** ppComponente) = 0;
    // Ends the component's work before it is released.
    virtual HRESULT Encerra() { return S_OK; }
    // A call or an opening ended with hr.
    virtual void OnFalha(HRESULT) {}

  private:
    HRESULT Abre(CXVEsperaServidor& rEspera);
    // One attempt, and what became of it.
    HRESULT Tenta(EExecucao* peExecucao);
    // A component in hand.
    HRESULT Garante(EOperacao eOperacao, CXVEsperaServidor& rEspera);
    // After a call that was answered with hr: gives up a component that is gone. What the call may be
    // repeated for; eRespondida: it may not.
    EExecucao LargaSeFoiEmbora(EOperacao eOperacao, HRESULT hr);
    bool ComponenteResponde();
    void AnotaRecusa(HRESULT hr);
    void Larga();

    REG_DF_INICIALIZAPS m_reg;
    REG_DF_ULTIMO_ERROPS m_regRecusa{};
    IXVCR_Middleware* m_pComponente = nullptr;
};

}  // namespace XVCliente
