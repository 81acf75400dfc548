// Copies of a store, made while others write to it, die or pull the ground away: the copy is one moment of
// the store and a store at rest, or it is refused, and the store itself is never changed.
#include <array>
#include <tuple>

#include "core/xvdatabase/XVCabecalho.h"
#include "core/xvdatabase/XVDiarioAnel.h"
#include "core/xvdatabase/XVSeguidorDiario.h"
#include "core/xvdatabase/XVVisao.h"
#include "middleware/ConversaoDiario.h"
#include "middleware/copia/XVCopia.h"
#include "middleware/verificacao/XVVerificacao.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/values/XVSoma64.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosMorte.h"
#include "tests/harness/XVSistemaArquivosQueda.h"
#include "tests/middleware/XVOperacoesLoja.h"
#include "tests/middleware/XVRetratoLoja.h"

namespace {

class Copia : public CXVCenarioLoja {
  protected:
    Copia() {
        EXPECT_TRUE(XVPovoaLoja(*Abre(), [this](unsigned uiDia) { SetDia(uiDia); }));
    }

    // fnPedaco: told of every piece of the store that is read.
    HRESULT Executa(std::function<void()> fnPedaco = [] {}) {
        CXVCopia executor(PastaDados(), {"/copias/MATRIZ", "/copias/MATRIZ/DF"});
        executor.m_fnProgresso = [&](XVUInt64) { fnPedaco(); };
        const CXVArquivosRecusados recusados;
        const HRESULT hr = executor.Executa(&m_copia);
        m_eRecusa = executor.GetRecusa();
        m_sRecusado = recusados.GetPath(hr);
        EXPECT_FALSE(executor.FicouNaTroca() && m_eRecusa != ERecusaCopia::eNenhuma);
        return hr;
    }
    void UsaPasta(const char* pszModulo) {
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", pszModulo);
    }
    // What the copy answers, opened for writing as a restored store is. It is at rest: nothing is to be
    // concluded, and nothing to be found by a verification.
    TRetratoLoja RetrataCopia() {
        UsaPasta("/copias");
        SVerificacao verificacao;
        EXPECT_EQ(CXVVerificacao(PastaDados(), m_Dono).Executa(&verificacao), S_OK);
        EXPECT_TRUE(verificacao.EhIntegra());
        EXPECT_EQ(Conteudo(k_pszNomeDiario), "<ausente>");
        Repoe(m_Arquivos.Retrata(), "/copias", "/aberta");
        UsaPasta("/aberta");
        TRetratoLoja retrato = Retrata();
        EXPECT_EQ(Conteudo("XVProfilerErros_Base_202403.log"), "<ausente>") << "nothing was concluded";
        UsaPasta("/telvo");
        return retrato;
    }
    TRetratoLoja Retrata() {
        CBaseMiddleware loja;
        const HRESULT hr = XVInicializa(loja);
        return SUCCEEDED(hr) ? XVRetrataLoja(loja) : XVRetratoRecusado(hr);
    }
    // From what a copy may begin, and what it has to answer then: beside an older copy, and without any.
    auto Partidas() {
        const std::pair semCopia{m_Arquivos.Retrata(), Retrata()};
        EXPECT_EQ(Executa(), S_OK);
        Escreve(*Abre(), 0);
        const TRetratoLoja retrato = Retrata();
        return std::array{std::pair{m_Arquivos.Retrata(), retrato}, semCopia};
    }
    // The n-th change of a busy writer: recordings on a new day, of all three texts, updates, the key map.
    void Escreve(CBaseMiddleware& rLoja, unsigned n) {
        SetDia(16 + n % 3);
        CXVIntegracaoTeste integracao(7000 + n);
        integracao.Textos("{\"n\":" + std::to_string(n) + '}', std::string(n % 7 * 40, 'm'), "{}");
        if (n % 3 == 0) m_regUltima = Grava(rLoja, integracao);
        const std::string sMensagem = "mudada " + std::to_string(n);
        const std::string sRetorno = "{}";  // the record only borrows them
        const auto regStatus = XVStatusPS(m_regUltima, 0, eXVSMiddleware_Erro, sMensagem, sRetorno);
        if (n % 3 == 1) {
            EXPECT_EQ(rLoja.GravaStatusIntegracao(regStatus), S_OK);
        }
        if (n % 3 == 2) {
            EXPECT_EQ(XVOperacaoLoja("MapaAltera").fnExecuta(rLoja), S_OK);
        }
    }
    // Puts the files of a directory, as they were, into another one.
    void Repoe(const CXVSistemaArquivosMemoria::TRetrato& rRetrato, const std::string& sDe,
               const std::string& sPara) {
        for (const auto& [sCaminho, rArquivo] : rRetrato)
            if (sCaminho.starts_with(sDe) && !sCaminho.ends_with('/'))
                m_Arquivos.CriaArquivo(sPara + sCaminho.substr(sDe.size()), rArquivo.sConteudo);
    }
    // The copy holds byte for byte what the store does, of logs the general ones, its manifest tells of all
    // of it, and nothing else is left there. What was told: integrations, files and bytes.
    void ConfereCopia(const std::string& sDito) {
        const std::string sDados = "/copias/MATRIZ/DF/";
        CXVSistemaArquivosMemoria::TRetrato esperado;
        std::map<std::string, SArquivoCopiado> mapa;
        for (const auto& [sCaminho, rArquivo] : m_Arquivos.Retrata()) {
            const std::string sNome = sCaminho.substr(sCaminho.rfind('/') + 1);
            if (sCaminho != PastaDados() + '/' + sNome ||
                !(sNome.ends_with(".dat") || sNome.starts_with("XVLogGeral")))
                continue;
            esperado[sDados + sNome] = rArquivo;
            const std::string sInicio = rArquivo.sConteudo.substr(0, 240);
            mapa[sNome] = {rArquivo.sConteudo.size(), XVSoma64(sInicio.data(), sInicio.size())};
        }
        auto copia = m_Arquivos.Retrata();
        std::erase_if(copia, [](const auto& it) {
            return !it.first.starts_with("/copias") || it.first.ends_with('/') ||
                   it.first.ends_with(k_pszManifestoCopia);
        });
        EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(esperado, copia), "");
        SManifestoCopia manifesto;
        EXPECT_EQ(XVManifestoCopia::Le("/copias/MATRIZ", &manifesto), S_OK);
        EXPECT_EQ(manifesto.eEstado, EEstadoCopia::eInteira);
        EXPECT_EQ(manifesto.mapaArquivos, mapa);
        const SCopia& r = m_copia;
        EXPECT_EQ(r.momento, m_Relogio.AgoraUTC());
        EXPECT_EQ(std::to_string(r.uiIntegracoes) + " integrações, " + std::to_string(r.uiCopiados) + " de " +
                      std::to_string(r.uiArquivos) + " arquivos, " + std::to_string(r.uiBytesCopiados) +
                      " bytes e " + std::to_string(r.uiBytesIguais) + " iguais",
                  sDito);
    }
    auto ArquivosDe(std::string_view sPasta) {
        auto retrato = RetratoSemLogs();
        std::erase_if(retrato, [&](const auto& it) { return !it.first.starts_with(sPasta); });
        return retrato;
    }

