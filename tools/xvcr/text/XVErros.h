// How a command ends when it cannot go on: one line on the error output and the program's exit status.
#pragma once

#include <exception>
#include <string>

#include "platform/XVTipos.h"

enum class ESaida : int {
    eSucesso = 0,
    eFalha = 1,  // the operation failed
    eUso = 2,    // the command line is wrong
};

class CXVErro : public std::exception {
  public:
    CXVErro(ESaida eSaida, std::string sMensagem) : m_eSaida(eSaida), m_sMensagem(std::move(sMensagem)) {}
    const char* what() const noexcept override { return m_sMensagem.c_str(); }
    ESaida GetSaida() const { return m_eSaida; }

  private:
    ESaida m_eSaida;
    std::string m_sMensagem;
};

[[noreturn]] void XVFalha(std::string sMensagem);
[[noreturn]] void XVErroDeUso(std::string sMensagem);

// What hr is (XVCliente::DescreveCodigo), with the file that the failed operation of this thread was refused
// for, if any.
std::string XVDescreveFalha(HRESULT hr);

// Throws the failure of hr, if it is one.
void XVConfere(HRESULT hr);

// ": o disco está cheio" where the writing that has just failed found it so; else empty.
std::string XVSeDiscoCheio();

// Writes "xvcr: <mensagem>" as one line on the error output.
void XVEscreveErro(const std::string& sMensagem);
