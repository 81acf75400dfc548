// Where bytes come from: a file or the standard input.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

class IXVFonteBytes {
  public:
    virtual ~IXVFonteBytes() = default;
    // Fills up to uiTamanho bytes and returns how many; 0 when nothing more is there now (a file that grows
    // is read on by the next call). A failure is thrown as CXVErro.
    virtual std::size_t Le(char* pDados, std::size_t uiTamanho) = 0;
    // Length in bytes where it is known, else 0.
    virtual std::uintmax_t GetTamanho() const { return 0; }
};

// "-" is the standard input, which can be taken once. Failures are thrown as CXVErro.
std::unique_ptr<IXVFonteBytes> XVAbreFonte(const std::string& sNome);

// All that the source holds. More than uiLimite bytes: CXVErro.
std::string XVLeTudo(IXVFonteBytes& rFonte, std::size_t uiLimite);
