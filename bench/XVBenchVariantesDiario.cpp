#include "bench/XVBenchVariantesDiario.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "bench/XVBenchSqlite.h"
#include "core/xvdatabase/XVDiario.h"

namespace {

constexpr std::size_t k_uiTamanhoEntrada = 5120;  // of the journal, for one recording

void Exige(HRESULT hr, const char* pszO) {
    if (SUCCEEDED(hr)) return;
    std::fprintf(stderr, "%s: 0x%08X\n", pszO, static_cast<unsigned>(hr));
    std::exit(1);
}
void Exige(const CXVErroArquivo& rErro, const char* pszO) {
    if (rErro.Ok()) return;
    std::fprintf(stderr, "%s: cause %d\n", pszO, static_cast<int>(rErro.GetCausa()));
    std::exit(1);
}

// The schema's files alone, with a journal of their directory or without: the same operation on both.
class CXVEsquemaBench {
  public:
    CXVEsquemaBench(CXVAmbienteDiario& rAmbiente, const char* pszEmpresa, bool bDiario) : m_dono(pszEmpresa) {
        rAmbiente.SetDurabilidade(0);
        const std::string sPasta = rAmbiente.PastaDados(m_dono);
        if (bDiario) Exige(m_diario.Abre(&m_dono, XV_DF, sPasta), "CXVDiario::Abre");
        Exige(m_dataBase.Inicializa(&m_dono), "CXVDataBase_CR_Middleware::Inicializa");
    }
    ~CXVEsquemaBench() {
        Exige(m_dataBase.Finaliza(), "CXVDataBase_CR_Middleware::Finaliza");
        Exige(m_diario.Fecha(&m_dono), "CXVDiario::Fecha");
    }
    CXVEsquemaBench(const CXVEsquemaBench&) = delete;
    CXVEsquemaBench& operator=(const CXVEsquemaBench&) = delete;

    void Grava() {
        const REG_XVDMA dia = REG_XVDMA::Cria(2025, 1, 1);
        const XVUInt64 uiChave = dia.ToChave();
        CXVOperacao operacao(&m_dataBase);
        REG_CR_INTEGRACAO_MIDDLEWARE_V2 reg{};
        Prepara(m_dataBase.m_JSONIntegracao, operacao, XVTextosDiario().sJSON, &reg.ulPonteiroJSONRegistro);
        Prepara(m_dataBase.m_MensagemIntegracao, operacao, XVTextosDiario().sMensagem,
                &reg.ulPonteiroMensagemRetorno);
        Prepara(m_dataBase.m_JSONRetornoIntegracao, operacao, XVTextosDiario().sRetorno,
                &reg.ulPonteiroJSONRetornoIntegracao);
        XVUInt uiPosicao = XVDATABASE_POSICAO_NOVO_REGISTRO;
        Exige(m_dataBase.m_Integracao.Prepara(operacao, uiChave, uiPosicao, reg), "m_Integracao.Prepara");
        const REG_CR_INDEX_INTEGRACAO_V1 regIndex{
            uiPosicao, REG_XVDMC::Cria(REG_XVDMC::k_uiTipoIntegracao, uiPosicao, dia), Mercos,
            eXVSMiddleware_Pendente};
        uiPosicao = XVDATABASE_POSICAO_NOVO_REGISTRO;
        Exige(m_dataBase.m_IndexIntegracao.Prepara(operacao, uiPosicao, regIndex),
              "m_IndexIntegracao.Prepara");
        Exige(operacao.Executa(), "CXVOperacao::Executa");
    }

  private:
    static void Prepara(CXVGroupTextFileDynamic& rGrupo, CXVOperacao& rOperacao, const std::string& sTexto,
                        XVUInt* pulPosicao) {
        XVUInt ulPosicao = 0;
        const XVUInt64 uiChave = REG_XVDMA::Cria(2025, 1, 1).ToChave();
        Exige(rGrupo.Prepara(rOperacao, uiChave, ulPosicao, sTexto), "CXVGroupTextFileDynamic::Prepara");
        *pulPosicao = ulPosicao;
    }

    CXVDonoBench m_dono;
    CXVDiario m_diario;
    CXVDataBase_CR_Middleware m_dataBase;
};

// The whole operation of the store.
class CXVLojaDiario {
  public:
    CXVLojaDiario(CXVAmbienteDiario& rAmbiente, const char* pszEmpresa, XVUInt ulDurabilidade)
        : m_dono(pszEmpresa) {
        rAmbiente.SetDurabilidade(ulDurabilidade);
        rAmbiente.PastaDados(m_dono);
        Exige(m_loja.Inicializa(&m_dono), "CBaseMiddleware::Inicializa");
    }
    void Grava(unsigned uiNumero) {
        const auto reg = XVIntegracaoDiario(uiNumero);
        REG_XVDMC regDmc;
        Exige(m_loja.GravaIntegracao(&regDmc, &reg), "GravaIntegracao");
    }
    unsigned ProximoNumero() { return m_uiNumero.fetch_add(1, std::memory_order_relaxed); }

