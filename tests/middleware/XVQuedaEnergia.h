// Power failures in the middle of random scripts. A state is a number: it names the script, the moment of the
// failure and what of the writes until then had reached the device; the same number is the same state.
#pragma once

#include <functional>
#include <string>

#include "platform/XVTipos.h"

// What the registry value of the same name promises.
enum class EDurabilidade : XVUInt {
    eSistema = 0,      // the system has what was acknowledged: a power failure may take it away
    eDispositivo = 1,  // the device has it
};

struct SContagemQueda {
    XVUInt64 uiEstados = 0;
    XVUInt64 uiRecusadas = 0;  // did not open, and said which file
    XVUInt64 uiFalhas = 0;
};

// Examines uiQuantidade states from uiPrimeiro on and tells fnFalha of each whose store breaks a promise:
// with eDispositivo it opens by itself and shows what was acknowledged and whole operations only; with
// eSistema it opens or names the file that it refuses, shows nothing under a key that was recorded under
// another, and no later operation makes it worse.
SContagemQueda XVExaminaQuedas(
    EDurabilidade eDurabilidade, XVUInt64 uiPrimeiro, XVUInt64 uiQuantidade,
    const std::function<void(XVUInt64 uiEstado, const std::string& sFalha)>& fnFalha);
