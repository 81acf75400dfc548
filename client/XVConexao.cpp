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

HRESULT CXVCliente::CConexao::Abre(CXVEsperaServidor& rEspera) {
    rEspera.Comeca();
    for (;;) {
        EExecucao eExecucao = EExecucao::eRespondida;
        const HRESULT hr = Tenta(&eExecucao);
        if (SUCCEEDED(hr)) return hr;
        Larga();
        if (rEspera.Espera(eExecucao)) continue;
        if (m_regRecusa.hrErro == 0) AnotaRecusa(hr);
        OnFalha(hr);
        return hr;
    }
}

HRESULT CXVCliente::CConexao::Tenta(EExecucao* peExecucao) {
    Larga();
    m_regRecusa = {};
    HRESULT hr = Cria(&m_pComponente);
    if (FAILED(hr)) {
        *peExecucao = ExecucaoDaCriacao(hr);
        return hr;
    }
    hr = m_pComponente->Inicializa_Padrao(&m_reg);
    if (SUCCEEDED(hr)) return hr;
    *peExecucao = ExecucaoDaChamada(hr);
    if (FAILED(m_pComponente->GetUltimoErro(&m_regRecusa)))
        m_regRecusa = {};  // the server has gone
    else if (*peExecucao == EExecucao::eIncerta)
        *peExecucao = EExecucao::eRespondida;  // it is there, and refused
    return hr;
}

void CXVCliente::CConexao::AnotaRecusa(HRESULT hr) {
    CXVUltimoErro erro;
    erro.Registra(hr, "XVCliente::CXVCliente::CConexao::Abre", "client/XVConexao", __LINE__);
    erro.CopiaPara(&m_regRecusa);
}

HRESULT CXVCliente::CConexao::Garante(EOperacao eOperacao, CXVEsperaServidor& rEspera) {
    // What cannot be repeated must not be what finds out that the server has cut this client off.
    if (m_pComponente != nullptr && eOperacao == EOperacao::eTroca && !ComponenteResponde()) Larga();
    return m_pComponente != nullptr ? S_OK : Abre(rEspera);
}

EExecucao CXVCliente::CConexao::LargaSeFoiEmbora(EOperacao eOperacao, HRESULT hr) {
    const EExecucao eExecucao = ExecucaoDaChamada(hr);
    if (eExecucao == EExecucao::eRespondida) return eExecucao;
    // A component that still answers has given the code itself; but one that turned the call away may let the
    // next one in.
    const bool bDoSistema = eExecucao == EExecucao::eNaoExecutada && eOperacao != EOperacao::eTroca;
    if (!bDoSistema && ComponenteResponde()) return EExecucao::eRespondida;
    Larga();
    return bDoSistema || eOperacao == EOperacao::eLeitura ? eExecucao : EExecucao::eRespondida;
}

bool CXVCliente::CConexao::ComponenteResponde() {
    XVLongPS lInicializado = 0;
    return SUCCEEDED(m_pComponente->EstaInicializado(&lInicializado));
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
