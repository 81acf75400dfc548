// One damage at a time: all that verification says of it and all that recovery makes of it, byte by byte.
#include "middleware/ConversaoDiario.h"
#include "tests/middleware/XVCenarioVerificacao.h"

namespace {

using namespace XVDanos;

struct SDano {
    const char* pszNome;
    std::function<void(Verificacao&)> fnFaz;  // golden/relatos.txt tells what is found and what comes back
};
void PrintTo(const SDano& rDano, std::ostream* pSaida) {
    *pSaida << rDano.pszNome;
}

class VerificacaoDano : public Verificacao, public testing::WithParamInterface<SDano> {};

const SDano k_aDanos[] = {
    {"Nenhum", [](Verificacao&) {}},
    {"CabecalhoDoIndice", Vira(k_pszIndice, 130)},
    {"IndiceAusente", Some(k_pszIndice)},
    {"IndiceComZeros", Zera(k_pszIndice, 24, 24)},
    {"IndiceComOutroTipo", Poe(k_pszIndice, 32, '\2')},
    {"IndiceSemUm", NosDados(k_pszIndice, [](std::string& rs) { rs.erase(72, 24); })},
    {"IndiceRepetido", NosDados(k_pszIndice, [](std::string& rs) { rs.replace(104, 8, rs.substr(80, 8)); })},
    {"RegistrosCortados", Corta(k_pszDia, 10)},
    {"CabecalhoAtrasado", NoArquivo(k_pszDia, AtrasaCabecalho)},
    {"RegistroZerado", Zera(k_pszDia, 88, 88)},
    {"RegistroImpossivel", Poe(k_pszDia, 19, '\x7f')},
    {"DiaDeOutroDia", Troca(k_pszDia, "CRINTEGMID20240313.dat")},
    {"DiaForaDoCalendario", Copia("CRINTEGMID99999999.dat", k_pszDia)},
    {"TextoDeOutra", Poe(k_pszDia, 2 * 88 + 48, 1)},
    {"CadeiaPartida", Poe(k_pszJSON, 4 + 712 + 3, '\x7f')},
    {"TextoComZeros", Zera(k_pszJSON, 100, 512)},
    {"ZerosNoFim", ZeraFim(k_pszMensagem, 17)},
    {"ZerosPorTextos", Zera(k_pszJSON, 0, 716)},
    {"TamanhoMaior", Poe(k_pszJSON, 1, '\3')},
    {"CabecalhoEmLixoDoDia", Lixo(k_pszDia)},
    {"CabecalhoEmLixoDoIndice", Lixo(k_pszIndice)},
    {"CabecalhoEmLixoDosTextos", Lixo(k_pszMensagem)},
    {"CabecalhoEmLixoDoMapa", Lixo("CRCHAVEREGTER.dat")},
    {"InicioQueNadaDiz", NoArquivo(k_pszMensagem, [](std::string& rs) { rs.replace(0, 246, 246, '#'); })},
    {"MensagensAusentes", Some(k_pszMensagem)},
    {"SoMeioCabecalho", Corta("CRINTEGMIDJSON20240314.dat", 800)},
    {"CabecalhoZerado", NoArquivo(k_pszJSON, [](std::string& rs) { rs.replace(0, 240, 240, '\0'); })},
    {"VersaoAusente", Some("CRMIDDLEWAREVS.dat")},
    {"VersaoQueMudou", Vira("CRMIDDLEWAREVS.dat", 240)},
    {"ControleCortado", Corta(k_pszControle, 2)},
    {"CopiaDeixada", Troca("CRDTHRINTEG.tra", "CRDTHRINTEG.dat")},
    {"DatasComZeros", Zera("CRDTHRINTEG.dat", 0, 32)},
    {"DatasAusentes", Some("CRDTHRINTEG.dat")},
    {"DatasComResto", NosDados("CRDTHRINTEG.dat", [](std::string& rs) { rs += "resto"; })},
    {"DatasCortadas", Corta("CRDTHRINTEG.dat", 32)},
    {"IndiceComResto", NosDados(k_pszIndice, [](std::string& rs) { rs += "resto"; })},
    {"IndiceCortado", Corta(k_pszIndice, 24)},
    {"IndiceMaior", NoArquivo(k_pszIndice, [](std::string& rs) { rs += std::string(30, '\0'); })},
    {"IndiceQueNomeiaLonge", Poe(k_pszIndice, 5 * 24 + 8 + 3, '\1')},
    {"IndiceQueNomeiaMuitoLonge", Poe(k_pszIndice, 5 * 24 + 8 + 4, '\3')},
    {"DiaAusente", Some(k_pszDia)},
    {"DiaComLugarVago", NosDados(k_pszDia, [](std::string& rs) { rs.append(88, '\0'); })},
    {"DiaSemCabecalho", NoArquivo(k_pszDia, [](std::string& rs) { rs.erase(0, 240); })},
    {"JSONAusente", Some(k_pszJSON)},
    {"RetornosAusentes", Some("CRINTEGMIDJSONRET20240315.dat")},
    {"MensagemDeOutra", Poe(k_pszDia, 2 * 88 + 52, 1)},
    {"RetornoDeOutra", Poe(k_pszDia, 2 * 88 + 56, 1)},
    {"DuasCadeias", NosDados(k_pszJSON, FazDuasCadeias)},
    {"MapaComZeros", Zera("CRCHAVEREGTER.dat", 0, 40)},
    {"MapaRepetido", NosDados("CRCHAVEREGTER.dat", [](std::string& rs) { rs += rs; })},
    {"DatasRepetidas", NosDados("CRDTHRINTEG.dat", [](std::string& rs) { rs += rs + rs; })},
    {"VersaoCurta", NosDados("CRMIDDLEWAREVS.dat", [](std::string& rs) { rs.resize(2); })},
    {"ControleComMais", NoArquivo(k_pszControle, ListaMais)},
    {"Estranhos", Cria({"notas.txt", "OUTRO.srk", "CRMIDDLEWARE_X.srk", "XVProfilerErros_Base_202403.log"})},
    {"ConversaoNoMeio", Cria({k_pszDiarioConversao, "CRDTHRINTEG.tra", "CRDTHRINTEG.cab"})},
};

TEST_P(VerificacaoDano, EhDitoERecuperado) {
    GetParam().fnFaz(*this);
    const auto antes = m_Arquivos.Retrata();
    SVerificacao verificacao;
    Verifica(&verificacao);
    const std::string sRecuperadas = Recupera();
    const std::string sRelato = XVRelata(verificacao) + m_sRelato;
    EXPECT_EQ(sRelato, XVRelatoEsperado(GetParam().pszNome, sRelato));
    for (const auto& [sPath, arquivo] : antes)
        EXPECT_TRUE(sPath.ends_with('/') || arquivo.sConteudo == m_Arquivos.LeConteudo(sPath)) << sPath;
    EXPECT_EQ(Verifica(nullptr, EGravidade::eDano), "") << "what was recovered is sound";
    TRetratoLoja esperado = m_original;
    TRetratoLoja obtido = XVRetrataLoja(*Abre());
    for (TRetratoLoja* pRetrato : {&esperado, &obtido})
        std::erase_if(*pRetrato, [&](const auto& it) {
            const bool bIntegracao = it.first.starts_with("integracao ");
            return bIntegracao ? sRecuperadas.find(it.first.substr(11)) != std::string::npos
                               : !sRecuperadas.empty() || it.first.starts_with("data e hora ");
        });
    EXPECT_EQ(XVDiferenca(esperado, obtido), "");
    EXPECT_EQ(Verifica(nullptr, EGravidade::eDano), "") << "and stays sound in use";
}
INSTANTIATE_TEST_SUITE_P(Loja, VerificacaoDano, testing::ValuesIn(k_aDanos),
                         [](const auto& rInfo) { return std::string(rInfo.param.pszNome); });

TEST(Achado, CadaUmDizOQueEhEOQueFazer) {
    std::string sTexto;
    for (std::size_t i = 0; i < static_cast<std::size_t>(EAchado::eQuantidade); ++i) {
        const auto eTipo = static_cast<EAchado>(i);
        const SDescricaoAchado& r = XVDescreveAchado(eTipo);
        const std::string sFazer = XVOQueFazer(eTipo, false);
        const std::string sAoLadoDeIlegivel = XVOQueFazer(eTipo, true);
        sTexto += std::string(r.pszNome) + ' ' + std::to_string(static_cast<int>(r.eGravidade)) + ": " +
                  r.pszFrase + " | " + sFazer +
                  (sAoLadoDeIlegivel == sFazer ? "" : " | " + sAoLadoDeIlegivel) + '\n';
    }
    EXPECT_EQ(sTexto, XVRelatoEsperado("Descrições", sTexto));
}

}  // namespace
