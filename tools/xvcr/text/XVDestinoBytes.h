// Where a long output goes: the standard output, or a file that did not exist before.
#pragma once

#include <fstream>
#include <string>
#include <string_view>

class CXVDestinoBytes {
  public:
    // Empty: the standard output. A file that is there already, and every failure to write, is thrown as
    // CXVErro.
    explicit CXVDestinoBytes(std::string sCaminho);

    // Gathers short pieces.
    void Escreve(std::string_view sBytes);
    // Everything to the system; nothing is written after it.
    void Termina();

  private:
    void Descarrega();
    [[noreturn]] void Falha() const;

    std::string m_sCaminho;
    std::ofstream m_Arquivo;
    std::string m_sBuffer;
};
