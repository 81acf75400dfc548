// Clock and sleep. Thread rule: any thread.
#pragma once

#include "platform/XVTipos.h"

struct SDataHora {
    XVUShort usAno = 0;
    XVByte ucMes = 0;  // 1..12
    XVByte ucDia = 0;  // 1..31
    XVByte ucHora = 0;
    XVByte ucMinuto = 0;
    XVByte ucSegundo = 0;

    bool operator==(const SDataHora&) const = default;
};

class IXVRelogio {
  public:
    virtual ~IXVRelogio() = default;
    virtual SDataHora AgoraLocal() = 0;
    virtual SDataHora AgoraUTC() = 0;
    // Milliseconds since an arbitrary start, wrapping at 32 bits.
    virtual XVUInt GetTicks() = 0;
    // Suspends the calling thread; 0 only yields the processor.
    virtual void Dorme(XVUInt ulMilissegundos) = 0;
};
