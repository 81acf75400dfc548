// What the data files say about the version of a database that has no version file, or one that tells of an
// earlier version: a single bit of it that changes would have the records converted a second time.
//
// Thread rule: one object is used by one thread.
#pragma once

#include <string>

#include "middleware/ConversaoArquivo.h"
#include "suite/XVInicializador.h"

class CXVIndiciosVersao : public CXVInicializador {
  public:
    XV_CLASSE("CXVIndiciosVersao", "ConversaoIndicios")

    // S_OK when nothing contradicts version 0. E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, the file
    // named in the error log: a file that a later step has stamped; records that are possible in a later
    // layout and not in the first; or data of which no record shows the first layout where the creation
    // control is missing as well, for then nothing tells that there never was a version file. Changes
    // nothing.
    HRESULT ConfereVersaoZero();
    // The same, with the version file named, for a version file that says usVersao, from 1: a file that a
    // later step has stamped, or records that are possible in a later layout only. The journal of a
    // conversion explains what its step has done.
    HRESULT ConfereVersaoAnterior(XVUShort usVersao);
    // Whether any data file holds data; after ConfereVersaoZero.
    bool TemDados() const { return m_bTemDados; }

  private:
    HRESULT ConfereTodos();
    HRESULT ConfereGrupo(const char* pszPadrao);
    HRESULT ConfereArquivo(const std::string& sNome);
    HRESULT Recusa(const std::string& sPath, const char* pszSemVersao, const char* pszComVersao);
    template <class TPrimeiro, class TPosterior>
    HRESULT ConfereLeiaute(const std::string& sPath, const SArquivoConversao& rArquivo);
    template <class T>
    HRESULT SaoPossiveis(const std::string& sPath, const SArquivoConversao& rArquivo, bool* pbPossiveis);

    XVUShort m_usVersao = 0;        // that of the version file
    XVUShort m_usMaiorCarimbo = 0;  // what no step up to now can have exceeded
    bool m_bConversaoEmCurso = false;
    bool m_bTemDados = false;
    bool m_bPrimeiroLeiaute = false;
};
