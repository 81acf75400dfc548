// The opponent LMDB: a tree of small entries by record key, one of texts, and two that find by key and system
// and by status. A transaction for each call; without waiting for the device and with a writable map, unless
// it has to be durable.
#include <lmdb.h>

#include <array>
#include <cstring>
#include <utility>

#include "bench/compare/IXVBenchAdversario.h"

namespace {

struct SEntrada {
    XVUInt64 uiChave;
    XVUInt eSistema;
    XVUInt eStatus;
    XVUInt eTipo;
    XVUInt ulReserva;
    std::array<XVByte, 88> aRegistro;
};

// One whole number, which the tree keeps in ascending order.
XVUInt64 ChaveSistema(XVUInt eSistema, XVUInt64 uiChave) {
    return XVUInt64{eSistema} << 56U | uiChave;
}

void Exige(int iResultado, const char* pszO) {
    if (iResultado != MDB_SUCCESS) XVTermina(std::string(pszO) + ": " + mdb_strerror(iResultado));
}

template <class T>
MDB_val Valor(const T& rValor) {
    return {sizeof(T), const_cast<T*>(&rValor)};  // the library does not write through what it is given
}

template <class T>
T De(const MDB_val& rValor) {
    T valor;
    std::memcpy(&valor, rValor.mv_data, sizeof(T));
    return valor;
}

// Ends without a trace unless it is committed.
class CTransacao {
  public:
    CTransacao(MDB_env* pAmbiente, unsigned uiOpcoes) {
        Exige(mdb_txn_begin(pAmbiente, nullptr, uiOpcoes, &m_p), "mdb_txn_begin");
    }
    ~CTransacao() {
        if (m_p != nullptr) mdb_txn_abort(m_p);
    }
    CTransacao(const CTransacao&) = delete;
    CTransacao& operator=(const CTransacao&) = delete;
    MDB_txn* Get() const { return m_p; }
    void Confirma() { Exige(mdb_txn_commit(std::exchange(m_p, nullptr)), "mdb_txn_commit"); }

  private:
    MDB_txn* m_p = nullptr;
};

struct SFechaCursor {
    void operator()(MDB_cursor* p) const { mdb_cursor_close(p); }
};
using CCursor = std::unique_ptr<MDB_cursor, SFechaCursor>;

class CXVLmdbBench final : public IXVBenchAdversario {
  public:
    explicit CXVLmdbBench(const SAberturaBench& rAbertura);
    ~CXVLmdbBench() override { mdb_env_close(m_pAmbiente); }

    void Grava(const SIntegracaoBench& rIntegracao) override;
    void GravaStatus(const SStatusBench& rStatus) override;
    SLidaBench Le(REG_XVDMC regDmc) override;
    std::span<const REG_XVDMC> Busca(const SFiltroBench& rFiltro) override;
    XVUInt64 BytesEmDisco() override;

  private:
    void Poe(MDB_txn* p, MDB_dbi arvore, MDB_val chave, MDB_val valor) const {
        Exige(mdb_put(p, arvore, &chave, &valor, 0), "mdb_put");
    }
    MDB_val Busca(MDB_txn* p, MDB_dbi arvore, MDB_val chave) const {
        MDB_val valor{};
        Exige(mdb_get(p, arvore, &chave, &valor), "mdb_get");
        return valor;
    }
    void PoeTextos(MDB_txn* p, REG_XVDMC regDmc, std::string_view sJSON, std::string_view sMensagem,
                   std::string_view sRetorno) const;
    void BuscaPorStatus(MDB_txn* p, const SFiltroBench& rFiltro);
    void BuscaEmTodas(MDB_txn* p, const SFiltroBench& rFiltro);

