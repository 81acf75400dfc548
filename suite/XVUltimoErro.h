// Holder of the last error of a component, copied to clients as a 480-byte record.
#pragma once

#include <mutex>
#include <string_view>

#include "platform/XVTipos.h"

// Layout of the record that crosses the interface (natural alignment, 480 bytes). Texts are UTF-8, cut to
// their field at a character boundary and always terminated.
struct REG_DF_ULTIMO_ERROPS {
    HRESULT hrErro;        // 0 when no error has occurred
    XVUInt ulLinha;        // source line of the failed step
    XVUInt64 regDataHora;  // REG_XVDMAHMSUTC of the failure
    char szNome[80];       // symbolic name of the code
    char szFuncao[96];     // function that failed
    char szFonte[40];      // its source unit
    char szMensagem[248];  // sentence for a person
};
static_assert(sizeof(REG_DF_ULTIMO_ERROPS) == 480);

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
