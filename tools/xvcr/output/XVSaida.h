// The standard output of a command: JSON Lines for programs or text for a person.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "tools/xvcr/fields/XVRegistroJson.h"

class CXVSaida {
  public:
    void SetJson(bool bJson) { m_bJson = bJson; }
    bool EhJson() const { return m_bJson; }

    // What was recorded before the result is written: a failure to write it says so, since nobody else will.
    void AoFalharDiz(std::function<std::string()> fnFeito) { m_fnFeito = std::move(fnFeito); }

    // Bytes as they are; a failure is thrown as CXVErro.
    void Escreve(std::string_view sTexto);
    void Linha(std::string_view sTexto);
    void LinhaJson(const XVJson& rJson);
    // Name and value in two columns; a value of several lines starts below its name.
    void Pares(const XVRegistroJson::XVListaPares& listaPares);

    // One record in the form asked for.
    template <class T>
    void Registro(const T& rDados, bool bTextos = true) {
        if (m_bJson)
            LinhaJson(XVRegistroJson::ParaJson(rDados, bTextos));
        else
            Pares(XVRegistroJson::ParaPares(rDados, bTextos));
    }

    // Hands everything to the system; a failure is thrown as CXVErro.
    void Termina();
    // Whether a failure of this output was thrown.
    bool Falhou() const { return m_bFalhou; }

  private:
    [[noreturn]] void Falha();

    bool m_bJson = false;
    bool m_bFalhou = false;
    std::function<std::string()> m_fnFeito;
};
