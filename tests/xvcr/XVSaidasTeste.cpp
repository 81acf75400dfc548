// What the commands say of what no small store has: numbers of seven digits, terabytes, a file that cannot be
// read. And when progress is shown, and which names a word may have meant.
#include <gtest/gtest.h>

#include "client/XVClienteCodigos.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tools/xvcr/commands/XVSaidaResumo.h"
#include "tools/xvcr/commands/XVSaidaVerificacao.h"
#include "tools/xvcr/output/XVProgresso.h"
#include "tools/xvcr/text/XVParecido.h"

namespace {

template <class TFn>
std::string Saida(TFn fnMostra, bool bJson = false) {
    CXVSaida saida;
    saida.SetJson(bJson);
    testing::internal::CaptureStdout();
    fnMostra(saida);
    return testing::internal::GetCapturedStdout();
}

TEST(SaidaResumo, NumerosETamanhosGrandesERotulos) {
    SResumoLoja r;
    r.uiIntegracoes = 1234567;
    r.auiPendentes = {1, 22, 333, 4444, 1000000};
    r.maisAntiga = {REG_XVDMC::Cria(1, 9, REG_XVDMA::Cria(2026, 11, 21)), 59};
    r.uiFalhas = 121;
    r.uiFalhasForaDosGrupos = 55;
    const auto diz = [&](const std::string& sParte) {
        const std::string s = Saida([&](CXVSaida& rSaida) { XVMostraResumo(rSaida, "001", r, true); });
        EXPECT_NE(s.find(sParte), std::string::npos) << sParte << '\n' << s;
    };
    diz(": 1.234.567 integrações.\nPendentes: 1.004.800; a mais antiga, 20261121-9-1, espera há 0 h 0 "
        "min.\n");
    diz("\n        4.444  até 30 dias\n    1.000.000  mais de 30 dias\n");
    diz("\n          121  com outras mensagens (--json mostra mais)\n");
    EXPECT_EQ(XVResumoEmJson("001", r)["erros"].dump(),
              R"({"quantidade":121,"foraDosGrupos":55,"grupos":[]})");
    const std::pair<XVUInt64, const char*> aTamanhos[] = {{0, "0 bytes"},
                                                          {1023, "1.023 bytes"},
                                                          {1024, "1,0 KB"},
                                                          {1536, "1,5 KB"},
                                                          {10239, "10,0 KB"},
                                                          {1023 * 1024, "1.023,0 KB"},
                                                          {1024 * 1024 - 1, "1,0 MB"},
                                                          {5ULL << 30, "5,0 GB"},
                                                          {1024ULL << 30, "1,0 TB"},
                                                          {12345ULL << 40, "12.345,0 TB"}};
    for (const auto& [uiBytes, pszTexto] : aTamanhos) {
        r.uiBytes = uiBytes;
        diz(std::string("Arquivos de dados: 0, ") + pszTexto + ';');
    }
    CXVPrometheus prometheus;
    prometheus.Inclui("a\"b\\c\nd", {});
    EXPECT_NE(prometheus.Monta().find("\nxvcr_integracoes_ilegiveis{empresa=\"a\\\"b\\\\c\\nd\"} 0\n"),
              std::string::npos);
}

const std::string k_sVerificacao =
    R"(Empresa 002: de 1.234.567 integrações, 1 está inteira e 1.234.566 não.

Danos:
- o arquivo não pôde ser lido até o fim
  21/11/2026  c.dat (2): x
  O que fazer: Confira as permissões e o disco, e verifique de novo.
- falta o JSON enviado (1.021 integrações)
  02/01/2026  a\x1B.dat  20260102-10-1 a 20260102-11-1: det\x7F
    )" +
    XVCliente::DescreveCodigo(E_INVALIDARG) + R"(
  03/01/2026  d.dat  20260103-5-1
  O que fazer: Primeiro torne legível o arquivo acima e verifique de novo.

Notas:
- o arquivo não é da base
  n1
  O que fazer: Nada.

