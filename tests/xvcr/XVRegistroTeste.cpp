// registro over logs of several users, sessions and days: which records each option shows, and all that is
// known of each.
#include <filesystem>
#include <fstream>

#include "support/XVAmbiente.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/xvcr/XVPrograma.h"
#include "tools/xvcr/logs/XVLinhaLog.h"

namespace {

using nlohmann::json;

const std::string k_sCabecalho =
    "Data\tHora\tProcesso\tUsuarioLocal\tClasseFuncao\tEmpresa\tUsuario\tSessao\tThreadID\tTipo\tDuracao\t"
    "Arquivo\tLinha\tLog\tParameter1\tParameter2\n";

// A record of one moment, user and session; the rest of it is the same.
json Erro(const char* pszMomento, const char* pszEmpresa, unsigned uiUsuario, unsigned uiSessao,
          const char* pszFuncao, const char* pszCodigo, const char* pszNome) {
    json erro{{"DataHora", pszMomento},
              {"Tipo", "ERRO"},
              {"Empresa", pszEmpresa},
              {"Usuario", std::to_string(uiUsuario)},
              {"Sessao", std::to_string(uiSessao)},
              {"Processo", "xvcr"},
              {"UsuarioLocal", "ana"},
              {"ThreadID", "77"},
              {"ClasseFuncao", pszFuncao},
              {"Arquivo", "middleware/Base"},
              {"Linha", "120"},
              {"Codigo", std::string("0x") + pszCodigo},
              {"Expressao", "m_Index.Le(a)"},
              {"Mensagem", "Não há"},
              {"Parametros", {std::string("hr = 0X") + pszCodigo + " Não há", "x = 5"}}};
    if (pszNome != nullptr) erro["Nome"] = pszNome;
    return erro;
}

// Its line in the log.
std::string Linha(const json& rErro) {
    const auto campo = [&](const char* pszNome) { return rErro[pszNome].get<std::string>(); };
    const std::string sMomento = campo("DataHora");
    return sMomento.substr(8, 2) + '/' + sMomento.substr(5, 2) + '/' + sMomento.substr(0, 4) + '\t' +
           sMomento.substr(11) + "\txvcr\tana\t" + campo("ClasseFuncao") + "\tE" + campo("Empresa") +
           "\tU00" + campo("Usuario") + "\tS0000" + campo("Sessao") +
           "\tT00000077\tERRO\t\tArquivo = middleware/Base\tLinha = 120\tLog = hr = m_Index.Le(a)\t" +
           rErro["Parametros"][0].get<std::string>() + "\tx = 5\n";
}

constexpr const char* k_szPosicao = "E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA";

class Registro : public testing::Test {
  protected:
    Registro() {
        std::filesystem::create_directories(m_Diretorio.Junta("001/DF"));
        m_Diretorio.CriaArquivo("001/DF/XVProfilerErros_Base_202610.log", k_sCabecalho + Linha(m_Outubro));
        // A line that is no record, too long for one, hides none of the others.
        m_Diretorio.CriaArquivo(
            "001/DF/XVProfilerErros_Base_202611.log",
            k_sCabecalho + Linha(m_Manha) + std::string(1024 * 1024 + 1, 'x') + '\n' + Linha(m_Noite));
        m_Diretorio.CriaArquivo("XVProfilerErros_Base_202611.log", k_sCabecalho + Linha(m_Programas));
        m_Diretorio.CriaArquivo(
            "XVProfiler.log",
            k_sCabecalho +
                "21/11/2026\t10:11:13\txvcr\tana\tCTroca::Le\tE001\tU007\tS0044\tT78\tSAIU\t15\t"
                "\t\tFim\tn = 3\t\tm = \x1b\n");
    }

    // The records that the options show, in their order.
    json Mostra(const std::string& sOpcoes, const TArgumentos& rMais = {}) const {
        TArgumentos listaTudo = XVPalavras("--json registro " + sOpcoes);
        listaTudo.insert(listaTudo.end(), {"--diretorio", m_Diretorio.GetCaminho()});
        listaTudo.insert(listaTudo.end(), rMais.begin(), rMais.end());
        const SExecucao execucao = XVExecutaAqui(listaTudo);
        EXPECT_EQ(execucao.iSaida, 0) << execucao.sErro;
        return XVLinhasJson(execucao.sSaida);
    }

