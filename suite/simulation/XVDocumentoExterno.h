// One document that the simulated system keeps under its key ("<key>.doc").
#pragma once

#include <string>

#include "suite/simulation/XVRegraSimulacao.h"

struct SDocumentoExterno {
    REG_XVDMC regOrigem;
    XVUInt64 uiChaveRegistro = 0;
    XVUInt64 uiBaseDados = 0;
    XVUInt eStatus = 0;
    XVUInt eTipo = 0;
    XVUInt eTransacao = 0;
    XVUInt ulFilial = 0;
    std::string sMensagem;
    std::string sEnviado;  // the JSON received
    std::string sRetorno;  // the JSON to answer
    SDesfechoSimulado desfecho;

    // Takes the fields; with bCorpo the body too. False: told in *psErro.
    bool Interpreta(const CXVDocumentoSimulacao& rDocumento, bool bCorpo, std::string* psErro);
    CXVDocumentoSimulacao ComoDocumento() const;
};
