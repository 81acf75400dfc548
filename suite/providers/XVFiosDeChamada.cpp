#include "suite/providers/XVFiosDeChamada.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace {

constexpr unsigned k_uiMaximoOciosos = 8;  // more are seldom at work at one time

struct SFio {
    std::condition_variable chegou;
    std::shared_ptr<IXVTrabalho> pTrabalho;
    SFio* pSeguinte = nullptr;  // of the idle ones: a list that takes no memory cannot fail
};

class CXVFios {
  public:
    bool Entrega(std::shared_ptr<IXVTrabalho>& rpTrabalho) {
        std::unique_lock trava(m_mutex);
        if (SFio* pFio = m_pOcioso) {
            m_pOcioso = pFio->pSeguinte;
            --m_uiOciosos;
            pFio->pTrabalho = std::move(rpTrabalho);
            pFio->chegou.notify_one();
            return true;
        }
        trava.unlock();
        return Comeca(rpTrabalho);
    }

  private:
    bool Comeca(std::shared_ptr<IXVTrabalho>& rpTrabalho) {
        auto pFio = std::make_unique<SFio>();
        pFio->pTrabalho = std::move(rpTrabalho);
        try {
            std::thread([this, pDoFio = pFio.get()] { Vive(std::unique_ptr<SFio>(pDoFio)); }).detach();
        } catch (const std::system_error&) {
            return false;
        }
        static_cast<void>(pFio.release());  // the thread's own from here on
        return true;
    }

    void Vive(std::unique_ptr<SFio> pFio) noexcept {
        do {
            pFio->pTrabalho->Trabalha();
            pFio->pTrabalho.reset();
        } while (EsperaOutro(*pFio));
    }

    bool EsperaOutro(SFio& rFio) noexcept {
        std::unique_lock trava(m_mutex);
        if (m_uiOciosos == k_uiMaximoOciosos) return false;
        rFio.pSeguinte = std::exchange(m_pOcioso, &rFio);
        ++m_uiOciosos;
        rFio.chegou.wait(trava, [&rFio] { return rFio.pTrabalho != nullptr; });
        return true;
    }

    std::mutex m_mutex;
    SFio* m_pOcioso = nullptr;
    unsigned m_uiOciosos = 0;
};

}  // namespace

// Never destroyed: threads wait in it while the process ends.
bool XVFiosDeChamada::Entrega(std::shared_ptr<IXVTrabalho> pTrabalho) {
    static CXVFios& s_rFios = *new CXVFios;
    return s_rFios.Entrega(pTrabalho);
}
