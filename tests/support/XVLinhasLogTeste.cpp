// What stands in the log files: columns, texts, file names, scopes and checks.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <iterator>
#include <regex>

#include "platform/XVAmbienteSO.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVCapturaTrace.h"
#include "support/trace/XVCheck.h"
#include "support/trace/XVProfilerArquivo.h"
#include "support/trace/XVProfilerLinha.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/support/XVBancadaTrace.h"

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

// Of one line: the columns that are the same whatever is recorded, then its own.
std::string ComColunas(const char* pszHora, const std::string& sFuncao, const std::string& sFonte,
                       const std::string& sTipo, const std::string& sResto) {
    const std::string sDono = "\tEACME\tU007\tS00000042";
    return "04/07/2023\t" + std::string(pszHora) + "\t" + XVProfilerLinha::GetNomeProcesso() + "\t" +
           XVProfilerLinha::GetUsuarioLocal() + "\t" + sFuncao + "\t<guid>" + sDono + "\t<thread>" + sDono +
           "\t\t\t\t" + sFonte + "\t\t\t\t" + sTipo + "\t" + sResto;
}

// A line as it stands, with marks for what no test knows beforehand, once that is found to be right.
std::string Linha(const std::vector<std::string>& rColunas) {
    std::vector<std::string> r = rColunas;
    if (r.size() <= k_uiColunaTipo + 3) return "a line that is cut";
    const auto troca = [&](std::size_t i, const char* pszPadrao, const char* pszMarca) {
        if (std::regex_match(r[i], std::regex(pszPadrao))) r[i] = pszMarca;
    };
    troca(5, "[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}", "<guid>");
    troca(9, "T[0-9]{8,}", "<thread>");
    const XVUInt64 uiTotal = XVAmbienteSO::GetMemoriaMaquina().uiTotal;
    if (r[23] == std::to_string(uiTotal)) r[23] = "<total>";
    if (std::strtoull(r[22].c_str(), nullptr, 10) - 1 < uiTotal - 1) r[22] = "<disponivel>";
    if (std::strtoull(r[24].c_str(), nullptr, 10) > 1000) r[24] = "<componente>";
    std::string sLinha;
    for (const std::string& s : r) sLinha += (sLinha.empty() ? "" : "\t") + s;
    return sLinha;
}

}  // namespace

