// Life of the system's objects: Inicializa/Finaliza with the virtual hooks OnInicializa/OnFinaliza, and
// the caller's company, user and session that every object carries.
//
// Thread rule: Inicializa and Finaliza of one object are not called concurrently.
#pragma once

#include <atomic>
#include <string>

#include "support/trace/IXVDF_Profiler.h"
#include "support/trace/XVCheck.h"

class TXVBase {
  public:
    virtual ~TXVBase() = default;
};

// Company, user and session. User and session are those of the call in progress on this thread
// (CXVAcessoDefault) when there is one, otherwise the object's own.
class CXVProfilerEmpresa : public IXVDF_Profiler {
  public:
    std::string_view GetEmpresa() const override { return m_sEmpresa; }
    XVUShort GetUsuario() const override;
    XVUInt GetNumeroSessao() const override;
    bool EhConsulta() const override { return m_bConsulta; }

    // User and session of this very object, whatever the call in progress.
    XVUShort GetUsuarioProprio() const { return m_usUsuario; }
    XVUInt GetNumeroSessaoProprio() const { return m_ulNumeroSessao; }

    void SetProfiler(const IXVDF_Profiler& rProfiler);
    void SetProfiler(std::string_view sEmpresa, XVUShort usUsuario, XVUInt ulNumeroSessao);

  private:
    std::string m_sEmpresa;
    XVUShort m_usUsuario = 0;
    XVUInt m_ulNumeroSessao = 0;
    bool m_bConsulta = false;
};

class CXVInicializador : public TXVBase, public CXVProfilerEmpresa {
  public:
    CXVInicializador() = default;
    CXVInicializador(const CXVInicializador&) = delete;
    CXVInicializador& operator=(const CXVInicializador&) = delete;

    // Takes the caller's company, user and session and runs OnInicializa. Already initialised: S_OK, nothing
    // done. A failing OnInicializa is followed by OnFinaliza, so that what it opened is released; its code is
    // returned.
    HRESULT Inicializa(const IXVDF_Profiler* pProfiler);
    // Runs OnFinaliza; not initialised: S_OK, nothing done. The object counts as finalised whatever is
    // returned.
    HRESULT Finaliza();
    bool EstaInicializado() const { return m_bInicializado; }

  protected:
    virtual HRESULT OnInicializa() { return S_OK; }
    virtual HRESULT OnFinaliza() { return S_OK; }

  private:
    // Atomic: calls ask for it while another thread initialises the object.
    std::atomic<bool> m_bInicializado = false;
};
