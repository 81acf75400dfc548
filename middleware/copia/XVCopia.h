// A copy of a store as it is at one moment, while others write to it, and a store at rest when it is done: no
// journal, every operation whole or absent. The source is only read; nobody is denied anything.
//
// Each file is read in pieces that are of some moment each, while the journal of the writer is followed; the
// operations that came meanwhile are laid over what was read, and all of it is of the moment of the last of
// them. Where too many came to be followed, what has changed since is read again, which is less each time.
// Where nobody writes by a journal it is read until nothing has changed in between.
//
// A copy that is repeated reads and writes the files whose header has changed, and the headers of the others.
// The general log is copied behind the moment, up to its last whole line; seals, other logs and the documents
// of the simulation are not.
//
// Thread rule: one thread.
#pragma once

#include <functional>

#include "core/xvdatabase/XVSeguidorDiario.h"
#include "middleware/copia/XVDestinoCopia.h"
#include "middleware/verificacao/XVLeituraLoja.h"
#include "platform/XVRelogio.h"

struct SCopia {
    SDataHora momento;           // UTC
    XVUInt64 uiIntegracoes = 0;  // records of the index
    XVUInt64 uiArquivos = 0;
    XVUInt64 uiCopiados = 0;       // files that are new or had changed
    XVUInt64 uiBytesCopiados = 0;  // of them
    XVUInt64 uiBytesIguais = 0;    // of the others
};

class CXVCopia {
  public:
    CXVCopia(const std::string& sOrigem, CXVDestinoCopia::SPastas destino);

    HRESULT Executa(SCopia* pCopia);
    // Why nothing was copied, where it was not a failure of the system.
    ERecusaCopia GetRecusa() const {
        return m_eRecusa != ERecusaCopia::eNenhuma ? m_eRecusa : m_destino.GetRecusa();
    }
    // The failure came while the files took their places: copying again goes on there.
    bool FicouNaTroca() const { return m_bTrocando; }

    // Told of every piece that was read.
    std::function<void(XVUInt64 uiBytes)> m_fnProgresso;

  private:
    HRESULT Recusa(ERecusaCopia eRecusa, HRESULT hr);
    HRESULT ConfereOrigem();
    HRESULT ConfereComAnterior(const std::string& sNome);
    HRESULT CopiaDeUmMomento();
    HRESULT Passada(bool bPrimeira, bool* pbPronta);
    HRESULT CopiaArquivo(const std::string& sNome);
    HRESULT CopiaBytes(const SArquivoLoja& rArquivo, XVUInt64 uiDe, XVUInt64* puiSoma);
    bool PodeAplicar() const;
    HRESULT Aplica();
    HRESULT AplicaArquivo(const std::string& sNome, const SMudancaArquivo& rMudanca);
    HRESULT CopiaLogs();
    HRESULT CopiaLog(const std::string& sNome);
    HRESULT Conta(SCopia* pCopia) const;

    std::string m_sOrigem;
    CXVLeituraLoja m_leitura;
    CXVDestinoCopia m_destino;
    std::optional<CXVSeguidorDiario> m_seguidor;  // of this pass
    // What each file held when it was copied last, in this run or before: length and sum of its header, or of
    // all of it where it has none.
    std::map<std::string, SArquivoCopiado> m_mapaFeitos;
    std::set<std::string> m_nomes;  // of the files that the copy is to hold
    bool m_bMudou = false;          // since the pass began
    bool m_bTrocando = false;
    SDataHora m_momento;
    ERecusaCopia m_eRecusa = ERecusaCopia::eNenhuma;
};
