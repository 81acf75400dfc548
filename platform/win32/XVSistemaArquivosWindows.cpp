#include "platform/win32/XVSistemaArquivosWindows.h"

#include "platform/XVCaminho.h"
#include "platform/XVPlataforma.h"
#include "platform/win32/XVArquivoWindows.h"
#include "platform/win32/XVCaminhoWindows.h"
#include "platform/win32/XVErroWindows.h"

namespace {

DWORD AcessoDe(EAcessoArquivo eAcesso) {
    switch (eAcesso) {
        case EAcessoArquivo::eLeitura:
            return GENERIC_READ;
        case EAcessoArquivo::eLeituraEscrita:
            return GENERIC_READ | GENERIC_WRITE;
        case EAcessoArquivo::eAnexacao:
            // Reading is for the lock around an append; since every mode that denies it denies writing
            // too, it changes nothing in the share rule.
            return FILE_APPEND_DATA | FILE_READ_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE;
    }
    return 0;
}

// Deletion is never shared: a file that is open can neither be deleted nor replaced.
DWORD CompartilhamentoDe(ECompartilhamentoArquivo eCompartilhamento) {
    switch (eCompartilhamento) {
        case ECompartilhamentoArquivo::eNegaTudo:
            return 0;
        case ECompartilhamentoArquivo::eNegaEscrita:
            return FILE_SHARE_READ;
        case ECompartilhamentoArquivo::eNegaNada:
            return FILE_SHARE_READ | FILE_SHARE_WRITE;
    }
    return 0;
}

bool TemAtributoSomenteLeitura(const std::wstring& sCaminho) {
    const DWORD ulAtributos = GetFileAttributesW(sCaminho.c_str());
    return ulAtributos != INVALID_FILE_ATTRIBUTES && (ulAtributos & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
           (ulAtributos & FILE_ATTRIBUTE_READONLY) != 0;
}

}  // namespace

CXVErroArquivo CXVSistemaArquivosWindows::Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                                               std::unique_ptr<IXVArquivo>& pArquivo) {
    pArquivo.reset();
    std::wstring sLargo;
    const CXVErroArquivo erro = XVCaminhoWindows::ConverteArquivo(sCaminho, sLargo);
    if (!erro.Ok()) {
        return erro;
    }
    // The attribute is looked at here because a privileged user of a foreign file system may pass it.
    if (rAbertura.eAcesso != EAcessoArquivo::eLeitura && TemAtributoSomenteLeitura(sLargo)) {
        return XVErroWindows::De(ERROR_ACCESS_DENIED);
    }
    const DWORD ulCriacao =
        rAbertura.eCriacao == ECriacaoArquivo::eCriaSeAusente ? OPEN_ALWAYS : OPEN_EXISTING;
    // The last flag keeps a pipe's server, should the path name one, from acting as this user.
    CXVHandleArquivo handle(CreateFileW(
        sLargo.c_str(), AcessoDe(rAbertura.eAcesso), CompartilhamentoDe(rAbertura.eCompartilhamento), nullptr,
        ulCriacao, FILE_ATTRIBUTE_NORMAL | SECURITY_SQOS_PRESENT | SECURITY_ANONYMOUS, nullptr));
    if (!handle.EhValido()) {
        return XVErroWindows::DeUltimo();
    }
    if (GetFileType(handle.Get()) != FILE_TYPE_DISK) {
        return {ECausaArquivo::eArquivoInvalido, 0};
    }
    pArquivo = std::make_unique<CXVArquivoWindows>(std::move(handle), rAbertura.eAcesso);
    return {};
}

EExistencia CXVSistemaArquivosWindows::Existe(const std::string& sCaminho) {
    std::wstring sLargo;
    if (!XVCaminhoWindows::Converte(sCaminho, sLargo).Ok()) {
        return EExistencia::eAusente;
    }
    const DWORD ulAtributos = GetFileAttributesW(sLargo.c_str());
    if (ulAtributos == INVALID_FILE_ATTRIBUTES) {
        const ECausaArquivo eCausa = XVErroWindows::DeUltimo().GetCausa();
        const bool bAusente =
            eCausa == ECausaArquivo::eArquivoNaoEncontrado || eCausa == ECausaArquivo::eCaminhoInvalido;
        return bAusente ? EExistencia::eAusente : EExistencia::eArquivo;
    }
    return (ulAtributos & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EExistencia::eDiretorio : EExistencia::eArquivo;
}

bool CXVSistemaArquivosWindows::EhSomenteLeitura(const std::string& sCaminho) {
    std::wstring sLargo;
    return XVCaminhoWindows::ConverteArquivo(sCaminho, sLargo).Ok() && TemAtributoSomenteLeitura(sLargo);
}

std::string CXVSistemaArquivosWindows::Junta(std::string_view sDiretorio, std::string_view sNome) const {
    return XVCaminho::Junta(sDiretorio, sNome, '\\', XVCaminhoWindows::k_pszSeparadores);
}

IXVSistemaArquivos& XVPlataforma::SistemaArquivosNativo() {
    // Never destroyed: objects with static lifetime may still close files after it.
    static CXVSistemaArquivosWindows& rSistema = *new CXVSistemaArquivosWindows;
    return rSistema;
}
