// Damage done to a sound store: verification names it, recovery brings back whatever bytes are there, and the
// store that it makes is sound and answers as the old one did.
#include <gmock/gmock.h>

#include <functional>

#include "middleware/ConversaoDiario.h"
#include "middleware/verificacao/XVMiddlewareComSelos.h"
#include "middleware/verificacao/XVRecuperacao.h"
#include "middleware/verificacao/XVVerificacao.h"
#include "tests/harness/XVGanchoArquivos.h"
#include "tests/harness/XVSistemaArquivosQueda.h"
#include "tests/harness/XVSistemaArquivosSetorRuim.h"
#include "tests/middleware/XVBaseDourada.h"
#include "tests/middleware/XVOperacoesLoja.h"
#include "tests/middleware/XVRelatos.h"
#include "tests/middleware/XVRetratoLoja.h"

namespace {

// Findings that are more than notes: "semJSON 20240315:2-3", "arquivoRecusado CRINDEXINTEG.dat".
std::string Achados(const SVerificacao& rVerificacao, EGravidade eDesde = EGravidade::eAviso) {
    std::string sTexto;
    for (const SXVAchado& rAchado : rVerificacao.listaAchados) {
        if (XVDescreveAchado(rAchado.eTipo).eGravidade < eDesde) continue;
        sTexto += std::string(sTexto.empty() ? "" : "; ") + XVDescreveAchado(rAchado.eTipo).pszNome + ' ';
        sTexto += rAchado.aFaixas.empty() ? rAchado.sArquivo : std::to_string(rAchado.uiDia) + ':';
        for (const SFaixa& rFaixa : rAchado.aFaixas)
            sTexto += (sTexto.back() == ':' ? "" : ",") + std::to_string(rFaixa.ulDe) +
                      (rFaixa.ulDe == rFaixa.ulAte ? "" : '-' + std::to_string(rFaixa.ulAte));
    }
    return sTexto;
}

class Verificacao : public CXVCenarioLoja {
  public:  // what a damage of the table below works with
    using CXVCenarioLoja::Conteudo;
    using CXVCenarioLoja::m_Arquivos;
    using CXVCenarioLoja::PastaDados;

    Verificacao() {
        EXPECT_TRUE(XVPovoaLoja(*Abre(), [this](unsigned uiDia) { SetDia(uiDia); }));
        m_original = XVRetrataLoja(*Abre());  // all files are listed from now on
        m_arquivos = ArquivosEm(PastaDados());
    }
    // The files of a directory by name; no other logs than the general ones.
    TBytesPorNome ArquivosEm(const std::string& sDiretorio) const {
        TBytesPorNome arquivos;
        for (const auto& [sCaminho, rArquivo] : m_Arquivos.Retrata()) {
            const std::string sNome = sCaminho.substr(sCaminho.rfind('/') + 1);
            const bool bOutroLog = sNome.ends_with(".log") && !sNome.starts_with("XVLogGeral_");
            if (!sNome.empty() && !bOutroLog && sCaminho == sDiretorio + '/' + sNome)
                arquivos[sNome] = rArquivo.sConteudo;
        }
        return arquivos;
    }
    std::string Verifica(SVerificacao* pVerificacao = nullptr, EGravidade eDesde = EGravidade::eAviso) {
        SVerificacao verificacao;
        EXPECT_EQ(CXVVerificacao(PastaDados(), m_Dono).Executa(&verificacao), S_OK);
        if (pVerificacao != nullptr) *pVerificacao = verificacao;
        EXPECT_EQ(verificacao.EhIntegra(), Achados(verificacao, EGravidade::eDano).empty());
        return Achados(verificacao, eDesde);
    }
    HRESULT Sela() {
        SVerificacao verificacao;
        CXVVerificacao executor(PastaDados(), m_Dono);
        EXPECT_EQ(executor.Executa(&verificacao), S_OK);
        return executor.Sela();
    }
    // "20240315-3-1 perdida; 20240315-2-1 com faltas"; from now on the new store is the one that opens.
    std::string Recupera() {
        SRecuperacao& recuperacao = m_recuperacao;
        const std::string sDestino = "/nova/MATRIZ/DF";
        const std::string sSeparados = "/nova/MATRIZ/separados";
        CXVRecuperacao recupera({PastaDados(), sDestino, sSeparados}, m_Dono, true);
        EXPECT_EQ(recupera.Executa(&recuperacao), S_OK);
        m_sRelato = XVRelata(recuperacao) + XVRelataMudancas(m_arquivos, ArquivosEm(sDestino)) +
                    XVRelataMudancas({}, ArquivosEm(sSeparados));
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/nova");
        std::string sTexto;
        for (const SIntegracaoRecuperada& r : recuperacao.listaIntegracoes)
            sTexto += (sTexto.empty() ? "" : "; ") + r.regDmc.ToString() +
                      (r.bPerdida ? " perdida" : " com faltas");
        return sTexto.empty() && !recuperacao.TudoVoltou() ? "bytes" : sTexto;
    }
    void Muda(const std::string& sNome, const std::function<void(std::string&)>& fn) {
        std::string sBytes = Conteudo(sNome);
        fn(sBytes);
        m_Arquivos.CriaArquivo(PastaDados(sNome), sBytes);
    }
    // Changes the payload under a header that vouches for it.
    void MudaDados(const std::string& sNome, const std::function<void(std::string&)>& fn) {
        Muda(sNome, [&](std::string& rs) {
            rs.erase(0, 240);
            fn(rs);
            rs = XVArquivoDoTeste({.sNome = sNome}, rs);
        });
    }
    void Apaga(const std::string& sNome) { EXPECT_TRUE(m_Arquivos.Apaga(PastaDados(sNome)).Ok()); }

