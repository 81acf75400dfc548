#include "support/faults/XVExcecoes.h"

#include <exception>
#include <new>

#include "platform/XVErroCom.h"
#include "support/codes/XVCodigos.h"

namespace {

constexpr XVUInt k_ulFacilityItf = 0x80040000U;

HRESULT DeErroSistema(std::int32_t lErro) {
    if (lErro <= 0) return lErro;
    return XVHResult((static_cast<XVUInt>(lErro) & 0xFFFFU) | 0x80070000U);
}

HRESULT DeCodigoSuite(XVUInt ulCodigo) {
    return ulCodigo == 0 ? E_XV_EXCECAO_SEM_CODIGO : XVHResult(ulCodigo | k_ulFacilityItf);
}

template <class TExcecao>
HRESULT Encerra(TExcecao* pExcecao, HRESULT hr) {
    pExcecao->Delete();
    return hr;
}

}  // namespace

HRESULT XVTranslateThrownExceptionToHresult() noexcept {
    HRESULT hr = S_OK;
    if (XVErroCom::EmVoo(&hr)) return hr;
    try {
        throw;
    } catch (const CXVExceptionEx& rExcecao) {
        return rExcecao.GetHResult();
    } catch (CXVException* pExcecao) {
        return Encerra(pExcecao, DeCodigoSuite(pExcecao->GetCodigo()));
    } catch (CFileException* pExcecao) {
        return Encerra(pExcecao, DeErroSistema(pExcecao->GetErroSistema()));
    } catch (CMemoryException* pExcecao) {
        return Encerra(pExcecao, E_XV_EXCECAO_MEMORIA);
    } catch (CInvalidArgException* pExcecao) {
        return Encerra(pExcecao, E_XV_EXCECAO_ARGUMENTO);
    } catch (CException* pExcecao) {
        return Encerra(pExcecao, E_XV_EXCECAO_GENERICA);
    } catch (long lCodigo) {
        return XVHResult(static_cast<XVUInt>(lCodigo));
    } catch (const std::bad_alloc&) {
        return E_XV_BAD_ALLOC;
    } catch (const std::exception&) {
        return E_XV_STD_EXCEPTION;
    } catch (...) {
        return E_XV_EXCECAO_DESCONHECIDA;
    }
}
