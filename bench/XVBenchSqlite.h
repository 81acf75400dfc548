// The same recording in an SQLite database: one row with the record, the texts and what the store's indexes
// answer, each row a transaction of its own that has reached the device when it returns.
#pragma once

#include <memory>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

// One connection, for one thread.
class CXVSqliteBench {
  public:
    // Opens or makes the database; write-ahead log, full synchronisation. Ends the program on failure.
    explicit CXVSqliteBench(const std::string& sCaminho);

    void Grava(unsigned uiNumero);

  private:
    struct SFecha {
        void operator()(sqlite3* p) const;
        void operator()(sqlite3_stmt* p) const;
    };
    void Executa(const char* pszSql);
    void Exige(int iResultado, const char* pszO) const;

    std::unique_ptr<sqlite3, SFecha> m_pBanco;
    std::unique_ptr<sqlite3_stmt, SFecha> m_pInclusao;
};
