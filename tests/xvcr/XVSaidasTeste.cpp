// What the commands say of counts that no small store has: numbers of one to seven digits, ages of minutes to
// years, more findings than are shown. A value of its own in every field, and the whole text of each.
#include <gtest/gtest.h>

#include "client/XVClienteCodigos.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tools/xvcr/commands/XVSaidaResumo.h"
#include "tools/xvcr/commands/XVSaidaVerificacao.h"
#include "tools/xvcr/output/XVProgresso.h"
#include "tools/xvcr/text/XVParecido.h"

namespace {

const std::string k_sParametro = XVCliente::DescreveCodigo(E_INVALIDARG);

REG_XVDMC Dmc(XVUInt ulPonteiro) {
    return REG_XVDMC::Cria(1, ulPonteiro, REG_XVDMA::Cria(2026, 11, 21));
}

template <class TFn>
std::string Saida(TFn fnMostra, bool bJson = false) {
    CXVSaida saida;
    saida.SetJson(bJson);
    testing::internal::CaptureStdout();
    fnMostra(saida);
    return testing::internal::GetCapturedStdout();
}

std::string Resumo(const SResumoLoja& r) {
    return Saida([&](CXVSaida& rSaida) { XVMostraResumo(rSaida, "001", r, true); });
}

SResumoLoja ResumoGrande() {
    SResumoLoja r;
    r.regMomento = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2026, 11, 21), 47109);
    r.uiIntegracoes = 1234567;
    r.uiIlegiveis = 1;
    r.auiPendentes = {1, 22, 333, 4444, 1000000};
    r.maisAntiga = {Dmc(9), 1000ULL * 86400 + 23 * 3600 + 59 * 60 + 59};
    r.uiFalhas = 121;
    for (unsigned i = 1; i <= 11; ++i)
        r.mapaFalhas[i == 11 ? "" : "mensagem " + std::string(1, static_cast<char>('a' + i))] = {
            i, Dmc(i), i == 10 ? std::string(80, 'x') : "exemplo " + std::to_string(i) + "\x1b"};
    r.uiFalhasForaDosGrupos = 55;
    for (unsigned i = 1; i <= 11; ++i) r.mapaDias[20261100 + i] = i;
    r.mapaStatusSistema = {{{1, 16}, 100}, {{4, 8}, 2000}, {{4, 2}, 30}, {{77, 8}, 4}};
    r.mapaTipos = {{9, 5}, {6, 50}, {99, 500}};
    r.regPrimeira = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2020, 1, 2), 3661);
    r.regUltima = REG_XVDMAHMSUTC::Cria(REG_XVDMA::Cria(2026, 11, 21), 47000);
    r.uiArquivos = 1012;
    r.uiBytes = 5ULL << 30;
    r.uiTextosMortos = 12;
    r.uiBytesMortos = 1536;
    r.uiMemoria = 1023;
    return r;
}

constexpr const char* k_szResumo = R"(Empresa 001, em 2026-11-21T13:05:09Z: 1.234.567 integrações.
Pendentes: 1.004.800; a mais antiga, 20261121-9-1, espera há 1.000 dias e 23 h.
            1  até 1 hora
           22  até 1 dia
          333  até 7 dias
        4.444  até 30 dias
    1.000.000  mais de 30 dias
Com erro: 121, por mensagem:
           11  (sem mensagem)
               20261121-11-1: exemplo 11\x1B
           10  mensagem k
               20261121-10-1: xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx…
            9  mensagem j
               20261121-9-1: exemplo 9\x1B
            8  mensagem i
               20261121-8-1: exemplo 8\x1B
            7  mensagem h
               20261121-7-1: exemplo 7\x1B
            6  mensagem g
               20261121-6-1: exemplo 6\x1B
            5  mensagem f
               20261121-5-1: exemplo 5\x1B
            4  mensagem e
               20261121-4-1: exemplo 4\x1B
            3  mensagem d
               20261121-3-1: exemplo 3\x1B
            2  mensagem c
               20261121-2-1: exemplo 2\x1B
           56  com outras mensagens (--json mostra mais)
Sem registro legível: 1 integração; veja xvcr verifica.

Por status
        2.030  Erro
          100  Pendente
            4  77

Por sistema
        2.004  OfficialBank
          100  Mercos
           30  SimulacaoSistemaTerceiro

Por tipo
          500  99
           50  CadastroProduto
            5  BuscaPedidos

