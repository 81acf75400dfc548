#include "tools/xvcr/text/XVVarreduraJson.h"

#include <emmintrin.h>

#include <bit>
#include <charconv>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/xvcr/text/XVTextoTela.h"

bool CXVVarreduraJson::EstaNoFim() {
    PulaEspacos();
    return m_uiPosicao == m_sTexto.size();
}

bool CXVVarreduraJson::LeTexto(std::string_view* psTexto) {
    PulaEspacos();
    const std::size_t uiInicio = m_uiPosicao;
    if (!PulaTexto()) return false;
    *psTexto = m_sTexto.substr(uiInicio, m_uiPosicao - uiInicio);
    return true;
}

bool CXVVarreduraJson::LeValor(std::string_view* psValor) {
    PulaEspacos();
    const std::size_t uiInicio = m_uiPosicao;
    if (!PulaValor()) return false;
    *psValor = m_sTexto.substr(uiInicio, m_uiPosicao - uiInicio);
    return true;
}

// Over what is ASCII and means itself in a string, as many bytes at a time as the processor takes; the last
// ones of the text are left to the caller.
void CXVVarreduraJson::PulaSimples() {
    const __m128i aAspas = _mm_set1_epi8('"');
    const __m128i aBarra = _mm_set1_epi8('\\');
    const __m128i aEspaco = _mm_set1_epi8(' ');
    for (; m_sTexto.size() - m_uiPosicao >= sizeof(__m128i); m_uiPosicao += sizeof(__m128i)) {
        const __m128i aBytes =
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(m_sTexto.data() + m_uiPosicao));
        // With a sign, what is not ASCII is below a blank as well as controls are.
        const __m128i aParam =
            _mm_or_si128(_mm_cmplt_epi8(aBytes, aEspaco),
                         _mm_or_si128(_mm_cmpeq_epi8(aBytes, aAspas), _mm_cmpeq_epi8(aBytes, aBarra)));
        const auto uiMarcas = static_cast<unsigned>(_mm_movemask_epi8(aParam));
        if (uiMarcas == 0) continue;
        m_uiPosicao += static_cast<std::size_t>(std::countr_zero(uiMarcas));
        return;
    }
}

bool CXVVarreduraJson::PulaValor() {
    std::string sFins;  // of the objects and arrays that are open
    for (;;) {
        PulaEspacos();
        const char c = Atual();
        if (c == '{' || c == '[') {
            ++m_uiPosicao;
            const char cFim = c == '{' ? '}' : ']';
            if (!Consome(cFim)) {
                sFins += cFim;
                if (c == '{' && !PulaNome()) return false;
                continue;
            }
        } else if (!(c == '"'   ? PulaTexto()
                     : c == 't' ? PulaPalavra("true")
                     : c == 'f' ? PulaPalavra("false")
                     : c == 'n' ? PulaPalavra("null")
                                : PulaNumero())) {
            return false;
        }
        while (!sFins.empty() && Consome(sFins.back())) sFins.pop_back();
        if (sFins.empty()) return true;
        if (!Consome(',') || (sFins.back() == '}' && !PulaNome())) return false;
    }
}

bool CXVVarreduraJson::PulaNome() {
    PulaEspacos();
    return PulaTexto() && Consome(':');
}

bool CXVVarreduraJson::PulaTexto() {
    if (Atual() != '"') return false;
    const std::size_t uiInicio = ++m_uiPosicao;
    unsigned uiTodos = 0;  // the bits of all bytes but those that are ASCII
    for (PulaSimples(); m_uiPosicao < m_sTexto.size(); ++m_uiPosicao) {
        const auto ucByte = static_cast<unsigned char>(m_sTexto[m_uiPosicao]);
        uiTodos |= ucByte;
        if (ucByte < 0x20) return false;
        if (ucByte == '\\') {
            if (!PulaEscape()) return false;
            ++m_uiPosicao;
            PulaSimples();
            --m_uiPosicao;
        }
        if (ucByte != '"') continue;
        const std::string_view sConteudo = m_sTexto.substr(uiInicio, m_uiPosicao - uiInicio);
        ++m_uiPosicao;
        return uiTodos < 0x80 || XVTextoTela::EhUtf8(sConteudo);
    }
    return false;
}

// From the backslash to the last character of the escape. Halves of a surrogate pair stand together only.
bool CXVVarreduraJson::PulaEscape() {
    ++m_uiPosicao;
    if (Atual() != 'u') return std::string_view("\"\\/bfnrt").find(Atual()) != std::string_view::npos;
    unsigned uiPrimeiro = 0;
    if (!LeHexadecimal(&uiPrimeiro) || (uiPrimeiro & 0xFC00U) == 0xDC00U) return false;
    if ((uiPrimeiro & 0xFC00U) != 0xD800U) return true;
    m_uiPosicao += 2;
    unsigned uiSegundo = 0;
    return m_sTexto.substr(m_uiPosicao - 1, 2) == "\\u" && LeHexadecimal(&uiSegundo) &&
           (uiSegundo & 0xFC00U) == 0xDC00U;
}

// The four digits after the current character; ends on the last.
bool CXVVarreduraJson::LeHexadecimal(unsigned* puiValor) {
    constexpr std::size_t k_uiDigitos = 4;
    const std::string_view sDigitos = m_sTexto.substr(m_uiPosicao + 1, k_uiDigitos);
    m_uiPosicao += k_uiDigitos;
    const auto [pszFim, erro] =
        std::from_chars(sDigitos.data(), sDigitos.data() + sDigitos.size(), *puiValor, 16);
    return erro == std::errc() && pszFim == sDigitos.data() + k_uiDigitos;
}

bool CXVVarreduraJson::PulaPalavra(std::string_view sPalavra) {
    if (m_sTexto.substr(m_uiPosicao, sPalavra.size()) != sPalavra) return false;
    m_uiPosicao += sPalavra.size();
    return true;
}

bool CXVVarreduraJson::PulaDigitos() {
    const std::size_t uiInicio = m_uiPosicao;
    while (Atual() >= '0' && Atual() <= '9') ++m_uiPosicao;
    return m_uiPosicao > uiInicio;
}

bool CXVVarreduraJson::PulaNumero() {
    const std::size_t uiInicio = m_uiPosicao;
    if (Atual() == '-') ++m_uiPosicao;
    if (Atual() == '0')
        ++m_uiPosicao;
    else if (!PulaDigitos())
        return false;
    if (Atual() == '.') {
        ++m_uiPosicao;
        if (!PulaDigitos()) return false;
    }
    const bool bExpoente = Atual() == 'e' || Atual() == 'E';
    if (bExpoente) {
        ++m_uiPosicao;
        if (Atual() == '+' || Atual() == '-') ++m_uiPosicao;
        if (!PulaDigitos()) return false;
    }
    // Only what may lie beyond the largest floating-point number needs a look at its value.
    constexpr std::size_t k_uiSemDuvida = 300;
    const std::string_view sNumero = m_sTexto.substr(uiInicio, m_uiPosicao - uiInicio);
    return (!bExpoente && sNumero.size() <= k_uiSemDuvida) || nlohmann::json::accept(sNumero);
}