    // Of the copy that m_inteira holds, once fnMuda has done its part: the next one is refused.
    void Recusa(ERecusaCopia eRecusa, HRESULT hrEsperado, const std::string& sRecusado,
                const std::function<void()>& fnMuda) {
        SCOPED_TRACE(static_cast<int>(eRecusa));
        m_Arquivos.Restaura(m_inteira);
        SetDia(20);
        fnMuda();
        UsaPasta("/telvo");
        const auto antes = ArquivosDe("/copias");
        const HRESULT hr = Executa();
        EXPECT_EQ(hr, hrEsperado);
        EXPECT_EQ(m_eRecusa, eRecusa) << std::hex << hr;
        EXPECT_EQ(m_sRecusado, sRecusado);
        EXPECT_EQ(ArquivosDe("/copias"), antes) << "nothing of the destination was touched";
    }

    const std::string m_sCopia = "/copias/MATRIZ";
    CXVSistemaArquivosMemoria::TRetrato m_inteira;
    SCopia m_copia;
    ERecusaCopia m_eRecusa = ERecusaCopia::eNenhuma;
    std::string m_sRecusado;  // the file or directory that the refusal names
    REG_XVDMC m_regUltima;
};

// The writer goes on with every piece that is read. With a small ring more operations come than it holds, so
// that it cannot be followed until the writer rests, in the third pass.
TEST_F(Copia, EhUmMomentoDaLojaQueOutroGrava) {
    ASSERT_EQ(Executa(), S_OK);  // what follows finds files that are as this copy has them
    for (const auto& [uiAnel, uiPorPedaco, uiTodas] :
         {std::tuple(1U << 20, 1U, 40U), std::tuple(1U << 20, 5U, 900U), std::tuple(8U << 10, 15U, 600U)}) {
        SCOPED_TRACE("ring of " + std::to_string(uiAnel));
        CXVDiarioAnel::SetTamanhoAnel(uiAnel);
        const TLoja pLoja = Abre();
        std::vector<TRetratoLoja> aMomentos{XVRetrataLoja(*pLoja)};
        unsigned n = 0;
        ASSERT_EQ(Executa([&, uiPorPedaco = uiPorPedaco, uiTodas = uiTodas] {
                      for (unsigned i = 0; i < uiPorPedaco && n < uiTodas; ++i) Escreve(*pLoja, n++);
                      aMomentos.push_back(XVRetrataLoja(*pLoja));
                  }),
                  S_OK);
        const TRetratoLoja copia = RetrataCopia();
        const auto it = std::find(aMomentos.begin(), aMomentos.end(), copia);
        EXPECT_NE(it, aMomentos.end()) << XVDiferenca(aMomentos.back(), copia);
        EXPECT_GT(it - aMomentos.begin(), 5) << "what came while it was read is in the copy";
        EXPECT_EQ(pLoja->Finaliza(), S_OK);
    }
}