Por dia
           11  11/11/2026
           10  10/11/2026
            9  09/11/2026
            8  08/11/2026
            7  07/11/2026
            6  06/11/2026
            5  05/11/2026
            4  04/11/2026
            3  03/11/2026
            2  02/11/2026
               e mais 1 dia antes (todos com --json)

Incluídas de 2020-01-02T01:01:01Z a 2026-11-21T13:03:20Z.

Arquivos de dados: 1.012, 5,0 GB; de textos que nada mais aponta: 1,5 KB.
Memória do servidor para índice e mapa de chaves: 1.023 bytes; mais a dos dias
abertos, até MemoriaMembros.
)";

constexpr const char* k_szResumoJson =
    R"({"empresa":"001","momento":"2026-11-21T13:05:09Z","integracoes":1234567,"ilegiveis":1,)"
    R"("pendentes":{"quantidade":1004800,"idades":[{"quantidade":1,"ateSegundos":3600},)"
    R"({"quantidade":22,"ateSegundos":86400},{"quantidade":333,"ateSegundos":604800},)"
    R"({"quantidade":4444,"ateSegundos":2592000},{"quantidade":1000000}],)"
    R"("maisAntiga":{"segundos":86486399,"regDmc":"6439373410954002433","sDmc":"20261121-9-1"}},)"
    R"("erros":{"quantidade":121,"foraDosGrupos":55,"grupos":null},)"
    R"("status":{"Pendente":100,"Erro":2030,"77":4},)"
    R"("sistemas":{"SimulacaoSistemaTerceiro":30,"OfficialBank":2004,"Mercos":100},)"
    R"("tipos":{"CadastroProduto":50,"BuscaPedidos":5,"99":500},"dias":null,)"
    R"("primeiraInclusao":"2020-01-02T01:01:01Z","ultimaInclusao":"2026-11-21T13:03:20Z","arquivos":1012,)"
    R"("bytes":5368709120,"textosMortos":12,"bytesMortos":1536,"memoriaIndices":1023})";

TEST(SaidaResumo, DeUmaBaseGrandeECadaNumeroNoSeuLugar) {
    SResumoLoja r = ResumoGrande();
    EXPECT_EQ(Resumo(r), k_szResumo);
    XVJson json = XVResumoEmJson("001", r);
    ASSERT_EQ(json["erros"]["grupos"].size(), 11U);
    EXPECT_EQ(json["erros"]["grupos"][10].dump(),
              R"({"quantidade":1,"mensagem":"mensagem b","exemplo":"exemplo 1\u001b",)"
              R"("regDmc":"6439373410953871361","sDmc":"20261121-1-1"})");
    json["erros"]["grupos"] = json["dias"] = nullptr;
    EXPECT_EQ(json.dump(), k_szResumoJson);
}

TEST(SaidaResumo, FormasDasIdadesDosTamanhosEDosRotulos) {
    SResumoLoja r = ResumoGrande();
    const auto linha = [&](const char* pszComeco) {
        const std::string sTexto = Resumo(r);
        const std::size_t uiOnde = sTexto.find(pszComeco);
        return uiOnde == std::string::npos ? "" : sTexto.substr(uiOnde, sTexto.find('\n', uiOnde) - uiOnde);
    };
    const struct {
        XVUInt64 uiSegundos, uiBytes;
        const char *pszIdade, *pszBytes;
    } aCasos[] = {
        {0, 0, "há 0 h 0 min.", ", 0 bytes;"},
        {3599, 1024, "há 0 h 59 min.", ", 1,0 KB;"},
        {3600, 10239, "há 1 h 0 min.", ", 10,0 KB;"},
        {86399, 1024 * 1024 - 1, "há 23 h 59 min.", ", 1,0 MB;"},
        {86400, 1024ULL << 30, "há 1 dia e 0 h.", ", 1,0 TB;"},
        {2 * 86400 + 3599, 12345ULL << 40, "há 2 dias e 0 h.", ", 12.345,0 TB;"},
        {2 * 86400 + 5 * 3600, 1023 * 1024, "há 2 dias e 5 h.", ", 1.023,0 KB;"},
    };
    for (const auto& rCaso : aCasos) {
        r.maisAntiga->second = rCaso.uiSegundos;
        r.uiBytes = rCaso.uiBytes;
        EXPECT_TRUE(linha("Pendentes").ends_with(rCaso.pszIdade)) << linha("Pendentes");
        EXPECT_NE(linha("Arquivos").find(rCaso.pszBytes), std::string::npos) << linha("Arquivos");
    }
    r.mapaDias[20261012] = 1;
    EXPECT_EQ(linha("               e mais"), "               e mais 2 dias antes (todos com --json)");
    CXVPrometheus prometheus;
    prometheus.Inclui("a\"b\\c\nd", {});
    EXPECT_TRUE(
        prometheus.Monta().starts_with("# HELP xvcr_integracoes_ilegiveis Integrações que o índice conhece e "
                                       "cujo registro não pode ser lido."
                                       "\n# TYPE xvcr_integracoes_ilegiveis gauge\n"
                                       "xvcr_integracoes_ilegiveis{empresa=\"a\\\"b\\\\c\\nd\"} 0\n"))
        << prometheus.Monta();
}

