// How far a long command is: one line on the terminal, rewritten a few times a second and wiped at the end.
#pragma once

#include <cstdio>
#include <string>

#include "platform/XVPlataforma.h"

class CXVProgresso {
  public:
    explicit CXVProgresso(bool bAtivo) : m_bAtivo(bAtivo) {}
    ~CXVProgresso() {
        if (m_bMostrado) std::fputs("\r\x1b[K", stderr);
    }
    CXVProgresso(const CXVProgresso&) = delete;
    CXVProgresso& operator=(const CXVProgresso&) = delete;

    // fnTexto() is called only when it is shown.
    template <class TTexto>
    void Mostra(TTexto fnTexto) {
        if (!m_bAtivo) return;
        const XVUInt ulAgora = XVPlataforma::Relogio().GetTicks();
        if (m_bMostrado && ulAgora - m_ulUltimo < k_ulIntervalo) return;
        m_ulUltimo = ulAgora;
        m_bMostrado = true;
        std::fputs(("\r" + fnTexto()).c_str(), stderr);
    }

  private:
    static constexpr XVUInt k_ulIntervalo = 200;  // milliseconds
    bool m_bAtivo;
    bool m_bMostrado = false;
    XVUInt m_ulUltimo = 0;
};
