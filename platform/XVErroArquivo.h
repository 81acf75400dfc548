// The result of an operation of the seam on files: a cause, the same on every system, and the
// operating system's own number (errno or GetLastError), 0 when the seam itself found the fault.
#pragma once

#include "platform/XVTipos.h"

enum class ECausaArquivo : std::uint8_t {
    eNenhuma,                   // success
    eGenerica,                  // anything that has no name below
    eArquivoNaoEncontrado,      // the directory exists, the file does not
    eCaminhoInvalido,           // a directory of the path does not exist, or the path cannot be a path
    eMuitosArquivosAbertos,     // the process or the system is out of handles
    eAcessoNegado,              // permissions, a read-only file opened for writing, a directory
    eArquivoInvalido,           // operation on a closed file or on something that is no file
    eDiretorioCheio,            // the directory takes no further entry
    ePosicionamentoInvalido,    // an offset that the file system cannot address
    eErroFisico,                // the device reported an error
    eViolacaoCompartilhamento,  // another opening denies this access, or holds the access that is denied
    eViolacaoBloqueio,          // a region is locked by another process
    eDiscoCheio,                // no space (or quota) left
    eFimDeArquivo,              // fewer bytes than asked for exist at the offset
};

class [[nodiscard]] CXVErroArquivo {
  public:
    constexpr CXVErroArquivo() = default;
    constexpr CXVErroArquivo(ECausaArquivo eCausa, XVUInt ulErroSistema)
        : m_eCausa(eCausa), m_ulErroSistema(ulErroSistema) {}

    constexpr bool Ok() const { return m_eCausa == ECausaArquivo::eNenhuma; }
    constexpr ECausaArquivo GetCausa() const { return m_eCausa; }
    constexpr XVUInt GetErroSistema() const { return m_ulErroSistema; }
    // The failure itself; null when there is none.
    constexpr const CXVErroArquivo* GetFalha() const& { return Ok() ? nullptr : this; }
    const CXVErroArquivo* GetFalha() const&& = delete;

    // For a failure that is dropped on purpose.
    constexpr void Ignora() const {}

  private:
    ECausaArquivo m_eCausa = ECausaArquivo::eNenhuma;
    XVUInt m_ulErroSistema = 0;
};
