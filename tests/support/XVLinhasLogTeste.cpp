// What stands in the log files: columns, texts, file names, scopes and checks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <functional>

#include "support/codes/XVCodigos.h"
#include "support/trace/XVCapturaTrace.h"
#include "support/trace/XVCheck.h"
#include "support/trace/XVProfilerArquivo.h"
#include "support/trace/XVProfilerLinha.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/support/XVBancadaTrace.h"

using testing::ElementsAre;
using testing::HasSubstr;

struct REG_TESTE_V1 {};
template <>
inline constexpr std::string_view k_sNomeRegistro<REG_TESTE_V1> = "REG_TESTE_V1";

namespace {

constexpr std::size_t k_uiColunasProfiler = 36;
constexpr std::size_t k_uiColunasErro = 39;
constexpr std::size_t k_uiColunaTipo = 21;

// A class of the system as the engine writes them.
template <class T>
class CModelo : public CDonoTeste {
  public:
    XV_CLASSE((TXVNomeDeTemplate<"CModelo", T>::k_aTexto.data()), "tests/support/Modelo")
    using CDonoTeste::CDonoTeste;

    HRESULT Conta(HRESULT hr) {
        ++m_iChamadas;
        return hr;
    }
    HRESULT Grava(HRESULT uiPosicao) {
        XV_ESCOPO({"uiPosicao", XVUInt64{12}}, {"sTexto", "valor"});
        m_iLinhaGrava = __LINE__ + 1;
        XV_CHECK(Conta(uiPosicao));
        return S_OK;
    }
    enum class EPrimeira : std::uint8_t { eDaPrimeiraVez };
    HRESULT ContaAPartirDe(EPrimeira, HRESULT hr, HRESULT) { return Conta(hr); }
    HRESULT GravaDois(HRESULT uiPosicaoDoRegistroQueSeGrava) {
        XV_CHECK(ContaAPartirDe(EPrimeira::eDaPrimeiraVez, uiPosicaoDoRegistroQueSeGrava,
                                uiPosicaoDoRegistroQueSeGrava));
        return S_OK;
    }
    HRESULT Fecha(HRESULT hrPrimeiro, HRESULT hrSegundo) {
        const HRESULT hr = XV_REGISTRA(Conta(hrPrimeiro));
        const HRESULT hrBase = XV_REGISTRA_SUPER(CModelo, Conta(hrSegundo));
        return XVPrimeiraFalha(hr, hrBase);
    }
    HRESULT Recusa() {
        XV_FALHA(E_XVCR_ARQUIVO_NAO_EXISTE);
        return S_OK;
    }
    int m_iChamadas = 0;
    int m_iLinhaGrava = 0;
};
using CModeloTeste = CModelo<REG_TESTE_V1>;

using TLinhas = std::vector<std::vector<std::string>>;

void ExpectRetangular(const TLinhas& rLinhas, std::size_t uiColunas) {
    for (const auto& rLinha : rLinhas) EXPECT_EQ(rLinha.size(), uiColunas) << rLinha.front();
}

}  // namespace

TEST(Check, AvaliaUmaVezERegistraExpressaoFuncaoFonteELinha) {
    CModeloTeste modelo;
    CXVCapturaTrace captura;
    EXPECT_EQ(modelo.Grava(S_OK), S_OK);
    EXPECT_TRUE(captura.GetFalhas().empty());
    EXPECT_EQ(modelo.Grava(E_FAIL), E_FAIL);
    EXPECT_EQ(modelo.m_iChamadas, 2);
    ASSERT_EQ(captura.GetFalhas().size(), 1U);
    const SFalhaCapturada& rFalha = captura.GetFalhas()[0];
    EXPECT_EQ(rFalha.hr, E_FAIL);
    EXPECT_EQ(rFalha.sExpressao, "Conta(uiPosicao)");
    EXPECT_EQ(rFalha.sFuncao, "CModelo<struct REG_TESTE_V1>::Grava");
    EXPECT_EQ(rFalha.sFonte, "tests/support/Modelo");
    EXPECT_GT(rFalha.iLinha, 0);
    EXPECT_EQ(modelo.Recusa(), E_XVCR_ARQUIVO_NAO_EXISTE);
    EXPECT_TRUE(captura.Contem("E_XVCR_ARQUIVO_NAO_EXISTE"));
}

