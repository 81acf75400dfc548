// A table for a person: columns aligned by what a terminal shows, numbers to the right. It is made a part at
// a time, so that a long one is never whole in memory. Where it would be wider than its limit, columns that
// matter less are left out, and those that may are shortened, with "…" at their end.
#pragma once

#include <string>
#include <string_view>
#include <vector>

class CXVTabela {
  public:
    enum class EAlinhamento { eEsquerda, eDireita };
    struct SColuna {
        std::string sTitulo;
        EAlinhamento eAlinhamento = EAlinhamento::eEsquerda;
        unsigned uiDispensa = 0;   // the highest goes first where there is no room; 0: never
        std::size_t uiMinimo = 0;  // columns that it may be shortened to; 0: it is never shortened
        std::string_view (*pfCor)(std::string_view sCelula) = nullptr;  // terminal attributes ("31"), or none
    };

    // uiLargura: of the terminal, 0 for no limit. Colours only where bCor.
    explicit CXVTabela(std::vector<SColuna> listaColunas, std::size_t uiLargura = 0, bool bCor = false)
        : m_listaColunas(std::move(listaColunas)), m_uiLimite(uiLargura), m_bCor(bCor) {}

    // One cell for each column; control characters are shown escaped.
    void Inclui(std::vector<std::string> listaCelulas);
    // The rows since the last call, the first time below title and rule, each ended by a line feed; the last
    // column is not padded. Columns are as wide as all rows so far need; which of them there are is settled
    // by the first part.
    std::string Monta();

  private:
    std::string MontaLinha(const std::vector<std::string>& listaCelulas, bool bCor) const;
    void Mede();
    void EscolheColunas();
    void Encurta();
    std::size_t Soma() const;

    std::vector<SColuna> m_listaColunas;
    const std::size_t m_uiLimite;
    const bool m_bCor;
    std::vector<std::size_t> m_listaMostradas;            // columns, none before the first part
    std::vector<std::size_t> m_listaLarguras;             // of all columns
    std::vector<std::vector<std::string>> m_listaLinhas;  // of the part that is being made
};
