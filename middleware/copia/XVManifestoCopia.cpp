#include "middleware/copia/XVManifestoCopia.h"

#include "middleware/verificacao/XVBytesDeArquivo.h"
#include "platform/XVCaminho.h"
#include "platform/XVPlataforma.h"

using XVBytesDeArquivo::Tira;

namespace {

constexpr XVUInt64 k_uiAssinatura = 0x314149504F435658ULL;  // "XVCOPIA1"

std::string Path(const std::string& sDiretorio, const char* pszNome) {
    return XVPlataforma::SistemaArquivos().Junta(sDiretorio, pszNome);
}

// The names become paths: each has to stay in its directory.
bool Interpreta(std::string_view sBytes, SManifestoCopia* pManifesto) {
    XVUInt64 uiEstado = 0;
    XVUInt64 uiArquivos = 0;
    if (!Tira(sBytes, &uiEstado) || uiEstado > static_cast<XVUInt64>(EEstadoCopia::eTroca)) return false;
    pManifesto->eEstado = static_cast<EEstadoCopia>(uiEstado);
    if (!Tira(sBytes, &uiArquivos)) return false;
    for (XVUInt64 ui = 0; ui < uiArquivos; ++ui) {
        std::string sNome;
        SArquivoCopiado arquivo;
        if (!XVBytesDeArquivo::TiraTexto(sBytes, &sNome) || !XVCaminho::EhNomeSimples(sNome) ||
            !Tira(sBytes, &arquivo.uiTamanho) || !Tira(sBytes, &arquivo.uiSoma) ||
            !pManifesto->mapaArquivos.emplace(sNome, arquivo).second)
            return false;
    }
    return sBytes.empty();
}

}  // namespace

HRESULT XVManifestoCopia::Le(const std::string& sDiretorio, SManifestoCopia* pManifesto) {
    *pManifesto = {};
    std::string sBytes;
    const HRESULT hr = XVBytesDeArquivo::Le(Path(sDiretorio, k_pszManifestoCopia), k_uiAssinatura, &sBytes);
    if (hr != S_OK || Interpreta(sBytes, pManifesto)) return hr;
    *pManifesto = {};
    return E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA;
}

HRESULT XVManifestoCopia::Grava(const std::string& sDiretorio, const SManifestoCopia& rManifesto) {
    std::string sBytes;
    XVBytesDeArquivo::Anexa(sBytes, static_cast<XVUInt64>(rManifesto.eEstado));
    XVBytesDeArquivo::Anexa(sBytes, rManifesto.mapaArquivos.size());
    for (const auto& [sNome, arquivo] : rManifesto.mapaArquivos) {
        XVBytesDeArquivo::AnexaTexto(sBytes, sNome);
        XVBytesDeArquivo::Anexa(sBytes, arquivo.uiTamanho);
        XVBytesDeArquivo::Anexa(sBytes, arquivo.uiSoma);
    }
    return XVBytesDeArquivo::Grava(Path(sDiretorio, k_pszManifestoCopia),
                                   Path(sDiretorio, k_pszManifestoCopiaNovo), k_uiAssinatura, sBytes);
}