TEST(Check, OTextoDeVariasLinhasEhODeUma) {
    constexpr TXVTextoDeCodigo k_texto("m.Le( a, b ->c( \" ( d ) \" ), e[ 0 ] .f, x - > y < z )");
    EXPECT_STREQ(k_texto.m_sz, "m.Le(a, b->c(\" ( d ) \"), e[0].f, x - > y < z)");
    CModeloTeste modelo;
    CXVCapturaTrace captura;
    EXPECT_EQ(modelo.GravaDois(E_FAIL), E_FAIL);
    EXPECT_TRUE(
        captura.Contem("ContaAPartirDe(EPrimeira::eDaPrimeiraVez, uiPosicaoDoRegistroQueSeGrava, "
                       "uiPosicaoDoRegistroQueSeGrava)"));
}

TEST(Check, OQueSegueARegistraEContinua) {
    CModeloTeste modelo;
    CXVCapturaTrace captura;
    EXPECT_EQ(modelo.Fecha(E_FAIL, E_POINTER), E_FAIL);
    ASSERT_EQ(captura.GetFalhas().size(), 2U);
    EXPECT_EQ(captura.GetFalhas()[0].sExpressao, "Conta(hrPrimeiro)");
    EXPECT_EQ(captura.GetFalhas()[1].sExpressao, "__super::Conta(hrSegundo)");
    EXPECT_EQ(captura.GetFalhas()[1].sFuncao, "CModelo<struct REG_TESTE_V1>::Fecha");
    EXPECT_EQ(modelo.Fecha(S_OK, E_POINTER), E_POINTER);
    EXPECT_EQ(modelo.Fecha(S_OK, S_OK), S_OK);
    EXPECT_EQ(captura.GetFalhas().size(), 3U);
}

TEST(Check, MensagemDecodificaOHResult) {
    CXVCapturaTrace captura;
    CXVBancadaTrace bancada;
    EXPECT_EQ(CheckHr(E_FAIL, "Faz(a, b)", "C::F", "fonte", 1, nullptr), E_FAIL);
    EXPECT_EQ(CheckHr(S_OK, "Faz(a, b)", "C::F", "fonte", 1, nullptr), S_OK);
    ASSERT_EQ(captura.GetFalhas().size(), 1U);
    EXPECT_THAT(
        captura.GetFalhas()[0].sMensagem,
        CasaCom("hr = Faz\\(a, b\\)\thr = 0X80004005 [^\t]*\tSEVERITY = 1 SEVERITY_ERROR\tFACILITY = 0 "
                "FACILITY_NULL\tCODE = 16389 \tDescrição = E_FAIL"));
}

TEST(Check, CapturasSeAninhamEPodemDeixarEscrever) {
    CXVBancadaTrace bancada;
    CXVCapturaTrace fora(false);
    {
        CXVCapturaTrace dentro;
        CheckHr(E_FAIL, "dentro", "F", "f", 1, nullptr);
        EXPECT_TRUE(dentro.Contem("dentro"));
    }
    EXPECT_FALSE(bancada.m_sistema.LeConteudo(k_pszLogPgms));
    CheckHr(E_FAIL, "fora", "F", "f", 1, nullptr);
    EXPECT_TRUE(fora.Contem("fora"));
    EXPECT_FALSE(fora.Contem("dentro"));
    EXPECT_TRUE(bancada.m_sistema.LeConteudo(k_pszLogPgms));
}

TEST(LinhaErro, LinhaTemTodasAsColunasDoCabecalho) {
    CXVBancadaTrace bancada;
    CModeloTeste modelo;
    EXPECT_EQ(modelo.Grava(E_FAIL), E_FAIL);
    EXPECT_EQ(modelo.Grava(E_FAIL), E_FAIL);
    const TLinhas linhas = bancada.LeLog(k_pszLogBase);
    ASSERT_EQ(linhas.size(), 3U);  // one header only
    ExpectRetangular(linhas, k_uiColunasErro);
    EXPECT_EQ(linhas[0].front(), "Data");
    EXPECT_EQ(linhas[0].back(), "Parameter9");
    const auto& r = linhas[1];
    EXPECT_EQ(r[0], "04/07/2023");
    EXPECT_EQ(r[1], "12:30:09");
    EXPECT_EQ(r[2], XVProfilerLinha::GetNomeProcesso());
    EXPECT_EQ(r[4], "CModelo<struct REG_TESTE_V1>::Grava");
    EXPECT_THAT(r[5], CasaCom("[0-9A-F-]+"));
    EXPECT_EQ(r[5].size(), 36U);
    EXPECT_THAT(std::vector(r.begin() + 6, r.begin() + 9), ElementsAre("EACME", "U007", "S00000042"));
    EXPECT_EQ(r[9][0], 'T');
    EXPECT_THAT(std::vector(r.begin() + 10, r.begin() + 13), ElementsAre("EACME", "U007", "S00000042"));
    const std::string sLinhaFonte = std::to_string(modelo.m_iLinhaGrava);
    EXPECT_THAT(std::vector(r.begin() + 13, r.begin() + k_uiColunaTipo),
                ElementsAre("", "", "", "tests/support/XVLinhasLogTeste.cpp", sLinhaFonte, "", "", ""));
    EXPECT_EQ(r[k_uiColunaTipo], "ERRO");
    for (std::size_t i = 22; i < 25; ++i) EXPECT_THAT(r[i], CasaCom("[0-9]+")) << i;
    EXPECT_THAT(r[25], CasaCom("VersaoTelvo = .*"));
    EXPECT_THAT(r[27], "Arquivo = tests/support/Modelo");
    EXPECT_THAT(r[28], CasaCom("Linha = [0-9]+"));
    EXPECT_EQ(r[29], "Log = hr = Conta(uiPosicao)");
    EXPECT_THAT(r[30], HasSubstr("hr = 0X80004005"));
    EXPECT_EQ(r[34], "Descrição = E_FAIL");
    EXPECT_EQ(r[38], "");
}

