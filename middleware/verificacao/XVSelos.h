// The seals of a store: of each data file the update counter, the length and a checksum for every 64 KiB of
// payload, as they were found on a day when the store was whole. Bytes that differ later although no
// operation changed them are damage that nothing else shows.
//
// "XVDATABASE_SELOS.srk" lies beside the files and belongs to none of them: it may be deleted at any time.
// docs/formats.md describes it. Thread rule: one thread.
#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "middleware/verificacao/XVLeituraLoja.h"

inline constexpr const char* k_pszArquivoSelos = "XVDATABASE_SELOS.srk";
inline constexpr const char* k_pszArquivoSelosNovo = "XVDATABASE_SELOSN.srk";

struct SSelo {
    XVUInt64 uiContador = 0;
    XVUInt64 uiVoltas = 0;
    XVUInt64 uiTamanho = 0;        // bytes of payload
    std::vector<XVUInt64> aSomas;  // of each block of CXVLeituraLoja::k_uiBloco bytes, the last one shorter
    bool operator==(const SSelo&) const = default;
};
// By name in small letters.
using TSelos = std::map<std::string, SSelo>;

namespace XVSelos {
// An absent file: none. One that does not hold: E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA and none.
HRESULT Le(const std::string& sDiretorio, TSelos* pSelos);
// Replaces the file in one step.
HRESULT Grava(const std::string& sDiretorio, const TSelos& rSelos);
}  // namespace XVSelos

// One reading of a file from front to back, held against its old seal and summed for a new one.
class CXVConferenciaSelo {
  public:
    // A file that is only appended to keeps the blocks that it had, whatever its counter says; any other is
    // held against its seal while the counter is the same.
    CXVConferenciaSelo(const TSelos& rSelos, const SArquivoLoja& rArquivo, bool bSoAnexa);

    // A block of the payload, in order. True: its bytes are not those that were sealed.
    bool Confere(XVUInt64 uiOffset, std::span<const char> aBytes);
    // Once all was read.
    XVUInt64 GetAlterados() const { return m_uiAlterados; }
    const SSelo& GetNovo() const { return m_novo; }

  private:
    const SSelo* m_pAntigo = nullptr;  // null: nothing to hold it against
    SSelo m_novo;
    XVUInt64 m_uiAlterados = 0;
};
