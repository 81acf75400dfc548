// What stands in the log files: columns, texts, file names, scopes and checks.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <regex>

#include "platform/XVAmbienteSO.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVCapturaTrace.h"
#include "support/trace/XVCheck.h"
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
class CModelo : public CXVDonoFixo {
  public:
    XV_CLASSE((TXVNomeDeTemplate<"CModelo", T>::k_aTexto.data()), "tests/support/Modelo")
    CModelo() : CXVDonoFixo("ACME") {}

    HRESULT Conta(HRESULT hr) {
        ++m_iChamadas;
        return hr;
    }
    HRESULT Grava(HRESULT uiPosicao) {
        m_iLinhaGrava = __LINE__ + 1;
        XV_CHECK(Conta(uiPosicao));
        return S_OK;
    }
    HRESULT Fecha(HRESULT hrPrimeiro, HRESULT hrSegundo) {
        const HRESULT hr = XV_REGISTRA(Conta(hrPrimeiro));
        const HRESULT hrBase = XV_REGISTRA_SUPER(CModelo, Conta(hrSegundo));
        return XVPrimeiraFalha(hr, hrBase);
    }
    int m_iChamadas = 0;
    int m_iLinhaGrava = 0;
};
using CModeloTeste = CModelo<REG_TESTE_V1>;

void Falha(const char* pszExpressao, const IXVDF_Profiler* pDono = nullptr) {
    EXPECT_EQ(CheckHr(E_FAIL, pszExpressao, "F", "f", 1, pDono), E_FAIL);
}

// Of one line: the columns that are the same whatever is recorded, then its own.
std::string ComColunas(const char* pszHora, const std::string& sFuncao, const std::string& sFonte,
                       const std::string& sTipo, const std::string& sResto) {
    const std::string sDono = "\tEACME\tU007\tS00000099";
    return "04/07/2023\t" + std::string(pszHora) + "\t" + XVProfilerLinha::GetNomeProcesso() + "\t" +
           XVProfilerLinha::GetUsuarioLocal() + "\t" + sFuncao + "\t<guid>" + sDono + "\t<thread>" + sDono +
           "\t\t\t\t" + sFonte + "\t\t\t\t" + sTipo + "\t<disponivel>\t<total>\t" + sResto;
}

// A line as it stands, with marks for what no test knows beforehand, once that is found to be right.
std::string Linha(std::vector<std::string> r) {
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
    EXPECT_EQ(modelo.m_iChamadas, 1);
    EXPECT_EQ(modelo.Fecha(S_OK, E_POINTER), E_POINTER);
    EXPECT_EQ(modelo.Fecha(E_OUTOFMEMORY, E_POINTER), E_OUTOFMEMORY) << "the second step is carried out too";
    std::string sExpressoes;
    for (const SFalhaCapturada& r : captura.GetFalhas()) {
        EXPECT_EQ(r.sFuncao, "CModelo<struct REG_TESTE_V1>::Fecha");
        EXPECT_EQ(r.sFonte, "tests/support/Modelo");
        sExpressoes += r.sExpressao + ';';
    }
    EXPECT_EQ(sExpressoes, "__super::Conta(hrSegundo);Conta(hrPrimeiro);__super::Conta(hrSegundo);");
    constexpr TXVTextoDeCodigo k_texto("m.Le( a, b ->c( \" ( d ) \" ), e[ 0 ] .f, x - > y < z )");
    EXPECT_STREQ(k_texto.m_sz, "m.Le(a, b->c(\" ( d ) \"), e[0].f, x - > y < z)");
}

TEST(Check, CapturasSeAninhamPodemDeixarEscreverEGuardamAsUltimasFalhas) {
    CXVBancadaTrace bancada;
    CXVCapturaTrace fora(false);
    {
        CXVCapturaTrace dentro;
        for (int i = 0; i <= 4096; ++i) dentro.Inclui({E_FAIL, "x", "F", "f", i, ""});
        ASSERT_EQ(dentro.GetFalhas().size(), 2049U);
        EXPECT_EQ(dentro.GetFalhas().front().iLinha, 2048);
        Falha("dentro");
        EXPECT_EQ(dentro.GetFalhas().back().sExpressao, "dentro");
    }
    EXPECT_FALSE(bancada.m_sistema.LeConteudo(k_pszLogPgms)) << "what is only captured is not written";
    Falha("fora");
    EXPECT_EQ(fora.GetFalhas().size(), 1U);
    EXPECT_TRUE(bancada.m_sistema.LeConteudo(k_pszLogPgms));
}

