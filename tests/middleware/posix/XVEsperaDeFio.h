// Two callers of a store: the second comes in the middle of the first one's work, which goes on when the
// second is over or waits for it. That it waits is known and not guessed: while the first stands still nobody
// else holds a lock or runs, so a thread that sleeps waits for the first.
#pragma once

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "tests/harness/XVSistemaArquivosEnvolto.h"

// Asks a thread that wants to be asked before each of its operations, which fails where it is told to.
class CXVVigiaFio {
  public:
    using TAntes = std::function<CXVErroArquivo(const SOperacaoArquivo&)>;

    template <class TFaz, class TMetade>
    CXVErroArquivo Opera(const SOperacaoArquivo& rOperacao, TFaz fnFaz, TMetade) {
        CXVErroArquivo erro;
        if (t_pAntes != nullptr) erro = (*t_pAntes)(rOperacao);
        return erro.Ok() ? fnFaz() : erro;
    }
    void Abriu(const std::shared_ptr<SAberto>&) {}
    void Fecha(SAberto& rAberto) { rAberto.Solta(); }

    static inline thread_local const TAntes* t_pAntes = nullptr;
};

class CXVEsperaDeFio {
  public:
    // fnEncontro: asked before each operation of the first; at the first true the second comes.
    using TEncontro = std::function<bool(const SOperacaoArquivo&)>;

    CXVEsperaDeFio(TEncontro fnEncontro, std::function<void()> fnSegundo)
        : m_fnEncontro(std::move(fnEncontro)), m_fnSegundo(std::move(fnSegundo)) {}

    // The first fails at the place, each time that it comes there.
    void FalhaOPrimeiro() { m_bFalha = true; }

    // Runs the first; both are over afterwards. fnNoEncontro: when the second waits or is over.
    void Executa(const std::function<void()>& fnPrimeiro,
                 const std::function<void(bool bEspera)>& fnNoEncontro) {
        const CXVVigiaFio::TAntes antes = [&](const SOperacaoArquivo& rOperacao) -> CXVErroArquivo {
            if (m_fio.joinable() && !m_bFalha) return {};
            if (!m_fnEncontro(rOperacao)) return {};
            if (m_fio.joinable()) return {ECausaArquivo::eErroFisico, 0};
            m_fio = std::thread([this] {
                m_lFio = syscall(SYS_gettid);
                m_fnSegundo();
                m_bAcabou = true;
            });
            while (!m_bAcabou && !Dorme()) std::this_thread::yield();
            fnNoEncontro(!m_bAcabou);
            return m_bFalha ? CXVErroArquivo(ECausaArquivo::eErroFisico, 0) : CXVErroArquivo();
        };
        CXVVigiaFio::t_pAntes = &antes;
        fnPrimeiro();
        CXVVigiaFio::t_pAntes = nullptr;
        if (m_fio.joinable()) m_fio.join();
    }

  private:
    bool Dorme() const {
        if (m_lFio == 0) return false;
        std::ifstream arquivo("/proc/self/task/" + std::to_string(m_lFio) + "/stat");
        std::string sEstado;
        std::getline(arquivo, sEstado);
        const std::size_t uiFimDoNome = sEstado.rfind(')');
        return uiFimDoNome != std::string::npos && sEstado.compare(uiFimDoNome, 4, ") S ") == 0;
    }

    TEncontro m_fnEncontro;
    std::function<void()> m_fnSegundo;
    std::thread m_fio;
    bool m_bFalha = false;
    std::atomic<long> m_lFio = 0;
    std::atomic<bool> m_bAcabou = false;
};
