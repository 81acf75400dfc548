// A table for a person: columns aligned by what a terminal shows, numbers to the right.
#pragma once

#include <string>
#include <vector>

class CXVTabela {
  public:
    enum class EAlinhamento { eEsquerda, eDireita };
    struct SColuna {
        std::string sTitulo;
        EAlinhamento eAlinhamento = EAlinhamento::eEsquerda;
    };

    explicit CXVTabela(std::vector<SColuna> listaColunas) : m_listaColunas(std::move(listaColunas)) {}

    // One cell for each column; control characters are shown escaped.
    void Inclui(std::vector<std::string> listaCelulas);
    // Title, rule and rows, each ended by a line feed; the last column is not padded.
    std::string Monta() const;

  private:
    std::vector<SColuna> m_listaColunas;
    std::vector<std::vector<std::string>> m_listaLinhas;
};
