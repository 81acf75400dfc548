// The opponent SQLite: a row with what is searched by, the record and the texts; every operation a
// transaction of its own by prepared statements.
//
// As a user sets it: write-ahead log, indexes on (system, key), status and inclusion, and the defaults of the
// library, without waiting for the device unless it has to be durable. Tuned: also larger pages, a cache and
// a map for all of it, the file to itself, an index that covers the searches over many rows, and statistics.
#include <sqlite3.h>

#include <filesystem>
#include <map>

#include "bench/compare/IXVBenchAdversario.h"

namespace {

constexpr int k_iEsperaOcupado = 60000;  // ms

constexpr const char* k_pszEsquema =
    "CREATE TABLE IF NOT EXISTS integracao(id INTEGER PRIMARY KEY, sistema INTEGER, chave INTEGER,"
    " status INTEGER, tipo INTEGER, inclusao INTEGER, registro BLOB, json TEXT, mensagem TEXT, retorno TEXT);"
    "CREATE INDEX IF NOT EXISTS chave ON integracao(sistema, chave);"
    "CREATE INDEX IF NOT EXISTS status ON integracao(status);"
    "CREATE INDEX IF NOT EXISTS inclusao ON integracao(inclusao);";
constexpr const char* k_pszIndiceAjustado =
    "CREATE INDEX IF NOT EXISTS busca ON integracao(status, sistema, inclusao, tipo, chave);";
constexpr const char* k_pszInclusao =
    "INSERT INTO integracao(id, sistema, chave, status, tipo, inclusao, registro, json, mensagem, retorno)"
    " VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";
constexpr const char* k_pszStatus =
    "UPDATE integracao SET status = ?, mensagem = ?, retorno = ? WHERE sistema = ? AND chave = ?";
constexpr const char* k_pszLeitura =
    "SELECT chave, sistema, status, tipo, json, mensagem, retorno FROM integracao WHERE id = ?";

struct SFecha {
    void operator()(sqlite3* p) const { sqlite3_close_v2(p); }
    void operator()(sqlite3_stmt* p) const { sqlite3_finalize(p); }
};

// A bound column of an IN list, so many times.
std::string Condicao(const char* pszColuna, std::size_t uiValores) {
    if (uiValores == 0) return {};
    std::string s = std::string(" AND ") + pszColuna + " IN (?";
    for (std::size_t i = 1; i < uiValores; ++i) s += ", ?";
    return s + ")";
}

std::string TextoBusca(const SFiltroBench& rFiltro) {
    std::string s = "SELECT id FROM integracao WHERE 1";
    if (rFiltro.EhExato())
        s += " AND chave = ?";
    else if (rFiltro.uiChaveInicial != 0)
        s += " AND chave BETWEEN ? AND ?";
    if (!rFiltro.diaInicial.EhNula()) s += " AND inclusao BETWEEN ? AND ?";
    return s + Condicao("status", rFiltro.listaStatus.size()) +
           Condicao("sistema", rFiltro.listaSistemas.size()) + Condicao("tipo", rFiltro.listaTipos.size());
}

class CXVSqliteBench final : public IXVBenchAdversario {
  public:
    CXVSqliteBench(const SAberturaBench& rAbertura, bool bAjustado);

    void Grava(const SIntegracaoBench& rIntegracao) override;
    void GravaStatus(const SStatusBench& rStatus) override;
    void Assenta() override {
        if (m_bAjustado) Executa("ANALYZE");
    }
    SLidaBench Le(REG_XVDMC regDmc) override;
    std::span<const REG_XVDMC> Busca(const SFiltroBench& rFiltro) override;
    XVUInt64 BytesEmDisco() override;

  private:
    using CComando = std::unique_ptr<sqlite3_stmt, SFecha>;

    void Ajusta();
    void Executa(const char* pszSql) const {
        Exige(sqlite3_exec(m_pBanco.get(), pszSql, nullptr, nullptr, nullptr), pszSql);
    }
    CComando Prepara(const std::string& sSql) const;
    void Exige(int iResultado, const std::string& sO) const {
        if (iResultado != SQLITE_OK && iResultado != SQLITE_DONE)
            XVTermina(sO + ": " + sqlite3_errmsg(m_pBanco.get()));
    }
    // A step that gives no row, and the statement ready for the next.
    void Conclui(sqlite3_stmt* p) const {
        Exige(sqlite3_step(p), sqlite3_sql(p));
        Exige(sqlite3_reset(p), "sqlite3_reset");
    }

