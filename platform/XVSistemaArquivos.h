// The file system as the system sees it: one interface, one behaviour on every operating system.
//
// Paths are UTF-8 and absolute or relative to the current directory; Junta() puts them together with
// the separator of the system. Share modes follow one rule everywhere, inside one process as between
// processes: an opening succeeds only when its access is allowed by every other opening of the same
// file and every other opening's access is allowed by its share mode; otherwise the cause is
// eViolacaoCompartilhamento. Deleting or replacing a file that anyone has open fails with that cause too.
//
// A symbolic link may stand anywhere above a file and may be read through, but is never written through: an
// opening that writes or creates, a deletion and a replacement whose last component is a link are
// eAcessoNegado. Who can put a link into a directory must not choose what the program overwrites.
//
// Files and directories are created for their owner and group only (0660 and 0770 before the umask, where
// the system has such permissions).
//
// Thread rule: a file system may be called from any thread at any time. An open file may be used by
// several threads for reading, also beside one that writes other bytes or changes the length behind what is
// read; two writers must not meet (the engine's locks see to that).
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/XVErroArquivo.h"
#include "platform/XVJanela.h"

enum class EAcessoArquivo : std::uint8_t {
    eLeitura,
    eLeituraEscrita,
    eAnexacao,  // write only; every write goes to the end of the file, atomically between processes
};

enum class ECompartilhamentoArquivo : std::uint8_t {
    eNegaTudo,     // nobody else may open the file
    eNegaEscrita,  // others may read
    eNegaNada,     // others may read and write
};

enum class ECriacaoArquivo : std::uint8_t {
    eSomenteExistente,  // absent file: eArquivoNaoEncontrado
    eCriaSeAusente,     // creates an empty file when absent; never truncates
};

struct SAberturaArquivo {
    EAcessoArquivo eAcesso = EAcessoArquivo::eLeitura;
    ECompartilhamentoArquivo eCompartilhamento = ECompartilhamentoArquivo::eNegaEscrita;
    ECriacaoArquivo eCriacao = ECriacaoArquivo::eSomenteExistente;
};

// One open file. Destroying it closes it.
class IXVArquivo {
  public:
    virtual ~IXVArquivo() = default;

    // Reads exactly uiTamanho bytes from uiOffset. On failure the buffer's content is undefined;
    // eFimDeArquivo when the file ends before; eAcessoNegado in eAnexacao.
    virtual CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) = 0;

    // Writes all bytes at uiOffset (ignored in eAnexacao), extending the file where needed. On failure a
    // part of the bytes may have been written.
    virtual CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) = 0;

    // Current length in bytes. On failure uiTamanho is 0.
    virtual CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) = 0;

    // Cuts or extends (with zeros) the file to uiTamanho bytes; only in eLeituraEscrita.
    virtual CXVErroArquivo SetTamanho(XVUInt64 uiTamanho) = 0;

    // Returns after the written bytes, those of windows included, and the length have reached the device.
    // After a failure it is unknown which have, and a later success says nothing about them.
    virtual CXVErroArquivo Sincroniza() = 0;

    // A window on the first uiTamanho bytes, which the file must hold already; only in eLeituraEscrita. Where
    // the system or the place of the file offers no mapping that is safe (a network, a device that copies on
    // writing, bytes without a block of the device behind them) the window works by calls, and what those
    // answer is its answer. The file must outlive its window and is not made shorter while
    // one exists, by this opening (eViolacaoCompartilhamento where it would do harm) or by anyone with
    // whom it shares writing. On failure pJanela is null.
    virtual CXVErroArquivo AbreJanela(XVUInt64 uiTamanho, std::unique_ptr<IXVJanela>& pJanela);
};

// An exclusive mark on a directory; destroying it, or the end of the process in any way, lifts it.
class IXVMarcaDiretorio {
  public:
    virtual ~IXVMarcaDiretorio() = default;
};

enum class EExistencia : std::uint8_t {
    eAusente,    // true absence, and nothing less
    eArquivo,    // whatever is no directory, a link without a target included
    eDiretorio,  // a link to a directory is one
    eSemAcesso,  // the system does not tell: no permission to look, or a device that does not answer
};

class IXVSistemaArquivos {
  public:
    virtual ~IXVSistemaArquivos() = default;

    // Opens a file. On failure pArquivo is null. Not found and bad path are told apart. A directory is
    // eAcessoNegado.
    virtual CXVErroArquivo Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                                std::unique_ptr<IXVArquivo>& pArquivo) = 0;

    // What the directory holds under this name, whatever its attributes and whether it could be opened.
    virtual EExistencia Existe(const std::string& sCaminho) = 0;

    // Whether the file exists and has the read-only attribute (no write permission for anyone).
    virtual bool EhSomenteLeitura(const std::string& sCaminho) = 0;

    // Finds the entry of the path's directory whose name equals the path's last component without regard
    // to case (an exact match wins), as it stands on disk. None: eArquivoNaoEncontrado; no directory:
    // eCaminhoInvalido; a directory that may not be looked into: eAcessoNegado. On failure the name is empty.
    virtual CXVErroArquivo BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) = 0;

    // The one path of a directory that is there, without links and "..", by which two names of the same place
    // are told. Absent: eCaminhoInvalido. On failure sReal is empty.
    virtual CXVErroArquivo GetCaminhoReal(const std::string& sDiretorio, std::string& sReal) = 0;

    // Deletes one file. A file that anyone has open: eViolacaoCompartilhamento. Read-only: eAcessoNegado.
    virtual CXVErroArquivo Apaga(const std::string& sCaminho) = 0;

    // Moves sOrigem onto sDestino, replacing it in one step, and returns after the change has reached the
    // device. Either file open by anyone: eViolacaoCompartilhamento. A directory on either side, or a
    // read-only destination: eAcessoNegado. Renaming a file so that only the case of its name changes is
    // allowed.
    virtual CXVErroArquivo Substitui(const std::string& sOrigem, const std::string& sDestino) = 0;

    // Names (no path) of the files, never directories, of sDiretorio that match sMascara: '*' any run, '?'
    // any one character, case ignored. Order unspecified. An absent directory: eCaminhoInvalido.
    virtual CXVErroArquivo Lista(const std::string& sDiretorio, const std::string& sMascara,
                                 std::vector<std::string>& listaNomes) = 0;

    // Creates the directory and the missing ones above it; success when it is there already. A file in
    // the way: eCaminhoInvalido.
    virtual CXVErroArquivo CriaDiretorio(const std::string& sDiretorio) = 0;

    // Returns after the entries of the directory (files created, deleted, renamed) have reached the device.
    virtual CXVErroArquivo SincronizaDiretorio(const std::string& sDiretorio) = 0;

    // Marks the directory under the name sMarca for as long as pMarca lives. Held by anyone else, in this
    // process or another: eViolacaoCompartilhamento at once. sMarca is a plain name (anything else:
    // eCaminhoInvalido); while the mark is held the directory may hold a file of that name.
    virtual CXVErroArquivo MarcaDiretorio(const std::string& sDiretorio, const std::string& sMarca,
                                          std::unique_ptr<IXVMarcaDiretorio>& pMarca) = 0;

    // sDiretorio and sNome with exactly one separator between them.
    virtual std::string Junta(std::string_view sDiretorio, std::string_view sNome) const = 0;
};