Arquivos lidos: 4.444, 1.000 bytes; comparados com seu selo: 7.
Textos que nenhum registro aponta mais: 999, 100.000 bytes.
Substituídas por outra do banco com a mesma chave: 22.
Posições vagas, de integrações que se perderam: 12.
)";

TEST(SaidaVerificacao, OQueNaoSeLeVemPrimeiroECadaNumeroNoSeuLugar) {
    SVerificacao r{1234567, 1, 22, 333, 4444, 1000, 999, 100000, 12, 7, {}};
    r.listaAchados = {{EAchado::eArquivoEstranho, "n1", 0, S_OK, 1, {}, ""},
                      {EAchado::eSemJSON, "a\x1b.dat", 20260102, E_INVALIDARG, 1020, {{10, 11}}, "det\x7f"},
                      {EAchado::eArquivoIlegivel, "c.dat", 20261121, S_OK, 2, {}, "x"},
                      {EAchado::eSemJSON, "d.dat", 20260103, S_OK, 1, {{5, 5}}, ""}};
    const auto mostra = [&](CXVSaida& rSaida) { XVMostraVerificacao(rSaida, "002", r); };
    EXPECT_EQ(Saida(mostra), k_sVerificacao);
    const std::string sJson = Saida(mostra, true);
    EXPECT_TRUE(sJson.starts_with(R"({"achado":"arquivoIlegivel",)")) << sJson;
    EXPECT_TRUE(sJson.ends_with(
        R"({"integra":false,"integracoes":1234567,"inteiras":1,"substituidas":22,"dias":333,"arquivos":4444,)"
        R"("bytes":1000,"textosMortos":999,"bytesMortos":100000,"posicoesVagas":12,"arquivosComSelo":7})"
        "\n"))
        << sJson;
}

// On the terminal often, in lines once a second, and nothing where nobody looks.
TEST(Progresso, QuantasVezesEComo) {
    CXVRelogioFalso relogio;
    const CXVGuardaRelogio guarda(relogio);
    const auto mostra = [&](EProgresso eProgresso) {
        testing::internal::CaptureStderr();
        {
            CXVProgresso progresso(eProgresso);
            for (unsigned uiPasso : {0U, 199U, 1U, 199U, 1U, 599U, 1U, 1000U}) {
                relogio.Avanca(uiPasso);
                progresso.Mostra([&] { return std::to_string(progresso.GetDecorrido()); });
            }
            progresso.Apaga();
        }
        return testing::internal::GetCapturedStderr();
    };
    EXPECT_EQ(mostra(EProgresso::eEmLinhas), "0\n1000\n2000\n");
    EXPECT_EQ(mostra(EProgresso::eNoTerminal),
              "\r0\x1b[K\r200\x1b[K\r400\x1b[K\r999\x1b[K\r2000\x1b[K\r\x1b[K");
    EXPECT_EQ(mostra(EProgresso::eNenhum), "");
}

TEST(QuisDizer, SoOQuePoucasLetrasSeparam) {
    const std::string aNomes[] = {"Erro", "busca", "--limite", "Pendente"};
    const std::pair<const char*, std::string> aCasos[] = {
        {"", ""},     {"ero", "Erro"},         {"erroo", "Erro"},          {"ERRA", "Erro"},
        {"er", ""},   {"rero", "Erro"},        {"eror", "Erro"},           {"orre", ""},
        {"bu", ""},   {"cusba", ""},           {"pedente", "Pendente"},    {"pndnte", "Pendente"},
        {"pdnt", ""}, {"--limit", "--limite"}, {"--limitado", "--limite"}, {"--milite", "--limite"},
        {"--lmt", ""}};
    for (const auto& [pszTexto, sNome] : aCasos)
        EXPECT_EQ(XVQuisDizer(pszTexto, aNomes), sNome.empty() ? "" : " (quis dizer " + sNome + "?)");
    const std::string aLongos[] = {std::string(64, 'x') + 'y', std::string(64, 'z') + 'y'};
    EXPECT_EQ(XVQuisDizer(std::string(64, 'x'), aLongos), " (quis dizer " + aLongos[0] + "?)");
    EXPECT_EQ(XVQuisDizer(std::string(65, 'z'), aLongos), "");
}

}  // namespace
