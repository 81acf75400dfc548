#include "bench/XVBenchCenarioLoja.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "contract/XVCR_BuffersPS.h"
#include "platform/XVAmbienteSO.h"

namespace {

CXVAmbienteBench* s_pInstancia = nullptr;

constexpr std::size_t k_uiJSON = 1500;  // bytes
constexpr std::size_t k_uiMensagem = 80;
constexpr std::size_t k_uiRetorno = 600;

std::string_view TextoBench(std::size_t uiTamanho) {
    static const std::string sTexto = [] {
        std::string s = "{\"cliente\":\"Padaria Três Irmãos\",\"itens\":[";
        while (s.size() < k_uiJSON) s += "{\"produto\":\"0000123\",\"quantidade\":2,\"valor\":12.50},";
        return s;
    }();
    return std::string_view(sTexto).substr(0, uiTamanho);
}

}  // namespace

double XVPicoMemoria() {
    std::ifstream status("/proc/self/status");
    for (std::string sLinha; std::getline(status, sLinha);)
        if (sLinha.starts_with("VmHWM:")) return std::strtod(sLinha.c_str() + 6, nullptr) / 1024.0;
    return 0;
}

void Exige(HRESULT hr, const char* pszO) {
    if (SUCCEEDED(hr)) return;
    std::fprintf(stderr, "%s: 0x%08X\n", pszO, static_cast<unsigned>(hr));
    std::exit(1);
}

CXVAmbienteBench::CXVAmbienteBench(const SOpcoesBench& rOpcoes) : m_opcoes(rOpcoes), m_pasta(rOpcoes.sPasta) {
    if (m_pasta.empty()) {
        m_pasta = std::filesystem::temp_directory_path() / ("xvbench-" + XVAmbienteSO::NovoGuid());
        m_bRemove = true;
    }
    std::filesystem::create_directories(m_pasta / "BENCH" / "DF");
    XVPlataforma::TrocaRegistry(this);
    XVPlataforma::TrocaRelogio(this);
    s_pInstancia = this;
}

CXVAmbienteBench::~CXVAmbienteBench() {
    XVPlataforma::TrocaRelogio(nullptr);
    XVPlataforma::TrocaRegistry(nullptr);
    std::error_code erro;
    if (m_bRemove) std::filesystem::remove_all(m_pasta, erro);
}

CXVAmbienteBench& CXVAmbienteBench::Instancia() {
    return *s_pInstancia;
}

std::optional<std::string> CXVAmbienteBench::LeTexto(std::string_view, std::string_view sValor) {
    if (sValor != "Path") return std::nullopt;
    return m_pasta.string();
}

REG_XVDMA CXVAmbienteBench::Data(unsigned uiDia) {
    using namespace std::chrono;
    const year_month_day ymd(sys_days(year(2025) / 1 / 1) + days(uiDia));
    return REG_XVDMA::Cria(static_cast<unsigned>(static_cast<int>(ymd.year())),
                           static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()));
}

SDataHora CXVAmbienteBench::AgoraUTC() {
    const REG_XVDMA dma = Data(m_uiDia);
    return {static_cast<XVUShort>(dma.GetAno()),
            static_cast<XVByte>(dma.GetMes()),
            static_cast<XVByte>(dma.GetDia()),
            12,
            0,
            0};
}

REG_XVDMC CXVAmbienteBench::Dmc(unsigned uiNumero) const {
    return REG_XVDMC::Cria(REG_XVDMC::k_uiTipoIntegracao, uiNumero % PorDia() + 1,
                           Data(uiNumero / PorDia() % m_opcoes.uiDias));
}

tagREG_CR_INTEGRACAO_MIDDLEWAREPS XVIntegracaoBench(unsigned uiNumero) {
    tagREG_CR_INTEGRACAO_MIDDLEWAREPS reg{};
    reg.regRegistroJSON = CXVStringPS::Vista(TextoBench(k_uiJSON));
    reg.regMensagemIntegracao = CXVStringPS::Vista(TextoBench(k_uiMensagem));
    reg.regJSONRetornoIntegracao = CXVStringPS::Vista(TextoBench(k_uiRetorno));
    reg.uiChaveIntegracaoSistemaTerceiro = uiNumero + 1;
    reg.eSistemaIntegracao = uiNumero % 3 == 0 ? OfficialBank : Mercos;
    reg.eStatusIntegracao = 1 + uiNumero % 5;
    reg.eTipoIntegracao = 1 + uiNumero % 17;
    reg.eTipoTransacao = eXVSMiddleware_Inclusao;
    return reg;
}