TEST(Check, AvaliaUmaVezERegistraExpressaoFuncaoEFonteDeCadaFalha) {
    CModeloTeste modelo;
    const CXVCapturaTrace captura;
    EXPECT_EQ(modelo.Grava(S_OK), S_OK);
    EXPECT_EQ(modelo.Grava(E_FAIL), E_FAIL);
    EXPECT_EQ(modelo.m_iChamadas, 2);
    EXPECT_EQ(modelo.Recusa(), E_XVCR_ARQUIVO_NAO_EXISTE);
    EXPECT_EQ(modelo.GravaDois(E_FAIL), E_FAIL);
    EXPECT_EQ(modelo.Fecha(E_OUTOFMEMORY, E_POINTER),
              E_OUTOFMEMORY);  // the second step is carried out all the same
    EXPECT_EQ(modelo.Fecha(S_OK, E_POINTER), E_POINTER);
    EXPECT_EQ(modelo.Fecha(S_OK, S_OK), S_OK);
    const struct {
        HRESULT hr;
        const char *pszFuncao, *pszExpressao;
    } aFalhas[] = {{E_FAIL, "Grava", "Conta(uiPosicao)"},
                   {E_XVCR_ARQUIVO_NAO_EXISTE, "Recusa", "E_XVCR_ARQUIVO_NAO_EXISTE"},
                   {E_FAIL, "GravaDois",
                    "ContaAPartirDe(EPrimeira::eDaPrimeiraVez, uiPosicaoDoRegistroQueSeGrava, "
                    "uiPosicaoDoRegistroQueSeGrava)"},
                   {E_OUTOFMEMORY, "Fecha", "Conta(hrPrimeiro)"},
                   {E_POINTER, "Fecha", "__super::Conta(hrSegundo)"},
                   {E_POINTER, "Fecha", "__super::Conta(hrSegundo)"}};
    ASSERT_EQ(captura.GetFalhas().size(), std::size(aFalhas));
    for (std::size_t i = 0; i < std::size(aFalhas); ++i) {
        const SFalhaCapturada& r = captura.GetFalhas()[i];
        EXPECT_EQ(r.hr, aFalhas[i].hr);
        EXPECT_EQ(r.sFuncao, std::string("CModelo<struct REG_TESTE_V1>::") + aFalhas[i].pszFuncao);
        EXPECT_EQ(r.sExpressao, aFalhas[i].pszExpressao);
        EXPECT_EQ(r.sFonte, "tests/support/Modelo");
    }
    constexpr TXVTextoDeCodigo k_texto("m.Le( a, b ->c( \" ( d ) \" ), e[ 0 ] .f, x - > y < z )");
    EXPECT_STREQ(k_texto.m_sz, "m.Le(a, b->c(\" ( d ) \"), e[0].f, x - > y < z)");
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

TEST(Check, CapturaSemFimGuardaAsUltimasFalhas) {
    CXVCapturaTrace captura;
    for (int i = 0; i <= 4096; ++i) captura.Inclui({E_FAIL, "x", "F", "f", i, ""});
    ASSERT_EQ(captura.GetFalhas().size(), 2049U);
    EXPECT_EQ(captura.GetFalhas().front().iLinha, 2048);
    EXPECT_EQ(captura.GetFalhas().back().iLinha, 4096);
}

TEST(LinhaErro, LinhaInteira) {
    CXVBancadaTrace bancada;
    CModeloTeste modelo;
    EXPECT_EQ(modelo.Grava(E_FAIL), E_FAIL);
    EXPECT_EQ(modelo.Grava(E_FAIL), E_FAIL);
    const TLinhas linhas = bancada.LeLog(k_pszLogBase);
    ASSERT_EQ(linhas.size(), 3U);  // one header only
    ExpectRetangular(linhas, k_uiColunasErro);
    EXPECT_EQ(linhas[0].front(), "Data");
    EXPECT_EQ(linhas[0].back(), "Parameter9");
    const std::string sLinhaFonte = std::to_string(modelo.m_iLinhaGrava);
    EXPECT_EQ(Linha(linhas[1]),
              ComColunas("12:30:09", "CModelo<struct REG_TESTE_V1>::Grava",
                         "tests/support/XVLinhasLogTeste.cpp\t" + sLinhaFonte, "ERRO",
                         "<disponivel>\t<total>\t<componente>\tVersaoTelvo = " +
                             XVAmbienteSO::GetVersaoExecutavel() +
                             "\tVersaoSO = " + XVAmbienteSO::GetVersaoSistema() +
                             "\tArquivo = tests/support/Modelo\tLinha = " + sLinhaFonte +
                             "\tLog = hr = Conta(uiPosicao)\thr = 0X80004005 \tSEVERITY = 1 "
                             "SEVERITY_ERROR\tFACILITY = 0 FACILITY_NULL\tCODE = 16389 \tDescrição = "
                             "E_FAIL\t\t\t\t"));
    EXPECT_NE(linhas[1][5], linhas[2][5]) << "each record has a mark of its own";
}

TEST(LinhaErro, SeparadoresNosValoresViramEspaco) {
    CXVBancadaTrace bancada;
    CDonoTeste dono("AC\tME\n");  // never a directory: goes with the programs'
    const int iLinha = __LINE__ + 1;
    CheckHr(E_FAIL, "a\tb\r\nc", "F\tG", "fon\nte", 1, &dono);
    XVProfiler::RecordError(nullptr, "F", "f", 1, "%s", "1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\n13");
    const TLinhas linhas = bancada.LeLog(k_pszLogPgms);
    ASSERT_EQ(linhas.size(), 3U);
    ExpectRetangular(linhas, k_uiColunasErro);
    EXPECT_EQ(linhas[1][4], "F G");
    EXPECT_EQ(linhas[1][6], "EAC ME ");
    EXPECT_EQ(linhas[1][17], std::to_string(iLinha));
    EXPECT_EQ(linhas[1][28], "Linha = 1");
    EXPECT_EQ(linhas[1][29], "Log = hr = a b  c");
    EXPECT_EQ(linhas[2][6], "E");
    EXPECT_EQ(linhas[2][38], "10 11 12 13");
}

TEST(LinhaErro, MensagemDeQualquerTamanhoFicaInteira) {
    CXVBancadaTrace bancada;
    CXVCapturaTrace captura;
    // The last one is longer than what is formatted without allocating.
    for (const std::size_t uiTamanho : {0U, 1U, 511U, 512U, 513U, 5000U}) {
        const std::string sTexto = std::string(uiTamanho, 'x') + "fim";
        XVProfiler::RecordError(nullptr, "F", "f", 9, "%s", sTexto.substr(3).c_str());
        const SFalhaCapturada& r = captura.GetFalhas().back();
        EXPECT_EQ(r.sMensagem, sTexto.substr(3));
        EXPECT_EQ(r.iLinha, 9);
    }
    EXPECT_FALSE(bancada.m_sistema.LeConteudo(k_pszLogPgms)) << "what is only captured is not written";
}

TEST(LinhaErro, VaiParaOArquivoDoMesDoEvento) {
    CXVBancadaTrace bancada;
    const SConfiguracaoTrace& rConfiguracao = *XVProfilerConfig::GetAtual();
    const CDonoTeste dono;
    const CDonoTeste semEmpresa("");
    const CDonoTeste fuga("../..");
    const CDonoTeste consulta("ACME", true);
    const struct {
        const IXVDF_Profiler* pDono;
        XVUShort usAno;
        XVByte ucMes;
        const char* pszCaminho;
    } aCasos[] = {{&dono, 2023, 7, k_pszLogBase},
                  {&consulta, 2023, 7, k_pszLogPgms},  // a viewer writes nothing into the company's directory
                  {&semEmpresa, 2023, 7, k_pszLogPgms},
                  {nullptr, 2023, 7, k_pszLogPgms},
                  {&fuga, 2023, 7, k_pszLogPgms},
                  {nullptr, 0, 120, "/xv/XVProfilerErros_Pgms_184899.log"},
                  {nullptr, 9999, 0, "/xv/XVProfilerErros_Pgms_471700.log"}};
    for (const auto& rCaso : aCasos) {
        SProfilerEvento evento(ETipoEvento::eErro, rCaso.pDono);
        evento.dataHora.usAno = rCaso.usAno;
        evento.dataHora.ucMes = rCaso.ucMes;
        EXPECT_EQ(XVProfilerArquivo::GetCaminho(rConfiguracao, evento), rCaso.pszCaminho);
    }
    EXPECT_EQ(XVProfilerArquivo::GetCaminho({}, SProfilerEvento(ETipoEvento::eErro, nullptr)), "");
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
    EXPECT_EQ(aberturas(ECausaArquivo::eAcessoNegado), 19U);
    EXPECT_EQ(bancada.m_relogio.GetQuantidadeDormidas(), 0U);
    EXPECT_EQ(aberturas(ECausaArquivo::eViolacaoCompartilhamento), 19U);
    EXPECT_GT(bancada.m_relogio.GetQuantidadeDormidas(), 19U) << "who holds the file gets the processor";
    EXPECT_EQ(bancada.m_relogio.GetMilissegundosDormidos(), 0U);
    for (const ECausaArquivo e : {ECausaArquivo::eArquivoNaoEncontrado, ECausaArquivo::eCaminhoInvalido,
                                  ECausaArquivo::eArquivoInvalido, ECausaArquivo::eErroFisico})
        EXPECT_EQ(aberturas(e), 1U) << static_cast<int>(e);
}

// Another process holds the file: once it lets go, even before the last attempt, the record is written.
TEST(Anexar, OcupadoPorOutroProcessoEsperaEEscreve) {
    CXVBancadaTrace bancada;
    bancada.m_sistema.CriaArquivo(k_pszLogPgms, "");
    std::unique_ptr<IXVArquivo> pOutro;
    const SAberturaArquivo abertura{EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita};
    ASSERT_TRUE(bancada.m_sistema.Abre(k_pszLogPgms, abertura, pOutro).Ok());
    const XVUInt64 uiPerdidos = XVProfiler::GetLinhasPerdidas();
    // The 18 waits between the attempts give way 1 + i * i times each.
    bancada.m_relogio.SetAoDormir([&](XVUInt64 uiVez) {
        if (uiVez == 1803) pOutro.reset();
    });
    CheckHr(E_FAIL, "espera", "F", "f", 1, nullptr);
    EXPECT_EQ(bancada.m_relogio.GetQuantidadeDormidas(), 1803U);
    EXPECT_EQ(XVProfiler::GetLinhasPerdidas(), uiPerdidos);
    const TLinhas linhas = bancada.LeLog(k_pszLogPgms);
    ASSERT_EQ(linhas.size(), 2U) << "an empty file receives its header";
    EXPECT_EQ(linhas[0][0], "Data");
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

TEST(Escopo, EntradaESaidaInteiras) {
    CXVBancadaTrace bancada;
    bancada.EscreveLogIni("Entrada=1\nSaida=1\nPerformance=1\nMemory=1\n");
    CModeloTeste modelo;
    std::vector<char> lista;
    {
        const ProfilerScope escopo(&modelo, "CBase", "Faz",
                                   {{"uiPosicao", XVUInt64{12}}, {"sTexto", "a\tb"}});
        bancada.m_relogio.Avanca(2250);
        lista.assign(40 << 20, 'x');  // too much to come from what was freed before
    }
    TLinhas linhas = bancada.LeLog(k_pszLogProfiler);
    ASSERT_EQ(linhas.size(), 3U);
    EXPECT_EQ(linhas[0].size(), k_uiColunasProfiler);
    const std::string sParametros = "\tuiPosicao = 12\tsTexto = a b\t\t\t\t\t\t\t";
    const std::string sMemorias = "<disponivel>\t<total>\t<componente>\t";
    const auto aMemoria = [](const std::vector<std::string>& r) { return std::stoll(r[24]); };
    const long long llGanho = aMemoria(linhas[2]) - aMemoria(linhas[1]);
    EXPECT_GT(llGanho, 4'000'000) << "the component's memory at the entry and at the exit";
    EXPECT_EQ(linhas[1][5], linhas[2][5]);
    EXPECT_EQ(Linha(linhas[1]),
              ComColunas("12:30:09", "CBase::Faz", "\t", "ENTROU", sMemorias + "0\t0" + sParametros));
    EXPECT_EQ(Linha(linhas[2]), ComColunas("12:30:11", "CBase::Faz", "\t", "SAIU",
                                           sMemorias + "2250\t" + std::to_string(llGanho) + sParametros));
}

TEST(Escopo, SomenteOQueLogIniPede) {
    CXVBancadaTrace bancada;
    const CDonoTeste dono;
    // What stands in the column of the kind, line by line; "-" where a mark pairs the line with another.
    const auto tipos = [&](const std::string& sValores, const char* pszClasse,
                           const std::string& sValoresDepois) {
        bancada.EscreveLogIni(sValores);
        {
            const ProfilerScope escopo(&dono, pszClasse, "F", {});
            if (!sValoresDepois.empty()) bancada.EscreveLogIni(sValoresDepois);
        }
        XVProfiler::RecordCoCreate(nullptr, "C::Cria", "Velmora.XVCR", "XVCR", XVHResult(0x80040154U));
        std::string sTipos;
        for (const auto& rLinha : bancada.LeLog(k_pszLogProfiler))
            if (rLinha[0] != "Data") sTipos += rLinha[k_uiColunaTipo] + (rLinha[5].empty() ? " " : "- ");
        bancada.m_sistema.Apaga(k_pszLogProfiler).Ignora();
        return sTipos;
    };
    const struct {
        const char* pszValores;
        const char* pszClasse;
        const char* pszDepois;  // of log.ini while the function runs; empty: the same
        const char* pszTipos;
    } aCasos[] = {{"", "CBase", "", ""},
                  {"Performance=1\nMemory=1\nTrace=1", "CBase", "", ""},
                  {"CoCreateInstance=1", "CBase", "", "COCREATE- "},
                  {"CoCreateInstance=1\nProcessos=outro.exe", "CBase", "", ""},
                  {"Entrada=1", "CBase", "", "ENTROU "},
                  {"Saida=1", "CBase", "", "SAIU "},
                  {"Entrada=1\nSaida=1", "CBase", "", "ENTROU- SAIU- "},
                  {"Entrada=1\nSaida=1", "CXVTextFile", "", ""},
                  {"Entrada=1\nSaida=1\nXVDataBase=todos", "CXVTextFile", "", "ENTROU- SAIU- "},
                  {"Entrada=1\nProcessos=outro.exe", "CBase", "", ""},
                  {"Entrada=1\nSaida=1", "CBase", "Entrada=1", "ENTROU- "},
                  {"Entrada=1\nSaida=1", "CBase", "Saida=1\nProcessos=outro.exe", "ENTROU- "}};
    for (const auto& r : aCasos)
        EXPECT_EQ(tipos(r.pszValores, r.pszClasse, r.pszDepois), r.pszTipos) << r.pszValores;
}

TEST(Escopo, QuedaDaMemoriaENegativaEMaisDeNoveParametrosNaoDesalinham) {
    const CXVBancadaTrace bancada;
    SProfilerEvento evento(ETipoEvento::eSaida, nullptr);
    evento.uiMemoriaInicio = 5'000;
    evento.uiMemoriaFim = 3'000;
    for (std::size_t i = 0; i < 10; ++i)
        evento.listaParametros.emplace_back(std::string_view("abcdefghij").substr(i, 1), "1");
    const TLinhas linhas = CXVBancadaTrace::SeparaColunas(XVProfilerLinha::MontaLinha(evento));
    ExpectRetangular(linhas, k_uiColunasProfiler);
    EXPECT_EQ(linhas[0][24], "3000");
    EXPECT_EQ(linhas[0][26], "-2000");
    EXPECT_EQ(linhas[0].back(), "i = 1");
}

TEST(CriacaoObjeto, LinhaInteira) {
    CXVBancadaTrace bancada;
    const CDonoTeste dono;
    bancada.EscreveLogIni("CoCreateInstance=1\n");
    XVProfiler::RecordCoCreate(&dono, "C::Cria", "Velmora.XVCR", "XVCR", XVHResult(0x80040154U));
    const TLinhas linhas = bancada.LeLog(k_pszLogProfiler);
    ASSERT_EQ(linhas.size(), 2U);
    EXPECT_EQ(Linha(linhas[1]),
              ComColunas("12:30:09", "C::Cria", "\t", "COCREATE",
                         "<disponivel>\t<total>\t0\t0\t0\tProgID = Velmora.XVCR\tModulo = XVCR\tResultado = "
                         "0x80040154\t\t\t\t\t\t"));
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
