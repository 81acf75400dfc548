// The options that fill an integration record, one for each field a person may give.
#pragma once

#include <CLI/App.hpp>
#include <vector>

#include "contract/XVDadosCR.h"
#include "contract/XVEnumeracoesTexto.h"

// Which of the fields an operation looks at; it offers no others.
enum class EUsoDosCampos : std::uint8_t { eGravacao, eInstantanea, ePendencia };

class CXVOpcoesIntegracao {
  public:
    CXVOpcoesIntegracao() = default;
    CXVOpcoesIntegracao(const CXVOpcoesIntegracao&) = delete;
    CXVOpcoesIntegracao& operator=(const CXVOpcoesIntegracao&) = delete;

    // Adds the options of the use; this object must outlive the command.
    void Adiciona(CLI::App& rComando, EUsoDosCampos eUso);

    // Whether any field was given.
    bool TemDadas() const;
    // The fields that were given, over those of rDados.
    void Aplica(CXVDadosCR_IntegracaoMiddleware& rDados) const;

  private:
    // Who recorded what when, and under which ids of the external system.
    void AdicionaAutoria(CLI::App& rComando);

    struct SDada {
        const CLI::Option* pOpcao;
        void (*pfCopia)(CXVDadosCR_IntegracaoMiddleware& rDestino,
                        const CXVDadosCR_IntegracaoMiddleware& rOrigem);
    };
    template <auto membro>
    void Inclui(const CLI::Option* pOpcao) {
        m_listaDadas.push_back({pOpcao, [](CXVDadosCR_IntegracaoMiddleware& rDestino,
                                           const CXVDadosCR_IntegracaoMiddleware& rOrigem) {
                                    rDestino.*membro = rOrigem.*membro;
                                }});
    }
    template <auto membro>
    void Valor(CLI::App& rComando, const char* pszNome, const char* pszTipo, const char* pszDescricao);
    template <auto membro>
    void Texto(CLI::App& rComando, const char* pszNome, const char* pszDescricao);
    template <auto membro>
    void Enumeracao(CLI::App& rComando, const char* pszNome, const char* pszDescricao,
                    EEnumeracao eEnumeracao);

    CXVDadosCR_IntegracaoMiddleware m_Dados;
    std::vector<SDada> m_listaDadas;
};
