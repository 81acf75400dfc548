// A data file that is written from front to back and gets its header last: until then it is none.
//
// Thread rule: one object is used by one thread.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/XVSistemaArquivos.h"
#include "support/trace/IXVDF_Profiler.h"

class CXVEscritaRecuperada {
  public:
    enum class ECabecalho : bool { eSem, eCom };

    // sNoDisco: the name that the file has until somebody moves it to its own; empty: its own.
    CXVEscritaRecuperada(std::string sDiretorio, std::string sNome, ECabecalho eCabecalho,
                         std::string sNoDisco = {});

    // Makes the file.
    HRESULT Abre();
    HRESULT Grava(std::string_view sBytes);
    // One text with its length in front.
    HRESULT GravaTexto(std::string_view sTexto);
    // The header, and everything to the device.
    HRESULT Conclui(const IXVDF_Profiler& rDono, XVUShort usVersaoArquivo);

    bool EstaAberta() const { return m_pArquivo != nullptr; }
    const std::string& GetNome() const { return m_sNome; }
    XVUInt64 GetTamanhoDados() const { return m_uiOffset - m_uiInicio + m_sBuffer.size(); }

  private:
    HRESULT Descarrega();

    std::string m_sDiretorio;
    std::string m_sNome;
    std::string m_sNoDisco;
    XVUInt64 m_uiInicio;
    XVUInt64 m_uiOffset;
    std::string m_sBuffer;
    std::unique_ptr<IXVArquivo> m_pArquivo;
};
