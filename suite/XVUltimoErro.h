// Holder of the last error of a component, copied to clients as a 480-byte record.
#pragma once

#include <mutex>
#include <string_view>

#include "contract/XVCR_RegistrosPS.h"

// Thread rule: any thread.
class CXVUltimoErro {
  public:
    // The sentence of the code, with the file that this thread's operation was refused for, if any.
    void Registra(HRESULT hr, std::string_view sFuncao, std::string_view sFonte, XVUInt ulLinha);
    void Limpa();
    void CopiaPara(REG_DF_ULTIMO_ERROPS* pReg) const;

  private:
    mutable std::mutex m_Mutex;
    REG_DF_ULTIMO_ERROPS m_Reg{};
};
