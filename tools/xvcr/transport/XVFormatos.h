// The forms themselves.
#pragma once

#include "tools/xvcr/transport/XVFormatoExportacao.h"

class CXVFormatoLinhas final : public IXVFormatoExportacao {
  public:
    void Comeca(const std::string& sEmpresa, std::string* psPara) override;
    void Inclui(const SIntegracaoTransportada& rIntegracao, std::string* psPara) override;
    void Inclui(const CXVDadosMapa& rDados, std::string* psPara) override;
    void Inclui(const CXVDadosDataHora& rDados, std::string* psPara) override;
    void Termina(std::string* psPara) override;

  private:
    template <class T>
    void Linha(const T& rDados, std::string* psPara);

    SFimExportacao m_fim;
};

// Comma-separated values (RFC 4180): the integrations that can be found, one a row below the names.
class CXVFormatoCsv final : public IXVFormatoExportacao {
  public:
    explicit CXVFormatoCsv(bool bTextos) : m_bTextos(bTextos) {}
    void Comeca(const std::string& sEmpresa, std::string* psPara) override;
    void Inclui(const SIntegracaoTransportada& rIntegracao, std::string* psPara) override;
    void Inclui(const CXVDadosMapa&, std::string*) override {}
    void Inclui(const CXVDadosDataHora&, std::string*) override {}
    void Termina(std::string*) override {}

  private:
    const bool m_bTextos;
};

// Three tables and their rows, in statements that SQLite and PostgreSQL take.
class CXVFormatoSql final : public IXVFormatoExportacao {
  public:
    explicit CXVFormatoSql(bool bTextos) : m_bTextos(bTextos) {}
    void Comeca(const std::string& sEmpresa, std::string* psPara) override;
    void Inclui(const SIntegracaoTransportada& rIntegracao, std::string* psPara) override;
    void Inclui(const CXVDadosMapa& rDados, std::string* psPara) override;
    void Inclui(const CXVDadosDataHora& rDados, std::string* psPara) override;
    void Termina(std::string* psPara) override;

  private:
    template <class T>
    void Linha(std::string_view sTabela, const T& rDados, bool bTextos, std::string* psPara);

    const bool m_bTextos;
    unsigned m_uiNaTransacao = 0;
};
