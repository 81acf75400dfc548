#include "suite/XVUltimoErro.h"

#include <cstring>

#include "support/messages/XVMensagens.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/values/XVData.h"
#include "support/values/XVTextoUtf8.h"

namespace {

// Copies as much as fits before the terminator, never ending inside a UTF-8 character.
template <std::size_t N>
void CopiaTexto(char (&szDestino)[N], std::string_view sTexto) {
    sTexto = sTexto.substr(0, sTexto.find('\0'));
    const std::size_t uiTamanho = XVCorteUtf8(sTexto, N - 1);
    std::memcpy(szDestino, sTexto.data(), uiTamanho);
    std::memset(szDestino + uiTamanho, 0, N - uiTamanho);
}

}  // namespace

void CXVUltimoErro::Registra(HRESULT hr, std::string_view sFuncao, std::string_view sFonte, XVUInt ulLinha) {
    REG_DF_ULTIMO_ERROPS reg{};
    reg.hrErro = hr;
    reg.ulLinha = ulLinha;
    reg.regDataHora = REG_XVDMAHMSUTC::Agora().uiValor;
    if (const SMensagemCodigo* pMensagem = XVBuscaMensagem(hr); pMensagem != nullptr) {
        CopiaTexto(reg.szNome, pMensagem->sNome);
        CopiaTexto(reg.szMensagem,
                   XVArquivoRecusado::Mensagem(pMensagem->sDescricao, hr, sizeof(reg.szMensagem) - 1));
    }
    CopiaTexto(reg.szFuncao, sFuncao);
    CopiaTexto(reg.szFonte, sFonte);
    const std::lock_guard trava(m_Mutex);
    m_Reg = reg;
}

void CXVUltimoErro::Limpa() {
    const std::lock_guard trava(m_Mutex);
    m_Reg = {};
}

void CXVUltimoErro::CopiaPara(REG_DF_ULTIMO_ERROPS* pReg) const {
    if (pReg == nullptr) return;
    const std::lock_guard trava(m_Mutex);
    *pReg = m_Reg;
}
