// Where bytes come from: a file or the standard input.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

class IXVFonteBytes {
  public:
    virtual ~IXVFonteBytes() = default;
    // What is there, up to uiTamanho bytes, and how many they are. With nothing there a pipe is waited for,
    // and a file answers 0; one that grows is read on by the next call. A failure is thrown as CXVErro.
    virtual std::size_t Le(char* pDados, std::size_t uiTamanho) = 0;
    // Whether it is a file: what it holds is there already, and nobody waits for answers to send more.
    virtual bool EhArquivo() const = 0;
    // Length in bytes where it is known, else 0.
    virtual std::uintmax_t GetTamanho() const = 0;
};

// "-" is the standard input, which can be taken once. Failures are thrown as CXVErro. Where
// XVInterrupcao::Observa was called a request to end ends what does not come from a file opened by its name.
// uiInicio: the byte of a file opened by its name with which the reading begins.
std::unique_ptr<IXVFonteBytes> XVAbreFonte(const std::string& sNome, std::uintmax_t uiInicio = 0);

// Whether opening it takes what it holds: the standard input, pipes with a name, and what a shell puts in the
// place of a command's output.
bool XVFonteSoSeLeUmaVez(const std::string& sNome);

// All that the source holds. More than uiLimite bytes: CXVErro.
std::string XVLeTudo(IXVFonteBytes& rFonte, std::size_t uiLimite);
