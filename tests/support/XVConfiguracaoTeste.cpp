// log.ini: how its text is read, when it is read again, and what its filters let through.
#include <gtest/gtest.h>

#include "support/trace/XVPerfilPrivado.h"
#include "support/trace/XVProfilerConfig.h"
#include "support/trace/XVProfilerFiltro.h"
#include "tests/support/XVBancadaTrace.h"

TEST(PerfilPrivado, LeComoOsPerfisDoSistema) {
    const CXVPerfilPrivado perfil(
        "\xEF\xBB\xBF; um comentario\r\n[Outra]\r\nEntrada=9\r\n [ LOG ] \r\n;Saida=5\r\n  entrada = 1 \r\n"
        "ENTRADA=7\r\nTexto=  \"com espacos \"  \r\nSemIgual\r\nVazia=\r\nHexa=0x1F\r\nSujo=12abc\r\n"
        "Negativo=-3\r\nGrande=99999999999999999999\r\nBinario=0b101\r\nLetras=abc\r\n[Log]\r\nTardia=1");
    EXPECT_EQ(perfil.LeInteiro("Log", "Entrada", 0), 1);
    EXPECT_EQ(perfil.LeInteiro("log", "SAIDA", 0), 0);
    EXPECT_EQ(perfil.LeTexto("Log", "Texto"), "com espacos ");
    EXPECT_EQ(perfil.LeInteiro("Log", "Vazia", 600), 600);
    EXPECT_EQ(perfil.LeInteiro("Log", "Ausente", 600), 600);
    EXPECT_EQ(perfil.LeInteiro("Log", "Hexa", 0), 31);
    EXPECT_EQ(perfil.LeInteiro("Log", "Sujo", 0), 12);
    EXPECT_EQ(perfil.LeInteiro("Log", "Negativo", 0), -3);
    EXPECT_EQ(perfil.LeInteiro("Log", "Grande", 0), INT64_MAX);
    EXPECT_EQ(perfil.LeInteiro("Log", "Binario", 0), 5);
    EXPECT_EQ(perfil.LeInteiro("Log", "Letras", 5), 0);
    EXPECT_FALSE(perfil.LeTexto("Log", "SemIgual"));
    EXPECT_FALSE(perfil.LeTexto("Log", "Tardia"));  // only the first section of a name counts
    EXPECT_FALSE(CXVPerfilPrivado("").LeTexto("Log", "x"));
    EXPECT_FALSE(CXVPerfilPrivado("[").LeTexto("Log", "x"));
    EXPECT_EQ(CXVPerfilPrivado("[Log\nx=1").LeInteiro("Log", "x", 0), 1);
}

TEST(Configuracao, PadroesELimites) {
    const SConfiguracaoTrace padrao = XVProfilerConfig::Interpreta("");
    EXPECT_FALSE(padrao.bEntrada || padrao.bSaida || padrao.bTrace || padrao.bCoCreateInstance ||
                 padrao.bPerformance || padrao.bMemory || padrao.bLogaTudoXVDataBase ||
                 padrao.DeveRastrear());
    EXPECT_EQ(padrao.ulIntervalo, 600000U);
    EXPECT_EQ(padrao.sProcessos, "todos");
    EXPECT_EQ(padrao.sXVDataBase, "");

    const auto le = [](const std::string& s) { return XVProfilerConfig::Interpreta("[Log]\n" + s); };
    EXPECT_FALSE(le("Entrada=2").bEntrada);
    EXPECT_FALSE(le("Entrada=4294967297").bEntrada);
    EXPECT_TRUE(le("Entrada=1").bEntrada);
    EXPECT_EQ(le("TimeoutConfig=5").ulIntervalo, 5000U);
    EXPECT_EQ(le("TimeoutConfig=0").ulIntervalo, 0U);
    EXPECT_EQ(le("TimeoutConfig=-1").ulIntervalo, 600000U);
    EXPECT_EQ(le("TimeoutConfig=4294967").ulIntervalo, 4294967000U);
    EXPECT_EQ(le("TimeoutConfig=4294968").ulIntervalo, 600000U);
    EXPECT_EQ(le("TimeoutConfig=99999999999999999999").ulIntervalo, 600000U);
    EXPECT_EQ(le("Processos=XVCR.EXE;Outro").sProcessos, "xvcr.exe;outro");
    EXPECT_EQ(le("Processos=" + std::string(400, 'x')).sProcessos.size(), 259U);
    EXPECT_TRUE(le("XVDataBase=ToDoS").bLogaTudoXVDataBase);
    EXPECT_TRUE(le("XVDataBase=1").bLogaTudoXVDataBase);
    EXPECT_FALSE(le("XVDataBase=CXVFile").bLogaTudoXVDataBase);
    EXPECT_EQ(le("XVDataBase=CXVFile").sXVDataBase, "CXVFile");
    EXPECT_EQ(le("XVDataBase=0").sXVDataBase, "");
}

TEST(Configuracao, DesempenhoSemEntradaNemSaidaNaoRastreia) {
    const auto rastreia = [](const std::string& s) {
        return XVProfilerConfig::Interpreta("[Log]\n" + s).DeveRastrear();
    };
    EXPECT_FALSE(rastreia("Performance=1"));
    EXPECT_FALSE(rastreia("Memory=1\nCoCreateInstance=1"));
    EXPECT_TRUE(rastreia("CoCreateInstance=1"));
    EXPECT_TRUE(rastreia("Performance=1\nSaida=1"));
    EXPECT_TRUE(rastreia("Entrada=1"));
    EXPECT_FALSE(rastreia("Trace=1"));
}