TEST(LinhaErro, LinhaInteira) {
    CXVBancadaTrace bancada;
    CModeloTeste modelo;
    EXPECT_EQ(modelo.Grava(E_FAIL), E_FAIL);
    EXPECT_EQ(modelo.Grava(E_FAIL), E_FAIL);
    const TLinhas linhas = bancada.LeLog(k_pszLogBase);
    ASSERT_EQ(linhas.size(), 3U);  // one header only
    for (const auto& r : linhas) EXPECT_EQ(r.size(), k_uiColunasErro);
    EXPECT_EQ(linhas[0].front(), "Data");
    EXPECT_EQ(linhas[0].back(), "Parameter9");
    const std::string sLinhaFonte = std::to_string(modelo.m_iLinhaGrava);
    EXPECT_EQ(Linha(linhas[1]),
              ComColunas("12:30:09", "CModelo<struct REG_TESTE_V1>::Grava",
                         "tests/support/XVLinhasLogTeste.cpp\t" + sLinhaFonte, "ERRO",
                         "<componente>\tVersaoTelvo = " + XVAmbienteSO::GetVersaoExecutavel() +
                             "\tVersaoSO = " + XVAmbienteSO::GetVersaoSistema() +
                             "\tArquivo = tests/support/Modelo\tLinha = " + sLinhaFonte +
                             "\tLog = hr = Conta(uiPosicao)\thr = 0X80004005 \tSEVERITY = 1 "
                             "SEVERITY_ERROR\tFACILITY = 0 FACILITY_NULL\tCODE = 16389 \tDescrição = "
                             "E_FAIL\t\t\t\t"));
    EXPECT_NE(linhas[1][5], linhas[2][5]) << "each record has a mark of its own";
}

TEST(LinhaErro, SeparadoresNosValoresViramEspaco) {
    CXVBancadaTrace bancada;
    CXVDonoFixo dono("AC\tME\n");  // never a directory: goes with the programs'
    const int iLinha = __LINE__ + 1;
    CheckHr(E_FAIL, "a\tb\r\nc", "F\tG", "fon\nte", 1, &dono);
    XVProfiler::RecordError(nullptr, "F", "f", 1, "%s", "1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\n13");
    const TLinhas linhas = bancada.LeLog(k_pszLogPgms);
    ASSERT_EQ(linhas.size(), 3U);
    for (const auto& r : linhas) EXPECT_EQ(r.size(), k_uiColunasErro);
    EXPECT_EQ(linhas[1][4], "F G");
    EXPECT_EQ(linhas[1][6], "EAC ME ");
    EXPECT_EQ(linhas[1][17], std::to_string(iLinha));
    EXPECT_EQ(linhas[1][28], "Linha = 1");
    EXPECT_EQ(linhas[1][29], "Log = hr = a b  c");
    EXPECT_EQ(linhas[2][6], "E");
    EXPECT_EQ(linhas[2][38], "10 11 12 13");
}

TEST(LinhaErro, MensagemDeQualquerTamanhoFicaInteira) {
    CXVCapturaTrace captura;
    // The last one is longer than what is formatted without allocating.
    for (const std::size_t uiTamanho : {0U, 1U, 511U, 512U, 513U, 5000U}) {
        const std::string sTexto = std::string(uiTamanho, 'x').replace(uiTamanho / 2, 1, "y");
        XVProfiler::RecordError(nullptr, "F", "f", 9, "%s", sTexto.c_str());
        EXPECT_EQ(captura.GetFalhas().back().sMensagem, sTexto);
        EXPECT_EQ(captura.GetFalhas().back().iLinha, 9);
    }
}

