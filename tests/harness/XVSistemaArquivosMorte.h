// A file system whose process "dies" between two operations, as by kill -9: the chosen operation and all
// after it have no effect on the file system underneath, and everything that was open is released at
// once. What is on disk then is what a new process would find.
//
// The dying operation and those after it throw SProcessoMorto, or fail quietly (EMorte). While an exception
// is on its way, and once Executa has returned, they fail quietly instead, so that the destructors of what is
// left of the dead process can run. Thread rule: any thread, but the dying one must be inside Executa.
#pragma once

#include <exception>
#include <functional>
#include <mutex>
#include <vector>

#include "tests/harness/XVSistemaArquivosEnvolto.h"

// Deliberately no std::exception: no handler for the errors of a living process may take it.
struct SProcessoMorto {};

enum class EContagem : std::uint8_t {
    eTodas,       // every operation, reads and questions included
    eAlteracoes,  // only those that can change something
};

enum class EMorte : std::uint8_t {
    eLanca,  // throws: the code behind the death does not run
    eCala,  // fails quietly: it runs to its end and nothing of it has an effect; also where nothing may throw
};

// The life of one process: what it counted and what it holds open. One mutex covers each operation as a
// whole, so nothing of the dead process reaches the file system after its death.
class CXVProcessoMortal {
  public:
    CXVProcessoMortal(EContagem eContagem, EMorte eMorte, XVUInt64 uiOperacao, bool bGravaMetade)
        : m_eContagem(eContagem), m_eMorte(eMorte), m_uiOperacao(uiOperacao), m_bGravaMetade(bGravaMetade) {}

    template <class TFaz, class TMetade>
    CXVErroArquivo Opera(const SOperacaoArquivo& rOperacao, TFaz fnFaz, TMetade fnMetade) {
        std::unique_lock trava(m_mutex);
        const bool bConta = !m_bMorto && (rOperacao.bAltera || m_eContagem == EContagem::eTodas);
        if (bConta && ++m_uiQuantidade == m_uiOperacao) {
            if (m_bGravaMetade) fnMetade();
            Morre();
        }
        if (!m_bMorto) return fnFaz();
        const bool bCalado = m_eMorte == EMorte::eCala || m_bEnterrado || std::uncaught_exceptions() > 0;
        trava.unlock();
        if (!bCalado) throw SProcessoMorto();
        return {ECausaArquivo::eGenerica, 0};
    }
    // Called from inside Opera.
    void Abriu(const std::shared_ptr<SAberto>& pAberto) { m_listaAbertos.push_back(pAberto); }
    void Fecha(SAberto& rAberto) {
        const std::lock_guard trava(m_mutex);
        rAberto.Solta();
    }

    void Enterra() {
        const std::lock_guard trava(m_mutex);
        m_bEnterrado = true;
    }
    bool EstaMorto() const {
        const std::lock_guard trava(m_mutex);
        return m_bMorto;
    }
    XVUInt64 GetQuantidade() const {
        const std::lock_guard trava(m_mutex);
        return m_uiQuantidade;
    }

  private:
    void Morre() {
        m_bMorto = true;
        for (const std::weak_ptr<SAberto>& rAberto : m_listaAbertos)
            if (const auto pAberto = rAberto.lock()) pAberto->Solta();
    }

    mutable std::mutex m_mutex;
    const EContagem m_eContagem;
    const EMorte m_eMorte;
    const XVUInt64 m_uiOperacao;
    const bool m_bGravaMetade;
    XVUInt64 m_uiQuantidade = 0;
    bool m_bMorto = false;
    bool m_bEnterrado = false;
    std::vector<std::weak_ptr<SAberto>> m_listaAbertos;
};

class CXVSistemaArquivosMorte final : public TXVSistemaArquivosEnvolto<CXVProcessoMortal> {
  public:
    explicit CXVSistemaArquivosMorte(IXVSistemaArquivos& rInterno, EContagem eContagem = EContagem::eTodas,
                                     EMorte eMorte = EMorte::eLanca)
        : TXVSistemaArquivosEnvolto(rInterno, nullptr), m_eContagem(eContagem), m_eMorte(eMorte) {
        Nasce(0);
    }

    // A new process that dies at operation uiOperacao (1 is the first one; 0: lives and counts). With
    // bGravaMetade a write that it dies at has left the first half of its bytes.
    void Nasce(XVUInt64 uiOperacao, bool bGravaMetade = false) {
        m_pVigia = std::make_shared<CXVProcessoMortal>(m_eContagem, m_eMorte, uiOperacao, bGravaMetade);
    }
    // Runs fn up to its end (false) or to the death of the process (true), which something, as a handler for
    // everything at a boundary, may have caught.
    bool Executa(const std::function<void()>& fn) {
        try {
            fn();
        } catch (const SProcessoMorto&) {
        }
        if (EstaMorto()) m_pVigia->Enterra();
        return EstaMorto();
    }
    bool EstaMorto() const { return m_pVigia->EstaMorto(); }
    XVUInt64 GetQuantidade() const { return m_pVigia->GetQuantidade(); }  // operations counted since Nasce

  private:
    EContagem m_eContagem;
    EMorte m_eMorte;
};
