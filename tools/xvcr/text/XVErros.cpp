#include "tools/xvcr/text/XVErros.h"

#include <cerrno>
#include <cstdio>

#include "client/XVClienteCodigos.h"
#include "support/trace/XVArquivoRecusado.h"
#include "tools/xvcr/text/XVTextoTela.h"

void XVFalha(std::string sMensagem) {
    throw CXVErro(ESaida::eFalha, std::move(sMensagem));
}

void XVErroDeUso(std::string sMensagem) {
    throw CXVErro(ESaida::eUso, std::move(sMensagem));
}

std::string XVDescreveFalha(HRESULT hr) {
    return XVArquivoRecusado::Mensagem(XVCliente::DescreveCodigo(hr), hr);
}

void XVConfere(HRESULT hr) {
    if (SUCCEEDED(hr)) return;
    XVFalha(XVDescreveFalha(hr));
}

std::string XVSeDiscoCheio() {
#ifdef EDQUOT
    const bool bCota = errno == EDQUOT;
#else
    const bool bCota = false;
#endif
    return errno == ENOSPC || bCota ? ": o disco está cheio" : "";
}

void XVEscreveErro(const std::string& sMensagem) {
    const std::string sLinha = "xvcr: " + XVTextoTela::Escapa(sMensagem, false) + '\n';
    std::fwrite(sLinha.data(), 1, sLinha.size(), stderr);
}