void CXVAmbienteBench::CriaDados() {
    if (std::filesystem::exists(m_pasta / "BENCH" / "DF" / k_pszArquivoIndexIntegracao)) return;
    {
        CBaseMiddleware loja;  // a fresh directory of the current version
        Exige(loja.Inicializa(this), "Inicializa");
    }
    CXVDataBase_CR_Middleware dataBase;
    Exige(dataBase.Inicializa(this), "dataBase.Inicializa");
    for (unsigned uiDia = 0; uiDia < m_opcoes.uiDias; ++uiDia) {
        SetDia(uiDia);
        std::vector<REG_CR_INDEX_INTEGRACAO_V1> listaIndex;
        std::vector<REG_CR_INTEGRACAO_MIDDLEWARE_V2> listaIntegracao;
        for (unsigned i = 0; i < PorDia(); ++i) {
            const unsigned uiNumero = uiDia * PorDia() + i;
            const auto reg = XVIntegracaoBench(uiNumero);
            listaIndex.push_back({reg.uiChaveIntegracaoSistemaTerceiro, Dmc(uiNumero), reg.eSistemaIntegracao,
                                  reg.eStatusIntegracao});
            REG_CR_INTEGRACAO_MIDDLEWARE_V2 regIntegracao{};
            regIntegracao.eTipoIntegracao = reg.eTipoIntegracao;
            regIntegracao.eTipoTransacao = reg.eTipoTransacao;
            regIntegracao.regDataHoraInclusao = REG_XVDMAHMSUTC::Agora();
            regIntegracao.ulPonteiroJSONRegistro = regIntegracao.ulPonteiroMensagemRetorno =
                regIntegracao.ulPonteiroJSONRetornoIntegracao = i + 1;
            listaIntegracao.push_back(regIntegracao);
        }
        const XVUInt64 uiChave = Data(uiDia).ToChave();
        const auto textos = [&](std::size_t uiTamanho) {
            return std::vector<std::string_view>(PorDia(), TextoBench(uiTamanho));
        };
        const auto grava = [&](auto& rGrupo, const auto& rLista) {
            XVUInt uiPosicao = 0;
            Exige(rGrupo.GravaColecao(uiChave, uiPosicao, rLista), "GravaColecao");
        };
        grava(dataBase.m_JSONIntegracao, textos(k_uiJSON));
        grava(dataBase.m_MensagemIntegracao, textos(k_uiMensagem));
        grava(dataBase.m_JSONRetornoIntegracao, textos(k_uiRetorno));
        grava(dataBase.m_Integracao, listaIntegracao);
        XVUInt uiPosicao = 0;
        Exige(dataBase.m_IndexIntegracao.GravaColecao(uiPosicao, listaIndex),
              "m_IndexIntegracao.GravaColecao");
    }
    Exige(dataBase.Finaliza(), "dataBase.Finaliza");
}

int XVCargaMilhao(CXVAmbienteBench& rAmbiente) {
    const auto inicio = std::chrono::steady_clock::now();
    const SOpcoesBench& rOpcoes = rAmbiente.GetOpcoes();
    CBaseMiddleware loja;
    Exige(loja.Inicializa(&rAmbiente), "Inicializa");
    const unsigned uiTotal = rAmbiente.PorDia() * rOpcoes.uiDias;
    for (unsigned uiNumero = 0; uiNumero < uiTotal; ++uiNumero) {
        rAmbiente.SetDia(uiNumero / rAmbiente.PorDia());
        const auto reg = XVIntegracaoBench(uiNumero);
        REG_XVDMC regDmc;
        Exige(loja.GravaIntegracao(&regDmc, &reg), "GravaIntegracao");
    }
    Exige(loja.Finaliza(), "Finaliza");
    const double dSegundos = std::chrono::duration<double>(std::chrono::steady_clock::now() - inicio).count();
    std::printf("%u integrations over %u days: %.1f s (%.2f min), %.1f us each, peak memory %.0f MiB\n",
                uiTotal, rOpcoes.uiDias, dSegundos, dSegundos / 60, dSegundos * 1e6 / uiTotal,
                XVPicoMemoria());
    return 0;
}
