#include "platform/XVErroCom.h"

#include <windows.h>

#include <comdef.h>

bool XVErroCom::EmVoo(HRESULT* phr) noexcept {
    try {
        throw;
    } catch (const _com_error& rErro) {
        *phr = rErro.Error();
        return true;
    } catch (...) {
        return false;
    }
}
