#include "bench/XVBenchMembrosSqlite.h"

#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "bench/XVBenchCenarioLoja.h"
#include "contract/XVCR_BuffersPS.h"

namespace {

constexpr const char* k_pszEsquema =
    "CREATE TABLE IF NOT EXISTS integracao(id INTEGER PRIMARY KEY, sistema INTEGER, chave INTEGER,"
    " status INTEGER, alteracao INTEGER, registro BLOB, json BLOB, mensagem BLOB, retorno BLOB);"
    "CREATE INDEX IF NOT EXISTS chave ON integracao(sistema, chave);";
constexpr int k_iPrimeiroTexto = 2;  // column of a read row

}  // namespace

void CXVSqliteMembros::SFecha::operator()(sqlite3* p) const {
    sqlite3_close_v2(p);
}
void CXVSqliteMembros::SFecha::operator()(sqlite3_stmt* p) const {
    sqlite3_finalize(p);
}

CXVSqliteMembros::CXVSqliteMembros(const std::string& sCaminho) {
    sqlite3* pBanco = nullptr;
    const int iAbertura = sqlite3_open(sCaminho.c_str(), &pBanco);
    m_pBanco.reset(pBanco);
    Exige(iAbertura, "sqlite3_open");
    Executa("PRAGMA journal_mode=WAL");
    Executa("PRAGMA synchronous=OFF");
    Executa(k_pszEsquema);
    m_pInclusao = Prepara(
        "INSERT INTO integracao(id, sistema, chave, status, registro, json, mensagem, retorno)"
        " VALUES(?, ?, ?, ?, ?, ?, ?, ?)");
    m_pStatus = Prepara("UPDATE integracao SET status=?, mensagem=?, alteracao=? WHERE id=?");
    m_pLeitura = Prepara("SELECT status, registro, json, mensagem, retorno FROM integracao WHERE id=?");
}

CXVSqliteMembros::CComando CXVSqliteMembros::Prepara(const char* pszSql) {
    sqlite3_stmt* p = nullptr;
    Exige(sqlite3_prepare_v2(m_pBanco.get(), pszSql, -1, &p, nullptr), pszSql);
    return CComando(p);
}

void CXVSqliteMembros::Executa(const char* pszSql) {
    Exige(sqlite3_exec(m_pBanco.get(), pszSql, nullptr, nullptr, nullptr), pszSql);
}

void CXVSqliteMembros::Exige(int iResultado, const char* pszO) const {
    if (iResultado == SQLITE_OK || iResultado == SQLITE_DONE) return;
    std::fprintf(stderr, "%s: %s\n", pszO, sqlite3_errmsg(m_pBanco.get()));
    std::exit(1);
}

void CXVSqliteMembros::Passa(sqlite3_stmt* p) {
    Exige(sqlite3_step(p), "sqlite3_step");
    Exige(sqlite3_reset(p), "sqlite3_reset");
}

bool CXVSqliteMembros::EstaVazio() {
    const CComando pConta = Prepara("SELECT id FROM integracao LIMIT 1");
    return sqlite3_step(pConta.get()) == SQLITE_DONE;
}

void CXVSqliteMembros::Carrega(unsigned uiQuantidade) {
    sqlite3_stmt* p = m_pInclusao.get();
    const std::array<char, 88> aRegistro{};  // bytes of the store's record
    const auto texto = [p](int iColuna, const _REG_DF_TEXTOPS& rTexto) {
        const std::string_view s = CXVStringPS::RegToString(rTexto);
        sqlite3_bind_blob(p, iColuna, s.data(), static_cast<int>(s.size()), SQLITE_STATIC);
    };
    Executa("BEGIN");
    for (unsigned uiNumero = 0; uiNumero < uiQuantidade; ++uiNumero) {
        const tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg = XVIntegracaoBench(uiNumero);
        sqlite3_bind_int64(p, 1, uiNumero + 1);
        sqlite3_bind_int64(p, 2, reg.eSistemaIntegracao);
        sqlite3_bind_int64(p, 3, static_cast<sqlite3_int64>(reg.uiChaveIntegracaoSistemaTerceiro));
        sqlite3_bind_int64(p, 4, reg.eStatusIntegracao);
        sqlite3_bind_blob(p, 5, aRegistro.data(), static_cast<int>(aRegistro.size()), SQLITE_STATIC);
        texto(6, reg.regRegistroJSON);
        texto(7, reg.regMensagemIntegracao);
        texto(8, reg.regJSONRetornoIntegracao);
        Passa(p);
    }
    Executa("COMMIT");
}

void CXVSqliteMembros::GravaStatus(unsigned uiNumero, XVUInt eStatus, const std::string& sMensagem) {
    sqlite3_stmt* p = m_pStatus.get();
    sqlite3_bind_int64(p, 1, eStatus);
    sqlite3_bind_blob(p, 2, sMensagem.data(), static_cast<int>(sMensagem.size()), SQLITE_STATIC);
    sqlite3_bind_int64(p, 3, uiNumero);
    sqlite3_bind_int64(p, 4, uiNumero + 1);
    Passa(p);
}

std::size_t CXVSqliteMembros::Le(unsigned uiNumero) {
    sqlite3_stmt* p = m_pLeitura.get();
    sqlite3_bind_int64(p, 1, uiNumero + 1);
    std::size_t uiBytes = 0;
    if (sqlite3_step(p) != SQLITE_ROW) Exige(sqlite3_errcode(m_pBanco.get()), "sqlite3_step");
    for (int iColuna = k_iPrimeiroTexto - 1; iColuna < k_iPrimeiroTexto + 3; ++iColuna) {
        const auto* pTexto = static_cast<const char*>(sqlite3_column_blob(p, iColuna));
        const std::string sTexto(pTexto, static_cast<std::size_t>(sqlite3_column_bytes(p, iColuna)));
        uiBytes += sTexto.size();
    }
    Exige(sqlite3_reset(p), "sqlite3_reset");
    return uiBytes;
}
