// One component in the server, created and initialised, and the rules for getting another one.
#pragma once

#include "client/XVCliente.h"
#include "client/XVClienteRegistros.h"

namespace XVCliente {

// Builds the initialisation record of the caller and seals it. False: a text does not fit its field.
bool MontaRegistroInicializacao(const SIdentificacao& rIdentificacao, REG_DF_INICIALIZAPS* pReg);

class CXVCliente::CConexao {
  public:
    explicit CConexao(const REG_DF_INICIALIZAPS& reg) : m_reg(reg) {}
    ~CConexao() { Fecha(); }
    CConexao(const CConexao&) = delete;
    CConexao& operator=(const CConexao&) = delete;

    // Creates and initialises, trying again while a server is ending.
    HResult Abre();
    void Fecha();
    bool EstaAberta() const { return m_pComponente != nullptr; }
    // What the component said of its own refusal to initialise; hrErro 0: it did not refuse.
    const REG_DF_ULTIMO_ERROPS& GetRecusa() const { return m_regRecusa; }

    // Calls fnChamada(IXVCR_Middleware&), connected again first where the server had gone. bRepetivel: a
    // call that only reads is repeated once when the server goes away under it.
    template <class TChamada>
    HResult Executa(bool bRepetivel, TChamada&& fnChamada) {
        HResult hr = S_OK;
        for (int i = 0; i < (bRepetivel ? 2 : 1); ++i) {
            if (m_pComponente == nullptr && (hr = Abre()) < 0) return hr;
            hr = fnChamada(*m_pComponente);
            if (!ServidorFoiEmbora(hr)) return hr;
            Fecha();
        }
        return hr;
    }

  private:
    HResult Tenta();

    REG_DF_INICIALIZAPS m_reg;
    REG_DF_ULTIMO_ERROPS m_regRecusa{};
    IXVCR_Middleware* m_pComponente = nullptr;
};

}  // namespace XVCliente