    const json m_Outubro = Erro("2026-10-31T23:59:58", "001", 7, 41, "CBase::Le", "81080AAA", k_szPosicao);
    const json m_Manha = Erro("2026-11-20T00:00:00", "001", 8, 42, "CBase::Grava", "81080C67",
                              "E_XVCR_TENTATIVA_GRAVACAO_INTEGRACAO_COM_CHAVE_SISTEMA_TERCEIRO_ZERADA");
    const json m_Noite = Erro("2026-11-20T23:59:59", "002", 0, 43, "CBase::Le", "0ABCDEF1", nullptr);
    const json m_Programas = Erro("2026-11-21T10:11:12", "001", 7, 44, "CTroca::Le", "81080AAA", k_szPosicao);
    CXVDiretorioTeste m_Diretorio;
};

TEST_F(Registro, CadaOpcaoMostraOsSeus) {
    const struct {
        std::string sOpcoes;
        std::vector<json> esperados;
    } aCasos[] = {
        {"", {m_Outubro, m_Manha, m_Noite}},
        {"--ultimos 2", {m_Manha, m_Noite}},
        {"--ultimos 9", {m_Outubro, m_Manha, m_Noite}},
        {"--mes 202610", {m_Outubro}},
        {"--de 2026-11-20", {m_Manha, m_Noite}},
        {"--de 2026-11-20T00:00:01", {m_Noite}},
        {"--ate 2026-11-20", {m_Outubro, m_Manha, m_Noite}},
        {"--ate 2026-11-20T23:59:58", {m_Outubro, m_Manha}},
        {"--ate 2026-11-19", {m_Outubro}},
        {"--do-usuario 8", {m_Manha}},
        {"--da-sessao 0043", {m_Noite}},
        {"--da-sessao 8", {}},
        {"--da-empresa 002", {m_Noite}},
        {"--funcao grava", {m_Manha}},
        {"--codigo 0x81080aaa", {m_Outubro}},
        {"--codigo 180150001", {m_Noite}},
        {"--codigo 81080AAA", {m_Outubro}},
        {"--codigo E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA", {m_Outubro}},
        {"--funcao le --ultimos 1", {m_Noite}},
    };
    for (const auto& rCaso : aCasos)
        EXPECT_EQ(Mostra("--empresa 001 " + rCaso.sOpcoes), json(rCaso.esperados)) << rCaso.sOpcoes;
    const std::string sArquivo = m_Diretorio.Junta("001/DF/XVProfilerErros_Base_202610.log");
    EXPECT_EQ(Mostra("", {"--arquivo", sArquivo}), json::array({m_Outubro}));
    const std::string sSemFim = k_sCabecalho + Linha(m_Manha) + Linha(m_Noite);
    m_Diretorio.CriaArquivo("sem fim.log", sSemFim.substr(0, sSemFim.size() - 1));
    EXPECT_EQ(Mostra("", {"--arquivo", m_Diretorio.Junta("sem fim.log")}), (json{m_Manha, m_Noite}));
}

TEST_F(Registro, SemEmpresaOsDosProgramas) {
    EXPECT_EQ(Mostra(""), json::array({m_Programas}));
    const std::string sSaiu =
        "2026-11-21T10:11:13  SAIU      001     u7/s44     -           "
        "CTroca::Le                                    Fim    15 ms  n = 3  m = \\x1B\n";
    // The installation's directory, where none is given.
    CXVRegistryFalso registry;
    registry.SetTexto(CAmbienteXV::GetChaveRegistry(k_eModuloBase), "Path", m_Diretorio.GetCaminho());
    const CXVGuardaRegistry guarda(registry);
    EXPECT_EQ(XVExecutaAqui({"registro"}).sSaida,
              "2026-11-21T10:11:12  ERRO      001     u7/s44     0x81080AAA  "
              "CTroca::Le                                    middleware/Base:120         "
              "E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA  m_Index.Le(a)\n");
    EXPECT_EQ(XVExecutaAqui({"registro", "--perfil"}).sSaida, sSaiu);
    EXPECT_EQ(XVExecutaAqui({"--empresa", "001", "registro", "--perfil"}).sSaida, sSaiu)
        << "one for all companies";
    EXPECT_EQ(Mostra("--perfil").at(0)["Parametros"], json({"n = 3", "m = \\x1B"})) << "also in JSON";
}

// A log far larger than what its last records need, with lines in it that are none, and without a line feed
// at its end.
TEST_F(Registro, UltimosSaoLidosDoFim) {
    const auto linha = [](unsigned i) {
        return Erro("2026-12-01T10:00:00", "001", i, 45, i % 100 == 7 ? "CBase::Rara" : "CBase::Le",
                    "81080AAA", k_szPosicao);
    };
    std::string sLog = k_sCabecalho + std::string(300'000, 'x') + '\n';
    for (unsigned i = 1000; i < 4000; ++i) sLog += Linha(linha(i));
    const std::string sCortada = Linha(linha(1)).substr(3, 20) + '\n';
    sLog += sCortada + Linha(linha(4000)) + sCortada + Linha(linha(4001));
    sLog.pop_back();
    m_Diretorio.CriaArquivo("001/DF/XVProfilerErros_Base_202612.log", sLog);
    std::vector<json> esperadas;
    for (unsigned i = 3002; i <= 4001; ++i) esperadas.push_back(linha(i));
    EXPECT_EQ(Mostra("--empresa 001 --ultimos 1000"), json(esperadas));
    EXPECT_EQ(Mostra("--empresa 001 --funcao rara --ultimos 2"), (json{linha(3807), linha(3907)}));
    EXPECT_EQ(Mostra("--empresa 001 --da-sessao 43 --ultimos 1"), json::array({m_Noite})) << "a month before";

    const SExecucao duas = XVExecutaAqui(
        {"registro", "--ultimos", "2", "--diretorio", m_Diretorio.GetCaminho(), "--empresa", "001"});
    const std::size_t uiFim = sLog.size() - Linha(linha(4001)).size() + 1;
    const auto aviso = [&](std::size_t uiByte) {
        std::filesystem::path path(m_Diretorio.Junta("001/DF/XVProfilerErros_Base_202612.log"));
        return "xvcr: aviso: \"" + path.make_preferred().string() + "\", linha que termina no byte " +
               std::to_string(uiByte) + ": cortada ou longa demais, não é mostrada\n";
    };
    EXPECT_EQ(duas.sErro, aviso(uiFim - sCortada.size() - Linha(linha(4000)).size()) + aviso(uiFim));
}

// What was shown from the end is followed from there.
TEST_F(Registro, SegueDepoisDosUltimosNosMesesQueNaoLeu) {
    const json nova = Erro("2026-11-21T10:00:00", "001", 7, 45, "CBase::Le", "81080AAA", k_szPosicao);
    CXVRelogioFalso relogio;
    relogio.SetAoDormir([&](XVUInt64 uiDormidas) {
        if (uiDormidas > 2) return;
        std::ofstream(m_Diretorio.Junta(std::string("001/DF/XVProfilerErros_Base_") +
                                        (uiDormidas == 1 ? "202610" : "202611") + ".log"),
                      std::ios::app | std::ios::binary)
            << Linha(nova);
    });
    const CXVGuardaRelogio guarda(relogio);
    EXPECT_EQ(Mostra("--empresa 001 --segue --por 1 --ultimos 1"), (json{m_Noite, nova, nova}));
}

// A failure of a record that cannot be read, which stands in a line of another form, after two lost lines.
TEST_F(Registro, CodigoNoLugarDaExpressaoELinhasPerdidas) {
    m_Diretorio.CriaArquivo("outra.log",
                            "Data\tHora\tClasseFuncao\tFiller\tFiller\tTipo\tLog\tParameter1\tParameter2\n"
                            "21/11/2026\t10:11:12\tCA::Le\tPerdidas = 2\t\tERRO\tLog = hr = 0x81080AAA\t"
                            "Descrição = Não há\tArquivo = a.dat\n");
    const json esperada{{"DataHora", "2026-11-21T10:11:12"},
                        {"Tipo", "ERRO"},
                        {"ClasseFuncao", "CA::Le"},
                        {"Codigo", "0x81080AAA"},
                        {"Nome", k_szPosicao},
                        {"Mensagem", "Não há"},
                        {"Perdidas", "2"},
                        {"Parametros", {"Descrição = Não há", "Arquivo = a.dat"}}};
    const TArgumentos listaArquivo{"--arquivo", m_Diretorio.Junta("outra.log")};
    EXPECT_EQ(Mostra("--codigo=-2130179414", listaArquivo), json::array({esperada}));
    EXPECT_TRUE(XVExecutaAqui({"registro", "--arquivo", listaArquivo[1]})
                    .sSaida.ends_with("Descrição = Não há  Arquivo = a.dat  (2 antes não gravadas)\n"));
}

// Records of the log that there is, of a month that begins, and one whose line is not yet whole.
TEST_F(Registro, SegueOQueChegaPeloTempoPedido) {
    const json primeira = Erro("2026-11-21T10:00:00", "001", 7, 45, "CBase::Le", "81080AAA", k_szPosicao);
    const json segunda = Erro("2026-12-01T10:00:00", "001", 7, 46, "CBase::Le", "81080AAA", k_szPosicao);
    const json terceira = Erro("2026-11-22T10:00:00", "001", 8, 45, "CBase::Le", "81080AAA", k_szPosicao);
    const json quarta = Erro("2026-11-23T10:00:00", "001", 8, 46, "CBase::Le", "81080AAA", k_szPosicao);
    const auto anexa = [&](const char* pszMes, const std::string& sTexto) {
        std::ofstream(m_Diretorio.Junta(std::string("001/DF/XVProfilerErros_Base_") + pszMes + ".log"),
                      std::ios::app | std::ios::binary)
            << sTexto;
    };
    CXVRelogioFalso relogio;
    relogio.SetAoDormir([&](XVUInt64 uiDormidas) {
        if (uiDormidas == 2) anexa("202611", Linha(primeira) + Linha(terceira).substr(0, 30));
        if (uiDormidas == 3) anexa("202612", k_sCabecalho + Linha(m_Manha) + Linha(segunda));
        if (uiDormidas == 4) anexa("202611", Linha(terceira).substr(30));
        if (uiDormidas == 5) {  // moved away with a line not yet shown, and begun anew
            anexa("202611", Linha(quarta));
            std::error_code erro;  // Windows does not let a file be moved that somebody reads
            std::filesystem::rename(m_Diretorio.Junta("001/DF/XVProfilerErros_Base_202611.log"),
                                    m_Diretorio.Junta("001/DF/antigo.log"), erro);
            std::string sNovo = erro ? "" : k_sCabecalho;  // longer than what was read of the one before
            for (int i = 0; i < 20; ++i) sNovo += Linha(m_Manha);
            anexa("202611", sNovo + Linha(m_Noite));
        }
    });
    const CXVGuardaRelogio guarda(relogio);
    EXPECT_EQ(Mostra("--empresa 001 --segue --por 2 --ultimos 1 --funcao Le"),
              json::array({m_Noite, primeira, segunda, terceira, quarta, m_Noite}));
    EXPECT_EQ(relogio.GetMilissegundosDormidos(), 2000U);
    EXPECT_EQ(Mostra("--empresa 001 --segue --por 1 --do-usuario 0").back(), m_Noite);
}

// The entry and the exit of one call, beside another call; and a log that is none.
TEST_F(Registro, EntradaESaidaLevamOMesmoNumero) {
    std::string sLog = "Data\tHora\tClasseFuncao\tGuid\tTipo\tMemoriaComponente\tDeltaMemoria\tDuracao\n";
    for (const char* pszFim : {"CA::Le\t{1}\tENTROU\t\t\t", "CB::Le\t{2}\tENTROU\t\t\t",
                               "CA::Le\t{1}\tSAIU\t5000\t-12\t15", "CA::Le\t{1}\tENTROU\t\t\t"})
        sLog += std::string("21/11/2026\t10:11:12\t") + pszFim + '\n';
    m_Diretorio.CriaArquivo("XVProfiler.log", sLog + "cortada\n");
    m_Diretorio.CriaArquivo("sem.log", Linha(m_Manha) + Linha(m_Noite));
    const SExecucao perfil = XVExecutaAqui({"registro", "--perfil", "--diretorio", m_Diretorio.GetCaminho()});
    std::string sNumeros;
    for (std::size_t i = 0; (i = perfil.sSaida.find('#', i)) != std::string::npos; ++i)
        sNumeros += perfil.sSaida[i + 1];
    EXPECT_EQ(sNumeros, "1213") << perfil.sSaida;
    EXPECT_NE(perfil.sSaida.find("#1  memória 5000 (-12)  15 ms\n"), std::string::npos) << perfil.sSaida;
    EXPECT_TRUE(perfil.sErro.ends_with("linha 6: cortada ou longa demais, não é mostrada\n")) << perfil.sErro;
    const SExecucao sem = XVExecutaAqui({"registro", "--arquivo", m_Diretorio.Junta("sem.log")});
    EXPECT_EQ(sem.sSaida, "");
    EXPECT_EQ(sem.sErro, "xvcr: aviso: \"" + m_Diretorio.Junta("sem.log") +
                             "\", linha 1: o log não começa por um cabeçalho; o que vem antes de um não é "
                             "mostrado\n");
}

TEST(LinhaLog, LinhaEstranhaOuCortadaNaoDerruba) {
    const CXVCabecalhoLog cabecalho(k_sCabecalho.substr(0, k_sCabecalho.size() - 1));
    SLinhaLog linha;
    for (const char* pszLinha : {"", "x", "\t\t\t", "21-11-2026\t13:05:09", "21/11/2026\t13:05"})
        EXPECT_FALSE(cabecalho.Le(pszLinha, &linha)) << pszLinha;
    const std::string sErro =
        Linha(Erro("2026-11-21T10:00:00", "001", 7, 45, "CBase::Le", "81080AAA", nullptr));
    for (std::size_t i = 20; i < sErro.size(); ++i) EXPECT_TRUE(cabecalho.Le(sErro.substr(0, i), &linha));
    EXPECT_TRUE(
        cabecalho.Le("21/11/2026\t13:05:09\t\t\tf\t\t\t\t\tERRO\t\t\t\tErro ao deletar x DW: 32.", &linha));
    EXPECT_EQ(linha.sMensagem, "Erro ao deletar x DW: 32.");
    EXPECT_EQ(linha.sExpressao, "");
}

// December is a month, the last records of two logs are not more than those, and what is no month is refused.
TEST_F(Registro, MesesEOsUltimosDeDoisLogs) {
    const json outra = Erro("2026-10-31T23:59:59", "001", 7, 41, "CBase::Le", "81080AAA", k_szPosicao);
    m_Diretorio.CriaArquivo("001/DF/XVProfilerErros_Base_202610.log",
                            k_sCabecalho + Linha(m_Outubro) + Linha(outra));
    m_Diretorio.CriaArquivo("001/DF/XVProfilerErros_Base_202612.log", k_sCabecalho + Linha(m_Programas));
    EXPECT_EQ(Mostra("--empresa 001 --mes 202612"), json::array({m_Programas}));
    EXPECT_EQ(Mostra("--empresa 001 --mes 202601"), json::array());
    EXPECT_EQ(Mostra("--empresa 001 --ultimos 4"), (json{outra, m_Manha, m_Noite, m_Programas}));
    EXPECT_EQ(Mostra("--empresa 001 --ultimos 5"), (json{m_Outubro, outra, m_Manha, m_Noite, m_Programas}));
    for (const std::string sMes : {"202600", "202613", "20261", "2026012", "20261x", ""}) {
        const SExecucao execucao = XVExecutaAqui({"--empresa", "001", "registro", "--mes", sMes});
        EXPECT_EQ(execucao.iSaida, 2) << sMes;
        EXPECT_NE(execucao.sErro.find("esperado um mês: AAAAMM"), std::string::npos) << execucao.sErro;
    }
}

// A log that took the place of the one that is followed has its length, and only its records are others.
TEST_F(Registro, SegueOLogQueTomouOLugarDeOutro) {
    const json outra = Erro("2026-11-20T00:00:01", "001", 8, 42, "CBase::Grava", "81080C67",
                            m_Manha["Nome"].get<std::string>().c_str());
    const std::string sArquivo = m_Diretorio.Junta("segue.log");
    const auto escreve = [&](const std::string& sTexto) {
        std::ofstream(sArquivo, std::ios::binary) << sTexto;
    };
    escreve(k_sCabecalho);
    CXVRelogioFalso relogio;
    relogio.SetAoDormir([&](XVUInt64 uiDormidas) {
        if (uiDormidas == 1) escreve(k_sCabecalho + Linha(m_Manha));
        if (uiDormidas == 2) escreve(k_sCabecalho + Linha(outra));
    });
    const CXVGuardaRelogio guarda(relogio);
    EXPECT_EQ(Mostra("--segue --por 1", {"--arquivo", sArquivo}), (json{m_Manha, outra}));
}

}  // namespace