    MDB_env* m_pAmbiente = nullptr;
    MDB_dbi m_entradas = 0;
    MDB_dbi m_textos = 0;
    MDB_dbi m_chaves = 0;
    MDB_dbi m_status = 0;
    std::string m_sTextos;  // of the integration read last
    std::vector<REG_XVDMC> m_listaAchadas;
};

CXVLmdbBench::CXVLmdbBench(const SAberturaBench& rAbertura) {
    constexpr std::size_t k_uiBytesCada = 8192;  // a text leaf takes whole pages
    constexpr std::size_t k_uiBytesSempre = 256U << 20U;
    const unsigned uiOpcoes =
        rAbertura.eDuracao == EDuracaoBench::eDispositivo ? 0U : unsigned{MDB_NOSYNC | MDB_WRITEMAP};
    Exige(mdb_env_create(&m_pAmbiente), "mdb_env_create");
    Exige(mdb_env_set_maxdbs(m_pAmbiente, 4), "mdb_env_set_maxdbs");
    Exige(mdb_env_set_mapsize(m_pAmbiente, rAbertura.uiIntegracoes * k_uiBytesCada + k_uiBytesSempre),
          "mdb_env_set_mapsize");
    Exige(mdb_env_open(m_pAmbiente, rAbertura.sPasta.c_str(), uiOpcoes, 0644), "mdb_env_open");
    CTransacao transacao(m_pAmbiente, 0);
    const auto abre = [&](const char* pszNome, unsigned uiTipo, MDB_dbi* pArvore) {
        Exige(mdb_dbi_open(transacao.Get(), pszNome, MDB_CREATE | uiTipo, pArvore), "mdb_dbi_open");
    };
    abre("entradas", MDB_INTEGERKEY, &m_entradas);
    abre("textos", MDB_INTEGERKEY, &m_textos);
    abre("chaves", MDB_INTEGERKEY, &m_chaves);
    abre("status", MDB_INTEGERKEY | MDB_DUPSORT | MDB_DUPFIXED | MDB_INTEGERDUP, &m_status);
    transacao.Confirma();
}

void CXVLmdbBench::PoeTextos(MDB_txn* p, REG_XVDMC regDmc, std::string_view sJSON, std::string_view sMensagem,
                             std::string_view sRetorno) const {
    const std::array<XVUInt, 3> aulTamanhos{static_cast<XVUInt>(sJSON.size()),
                                            static_cast<XVUInt>(sMensagem.size()),
                                            static_cast<XVUInt>(sRetorno.size())};
    MDB_val chave = Valor(regDmc);
    MDB_val valor{sizeof(aulTamanhos) + sJSON.size() + sMensagem.size() + sRetorno.size(), nullptr};
    Exige(mdb_put(p, m_textos, &chave, &valor, MDB_RESERVE), "mdb_put");
    auto* pDestino = static_cast<char*>(valor.mv_data);
    std::memcpy(pDestino, aulTamanhos.data(), sizeof(aulTamanhos));
    pDestino += sizeof(aulTamanhos);
    for (const std::string_view s : {sJSON, sMensagem, sRetorno}) pDestino += s.copy(pDestino, s.size());
}

void CXVLmdbBench::Grava(const SIntegracaoBench& rIntegracao) {
    CTransacao transacao(m_pAmbiente, 0);
    const SEntrada entrada{
        rIntegracao.uiChave, rIntegracao.eSistema, rIntegracao.eStatus, rIntegracao.eTipo, 0, {}};
    const XVUInt64 uiStatus = rIntegracao.eStatus;
    const XVUInt64 uiChave = ChaveSistema(rIntegracao.eSistema, rIntegracao.uiChave);
    Poe(transacao.Get(), m_entradas, Valor(rIntegracao.regDmc), Valor(entrada));
    PoeTextos(transacao.Get(), rIntegracao.regDmc, rIntegracao.sJSON, rIntegracao.sMensagem,
              rIntegracao.sRetorno);
    Poe(transacao.Get(), m_chaves, Valor(uiChave), Valor(rIntegracao.regDmc));
    Poe(transacao.Get(), m_status, Valor(uiStatus), Valor(rIntegracao.regDmc));
    transacao.Confirma();
}

void CXVLmdbBench::GravaStatus(const SStatusBench& rStatus) {
    CTransacao transacao(m_pAmbiente, 0);
    const XVUInt64 uiChave = ChaveSistema(rStatus.eSistema, rStatus.uiChave);
    const auto regDmc = De<REG_XVDMC>(Busca(transacao.Get(), m_chaves, Valor(uiChave)));
    auto entrada = De<SEntrada>(Busca(transacao.Get(), m_entradas, Valor(regDmc)));
    const XVUInt64 uiAnterior = entrada.eStatus;
    const XVUInt64 uiNovo = rStatus.eStatus;
    if (uiAnterior != uiNovo) {
        MDB_val valorAnterior = Valor(uiAnterior);
        MDB_val valorDmc = Valor(regDmc);
        Exige(mdb_del(transacao.Get(), m_status, &valorAnterior, &valorDmc), "mdb_del");
        Poe(transacao.Get(), m_status, Valor(uiNovo), Valor(regDmc));
    }
    entrada.eStatus = rStatus.eStatus;
    Poe(transacao.Get(), m_entradas, Valor(regDmc), Valor(entrada));
    const MDB_val textos = Busca(transacao.Get(), m_textos, Valor(regDmc));
    const std::string sJSON(static_cast<const char*>(textos.mv_data) + 3 * sizeof(XVUInt),
                            De<XVUInt>(textos));
    PoeTextos(transacao.Get(), regDmc, sJSON, rStatus.sMensagem, rStatus.sRetorno);
    transacao.Confirma();
}

SLidaBench CXVLmdbBench::Le(REG_XVDMC regDmc) {
    const CTransacao transacao(m_pAmbiente, MDB_RDONLY);
    const auto entrada = De<SEntrada>(Busca(transacao.Get(), m_entradas, Valor(regDmc)));
    const MDB_val textos = Busca(transacao.Get(), m_textos, Valor(regDmc));
    m_sTextos.assign(static_cast<const char*>(textos.mv_data), textos.mv_size);
    std::array<XVUInt, 3> aulTamanhos;
    std::memcpy(aulTamanhos.data(), m_sTextos.data(), sizeof(aulTamanhos));
    const std::string_view sTextos = std::string_view(m_sTextos).substr(sizeof(aulTamanhos));
    return {entrada.uiChave,
            entrada.eSistema,
            entrada.eStatus,
            entrada.eTipo,
            sTextos.substr(0, aulTamanhos[0]),
            sTextos.substr(aulTamanhos[0], aulTamanhos[1]),
            sTextos.substr(aulTamanhos[0] + aulTamanhos[1], aulTamanhos[2])};
}

void CXVLmdbBench::BuscaPorStatus(MDB_txn* p, const SFiltroBench& rFiltro) {
    MDB_cursor* pAberto = nullptr;
    Exige(mdb_cursor_open(p, m_status, &pAberto), "mdb_cursor_open");
    const CCursor pCursor(pAberto);
    for (const XVUInt eStatus : rFiltro.listaStatus) {
        const XVUInt64 uiStatus = eStatus;
        MDB_val chave = Valor(uiStatus);
        MDB_val valor{};
        for (int i = mdb_cursor_get(pAberto, &chave, &valor, MDB_SET_KEY); i == MDB_SUCCESS;
             i = mdb_cursor_get(pAberto, &chave, &valor, MDB_NEXT_DUP)) {
            const auto regDmc = De<REG_XVDMC>(valor);
            const auto entrada = De<SEntrada>(Busca(p, m_entradas, Valor(regDmc)));
            if (rFiltro.Aceita(regDmc, entrada.uiChave, entrada.eSistema, entrada.eStatus, entrada.eTipo))
                m_listaAchadas.push_back(regDmc);
        }
    }
}

void CXVLmdbBench::BuscaEmTodas(MDB_txn* p, const SFiltroBench& rFiltro) {
    MDB_cursor* pAberto = nullptr;
    Exige(mdb_cursor_open(p, m_entradas, &pAberto), "mdb_cursor_open");
    const CCursor pCursor(pAberto);
    // Record keys ascend with their days.
    const REG_XVDMC regPrimeira = REG_XVDMC::Cria(0, 0, rFiltro.diaInicial);
    MDB_val chave = Valor(regPrimeira);
    MDB_val valor{};
    for (int i = mdb_cursor_get(pAberto, &chave, &valor, MDB_SET_RANGE); i == MDB_SUCCESS;
         i = mdb_cursor_get(pAberto, &chave, &valor, MDB_NEXT)) {
        const auto regDmc = De<REG_XVDMC>(chave);
        if (!rFiltro.diaFinal.EhNula() && regDmc.GetDma().GetValor() > rFiltro.diaFinal.GetValor()) return;
        const auto entrada = De<SEntrada>(valor);
        if (rFiltro.Aceita(regDmc, entrada.uiChave, entrada.eSistema, entrada.eStatus, entrada.eTipo))
            m_listaAchadas.push_back(regDmc);
    }
}

std::span<const REG_XVDMC> CXVLmdbBench::Busca(const SFiltroBench& rFiltro) {
    m_listaAchadas.clear();
    const CTransacao transacao(m_pAmbiente, MDB_RDONLY);
    if (rFiltro.EhExato()) {
        const XVUInt64 uiChave = ChaveSistema(rFiltro.listaSistemas.front(), rFiltro.uiChaveInicial);
        m_listaAchadas.push_back(De<REG_XVDMC>(Busca(transacao.Get(), m_chaves, Valor(uiChave))));
    } else if (!rFiltro.listaStatus.empty()) {
        BuscaPorStatus(transacao.Get(), rFiltro);
    } else {
        BuscaEmTodas(transacao.Get(), rFiltro);
    }
    return m_listaAchadas;
}

XVUInt64 CXVLmdbBench::BytesEmDisco() {
    // The file is as long as the map; what was never used of it takes no room.
    MDB_envinfo info;
    MDB_stat estado;
    Exige(mdb_env_info(m_pAmbiente, &info), "mdb_env_info");
    Exige(mdb_env_stat(m_pAmbiente, &estado), "mdb_env_stat");
    return (info.me_last_pgno + 1) * XVUInt64{estado.ms_psize};
}

}  // namespace

std::unique_ptr<IXVBenchAdversario> XVAbreLmdb(const SAberturaBench& rAbertura) {
    return std::make_unique<CXVLmdbBench>(rAbertura);
}
