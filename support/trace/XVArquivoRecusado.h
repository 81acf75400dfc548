// The file because of which an operation fails: noted where it is refused, told with the failure in the
// error log, in a component's last error and in the message of the command-line program.
//
// The code of a failure says what is wrong, not with which file; a store has a file for every day. A note
// belongs to the thread, to one operation (CXVArquivosRecusados) and to one code: the first file refused with
// a code is its cause, what is refused afterwards with the same code a consequence. What succeeds notes,
// allocates and looks up nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/XVTipos.h"
#include "support/trace/IXVDF_Profiler.h"
#include "support/trace/XVCheck.h"

// Keeps the notes of this thread while it lives: one for each operation whose failure is told to somebody.
// They nest: a note goes to the innermost, which leaves what it has to the next when it ends.
class CXVArquivosRecusados {
  public:
    CXVArquivosRecusados();
    ~CXVArquivosRecusados();
    CXVArquivosRecusados(const CXVArquivosRecusados&) = delete;
    CXVArquivosRecusados& operator=(const CXVArquivosRecusados&) = delete;

    // Path of the file that was refused with hr; empty: none was.
    std::string_view GetPath(HRESULT hr) const;
    // A note of the same code that is there already stands.
    void Inclui(HRESULT hr, std::string_view sPath) noexcept;

    static CXVArquivosRecusados* GetAtual();  // of this thread, or null

  private:
    struct SRecusa {
        HRESULT hr;
        std::string sPath;
    };
    std::vector<SRecusa> m_lista;
    CXVArquivosRecusados* m_pAnterior;
};

namespace XVArquivoRecusado {

namespace Interno {
XV_CAMINHO_FRIO void Registra(HRESULT hr, std::string_view sPath, const IXVDF_Profiler* pDono) noexcept;
}

// Where hr is a failure: notes that the file of sPath was refused with it and writes the line "Arquivo
// recusado: <path> (dia dd/mm/aaaa)" to the error log of pDono (may be null). Returns hr unchanged, so that
// it fits around the call that failed. To be called once the failure is final, not at each attempt.
// Thread rule: any thread; the note is the calling thread's.
inline HRESULT Anota(HRESULT hr, std::string_view sPath, const IXVDF_Profiler* pDono) noexcept {
    if (FAILED(hr)) [[unlikely]]
        Interno::Registra(hr, sPath, pDono);
    return hr;
}

// The path, followed by " (dia dd/mm/aaaa)" for the file of a day: a member of a group, whose name ends in
// yyyymmdd before its extensions.
std::string Descreve(std::string_view sPath);

// The same for the file that this thread's operation was refused with hr for; empty: none.
std::string Descreve(HRESULT hr);

// What a person is told: sMensagem, then "Arquivo: <path> (dia dd/mm/aaaa)" where a file was refused with hr.
// Beyond uiMaximo bytes the path loses its beginning ("..."), for the name and the day stand at its end.
std::string Mensagem(std::string_view sMensagem, HRESULT hr, std::size_t uiMaximo = std::string::npos);

// The path in such a message, as far as it was kept; empty: it names no file.
std::string_view PathDaMensagem(std::string_view sMensagem);

}  // namespace XVArquivoRecusado
