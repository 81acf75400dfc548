#include "tools/xvcr/XVErros.h"

#include <cstdio>

#include "support/XVCapturaTrace.h"
#include "support/XVCodigos.h"
#include "support/XVMensagens.h"
#include "support/XVNomesHResult.h"
#include "tools/xvcr/XVTextoTela.h"

namespace {

// Path of the listed file that was missed, as the error record tells it; empty where the record was not
// written by this thread (a server's).
std::string ArquivoAusente() {
    constexpr std::string_view k_sInicio = "Arquivo controlado não encontrado: ";
    const CXVCapturaTrace* pCaptura = CXVCapturaTrace::GetAtual();
    if (pCaptura == nullptr) return {};
    const auto& rFalhas = pCaptura->GetFalhas();
    for (auto it = rFalhas.rbegin(); it != rFalhas.rend(); ++it) {
        if (!it->sMensagem.starts_with(k_sInicio)) continue;
        const std::string sPath = it->sMensagem.substr(k_sInicio.size());
        return sPath.substr(0, sPath.find('\t'));
    }
    return {};
}

}  // namespace

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

void XVConfere(HRESULT hr) {
    if (SUCCEEDED(hr)) return;
    std::string sTexto = XVDescreveCodigo(hr);
    if (hr == E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS)
        if (const std::string sPath = ArquivoAusente(); !sPath.empty()) sTexto += " Arquivo: " + sPath;
    XVFalha(std::move(sTexto));
}

void XVEscreveErro(const std::string& sMensagem) {
    const std::string sLinha = "xvcr: " + XVTextoTela::Escapa(sMensagem, false) + '\n';
    std::fwrite(sLinha.data(), 1, sLinha.size(), stderr);
}