  private:
    CXVDonoBench m_dono;
    CBaseMiddleware m_loja;
    std::atomic<unsigned> m_uiNumero = 0;
};

// Files of a directory, written without anything of the store.
class CXVArquivosBench {
  public:
    CXVArquivosBench(const CXVAmbienteDiario& rAmbiente, unsigned uiArquivos) : m_listaArquivos(uiArquivos) {
        const std::string sPasta = rAmbiente.Pasta("chamadas-" + std::to_string(uiArquivos));
        for (unsigned i = 0; i < uiArquivos; ++i)
            Exige(XVPlataforma::SistemaArquivos().Abre(sPasta + "/" + std::to_string(i), k_abertura,
                                                       m_listaArquivos[i]),
                  "Abre");
        m_aBytes.resize(1U << 20);
        for (const auto& p : m_listaArquivos) Exige(p->Grava(0, m_aBytes.data(), m_aBytes.size()), "Grava");
        m_listaFins.assign(uiArquivos, m_aBytes.size());
    }

    // The ten writes of one recording: payload at the end, header over the one that stands there.
    void GravaCinco() {
        constexpr std::size_t k_auiTamanhos[] = {1504, 84, 604, 88, 24};
        for (std::size_t i = 0; i < std::size(k_auiTamanhos); ++i) {
            Exige(m_listaArquivos[i]->Grava(m_listaFins[i], m_aBytes.data(), k_auiTamanhos[i]), "Grava");
            Exige(m_listaArquivos[i]->Grava(24, m_aBytes.data(), 216), "Grava");
            m_listaFins[i] += k_auiTamanhos[i];
        }
    }

    // One entry into a file whose length does not change, and to the device.
    void GravaEDescarrega() {
        m_uiOffset = (m_uiOffset + k_uiTamanhoEntrada) % (m_aBytes.size() - k_uiTamanhoEntrada);
        Exige(m_listaArquivos[0]->Grava(m_uiOffset, m_aBytes.data(), k_uiTamanhoEntrada), "Grava");
        Exige(m_listaArquivos[0]->Sincroniza(), "Sincroniza");
    }

