#include "client/XVConexao.h"

#include <cstddef>
#include <cstring>
#include <iterator>

#include "contract/XVCR_MiddlewareGuids.h"
#include "support/trace/XVProfiler.h"
#include "support/values/XVCrc64.h"

namespace XVCliente {

namespace {

constexpr unsigned k_uiTentativas = 8;
constexpr DWORD k_ulEsperaTentativa = 150;  // milliseconds, times the number of the attempt
constexpr std::uint16_t k_usVersaoRegistro = 127;
constexpr byte k_cMarcaRegistro = 'B';

constexpr const char* k_pszProgID = "XVCR.Middleware.1";
constexpr const char* k_pszModuloServidor = "XVCR_Middleware.exe";

// In whose name an object-creation record is written.
class CXVDonoDoRegistro final : public IXVDF_Profiler {
  public:
    explicit CXVDonoDoRegistro(const REG_DF_INICIALIZAPS& reg) : m_reg(reg) {}
    std::string_view GetEmpresa() const override {
        return reinterpret_cast<const char*>(m_reg.szEmpresa);  // terminated: CopiaTexto leaves a zero
    }
    XVUShort GetUsuario() const override { return static_cast<XVUShort>(m_reg.ulUsuario); }
    XVUInt GetNumeroSessao() const override { return static_cast<XVUInt>(m_reg.ulNumeroSessao); }

  private:
    const REG_DF_INICIALIZAPS& m_reg;
};

constexpr HResult Codigo(std::uint32_t ulCodigo) {
    return static_cast<HResult>(ulCodigo);
}

// Codes of a creation beside a server that is starting or ending.
bool ValeTentarDeNovo(HResult hr) {
    return ServidorFoiEmbora(hr) || hr == Codigo(0x80080005U) /* the server did not start in time */ ||
           hr == Codigo(0x80004002U) /* it was not ready when asked */;
}

template <std::size_t N>
bool CopiaTexto(const std::string& sTexto, byte (&aCampo)[N]) {
    if (sTexto.size() >= N || sTexto.find('\0') != std::string::npos) return false;
    std::memcpy(aCampo, sTexto.data(), sTexto.size());
    return true;
}

// File name of the running program, cut to its field.
std::string NomePrograma() {
    char szCaminho[MAX_PATH * 2];
    const DWORD ulTamanho =
        ::GetModuleFileNameA(nullptr, szCaminho, static_cast<DWORD>(std::size(szCaminho)));
    const std::string sCaminho(szCaminho, ulTamanho);
    return sCaminho.substr(sCaminho.find_last_of("\\/") + 1).substr(0, 47);
}

std::string NomeUsuario() {
    char szUsuario[257] = "";
    DWORD ulTamanho = 257;
    ::GetUserNameA(szUsuario, &ulTamanho);
    return std::string(szUsuario).substr(0, 31);
}

const std::string& Ou(const std::string& sTexto, const std::string& sPadrao) {
    return sTexto.empty() ? sPadrao : sTexto;
}

}  // namespace

bool ServidorFoiEmbora(HResult hr) {
    switch (static_cast<std::uint32_t>(hr)) {
        case 0x800706BAU:  // server unavailable
        case 0x800706BEU:  // call failed
        case 0x800706BFU:  // call failed and did not execute
        case 0x80010007U:  // server died
        case 0x80010012U:  // server died, the call did not execute
        case 0x80010108U:  // disconnected from its clients
        case 0x800401FDU:  // object not connected
        case 0x80080008U:  // server stopping
            return true;
        default:
            return false;
    }
}

bool MontaRegistroInicializacao(const SIdentificacao& rIdentificacao, REG_DF_INICIALIZAPS* pReg) {
    *pReg = {};
    const std::string sPrograma = NomePrograma();
    pReg->ulUsuario = rIdentificacao.usUsuario;
    pReg->ulNumeroSessao = rIdentificacao.ulNumeroSessao;
    pReg->ulNumeroChamador = rIdentificacao.ulNumeroChamador;
    const bool bCoube = CopiaTexto(rIdentificacao.sEmpresa, pReg->szEmpresa) &&
                        CopiaTexto(Ou(rIdentificacao.sExecutavel, sPrograma), pReg->szExecutavel) &&
                        CopiaTexto(Ou(rIdentificacao.sModulo, sPrograma), pReg->szModulo) &&
                        CopiaTexto(Ou(rIdentificacao.sIdentificacao, sPrograma), pReg->szIdentificacao) &&
                        CopiaTexto(NomeUsuario(), pReg->szUsuarioLocal);
    pReg->ucSessaoRemota = ::GetSystemMetrics(SM_REMOTESESSION) != 0 ? 1 : 0;
    pReg->usVersao = k_usVersaoRegistro;
    pReg->cMarca = k_cMarcaRegistro;
    pReg->uiCRC = XVCrc64(pReg, offsetof(REG_DF_INICIALIZAPS, uiCRC));
    return bCoube;
}

HResult CXVCliente::CConexao::Tenta() {
    CLSID clsid;
    HResult hr = ::CLSIDFromString(L"{" XV_LARGO(XV_TEXTO_UUID(XV_UUID_CLASSE_MIDDLEWARE)) L"}", &clsid);
    if (hr < 0) return hr;
    hr = ::CoCreateInstance(clsid, nullptr, CLSCTX_LOCAL_SERVER, IID_IXVCR_Middleware,
                            reinterpret_cast<void**>(&m_pComponente));
    const CXVDonoDoRegistro dono(m_reg);
    XVProfiler::RecordCoCreate(&dono, "XVCliente::CXVCliente::CConexao::Tenta", k_pszProgID,
                               k_pszModuloServidor, hr);
    m_regRecusa = {};
    if (hr >= 0) hr = m_pComponente->Inicializa_Padrao(&m_reg);
    if (hr < 0 && m_pComponente != nullptr && m_pComponente->GetUltimoErro(&m_regRecusa) < 0)
        m_regRecusa = {};  // the server has gone
    if (hr < 0) Fecha();
    return hr;
}

HResult CXVCliente::CConexao::Abre() {
    Fecha();
    HResult hr = Tenta();
    for (unsigned i = 1; i < k_uiTentativas && ValeTentarDeNovo(hr); ++i) {
        ::Sleep(k_ulEsperaTentativa * i);
        hr = Tenta();
    }
    return hr;
}

void CXVCliente::CConexao::Fecha() {
    if (m_pComponente != nullptr) m_pComponente->Release();
    m_pComponente = nullptr;
}

}  // namespace XVCliente
