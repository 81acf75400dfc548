// Damage done to a sound store: verification names it, recovery brings back whatever bytes are there, and the
// store that it makes is sound and answers as the old one did.
#include "middleware/verificacao/XVMiddlewareComSelos.h"
#include "tests/harness/XVGanchoArquivos.h"
#include "tests/harness/XVSistemaArquivosQueda.h"
#include "tests/harness/XVSistemaArquivosSetorRuim.h"
#include "tests/middleware/XVCenarioVerificacao.h"

namespace {

using namespace XVDanos;

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
    EXPECT_NE(Recupera().find("20240315-3-1 perdida"), std::string::npos) << "the header tells of it";
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
