// Base-for-routines: who works on which company, and the way to the company's general log.
#pragma once

#include <memory>
#include <string>

#include "suite/XVAcessoEmpresarial.h"
#include "suite/XVInicializador.h"
#include "suite/XVUltimoErro.h"

class CXVBaseParaRotinas : public CXVInicializador {
  public:
    XV_CLASSE("CXVBaseParaRotinas", "XVBaseParaRotinas")

    CXVBaseParaRotinas();
    ~CXVBaseParaRotinas() override;

    // The company's logs. Valid while this object lives; usable once it is initialised.
    CXVAcessoEmpresarial* GetAcessoEmpresarial() { return &m_AcessoEmpresarial; }
    // Holder of the last error of this object's operations.
    CXVUltimoErro& GetUltimoErro() { return m_UltimoErro; }

    // The object in whose name the current thread works, or null. Objects of the same company answer its
    // user and session while it is set.
    static const CXVBaseParaRotinas* GetAcessoDefault();
    static void SetAcessoDefault(const CXVBaseParaRotinas* pBase);

    // The name of the default server access (registry text "AcessoServidoresDefault" of the base module),
    // empty when there is none.
    static std::string GetAcessoServidoresDefault();

    // Whether the suite's access settings say that the branch pointer serves as the external database id:
    // bit 0x10 of the registry value "AcessoServidores_1" of the base module.
    bool UsaFilialComoBaseDadosTerceiro() const;

  protected:
    HRESULT OnInicializa() override;
    HRESULT OnFinaliza() override;

  private:
    CXVAcessoEmpresarial m_AcessoEmpresarial;
    CXVUltimoErro m_UltimoErro;
};

// Sets the default access of the thread for its own life and puts back what was there before.
class CXVAcessoDefault {
  public:
    explicit CXVAcessoDefault(const CXVBaseParaRotinas* pBase)
        : m_pAnterior(CXVBaseParaRotinas::GetAcessoDefault()) {
        CXVBaseParaRotinas::SetAcessoDefault(pBase);
    }
    ~CXVAcessoDefault() { CXVBaseParaRotinas::SetAcessoDefault(m_pAnterior); }
    CXVAcessoDefault(const CXVAcessoDefault&) = delete;
    CXVAcessoDefault& operator=(const CXVAcessoDefault&) = delete;

  private:
    const CXVBaseParaRotinas* m_pAnterior;
};
