#include "middleware/verificacao/XVBytesDeArquivo.h"

#include <cstring>

#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"
#include "platform/XVTentativas.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/values/XVSoma64.h"

namespace {

constexpr XVUInt64 k_uiMaximo = 1U << 30;  // bytes: the seals of a hundred terabytes

// What stands between signature and sum; false: they do not hold.
bool Despe(std::string* psBytes, XVUInt64 uiAssinatura) {
    std::string_view sBytes = *psBytes;
    if (sBytes.size() < 2 * sizeof(XVUInt64)) return false;
    std::string_view sSoma = sBytes.substr(sBytes.size() - sizeof(XVUInt64));
    sBytes.remove_suffix(sizeof(XVUInt64));
    XVUInt64 uiSoma = 0;
    XVUInt64 uiLida = 0;
    XVBytesDeArquivo::Tira(sSoma, &uiSoma);
    if (uiSoma != XVSoma64(sBytes.data(), sBytes.size())) return false;
    if (!XVBytesDeArquivo::Tira(sBytes, &uiLida) || uiLida != uiAssinatura) return false;
    *psBytes = std::string(sBytes);
    return true;
}

}  // namespace

void XVBytesDeArquivo::Anexa(std::string& rs, XVUInt64 ui) {
    rs.append(reinterpret_cast<const char*>(&ui), sizeof(ui));
}

void XVBytesDeArquivo::AnexaTexto(std::string& rs, std::string_view sTexto) {
    Anexa(rs, sTexto.size());
    rs += sTexto;
}

bool XVBytesDeArquivo::Tira(std::string_view& rs, XVUInt64* pui) {
    if (rs.size() < sizeof(*pui)) return false;
    std::memcpy(pui, rs.data(), sizeof(*pui));
    rs.remove_prefix(sizeof(*pui));
    return true;
}

bool XVBytesDeArquivo::TiraTexto(std::string_view& rs, std::string* psTexto) {
    XVUInt64 uiTamanho = 0;
    if (!Tira(rs, &uiTamanho) || uiTamanho > rs.size()) return false;
    *psTexto = rs.substr(0, static_cast<std::size_t>(uiTamanho));
    rs.remove_prefix(psTexto->size());
    return true;
}

HRESULT XVBytesDeArquivo::Le(const std::string& sPath, XVUInt64 uiAssinatura, std::string* psBytes) {
    psBytes->clear();
    std::unique_ptr<IXVArquivo> pArquivo;
    CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Abre(sPath, k_aberturaConsulta, pArquivo);
    if (erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado ||
        erro.GetCausa() == ECausaArquivo::eCaminhoInvalido)
        return S_FALSE;
    XVUInt64 uiTamanho = 0;
    if (erro.Ok()) erro = pArquivo->GetTamanho(uiTamanho);
    if (erro.Ok() && uiTamanho > k_uiMaximo) return E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA;
    psBytes->resize(static_cast<std::size_t>(uiTamanho));
    if (erro.Ok()) erro = pArquivo->Le(0, psBytes->data(), psBytes->size());
    if (!erro.Ok()) return XVCodigoArquivo(erro);
    return Despe(psBytes, uiAssinatura) ? S_OK : E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA;
}

HRESULT XVBytesDeArquivo::Grava(const std::string& sPath, const std::string& sPathNovo, XVUInt64 uiAssinatura,
                                std::string_view sBytes) {
    constexpr SAberturaArquivo k_abertura{EAcessoArquivo::eLeituraEscrita,
                                          ECompartilhamentoArquivo::eNegaTudo,
                                          ECriacaoArquivo::eCriaSeAusente};
    IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::string sTudo;
    Anexa(sTudo, uiAssinatura);
    sTudo += sBytes;
    Anexa(sTudo, XVSoma64(sTudo.data(), sTudo.size()));
    std::unique_ptr<IXVArquivo> pArquivo;
    CXVErroArquivo erro = rSistema.Abre(sPathNovo, k_abertura, pArquivo);
    if (!erro.Ok()) return XVCodigoArquivo(erro);
    erro = pArquivo->SetTamanho(0);
    if (erro.Ok()) erro = pArquivo->Grava(0, sTudo.data(), sTudo.size());
    if (erro.Ok()) erro = pArquivo->Sincroniza();
    pArquivo.reset();
    if (erro.Ok())
        erro =
            XVTentaEnquantoOcupado(k_iTentativasCurtas, [&] { return rSistema.Substitui(sPathNovo, sPath); });
    if (!erro.Ok()) rSistema.Apaga(sPathNovo).Ignora();
    return XVCodigoArquivo(erro);
}
