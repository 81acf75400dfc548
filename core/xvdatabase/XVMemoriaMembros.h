// How many members of a store's dynamic groups stay open, and which one closes.
//
// Members stay open while the memory of all of them is within the store's budget and handles last; beyond
// that the one used longest ago closes, in whatever group. What has memory and no handle gives way to the
// budget alone. Handles are the process's: members of all stores count, and a store that opens one too many
// closes its own. Every group keeps its least number open whatever
// the budget says. A member with a prepared write never closes.
//
// Thread rule: any thread, but Inclui, Retira and LeOrcamento, which are called like CXVDataBase's AddFile
// and Inicializa. Members are opened and closed under the opening lock, which is taken before every lock of a
// group, a file or the journal. So groups may close each other's members, and whoever reads or writes in a
// member that is open does not wait for another one that is being loaded.
#pragma once

#include <atomic>
#include <limits>
#include <mutex>
#include <thread>
#include <vector>

#include "support/XVAmbiente.h"

// A group as the budget sees it.
class IXVMembrosAbertos {
  public:
    static constexpr XVUInt64 k_uiNenhumUso = std::numeric_limits<XVUInt64>::max();
    struct SResumo {
        std::size_t uiAbertos = 0;
        XVUInt64 uiMemoria = 0;                    // bytes
        XVUInt64 uiUsoMaisAntigo = k_uiNenhumUso;  // of the members that may close
    };
    virtual SResumo Resume() const = 0;
    // What stays open whatever the budget says.
    virtual std::size_t GetMinimoAbertos() const = 0;
    // Whether closing gives handles back, and not memory alone.
    virtual bool TemHandles() const = 0;
    // Closes the member used longest ago of those that may close; false: none may any more.
    virtual bool FechaMaisAntigo() = 0;

  protected:
    ~IXVMembrosAbertos() = default;
};

class CXVMemoriaMembros {
  public:
    void Inclui(IXVMembrosAbertos& rGrupo) { m_listaGrupos.push_back(&rGrupo); }
    void Retira(IXVMembrosAbertos& rGrupo) { std::erase(m_listaGrupos, &rGrupo); }

    // The registry value MemoriaMembros, in MB. A database without groups has no use for it.
    void LeOrcamento(EModulo eModulo);
    XVUInt64 GetOrcamento() const { return m_uiOrcamento; }  // bytes

    std::mutex& GetMutexAbertura() { return m_mutexAbertura; }

    // Beside every open member: one of the process.
    class CAberto {
      public:
        CAberto() { s_uiAbertos.fetch_add(1, std::memory_order_relaxed); }
        ~CAberto() { s_uiAbertos.fetch_sub(1, std::memory_order_relaxed); }
        CAberto(const CAberto&) = delete;
        CAberto& operator=(const CAberto&) = delete;
    };

    // Notes in uiUso that its member is the one used last.
    void Usa(std::atomic<XVUInt64>& uiUso) {
        if (uiUso.load(std::memory_order_relaxed) == m_uiUltimoUso.load(std::memory_order_relaxed)) return;
        uiUso.store(m_uiUltimoUso.fetch_add(1, std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    }

    // Under the opening lock and no other: closes members until what is open is within the budget and, with
    // pAbre, one more may open in that group.
    void Acomoda(const IXVMembrosAbertos* pAbre) { FechaAte(pAbre, m_uiOrcamento, m_uiMaximoAbertos); }
    // For an opening for which the system has no handle left. While this thread loads a member, closes
    // members down to what each group keeps open; false: nothing was closed.
    bool CedeHandles();
    // Counts bytes by which open members grew. True: so many that Acomoda is due.
    bool Cresce(XVUInt64 uiBytes);

    // Around the loading of a member of rGrupo.
    class CCarga {
      public:
        CCarga(CXVMemoriaMembros& rMemoria, const IXVMembrosAbertos& rGrupo) : m_rMemoria(rMemoria) {
            m_rMemoria.m_pGrupoCarrega = &rGrupo;
            m_rMemoria.m_idCarrega = std::this_thread::get_id();
        }
        ~CCarga() { m_rMemoria.m_idCarrega = std::thread::id(); }
        CCarga(const CCarga&) = delete;
        CCarga& operator=(const CCarga&) = delete;

      private:
        CXVMemoriaMembros& m_rMemoria;
    };

  private:
    // Whether any was closed.
    bool FechaAte(const IXVMembrosAbertos* pAbre, XVUInt64 uiMemoria, std::size_t uiAbertos);

    inline static std::atomic<std::size_t> s_uiAbertos = 0;  // members, in all stores of the process

    std::mutex m_mutexAbertura;
    std::vector<IXVMembrosAbertos*> m_listaGrupos;
    std::atomic<std::thread::id> m_idCarrega;  // of nobody: no member is being loaded
    const IXVMembrosAbertos* m_pGrupoCarrega = nullptr;
    XVUInt64 m_uiOrcamento = 0;                 // bytes
    std::size_t m_uiMaximoAbertos = 0;          // members, in all stores of the process
    std::atomic<XVUInt64> m_uiUltimoUso = 1;    // 0 is the use of a member that was not used yet
    std::atomic<XVUInt64> m_uiCrescimento = 0;  // bytes, since the budget was looked at
};
