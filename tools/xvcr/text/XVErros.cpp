#include "tools/xvcr/text/XVErros.h"

#include <cstdio>

#include "support/messages/XVMensagens.h"
#include "support/names/XVNomesHResult.h"
#include "support/trace/XVArquivoRecusado.h"
#include "tools/xvcr/text/XVTextoTela.h"

void XVFalha(std::string sMensagem) {
    throw CXVErro(ESaida::eFalha, std::move(sMensagem));
}

void XVErroDeUso(std::string sMensagem) {
    throw CXVErro(ESaida::eUso, std::move(sMensagem));
}

std::string XVCodigoHexadecimal(HRESULT hr) {
    char szCodigo[16];
    const int iTamanho = std::snprintf(szCodigo, sizeof szCodigo, "0x%08X", static_cast<unsigned>(hr));
    return std::string(szCodigo, static_cast<std::size_t>(iTamanho));
}

std::string XVDescreveCodigo(HRESULT hr) {
    std::string sTexto = XVCodigoHexadecimal(hr);
    const SMensagemCodigo* pMensagem = XVBuscaMensagem(hr);
    if (pMensagem == nullptr) {
        const auto ulCodigo = static_cast<XVUInt>(hr);
        const char* pszNome = XVNomesHResult::Busca(XVNomesHResult::k_listaHResult, ulCodigo);
        if (pszNome == nullptr && ulCodigo >> 16 == 0x8007U)
            pszNome = XVNomesHResult::Busca(XVNomesHResult::k_listaWin32, ulCodigo & 0xFFFFU);
        if (pszNome != nullptr) sTexto += std::string(" ") + pszNome;
        return sTexto + ": a operação falhou; veja o log de erros.";
    }
    sTexto += ' ';
    sTexto += pMensagem->sNome;
    sTexto += ": ";
    sTexto += pMensagem->sDescricao;
    return sTexto;
}

std::string XVDescreveFalha(HRESULT hr) {
    return XVArquivoRecusado::Mensagem(XVDescreveCodigo(hr), hr);
}

void XVConfere(HRESULT hr) {
    if (SUCCEEDED(hr)) return;
    XVFalha(XVDescreveFalha(hr));
}

void XVEscreveErro(const std::string& sMensagem) {
    const std::string sLinha = "xvcr: " + XVTextoTela::Escapa(sMensagem, false) + '\n';
    std::fwrite(sLinha.data(), 1, sLinha.size(), stderr);
}
