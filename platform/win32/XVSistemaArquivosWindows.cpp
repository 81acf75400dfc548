#include "platform/win32/XVSistemaArquivosWindows.h"

#include "platform/XVCaminho.h"
#include "platform/XVDetencao.h"
#include "platform/XVPlataforma.h"
#include "platform/win32/XVArquivoWindows.h"
#include "platform/win32/XVBuscaWindows.h"
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

// The last flag keeps a pipe's server, should the path name one, from acting as this user.
CXVHandleArquivo AbreHandle(const std::wstring& sCaminho, const SAberturaArquivo& rAbertura, DWORD ulOpcoes) {
    const DWORD ulCriacao =
        rAbertura.eCriacao == ECriacaoArquivo::eCriaSeAusente ? OPEN_ALWAYS : OPEN_EXISTING;
    return CXVHandleArquivo(
        CreateFileW(sCaminho.c_str(), AcessoDe(rAbertura.eAcesso),
                    CompartilhamentoDe(rAbertura.eCompartilhamento), nullptr, ulCriacao,
                    FILE_ATTRIBUTE_NORMAL | SECURITY_SQOS_PRESENT | SECURITY_ANONYMOUS | ulOpcoes, nullptr));
}

// An opening that may change something never goes through a link. Other points of the kind (of a store that
// keeps contents elsewhere or once) belong to the file and are opened as such.
CXVErroArquivo AbreSemElo(const std::wstring& sCaminho, const SAberturaArquivo& rAbertura,
                          CXVHandleArquivo& rHandle) {
    rHandle = AbreHandle(sCaminho, rAbertura, FILE_FLAG_OPEN_REPARSE_POINT);
    if (!rHandle.EhValido()) {
        return XVErroWindows::DeUltimo();
    }
    FILE_ATTRIBUTE_TAG_INFO atributos{};
    if (!GetFileInformationByHandleEx(rHandle.Get(), FileAttributeTagInfo, &atributos, sizeof(atributos))) {
        return XVErroWindows::DeUltimo();
    }
    if ((atributos.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return {};
    }
    if (atributos.ReparseTag == IO_REPARSE_TAG_SYMLINK) {
        return XVErroWindows::De(ERROR_ACCESS_DENIED);
    }
    rHandle = CXVHandleArquivo();
    rHandle = AbreHandle(sCaminho, rAbertura, 0);
    return rHandle.EhValido() ? CXVErroArquivo() : XVErroWindows::DeUltimo();
}

}  // namespace

CXVErroArquivo CXVSistemaArquivosWindows::Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                                               std::unique_ptr<IXVArquivo>& pArquivo) {
    pArquivo.reset();
    std::wstring sLargo;
    CXVErroArquivo erro = XVCaminhoWindows::ConverteArquivo(sCaminho, sLargo);
    if (!erro.Ok()) {
        return erro;
    }
    // The attribute is looked at here because a privileged user of a foreign file system may pass it.
    if (rAbertura.eAcesso != EAcessoArquivo::eLeitura && TemAtributoSomenteLeitura(sLargo)) {
        return XVErroWindows::De(ERROR_ACCESS_DENIED);
    }
    CXVHandleArquivo handle;
    if (rAbertura.eAcesso == EAcessoArquivo::eLeitura &&
        rAbertura.eCriacao == ECriacaoArquivo::eSomenteExistente) {
        handle = AbreHandle(sLargo, rAbertura, 0);
        erro = handle.EhValido() ? CXVErroArquivo() : XVErroWindows::DeUltimo();
    } else {
        XVDetencao::Espera();
        erro = AbreSemElo(sLargo, rAbertura, handle);
    }
    if (!erro.Ok()) {
        return erro;
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
    if (ulAtributos != INVALID_FILE_ATTRIBUTES) {
        return (ulAtributos & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EExistencia::eDiretorio
                                                             : EExistencia::eArquivo;
    }
    const ECausaArquivo eCausa = XVErroWindows::DeUltimo().GetCausa();
    if (eCausa == ECausaArquivo::eArquivoNaoEncontrado || eCausa == ECausaArquivo::eCaminhoInvalido) {
        return EExistencia::eAusente;
    }
    // A file that may not be opened even for its attributes, or whose deletion is under way, still has its
    // entry.
    const CXVBuscaArquivos busca(sLargo);
    if (!busca.Achou()) {
        return EExistencia::eSemAcesso;
    }
    return busca.EhDiretorio() ? EExistencia::eDiretorio : EExistencia::eArquivo;
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
