#include "client/XVConexao.h"

#include <cstring>

#include "platform/XVAmbienteSO.h"
#include "suite/XVUltimoErro.h"

namespace XVCliente {

namespace {

template <std::size_t N>
bool CopiaTexto(const std::string& sTexto, char (&szCampo)[N]) {
    if (sTexto.size() >= N || sTexto.find('\0') != std::string::npos) return false;
    std::memcpy(szCampo, sTexto.data(), sTexto.size());
    return true;
}

// File name of the running program, cut to its field.
std::string NomePrograma() {
    const std::string sCaminho = XVAmbienteSO::GetCaminhoExecutavel();
    return sCaminho.substr(sCaminho.find_last_of("\\/") + 1)
        .substr(0, sizeof(REG_DF_INICIALIZAPS::szExecutavel) - 1);
}

const std::string& Ou(const std::string& sTexto, const std::string& sPadrao) {
    return sTexto.empty() ? sPadrao : sTexto;
}

}  // namespace

bool MontaRegistroInicializacao(const SIdentificacao& rIdentificacao, REG_DF_INICIALIZAPS* pReg) {
    *pReg = {};
    const std::string sPrograma = NomePrograma();
    const std::string sUsuario =
        XVAmbienteSO::GetNomeUsuario().substr(0, sizeof(REG_DF_INICIALIZAPS::szUsuarioLocal) - 1);
    pReg->ulUsuario = rIdentificacao.usUsuario;
    pReg->ulNumeroSessao = rIdentificacao.ulNumeroSessao;
    pReg->ulNumeroChamador = rIdentificacao.ulNumeroChamador;
    pReg->ucSessaoRemota = XVAmbienteSO::EhSessaoRemota() ? 1 : 0;
    const bool bCoube = CopiaTexto(rIdentificacao.sEmpresa, pReg->szEmpresa) &&
                        CopiaTexto(Ou(rIdentificacao.sExecutavel, sPrograma), pReg->szExecutavel) &&
                        CopiaTexto(Ou(rIdentificacao.sModulo, sPrograma), pReg->szModulo) &&
                        CopiaTexto(Ou(rIdentificacao.sIdentificacao, sPrograma), pReg->szIdentificacao) &&
                        CopiaTexto(sUsuario, pReg->szUsuarioLocal);
    XVRegistroInicializacao::Sela(pReg);
    return bCoube;
}

HRESULT CXVCliente::CConexao::Abre() {
    Larga();
    m_regRecusa = {};
    HRESULT hr = Cria(&m_pComponente);
    if (SUCCEEDED(hr)) hr = m_pComponente->Inicializa_Padrao(&m_reg);
    if (SUCCEEDED(hr)) return hr;
    if (m_pComponente != nullptr && FAILED(m_pComponente->GetUltimoErro(&m_regRecusa)))
        m_regRecusa = {};  // the server has gone
    Larga();
    if (m_regRecusa.hrErro == 0) AnotaRecusa(hr);
    OnFalha(hr);
    return hr;
}

void CXVCliente::CConexao::AnotaRecusa(HRESULT hr) {
    CXVUltimoErro erro;
    erro.Registra(hr, "XVCliente::CXVCliente::CConexao::Abre", "client/XVConexao", __LINE__);
    erro.CopiaPara(&m_regRecusa);
}

HRESULT CXVCliente::CConexao::Fecha() {
    if (m_pComponente == nullptr) return S_OK;
    const HRESULT hr = Encerra();
    Larga();
    return hr;
}

HRESULT CXVCliente::CConexao::GetUltimoErro(REG_DF_ULTIMO_ERROPS* pReg) {
    if (m_pComponente != nullptr) return m_pComponente->GetUltimoErro(pReg);
    *pReg = m_regRecusa;
    return S_OK;
}

void CXVCliente::CConexao::Larga() {
    if (m_pComponente != nullptr) m_pComponente->Release();
    m_pComponente = nullptr;
}

}  // namespace XVCliente
