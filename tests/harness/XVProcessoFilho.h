// Another process, for what must hold between processes. Thread rule: one thread.
#pragma once

#include <memory>
#include <string>
#include <vector>

// Files that are its standard streams; the outputs are created. Where none is named input and output are
// pipes, and the error output is the test's own.
struct SFluxosFilho {
    std::string sEntrada{};
    std::string sSaida{};
    std::string sErro{};
};

class CXVProcessoFilho {
  public:
    // Starts the program; arguments are UTF-8 (elsewhere than on Windows, any bytes). A program that cannot
    // be started is a failure of the test environment and throws std::runtime_error.
    CXVProcessoFilho(const std::string& sPrograma, const std::vector<std::string>& listaArgumentos,
                     const SFluxosFilho& rFluxos = {});
    ~CXVProcessoFilho();  // kills it if it still runs
    CXVProcessoFilho(const CXVProcessoFilho&) = delete;
    CXVProcessoFilho& operator=(const CXVProcessoFilho&) = delete;

    // Waits for one line of its output (without the line end); empty when it has ended.
    std::string LeLinha() {
        std::string sLinha;
        for (char c = 0; LeByte(c) && c != '\n';)
            if (c != '\r') sLinha += c;
        return sLinha;
    }
    void Escreve(const std::string& sTexto);  // into its input
    void FechaEntrada();                      // the program sees the end of its input
    long GetNumero() const;                   // the system's, while it runs
    void Mata();  // at once, without any clean-up of its own; returns after its end
    // Exit code; -1 when it was killed, and the negative number of another signal that it ended by.
    int EsperaFim();

  private:
    struct SSistema;

    // The next byte of the output; false at its end.
    bool LeByte(char& rcByte);

    std::unique_ptr<SSistema> m_pSistema;
};

// A program that is built into the same folder as the running one, by its name without extension.
std::string XVProgramaVizinho(const std::string& sNome);
