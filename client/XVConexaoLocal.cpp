// The door to a component made in this very process, over the files of a store directory. It is the component
// that the server hosts, with the same frame around every call.
#include <functional>

#include "client/XVConexao.h"
#include "client/XVRegistryComDiretorio.h"
#include "core/xvrpcdll/XVComponenteMiddleware.h"

namespace XVCliente {

namespace {

// The store for viewing only.
class CBaseMiddlewareConsulta final : public CBaseMiddleware {
  public:
    CBaseMiddlewareConsulta() { SetSomenteLeitura(true); }
};

// A component whose owner is told how the store closed, which a last Release cannot tell.
template <class TLogica>
class T_XVComponenteLocal final : public T_XVCR_Middleware<TLogica> {
  public:
    XV_CLASSE("CXVCR_Middleware", "XVCR_Middleware")

    HRESULT Finaliza() {
        XV_METODO_INTERFACE("Finaliza");
        return this->ExecutaMetodo(metodoXV, [](TLogica& rLogica) { return rLogica.Finaliza(); });
    }

  protected:
    void CedeVez() const override {}
};

}  // namespace

class CXVCliente::CConexaoLocal final : public CXVCliente::CConexao {
  public:
    CConexaoLocal(const SLojaLocal& rLoja, const REG_DF_INICIALIZAPS& reg)
        : CConexao(reg), m_Diretorio(rLoja.sDiretorio), m_bSomenteLeitura(rLoja.bSomenteLeitura) {}
    // The store closes while its directory is still in force.
    ~CConexaoLocal() override { XVIgnora(Fecha()); }

    bool TemDiretorio() const { return m_Diretorio.Vale(); }

  protected:
    HRESULT Cria(IXVCR_Middleware** ppComponente) override {
        if (m_bSomenteLeitura)
            CriaComponente<CBaseMiddlewareConsulta>(ppComponente);
        else
            CriaComponente<CXVMiddlewareComSelos>(ppComponente);
        return S_OK;
    }
    HRESULT Encerra() override { return m_fnEncerra(); }

  private:
    template <class TLogica>
    void CriaComponente(IXVCR_Middleware** ppComponente) {
        auto* pComponente = new T_XVComponenteLocal<TLogica>;
        *ppComponente = pComponente;
        m_fnEncerra = [pComponente] { return pComponente->Finaliza(); };
    }

    const CXVUsoDoDiretorio m_Diretorio;
    const bool m_bSomenteLeitura;
    std::function<HRESULT()> m_fnEncerra;
};

HRESULT CXVCliente::ConectaLocal(const SIdentificacao& rIdentificacao, const SLojaLocal& rLoja) {
    XVIgnora(Desconecta());
    REG_DF_INICIALIZAPS reg;
    if (!MontaRegistroInicializacao(rIdentificacao, &reg)) return E_INVALIDARG;
    auto pConexao = std::make_unique<CConexaoLocal>(rLoja, reg);
    if (!pConexao->TemDiretorio()) return E_INVALIDARG;
    m_pConexao = std::move(pConexao);
    return m_pConexao->Abre();
}

}  // namespace XVCliente