namespace {

// A log on a disk that fails.
class Anexar : public testing::Test {
  protected:
    Anexar() {
        m_falhas.SetFiltro([](const std::string& s) { return s.ends_with(".log"); });
    }
    CXVBancadaTrace m_bancada;
    CXVSistemaArquivosFalhas m_falhas{m_bancada.m_sistema};
    const CXVGuardaSistemaArquivos m_guarda{m_falhas};
    const XVUInt64 m_uiPerdidos = XVProfiler::GetLinhasPerdidas();
};

}  // namespace

TEST_F(Anexar, TentaDezenoveVezesEDesisteNasCausasDefinitivas) {
    XVUInt64 uiPerdidos = m_uiPerdidos;
    for (const auto& [eCausa, uiAberturas] : {std::pair{ECausaArquivo::eAcessoNegado, 19U},
                                              {ECausaArquivo::eArquivoNaoEncontrado, 1U},
                                              {ECausaArquivo::eCaminhoInvalido, 1U},
                                              {ECausaArquivo::eArquivoInvalido, 1U},
                                              {ECausaArquivo::eErroFisico, 1U}}) {
        m_falhas.Programa({EOperacaoArquivo::eAbre, 1, true, eCausa});
        Falha("x");
        EXPECT_EQ(XVProfiler::GetLinhasPerdidas(), ++uiPerdidos);
        EXPECT_EQ(m_falhas.GetQuantidade(EOperacaoArquivo::eAbre), uiAberturas) << static_cast<int>(eCausa);
    }
    EXPECT_EQ(m_bancada.m_relogio.GetQuantidadeDormidas(), 0U);
}

// Another process holds the file: once it lets go, even before the last attempt, the record is written.
TEST_F(Anexar, OcupadoPorOutroProcessoEsperaEEscreve) {
    m_bancada.m_sistema.CriaArquivo(k_pszLogPgms, "");
    std::unique_ptr<IXVArquivo> pOutro;
    const SAberturaArquivo abertura{EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita};
    ASSERT_TRUE(m_bancada.m_sistema.Abre(k_pszLogPgms, abertura, pOutro).Ok());
    // The 18 waits between the attempts give way 1 + i * i times each.
    m_bancada.m_relogio.SetAoDormir([&](XVUInt64 uiVez) {
        if (uiVez == 1803) pOutro.reset();
    });
    Falha("espera");
    EXPECT_EQ(m_bancada.m_relogio.GetQuantidadeDormidas(), 1803U);
    EXPECT_EQ(m_bancada.m_relogio.GetMilissegundosDormidos(), 0U);
    EXPECT_EQ(XVProfiler::GetLinhasPerdidas(), m_uiPerdidos);
    const TLinhas linhas = m_bancada.LeLog(k_pszLogPgms);
    ASSERT_EQ(linhas.size(), 2U) << "an empty file receives its header";
    EXPECT_EQ(linhas[0][0], "Data");
}

// The column in which a written record tells of those before it that were lost.
TEST_F(Anexar, LinhasPerdidasSaoContadasNaProximaQueEGravada) {
    m_falhas.Programa({EOperacaoArquivo::eAbre, 1, true, ECausaArquivo::eAcessoNegado});
    for (int i = 0; i < 3; ++i) Falha("perdida");
    m_falhas.Programa({EOperacaoArquivo::eGrava, 1, false, ECausaArquivo::eDiscoCheio});
    Falha("perdida ao gravar");
    for (const char* psz : {"contada", "sem perdas"}) Falha(psz);
    const TLinhas linhas = m_bancada.LeLog(k_pszLogPgms);
    ASSERT_EQ(linhas.size(), 3U);
    EXPECT_EQ(linhas[0][19], "Filler");
    EXPECT_EQ(linhas[1][19], "Perdidas = 4");
    EXPECT_EQ(linhas[2][19], "");
    EXPECT_EQ(linhas[2].size(), k_uiColunasErro);
}