TEST(LinhaErro, SeparadoresNosValoresViramEspaco) {
    CXVBancadaTrace bancada;
    CDonoTeste dono("AC\tME\n");  // never a directory: goes with the programs'
    CheckHr(E_FAIL, "a\tb\r\nc", "F\tG", "fon\nte", 1, &dono);
    XVProfiler::RecordError(nullptr, "F", "f", 1, "%s", "1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\n13");
    const TLinhas linhas = bancada.LeLog(k_pszLogPgms);
    ASSERT_EQ(linhas.size(), 3U);
    ExpectRetangular(linhas, k_uiColunasErro);
    EXPECT_EQ(linhas[1][4], "F G");
    EXPECT_EQ(linhas[1][6], "EAC ME ");
    EXPECT_EQ(linhas[1][29], "Log = hr = a b  c");
    EXPECT_EQ(linhas[2][6], "E");
    EXPECT_EQ(linhas[2][38], "10 11 12 13");
}

TEST(LinhaErro, VaiParaOArquivoDoMesDoEvento) {
    CXVBancadaTrace bancada;
    const SConfiguracaoTrace& rConfiguracao = *XVProfilerConfig::GetAtual();
    const auto caminho = [&](const IXVDF_Profiler* pDono, XVUShort usAno, XVByte ucMes) {
        SProfilerEvento evento(ETipoEvento::eErro, pDono);
        evento.dataHora.usAno = usAno;
        evento.dataHora.ucMes = ucMes;
        return XVProfilerArquivo::GetCaminho(rConfiguracao, evento);
    };
    const CDonoTeste dono;
    const CDonoTeste semEmpresa("");
    EXPECT_EQ(caminho(&dono, 2023, 7), k_pszLogBase);
    EXPECT_EQ(caminho(&semEmpresa, 2023, 7), k_pszLogPgms);
    EXPECT_EQ(caminho(nullptr, 2023, 7), k_pszLogPgms);
    EXPECT_EQ(caminho(nullptr, 0, 120), "/xv/XVProfilerErros_Pgms_184899.log");
    EXPECT_EQ(caminho(nullptr, 9999, 0), "/xv/XVProfilerErros_Pgms_471700.log");
    const CDonoTeste fuga("../..");
    EXPECT_EQ(caminho(&fuga, 2023, 7), k_pszLogPgms);
    SConfiguracaoTrace semDiretorio;
    EXPECT_EQ(XVProfilerArquivo::GetCaminho(semDiretorio, SProfilerEvento(ETipoEvento::eErro, nullptr)), "");
}

TEST(Anexar, TentaDezenoveVezesEDesisteNasCausasDefinitivas) {
    CXVBancadaTrace bancada;
    CXVSistemaArquivosFalhas sistema(bancada.m_sistema);
    sistema.SetFiltro([](const std::string& s) { return s.ends_with(".log"); });
    const CXVGuardaSistemaArquivos guarda(sistema);
    const auto aberturas = [&](ECausaArquivo eCausa) {
        sistema.Programa({EOperacaoArquivo::eAbre, 1, true, eCausa});
        const XVUInt64 uiPerdidos = XVProfiler::GetLinhasPerdidas();
        EXPECT_EQ(CheckHr(E_FAIL, "x", "F", "f", 1, nullptr), E_FAIL);
        EXPECT_EQ(XVProfiler::GetLinhasPerdidas(), uiPerdidos + 1);
        return sistema.GetQuantidade(EOperacaoArquivo::eAbre);
    };
    EXPECT_EQ(aberturas(ECausaArquivo::eViolacaoCompartilhamento), 19U);
    EXPECT_EQ(aberturas(ECausaArquivo::eAcessoNegado), 19U);
    for (const ECausaArquivo e : {ECausaArquivo::eArquivoNaoEncontrado, ECausaArquivo::eCaminhoInvalido,
                                  ECausaArquivo::eArquivoInvalido, ECausaArquivo::eErroFisico})
        EXPECT_EQ(aberturas(e), 1U) << static_cast<int>(e);
    sistema.Programa({EOperacaoArquivo::eAbre, 1, false, ECausaArquivo::eViolacaoCompartilhamento});
    CheckHr(E_FAIL, "segunda", "F", "f", 1, nullptr);
    EXPECT_EQ(bancada.LeLog(k_pszLogPgms).size(), 2U);
    EXPECT_EQ(bancada.m_relogio.GetMilissegundosDormidos(), 0U);
}