// A file of an old program is given its header between two passes: nothing of it is where it was.
TEST_F(Copia, TextosQueRecebemOCabecalhoNoMeio) {
    const std::string sNome = "CRINTEGMIDJSON20240314.dat";
    const std::string sInteiro = Conteudo(sNome);
    ASSERT_GT(sInteiro.size(), 240U);
    m_Arquivos.CriaArquivo(PastaDados(sNome), sInteiro.substr(240));
    bool bRecebeu = false;
    ASSERT_EQ(Executa([&] {
                  const auto retrato = m_Arquivos.Retrata();
                  const auto it = retrato.find("/copias/MATRIZ/parcial/" + sNome);
                  if (bRecebeu || it == retrato.end() || it->second.sConteudo != sInteiro.substr(240)) return;
                  m_Arquivos.CriaArquivo(PastaDados(sNome), sInteiro);
                  bRecebeu = true;
              }),
              S_OK);
    EXPECT_TRUE(bRecebeu);
    EXPECT_EQ(XVDiferenca(Retrata(), RetrataCopia()), "");
}

TEST_F(Copia, RepetidaCopiaSoOQueMudou) {
    ASSERT_EQ(Executa(), S_OK);
    ConfereCopia("6 integrações, 18 de 18 arquivos, 10907 bytes e 0 iguais");
    EXPECT_EQ(Executa(), S_OK);
    ConfereCopia("6 integrações, 1 de 18 arquivos, 22 bytes e 10885 iguais");  // only the creation control,
                                                                               // which has no header
    REG_XVDMC regDmc;
    regDmc.uiValor = XVBusca(*Abre()).front();
    const std::string sMensagem = "m";
    const std::string sRetorno = "{}";
    const auto regStatus = XVStatusPS(regDmc, 0, eXVSMiddleware_Cancelado, sMensagem, sRetorno);
    EXPECT_EQ(Abre()->GravaStatusIntegracao(regStatus), S_OK);
    EXPECT_EQ(Executa(), S_OK);
    ConfereCopia(
        "6 integrações, 6 de 18 arquivos, 2939 bytes e 8279 iguais");  // control, general log, index, a day's
                                                                       // records and two of its texts
    EXPECT_EQ(XVDiferenca(Retrata(), RetrataCopia()), "");
}

