#include "client/XVClienteCodigos.h"

#include <cstdio>

#include "support/messages/XVMensagens.h"
#include "support/names/XVNomesHResult.h"

namespace XVCliente {

std::string CodigoEmTexto(HRESULT hr) {
    char szCodigo[16];
    const int iTamanho = std::snprintf(szCodigo, sizeof szCodigo, "0x%08X", static_cast<unsigned>(hr));
    return std::string(szCodigo, static_cast<std::size_t>(iTamanho));
}

std::string_view NomeDoCodigo(HRESULT hr) {
    if (const SMensagemCodigo* pMensagem = XVBuscaMensagem(hr); pMensagem != nullptr) return pMensagem->sNome;
    const auto ulCodigo = static_cast<XVUInt>(hr);
    const char* pszNome = XVNomesHResult::Busca(XVNomesHResult::k_listaHResult, ulCodigo);
    if (pszNome == nullptr && ulCodigo >> 16 == 0x8007U)
        pszNome = XVNomesHResult::Busca(XVNomesHResult::k_listaWin32, ulCodigo & 0xFFFFU);
    return pszNome == nullptr ? std::string_view{} : pszNome;
}

std::string_view FraseDoCodigo(HRESULT hr) {
    const SMensagemCodigo* pMensagem = XVBuscaMensagem(hr);
    return pMensagem == nullptr ? std::string_view{} : pMensagem->sDescricao;
}

std::string DescreveCodigo(HRESULT hr) {
    std::string sTexto = CodigoEmTexto(hr);
    if (const std::string_view sNome = NomeDoCodigo(hr); !sNome.empty()) sTexto.append(" ").append(sNome);
    const std::string_view sFrase = FraseDoCodigo(hr);
    return sTexto.append(": ").append(sFrase.empty() ? "a operação falhou; veja o log de erros." : sFrase);
}

}  // namespace XVCliente