    std::string m_sPasta;
    bool m_bAjustado;
    std::unique_ptr<sqlite3, SFecha> m_pBanco;
    CComando m_pInclusao;
    CComando m_pStatus;
    CComando m_pLeitura;
    std::map<std::string, CComando> m_mapBuscas;
    std::string m_asTextos[3];  // of the integration read last
    std::vector<REG_XVDMC> m_listaAchadas;
};

void Liga(sqlite3_stmt* p, int iColuna, XVUInt64 uiValor) {
    sqlite3_bind_int64(p, iColuna, static_cast<sqlite3_int64>(uiValor));
}
void Liga(sqlite3_stmt* p, int iColuna, std::string_view sTexto) {
    sqlite3_bind_text(p, iColuna, sTexto.data(), static_cast<int>(sTexto.size()), SQLITE_STATIC);
}
XVUInt Numero(sqlite3_stmt* p, int iColuna) {
    return static_cast<XVUInt>(sqlite3_column_int64(p, iColuna));
}

CXVSqliteBench::CXVSqliteBench(const SAberturaBench& rAbertura, bool bAjustado)
    : m_sPasta(rAbertura.sPasta), m_bAjustado(bAjustado) {
    sqlite3* pBanco = nullptr;
    const int iAbertura = sqlite3_open((m_sPasta + "/banco.db").c_str(), &pBanco);
    m_pBanco.reset(pBanco);
    Exige(iAbertura, "sqlite3_open");
    Exige(sqlite3_busy_timeout(pBanco, k_iEsperaOcupado), "sqlite3_busy_timeout");
    if (bAjustado) Ajusta();
    Executa("PRAGMA journal_mode=WAL");
    Executa(rAbertura.eDuracao == EDuracaoBench::eDispositivo ? "PRAGMA synchronous=FULL"
                                                              : "PRAGMA synchronous=OFF");
    Executa(k_pszEsquema);
    if (bAjustado) Executa(k_pszIndiceAjustado);
    m_pInclusao = Prepara(k_pszInclusao);
    m_pStatus = Prepara(k_pszStatus);
    m_pLeitura = Prepara(k_pszLeitura);
}

void CXVSqliteBench::Ajusta() {
    Executa("PRAGMA page_size=8192");
    Executa("PRAGMA cache_size=-262144");
    Executa("PRAGMA mmap_size=8589934592");
    Executa("PRAGMA temp_store=MEMORY");
    Executa("PRAGMA locking_mode=EXCLUSIVE");
}

CXVSqliteBench::CComando CXVSqliteBench::Prepara(const std::string& sSql) const {
    sqlite3_stmt* p = nullptr;
    Exige(sqlite3_prepare_v3(m_pBanco.get(), sSql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &p, nullptr), sSql);
    return CComando(p);
}

void CXVSqliteBench::Grava(const SIntegracaoBench& rIntegracao) {
    static constexpr XVByte k_aRegistro[88] = {};
    sqlite3_stmt* p = m_pInclusao.get();
    Liga(p, 1, rIntegracao.regDmc.uiValor);
    Liga(p, 2, rIntegracao.eSistema);
    Liga(p, 3, rIntegracao.uiChave);
    Liga(p, 4, rIntegracao.eStatus);
    Liga(p, 5, rIntegracao.eTipo);
    Liga(p, 6, rIntegracao.regDmc.GetDma().GetValor());
    sqlite3_bind_blob(p, 7, k_aRegistro, sizeof(k_aRegistro), SQLITE_STATIC);
    Liga(p, 8, rIntegracao.sJSON);
    Liga(p, 9, rIntegracao.sMensagem);
    Liga(p, 10, rIntegracao.sRetorno);
    Conclui(p);
}

void CXVSqliteBench::GravaStatus(const SStatusBench& rStatus) {
    sqlite3_stmt* p = m_pStatus.get();
    Liga(p, 1, rStatus.eStatus);
    Liga(p, 2, rStatus.sMensagem);
    Liga(p, 3, rStatus.sRetorno);
    Liga(p, 4, rStatus.eSistema);
    Liga(p, 5, rStatus.uiChave);
    Conclui(p);
}

SLidaBench CXVSqliteBench::Le(REG_XVDMC regDmc) {
    sqlite3_stmt* p = m_pLeitura.get();
    Liga(p, 1, regDmc.uiValor);
    if (sqlite3_step(p) != SQLITE_ROW) XVTermina("SQLite holds no " + regDmc.ToString());
    SLidaBench lida{Numero(p, 0), Numero(p, 1), Numero(p, 2), Numero(p, 3)};
    std::string_view* apTextos[] = {&lida.sJSON, &lida.sMensagem, &lida.sRetorno};
    for (int i = 0; i < 3; ++i) {
        const auto* pTexto = reinterpret_cast<const char*>(sqlite3_column_text(p, 4 + i));
        m_asTextos[i].assign(pTexto, static_cast<std::size_t>(sqlite3_column_bytes(p, 4 + i)));
        *apTextos[i] = m_asTextos[i];
    }
    Exige(sqlite3_reset(p), "sqlite3_reset");
    return lida;
}

std::span<const REG_XVDMC> CXVSqliteBench::Busca(const SFiltroBench& rFiltro) {
    CComando& rComando = m_mapBuscas[rFiltro.pszNome];
    if (rComando == nullptr) rComando = Prepara(TextoBusca(rFiltro));
    sqlite3_stmt* p = rComando.get();
    int iColuna = 0;
    if (rFiltro.uiChaveInicial != 0) Liga(p, ++iColuna, rFiltro.uiChaveInicial);
    if (rFiltro.uiChaveInicial != 0 && !rFiltro.EhExato()) Liga(p, ++iColuna, rFiltro.uiChaveFinal);
    if (!rFiltro.diaInicial.EhNula()) {
        Liga(p, ++iColuna, rFiltro.diaInicial.GetValor());
        Liga(p, ++iColuna, rFiltro.diaFinal.GetValor());
    }
    for (const auto* pLista : {&rFiltro.listaStatus, &rFiltro.listaSistemas, &rFiltro.listaTipos})
        for (const XVUInt e : *pLista) Liga(p, ++iColuna, e);
    m_listaAchadas.clear();
    while (sqlite3_step(p) == SQLITE_ROW)
        m_listaAchadas.push_back({static_cast<XVUInt64>(sqlite3_column_int64(p, 0))});
    Exige(sqlite3_reset(p), "sqlite3_reset");
    return m_listaAchadas;
}

XVUInt64 CXVSqliteBench::BytesEmDisco() {
    Executa("PRAGMA wal_checkpoint(TRUNCATE)");
    return std::filesystem::file_size(m_sPasta + "/banco.db");
}

}  // namespace

std::unique_ptr<IXVBenchAdversario> XVAbreSqlite(const SAberturaBench& rAbertura, bool bAjustado) {
    return std::make_unique<CXVSqliteBench>(rAbertura, bAjustado);
}
