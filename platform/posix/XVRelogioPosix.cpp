#include <sched.h>
#include <cerrno>
#include <ctime>

#include "platform/XVPlataforma.h"

namespace {

SDataHora DeTm(const tm& rTempo) {
    SDataHora dataHora;
    dataHora.usAno = static_cast<XVUShort>(rTempo.tm_year + 1900);
    dataHora.ucMes = static_cast<XVByte>(rTempo.tm_mon + 1);
    dataHora.ucDia = static_cast<XVByte>(rTempo.tm_mday);
    dataHora.ucHora = static_cast<XVByte>(rTempo.tm_hour);
    dataHora.ucMinuto = static_cast<XVByte>(rTempo.tm_min);
    dataHora.ucSegundo = static_cast<XVByte>(rTempo.tm_sec < 60 ? rTempo.tm_sec : 59);  // no leap second
    return dataHora;
}

class CXVRelogioPosix final : public IXVRelogio {
  public:
    // An operation asks several times within one second, and the rules of a time zone are slow to apply.
    SDataHora AgoraLocal() override {
        thread_local struct {
            time_t segundo = -1;
            SDataHora dataHora;
        } ultimo;
        const time_t agora = time(nullptr);
        if (agora == ultimo.segundo) return ultimo.dataHora;
        tm tempo{};
        localtime_r(&agora, &tempo);
        ultimo.segundo = agora;
        return ultimo.dataHora = DeTm(tempo);
    }

    SDataHora AgoraUTC() override {
        const time_t agora = time(nullptr);
        tm tempo{};
        gmtime_r(&agora, &tempo);
        return DeTm(tempo);
    }

    XVUInt GetTicks() override {
        timespec instante{};
        clock_gettime(CLOCK_MONOTONIC, &instante);
        return static_cast<XVUInt>(static_cast<XVUInt64>(instante.tv_sec) * 1000U +
                                   static_cast<XVUInt64>(instante.tv_nsec) / 1000000U);
    }

    void Dorme(XVUInt ulMilissegundos) override {
        if (ulMilissegundos == 0) {
            sched_yield();
            return;
        }
        timespec resto{};
        resto.tv_sec = static_cast<time_t>(ulMilissegundos / 1000U);
        resto.tv_nsec = static_cast<long>(ulMilissegundos % 1000U) * 1000000L;
        while (nanosleep(&resto, &resto) != 0 && errno == EINTR) {
        }
    }
};

}  // namespace

IXVRelogio& XVPlataforma::RelogioNativo() {
    static CXVRelogioPosix& rRelogio = *new CXVRelogioPosix;
    return rRelogio;
}
