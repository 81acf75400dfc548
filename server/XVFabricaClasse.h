// Class factory of the component, registered with COM for the life of the process.
#pragma once

#include "server/XVVidaServidor.h"

XV_INTERFACE_COM_INICIO

// A static object: never destroyed by counting.
class CXVFabricaClasse final : public IClassFactory {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* pExterno, REFIID riid, void** ppvObject) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL bTrava) override;
};

XV_INTERFACE_COM_FIM

// The registration of the class factory: suspended until Retoma, so that no client comes in before
// everything is ready; withdrawn with the object.
class CXVInscricaoFabrica {
  public:
    CXVInscricaoFabrica() = default;
    ~CXVInscricaoFabrica() { Revoga(); }
    CXVInscricaoFabrica(const CXVInscricaoFabrica&) = delete;
    CXVInscricaoFabrica& operator=(const CXVInscricaoFabrica&) = delete;

    HRESULT Registra();
    HRESULT Retoma();
    void Revoga();

  private:
    CXVFabricaClasse m_Fabrica;
    DWORD m_ulInscricao = 0;
};
