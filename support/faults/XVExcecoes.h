// The exception classes of the suite and the HRESULT that any thrown exception stands for.
//
// CException and what derives from it is thrown by pointer; whoever catches it ends its life with
// Delete(). CXVExceptionEx is thrown by value.
#pragma once

#include "platform/XVTipos.h"

class CException {
  public:
    // bApagaSozinha false: the object is not on the heap and Delete() leaves it alone.
    explicit CException(bool bApagaSozinha = true) : m_bApagaSozinha(bApagaSozinha) {}
    CException(const CException&) = delete;
    CException& operator=(const CException&) = delete;
    virtual ~CException() = default;

    void Delete() {
        if (m_bApagaSozinha) delete this;
    }

  private:
    bool m_bApagaSozinha;
};

class CMemoryException : public CException {
  public:
    using CException::CException;
};

class CInvalidArgException : public CException {
  public:
    using CException::CException;
};

// A failed file operation with the operating system's own error number.
class CFileException : public CException {
  public:
    explicit CFileException(std::int32_t lOsError, bool bApagaSozinha = true)
        : CException(bApagaSozinha), m_lOsError(lOsError) {}
    std::int32_t GetErroSistema() const { return m_lOsError; }

  private:
    std::int32_t m_lOsError;
};

// An exception of the suite with a code of 16 bits; 0 is none.
class CXVException : public CException {
  public:
    explicit CXVException(XVUInt ulCodigo, bool bApagaSozinha = true)
        : CException(bApagaSozinha), m_ulCodigo(ulCodigo) {}
    XVUInt GetCodigo() const { return m_ulCodigo; }

  private:
    XVUInt m_ulCodigo;
};

// An exception that carries its HRESULT.
class CXVExceptionEx {
  public:
    explicit CXVExceptionEx(HRESULT hr) : m_hr(hr) {}
    HRESULT GetHResult() const { return m_hr; }

  private:
    HRESULT m_hr;
};

// The HRESULT of the exception in flight. Precondition: called inside a catch handler. A CException caught
// by pointer has ended its life afterwards.
HRESULT XVTranslateThrownExceptionToHresult() noexcept;

// The boundary that no exception passes, which every way into this process from outside has: runs operacao,
// and what it throws becomes the HRESULT. fnExcecao(hr) is told of an exception and may not throw itself.
template <class TOperacao, class TExcecao>
HRESULT XVNaFronteira(TOperacao&& operacao, TExcecao&& fnExcecao) noexcept {
    try {
        return operacao();
    } catch (...) {
        const HRESULT hr = XVTranslateThrownExceptionToHresult();
        fnExcecao(hr);
        return hr;
    }
}
template <class TOperacao>
HRESULT XVNaFronteira(TOperacao&& operacao) noexcept {
    return XVNaFronteira(operacao, [](HRESULT) {});
}
