// The benchmark store's integrations in an SQLite database as a user sets it up who does not wait for the
// device: write-ahead log, no synchronisation, one row an integration.
#pragma once

#include <memory>
#include <string>

#include "platform/XVTipos.h"

struct sqlite3;
struct sqlite3_stmt;

// Every failure ends the program.
class CXVSqliteMembros {
  public:
    explicit CXVSqliteMembros(const std::string& sCaminho);

    bool EstaVazio();
    // All rows in one transaction; number uiNumero of the data set is row uiNumero + 1.
    void Carrega(unsigned uiQuantidade);
    void GravaStatus(unsigned uiNumero, XVUInt eStatus, const std::string& sMensagem);
    // Copies record and texts out; the bytes copied.
    std::size_t Le(unsigned uiNumero);

  private:
    struct SFecha {
        void operator()(sqlite3* p) const;
        void operator()(sqlite3_stmt* p) const;
    };
    using CComando = std::unique_ptr<sqlite3_stmt, SFecha>;
    CComando Prepara(const char* pszSql);
    void Executa(const char* pszSql);
    void Exige(int iResultado, const char* pszO) const;
    void Passa(sqlite3_stmt* p);

    std::unique_ptr<sqlite3, SFecha> m_pBanco;
    CComando m_pInclusao;
    CComando m_pStatus;
    CComando m_pLeitura;
};
