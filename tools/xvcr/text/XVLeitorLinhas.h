// Lines of a source, one at a time, with a limit to what one line may hold in memory.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/xvcr/text/XVFonteBytes.h"

class CXVLeitorLinhas {
  public:
    enum class EResultado : std::uint8_t {
        eLinha,
        eLonga,  // the line passed the limit and was skipped
        eFim,    // nothing more now; a beginning of a line stays for the next call where bCresce
    };

    // bCresce: the source grows while it is read, and a line counts only with its line feed.
    CXVLeitorLinhas(IXVFonteBytes& rFonte, std::size_t uiLimite, bool bCresce = false)
        : m_rFonte(rFonte), m_uiLimite(uiLimite), m_bCresce(bCresce) {}

    // The next line without its line feed and carriage return.
    EResultado Proxima(std::string* psLinha);

    // Whether the next line has to be waited for: no whole one is at hand.
    bool PrecisaLer() const { return m_sResto.find('\n') == std::string_view::npos; }

    std::uint64_t GetNumero() const { return m_uiNumero; }  // of the last line, from 1
    std::uint64_t GetBytes() const { return m_uiBytes; }    // taken so far

  private:
    bool Enche();
    EResultado Termina(std::string* psLinha);

    IXVFonteBytes& m_rFonte;
    std::size_t m_uiLimite;
    bool m_bCresce;
    std::string m_sBloco;
    std::string_view m_sResto;  // of m_sBloco: read and not yet taken
    std::string m_sLinha;       // what is known of the line so far
    bool m_bLonga = false;
    bool m_bIniciada = false;
    std::uint64_t m_uiNumero = 0;
    std::uint64_t m_uiBytes = 0;
};