TEST(Configuracao, RecarregaDepoisDoIntervaloTambemNaVoltaDoContador) {
    CXVBancadaTrace bancada;
    bancada.m_relogio.SetTicks(0xFFFFFF00U);
    bancada.EscreveLogIni("TimeoutConfig=10");
    bancada.m_sistema.CriaArquivo("/xv/log.ini", "[Log]\nEntrada=1\n");
    bancada.m_relogio.Avanca(10000);  // exactly the interval: not yet
    EXPECT_FALSE(XVProfilerConfig::GetAtual()->bEntrada);
    EXPECT_EQ(bancada.m_relogio.GetTicks(), 0xFFFFFF00U + 10000U);
    bancada.m_relogio.Avanca(1);
    EXPECT_TRUE(XVProfilerConfig::GetAtual()->bEntrada);
    // Deleted: the defaults again, after the default interval.
    ASSERT_TRUE(bancada.m_sistema.Apaga("/xv/log.ini").Ok());
    bancada.m_relogio.Avanca(600001);
    EXPECT_FALSE(XVProfilerConfig::GetAtual()->bEntrada);
}

TEST(Configuracao, ArquivoEmUsoPorOutroDeixaAConfiguracaoComoEstava) {
    CXVBancadaTrace bancada;
    bancada.EscreveLogIni("Entrada=1\n");
    std::unique_ptr<IXVArquivo> pArquivo;
    ASSERT_TRUE(bancada.m_sistema
                    .Abre("/xv/log.ini",
                          {EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaTudo,
                           ECriacaoArquivo::eSomenteExistente},
                          pArquivo)
                    .Ok());
    XVProfiler::RecarregaConfiguracao();
    EXPECT_TRUE(XVProfilerConfig::GetAtual()->bEntrada);
}

TEST(Configuracao, EscopoDesligadoPercebeAMudancaEmPoucasChamadas) {
    CXVBancadaTrace bancada;
    EXPECT_FALSE(XVProfiler::DeveLogar());
    bancada.m_sistema.CriaArquivo("/xv/log.ini", "[Log]\nEntrada=1\n");
    bancada.m_relogio.Avanca(600001);
    int iChamadas = 1;
    while (!XVProfiler::DeveLogar() && iChamadas < 100) ++iChamadas;
    EXPECT_LE(iChamadas, 64);
}

TEST(Filtro, Processos) {
    SConfiguracaoTrace configuracao;
    const auto passa = [&](const char* pszLista) {
        configuracao.sProcessos = pszLista;
        return XVProfilerFiltro::DeveLogarProcesso(configuracao, "xvcr_server.exe");
    };
    EXPECT_TRUE(passa("todos"));
    EXPECT_TRUE(passa("nada,todososdias"));
    EXPECT_TRUE(passa("outro; xvcr"));
    EXPECT_TRUE(passa("a,,server.exe"));
    EXPECT_FALSE(passa("outro"));
    EXPECT_FALSE(passa(""));
    EXPECT_FALSE(passa(";, ;"));
}

TEST(Filtro, MotorDeArquivosESilenciosoAteSerPedido) {
    SConfiguracaoTrace configuracao;
    const auto passa = [&](const char* psz) {
        return XVProfilerFiltro::DeveLogarXVDataBase(configuracao, psz);
    };
    for (const char* psz :
         {"CXVDataBase::Le", "CXVFile<struct REG_CR_INDEX_INTEGRACAO_V1>::Grava", "CXVGroupFileBase::Abre",
          "CXVGroupTextFileDynamic::Le", "T_XVGroupFileChave::X", "CXVTextFile::Le", "CXVFileCopia::Copia"})
        EXPECT_FALSE(passa(psz)) << psz;
    EXPECT_TRUE(passa("CBaseMiddleware::LeIntegracao"));
    configuracao.sXVDataBase = "REG_CR_INDEX;Grava";
    EXPECT_TRUE(passa("CXVFile<struct REG_CR_INDEX_INTEGRACAO_V1>::Le"));
    EXPECT_TRUE(passa("CXVFile<struct REG_X>::Grava"));
    EXPECT_FALSE(passa("CXVFile<struct REG_X>::Le"));
    EXPECT_TRUE(passa("CBaseMiddleware::LeIntegracao"));
    // The blank of a template's name is part of the piece.
    configuracao.sXVDataBase = "CXVFile<struct REG_CR_INDEX CXVTextFile";
    EXPECT_TRUE(passa("CXVFile<struct REG_CR_INDEX_INTEGRACAO_V1>::Le"));
    EXPECT_FALSE(passa("CXVFile<struct REG_CR_CHAVE_V1>::Le"));
    EXPECT_TRUE(passa("CXVTextFile::Le"));
    configuracao.sXVDataBase = "CXVFile<struct ";
    EXPECT_FALSE(passa("CXVFile<struct_>::Le"));
    configuracao.sXVDataBase.clear();
    configuracao.bLogaTudoXVDataBase = true;
    EXPECT_TRUE(passa("CXVTextFile::Le"));
}