  private:
    static constexpr SAberturaArquivo k_abertura{EAcessoArquivo::eLeituraEscrita,
                                                 ECompartilhamentoArquivo::eNegaEscrita,
                                                 ECriacaoArquivo::eCriaSeAusente};
    std::vector<std::unique_ptr<IXVArquivo>> m_listaArquivos;
    std::vector<std::byte> m_aBytes;
    std::vector<XVUInt64> m_listaFins;
    XVUInt64 m_uiOffset = 0;  // of the entry
};

// fn(thread, number of operations) in all threads.
template <class TFuncao>
void EmThreads(unsigned uiOperacoes, TFuncao fn) {
    std::vector<std::jthread> listaThreads;
    for (unsigned i = 0; i < k_uiThreadsBench; ++i)
        listaThreads.emplace_back([&fn, i, uiOperacoes] { fn(i, uiOperacoes / k_uiThreadsBench); });
}

auto BlocoEsquema(CXVAmbienteDiario& rAmbiente, const char* pszEmpresa, bool bDiario) {
    return [p = std::make_shared<CXVEsquemaBench>(rAmbiente, pszEmpresa, bDiario)](unsigned uiOperacoes) {
        for (unsigned i = 0; i < uiOperacoes; ++i) p->Grava();
    };
}

auto BlocoLoja(CXVAmbienteDiario& rAmbiente, const char* pszEmpresa, XVUInt ulDurabilidade) {
    return
        [p = std::make_shared<CXVLojaDiario>(rAmbiente, pszEmpresa, ulDurabilidade)](unsigned uiOperacoes) {
            for (unsigned i = 0; i < uiOperacoes; ++i) p->Grava(p->ProximoNumero());
        };
}

auto BlocoLojaThreads(CXVAmbienteDiario& rAmbiente, const char* pszEmpresa, XVUInt ulDurabilidade) {
    return
        [p = std::make_shared<CXVLojaDiario>(rAmbiente, pszEmpresa, ulDurabilidade)](unsigned uiOperacoes) {
            EmThreads(uiOperacoes, [&p](unsigned, unsigned uiMinhas) {
                for (unsigned i = 0; i < uiMinhas; ++i) p->Grava(p->ProximoNumero());
            });
        };
}

auto BlocoSqlite(const CXVAmbienteDiario& rAmbiente) {
    return [p = std::make_shared<CXVSqliteBench>(rAmbiente.Pasta("sqlite1") + "/banco.db"),
            uiNumero = 0U](unsigned uiOperacoes) mutable {
        for (unsigned i = 0; i < uiOperacoes; ++i) p->Grava(uiNumero++);
    };
}

auto BlocoSqliteThreads(const CXVAmbienteDiario& rAmbiente) {
    std::vector<std::shared_ptr<CXVSqliteBench>> lista;
    for (unsigned i = 0; i < k_uiThreadsBench; ++i)
        lista.push_back(std::make_shared<CXVSqliteBench>(rAmbiente.Pasta("sqlite8") + "/banco.db"));
    return [lista, uiNumero = 0U](unsigned uiOperacoes) mutable {
        EmThreads(uiOperacoes, [&lista, uiNumero](unsigned uiThread, unsigned uiMinhas) {
            for (unsigned i = 0; i < uiMinhas; ++i)
                lista[uiThread]->Grava(uiNumero + uiThread * uiMinhas + i);
        });
        uiNumero += uiOperacoes;
    };
}

auto BlocoCincoArquivos(const CXVAmbienteDiario& rAmbiente) {
    return [p = std::make_shared<CXVArquivosBench>(rAmbiente, 5)](unsigned uiOperacoes) {
        for (unsigned i = 0; i < uiOperacoes; ++i) p->GravaCinco();
    };
}

auto BlocoDescarga(const CXVAmbienteDiario& rAmbiente) {
    return [p = std::make_shared<CXVArquivosBench>(rAmbiente, 1)](unsigned uiOperacoes) {
        for (unsigned i = 0; i < uiOperacoes; ++i) p->GravaEDescarrega();
    };
}

}  // namespace

std::vector<SVarianteDiario> XVMontaVariantes(CXVAmbienteDiario& rAmbiente, const STamanhosBloco& rTamanhos,
                                              const std::string& sFiltro) {
    std::vector<SVarianteDiario> lista;
    const auto inclui = [&](const char* pszNome, const char* pszDescricao, unsigned uiOperacoes, auto monta) {
        if (std::string(pszNome).find(sFiltro) != std::string::npos)
            lista.push_back({pszNome, pszDescricao, uiOperacoes, monta()});
    };
    inclui("operacao-sem-diario", "one operation over five files, no journal", rTamanhos.uiSemEspera,
           [&] { return BlocoEsquema(rAmbiente, "SEMDIARIO", false); });
    inclui("operacao-com-diario", "the same with the journal, Durabilidade 0", rTamanhos.uiSemEspera,
           [&] { return BlocoEsquema(rAmbiente, "COMDIARIO", true); });
    inclui("loja-0-sem-log", "GravaIntegracao, Durabilidade 0, no general log", rTamanhos.uiSemEspera,
           [&] { return BlocoLoja(rAmbiente, "SEMLOG0", 0); });
    inclui("loja-0", "GravaIntegracao, Durabilidade 0", rTamanhos.uiSemEspera,
           [&] { return BlocoLoja(rAmbiente, "LOJA0", 0); });
    inclui("loja-1", "GravaIntegracao, Durabilidade 1, one caller", rTamanhos.uiComEspera,
           [&] { return BlocoLoja(rAmbiente, "LOJA1", 1); });
    inclui("loja-1-threads", "GravaIntegracao, Durabilidade 1, 8 callers", rTamanhos.uiComThreads,
           [&] { return BlocoLojaThreads(rAmbiente, "LOJA8", 1); });
    inclui("sqlite", "SQLite, WAL, synchronous FULL, one caller", rTamanhos.uiComEspera,
           [&] { return BlocoSqlite(rAmbiente); });
    inclui("sqlite-threads", "SQLite, 8 callers, a connection each", rTamanhos.uiComThreads,
           [&] { return BlocoSqliteThreads(rAmbiente); });
    inclui("cinco-arquivos", "bare: five files, payload and header each", rTamanhos.uiSemEspera,
           [&] { return BlocoCincoArquivos(rAmbiente); });
    inclui("descarga", "bare: 5 KiB into one file and to the device", rTamanhos.uiComEspera,
           [&] { return BlocoDescarga(rAmbiente); });
    return lista;
}
