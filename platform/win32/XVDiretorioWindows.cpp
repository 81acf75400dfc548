// Directories: listing, looking a name up without regard to case, creating, marking.
#include "platform/XVCaminho.h"
#include "platform/XVCriaDiretorios.h"
#include "platform/XVDetencao.h"
#include "platform/XVMascara.h"
#include "platform/win32/XVBuscaWindows.h"
#include "platform/win32/XVCaminhoWindows.h"
#include "platform/win32/XVErroWindows.h"
#include "platform/win32/XVHandleWindows.h"
#include "platform/win32/XVSistemaArquivosWindows.h"
#include "platform/win32/XVTextoWindows.h"

namespace {

CXVErroArquivo CriaUm(const std::string& sDiretorio) {
    std::wstring sLargo;
    const CXVErroArquivo erro = XVCaminhoWindows::Converte(sDiretorio, sLargo);
    XVDetencao::Espera();
    if (!erro.Ok() || CreateDirectoryW(sLargo.c_str(), nullptr)) {
        return erro;
    }
    const DWORD ulErro = GetLastError();
    if (ulErro == ERROR_PATH_NOT_FOUND) {
        // The one above may be a file; then it is there when its turn comes, and refused.
        return {ECausaArquivo::eArquivoNaoEncontrado, ulErro};
    }
    const DWORD ulAtributos = GetFileAttributesW(sLargo.c_str());
    if (ulAtributos == INVALID_FILE_ATTRIBUTES) {
        return XVErroWindows::De(ulErro);
    }
    return (ulAtributos & FILE_ATTRIBUTE_DIRECTORY) != 0 ? CXVErroArquivo()
                                                         : XVErroWindows::De(ERROR_DIRECTORY);
}

// The operating system removes the file with its last handle, whatever ends the process.
class CXVMarcaDiretorioWindows final : public IXVMarcaDiretorio {
  public:
    explicit CXVMarcaDiretorioWindows(CXVHandleArquivo&& rHandle) : m_handle(std::move(rHandle)) {}
    ~CXVMarcaDiretorioWindows() override { XVDetencao::Espera(); }
    CXVMarcaDiretorioWindows(const CXVMarcaDiretorioWindows&) = delete;
    CXVMarcaDiretorioWindows& operator=(const CXVMarcaDiretorioWindows&) = delete;

  private:
    CXVHandleArquivo m_handle;
};

}  // namespace

CXVErroArquivo CXVSistemaArquivosWindows::Lista(const std::string& sDiretorio, const std::string& sMascara,
                                                std::vector<std::string>& listaNomes) {
    listaNomes.clear();
    const EExistencia eExistencia = Existe(sDiretorio);
    if (eExistencia == EExistencia::eSemAcesso) {
        return XVErroWindows::De(ERROR_ACCESS_DENIED);
    }
    if (eExistencia != EExistencia::eDiretorio) {
        return XVErroWindows::De(ERROR_PATH_NOT_FOUND);
    }
    std::wstring sTodos;
    const CXVErroArquivo erro = XVCaminhoWindows::Converte(Junta(sDiretorio, "*"), sTodos);
    if (!erro.Ok()) {
        return erro;
    }
    // The mask is applied here: the system's own matching also looks at the short names.
    CXVBuscaArquivos busca(sTodos);
    if (!busca.Achou()) {
        const DWORD ulErro = GetLastError();
        return ulErro == ERROR_FILE_NOT_FOUND ? CXVErroArquivo() : XVErroWindows::De(ulErro);
    }
    do {
        std::string sNome = XVTextoWindows::ParaUtf8(busca.GetNome());
        if (!busca.EhDiretorio() && XVMascara::Confere(sMascara, sNome)) {
            listaNomes.push_back(std::move(sNome));
        }
    } while (busca.Proximo());
    const DWORD ulErro = GetLastError();
    if (ulErro != ERROR_NO_MORE_FILES) {
        listaNomes.clear();
        return XVErroWindows::De(ulErro);
    }
    return {};
}

