// The files of a store as an examination reads them: of one moment beside a writer, concluded where a writer
// died, whole where a header is damaged. Nothing is written, locked or held open.
//
// Thread rule: one thread.
#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "core/xvdatabase/XVCabecalho.h"
#include "core/xvdatabase/XVVisao.h"
#include "support/values/XVTextoAscii.h"

// A file, and what an opening for writing would say of its header.
struct SArquivoLoja {
    std::string sNome;
    bool bExiste = false;
    HRESULT hr = S_OK;
    bool bCabecalho = false;  // the fields of regB are believed: its checksum holds, and headers are not off
    REG_XVCABECALHO_B regB{};
    bool bInicioZerado = false;  // zeros where a header would stand
    XVUInt64 uiInicio = 0;       // of the payload: 240 or 0
    XVUInt64 uiTamanho = 0;      // bytes of payload on the disk, whatever the header says

    // The bytes of payload that an opening would look at.
    XVUInt64 GetTamanhoDados() const {
        return bCabecalho && regB.uiTamanhoDados < uiTamanho ? regB.uiTamanhoDados : uiTamanho;
    }
};

enum class EDiario : std::uint8_t {
    eAusente,     // the store was closed
    eEmUso,       // somebody has it open for writing
    eAConcluir,   // a writer died; the next use concludes its operations
    eNaoConfere,  // a writer died, and its journal does not explain the files
};

class CXVLeituraLoja {
  public:
    // Pieces that are of one moment each; the unit of the seals.
    static constexpr std::size_t k_uiBloco = 64U << 10;

    explicit CXVLeituraLoja(const std::string& sDiretorio);

    // Lists the directory and looks at the journal. A directory that is not there: eBadPath.
    HRESULT Abre();
    EDiario GetDiario() const { return m_eDiario; }
    CXVVisao& GetVisao() { return m_visao; }
    // What the journal's own check says where it does not explain the files.
    const std::string& GetMotivoDiario() const { return m_sMotivoDiario; }
    // Transient copies that the next use will delete, as the journal says.
    const std::vector<std::string>& GetCopiasConhecidas() const { return m_listaCopias; }
    // The names in the directory, as they stand there, by their form in small letters.
    const std::map<std::string, std::string>& GetNomes() const { return m_mapaNomes; }
    bool TemNome(const std::string& sNome) const { return m_mapaNomes.contains(XVEmMinusculas(sNome)); }

    // An absent file is no failure.
    HRESULT Descreve(const std::string& sNome, SArquivoLoja* pArquivo);
    // Hands the payload's bytes from 0 to uiAte to fn(offset, bytes), in pieces of k_uiBloco.
    using FPedaco = std::function<void(XVUInt64 uiOffset, std::span<const char> aBytes)>;
    HRESULT Percorre(const SArquivoLoja& rArquivo, XVUInt64 uiAte, const FPedaco& fn) {
        return Percorre(rArquivo, 0, uiAte, fn);
    }
    HRESULT Percorre(const SArquivoLoja& rArquivo, XVUInt64 uiDe, XVUInt64 uiAte, const FPedaco& fn);

    // Told of every piece that was read: file and bytes.
    std::function<void(const std::string&, XVUInt64)> m_fnProgresso;

  private:
    HRESULT LeDiario();
    void ConfereDiario(IXVArquivo& rDiario);

    CXVVisao m_visao;
    std::map<std::string, std::string> m_mapaNomes;
    EDiario m_eDiario = EDiario::eAusente;
    std::string m_sMotivoDiario;
    std::vector<std::string> m_listaCopias;
};

// Where hr is a failure: notes for the message of the program that it came of this file (empty: the directory
// itself), without the log line, for the store is only looked at. Returns hr unchanged.
HRESULT XVNotaCaminho(HRESULT hr, const std::string& sDiretorio, const std::string& sNome = {});
