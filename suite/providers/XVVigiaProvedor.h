// The watch over the calls of one provider library. A call that has not returned after EsperaProvedor seconds
// (registry value of the suite's key; default 300, 0: never given up) is left to itself: who asked goes on,
// and the library is not called again until every such call has returned.
//
// Thread rule: any thread.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>

#include "platform/XVTipos.h"
#include "suite/providers/XVDonoCopiado.h"
#include "suite/providers/XVFiosDeChamada.h"

// One call of a library with everything that it is lent and writes into: it may outlive who asked.
class CXVChamadaProvedor : public IXVTrabalho {
  public:
    // pszFuncao: as the library's table names it; a literal. rDono is copied.
    CXVChamadaProvedor(const char* pszFuncao, const IXVDF_Profiler& rDono);

    void Trabalha() noexcept final;

  protected:
    // The library's function. What it wrote belongs to whoever called the watch when Respondeu says so, else
    // to Descarta.
    virtual std::int32_t Executa() = 0;
    // The answer came after the call was given up: buffers go back to the library, and what it says of an
    // exchange goes into the error log. hr is what the library answered.
    virtual void Descarta(HRESULT hr) = 0;

    // One line of the error log; pszDetalhe is what the answer tells.
    void RegistraAtraso(HRESULT hr, const char* pszDetalhe) const noexcept;
    const IXVDF_Profiler& GetDono() const { return m_dono; }

  private:
    friend class CXVVigiaProvedor;
    enum class EEstado : std::uint8_t { eEmCurso, eRespondida, eAbandonada };

    const char* m_pszFuncao;
    CXVDonoCopiado m_dono;
    XVUInt m_eSistema = 0;
    std::shared_ptr<std::atomic<unsigned>> m_puiPresas;
    std::mutex m_mutex;
    std::condition_variable m_respondeu;
    EEstado m_eEstado = EEstado::eEmCurso;
    HRESULT m_hr = S_OK;
    std::exception_ptr m_excecao;
};

class CXVVigiaProvedor {
  public:
    explicit CXVVigiaProvedor(XVUInt eSistema) : m_eSistema(eSistema) {}

    // What the library answered, successes as S_OK; what it threw is thrown.
    // E_XVCR_PROVEDOR_SEM_RESPOSTA: the call was given up, and nothing of rpChamada may be looked at any
    // more. E_XVCR_PROVEDOR_SUSPENSO: the library was not called.
    HRESULT Chama(const std::shared_ptr<CXVChamadaProvedor>& rpChamada) const;
    // Whether a result of Chama is the library's own.
    static bool Respondeu(HRESULT hr);

  private:
    HRESULT Espera(CXVChamadaProvedor& rChamada, std::chrono::seconds limite) const;
    HRESULT Abandona(CXVChamadaProvedor& rChamada, std::chrono::seconds limite) const;

    XVUInt m_eSistema;
    std::shared_ptr<std::atomic<unsigned>> m_puiPresas = std::make_shared<std::atomic<unsigned>>(0);
};
