// A transient copy (".cab", ".tra") that is written from front to back and then takes the place of a
// data file. Until Libera is called the copy is this object's own: it is deleted when the object goes.
//
// Thread rule: one object is used by one thread.
#pragma once

#include <memory>
#include <string>

#include "platform/XVSistemaArquivos.h"
#include "suite/XVInicializador.h"
#include "support/XVAmbiente.h"

class CXVImagemArquivo : public CXVInicializador {
  public:
    XV_CLASSE("CXVImagemArquivo", "XVImagemArquivo")

    CXVImagemArquivo(EModulo eModulo, std::string sNomeArquivo)
        : m_eModulo(eModulo), m_sNomeArquivo(std::move(sNomeArquivo)) {}
    ~CXVImagemArquivo() override;

    // Creates the file; one that is there already is emptied.
    HRESULT AbreArquivo();
    // Appends bytes; large writes go through a buffer of 1 MiB at the most.
    HRESULT Grava(const void* pDados, std::size_t uiTamanho);
    // Returns after all bytes have reached the device; the file is closed.
    HRESULT Conclui();
    // The copy is no longer this object's own.
    void Libera() { m_bPropria = false; }

  protected:
    HRESULT OnFinaliza() override;

  private:
    HRESULT Descarrega();
    HRESULT Falha(const CXVErroArquivo& rErro, const char* pszOperacao);

    EModulo m_eModulo;
    std::string m_sNomeArquivo;
    std::string m_sPathArquivo;
    std::unique_ptr<IXVArquivo> m_pArquivo;
    std::string m_sBuffer;
    XVUInt64 m_uiOffset = 0;
    bool m_bPropria = false;
};
