// What the operation journal costs: one operation over five files of the schema, with the journal of their
// directory and without. What counts is the difference; with --benchmark_enable_random_interleaving and some
// repetitions other work of the machine meets both alike. The target is a microsecond.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "contract/XVCR_Enumeracoes.h"
#include "core/xvdatabase/XVDiario.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"

namespace {

void Exige(HRESULT hr, const char* pszO) {
    if (SUCCEEDED(hr)) return;
    std::fprintf(stderr, "%s: 0x%08X\n", pszO, static_cast<unsigned>(hr));
    std::exit(1);
}

// A fresh module directory, and whose store lies in it.
class CAmbienteDiario final : public IXVRegistry, public IXVDF_Profiler {
  public:
    CAmbienteDiario()
        : m_modulo(std::filesystem::temp_directory_path() / ("xvbench-" + XVAmbienteSO::NovoGuid())) {
        std::filesystem::create_directories(PastaDados());
        XVPlataforma::TrocaRegistry(this);
    }
    ~CAmbienteDiario() override {
        XVPlataforma::TrocaRegistry(nullptr);
        std::error_code erro;
        std::filesystem::remove_all(m_modulo, erro);
    }
    CAmbienteDiario(const CAmbienteDiario&) = delete;
    CAmbienteDiario& operator=(const CAmbienteDiario&) = delete;

    std::string PastaDados() const {
        return (m_modulo / "BENCH" / CAmbienteXV::GetSiglaModulo(XV_DF)).string();
    }
    std::optional<std::string> LeTexto(std::string_view, std::string_view sValor) override {
        if (sValor != "Path") return std::nullopt;
        return m_modulo.string();
    }
    std::optional<XVUInt> LeNumero(std::string_view, std::string_view) override { return std::nullopt; }
    std::string_view GetEmpresa() const override { return "BENCH"; }
    XVUShort GetUsuario() const override { return 1; }
    XVUInt GetNumeroSessao() const override { return 1; }

  private:
    std::filesystem::path m_modulo;
};

// One recording: texts of 1500, 80 and 600 bytes, the record and the index record.
class CEsquemaBench {
  public:
    explicit CEsquemaBench(bool bDiario) {
        if (bDiario) Exige(m_diario.Abre(&m_ambiente, XV_DF, m_ambiente.PastaDados()), "CXVDiario::Abre");
        Exige(m_dataBase.Inicializa(&m_ambiente), "CXVDataBase_CR_Middleware::Inicializa");
    }
    ~CEsquemaBench() {
        Exige(m_dataBase.Finaliza(), "CXVDataBase_CR_Middleware::Finaliza");
        Exige(m_diario.Fecha(&m_ambiente), "CXVDiario::Fecha");
    }
    CEsquemaBench(const CEsquemaBench&) = delete;
    CEsquemaBench& operator=(const CEsquemaBench&) = delete;

    void Grava() {
        CXVOperacao operacao(&m_dataBase);
        REG_CR_INTEGRACAO_MIDDLEWARE_V2 reg{};
        reg.ulPonteiroJSONRegistro = Prepara(m_dataBase.m_JSONIntegracao, operacao, 1500);
        reg.ulPonteiroMensagemRetorno = Prepara(m_dataBase.m_MensagemIntegracao, operacao, 80);
        reg.ulPonteiroJSONRetornoIntegracao = Prepara(m_dataBase.m_JSONRetornoIntegracao, operacao, 600);
        XVUInt uiPosicao = XVDATABASE_POSICAO_NOVO_REGISTRO;
        Exige(m_dataBase.m_Integracao.Prepara(operacao, m_dia.ToChave(), uiPosicao, reg),
              "m_Integracao.Prepara");
        const REG_CR_INDEX_INTEGRACAO_V1 regIndex{
            uiPosicao, REG_XVDMC::Cria(REG_XVDMC::k_uiTipoIntegracao, uiPosicao, m_dia), Mercos,
            eXVSMiddleware_Pendente};
        uiPosicao = XVDATABASE_POSICAO_NOVO_REGISTRO;
        Exige(m_dataBase.m_IndexIntegracao.Prepara(operacao, uiPosicao, regIndex),
              "m_IndexIntegracao.Prepara");
        Exige(operacao.Executa(), "CXVOperacao::Executa");
    }

  private:
    XVUInt Prepara(CXVGroupTextFileDynamic& rGrupo, CXVOperacao& rOperacao, std::size_t uiTamanho) {
        XVUInt ulPosicao = 0;
        Exige(rGrupo.Prepara(rOperacao, m_dia.ToChave(), ulPosicao,
                             std::string_view(m_sTexto).substr(0, uiTamanho)),
              "CXVGroupTextFileDynamic::Prepara");
        return ulPosicao;
    }

    const std::string m_sTexto = std::string(1500, 'x');
    const REG_XVDMA m_dia = REG_XVDMA::Cria(2025, 1, 1);
    CAmbienteDiario m_ambiente;
    CXVDiario m_diario;
    CXVDataBase_CR_Middleware m_dataBase;
};

void Operacao(benchmark::State& state, bool bDiario) {
    CEsquemaBench esquema(bDiario);
    for (auto _ : state) esquema.Grava();
}
BENCHMARK_CAPTURE(Operacao, sem_diario, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Operacao, com_diario, true)->Unit(benchmark::kMicrosecond);

}  // namespace
