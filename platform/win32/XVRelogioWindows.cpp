#include <windows.h>

#include "platform/XVPlataforma.h"

namespace {

SDataHora DeSystemTime(const SYSTEMTIME& rTempo) {
    SDataHora dataHora;
    dataHora.usAno = rTempo.wYear;
    dataHora.ucMes = static_cast<XVByte>(rTempo.wMonth);
    dataHora.ucDia = static_cast<XVByte>(rTempo.wDay);
    dataHora.ucHora = static_cast<XVByte>(rTempo.wHour);
    dataHora.ucMinuto = static_cast<XVByte>(rTempo.wMinute);
    dataHora.ucSegundo = static_cast<XVByte>(rTempo.wSecond);
    return dataHora;
}

class CXVRelogioWindows final : public IXVRelogio {
  public:
    SDataHora AgoraLocal() override {
        SYSTEMTIME tempo{};
        GetLocalTime(&tempo);
        return DeSystemTime(tempo);
    }

    SDataHora AgoraUTC() override {
        SYSTEMTIME tempo{};
        GetSystemTime(&tempo);
        return DeSystemTime(tempo);
    }

    XVUInt GetTicks() override { return static_cast<XVUInt>(GetTickCount64()); }

    void Dorme(XVUInt ulMilissegundos) override {
        if (ulMilissegundos == INFINITE) {
            --ulMilissegundos;  // a length like any other here
        }
        Sleep(ulMilissegundos);
    }
};

}  // namespace

IXVRelogio& XVPlataforma::RelogioNativo() {
    static CXVRelogioWindows& rRelogio = *new CXVRelogioWindows;
    return rRelogio;
}
