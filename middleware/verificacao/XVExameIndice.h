// The index of the integrations as it lies in its file, in the order of the integrations' keys, and what of
// it cannot be right.
//
// Thread rule: one thread.
#pragma once

#include <vector>

#include "middleware/XVRegistrosMiddleware.h"
#include "middleware/verificacao/XVSelos.h"

struct SEntradaIndice {
    REG_CR_INDEX_INTEGRACAO_V1 reg;
    XVUInt ulPosicao;
    bool bAlterada;  // in a block that is not the one that was sealed

    XVUInt64 GetDia() const { return REG_XVDMC(reg.regDmcIntegracao).GetDma().ToChave(); }
    XVUInt GetPonteiro() const { return REG_XVDMC(reg.regDmcIntegracao).GetPonteiro(); }
};

class CXVExameIndice {
  public:
    HRESULT Examina(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiAte,
                    const TSelos& rSelos);

    // By key, then by position in the file; several of one integration stand side by side.
    const std::vector<SEntradaIndice>& GetEntradas() const { return m_aEntradas; }
    // Positions of records that can be no index record.
    const std::vector<XVUInt>& GetImpossiveis() const { return m_aImpossiveis; }
    XVUInt64 GetSobra() const { return m_uiSobra; }
    XVUInt64 GetBlocosAlterados() const { return m_uiBlocosAlterados; }
    const SSelo& GetSelo() const { return m_selo; }

  private:
    void Ordena();

    std::vector<SEntradaIndice> m_aEntradas;
    std::vector<XVUInt> m_aImpossiveis;
    XVUInt64 m_uiSobra = 0;
    XVUInt64 m_uiBlocosAlterados = 0;
    SSelo m_selo;
};