// Whoever looked into the copy may have left lines in its log; those of the store that are not whole stay
// out.
TEST_F(Copia, LogDaCopiaPodeCrescer) {
    ASSERT_EQ(Executa(), S_OK);
    const std::string sLog = "XVLogGeral_202403.log";
    const std::string sInteiras = Conteudo(sLog);
    m_Arquivos.CriaArquivo("/copias/MATRIZ/DF/" + sLog, sInteiras + "outra\n");
    EXPECT_EQ(Executa(), S_OK);
    for (const std::size_t uiParte : {1U, 4095U, 4096U, 9000U}) {
        m_Arquivos.CriaArquivo(PastaDados(sLog), sInteiras + std::string(uiParte, 'x'));
        EXPECT_EQ(Executa(), S_OK);
        EXPECT_TRUE(m_Arquivos.LeConteudo("/copias/MATRIZ/DF/" + sLog) == sInteiras) << uiParte;
    }
    m_Arquivos.CriaArquivo(PastaDados(sLog), "x");
    EXPECT_EQ(Executa(), S_OK);
    EXPECT_EQ(m_Arquivos.LeConteudo("/copias/MATRIZ/DF/" + sLog), "");
    EXPECT_TRUE(m_Arquivos.Apaga(PastaDados(sLog)).Ok());
    EXPECT_EQ(Executa(), S_OK);
    EXPECT_EQ(m_Arquivos.LeConteudo("/copias/MATRIZ/DF/" + sLog), "") << "the store lost it, the copy has it";
}

TEST_F(Copia, ProntaEstaNoDispositivo) {
    for (unsigned i = 0; i < 2; ++i) {  // the first one, and one in its place
        // A copying that was killed has left a longer manifest beside its name.
        m_Arquivos.CriaArquivo(m_sCopia + '/' + k_pszManifestoCopiaNovo, std::string(9000, 'x'));
        CXVSistemaArquivosQueda queda(m_Arquivos);
        const CXVGuardaSistemaArquivos guarda(queda);
        std::string sNaTroca;
        queda.SetAoAlterar([&](const std::string& sCaminho, EAlteracaoQueda) {
            if (sCaminho.ends_with(k_pszManifestoCopia)) sNaTroca += queda.NaoGarantido();
        });
        EXPECT_EQ(Executa(), S_OK);
        queda.SetAoAlterar(nullptr);
        EXPECT_EQ(sNaTroca.find("/parcial/"), std::string::npos) << "before the exchange: " << sNaTroca;
        EXPECT_EQ(queda.NaoGarantido(), "");
    }
}