    TRetratoLoja m_original;
    TBytesPorNome m_arquivos;
    SRecuperacao m_recuperacao;
    std::string m_sRelato;  // of the last recovery: what it said, and every byte that it made otherwise
};

constexpr const char* k_pszIndice = "CRINDEXINTEG.dat";
constexpr const char* k_pszControle = "XVDATABASE_FILE_CTRL.dat";
constexpr const char* k_pszDia = "CRINTEGMID20240315.dat";
constexpr const char* k_pszJSON = "CRINTEGMIDJSON20240315.dat";
constexpr const char* k_pszMensagem = "CRINTEGMIDMENS20240315.dat";

struct SDano {
    const char* pszNome;
    std::function<void(Verificacao&)> fnFaz;  // golden/relatos.txt tells what is found and what comes back
};
void PrintTo(const SDano& rDano, std::ostream* pSaida) {
    *pSaida << rDano.pszNome;
}

class VerificacaoDano : public Verificacao, public testing::WithParamInterface<SDano> {};

// What is done to a file: to its payload under a header that vouches for it, or to the whole file.
using TMuda = std::function<void(std::string&)>;
auto NosDados(const char* pszNome, TMuda fn) {
    return [=](Verificacao& r) { r.MudaDados(pszNome, fn); };
}
auto NoArquivo(const char* pszNome, TMuda fn) {
    return [=](Verificacao& r) { r.Muda(pszNome, fn); };
}
auto Zera(const char* pszNome, std::size_t uiDe, std::size_t uiBytes) {
    return NosDados(pszNome, [=](std::string& rs) { rs.replace(uiDe, uiBytes, uiBytes, '\0'); });
}
auto ZeraFim(const char* pszNome, std::size_t ui) {
    return NosDados(pszNome, [=](std::string& rs) { rs.replace(rs.size() - ui, ui, ui, '\0'); });
}
auto Poe(const char* pszNome, std::size_t uiOnde, char c) {
    return NosDados(pszNome, [=](std::string& rs) { rs[uiOnde] = c; });
}
auto Vira(const char* pszNome, std::size_t uiOnde) {
    return NoArquivo(pszNome, [=](std::string& rs) { rs[uiOnde] = static_cast<char>(rs[uiOnde] ^ 1); });
}
auto Corta(const char* pszNome, std::size_t uiBytes) {
    return NoArquivo(pszNome, [=](std::string& rs) { rs.resize(rs.size() - uiBytes); });
}
auto Lixo(const char* pszNome) {
    return NoArquivo(pszNome, [](std::string& rs) { rs.replace(0, 240, 240, '#'); });
}
auto Some(const char* pszNome) {
    return [=](Verificacao& r) { r.Apaga(pszNome); };
}
// The content of another file.
auto Troca(const char* pszNome, const char* pszPor) {
    return [=](Verificacao& r) { r.m_Arquivos.CriaArquivo(r.PastaDados(pszNome), r.Conteudo(pszPor)); };
}
// The same payload under a name of its own.
auto Copia(const char* pszNome, const char* pszDe) {
    return [=](Verificacao& r) {
        r.m_Arquivos.CriaArquivo(r.PastaDados(pszNome),
                                 XVArquivoDoTeste({.sNome = pszNome}, r.Conteudo(pszDe).substr(240)));
    };
}

auto Cria(std::vector<std::string> listaNomes) {
    return [=](Verificacao& r) {
        for (const std::string& rNome : listaNomes) r.m_Arquivos.CriaArquivo(r.PastaDados(rNome), "x");
    };
}

const std::string k_sDeDoisRegistros = XVCabecalhoDoTeste({.sNome = k_pszDia}, 2 * 88);
void AtrasaCabecalho(std::string& rs) {
    rs.replace(0, 240, k_sDeDoisRegistros);
}
// The first text's length is lost, and the second ends in what is a text as well.
void FazDuasCadeias(std::string& rs) {
    rs[3] = '\x7f';
    rs.replace(rs.find("{\"outra") - 12, 4, std::string("\4\0\0\0", 4));
}
void ListaMais(std::string& rs) {
    rs += CXVBytes().Texto("crdthrinteg.DAT").Texto("CRINTEGMID20240310.dat").Texto("Y.dat").Str();
}

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

// A sector that the device does not give back: what lies beside it comes back, at its place, whatever the
// sector held. What is not known to be whole is told.
TEST_F(Verificacao, SetorRuimNaoLevaOQueEstaAtras) {
    CXVSistemaArquivosSetorRuim disco(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(disco);
    SetDia(15);
    for (unsigned i = 4; i <= 13; ++i) Grava(*Abre(), CXVIntegracaoTeste(i).Textos("{}", "m", "r"));
    const auto inteiro = m_Arquivos.Retrata();
    m_arquivos = ArquivosEm(PastaDados());
    const auto prova = [&](const char* pszNome, XVUInt64 uiDe, XVUInt64 uiBytes, const std::string& sAchados,
                           const std::string& sRecuperadas) {
        SCOPED_TRACE(std::string(pszNome) + ' ' + std::to_string(uiDe));
        m_Arquivos.Restaura(inteiro);
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/telvo");
        disco.GetTrechos() = {{PastaDados(pszNome), uiDe, uiBytes}};
        SVerificacao verificacao;
        EXPECT_EQ(Verifica(&verificacao), "arquivoIlegivel " + std::string(pszNome) + sAchados);
        EXPECT_EQ(Recupera(), sRecuperadas);
        EXPECT_EQ(Verifica(), "");
        const std::string sRelato = XVRelata(verificacao) + m_sRelato;
        EXPECT_EQ(sRelato,
                  XVRelatoEsperado("Setor " + std::string(pszNome) + ' ' + std::to_string(uiDe), sRelato));
        return XVLe(*Abre(), {XVChaveDmc(k_uiHoje, 3)});
    };
    const std::string sOutra = "{\"outra\":1}" + std::string(700, 'j');
    EXPECT_EQ(prova(k_pszDia, 600, 8, "; ilegivel 20240315:4-9",
                    "20240315-4-1 perdida; 20240315-5-1 perdida; 20240315-6-1 perdida; "
                    "20240315-7-1 perdida; 20240315-8-1 perdida; 20240315-9-1 perdida")
                  .sJSON,
              sOutra);
    EXPECT_EQ(XVLe(*Abre(), {XVChaveDmc(k_uiHoje, 13)}).reg.uiChaveIntegracaoSistemaTerceiro, 13U);
    EXPECT_EQ(prova(k_pszJSON, 1100, 8, "; textoIlegivel 20240315:2", "20240315-2-1 com faltas").sJSON,
              sOutra);
    // The length of the second text, in a sector that begins in the first one.
    std::string sTodas = "20240315-1-1 com faltas";
    for (unsigned i = 2; i <= 13; ++i) sTodas += "; 20240315-" + std::to_string(i) + "-1 com faltas";
    const SIntegracaoLida deduzida =
        prova(k_pszJSON, 956, 4,
              "; cadeiaPartida CRINTEGMIDJSON20240315.dat; semJSON 20240315:1-2; "
              "textoDeduzido 20240315:3-13",
              sTodas);
    EXPECT_EQ(deduzida.sJSON, "") << "counting is no proof";
    EXPECT_EQ(m_Arquivos.LeConteudo("/nova/MATRIZ/separados/CRINTEGMIDJSON20240315.dat.1675"), sOutra);
    EXPECT_NE(deduzida.sMensagem.find("só a contagem"), std::string::npos);
    EXPECT_EQ(prova(k_pszMensagem, 0, 240, "; diaRecusado 20240315:1-13", "bytes").sMensagem,
              "outra enviada");
    prova(k_pszControle, 0, 8, "", "bytes");
    EXPECT_EQ(
        prova("CRCHAVEREGTER.dat", 240, 8, "; lancamentoImpossivel CRCHAVEREGTER.dat", "bytes").sRetorno,
        "{\"outra\":2}" + std::string(300, 'r'));
}

// What only the index knew is not made up, and nobody gets a key that was somebody's.
TEST_F(Verificacao, SemIndiceVoltaComErroEAChaveDoLog) {
    Apaga(k_pszIndice);
    Corta(k_pszDia, 88)(*this);
    EXPECT_EQ(Recupera().find("perdida"), std::string::npos) << "nothing tells of the third of the 15th";
    TLoja pLoja = Abre();
    const SIntegracaoLida lida = XVLe(*pLoja, {XVChaveDmc(k_uiHoje, 1)});
    EXPECT_EQ(lida.reg.eStatusIntegracao, XVUInt{eXVSMiddleware_Erro});
    EXPECT_EQ(lida.reg.eSistemaIntegracao, XVUInt{Tipo_Nenhum});
    EXPECT_EQ(lida.reg.uiChaveIntegracaoSistemaTerceiro, 1U);
    EXPECT_EQ(lida.sJSON, "{\"quinze\":1}" + std::string(700, 'j'));
    EXPECT_NE(lida.sMensagem.find("status e sistema externo não são conhecidos"), std::string::npos);
    EXPECT_NE(lida.sMensagem.find("Mensagem anterior: quinze enviada"), std::string::npos);
}

TEST_F(Verificacao, OQueSeDizProntoEstaNoDispositivo) {
    // What is left of longer ones that were being written.
    m_Arquivos.CriaArquivo(PastaDados(k_pszArquivoSelosNovo), std::string(9000, 'x'));
    CXVSistemaArquivosQueda queda(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(queda);
    EXPECT_EQ(Sela(), S_OK);
    EXPECT_EQ(queda.NaoGarantido(), "") << "seals";
    EXPECT_EQ(Verifica(nullptr, EGravidade::eNota), "");
    Corta(k_pszDia, 10)(*this);
    CXVSistemaArquivosQueda depois(m_Arquivos);
    const CXVGuardaSistemaArquivos guardaDepois(depois);
    EXPECT_EQ(Recupera(), "20240315-3-1 perdida");
    EXPECT_EQ(depois.NaoGarantido(), "") << "the new store, and what was put aside";
}

TEST_F(Verificacao, LugarDaPerdidaFicaVago) {
    Corta(k_pszDia, 88)(*this);
    EXPECT_EQ(Recupera(), "20240315-3-1 perdida");
    SetDia(15);
    EXPECT_EQ(Grava(*Abre(), CXVIntegracaoTeste(77)).uiValor, XVChaveDmc(k_uiHoje, 4));
}

TEST_F(Verificacao, RecuperacaoRecusaOQueNaoPodeSaber) {
    const auto recupera = [&](bool bVersaoAtual) {
        SRecuperacao recuperacao;
        return CXVRecuperacao({PastaDados(), "/nova/MATRIZ/DF", "/nova/x"}, m_Dono, bVersaoAtual)
            .Executa(&recuperacao);
    };
    {
        const TLoja pAberta = Abre();
        EXPECT_EQ(recupera(false), eSharingViolation);
    }
    const std::string sVersao = Conteudo("CRMIDDLEWAREVS.dat");
    Apaga("CRMIDDLEWAREVS.dat");
    EXPECT_EQ(recupera(false), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS);
    for (const auto& [cVersao, hr] : {std::pair('\4', E_XVCR_VERSAO_INCOMPATIVEL),
                                      std::pair('\6', E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA)}) {
        m_Arquivos.CriaArquivo(PastaDados("CRMIDDLEWAREVS.dat"), sVersao);
        MudaDados("CRMIDDLEWAREVS.dat", [c = cVersao](std::string& rs) { rs[0] = c; });
        EXPECT_EQ(recupera(true), hr);
        EXPECT_EQ(Verifica(), cVersao == '\4' ? "versaoAnterior CRMIDDLEWAREVS.dat"
                                              : "versaoPosterior CRMIDDLEWAREVS.dat");
    }
    m_Arquivos.CriaArquivo(PastaDados("CRMIDDLEWAREVS.dat"), sVersao);
    m_Arquivos.CriaArquivo("/nova/MATRIZ/DF/x", "");
    EXPECT_EQ(recupera(false), eInvalidFile);
    for (const auto& [sDestino, sSeparados, hr] :
         {std::tuple(PastaDados("x/DF"), PastaDados("x/separados"), HRESULT{E_INVALIDARG}),
          std::tuple(PastaDados("../DF/x"), std::string("/nova/x"), HRESULT{E_INVALIDARG}),
          std::tuple(std::string("/nao/../outra/DF"), std::string("/nova/x"), HRESULT{E_INVALIDARG}),
          std::tuple(std::string("/outra/DF"), std::string("/nova/MATRIZ/DF"), HRESULT{eInvalidFile})}) {
        SRecuperacao recuperacao;
        EXPECT_EQ(CXVRecuperacao({PastaDados(), sDestino, sSeparados}, m_Dono, true).Executa(&recuperacao),
                  hr);
    }
    std::vector<std::string> listaNomes;
    EXPECT_TRUE(m_Arquivos.Lista(PastaDados(), "*", listaNomes).Ok());
    for (const std::string& rNome : listaNomes) Apaga(rNome);
    for (const auto& [sNome, sBytes] : XVBaseDourada(0, true))
        m_Arquivos.CriaArquivo(PastaDados(sNome), sBytes);
    EXPECT_EQ(recupera(true), E_XVCR_VERSAO_INCOMPATIVEL) << "the first version never had a version file";
    EXPECT_EQ(Verifica(), "versaoAnterior CRMIDDLEWAREVS.dat");
    m_Arquivos.CriaArquivo(PastaDados(k_pszControle), CXVBytes().Texto("crmiddlewarevs.DAT"));
    EXPECT_THAT(Verifica(), testing::StartsWith("arquivoAusente CRMIDDLEWAREVS.dat;")) << "listed, and lost";
}

// Empty texts are zeros in their file. Behind the last one that a record names, there may be as many as
// records were lost.
TEST_F(Verificacao, TextosVaziosDasPerdidasNaoSaoZerosNasOutras) {
    SetDia(16);
    for (const XVUInt64 uiChave : {601U, 602U, 603U, 604U}) Grava(*Abre(), CXVIntegracaoTeste(uiChave));
    Corta("CRINTEGMID20240316.dat", 100)(*this);
    EXPECT_EQ(Verifica(),
              "arquivoRecusado CRINTEGMID20240316.dat; registroPelaMetade CRINTEGMID20240316.dat; "
              "semRegistro 20240316:3-4; diaRecusado 20240316:1-2");
    EXPECT_EQ(Recupera(), "20240316-3-1 perdida; 20240316-4-1 perdida");
}

// The bank's later integration takes the place of the earlier one in the index: by the log that is the normal
// course of things, without the log it may be.
TEST_F(Verificacao, SubstituidaDoBancoNaoFazFalta) {
    SetDia(16);
    Grava(*Abre(), CXVIntegracaoTeste(500, OfficialBank));
    SVerificacao verificacao;
    EXPECT_EQ(Verifica(&verificacao), "");
    EXPECT_EQ(verificacao.uiSubstituidas, 1U);
    EXPECT_EQ(verificacao.uiIntegracoes, 6U);
    REG_XVDMC regDmc{XVChaveDmc(XVDma(2024, 3, 16), 1)};
    EXPECT_EQ(Abre()->GravaIntegracao(&regDmc, CXVIntegracaoTeste(501, OfficialBank).Ptr()), S_OK);
    EXPECT_EQ(Verifica(&verificacao), "") << "its successor has had another key since";
    EXPECT_EQ(verificacao.uiSubstituidas, 1U);
    SetDia(17);
    Grava(*Abre(), CXVIntegracaoTeste(501, OfficialBank));
    EXPECT_EQ(Verifica(&verificacao), "") << "its successor has been replaced itself";
    EXPECT_EQ(verificacao.uiSubstituidas, 2U);
    Apaga("XVLogGeral_202403.log");
    const char* pszAchados = "talvezSubstituida 20240315:2; talvezSubstituida 20240316:1";
    EXPECT_EQ(Verifica(&verificacao), pszAchados);
    EXPECT_TRUE(verificacao.EhIntegra());
    m_arquivos = ArquivosEm(PastaDados());
    SetDia(15);
    EXPECT_EQ(Recupera(), "");
    EXPECT_EQ(Verifica(), pszAchados);
    EXPECT_EQ(m_sRelato, XVRelatoEsperado("SubstituidaDoBanco", m_sRelato)) << "texts and all";
}

// No key leads to a replaced integration, but its record must not name texts that are gone.
TEST_F(Verificacao, SubstituidaVoltaSemOsTextosQueSePerderam) {
    SetDia(16);
    Grava(*Abre(), CXVIntegracaoTeste(500, OfficialBank).Textos("{}", "m", "r"));
    SetDia(17);
    Grava(*Abre(), CXVIntegracaoTeste(500, OfficialBank).Textos("{}", "m", "r"));
    Apaga("CRINTEGMIDJSON20240316.dat");
    Corta("CRINTEGMIDJSONRET20240316.dat", 1)(*this);
    m_arquivos = ArquivosEm(PastaDados());
    SVerificacao verificacao;
    Verifica(&verificacao);
    SetDia(15);
    EXPECT_EQ(Recupera(), "bytes");
    EXPECT_EQ(Verifica(nullptr, EGravidade::eNota), "");
    const std::string sRelato = XVRelata(verificacao) + m_sRelato;
    EXPECT_EQ(sRelato, XVRelatoEsperado("SubstituidaSemTextos", sRelato));
}

// The index lost the bank's integration; another system's later one has the same key.
TEST_F(Verificacao, ChaveIgualDeOutroSistemaNadaSubstitui) {
    SetDia(16);
    Grava(*Abre(), CXVIntegracaoTeste(500, Mercos));
    NosDados(k_pszIndice, [](std::string& rs) { rs.erase(4 * 24, 24); })(*this);
    m_arquivos = ArquivosEm(PastaDados());
    SVerificacao verificacao;
    EXPECT_EQ(Verifica(&verificacao), "semIndice 20240315:2");
    SetDia(15);
    EXPECT_EQ(Recupera(), "20240315-2-1 com faltas");
    EXPECT_EQ(Verifica(nullptr, EGravidade::eNota), "");
    const std::string sRelato = XVRelata(verificacao) + m_sRelato;
    EXPECT_EQ(sRelato, XVRelatoEsperado("ChaveIgualDeOutroSistema", sRelato));
}

TEST_F(Verificacao, DeIndiceDanificadoNadaFoiSubstituido) {
    Grava(*Abre(), CXVIntegracaoTeste(500, OfficialBank));
    const auto antes = m_Arquivos.Retrata();
    NosDados(k_pszIndice, [](std::string& rs) { rs += "resto"; })(*this);
    EXPECT_EQ(Verifica(), "registroPelaMetade CRINDEXINTEG.dat; talvezSubstituida 20240315:2");
    EXPECT_EQ(Recupera(), "20240315-2-1 com faltas");
    EXPECT_EQ(m_Arquivos.LeConteudo("/nova/MATRIZ/separados/CRINDEXINTEG.dat.384"), "resto");
    m_Arquivos.Restaura(antes);
    m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/telvo");
    NosDados(k_pszIndice, [](std::string& rs) { rs.append(48, '\0'); })(*this);
    EXPECT_EQ(Verifica(), "indiceImpossivel CRINDEXINTEG.dat; talvezSubstituida 20240315:2");
    EXPECT_EQ(Recupera(), "20240315-2-1 com faltas");
    EXPECT_EQ(m_Arquivos.LeConteudo("/nova/MATRIZ/separados/CRINDEXINTEG.dat.384"), std::string(48, '\0'));
}

// Operations come between any two file operations of the verification, and the store is left as a process
// leaves it that is killed.
TEST_F(Verificacao, AoLadoDeQuemGravaEDepoisDaMorte) {
    TLoja pEscritor = Abre();
    unsigned uiVez = 0;
    const auto grava = [&] {
        const unsigned uiQual = ++uiVez % 4;
        SetDia(15 + uiVez % 10);
        const REG_XVDMC regDmc = Grava(
            *pEscritor, CXVIntegracaoTeste(uiQual == 1 ? 500 : uiVez, uiQual == 1 ? OfficialBank : Mercos)
                            .Textos(std::string(uiVez * 40, 'j'), "m", uiQual == 2 ? "" : "r"));
        const std::string sTexto(uiVez, 'x');
        EXPECT_EQ(pEscritor->GravaStatusIntegracao(
                      XVStatusPS(uiQual == 3 ? REG_XVDMC{XVChaveDmc(k_uiHoje, 1)} : regDmc, 0,
                                 eXVSMiddleware_Erro, sTexto, sTexto)),
                  S_OK);
    };
    CXVSistemaArquivosGancho gancho(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(gancho);
    unsigned uiOperacoes = 1;
    for (unsigned uiOnde = 0; uiOnde < uiOperacoes && !HasFailure(); uiOnde += 7) {
        SCOPED_TRACE(uiOnde);
        uiOperacoes = 0;
        const CXVGanchoArquivos depois([&] {
            if (uiOperacoes++ == uiOnde) grava();
        });
        SVerificacao verificacao;
        EXPECT_EQ(Verifica(&verificacao), "");
        EXPECT_EQ(verificacao.uiInteiras, verificacao.uiIntegracoes);
    }
    EXPECT_EQ(Verifica(nullptr, EGravidade::eNota), "emUso XVDATABASE_ABERTA.srk");
    m_Arquivos.CriaArquivo(PastaDados("CRDTHRINTEG.tra"), "");
    EXPECT_EQ(Verifica(nullptr, EGravidade::eNota),
              "emUso XVDATABASE_ABERTA.srk; conversaoInterrompida CRDTHRINTEG.tra");
    Apaga("CRDTHRINTEG.tra");
    const auto morta = m_Arquivos.Retrata();
    pEscritor.reset();
    m_Arquivos.Restaura(morta);
    EXPECT_EQ(Verifica(nullptr, EGravidade::eNota), "diarioAConcluir XVDATABASE_ABERTA.srk");
    Muda(k_pszIndice, [](std::string& rs) { rs += "x"; });
    SVerificacao verificacao;
    EXPECT_EQ(Verifica(&verificacao).substr(0, 38), "diarioNaoConfere XVDATABASE_ABERTA.srk");
    EXPECT_EQ(
        verificacao.listaAchados.front().sDetalhe,
        "O diário de operações não confere: CRINDEXINTEG.dat o tamanho não é o de nenhuma das operações");
    EXPECT_EQ(verificacao.listaAchados.front().hr, E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS);
}

// With the first integration of a day the days before are sealed, those that are sound; a later seal never
// covers what an earlier one shows.
TEST_F(Verificacao, DiasQuePassaramSaoSeladosSemQueSePeca) {
    const auto comecaDia = [this](unsigned uiDia) {
        CXVMiddlewareComSelos loja;
        ASSERT_EQ(XVInicializa(loja), S_OK);
        SetDia(uiDia);
        Grava(loja, CXVIntegracaoTeste(uiDia).Textos("{}", "m", "r"));
        Grava(loja, CXVIntegracaoTeste(uiDia + 100));
        EXPECT_EQ(loja.Finaliza(), S_OK);
    };
    const auto selados = [this] {
        TSelos selos;
        EXPECT_EQ(XVSelos::Le(PastaDados(), &selos), S_OK);
        return selos;
    };
    Poe(k_pszJSON, 4 + 712 + 3, '\x7f')(*this);
    Poe("CRINTEGMID20240313.dat", 88 + 48, 1)(*this);  // another's text: only the motives tell it
    comecaDia(16);
    const TSelos primeiros = selados();
    EXPECT_EQ(primeiros.size(), 4U) << "the 14th; the 13th and the 15th are damaged, the 16th goes on";
    EXPECT_TRUE(primeiros.contains("crintegmidjsonret20240314.dat"));
    Vira("CRINTEGMIDJSON20240314.dat", 300)(*this);
    comecaDia(17);
    EXPECT_EQ(selados().size(), 8U);
    EXPECT_EQ(selados().at("crintegmidjson20240314.dat"), primeiros.at("crintegmidjson20240314.dat"));
    EXPECT_NE(Verifica().find("blocoAlterado CRINTEGMIDJSON20240314.dat; alterada 20240314:1"),
              std::string::npos)
        << Verifica();
}

// A bit that nobody wrote is seen by the seal alone; what operations do is none.
TEST_F(Verificacao, SeloAcusaOQueNenhumaOperacaoMudou) {
    // Of the third text on the 14th the length begins in the first block and ends in the second.
    const char* pszLongos = "CRINTEGMIDJSON20240314.dat";
    const std::size_t uiUm = CXVLeituraLoja::k_uiBloco + 234 - Conteudo(pszLongos).size();
    SetDia(14);
    for (const std::size_t ui : {uiUm, std::size_t{2}})
        Grava(*Abre(), CXVIntegracaoTeste(ui).Textos(std::string(ui, 'j'), "", ""));
    EXPECT_EQ(Sela(), S_OK);
    SetDia(15);
    {
        const TLoja pLoja = Abre();
        Grava(*pLoja, CXVIntegracaoTeste(9).Textos("{}", "nova", "{}"));
        EXPECT_EQ(pLoja->GravaStatusIntegracao(
                      XVStatusPS({XVChaveDmc(k_uiHoje, 1)}, 0, eXVSMiddleware_Erro, "s", "")),
                  S_OK);
    }
    SVerificacao verificacao;
    EXPECT_EQ(Verifica(&verificacao), "");
    EXPECT_EQ(verificacao.uiSelados, 15U);
    const auto antes = m_Arquivos.Retrata();
    for (const auto& [pszNome, uiOnde, pszAchados] :
         {std::tuple("CRINTEGMIDJSON20240313.dat", 300,
                     "blocoAlterado CRINTEGMIDJSON20240313.dat; alterada 20240313:1-2"),
          std::tuple(k_pszJSON, 300, "blocoAlterado CRINTEGMIDJSON20240315.dat; alterada 20240315:1-4"),
          std::tuple(pszLongos, 300, "blocoAlterado CRINTEGMIDJSON20240314.dat; alterada 20240314:1-3"),
          std::tuple("CRINTEGMID20240314.dat", 240 + 72,
                     "blocoAlterado CRINTEGMID20240314.dat; alterada 20240314:1-3"),
          std::tuple("CRDTHRINTEG.dat", 241, "blocoAlterado CRDTHRINTEG.dat")}) {
        m_Arquivos.Restaura(antes);
        Vira(pszNome, static_cast<std::size_t>(uiOnde))(*this);
        EXPECT_EQ(Verifica(), pszAchados);
        EXPECT_EQ(Sela(), S_FALSE) << "a seal over damage would hide it";
    }
    const auto antigo = [](std::string& rs) {
        rs = XVArquivoDoTeste({.sNome = "CRDTHRINTEG.dat"}, rs.substr(240));
    };
    const auto semCabecalho = [](std::string& rs) { rs.erase(0, 240); };
    for (const auto& [fn, pszAchados] :
         {std::pair(TMuda([](std::string& rs) { rs.clear(); }), "blocoAlterado CRDTHRINTEG.dat"),
          std::pair(TMuda(semCabecalho), "semCabecalho CRDTHRINTEG.dat; blocoAlterado CRDTHRINTEG.dat"),
          std::pair(TMuda(antigo), "blocoAlterado CRDTHRINTEG.dat")}) {
        m_Arquivos.Restaura(antes);
        Muda("CRDTHRINTEG.dat", fn);
        EXPECT_EQ(Verifica(), pszAchados);
    }
}

TEST_F(Verificacao, SelosDoIndiceEOsPropriosSelos) {
    EXPECT_EQ(Sela(), S_OK);
    const auto antes = m_Arquivos.Retrata();
    Vira(k_pszIndice, 240)(*this);
    EXPECT_EQ(Verifica(),
              "blocoAlterado CRINDEXINTEG.dat; alterada 20240313:1-2; alterada 20240314:1; "
              "alterada 20240315:1-3");
    m_Arquivos.Restaura(antes);
    Vira(k_pszArquivoSelos, 40)(*this);
    EXPECT_EQ(Verifica(), "selosInvalidos XVDATABASE_SELOS.srk");
}

// One zero byte may be the terminator of an earlier program; a second one, or one before the end, is damage.
TEST_F(Verificacao, TerminadorNoFimDeUmTextoNaoEDano) {
    const auto achados = [&](const char* pszNome, std::size_t uiZeros) {
        const std::string sAntes = Conteudo(pszNome);
        ZeraFim(pszNome, uiZeros)(*this);
        std::string sAchados = Verifica();
        m_Arquivos.CriaArquivo(PastaDados(pszNome), sAntes);
        return sAchados;
    };
    EXPECT_EQ(achados(k_pszMensagem, 1), "");
    EXPECT_EQ(achados(k_pszMensagem, 2), "textoZerado 20240315:3");
    EXPECT_EQ(achados(k_pszJSON, 1), "");
    EXPECT_EQ(achados(k_pszJSON, 2), "textoZerado 20240315:3");
}

// A bad sector of the first of two blocks that are read.
TEST_F(Verificacao, SetorRuimNoPrimeiroBloco) {
    CXVSistemaArquivosSetorRuim disco(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(disco);
    SetDia(15);
    Grava(*Abre(), CXVIntegracaoTeste(4).Textos(std::string(150'000, 'j'), "m", "r"));
    disco.GetTrechos() = {{PastaDados(k_pszJSON), 20'000, 8}};
    SVerificacao verificacao;
    EXPECT_EQ(Verifica(&verificacao), "arquivoIlegivel CRINTEGMIDJSON20240315.dat; textoIlegivel 20240315:4");
    EXPECT_EQ(verificacao.uiInteiras + 1, verificacao.uiIntegracoes);
}

}  // namespace