const std::string k_sVerificacao =
    R"(Empresa 002: de 1.234.567 integrações, 1 está inteira e 1.234.566 não.

Danos:
- o arquivo não pôde ser lido até o fim
  21/11/2026  c.dat (2): x
  O que fazer: Confira as permissões e o disco, e verifique de novo.
- falta o JSON enviado (1.021 integrações)
  02/01/2026  a\x1B.dat  20260102-10-1 a 20260102-11-1, 20260102-20-1, 20260102-30-1 a 20260102-31-1, )"
    R"(20260102-40-1, 20260102-50-1 a 20260102-51-1, 20260102-60-1, 20260102-70-1 a )"
    R"(20260102-71-1, 20260102-80-1 e outras (todas com --json): det\x7F
    )" +
    k_sParametro + R"(
  03/01/2026  d.dat  20260103-5-1
  O que fazer: Primeiro torne legível o arquivo acima e verifique de novo.

Avisos:
- o arquivo tem mais de um registro com a mesma chave; vale o primeiro
  b.dat (1.234)
  O que fazer: Nada a temer; se o valor que aparece não é o esperado, grave-o de novo.

Notas:
- o arquivo não é da base
  n1
  O que fazer: Nada.

Arquivos lidos: 4.444, 1.000 bytes; comparados com seu selo: 7.
Textos que nenhum registro aponta mais: 999, 100.000 bytes.
Substituídas por outra do banco com a mesma chave: 22.
Posições vagas, de integrações que se perderam: 12.
)";

TEST(SaidaVerificacao, MuitosAchadosFaixasENumeros) {
    SVerificacao r{1234567, 1, 22, 333, 4444, 1000, 999, 100000, 12, 7, {}};
    SXVAchado semJson{EAchado::eSemJSON, "a\x1b.dat", 20260102, E_INVALIDARG, 1020, {}, "det\x7f"};
    for (XVUInt ul = 1; ul <= 9; ++ul) semJson.aFaixas.push_back({ul * 10, ul * 10 + ul % 2});
    r.listaAchados = {{EAchado::eArquivoEstranho, "n1", 0, S_OK, 1, {}, ""},
                      semJson,
                      {EAchado::eLancamentoRepetido, "b.dat", 0, S_OK, 1234, {}, ""},
                      {EAchado::eArquivoIlegivel, "c.dat", 20261121, S_OK, 2, {}, "x"},
                      {EAchado::eSemJSON, "d.dat", 20260103, S_OK, 1, {{5, 5}}, ""}};
    const std::string sTexto = Saida([&](CXVSaida& rSaida) { XVMostraVerificacao(rSaida, "002", r); });
    EXPECT_EQ(sTexto, k_sVerificacao);
    const std::string sJson = Saida([&](CXVSaida& rSaida) { XVMostraVerificacao(rSaida, "002", r); }, true);
    std::string sAchados;
    for (std::size_t i = 0; (i = sJson.find("{\"achado\":\"", i)) != std::string::npos; ++i)
        sAchados += sJson.substr(i + 11, sJson.find('"', i + 11) - i - 11) + ' ';
    EXPECT_EQ(sAchados, "arquivoIlegivel arquivoEstranho semJSON lancamentoRepetido semJSON ");
    EXPECT_TRUE(sJson.ends_with(
        R"({"integra":false,"integracoes":1234567,"inteiras":1,"substituidas":22,"dias":333,"arquivos":4444,)"
        R"("bytes":1000,"textosMortos":999,"bytesMortos":100000,"posicoesVagas":12,"arquivosComSelo":7})"
        "\n"))
        << sJson;
}