TEST(Anexar, GravacaoPelaMetadeNaoDeixaLinhaCortada) {
    CXVBancadaTrace bancada;
    CheckHr(E_FAIL, "inteira", "F", "f", 1, nullptr);
    const auto antes = bancada.m_sistema.LeConteudo(k_pszLogPgms);
    CXVSistemaArquivosFalhas sistema(bancada.m_sistema);
    sistema.SetFiltro([](const std::string& s) { return s.ends_with(".log"); });
    const CXVGuardaSistemaArquivos guarda(sistema);
    sistema.Programa({EOperacaoArquivo::eGrava, 1, false, ECausaArquivo::eDiscoCheio, 0, true});
    CheckHr(E_FAIL, "cortada", "F", "f", 1, nullptr);
    EXPECT_EQ(sistema.GetFalhasOcorridas(), 1U);
    EXPECT_EQ(bancada.m_sistema.LeConteudo(k_pszLogPgms), antes);
}

TEST(Anexar, ArquivoVazioRecebeUmCabecalho) {
    CXVBancadaTrace bancada;
    bancada.m_sistema.CriaArquivo(k_pszLogPgms, "");
    CheckHr(E_FAIL, "x", "F", "f", 1, nullptr);
    const TLinhas linhas = bancada.LeLog(k_pszLogPgms);
    ASSERT_EQ(linhas.size(), 2U);
    EXPECT_EQ(linhas[0][0], "Data");
}

TEST(Escopo, EntradaESaidaComOMesmoGuidEParametros) {
    CXVBancadaTrace bancada;
    bancada.EscreveLogIni("Entrada=1\nSaida=1\nPerformance=1\nMemory=1\n");
    CModeloTeste modelo;
    {
        const ProfilerScope escopo(&modelo, "CBase", "Faz",
                                   {{"uiPosicao", XVUInt64{12}}, {"sTexto", "a\tb"}});
        bancada.m_relogio.Avanca(250);
    }
    const TLinhas linhas = bancada.LeLog(k_pszLogProfiler);
    ASSERT_EQ(linhas.size(), 3U);
    ExpectRetangular(linhas, k_uiColunasProfiler);
    EXPECT_EQ(linhas[1][k_uiColunaTipo], "ENTROU");
    EXPECT_EQ(linhas[2][k_uiColunaTipo], "SAIU");
    EXPECT_EQ(linhas[1][4], "CBase::Faz");
    EXPECT_EQ(linhas[1][5].size(), 36U);
    EXPECT_EQ(linhas[1][5], linhas[2][5]);
    EXPECT_EQ(linhas[1][25], "0");
    EXPECT_EQ(linhas[2][25], "250");
    EXPECT_THAT(std::vector(linhas[2].begin() + 27, linhas[2].begin() + 30),
                ElementsAre("uiPosicao = 12", "sTexto = a b", ""));
}

TEST(Escopo, SomenteOQueLogIniPede) {
    CXVBancadaTrace bancada;
    const CDonoTeste dono;
    const auto linhasCom = [&](const std::string& sValores, const char* pszClasse) {
        bancada.EscreveLogIni(sValores);
        { const ProfilerScope escopo(&dono, pszClasse, "F", {}); }
        const TLinhas linhas = bancada.LeLog(k_pszLogProfiler);
        EXPECT_TRUE(linhas.empty() || bancada.m_sistema.Apaga(k_pszLogProfiler).Ok());
        return linhas;
    };
    EXPECT_TRUE(linhasCom("", "CBase").empty());
    EXPECT_TRUE(linhasCom("Performance=1", "CBase").empty());
    EXPECT_TRUE(linhasCom("CoCreateInstance=1", "CBase").empty());
    EXPECT_TRUE(linhasCom("Entrada=1\nSaida=1", "CXVTextFile").empty());
    EXPECT_TRUE(linhasCom("Entrada=1\nProcessos=outro.exe", "CBase").empty());
    EXPECT_EQ(linhasCom("Entrada=1\nSaida=1\nXVDataBase=todos", "CXVTextFile").size(), 3U);
    const TLinhas somenteSaida = linhasCom("Saida=1", "CBase");
    ASSERT_EQ(somenteSaida.size(), 2U);
    EXPECT_EQ(somenteSaida[1][k_uiColunaTipo], "SAIU");
    EXPECT_EQ(somenteSaida[1][5], "");  // nothing to pair
    EXPECT_EQ(somenteSaida[1][25], "0");
}

