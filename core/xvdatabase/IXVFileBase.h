// What a database container knows of its files: a single file or a whole group of files.
#pragma once

#include <string>

#include "suite/XVInicializador.h"
#include "support/XVAmbiente.h"

class IXVFileBase : public CXVInicializador {
  public:
    // Name with extension, no directory; of a group, its pattern.
    virtual const std::string& GetNomeArquivo() const = 0;
    virtual EModulo GetModulo() const = 0;
    // Length in bytes of the file, or of all members of the group that are open.
    virtual XVUInt64 GetTamanho() const = 0;
    // Deletes the file (or every member) from disk; the object stays initialised and empty.
    virtual HRESULT DeletaArquivo() = 0;
    // From now on the file is not listed in the directory's control file.
    virtual void DesabilitaControleCriacaoArquivos() = 0;
    // Replace the content (whole array, or one record from untyped memory) through the ordinary write.
    virtual HRESULT SetArrayData(const void* pDados, XVUInt64 uiQuantidade);
    virtual HRESULT SetRegData(XVUInt& uiPosicao, const void* pDados);
};
