// log.ini: how its text is read, when it is read again, and what its filters let through.
#include <gtest/gtest.h>

#include "support/trace/XVPerfilPrivado.h"
#include "support/trace/XVProfilerConfig.h"
#include "support/trace/XVProfilerFiltro.h"
#include "tests/support/XVBancadaTrace.h"

TEST(PerfilPrivado, LeComoOsPerfisDoSistema) {
    const CXVPerfilPrivado perfil(
        "\xEF\xBB\xBF; um comentario\r\n[Outra]\r\nEntrada=9\r\n [ LOG ] \r\n;Saida=5\r\n  entrada = 1 \r\n"
        "ENTRADA=7\r\nTexto=  \"com espacos \"  "
        "\r\nSimples='a\"'\r\nMeia='\r\nSemIgual\r\nVazia=\r\nHexa=0x1fG\r\n"
        "Sujo=12abc\r\nNegativo=-3\r\nMais=+3\r\nGrande=99999999999999999999\r\nOctal=0o178\r\n"
        "Binario=0b1012\r\nLetras=abc\r\n#Saida=6\r\n[Log]\r\nTardia=1");
    const struct {
        const char* pszChave;
        std::int64_t iEsperado;  // 600 is the default
    } aNumeros[] = {{"Entrada", 1}, {"SAIDA", 600}, {"Vazia", 600},   {"Ausente", 600},
                    {"Hexa", 31},   {"Sujo", 12},   {"Negativo", -3}, {"Mais", 3},
                    {"Octal", 15},  {"Binario", 5}, {"Letras", 0},    {"Grande", INT64_MAX}};
    for (const auto& r : aNumeros)
        EXPECT_EQ(perfil.LeInteiro("Log", r.pszChave, 600), r.iEsperado) << r.pszChave;
    EXPECT_EQ(perfil.LeTexto("log", "Texto"), "com espacos ");
    EXPECT_EQ(perfil.LeTexto("Log", "Simples"), "a\"");
    EXPECT_EQ(perfil.LeTexto("Log", "Meia"), "'");
    EXPECT_FALSE(perfil.LeTexto("Log", "SemIgual"));
    EXPECT_FALSE(perfil.LeTexto("Log", "Tardia"));  // only the first section of a name counts
    EXPECT_FALSE(CXVPerfilPrivado("[").LeTexto("Log", "x"));
    EXPECT_EQ(CXVPerfilPrivado("[Log\nx=1").LeInteiro("Log", "x", 0), 1);
}

// Every key alone, and nothing but what it says.
TEST(Configuracao, CadaChaveMudaOSeuValorENenhumOutro) {
    const auto descreve = [](const SConfiguracaoTrace& r) {
        std::string s;
        for (const bool b : {r.bEntrada, r.bSaida, r.bTrace, r.bCoCreateInstance, r.bPerformance, r.bMemory,
                             r.bLogaTudoXVDataBase, r.DeveRastrear()})
            s += b ? '1' : '0';
        return s + ' ' + std::to_string(r.ulIntervalo) + ' ' + r.sProcessos + ' ' + r.sXVDataBase;
    };
    const struct {
        const char* pszLinha;
        const char* pszEsperado;
    } aCasos[] = {{"", "00000000 600000 todos "},
                  {"Entrada=1", "10000001 600000 todos "},
                  {"Entrada=2", "00000000 600000 todos "},
                  {"Entrada=4294967297", "00000000 600000 todos "},
                  {"Saida=1", "01000001 600000 todos "},
                  {"Trace=1", "00100000 600000 todos "},
                  {"CoCreateInstance=1", "00010001 600000 todos "},
                  {"Performance=1", "00001000 600000 todos "},
                  {"Memory=1", "00000100 600000 todos "},
                  {"TimeoutConfig=5", "00000000 5000 todos "},
                  {"TimeoutConfig=0", "00000000 0 todos "},
                  {"TimeoutConfig=-1", "00000000 600000 todos "},
                  {"TimeoutConfig=4294967", "00000000 4294967000 todos "},
                  {"TimeoutConfig=4294968", "00000000 600000 todos "},
                  {"TimeoutConfig=99999999999999999999", "00000000 600000 todos "},
                  {"Processos=XVCR.EXE;Outro", "00000000 600000 xvcr.exe;outro "},
                  {"XVDataBase=ToDoS", "00000010 600000 todos "},
                  {"XVDataBase=1", "00000010 600000 todos "},
                  {"XVDataBase=0", "00000000 600000 todos "},
                  {"XVDataBase=CXVFile", "00000000 600000 todos CXVFile"}};
    for (const auto& r : aCasos)
        EXPECT_EQ(descreve(XVProfilerConfig::Interpreta("[Log]\n" + std::string(r.pszLinha))), r.pszEsperado)
            << r.pszLinha;
    const std::string sLonga = "[Log]\nProcessos=" + std::string(400, 'x');
    EXPECT_EQ(XVProfilerConfig::Interpreta(sLonga).sProcessos.size(), 259U);
}

