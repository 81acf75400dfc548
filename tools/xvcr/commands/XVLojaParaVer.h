// The store of the context's company, for viewing, where a command shows what the component's interface does
// not hand out.
#pragma once

#include "client/XVChamador.h"
#include "client/XVRegistryComDiretorio.h"
#include "middleware/BaseMiddleware.h"
#include "tools/xvcr/commands/XVContexto.h"

class CXVLojaParaVer {
  public:
    // A store that cannot be viewed is thrown as CXVErro.
    explicit CXVLojaParaVer(CXVContexto& rContexto);
    CBaseMiddleware& operator*() { return m_Base; }

  private:
    class CBase final : public CBaseMiddleware {
      public:
        CBase() { SetSomenteLeitura(true); }
    };
    const CXVUsoDoDiretorio m_Diretorio;
    const CXVChamador m_Chamador;
    CBase m_Base;
};
