// A table for a person: columns aligned by what a terminal shows, numbers to the right. It is made a part at
// a time, so that a long one is never whole in memory.
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
    // The rows since the last call, the first time below title and rule, each ended by a line feed; the last
    // column is not padded. Columns are as wide as all rows so far need.
    std::string Monta();

  private:
    std::string MontaLinha(const std::vector<std::string>& listaCelulas) const;

    std::vector<SColuna> m_listaColunas;
    std::vector<std::size_t> m_listaLarguras;             // none before the first part
    std::vector<std::vector<std::string>> m_listaLinhas;  // of the part that is being made
};
