#include "platform/win32/XVJanelaWindows.h"

#include <algorithm>
#include <limits>
#include <new>
#include <string>

#include "platform/win32/XVErroWindows.h"

class CXVJanelaWindows final : public CXVJanelaMemoria {
  public:
    CXVJanelaWindows(void* pInicio, std::size_t uiTamanho, CXVJanelasDoArquivo& rJanelas)
        : CXVJanelaMemoria(pInicio, uiTamanho), m_rJanelas(rJanelas) {
        m_rJanelas.Inclui(this);
    }
    ~CXVJanelaWindows() override {
        m_rJanelas.Exclui(this);
        UnmapViewOfFile(GetInicio());
    }

    bool Descarrega() const { return FlushViewOfFile(GetInicio(), GetTamanho()) != FALSE; }

  private:
    CXVJanelasDoArquivo& m_rJanelas;
};

CXVErroArquivo CXVJanelasDoArquivo::Descarrega() {
    const std::lock_guard trava(m_mutex);
    const bool bTodas = std::all_of(m_listaJanelas.begin(), m_listaJanelas.end(),
                                    [](const CXVJanelaWindows* pJanela) { return pJanela->Descarrega(); });
    return bTodas ? CXVErroArquivo() : XVErroWindows::DeUltimo();
}

void CXVJanelasDoArquivo::Inclui(const CXVJanelaWindows* pJanela) {
    const std::lock_guard trava(m_mutex);
    m_listaJanelas.push_back(pJanela);
}

void CXVJanelasDoArquivo::Exclui(const CXVJanelaWindows* pJanela) {
    const std::lock_guard trava(m_mutex);
    std::erase(m_listaJanelas, pJanela);
}

namespace XVJanelaWindows {
namespace {

constexpr DWORD k_ulCaminhoMaximo = 32768;              // characters
constexpr DWORD k_ulBlocosCompartilhados = 0x08000000;  // FILE_SUPPORTS_BLOCK_REFCOUNTING

// Root of the volume on which the file lies, whatever way led to it; empty on failure.
std::wstring VolumeDe(HANDLE hArquivo) {
    std::wstring sCaminho(k_ulCaminhoMaximo, L'\0');
    const DWORD ulTamanho =
        GetFinalPathNameByHandleW(hArquivo, sCaminho.data(), k_ulCaminhoMaximo, VOLUME_NAME_DOS);
    std::wstring sVolume(k_ulCaminhoMaximo, L'\0');
    if (ulTamanho == 0 || ulTamanho >= k_ulCaminhoMaximo ||
        !GetVolumePathNameW(sCaminho.c_str(), sVolume.data(), k_ulCaminhoMaximo)) {
        return {};
    }
    return sVolume.c_str();
}

// A page that cannot be read or written ends the process. So only volumes that do not go away (neither a
// network nor a medium that can be taken out) and that write a block in its place.
bool TemLugarFixo(HANDLE hArquivo) {
    const std::wstring sVolume = VolumeDe(hArquivo);
    const UINT uiTipo = sVolume.empty() ? DRIVE_UNKNOWN : GetDriveTypeW(sVolume.c_str());
    DWORD ulRecursos = 0;
    return (uiTipo == DRIVE_FIXED || uiTipo == DRIVE_RAMDISK) &&
           GetVolumeInformationW(sVolume.c_str(), nullptr, 0, nullptr, nullptr, &ulRecursos, nullptr, 0) &&
           (ulRecursos & k_ulBlocosCompartilhados) == 0;
}

// Whether the file holds the bytes, with room on the volume for each.
bool TemBlocos(HANDLE hArquivo, XVUInt64 uiTamanho) {
    constexpr DWORD k_ulSemBlocos =
        FILE_ATTRIBUTE_SPARSE_FILE | FILE_ATTRIBUTE_COMPRESSED | FILE_ATTRIBUTE_OFFLINE;
    FILE_BASIC_INFO basico{};
    LARGE_INTEGER tamanho{};
    return GetFileInformationByHandleEx(hArquivo, FileBasicInfo, &basico, sizeof(basico)) &&
           (basico.FileAttributes & k_ulSemBlocos) == 0 && GetFileSizeEx(hArquivo, &tamanho) &&
           static_cast<XVUInt64>(tamanho.QuadPart) >= uiTamanho;
}

}  // namespace

std::unique_ptr<IXVJanela> AbreJanela(HANDLE hArquivo, XVUInt64 uiTamanho, CXVJanelasDoArquivo& rJanelas) {
    if (uiTamanho == 0 || uiTamanho > std::numeric_limits<std::size_t>::max() / 2 ||
        !TemLugarFixo(hArquivo) || !TemBlocos(hArquivo, uiTamanho)) {
        return nullptr;
    }
    const HANDLE hMapa =
        CreateFileMappingW(hArquivo, nullptr, PAGE_READWRITE, static_cast<DWORD>(uiTamanho >> 32),
                           static_cast<DWORD>(uiTamanho), nullptr);
    if (hMapa == nullptr) {
        return nullptr;
    }
    const std::size_t uiMapeados = static_cast<std::size_t>(uiTamanho);
    void* pInicio = MapViewOfFile(hMapa, FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, uiMapeados);
    CloseHandle(hMapa);  // the window keeps the mapping
    if (pInicio == nullptr) {
        return nullptr;
    }
    std::unique_ptr<IXVJanela> pJanela(new (std::nothrow) CXVJanelaWindows(pInicio, uiMapeados, rJanelas));
    if (pJanela == nullptr) {
        UnmapViewOfFile(pInicio);
    }
    return pJanela;
}

}  // namespace XVJanelaWindows