// Whatever the death of a process left of the last line, or of the header, the next record stands alone.
TEST_F(Anexar, LinhaQueFicouCortadaETerminadaAntesDaProxima) {
    Falha("primeira");
    const std::string sInteiro = m_bancada.m_sistema.LeConteudo(k_pszLogPgms).value();
    const std::size_t uiCabecalho = XVProfilerLinha::GetCabecalho(ETipoEvento::eErro).size();
    for (const std::size_t uiFica : {std::size_t{7}, uiCabecalho, uiCabecalho + 5, sInteiro.size()}) {
        const std::string sAntes = sInteiro.substr(0, uiFica);
        m_bancada.m_sistema.CriaArquivo(k_pszLogPgms, sAntes);
        Falha("segunda");
        const std::string sDepois = m_bancada.m_sistema.LeConteudo(k_pszLogPgms).value();
        const std::string sEsperado = sAntes + (sAntes.ends_with('\n') ? "" : "\n") +
                                      (uiFica < uiCabecalho ? sInteiro.substr(0, uiCabecalho) : "") +
                                      "04/07/2023\t";
        EXPECT_TRUE(sDepois.starts_with(sEsperado)) << uiFica << '\n' << sDepois;
        EXPECT_NE(sDepois.find("hr = segunda\t", sEsperado.size()), std::string::npos);
    }
}

// A file that somebody keeps locked, while each attempt takes its time: the call goes on soon.
TEST_F(Anexar, TentativasDemoradasAcabamLogo) {
    m_bancada.m_relogio.SetAoDormir([&](XVUInt64) { m_bancada.m_relogio.Avanca(1); });
    m_falhas.Programa({EOperacaoArquivo::eAbre, 1, true, ECausaArquivo::eViolacaoCompartilhamento});
    Falha("x");
    // The waits between the attempts take 1 + i * i each.
    EXPECT_EQ(m_falhas.GetQuantidade(EOperacaoArquivo::eAbre), 10U);
    EXPECT_EQ(XVProfiler::GetLinhasPerdidas(), m_uiPerdidos + 1);
}

TEST_F(Anexar, EmpresaAindaSemDiretorioEscreveNoLogDosProgramas) {
    const CXVDonoFixo nova("NOVA");
    Falha("antes do diretório", &nova);
    EXPECT_EQ(XVProfiler::GetLinhasPerdidas(), m_uiPerdidos);
    const TLinhas linhas = m_bancada.LeLog(k_pszLogPgms);
    ASSERT_EQ(linhas.size(), 2U);
    EXPECT_EQ(linhas[1][6], "ENOVA");
}

TEST_F(Anexar, GravacaoPelaMetadeNaoDeixaLinhaCortada) {
    Falha("inteira");
    const auto antes = m_bancada.m_sistema.LeConteudo(k_pszLogPgms);
    m_falhas.Programa({EOperacaoArquivo::eGrava, 1, false, ECausaArquivo::eDiscoCheio, 0, true});
    Falha("cortada");
    EXPECT_EQ(m_falhas.GetFalhasOcorridas(), 1U);
    EXPECT_EQ(m_bancada.m_sistema.LeConteudo(k_pszLogPgms), antes);
}

TEST(Escopo, EntradaSaidaECriacaoDeObjetoInteiras) {
    CXVBancadaTrace bancada;
    bancada.EscreveLogIni("Entrada=1\nSaida=1\nPerformance=1\nMemory=1\nCoCreateInstance=1\n");
    const CXVDonoFixo dono("ACME");
    std::vector<char> lista;
    {
        const ProfilerScope escopo(&dono, "CBase", "Faz", {{"uiPosicao", XVUInt64{12}}, {"sTexto", "a\tb"}});
        bancada.m_relogio.Avanca(2250);
        lista.assign(40 << 20, 'x');  // too much to come from what was freed before
    }
    XVProfiler::RecordCoCreate(&dono, "C::Cria", "Velmora.XVCR", "XVCR", XVHResult(0x80040154U));
    TLinhas linhas = bancada.LeLog(k_pszLogProfiler);
    ASSERT_EQ(linhas.size(), 4U);
    EXPECT_EQ(linhas[0].size(), k_uiColunasProfiler);
    const std::string sParametros = "\tuiPosicao = 12\tsTexto = a b\t\t\t\t\t\t\t";
    const auto aMemoria = [](const std::vector<std::string>& r) { return std::stoll(r[24]); };
    const long long llGanho = aMemoria(linhas[2]) - aMemoria(linhas[1]);
    EXPECT_GT(llGanho, 4'000'000) << "the component's memory at the entry and at the exit";
    EXPECT_EQ(linhas[1][5], linhas[2][5]);
    EXPECT_EQ(Linha(linhas[1]),
              ComColunas("12:30:09", "CBase::Faz", "\t", "ENTROU", "<componente>\t0\t0" + sParametros));
    EXPECT_EQ(Linha(linhas[2]), ComColunas("12:30:11", "CBase::Faz", "\t", "SAIU",
                                           "<componente>\t2250\t" + std::to_string(llGanho) + sParametros));
    EXPECT_EQ(Linha(linhas[3]), ComColunas("12:30:11", "C::Cria", "\t", "COCREATE",
                                           "0\t0\t0\tProgID = Velmora.XVCR\tModulo = XVCR\tResultado = "
                                           "0x80040154\t\t\t\t\t\t"));
}