TEST(Escopo, MaisDeNoveParametrosNaoDesalinham) {
    CXVBancadaTrace bancada;
    bancada.EscreveLogIni("Entrada=1\n");
    const XVUInt64 u = 1;
    {
        const ProfilerScope e(nullptr, "C", "F",
                              {{"a", u},
                               {"b", u},
                               {"c", u},
                               {"d", u},
                               {"e", u},
                               {"f", u},
                               {"g", u},
                               {"h", u},
                               {"i", u},
                               {"j", u}});
    }
    const TLinhas linhas = bancada.LeLog(k_pszLogProfiler);
    ExpectRetangular(linhas, k_uiColunasProfiler);
    ASSERT_EQ(linhas.size(), 2U);
    EXPECT_EQ(linhas[1].back(), "i = 1");
}

TEST(CriacaoObjeto, RegistraProgIDModuloEResultado) {
    CXVBancadaTrace bancada;
    XVProfiler::RecordCoCreate(nullptr, "C::Cria", "Velmora.XVCR", "XVCR", S_OK);
    EXPECT_TRUE(bancada.LeLog(k_pszLogProfiler).empty());
    bancada.EscreveLogIni("CoCreateInstance=1\n");
    XVProfiler::RecordCoCreate(nullptr, "C::Cria", "Velmora.XVCR", "XVCR", XVHResult(0x80040154U));
    const TLinhas linhas = bancada.LeLog(k_pszLogProfiler);
    ASSERT_EQ(linhas.size(), 2U);
    ExpectRetangular(linhas, k_uiColunasProfiler);
    EXPECT_EQ(linhas[1][k_uiColunaTipo], "COCREATE");
    EXPECT_THAT(std::vector(linhas[1].begin() + 27, linhas[1].begin() + 30),
                ElementsAre("ProgID = Velmora.XVCR", "Modulo = XVCR", "Resultado = 0x80040154"));
}

namespace {

// A file system that itself reports failures, as a faulty seam would.
class CSistemaQueRegistra final : public IXVRegistry {
  public:
    std::optional<std::string> LeTexto(std::string_view, std::string_view) override {
        ++m_iLeituras;
        CheckHr(E_FAIL, "recursiva", "F", "f", 1, nullptr);
        const ProfilerScope escopo(nullptr, "C", "F", {});
        return std::nullopt;
    }
    std::optional<XVUInt> LeNumero(std::string_view, std::string_view) override { return std::nullopt; }
    int m_iLeituras = 0;
};

}  // namespace

TEST(Recursao, FalhaAoRegistrarNaoERegistrada) {
    CXVBancadaTrace bancada;
    CSistemaQueRegistra registry;
    const CXVGuardaRegistry guarda(registry);
    CXVCapturaTrace captura(false);
    bancada.m_relogio.Avanca(600001);
    EXPECT_EQ(CheckHr(E_FAIL, "de fora", "F", "f", 1, nullptr), E_FAIL);
    EXPECT_GT(registry.m_iLeituras, 0);
    EXPECT_TRUE(captura.Contem("de fora"));
    EXPECT_FALSE(captura.Contem("recursiva"));
}

TEST(UltimoErro, RegistrarNaoMudaOErroDoChamador) {
    const CXVDiretorioTeste diretorio;
    CXVRegistryFalso registry;
    registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", diretorio.Junta("inexistente"));
    const CXVGuardaRegistry guarda(registry);
    XVProfiler::RecarregaConfiguracao();
    const XVUInt64 uiPerdidos = XVProfiler::GetLinhasPerdidas();
    errno = EDOM;
    CheckHr(E_FAIL, "x", "F", "f", 1, nullptr);
    EXPECT_EQ(errno, EDOM);
    EXPECT_EQ(XVProfiler::GetLinhasPerdidas(), uiPerdidos + 1);
}
