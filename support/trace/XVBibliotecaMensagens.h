// What the messages library answers about one HRESULT. The library is loaded by name and freed at once;
// its answers, a missing library included, are kept until log.ini is read again.
#pragma once

#include <string>

#include "platform/XVTipos.h"

struct SRespostaMensagens {
    std::string sTexto;            // empty: no library, no export, or no sentence
    bool bFacilityAlheia = false;  // the library said that the facility is none of the suite's
};

namespace XVBibliotecaMensagens {

SRespostaMensagens Consulta(HRESULT hr);

}  // namespace XVBibliotecaMensagens
