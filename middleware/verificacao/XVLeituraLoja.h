// The files of a store as an examination reads them: of one moment beside a writer, concluded where a writer
// died, whole where a header is damaged. Nothing is written, locked or held open.
//
// Thread rule: one thread.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/xvdatabase/XVCabecalho.h"
#include "core/xvdatabase/XVVisao.h"
#include "support/values/XVTextoAscii.h"

// Bytes of a payload that the device does not give back.
class CXVBuracos {
  public:
    void Inclui(XVUInt64 uiDe, XVUInt64 uiBytes) { m_lista.emplace_back(uiDe, uiDe + uiBytes); }
    bool Toca(XVUInt64 uiDe, XVUInt64 uiAte) const {
        return std::any_of(m_lista.begin(), m_lista.end(),
                           [&](const auto& r) { return r.first < uiAte && uiDe < r.second; });
    }
    // Of a piece of uiBytes at uiOffset: where the run of bytes that begins at uiDe of it ends, all of which
    // can be read, or none.
    std::size_t GetFimDoTrecho(XVUInt64 uiOffset, std::size_t uiDe, std::size_t uiBytes) const {
        XVUInt64 uiFim = uiOffset + uiBytes;
        for (const auto& [uiInicio, uiAte] : m_lista)
            for (const XVUInt64 uiBorda : {uiInicio, uiAte})
                if (uiBorda > uiOffset + uiDe) uiFim = std::min(uiFim, uiBorda);
        return static_cast<std::size_t>(uiFim - uiOffset);
    }

  private:
    std::vector<std::pair<XVUInt64, XVUInt64>> m_lista;  // from, up to; ascending
};

// A file, and what an opening for writing would say of its header.
struct SArquivoLoja {
    std::string sNome;
    bool bExiste = false;
    HRESULT hr = S_OK;
    bool bCabecalho = false;  // the fields of regB are believed: its checksum holds, and headers are not off
    REG_XVCABECALHO_B regB{};
    // Nothing in the first 240 bytes tells whether they are a header that was lost or data of a file that
    // never had one. XVDecideInicio asks the rest of the file.
    bool bSemSinal = false;
    bool bInicioZerado = false;    // they are zeros
    bool bInicioIlegivel = false;  // they cannot be read
    bool bInicioIncerto = false;   // nor does the rest tell: nothing of the file can be placed
    XVUInt64 uiInicio = 0;         // of the payload: 240 or 0
    XVUInt64 uiTamanho = 0;        // bytes of payload on the disk, whatever the header says

    // The bytes of payload that an opening would look at.
    XVUInt64 GetTamanhoDados() const {
        if (bInicioIncerto) return 0;
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
    // Hands the payload's bytes from 0 to uiAte to fn(offset, bytes), in pieces of k_uiBloco. What the device
    // does not give back ends the walk; where pBuracos is given it is noted there, before fn gets the piece
    // with zeros in its place, and the walk goes on. Either way the failure is the result.
    using FPedaco = std::function<void(XVUInt64 uiOffset, std::span<const char> aBytes)>;
    HRESULT Percorre(const SArquivoLoja& rArquivo, XVUInt64 uiAte, const FPedaco& fn,
                     CXVBuracos* pBuracos = nullptr) {
        return Percorre(rArquivo, 0, uiAte, fn, pBuracos);
    }
    HRESULT Percorre(const SArquivoLoja& rArquivo, XVUInt64 uiDe, XVUInt64 uiAte, const FPedaco& fn,
                     CXVBuracos* pBuracos = nullptr);

    // Told of every piece that was read: file and bytes.
    std::function<void(const std::string&, XVUInt64)> m_fnProgresso;

  private:
    HRESULT LeDiario();
    void ConfereDiario(IXVArquivo& rDiario);
    CXVErroArquivo LePedaco(CXVMomento& rMomento, const SArquivoLoja& rArquivo, XVUInt64 uiOffset,
                            std::span<char> aBytes, CXVBuracos* pBuracos);

    CXVVisao m_visao;
    std::map<std::string, std::string> m_mapaNomes;
    EDiario m_eDiario = EDiario::eAusente;
    std::string m_sMotivoDiario;
    std::vector<std::string> m_listaCopias;
};

// Where hr is a failure: notes for the message of the program that it came of this file (empty: the directory
// itself), without the log line, for the store is only looked at. Returns hr unchanged.
HRESULT XVNotaCaminho(HRESULT hr, const std::string& sDiretorio, const std::string& sNome = {});