// Killed at any of its changes: the copy of before, or none that opens; and copying again completes it.
TEST_F(Copia, MortaEmQualquerPontoNuncaPareceInteira) {
    const auto partidas = Partidas();
    const TRetratoLoja &depois = partidas[0].second, &antes = partidas[1].second;
    CXVSistemaArquivosMorte morte(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(morte);
    unsigned uiRecusadas = 0;
    for (const auto& [inicial, esperado] : partidas) {
        for (XVUInt64 uiMorte = 1; !HasFailure(); ++uiMorte) {
            SCOPED_TRACE("died at change " + std::to_string(uiMorte));
            m_Arquivos.Restaura(inicial);
            const auto origem = ArquivosDe("/telvo");
            morte.Nasce(uiMorte, uiMorte % 2 == 0);
            const HRESULT hr = Executa();
            const bool bMorreu = morte.EstaMorto();
            morte.Nasce(0);
            EXPECT_EQ(ArquivosDe("/telvo"), origem) << "the store itself is only read";
            if (!bMorreu) {
                EXPECT_EQ(hr, S_OK);
                break;
            }
            UsaPasta("/copias");
            const auto deixada = m_Arquivos.Retrata();
            if (deixada.contains("/copias/MATRIZ/DF/CRINDEXINTEG.dat")) {
                const TRetratoLoja retrato = Retrata();
                const bool bRecusada =
                    retrato == XVRetratoRecusado(E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS);
                EXPECT_TRUE(bRecusada || retrato == antes || retrato == depois)
                    << XVDiferenca(antes, retrato);
                uiRecusadas += bRecusada ? 1 : 0;
            }
            m_Arquivos.Restaura(deixada);
            UsaPasta("/telvo");
            ASSERT_EQ(Executa(), S_OK) << "copied again";
            EXPECT_EQ(XVDiferenca(esperado, RetrataCopia()), "");
        }
    }
    EXPECT_GT(uiRecusadas, 5U) << "no death fell into the exchange of the files";
}

// Where a file cannot be moved, the new ones that wait for their places are all there is of the new copy.
TEST_F(Copia, FalhaEmQualquerTrocaDeNomeNadaPerde) {
    const auto partidas = Partidas();
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    for (const auto& [inicial, esperado] : partidas) {
        XVUInt64 uiNumero = 0;
        for (bool bAtingida = true; bAtingida && !HasFailure();) {
            SCOPED_TRACE("failed at move " + std::to_string(++uiNumero));
            m_Arquivos.Restaura(inicial);
            falhas.Programa(SFalhaArquivo{
                .eOperacao = EOperacaoArquivo::eSubstitui, .uiNumero = uiNumero, .bPermanente = true});
            const HRESULT hr = Executa();
            bAtingida = falhas.GetFalhasOcorridas() != 0;
            falhas.Limpa();
            EXPECT_EQ(hr, bAtingida ? eHardIO : S_OK);
            ASSERT_EQ(Executa(), S_OK) << "copied again";
            EXPECT_EQ(XVDiferenca(esperado, RetrataCopia()), "");
        }
        EXPECT_GT(uiNumero, 8U) << "the exchange was not met";
    }
}

// Of a writer that died anywhere in an operation the copy is what the next opening makes of the store.
TEST_F(Copia, DeQuemMorreuEhOQueAAberturaConclui) {
    const auto inicial = m_Arquivos.Retrata();
    CXVSistemaArquivosMorte morte(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(morte);
    for (XVUInt64 uiMorte = 1, bMorreu = 1; bMorreu != 0 && !HasFailure(); ++uiMorte) {
        SCOPED_TRACE("died at change " + std::to_string(uiMorte));
        m_Arquivos.Restaura(inicial);
        morte.Nasce(uiMorte);
        {
            CBaseMiddleware loja;
            REG_XVDMC regDmc;
            SetDia(17);
            if (SUCCEEDED(loja.Inicializa(&m_Dono)))
                XVIgnora(loja.GravaIntegracao(&regDmc, CXVIntegracaoTeste(1).Textos("{}", "m", "[]").Ptr()));
            XVIgnora(loja.Finaliza());
        }
        bMorreu = morte.EstaMorto() ? 1 : 0;
        morte.Nasce(0);
        ASSERT_EQ(Executa(), S_OK);
        EXPECT_EQ(XVDiferenca(Retrata(), RetrataCopia()), "");
    }
}

TEST_F(Copia, RecusaOQueNaoEhCopiaDestaBase) {
    ASSERT_EQ(Executa(), S_OK);
    m_inteira = m_Arquivos.Retrata();
    const auto gravaEm = [&](const char* pszModulo) {
        UsaPasta(pszModulo);
        Grava(*Abre(), CXVIntegracaoTeste(5));
    };
    Recusa(ERecusaCopia::eCopiaMudada, eInvalidFile, m_sCopia + "/DF/CRINDEXINTEG.dat",
           [&] { gravaEm("/copias"); });
    Recusa(ERecusaCopia::eCopiaMaisNova, eInvalidFile, PastaDados("CRINDEXINTEG.dat"), [&] {
        gravaEm("/telvo");
        ASSERT_EQ(Executa(), S_OK);
        Repoe(m_inteira, "/telvo", "/telvo");
    });
    Recusa(ERecusaCopia::eOutraBase, eInvalidFile, PastaDados("CRINDEXINTEG.dat"), [&] {
        for (const auto& [sCaminho, rArquivo] : ArquivosDe("/telvo"))
            if (!sCaminho.ends_with('/')) m_Arquivos.Apaga(sCaminho).Ignora();
        ASSERT_TRUE(XVPovoaLoja(*Abre(), [this](unsigned uiDia) { SetDia(uiDia + 5); }));
    });
    Recusa(ERecusaCopia::eArquivoSumiu, E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS,
           PastaDados("CRCHAVEREGTER.dat"),
           [&] { EXPECT_TRUE(m_Arquivos.Apaga(PastaDados("CRCHAVEREGTER.dat")).Ok()); });
    Recusa(ERecusaCopia::eOrigemDanificada, E_XVCR_CRC_CABECALHO_NAO_CONFERE, PastaDados("CRDTHRINTEG.dat"),
           [&] {
               std::string sBytes = Conteudo("CRDTHRINTEG.dat");
               sBytes[100] ^= 1;
               m_Arquivos.CriaArquivo(PastaDados("CRDTHRINTEG.dat"), sBytes);
           });
    Recusa(ERecusaCopia::eDestinoOcupado, eInvalidFile, "",
           [&] { EXPECT_TRUE(m_Arquivos.Apaga(std::string("/copias/MATRIZ/") + k_pszManifestoCopia).Ok()); });
}

TEST_F(Copia, RecusaOQueEstaEmUsoOuDanificado) {
    ASSERT_EQ(Executa(), S_OK);
    m_inteira = m_Arquivos.Retrata();
    CXVSistemaArquivosMemoria::TRetrato morta;
    {
        const TLoja pLoja = Abre();
        Grava(*pLoja, CXVIntegracaoTeste(5));
        morta = m_Arquivos.Retrata();
    }
    Recusa(ERecusaCopia::eDestinoOcupado, E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA, "",
           [&] { m_Arquivos.CriaArquivo(m_sCopia + '/' + k_pszManifestoCopia, std::string(40, 'x')); });
    Recusa(ERecusaCopia::eCopiaMudada, eSharingViolation, m_sCopia + "/DF/" + k_pszNomeDiario,
           [&] { m_Arquivos.CriaArquivo(m_sCopia + "/DF/" + k_pszNomeDiario, ""); });
    Recusa(ERecusaCopia::eOrigemDanificada, E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS,
           PastaDados("CRINDEXINTEG.dat"), [&] {
               m_Arquivos.Restaura(morta);
               m_Arquivos.CriaArquivo(PastaDados("CRINDEXINTEG.dat"), Conteudo("CRINDEXINTEG.dat") + "x");
           });
    Recusa(ERecusaCopia::eConversao, eSharingViolation, PastaDados(k_pszDiarioConversao),
           [&] { m_Arquivos.CriaArquivo(PastaDados(k_pszDiarioConversao), ""); });
    std::unique_ptr<IXVMarcaDiretorio> pMarca;
    Recusa(ERecusaCopia::eDestinoEmUso, eSharingViolation, "",
           [&] { EXPECT_TRUE(m_Arquivos.MarcaDiretorio(m_sCopia, "copia-em-curso", pMarca).Ok()); });
}

// The names of a manifest become paths, and what comes behind it was not written by a copy.
TEST_F(Copia, ManifestoQueNaoServeERecusadoInteiro) {
    constexpr const char* k_pszCopia = "/copias/MATRIZ";
    const auto le = [&](SManifestoCopia* pLido) { return XVManifestoCopia::Le(k_pszCopia, pLido); };
    SManifestoCopia lido;
    EXPECT_EQ(le(&lido), S_FALSE);
    ASSERT_EQ(Executa(), S_OK);
    for (const auto& [sNome, uiEstado] : std::vector<std::pair<std::string, XVUInt64>>{{"../x.dat", 1},
                                                                                       {"a/x.dat", 1},
                                                                                       {"/x.dat", 1},
                                                                                       {"a\\x.dat", 1},
                                                                                       {"..", 1},
                                                                                       {"", 1},
                                                                                       {"x.dat", 3}}) {
        const SManifestoCopia ruim{static_cast<EEstadoCopia>(uiEstado), {{"a.dat", {1, 2}}, {sNome, {3, 4}}}};
        ASSERT_EQ(XVManifestoCopia::Grava(k_pszCopia, ruim), S_OK);
        lido.mapaArquivos["resto"] = {};
        EXPECT_EQ(le(&lido), E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA) << sNome;
        EXPECT_TRUE(lido.eEstado == EEstadoCopia::eIncompleta && lido.mapaArquivos.empty()) << sNome;
    }
    for (const EEstadoCopia eEstado : {EEstadoCopia::eIncompleta, EEstadoCopia::eTroca}) {
        const SManifestoCopia bom{eEstado, {{"a.dat", {1, 2}}, {"x.log", {3, 4}}}};
        ASSERT_EQ(XVManifestoCopia::Grava(k_pszCopia, bom), S_OK);
        ASSERT_EQ(le(&lido), S_OK);
        EXPECT_TRUE(lido.eEstado == bom.eEstado && lido.mapaArquivos == bom.mapaArquivos);
    }
}

// What came since, laid over the files as they were when it began, is the files as they are.
TEST_F(Copia, QuemSegueODiarioTemCadaByteECadaTamanho) {
    const TLoja pLoja = Abre();
    Escreve(*pLoja, 0);
    CXVVisao visao(PastaDados());
    CXVSeguidorDiario seguidor(visao);
    ASSERT_TRUE(seguidor.Inicia());
    const auto antes = m_Arquivos.Retrata();
    for (unsigned n = 1; n < 12; ++n) {
        Escreve(*pLoja, n);
        if (n % 4 == 0) seguidor.Olha();
    }
    SetDia(25);  // files that the first of two makes
    for (unsigned i = 1; i <= 2; ++i) Grava(*pLoja, CXVIntegracaoTeste(9000 + i).Textos("{}", "m", "r"));
    ASSERT_TRUE(seguidor.Confirma());
    EXPECT_GT(seguidor.GetMudancas().size(), 8U);
    for (const auto& [sNome, rMudanca] : seguidor.GetMudancas()) {
        const auto it = antes.find(PastaDados(sNome));
        std::string sBytes = it == antes.end() ? std::string() : it->second.sConteudo;
        EXPECT_EQ(rMudanca.bCriado, it == antes.end()) << sNome;
        EXPECT_EQ(rMudanca.uiTamanho, Conteudo(sNome).size()) << sNome;
        sBytes.resize(static_cast<std::size_t>(rMudanca.uiTamanho));
        for (const auto& [uiOffset, sNovos] : rMudanca.faixas)
            sBytes.replace(static_cast<std::size_t>(uiOffset), sNovos.size(), sNovos);
        if (rMudanca.regCabecalho) {
            const REG_XVCABECALHO reg{XVCabecalho::BlocoA(), *rMudanca.regCabecalho};
            sBytes.replace(0, sizeof(reg), reinterpret_cast<const char*>(&reg), sizeof(reg));
        }
        EXPECT_TRUE(sBytes == Conteudo(sNome)) << sNome;
    }
    EXPECT_EQ(pLoja->Finaliza(), S_OK);
    EXPECT_FALSE(seguidor.Confirma()) << "nobody writes any more";
}

}  // namespace
