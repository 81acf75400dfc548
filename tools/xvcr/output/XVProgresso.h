// How far a long command is: one line on the terminal, rewritten a few times a second and wiped at the end,
// or a line of its own every second for whoever keeps the error output.
#pragma once

#include <cstdio>
#include <string>

#include "platform/XVPlataforma.h"

enum class EProgresso : unsigned char { eNenhum, eNoTerminal, eEmLinhas };

class CXVProgresso {
  public:
    explicit CXVProgresso(EProgresso eProgresso)
        : m_eProgresso(eProgresso), m_ulInicio(XVPlataforma::Relogio().GetTicks()) {}
    explicit CXVProgresso(bool bNoTerminal)
        : CXVProgresso(bNoTerminal ? EProgresso::eNoTerminal : EProgresso::eNenhum) {}
    ~CXVProgresso() { Apaga(); }
    CXVProgresso(const CXVProgresso&) = delete;
    CXVProgresso& operator=(const CXVProgresso&) = delete;

    // fnTexto() is called only when it is shown.
    template <class TTexto>
    void Mostra(TTexto fnTexto) {
        if (m_eProgresso == EProgresso::eNenhum) return;
        const XVUInt ulAgora = XVPlataforma::Relogio().GetTicks();
        const bool bTerminal = m_eProgresso == EProgresso::eNoTerminal;
        if (m_bMostrado && ulAgora - m_ulUltimo < (bTerminal ? k_ulNoTerminal : k_ulEmLinhas)) return;
        m_ulUltimo = ulAgora;
        m_bMostrado = true;
        const std::string sTexto = fnTexto();
        m_bNaTela = bTerminal;
        std::fputs((bTerminal ? "\r" + sTexto + "\x1b[K" : sTexto + '\n').c_str(), stderr);
    }

    XVUInt GetDecorrido() const {  // milliseconds
        return XVPlataforma::Relogio().GetTicks() - m_ulInicio;
    }

    // Leaves the line of the terminal to something else.
    void Apaga() {
        if (m_bNaTela) std::fputs("\r\x1b[K", stderr);
        m_bNaTela = false;
    }

  private:
    static constexpr XVUInt k_ulNoTerminal = 200;  // milliseconds
    static constexpr XVUInt k_ulEmLinhas = 1000;
    const EProgresso m_eProgresso;
    const XVUInt m_ulInicio;
    bool m_bMostrado = false;
    bool m_bNaTela = false;
    XVUInt m_ulUltimo = 0;
};
