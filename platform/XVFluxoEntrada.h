// Bytes that come one after the other and may be waited for: the standard input, a pipe, a device. Thread
// rule: one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

class IXVFluxoEntrada {
  public:
    virtual ~IXVFluxoEntrada() = default;

    // What is there already, up to uiTamanho bytes; with nothing there it waits for the first. 0 bytes: the
    // end, or XVInterrupcao was asked for. False: a failure.
    virtual bool Le(char* pDados, std::size_t uiTamanho, std::size_t* puiLidos) = 0;

    // Whether it is a file, whose bytes nobody has to send, and how many of those were left when it was
    // opened (0 otherwise).
    virtual bool EhArquivo() const = 0;
    virtual std::uint64_t GetTamanho() const = 0;
};

std::unique_ptr<IXVFluxoEntrada> XVFluxoEntradaPadrao();
// Null when it cannot be opened.
std::unique_ptr<IXVFluxoEntrada> XVAbreFluxoEntrada(const std::string& sCaminho);