TEST(Configuracao, ArquivoEmUtf16ELidoNasDuasOrdens) {
    const std::string sValores = "[Log]\r\nSaida=1\r\nProcessos=n\xC3\xA3o\xF0\x9F\x98\x80\r\n";
    const std::u16string sLargo = u"[Log]\r\nSaida=1\r\nProcessos=n\u00E3o\U0001F600\r\n";
    std::string sMenor = "\xFF\xFE";
    std::string sMaior = "\xFE\xFF";
    for (const char16_t c : sLargo) {
        const char aBytes[] = {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
        sMenor.append({aBytes[0], aBytes[1]});
        sMaior.append({aBytes[1], aBytes[0]});
    }
    const SConfiguracaoTrace esperada = XVProfilerConfig::Interpreta(sValores);
    for (const std::string& rBytes : {sMenor, sMaior, sMenor + 'x'}) {
        const SConfiguracaoTrace lida = XVProfilerConfig::Interpreta(rBytes);
        EXPECT_TRUE(lida.bSaida);
        EXPECT_EQ(lida.sProcessos, esperada.sProcessos);
    }
}

TEST(Configuracao, ArquivoSoELidoAte64KiBEEmUsoPorOutroDeixaComoEstava) {
    CXVBancadaTrace bancada;
    for (const bool bCabe : {false, true}) {
        std::string sValores = ";";
        sValores.resize((64U << 10) - sizeof("[Log]\n\nEntrada=1") + (bCabe ? 1 : 2), 'x');
        bancada.EscreveLogIni(sValores + "\nEntrada=1");
        EXPECT_EQ(XVProfilerConfig::GetAtual()->bEntrada, bCabe);
    }
    std::unique_ptr<IXVArquivo> pArquivo;
    const SAberturaArquivo abertura{EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaTudo};
    ASSERT_TRUE(bancada.m_sistema.Abre("/xv/log.ini", abertura, pArquivo).Ok());
    XVProfiler::RecarregaConfiguracao();
    EXPECT_TRUE(XVProfilerConfig::GetAtual()->bEntrada);
}

TEST(Configuracao, RecarregaDepoisDoIntervaloTambemNaVoltaDoContador) {
    CXVBancadaTrace bancada;
    bancada.m_relogio.SetTicks(0xFFFFFF00U);
    bancada.EscreveLogIni("TimeoutConfig=10");
    EXPECT_FALSE(XVProfiler::DeveLogar());
    bancada.m_sistema.CriaArquivo("/xv/log.ini", "[Log]\nEntrada=1\n");
    bancada.m_relogio.Avanca(10000);  // exactly the interval: not yet
    EXPECT_FALSE(XVProfilerConfig::GetAtual()->bEntrada);
    EXPECT_EQ(bancada.m_relogio.GetTicks(), 0xFFFFFF00U + 10000U);
    bancada.m_relogio.Avanca(1);
    int iChamadas = 1;  // a scope that is switched off looks at the clock once in a while
    while (!XVProfiler::DeveLogar() && iChamadas < 100) ++iChamadas;
    EXPECT_LE(iChamadas, 64);
    // The interval is counted from this reading on. Deleted: the defaults again, after the default interval.
    bancada.m_sistema.CriaArquivo("/xv/log.ini", "[Log]\nSaida=1\n");
    bancada.m_relogio.Avanca(600000);
    EXPECT_TRUE(XVProfilerConfig::GetAtual()->bEntrada);
    ASSERT_TRUE(bancada.m_sistema.Apaga("/xv/log.ini").Ok());
    bancada.m_relogio.Avanca(600001);
    EXPECT_FALSE(XVProfilerConfig::GetAtual()->bEntrada);
}

TEST(Filtro, Processos) {
    SConfiguracaoTrace configuracao;
    const std::pair<const char*, bool> aCasos[] = {{"todos", true},       {"nada,todososdias", true},
                                                   {"outro; xvcr", true}, {"a,,server.exe", true},
                                                   {"outro", false},      {"", false},
                                                   {";, ;", false}};
    for (const auto& [pszLista, bPassa] : aCasos) {
        configuracao.sProcessos = pszLista;
        EXPECT_EQ(XVProfilerFiltro::DeveLogarProcesso(configuracao, "xvcr_server.exe"), bPassa) << pszLista;
    }
}

TEST(Filtro, MotorDeArquivosESilenciosoAteSerPedido) {
    SConfiguracaoTrace configuracao;
    const auto passam = [&](const char* pszPedido) {
        configuracao.sXVDataBase = pszPedido;
        std::string sPassam;
        for (const char* psz : {"CXVFile<struct REG_CR_INDEX_V1>::Le", "CXVFile<struct REG_X>::Grava",
                                "CXVFile<struct_>::Le", "T_XVGroupFileChave::X", "CBaseMiddleware::Le"})
            sPassam += XVProfilerFiltro::DeveLogarXVDataBase(configuracao, psz) ? '1' : '0';
        return sPassam;
    };
    EXPECT_EQ(passam(""), "00001");
    EXPECT_EQ(passam("REG_CR_INDEX;Grava"), "11001");
    EXPECT_EQ(passam("CXVFile<struct "), "11001") << "the blank of a template's name is part of the piece";
    EXPECT_EQ(passam("CXVFile<struct REG_CR_INDEX CXVTextFile"), "10001");
    configuracao.bLogaTudoXVDataBase = true;
    EXPECT_EQ(passam(""), "11111");
}
