// Callers of a store: the others come in the middle of the first one's work, one after the other, and it goes
// on when each is over or waits for it. That they wait is known and not guessed: while the first stands still
// nobody else holds a lock or runs, so a thread that sleeps waits for the first.
#pragma once

#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <functional>
#include <list>
#include <thread>
#include <vector>

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
    // fnEncontro: asked before each operation of the first; at the first true the others come.
    using TEncontro = std::function<bool(const SOperacaoArquivo&)>;

    CXVEsperaDeFio(TEncontro fnEncontro, std::vector<std::function<void()>> outros)
        : m_fnEncontro(std::move(fnEncontro)), m_outros(std::move(outros)) {}

    // The first fails at the place, each time that it comes there.
    void FalhaOPrimeiro() { m_bFalha = true; }

    // Runs the first; all are over afterwards. fnNoEncontro: when the others wait or are over, whether all
    // wait.
    void Executa(const std::function<void()>& fnPrimeiro,
                 const std::function<void(bool bEsperam)>& fnNoEncontro) {
        const CXVVigiaFio::TAntes antes = [&](const SOperacaoArquivo& rOperacao) -> CXVErroArquivo {
            const CXVErroArquivo erro =
                m_bFalha ? CXVErroArquivo(ECausaArquivo::eErroFisico, 0) : CXVErroArquivo();
            if ((!m_fios.empty() && !m_bFalha) || !m_fnEncontro(rOperacao)) return {};
            if (!m_fios.empty()) return erro;
            for (const auto& fnOutro : m_outros) {
                SFio& rFio = m_fios.emplace_back();
                rFio.fio = std::thread([&rFio, &fnOutro] {
                    rFio.lFio = syscall(SYS_gettid);
                    fnOutro();
                    rFio.bAcabou = true;
                });
                while (!rFio.bAcabou && !Dorme(rFio.lFio)) std::this_thread::yield();
            }
            fnNoEncontro(std::ranges::none_of(m_fios, [](const SFio& r) { return r.bAcabou.load(); }));
            return erro;
        };
        CXVVigiaFio::t_pAntes = &antes;
        fnPrimeiro();
        CXVVigiaFio::t_pAntes = nullptr;
        for (SFio& rFio : m_fios) rFio.fio.join();
    }

  private:
    struct SFio {
        std::thread fio;
        std::atomic<long> lFio = 0;
        std::atomic<bool> bAcabou = false;
    };

    static bool Dorme(long lFio) {
        if (lFio == 0) return false;
        std::ifstream arquivo("/proc/self/task/" + std::to_string(lFio) + "/stat");
        std::string sEstado;
        std::getline(arquivo, sEstado);
        const std::size_t uiFimDoNome = sEstado.rfind(')');
        return uiFimDoNome != std::string::npos && sEstado.compare(uiFimDoNome, 4, ") S ") == 0;
    }

    TEncontro m_fnEncontro;
    std::vector<std::function<void()>> m_outros;
    std::list<SFio> m_fios;
    bool m_bFalha = false;
};
