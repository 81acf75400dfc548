// Calls of the operating system that this program puts itself in front of: while a CXVChamadas lives every
// one is recorded in its order, and can be made to fail, to move fewer bytes, or to come too late.
// Thread rule: one thread, and one object at a time.
#pragma once

#include <sys/types.h>

#include <algorithm>
#include <array>
#include <functional>
#include <utility>
#include <vector>

enum class EChamada : unsigned char {
    eOpen,
    ePread,
    ePwrite,
    eWrite,
    eFtruncate,
    eDescarrega,  // fsync, fdatasync
    eFlock,       // without the unlocking
    eRename,      // rename, renameat2
    eUnlink,
    eFstat,
    eReaddir,
    eClose,
    eNanosleep,  // never sleeps while recorded
    eQuantidade
};

struct SChamada {
    EChamada eChamada;
    ino_t uiArquivo = 0;      // of the descriptor, where the call has one
    long lNanossegundos = 0;  // of eNanosleep
    bool operator==(const SChamada&) const = default;
};

class CXVChamadas {
  public:
    CXVChamadas() { s_pViva = this; }
    ~CXVChamadas() { s_pViva = nullptr; }
    CXVChamadas(const CXVChamadas&) = delete;
    CXVChamadas& operator=(const CXVChamadas&) = delete;

    // Once ulAntes calls of the kind have passed, ulVezes of them answer iErrno and do nothing (eClose:
    // closes).
    void Falha(EChamada eChamada, int iErrno, unsigned ulVezes = 1, unsigned ulAntes = 0) {
        Plano(eChamada) = {iErrno, ulVezes, ulAntes, nullptr};
    }
    // fn runs before the next call of the kind, once; what it calls itself is recorded too.
    void Antes(EChamada eChamada, std::function<void()> fn) { Plano(eChamada).fnAntes = std::move(fn); }
    // No transfer moves more than uiBytes.
    void LimitaTransferencias(std::size_t uiBytes) { m_uiMaximo = uiBytes; }

    std::size_t Conta(EChamada eChamada) const { return Filtra({eChamada}).size(); }
    // The recorded calls of the kinds, oldest first.
    std::vector<SChamada> Filtra(const std::vector<EChamada>& listaChamadas) const {
        std::vector<SChamada> lista;
        for (const SChamada& rChamada : m_listaChamadas)
            if (std::ranges::count(listaChamadas, rChamada.eChamada) != 0) lista.push_back(rChamada);
        return lista;
    }
    void Esquece() { m_listaChamadas.clear(); }

    // For the calls themselves: the one object, or null; errno of the failure, or 0.
    static CXVChamadas* Viva() { return s_pViva; }
    int Passa(const SChamada& rChamada) {
        m_listaChamadas.push_back(rChamada);
        SPlano& rPlano = Plano(rChamada.eChamada);
        if (const std::function<void()> fnAntes = std::exchange(rPlano.fnAntes, nullptr)) fnAntes();
        unsigned* const pulResto =
            rPlano.ulAntes > 0 && rPlano.ulVezes > 0 ? &rPlano.ulAntes : &rPlano.ulVezes;
        if (*pulResto == 0) return 0;
        --*pulResto;
        return pulResto == &rPlano.ulVezes ? rPlano.iErrno : 0;
    }
    std::size_t Corta(std::size_t uiBytes) const { return std::min(uiBytes, m_uiMaximo); }

  private:
    struct SPlano {
        int iErrno = 0;
        unsigned ulVezes = 0;
        unsigned ulAntes = 0;
        std::function<void()> fnAntes;
    };
    SPlano& Plano(EChamada eChamada) { return m_aPlanos[static_cast<std::size_t>(eChamada)]; }

    static inline CXVChamadas* s_pViva = nullptr;
    std::array<SPlano, static_cast<std::size_t>(EChamada::eQuantidade)> m_aPlanos;
    std::vector<SChamada> m_listaChamadas;
    std::size_t m_uiMaximo = ~std::size_t{0};
};
