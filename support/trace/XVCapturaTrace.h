// Captures the newest error records that the current thread writes while the object lives; the records
// are written to the log as well unless bSomenteCaptura. Captures nest; the innermost receives.
#pragma once

#include <string>
#include <vector>

#include "platform/XVTipos.h"

struct SFalhaCapturada {
    HRESULT hr = 0;  // 0 for a record that is not a check
    std::string sExpressao;
    std::string sFuncao;
    std::string sFonte;
    int iLinha = 0;
    std::string sMensagem;  // the formatted "Log" text
};

class CXVCapturaTrace {
  public:
    explicit CXVCapturaTrace(bool bSomenteCaptura = true);
    ~CXVCapturaTrace();
    CXVCapturaTrace(const CXVCapturaTrace&) = delete;
    CXVCapturaTrace& operator=(const CXVCapturaTrace&) = delete;

    const std::vector<SFalhaCapturada>& GetFalhas() const { return m_listaFalhas; }
    bool Contem(const std::string& sExpressao) const;
    // Beyond 4096 records the oldest half is dropped.
    void Inclui(SFalhaCapturada falha);
    bool EhSomenteCaptura() const { return m_bSomenteCaptura; }

    static CXVCapturaTrace* GetAtual();  // of this thread, or null

  private:
    std::vector<SFalhaCapturada> m_listaFalhas;
    CXVCapturaTrace* m_pAnterior;
    bool m_bSomenteCaptura;
};
