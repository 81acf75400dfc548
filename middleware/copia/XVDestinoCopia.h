// The directory that a store is copied to: what it may hold beforehand, the stage where the files of a new
// copy are written while the copy of before stays as it is, and their exchange.
//
// The exchange takes the version file away first and puts it back last: a directory in which the files of two
// copies stand side by side is no store to anyone. Killed within it, the next copying finishes it first.
//
// Thread rule: one thread.
#pragma once

#include <memory>
#include <set>

#include "core/xvdatabase/XVCabecalho.h"
#include "middleware/copia/XVManifestoCopia.h"
#include "platform/XVSistemaArquivos.h"

// Why nothing was copied.
enum class ERecusaCopia : std::uint8_t {
    eNenhuma,
    eDestinoOcupado,    // the directory holds files and is no copy
    eDestinoEmUso,      // somebody copies to it
    eCopiaMudada,       // the copy was opened and written to, or damaged
    eOutraBase,         // the copy is another store's
    eCopiaMaisNova,     // the copy is of a later moment than the store
    eArquivoSumiu,      // the store has lost a file that the copy holds
    eOrigemDanificada,  // a file or the journal of the store would be refused
    eConversao,         // a conversion of the store was interrupted, or is under way
    eSemSossego,        // the store was written to faster than it could be read
};

// The file that is written and read as whole as possible: length and first bytes.
CXVErroArquivo XVResumeArquivo(IXVArquivo& rArquivo, SArquivoCopiado* pResumo);

class CXVDestinoCopia {
  public:
    struct SPastas {
        std::string sCopia;  // of the company; holds the manifest
        std::string sDados;  // its data directory
    };
    explicit CXVDestinoCopia(SPastas pastas);

    // Looks whether the directory may take a copy; changes nothing.
    HRESULT Confere();
    // Makes it ready: nobody else copies to it, an exchange of before is finished, the stage is empty, and
    // what it holds is the copy that the manifest describes.
    HRESULT Prepara();
    ERecusaCopia GetRecusa() const { return m_eRecusa; }
    // The copy of before; no files where there is none.
    const std::map<std::string, SArquivoCopiado>& GetArquivos() const { return m_manifesto.mapaArquivos; }
    // Of a file as the copy is to hold it: on the stage, or of before.
    bool Existe(const std::string& sNome) const { return Existe(GetPasta(sNome), sNome); }
    // False: it has no header that can be read.
    bool LeCabecalho(const std::string& sNome, REG_XVCABECALHO* pReg) const;
    HRESULT Resume(const std::string& sNome, SArquivoCopiado* pResumo) const;

    HRESULT AbreNoPalco(const std::string& sNome, std::unique_ptr<IXVArquivo>* ppArquivo);
    bool EstaNoPalco(const std::string& sNome) const { return m_palco.contains(sNome); }
    // The code of a failure with a file on the stage, noted for the message of the program.
    HRESULT Nota(const CXVErroArquivo& rErro, const std::string& sNome) const;
    // Cuts what stands behind the last end of a line.
    HRESULT CortaLinhaPartida(const std::string& sNome);
    // Gives the stage up; the copy of before is as it was.
    void Desiste();
    // Makes the files of these names the copy: those on the stage, and those of before. Until *pbComecou
    // nothing has changed.
    HRESULT Troca(const std::set<std::string>& nomes, bool* pbComecou);

  private:
    HRESULT Recusa(ERecusaCopia eRecusa, HRESULT hr);
    HRESULT ExigeVazia(const std::string& sPasta);
    HRESULT ConfereArquivos();
    HRESULT LimpaPalco();
    HRESULT Move(const std::string& sDe, const std::string& sPara, const std::string& sNome) const;
    HRESULT SincronizaPalco() const;
    HRESULT TerminaTroca();
    static bool Existe(const std::string& sPasta, const std::string& sNome);
    const std::string& GetPasta(const std::string& sNome) const {
        return EstaNoPalco(sNome) ? m_sPalco : m_pastas.sDados;
    }
    CXVErroArquivo Abre(const std::string& sNome, const SAberturaArquivo& rAbertura,
                        std::unique_ptr<IXVArquivo>* ppArquivo) const;

    SPastas m_pastas;
    std::string m_sPalco;
    SManifestoCopia m_manifesto;
    std::unique_ptr<IXVMarcaDiretorio> m_pMarca;
    std::set<std::string> m_palco;
    ERecusaCopia m_eRecusa = ERecusaCopia::eNenhuma;
};