TEST(SaidaVerificacao, PrimeiraLinhaDeCadaContagem) {
    const auto primeira = [](const SVerificacao& rDe) {
        const std::string s = Saida([&](CXVSaida& rSaida) { XVMostraVerificacao(rSaida, "002", rDe); });
        return s.substr(13, s.find('\n') - 13);
    };
    const std::vector<SXVAchado> listaDano{{.eTipo = EAchado::eArquivoAusente, .sArquivo = "x"}};
    EXPECT_EQ(primeira({.uiIntegracoes = 3, .uiInteiras = 2, .listaAchados = {}}),
              "de 3 integrações, 2 estão inteiras e 1 não.");
    EXPECT_EQ(primeira({.uiIntegracoes = 1, .listaAchados = {}}),
              "de 1 integração, 0 estão inteiras e 1 não.");
    EXPECT_EQ(primeira({.uiIntegracoes = 1, .uiInteiras = 1, .listaAchados = listaDano}),
              "a única integração está inteira, mas a base tem danos.");
    EXPECT_EQ(primeira({.uiIntegracoes = 1000, .uiInteiras = 1000, .uiDias = 999, .listaAchados = {}}),
              "todas as 1.000 integrações, de 999 dias, estão inteiras, e a base está íntegra.");
    EXPECT_EQ(primeira({.listaAchados = {{.eTipo = EAchado::eVersaoAnterior, .sArquivo = ""}}}),
              "a base é de outra versão, e as integrações não foram verificadas.");
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
    const auto achado = [&](std::string_view s) {
        const std::string sTexto = XVQuisDizer(s, aNomes);
        return sTexto.empty() ? sTexto : sTexto.substr(13, sTexto.size() - 15);
    };
    for (const auto& [sTexto, sNome] :
         std::vector<std::pair<std::string, std::string>>{{"", ""},
                                                          {"ero", "Erro"},
                                                          {"erroo", "Erro"},
                                                          {"ERRA", "Erro"},
                                                          {"er", ""},
                                                          {"rero", "Erro"},
                                                          {"eror", "Erro"},
                                                          {"orre", ""},
                                                          {"bu", ""},
                                                          {"cusba", ""},
                                                          {"pedente", "Pendente"},
                                                          {"pndnte", "Pendente"},
                                                          {"pdnt", ""},
                                                          {"--limit", "--limite"},
                                                          {"--limitado", "--limite"},
                                                          {"--milite", "--limite"},
                                                          {"--lmt", ""}})
        EXPECT_EQ(achado(sTexto), sNome) << sTexto;
    const std::string aLongos[] = {std::string(64, 'x') + 'y', std::string(64, 'z') + 'y'};
    EXPECT_EQ(XVQuisDizer(std::string(64, 'x'), aLongos), " (quis dizer " + aLongos[0] + "?)");
    EXPECT_EQ(XVQuisDizer(std::string(65, 'z'), aLongos), "");
}

// At each limit of what is shown nothing more is promised.
TEST(SaidaVerificacao, NoLimiteNadaMaisSeAnuncia) {
    SVerificacao r{
        .uiIntegracoes = 2, .uiInteiras = 2, .uiSubstituidas = 1, .uiPosicoesVagas = 1, .listaAchados = {}};
    SXVAchado achado{EAchado::eSemJSON, "a.dat", 20260102, S_OK, 1, {}, ""};
    for (XVUInt ul = 1; ul <= 8; ++ul) achado.aFaixas.push_back({ul, ul});
    r.listaAchados.push_back(achado);
    std::string sLugares;
    for (int i = 1; i <= 20; ++i) {
        sLugares += "  n" + std::to_string(i) + '\n';
        r.listaAchados.push_back(
            {.eTipo = EAchado::eArquivoEstranho, .sArquivo = "n" + std::to_string(i), .uiQuantidade = 1});
    }
    const std::string sTexto = Saida([&](CXVSaida& rSaida) { XVMostraVerificacao(rSaida, "002", r); });
    const std::string sFaixas =
        "  02/01/2026  a.dat  20260102-1-1, 20260102-2-1, 20260102-3-1, 20260102-4-1, 20260102-5-1, "
        "20260102-6-1, 20260102-7-1, 20260102-8-1\n  O que fazer";
    EXPECT_NE(sTexto.find(sFaixas), std::string::npos) << sTexto;
    EXPECT_NE(sTexto.find('\n' + sLugares + "  O que fazer"), std::string::npos) << sTexto;
    EXPECT_TRUE(
        sTexto.ends_with("Substituídas por outra do banco com a mesma chave: 1.\n"
                         "Posições vagas, de integrações que se perderam: 1.\n"))
        << sTexto;
}

}  // namespace
