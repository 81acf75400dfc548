// The door to the component in the server's process. COM: Windows only.
#include <windows.h>

#include <objbase.h>

#include "client/XVChamador.h"
#include "client/XVConexao.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVProfiler.h"

namespace XVCliente {

namespace {

constexpr const char* k_pszModuloServidor = "XVCR_Middleware.exe";

}  // namespace

bool TemServidor() {
    return true;
}

CApartamento::CApartamento() : m_hr(::CoInitializeEx(nullptr, COINIT_MULTITHREADED)) {}
CApartamento::~CApartamento() {
    if (SUCCEEDED(m_hr)) ::CoUninitialize();
}

class CXVCliente::CConexaoServidor final : public CXVCliente::CConexao {
  public:
    CConexaoServidor(const SIdentificacao& rIdentificacao, const REG_DF_INICIALIZAPS& reg)
        : CConexao(reg), m_Identificacao(rIdentificacao) {}

  protected:
    HRESULT Cria(IXVCR_Middleware** ppComponente) override {
        const HRESULT hr =
            ::CoCreateInstance(k_clsidMiddleware, nullptr, CLSCTX_LOCAL_SERVER,
                               IXVCR_Middleware::k_iidInterface, reinterpret_cast<void**>(ppComponente));
        const CXVChamador chamador(m_Identificacao);
        XVProfiler::RecordCoCreate(&chamador, "XVCliente::CXVCliente::CConexao::Tenta", XV_PROGID_MIDDLEWARE,
                                   k_pszModuloServidor, hr);
        return hr;
    }

    // The file that the server refused, as its last error names it, is noted as if it had been refused here.
    void OnFalha(HRESULT hr) override {
        CXVArquivosRecusados* pRecusados = CXVArquivosRecusados::GetAtual();
        REG_DF_ULTIMO_ERROPS reg{};
        if (pRecusados == nullptr || FAILED(GetUltimoErro(&reg)) || reg.hrErro != hr) return;
        const std::string_view sPath = XVArquivoRecusado::PathDaMensagem(TextoDoCampo(reg.szMensagem));
        if (!sPath.empty()) pRecusados->Inclui(hr, sPath);
    }

  private:
    SIdentificacao m_Identificacao;
};

HRESULT CXVCliente::Conecta(const SIdentificacao& rIdentificacao) {
    XVIgnora(Desconecta());
    REG_DF_INICIALIZAPS reg;
    if (!MontaRegistroInicializacao(rIdentificacao, &reg)) return E_INVALIDARG;
    m_pConexao = std::make_unique<CConexaoServidor>(rIdentificacao, reg);
    return m_pConexao->Abre();
}

}  // namespace XVCliente