CXVErroArquivo CXVSistemaArquivosWindows::BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) {
    sNomeReal.clear();
    const std::string sNome = XVCaminho::Separa(sCaminho, XVCaminhoWindows::k_pszSeparadores).sNome;
    std::wstring sLargo;
    std::wstring sNomeLargo;
    if (!XVCaminho::EhNomeSimples(sNome) || !XVCaminhoWindows::Converte(sCaminho, sLargo).Ok() ||
        !XVTextoWindows::ParaLargo(sNome, sNomeLargo)) {
        return {ECausaArquivo::eArquivoNaoEncontrado, 0};
    }
    const CXVBuscaArquivos busca(sLargo);
    if (!busca.Achou()) {
        return XVErroWindows::DeUltimo();
    }
    // A short name finds a file too, but is not its name.
    if (CompareStringOrdinal(busca.GetNome().data(), static_cast<int>(busca.GetNome().size()),
                             sNomeLargo.data(), static_cast<int>(sNomeLargo.size()), TRUE) != CSTR_EQUAL) {
        return {ECausaArquivo::eArquivoNaoEncontrado, 0};
    }
    sNomeReal = XVTextoWindows::ParaUtf8(busca.GetNome());
    return {};
}

// Entries of a directory have no flush of their own here: the file system keeps its names in a journal, and
// a file's own flush brings its entry along.
CXVErroArquivo CXVSistemaArquivosWindows::SincronizaDiretorio(const std::string& sDiretorio) {
    return Existe(sDiretorio) == EExistencia::eDiretorio
               ? CXVErroArquivo()
               : CXVErroArquivo(ECausaArquivo::eCaminhoInvalido, ERROR_PATH_NOT_FOUND);
}

CXVErroArquivo CXVSistemaArquivosWindows::CriaDiretorio(const std::string& sDiretorio) {
    return XVCriaDiretorios(sDiretorio, XVCaminhoWindows::k_pszSeparadores, CriaUm);
}

CXVErroArquivo CXVSistemaArquivosWindows::MarcaDiretorio(const std::string& sDiretorio,
                                                         const std::string& sMarca,
                                                         std::unique_ptr<IXVMarcaDiretorio>& pMarca) {
    pMarca.reset();
    std::wstring sLargo;
    if (sDiretorio.empty() || !XVCaminho::EhNomeSimples(sMarca)) {
        return {ECausaArquivo::eCaminhoInvalido, 0};
    }
    const CXVErroArquivo erro = XVCaminhoWindows::Converte(Junta(sDiretorio, sMarca), sLargo);
    if (!erro.Ok()) {
        return erro;
    }
    XVDetencao::Espera();
    CXVHandleArquivo handle(CreateFileW(sLargo.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr,
                                        OPEN_ALWAYS, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE,
                                        nullptr));
    if (!handle.EhValido()) {
        return XVErroWindows::DeUltimo();
    }
    pMarca = std::make_unique<CXVMarcaDiretorioWindows>(std::move(handle));
    return {};
}

CXVErroArquivo CXVSistemaArquivosWindows::GetCaminhoReal(const std::string& sDiretorio, std::string& sReal) {
    sReal.clear();
    std::wstring sLargo;
    const CXVErroArquivo erro = XVCaminhoWindows::Converte(sDiretorio, sLargo);
    if (!erro.Ok()) {
        return erro;
    }
    const CXVHandleArquivo handle(CreateFileW(sLargo.c_str(), 0,
                                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                              OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!handle.EhValido()) {
        const DWORD ulErro = GetLastError();
        return XVErroWindows::De(ulErro == ERROR_FILE_NOT_FOUND ? ERROR_PATH_NOT_FOUND : ulErro);
    }
    const DWORD ulTamanho = GetFinalPathNameByHandleW(handle.Get(), nullptr, 0, FILE_NAME_NORMALIZED);
    std::wstring sFinal(ulTamanho, L'\0');
    const DWORD ulEscritos =
        GetFinalPathNameByHandleW(handle.Get(), sFinal.data(), ulTamanho, FILE_NAME_NORMALIZED);
    if (ulEscritos == 0 || ulEscritos >= ulTamanho) {
        return XVErroWindows::De(GetLastError());
    }
    sFinal.resize(ulEscritos);
    sReal = XVTextoWindows::ParaUtf8(sFinal);
    return {};
}
