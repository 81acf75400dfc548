// Goes over JSON text without building anything of it. Whitespace before what is asked for is passed over.
// A result of false says that the text is no JSON; why, the library that reads JSON says better.
#pragma once

#include <string_view>

class CXVVarreduraJson {
  public:
    // sTexto must live as long as the object and the views that it gives.
    explicit CXVVarreduraJson(std::string_view sTexto) : m_sTexto(sTexto) {}

    bool EstaNoFim();
    // Goes over c where it is what comes next.
    bool Consome(char c) {
        PulaEspacos();
        if (Atual() != c) return false;
        ++m_uiPosicao;
        return true;
    }
    // A string; the view has its quotation marks.
    bool LeTexto(std::string_view* psTexto);
    // Any value, as it stands in the text. Nesting costs memory, not stack.
    bool LeValor(std::string_view* psValor);

  private:
    void PulaEspacos() {
        for (char c = Atual(); c == ' ' || c == '\t' || c == '\r' || c == '\n'; c = Atual()) ++m_uiPosicao;
    }
    void PulaSimples();
    bool PulaValor();
    bool PulaNome();  // of a member, and its colon
    bool PulaTexto();
    bool PulaEscape();
    bool PulaPalavra(std::string_view sPalavra);
    bool PulaNumero();
    bool PulaDigitos();  // at least one
    bool LeHexadecimal(unsigned* puiValor);
    char Atual() const { return m_uiPosicao < m_sTexto.size() ? m_sTexto[m_uiPosicao] : '\0'; }

    std::string_view m_sTexto;
    std::size_t m_uiPosicao = 0;
};