// What the entry did not measure, the exit has nothing to compare with.
TEST(Escopo, MedidaLigadaOuDesligadaNoMeioNaoDaDiferenca) {
    CXVBancadaTrace bancada;
    bancada.m_relogio.SetTicks(77'000);
    const char* const pszSem = "Entrada=1\nSaida=1\n";
    const char* const pszCom = "Entrada=1\nSaida=1\nPerformance=1\nMemory=1\n";
    for (const auto& [pszAntes, pszDepois] : {std::pair{pszSem, pszCom}, {pszCom, pszSem}}) {
        bancada.EscreveLogIni(pszAntes);
        {
            const ProfilerScope escopo(nullptr, "CBase", "Faz", {});
            bancada.m_relogio.Avanca(2250);
            bancada.EscreveLogIni(pszDepois);
        }
        const auto saida = bancada.LeLog(k_pszLogProfiler).back();
        EXPECT_EQ(saida[k_uiColunaTipo], "SAIU");
        EXPECT_EQ(saida[25] + ' ' + saida[26], "0 0") << pszAntes;
    }
}

TEST(Escopo, SomenteOQueLogIniPede) {
    CXVBancadaTrace bancada;
    const CXVDonoFixo dono("ACME");
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
    } aCasos[] = {{"Performance=1\nMemory=1\nTrace=1", "CBase", "", ""},
                  {"CoCreateInstance=1", "CBase", "", "COCREATE- "},
                  {"CoCreateInstance=1\nProcessos=outro.exe", "CBase", "", ""},
                  {"Entrada=1", "CBase", "", "ENTROU "},
                  {"Saida=1", "CBase", "", "SAIU "},
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
    for (const char* pszNome : {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"})
        evento.listaParametros.emplace_back(pszNome, "1");
    const TLinhas linhas = CXVBancadaTrace::SeparaColunas(XVProfilerLinha::MontaLinha(evento));
    ASSERT_EQ(linhas[0].size(), k_uiColunasProfiler);
    EXPECT_EQ(linhas[0][24], "3000");
    EXPECT_EQ(linhas[0][26], "-2000");
    EXPECT_EQ(linhas[0].back(), "i = 1");
}

// What fails while a failure is recorded, as a faulty seam would, is not recorded itself.
TEST(Recursao, FalhaAoRegistrarNaoERegistrada) {
    int iLeituras = 0;  // the bench reads the registry once more when it goes
    CXVBancadaTrace bancada;
    bancada.m_registry.fnAoLer = [&] {
        ++iLeituras;
        Falha("recursiva");
        const ProfilerScope escopo(nullptr, "C", "F", {});
    };
    CXVCapturaTrace captura(false);
    bancada.m_relogio.Avanca(600001);
    Falha("de fora");
    EXPECT_GT(iLeituras, 0);
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
    Falha("x");
    EXPECT_EQ(errno, EDOM);
    EXPECT_EQ(XVProfiler::GetLinhasPerdidas(), uiPerdidos + 1);
}
