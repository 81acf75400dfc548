// Stores whose last component is gone, kept open for a moment: a client that comes back within it, as one
// does that connects for each operation, finds its store open.
//
// Thread rule: any thread.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "core/xvrpcdll/XVComponenteMiddleware.h"

class CXVLojasMantidas {
  public:
    using PLogica = std::shared_ptr<CXVMiddlewareComSelos>;

    // Milliseconds for which a store is kept; 0, as at first: not at all.
    void SetTempo(XVUInt ulTempo) { m_ulTempo = ulTempo; }

    // Takes over the logic object of a component that ends, and with it its share in the store; one for each
    // company is enough. What is not kept is finalised before the return.
    void Guarda(PLogica pLogica);
    // Closes what has been kept long enough.
    void FechaVencidas();
    // Closes everything, and keeps nothing from now on.
    void FechaTodas();

  private:
    struct SMantida {
        PLogica pLogica;
        XVUInt ulDesde;
    };
    // The stores kept for ulLimite milliseconds, and no more in the list.
    std::vector<SMantida> Toma(XVUInt ulLimite);

    std::mutex m_Mutex;  // guards the list; never held while a store closes
    std::vector<SMantida> m_lista;
    std::atomic<XVUInt> m_ulTempo = 0;
};
