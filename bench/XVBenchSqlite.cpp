#include "bench/XVBenchSqlite.h"

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "bench/XVBenchAmbienteDiario.h"

namespace {

constexpr int k_iEsperaOcupado = 60000;  // ms

constexpr const char* k_pszEsquema =
    "CREATE TABLE IF NOT EXISTS integracao(id INTEGER PRIMARY KEY, sistema INTEGER, chave INTEGER,"
    " status INTEGER, inclusao INTEGER, registro BLOB, json BLOB, mensagem BLOB, retorno BLOB);"
    "CREATE INDEX IF NOT EXISTS chave ON integracao(sistema, chave);"
    "CREATE INDEX IF NOT EXISTS status ON integracao(status);"
    "CREATE INDEX IF NOT EXISTS inclusao ON integracao(inclusao);";
constexpr const char* k_pszInclusao =
    "INSERT INTO integracao(sistema, chave, status, inclusao, registro, json, mensagem, retorno)"
    " VALUES(?, ?, ?, ?, ?, ?, ?, ?)";

}  // namespace

void CXVSqliteBench::SFecha::operator()(sqlite3* p) const {
    sqlite3_close_v2(p);
}
void CXVSqliteBench::SFecha::operator()(sqlite3_stmt* p) const {
    sqlite3_finalize(p);
}

CXVSqliteBench::CXVSqliteBench(const std::string& sCaminho) {
    sqlite3* pBanco = nullptr;
    const int iAbertura = sqlite3_open(sCaminho.c_str(), &pBanco);
    m_pBanco.reset(pBanco);
    Exige(iAbertura, "sqlite3_open");
    Exige(sqlite3_busy_timeout(pBanco, k_iEsperaOcupado), "sqlite3_busy_timeout");
    Executa("PRAGMA journal_mode=WAL");
    Executa("PRAGMA synchronous=FULL");
    Executa(k_pszEsquema);
    sqlite3_stmt* pInclusao = nullptr;
    Exige(sqlite3_prepare_v2(pBanco, k_pszInclusao, -1, &pInclusao, nullptr), "sqlite3_prepare_v2");
    m_pInclusao.reset(pInclusao);
}

void CXVSqliteBench::Executa(const char* pszSql) {
    Exige(sqlite3_exec(m_pBanco.get(), pszSql, nullptr, nullptr, nullptr), pszSql);
}

void CXVSqliteBench::Exige(int iResultado, const char* pszO) const {
    if (iResultado == SQLITE_OK || iResultado == SQLITE_DONE) return;
    std::fprintf(stderr, "%s: %s\n", pszO, sqlite3_errmsg(m_pBanco.get()));
    std::exit(1);
}

void CXVSqliteBench::Grava(unsigned uiNumero) {
    sqlite3_stmt* p = m_pInclusao.get();
    const tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg = XVIntegracaoDiario(uiNumero);
    const REG_CR_INTEGRACAO_MIDDLEWARE_V2 regGrava{};
    const auto texto = [p](int iColuna, const std::string& s) {
        sqlite3_bind_blob(p, iColuna, s.data(), static_cast<int>(s.size()), SQLITE_STATIC);
    };
    sqlite3_bind_int64(p, 1, static_cast<sqlite3_int64>(reg.eSistemaIntegracao));
    sqlite3_bind_int64(p, 2, static_cast<sqlite3_int64>(reg.uiChaveIntegracaoSistemaTerceiro));
    sqlite3_bind_int64(p, 3, static_cast<sqlite3_int64>(reg.eStatusIntegracao));
    sqlite3_bind_int64(p, 4, static_cast<sqlite3_int64>(std::time(nullptr)));
    sqlite3_bind_blob(p, 5, &regGrava, sizeof(regGrava), SQLITE_STATIC);
    texto(6, XVTextosDiario().sJSON);
    texto(7, XVTextosDiario().sMensagem);
    texto(8, XVTextosDiario().sRetorno);
    Exige(sqlite3_step(p), "sqlite3_step");
    Exige(sqlite3_reset(p), "sqlite3_reset");
}
