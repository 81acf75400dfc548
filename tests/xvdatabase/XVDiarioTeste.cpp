// The journal of a directory that is open for writing: its bytes, its ring, what it flushes and when.
#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "core/xvdatabase/XVDiario.h"
#include "support/XVArquivoRecusado.h"
#include "tests/apoio/XVSistemaArquivosQueda.h"
#include "tests/xvdatabase/XVCenarioBanco.h"
#include "tests/xvdatabase/XVDiarioBytes.h"

namespace {

constexpr std::size_t k_uiAnelUsual = 1U << 20;

std::string Bloco(const std::string& sArquivo) {
    return sArquivo.substr(24, 216);
}

class Diario : public CXVCenarioBanco {
  protected:
    Diario() : m_Queda(m_Arquivos), m_FalhasQueda(m_Queda), m_GuardaQueda(m_FalhasQueda) {
        m_Queda.SetAoAlterar([this](const std::string& sCaminho, CXVSistemaArquivosQueda::EAlteracao e) {
            if (m_fnAoAlterar) m_fnAoAlterar(sCaminho, e);
            const std::size_t uiBarra = sCaminho.find_last_of('/');
            m_listaPassos.push_back((e == CXVSistemaArquivosQueda::EAlteracao::eMuda ? "+" : "=") +
                                    sCaminho.substr(uiBarra + 1));
        });
    }
    ~Diario() override { CXVDiarioAnel::SetTamanhoAnel(k_uiAnelUsual); }

    void SetDurabilidade(XVUInt ulValor) {
        m_Registro.SetNumero(CAmbienteXV::GetChaveRegistro(XV_DF), "Durabilidade", ulValor);
    }
    HRESULT AbreDiario(CXVDiario& rDiario) { return rDiario.Abre(&m_Dono, XV_DF, PastaDados()); }
    std::string LeDiario() const { return Le(k_pszNomeDiario); }
    // So that no operation but the test's own is written.
    void ListaNomes() { Cria(k_pszControle, Prefixado("A.dat")); }

    // What an opening finds when this process dies now.
    CXVSistemaArquivosMemoria::TRetrato Morre() const { return m_Arquivos.Retrata(); }
    HRESULT Reabre(const CXVSistemaArquivosMemoria::TRetrato& rRetrato) {
        m_Arquivos.Restaura(rRetrato);
        CXVDiario diario;
        const HRESULT hr = AbreDiario(diario);
        EXPECT_EQ(diario.Fecha(&m_Dono), S_OK);
        return hr;
    }
    // How often a step was taken since the last call.
    std::ptrdiff_t Conta(const std::string& sPasso) const {
        return std::count(m_listaPassos.begin(), m_listaPassos.end(), sPasso);
    }
    std::size_t Ultimo(const std::string& sPasso) const {
        const auto it = std::find(m_listaPassos.rbegin(), m_listaPassos.rend(), sPasso);
        return static_cast<std::size_t>(m_listaPassos.rend() - it);  // 0: never
    }
    std::size_t Primeiro(const std::string& sPasso) const {
        const auto it = std::find(m_listaPassos.begin(), m_listaPassos.end(), sPasso);
        return static_cast<std::size_t>(it - m_listaPassos.begin()) + 1;
    }

    CXVSistemaArquivosQueda m_Queda;
    CXVSistemaArquivosFalhas m_FalhasQueda;
    CXVGuardaSistemaArquivos m_GuardaQueda;
    std::vector<std::string> m_listaPassos;
    CXVSistemaArquivosQueda::TAoAlterar m_fnAoAlterar;
};

// Two files in one container and the journal around them.
struct SBancoDuplo {
    SBancoDuplo() : xvDB(XV_DF), a("A.dat", &xvDB), t("T.dat", &xvDB) {}
    HRESULT Abre(const IXVDF_Profiler& rDono, const std::string& sDiretorio) {
        const HRESULT hr = diario.Abre(&rDono, XV_DF, sDiretorio);
        return FAILED(hr) ? hr : xvDB.Inicializa(&rDono);
    }
    HRESULT Fecha(const IXVDF_Profiler& rDono) {
        const HRESULT hr = xvDB.Finaliza();
        const HRESULT hrDiario = diario.Fecha(&rDono);
        return FAILED(hr) ? hr : hrDiario;
    }
    // A record and a text in one operation; the record's position is overwritten or, with 0, appended.
    HRESULT Grava(XVUInt uiPosicao, const REG_TESTE& reg, const std::string& sTexto) {
        CXVOperacao operacao(&xvDB);
        HRESULT hr = operacao.Inicia();
        if (SUCCEEDED(hr)) hr = Prepara(operacao, uiPosicao, reg, sTexto);
        return SUCCEEDED(hr) ? operacao.Executa() : hr;
    }
    HRESULT Prepara(CXVOperacao& rOperacao, XVUInt uiPosicao, const REG_TESTE& reg,
                    const std::string& sTexto) {
        HRESULT hr = a.PreparaColecao(rOperacao, uiPosicao, std::vector<REG_TESTE>{reg});
        XVUInt uiPosicaoTexto = 0;
        if (SUCCEEDED(hr))
            hr = t.PreparaColecao(rOperacao, uiPosicaoTexto, std::vector<std::string_view>{sTexto});
        return hr;
    }

    CXVDiario diario;
    CXVDataBase xvDB;
    CXVFileTeste a;
    CXVTextFile t;
};

TEST_F(Diario, BytesSaoOsDaDescricao) {
    const std::string sA0 = ArquivoComCabecalho("A.dat", Bytes({{1, 2, 3}, {4, 5, 6}}));
    Cria("A.dat", sA0);
    ListaNomes();
    SBancoDuplo banco;
    ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
    EXPECT_EQ(LeDiario(), "") << "the space is taken by the first operation";
    ASSERT_EQ(banco.Grava(2, {7, 8, 9}, "um texto"), S_OK);
    const std::string sA1 = Le("A.dat");
    const std::string sT1 = Le("T.dat");
    ASSERT_EQ(banco.Grava(0, {10, 11, 12}, "x"), S_OK);
    const std::string sA2 = Le("A.dat");
    const std::string sT2 = Le("T.dat");
    const std::string s = LeDiario();
    ASSERT_EQ(s.size(), 4096 + k_uiAnelUsual);

    const auto uiSessao = Campo<XVUInt64>(s, 8);
    EXPECT_NE(uiSessao, 0U);
    const std::string sNovoReg = Bytes({{7, 8, 9}});
    const std::string sVelhoReg = Bytes({{4, 5, 6}});
    const std::string sTexto1 = Prefixado("um texto");
    // Block B before the first write of T.dat is taken from the entry itself: it is checked against what a
    // file of length 0 must hold.
    const std::string sParteA =
        ParteBytes({"A.dat", 256, 272, 272, sNovoReg, sVelhoReg, false, Bloco(sA0), Bloco(sA1)});
    const std::size_t uiParteT = 4096 + 64 + sParteA.size();
    std::string sBlocoT0 = s.substr(uiParteT + 56 + 8, 216);
    EXPECT_EQ(Campo<XVUInt64>(sBlocoT0, 48), 0U) << "payload";
    EXPECT_EQ(Campo<XVUInt64>(sBlocoT0, 208), CrcBitABit(sBlocoT0.substr(0, 208)));
    EXPECT_EQ(CampoTexto(sBlocoT0, 88, 24), "T.dat");
    const std::string sEntrada1 =
        EntradaBytes(uiSessao, {1,
                                {{"A.dat", 256, 272, 272, sNovoReg, sVelhoReg, false, Bloco(sA0), Bloco(sA1)},
                                 {"T.dat", 240, 240, 252, sTexto1, "", true, sBlocoT0, Bloco(sT1)}}});
    const std::string sEntrada2 = EntradaBytes(
        uiSessao, {2,
                   {{"A.dat", 272, 272, 288, Bytes({{10, 11, 12}}), "", false, Bloco(sA1), Bloco(sA2)},
                    {"T.dat", 252, 252, 257, Prefixado("x"), "", false, Bloco(sT1), Bloco(sT2)}}});
    std::string sEsperado = DiarioBytes(uiSessao, {sEntrada1, sEntrada2}, 1, k_uiAnelUsual);
    Poe<XVUInt64>(sEsperado, 512, 2 * 2);  // operation 2 is over
    EXPECT_TRUE(s == sEsperado) << "first difference at "
                                << std::mismatch(s.begin(), s.end(), sEsperado.begin()).first - s.begin();
    ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
    EXPECT_FALSE(Existe(k_pszNomeDiario));
}

// Written before the first byte of a file changes, and the memory of readers follows the disk.
TEST_F(Diario, EntradaVemAntesDosArquivosEAAlteracaoSeAnuncia) {
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 2, 3}})));
    Cria("T.dat", ArquivoComCabecalho("T.dat", ""));
    Cria(k_pszControle, Prefixado("A.dat") + Prefixado("T.dat"));
    for (const XVUInt ulDurabilidade : {0U, 1U}) {
        SetDurabilidade(ulDurabilidade);
        SBancoDuplo banco;
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        ASSERT_EQ(banco.Grava(0, {1, 1, 1}, "t"), S_OK);
        XVUInt64 uiEmCurso = 0;
        std::string sNoDiario;
        m_fnAoAlterar = [&](const std::string& sCaminho, CXVSistemaArquivosQueda::EAlteracao) {
            if (!sCaminho.ends_with("A.dat") || uiEmCurso != 0) return;
            uiEmCurso = Campo<XVUInt64>(LeDiario(), 512);
            sNoDiario = LeDiario().substr(4096, 4096);
        };
        m_listaPassos.clear();
        ASSERT_EQ(banco.Grava(1, {5, 5, ulDurabilidade}, "outro texto"), S_OK);
        m_fnAoAlterar = nullptr;
        EXPECT_EQ(uiEmCurso, 2 * 2 - 1U) << "operation 2 is under way";
        EXPECT_NE(sNoDiario.find("outro texto"), std::string::npos);
        EXPECT_EQ(Campo<XVUInt64>(LeDiario(), 512), 4U);
        EXPECT_LT(Ultimo("+T.dat"), Primeiro("+A.dat")) << "what appends first, what overwrites last";
        if (ulDurabilidade == 1) {
            EXPECT_LT(Primeiro("=" + std::string(k_pszNomeDiario)), Primeiro("+T.dat"));
        }
        ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
    }
}

TEST_F(Diario, DurabilidadeDizQuantasDescargasUmaOperacaoCusta) {
    const struct {
        std::optional<XVUInt> ulValor;
        long lDescargas;
        bool bAviso;
    } aCasos[] = {
        {std::nullopt, 0, false}, {0, 0, false}, {1, 1, false}, {2, 1, true}, {0xFFFFFFFF, 1, true}};
    for (const auto& rCaso : aCasos) {
        m_Registro.Remove(CAmbienteXV::GetChaveRegistro(XV_DF), "Durabilidade");
        if (rCaso.ulValor) SetDurabilidade(*rCaso.ulValor);
        SCOPED_TRACE(rCaso.ulValor.value_or(99));
        const CXVCapturaTrace captura;
        SBancoDuplo banco;
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        EXPECT_EQ(!captura.GetFalhas().empty(), rCaso.bAviso);
        ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "a"), S_OK);
        m_listaPassos.clear();
        constexpr long k_lOperacoes = 5;
        for (long i = 0; i < k_lOperacoes; ++i) ASSERT_EQ(banco.Grava(0, {2, 0, 0}, "b"), S_OK);
        const auto lDescargas = std::count_if(m_listaPassos.begin(), m_listaPassos.end(),
                                              [](const std::string& s) { return s.front() == '='; });
        EXPECT_EQ(lDescargas, rCaso.lDescargas * k_lOperacoes);
        EXPECT_EQ(Conta("=" + std::string(k_pszNomeDiario)), lDescargas)
            << "of the journal and of nothing else";
        ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
    }
}

TEST_F(Diario, FechamentoDescarregaOsArquivosEEntaoApagaODiario) {
    for (const XVUInt ulDurabilidade : {0U, 1U}) {
        SetDurabilidade(ulDurabilidade);
        SBancoDuplo banco;
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "a"), S_OK);
        m_listaPassos.clear();
        ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
        const std::string sDiario = k_pszNomeDiario;
        for (const std::string sNome : {"A.dat", "T.dat"}) {
            EXPECT_LT(Ultimo("+" + sNome), Ultimo("=" + sNome)) << sNome;
            EXPECT_LT(Ultimo("=" + sNome), Ultimo("=" + sDiario)) << sNome;
        }
        EXPECT_LT(Ultimo("=" + sDiario), Ultimo("+" + sDiario)) << "no entry counts when it is deleted";
        EXPECT_FALSE(Existe(sDiario));
        // Nothing changed: nothing to flush.
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        m_listaPassos.clear();
        ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
        EXPECT_EQ(Conta("=A.dat") + Conta("=T.dat"), 0);
    }
}

// The device has the files and their names before the entries stop counting.
TEST_F(Diario, ConclusaoChegaAoDispositivoAntesQueODiarioAEsqueca) {
    {
        SBancoDuplo banco;
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "a"), S_OK);
        auto morte = Morre();
        ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
        morte.erase(PastaDados("T.dat"));
        m_Arquivos.Restaura(morte);
        Cria("A.dat", Le("A.dat").substr(0, 250));
    }
    const CXVCapturaTrace captura;
    m_listaPassos.clear();
    CXVDiario diario;
    ASSERT_EQ(AbreDiario(diario), S_OK);
    const std::string sDiretorio = PastaDados().substr(PastaDados().find_last_of('/') + 1);
    for (const std::string sNome : {"A.dat", "T.dat"}) {
        ASSERT_NE(Ultimo("+" + sNome), 0U);
        EXPECT_LT(Primeiro("+" + std::string(k_pszNomeDiario)), Primeiro("+" + sNome))
            << "viewers learn of it first";
        EXPECT_LT(Ultimo("+" + sNome), Ultimo("=" + sNome)) << sNome;
        EXPECT_LT(Ultimo("=" + sNome), Ultimo("+" + std::string(k_pszNomeDiario))) << sNome;
        EXPECT_LT(Ultimo("+" + sNome), Ultimo("=" + sDiretorio)) << sNome;
    }
    EXPECT_LT(Ultimo("=" + sDiretorio), Ultimo("+" + std::string(k_pszNomeDiario)));
    EXPECT_EQ(diario.Fecha(&m_Dono), S_OK);
}

TEST_F(Diario, FechamentoQueFalhaDeixaODiarioAoProximo) {
    SBancoDuplo banco;
    ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
    ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "a"), S_OK);
    const CXVCapturaTrace captura;
    m_FalhasQueda.SetFiltro([](const std::string& s) { return s.ends_with("T.dat"); });
    m_FalhasQueda.Programa({.eOperacao = EOperacaoArquivo::eSincroniza, .bPermanente = true});
    EXPECT_EQ(banco.Fecha(m_Dono), eHardIO);
    m_FalhasQueda.Limpa();
    EXPECT_TRUE(LeDiario().starts_with("VDIARIO1"));
    std::string sCortado = Le("T.dat").substr(0, 243);  // what the device did not keep
    Cria("T.dat", sCortado);
    ASSERT_EQ(Reabre(Morre()), S_OK);
    EXPECT_EQ(LeTextos("T.dat"), std::vector<std::string>{"a"});
    EXPECT_FALSE(Existe(k_pszNomeDiario));
}

TEST_F(Diario, SegundoEscritorERecusadoComONomeDoDiario) {
    SBancoDuplo banco;
    ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
    ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "a"), S_OK);
    const auto antes = m_Arquivos.Retrata();
    const CXVCapturaTrace captura;
    const CXVArquivosRecusados recusados;
    CXVDiario segundo;
    EXPECT_EQ(AbreDiario(segundo), static_cast<HRESULT>(0x80043EEE));
    EXPECT_EQ(m_Relogio.GetMilissegundosDormidos(), 499U * 10);
    EXPECT_EQ(recusados.GetPath(static_cast<HRESULT>(0x80043EEE)), PastaDados(k_pszNomeDiario));
    EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, m_Arquivos.Retrata()), "");
    EXPECT_EQ(CXVDiario::Busca(PastaDados()), &banco.diario);
    ASSERT_EQ(banco.Grava(0, {2, 0, 0}, "b"), S_OK);
    ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
    EXPECT_EQ(CXVDiario::Busca(PastaDados()), nullptr);
    EXPECT_EQ(AbreDiario(segundo), S_OK);
    EXPECT_EQ(segundo.Fecha(&m_Dono), S_OK);
}

// Texts of all sizes through a ring that holds a few of them: at every moment the journal brings files that
// are one operation behind to where they were.
TEST_F(Diario, AnelQueDaVoltasConcluiSempreAUltima) {
    const auto inicial = m_Arquivos.Retrata();
    for (const XVUInt64 uiAnel : {4096U, 8192U}) {
        SCOPED_TRACE(uiAnel);
        m_Arquivos.Restaura(inicial);
        CXVDiarioAnel::SetTamanhoAnel(uiAnel);
        std::vector<CXVSistemaArquivosMemoria::TRetrato> retratos;
        {
            SBancoDuplo banco;
            ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
            for (std::size_t i = 0; i < 160; ++i) {
                std::size_t uiTamanho = i < 40 ? i * 389 % 2300 : i * 37 % 300;
                if (i >= 40 && i % 7 == 3) uiTamanho = 2700;
                if (i >= 40 && i % 11 == 5) uiTamanho = 5000;
                const std::string sTexto(uiTamanho, static_cast<char>('a' + i % 26));
                ASSERT_EQ(banco.Grava(i % 3 == 0 ? 0 : 1, {i, 0, 0}, sTexto), S_OK);
                retratos.push_back(Morre());
            }
            ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
        }
        for (std::size_t i = 1; i < retratos.size(); ++i) {
            SCOPED_TRACE(i);
            auto atrasado = retratos[i - 1];
            atrasado[PastaDados(k_pszNomeDiario)] = retratos[i][PastaDados(k_pszNomeDiario)];
            const CXVCapturaTrace captura;
            ASSERT_EQ(Reabre(atrasado), S_OK);
            for (const char* psz : {"A.dat", "T.dat"})
                ASSERT_EQ(Le(psz), retratos[i].at(PastaDados(psz)).sConteudo);
        }
    }
}

// Power failures of a device that has to be flushed, a small ring, and an operation that fails now and then.
TEST_F(Diario, QuedaDeEnergiaComAnelPequenoNadaPerdeESempreAbre) {
    CXVDiarioAnel::SetTamanhoAnel(4096);
    SetDurabilidade(1);
    const auto inicial = m_Arquivos.Retrata();
    for (XVUInt64 uiSemente = 1; uiSemente <= 1500; ++uiSemente) {
        SCOPED_TRACE(uiSemente);
        m_Arquivos.Restaura(inicial);
        CXVSistemaArquivosQueda queda(m_Arquivos);
        CXVSistemaArquivosFalhas falhas(queda);
        const CXVGuardaSistemaArquivos guarda(falhas);
        const CXVCapturaTrace captura;
        std::size_t uiPasso = 0;
        const std::size_t uiMomento = uiSemente * 7 % 400;
        std::size_t uiReconhecidas = 0;
        std::size_t uiNaQueda = 0;
        std::optional<CXVSistemaArquivosMemoria::TRetrato> corte;
        queda.SetAoAlterar([&](const std::string&, CXVSistemaArquivosQueda::EAlteracao) {
            if (uiPasso++ != uiMomento) return;
            corte = queda.Corta(uiSemente);
            uiNaQueda = uiReconhecidas;
        });
        std::vector<std::string> textos;
        {
            SBancoDuplo banco;
            ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
            for (std::size_t i = 0; i < 40 && !corte; ++i) {
                const std::string sTexto((i * 389 + uiSemente * 31) % (uiSemente % 2 == 0 ? 2300 : 600),
                                         static_cast<char>('a' + i % 26));
                const bool bFalha = i % 5 == 3;
                falhas.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
                if (bFalha) falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava});
                const HRESULT hr = banco.Grava(i < 2 ? 0 : 1, {i, 0, 0}, sTexto);
                falhas.Limpa();
                ASSERT_EQ(hr, bFalha ? eHardIO : S_OK);
                if (bFalha) continue;
                textos.push_back(sTexto);
                ++uiReconhecidas;
            }
            ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
        }
        if (!corte) continue;
        queda.SetAoAlterar(nullptr);
        ASSERT_EQ(Reabre(*corte), S_OK) << "at step " << uiMomento;
        const std::vector<std::string> lidos =
            Existe("T.dat") ? LeTextos("T.dat") : std::vector<std::string>{};
        ASSERT_GE(lidos.size(), uiNaQueda);
        ASSERT_LE(lidos.size(), uiNaQueda + 1);
        ASSERT_TRUE(std::equal(lidos.begin(), lidos.end() - (lidos.size() > textos.size()), textos.begin()));
    }
}

// An operation that failed stays away, and the one after it stays, whatever of the journal failed and
// whenever the process dies.
TEST_F(Diario, FalhasDoDiarioNaoDeixamOperacaoQueVolta) {
    const auto inicial = m_Arquivos.Retrata();
    for (const XVUInt ulDurabilidade : {0U, 1U}) {
        SetDurabilidade(ulDurabilidade);
        for (const bool bPermanente : {false, true}) {
            bool bHouveFalha = true;
            for (XVUInt64 uiNumero = 1; bHouveFalha; ++uiNumero) {
                SCOPED_TRACE(testing::Message() << ulDurabilidade << bPermanente << uiNumero);
                ASSERT_LT(uiNumero, 60U);
                m_Arquivos.Restaura(inicial);
                const CXVCapturaTrace captura;
                CXVSistemaArquivosMemoria::TRetrato depois, morte;
                HRESULT hr = S_OK;
                {
                    SBancoDuplo banco;
                    ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
                    ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "primeiro"), S_OK);
                    m_FalhasQueda.SetFiltro(
                        [](const std::string& s) { return s.ends_with(k_pszNomeDiario); });
                    m_FalhasQueda.Programa({.uiNumero = uiNumero, .bPermanente = bPermanente});
                    hr = banco.Grava(1, {2, 0, 0}, "que falha");
                    bHouveFalha = m_FalhasQueda.GetFalhasOcorridas() > 0;
                    m_FalhasQueda.Limpa();
                    ASSERT_EQ(banco.Grava(1, {3, 0, 0}, "seguinte"), S_OK);
                    morte = Morre();
                    ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
                    depois = Morre();
                }
                for (const auto& rRetrato : {depois, morte}) {
                    ASSERT_EQ(Reabre(rRetrato), S_OK);
                    std::vector<std::string> esperados{"primeiro", "que falha", "seguinte"};
                    if (FAILED(hr)) esperados.erase(esperados.begin() + 1);
                    ASSERT_EQ(LeTextos("T.dat"), esperados);
                    ASSERT_EQ(LeRegistros("A.dat"), (std::vector<REG_TESTE>{{3, 0, 0}}));
                }
            }
        }
    }
}

// Half of a write has reached the file: all files are byte for byte what they were, on disk and for readers.
TEST_F(Diario, OperacaoQueFalhaDeixaTudoComoEstava) {
    for (const bool bTemTextos : {false, true}) {
        Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({{1, 2, 3}})));
        m_Arquivos.Apaga(PastaDados("T.dat")).Ignora();
        if (bTemTextos) Cria("T.dat", ArquivoComCabecalho("T.dat", Prefixado("ja havia")));
        m_Arquivos.Apaga(PastaDados(k_pszControle)).Ignora();
        SBancoDuplo banco;
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        const CXVCapturaTrace captura;
        m_FalhasQueda.SetFiltro([](const std::string& s) { return s.ends_with(".dat"); });
        bool bHouveFalha = true;
        for (XVUInt64 uiNumero = 1; bHouveFalha; ++uiNumero) {
            SCOPED_TRACE(uiNumero);
            ASSERT_LT(uiNumero, 20U);
            const std::string sA = Le("A.dat");
            const std::string sT = Le("T.dat");
            m_FalhasQueda.Programa(
                {.eOperacao = EOperacaoArquivo::eGrava, .uiNumero = uiNumero, .bGravaMetade = true});
            const HRESULT hr = banco.Grava(1, {7, 8, 9}, "um texto que e longo");
            bHouveFalha = m_FalhasQueda.GetFalhasOcorridas() > 0;
            m_FalhasQueda.Limpa();
            ASSERT_EQ(hr, bHouveFalha ? eHardIO : S_OK);
            if (!bHouveFalha) break;
            ASSERT_EQ(Le("A.dat"), sA);
            ASSERT_EQ(Le("T.dat"), sT);
            REG_TESTE reg{};
            ASSERT_EQ(banco.a.Le(1, &reg), S_OK);
            ASSERT_EQ(reg, (REG_TESTE{1, 2, 3}));
            ASSERT_EQ(banco.t.GetQtdRegistros(), bTemTextos ? 1U : 0U);
        }
        ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
    }
}

// A file that somebody made since the operation was prepared is not ours, neither to write nor to delete.
TEST_F(Diario, ArquivoQueSurgiuNoMeioNaoETocado) {
    SBancoDuplo banco;
    ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
    bool bSurgiu = false;
    m_fnAoAlterar = [&](const std::string& sCaminho, CXVSistemaArquivosQueda::EAlteracao) {
        if (sCaminho.ends_with(k_pszNomeDiario) && !bSurgiu) Cria("T.dat", "alheio");
        bSurgiu = true;
    };
    const CXVCapturaTrace captura;
    EXPECT_EQ(banco.Grava(0, {1, 0, 0}, "meu"), eSharingViolation);
    m_fnAoAlterar = nullptr;
    EXPECT_EQ(Le("T.dat"), "alheio");
    EXPECT_FALSE(Existe("A.dat"));
    const auto morte = Morre();
    XVIgnora(banco.Fecha(m_Dono));
    ASSERT_EQ(Reabre(morte), S_OK);
    EXPECT_EQ(Le("T.dat"), "alheio");
}

// What the journal knows of a file ends before the file goes: an opening never looks for it again.
TEST_F(Diario, ArquivoSoSaiQuandoNenhumaEntradaPrecisaDele) {
    for (const XVUInt ulDurabilidade : {0U, 1U}) {
        SetDurabilidade(ulDurabilidade);
        Cria("X.dat", "x");
        SBancoDuplo banco;
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "a"), S_OK);
        m_listaPassos.clear();
        ASSERT_EQ(CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "X.dat", CXVDataBaseUtil::eMantemNoControle),
                  S_OK);
        const std::size_t uiSaida = Ultimo("+X.dat");
        ASSERT_NE(uiSaida, 0U);
        for (const char* psz : {"=A.dat", "=T.dat", "+XVDATABASE_ABERTA.srk"}) {
            EXPECT_NE(Ultimo(psz), 0U) << psz;
            EXPECT_LT(Ultimo(psz), uiSaida) << psz;
        }
        if (ulDurabilidade == 1) {
            EXPECT_LT(Ultimo("+XVDATABASE_ABERTA.srk"), Ultimo("=XVDATABASE_ABERTA.srk"));
        }
        EXPECT_EQ(Campo<XVUInt64>(LeDiario(), 520), 2U);
        auto morte = Morre();
        morte.erase(PastaDados("T.dat"));
        ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
        EXPECT_EQ(Reabre(morte), S_OK) << "it has nothing to say of files any more";
        m_Arquivos.Apaga(PastaDados("A.dat")).Ignora();
    }
}

TEST_F(Diario, CopiaSaiNaAberturaSoEnquantoEstavaSendoFeita) {
    const auto inicial = m_Arquivos.Retrata();
    enum class EFim { eEmCurso, eTerminada, eInicioFalhou };
    for (const EFim eFim : {EFim::eEmCurso, EFim::eTerminada, EFim::eInicioFalhou}) {
        SCOPED_TRACE(static_cast<int>(eFim));
        m_Arquivos.Restaura(inicial);
        SetDurabilidade(1);
        CXVDiarioAnel::SetTamanhoAnel(4096);
        const CXVCapturaTrace captura;
        CXVSistemaArquivosMemoria::TRetrato morte;
        {
            SBancoDuplo banco;
            ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
            ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "a"), S_OK);
            XVUInt64 uiCopia = 0;
            if (eFim == EFim::eInicioFalhou) {
                m_FalhasQueda.SetFiltro([](const std::string& s) { return s.ends_with(k_pszNomeDiario); });
                m_FalhasQueda.Programa({.eOperacao = EOperacaoArquivo::eSincroniza, .uiNumero = 2});
            }
            ASSERT_EQ(banco.diario.IniciaCopia(&m_Dono, "C.cab", &uiCopia),
                      eFim == EFim::eInicioFalhou ? eHardIO : S_OK);
            m_FalhasQueda.Limpa();
            Cria("C.cab", "metade");
            if (eFim == EFim::eTerminada) {
                banco.diario.TerminaCopia(uiCopia);
                EXPECT_FALSE(Existe("C.cab"));
                Cria("C.cab", "alheia");
            }
            // Of a copy that was never begun nothing stays in the ring.
            for (XVUInt i = 0; i < (eFim == EFim::eInicioFalhou ? 8U : 1U); ++i)
                ASSERT_EQ(banco.Grava(1, {i, 9, 9}, "b"), S_OK);
            ASSERT_EQ(banco.diario.PontoSeguro(&m_Dono), S_OK);
            EXPECT_TRUE(Existe("C.cab"));
            morte = Morre();
            ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
        }
        ASSERT_EQ(Reabre(morte), S_OK);
        EXPECT_EQ(Existe("C.cab"), eFim != EFim::eEmCurso);
        m_Arquivos.Apaga(PastaDados("C.cab")).Ignora();
    }
}

// Its entry must outlive the operations of others, however often the ring goes round meanwhile.
TEST_F(Diario, CopiaDemoradaContinuaProtegida) {
    CXVDiarioAnel::SetTamanhoAnel(4096);
    for (const XVUInt ulDurabilidade : {0U, 1U}) {
        SCOPED_TRACE(ulDurabilidade);
        SetDurabilidade(ulDurabilidade);
        const CXVCapturaTrace captura;
        SBancoDuplo banco;
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        XVUInt64 uiCopia = 0;
        ASSERT_EQ(banco.diario.IniciaCopia(&m_Dono, "C.cab", &uiCopia), S_OK);
        Cria("C.cab", "metade");
        std::vector<CXVSistemaArquivosMemoria::TRetrato> mortes;
        for (XVUInt i = 0; i < 30; ++i) {
            ASSERT_EQ(banco.Grava(0, {i, 0, 0}, std::string(i * 97 % 2300, 't')), S_OK);
            mortes.push_back(Morre());
        }
        EXPECT_TRUE(Existe("C.cab"));
        banco.diario.TerminaCopia(uiCopia);
        EXPECT_FALSE(Existe("C.cab"));
        mortes.push_back(Morre());
        Cria("C.cab", "alheia");
        const auto comAlheia = Morre();
        ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
        ASSERT_EQ(Reabre(comAlheia), S_OK);
        EXPECT_TRUE(Existe("C.cab")) << "no entry speaks of it any more";
        for (const auto& rMorte : mortes) {
            ASSERT_EQ(Reabre(rMorte), S_OK);
            ASSERT_FALSE(Existe("C.cab"));
        }
        m_Arquivos.Apaga(PastaDados("A.dat")).Ignora();
        m_Arquivos.Apaga(PastaDados("T.dat")).Ignora();
    }
}

// A copy that was there before is somebody's; beginning one of our own must not make it ours.
TEST_F(Diario, CopiaAlheiaDoControleNaoSai) {
    Cria("XVDATABASE_FILE_CTRL.dat", Prefixado("A.dat") + Prefixado("B.dat"));
    Cria("XVDATABASE_FILE_CTRL.tra", "alheia");
    Cria("B.dat", "b");
    const CXVCapturaTrace captura;
    CXVDiario diario;
    ASSERT_EQ(AbreDiario(diario), S_OK);
    EXPECT_EQ(CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "B.dat", CXVDataBaseUtil::eRemoveDoControle),
              E_XVCR_ARQUIVO_TRA_ENCONTRADO);
    EXPECT_EQ(diario.Fecha(&m_Dono), S_OK);
    EXPECT_EQ(Le("XVDATABASE_FILE_CTRL.tra"), "alheia");
}

// Bytes of a client that look like an entry are data, whatever they say.
TEST_F(Diario, TextoQuePareceEntradaEApenasTexto) {
    SBancoDuplo banco;
    ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
    ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "a"), S_OK);
    const auto uiSessao = Campo<XVUInt64>(LeDiario(), 8);
    std::string sForjada = EntradaBytes(uiSessao, {3, {{"MAL.dat", 0, 0, 4, "mal!", "", true}}});
    sForjada.resize(192);
    std::string sTexto = "1234";  // behind its length: a multiple of 8
    for (std::size_t i = 0; i < 64; i += 8) sTexto += sForjada + std::string(8, ' ');  // at every alignment
    ASSERT_EQ(banco.Grava(0, {2, 0, 0}, sTexto), S_OK);
    const auto morte = Morre();
    ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
    const CXVCapturaTrace captura;
    ASSERT_EQ(Reabre(morte), S_OK);
    EXPECT_FALSE(Existe("MAL.dat"));
    EXPECT_EQ(Le("T.dat").substr(240), Prefixado("a") + Prefixado(sTexto));
}

// Three files, one for each caller, so that what one prepares depends on nothing that waits.
struct SBancoFila {
    SBancoFila() : xvDB(XV_DF), aFiles{{{"A.dat", &xvDB}, {"B.dat", &xvDB}, {"C.dat", &xvDB}}} {}
    HRESULT Abre(const IXVDF_Profiler& rDono, const std::string& sDiretorio) {
        const HRESULT hr = diario.Abre(&rDono, XV_DF, sDiretorio);
        return FAILED(hr) ? hr : xvDB.Inicializa(&rDono);
    }
    HRESULT Fecha(const IXVDF_Profiler& rDono) {
        const HRESULT hr = xvDB.Finaliza();
        const HRESULT hrDiario = diario.Fecha(&rDono);
        return FAILED(hr) ? hr : hrDiario;
    }
    // As a store does: prepared under the callers' lock, again when it was in vain.
    HRESULT Grava(std::size_t uiFile, std::string_view sTexto, XVUInt64 uiChave) {
        while (true) {
            std::unique_lock bloqueio(mutexAlteracao);
            CXVOperacao operacao(&xvDB);
            operacao.SetChave(uiChave);
            HRESULT hr = operacao.Inicia();
            XVUInt uiPosicao = 0;
            if (SUCCEEDED(hr))
                hr =
                    aFiles[uiFile].PreparaColecao(operacao, uiPosicao, std::vector<std::string_view>{sTexto});
            if (FAILED(hr)) return hr;
            bool bRefaz = false;
            hr = diario.Executa(operacao, bloqueio, &bRefaz);
            if (!bRefaz) return hr;
            ++ulRefeitas;
        }
    }

    CXVDiario diario;
    CXVDataBase xvDB;
    std::array<CXVTextFile, 3> aFiles;
    std::mutex mutexAlteracao;
    std::atomic<XVUInt> ulRefeitas = 0;
};

// While the device flushes for the first caller two more come and wait.
class FilaDoDiario : public Diario {
  protected:
    void SetUp() override {
        SetDurabilidade(1);
        ASSERT_EQ(m_banco.Abre(m_Dono, PastaDados()), S_OK);
        for (std::size_t i = 0; i < 3; ++i) ASSERT_EQ(m_banco.Grava(i, "antes", i + 1), S_OK);
        m_listaPassos.clear();
    }
    // aoDescarregar: at each flush of the journal after the first, with its number.
    void GravamJuntos(const std::function<void(int)>& fnAoDescarregar = nullptr) {
        int iDescargas = 0;
        m_fnAoAlterar = [&](const std::string& sCaminho, CXVSistemaArquivosQueda::EAlteracao e) {
            if (e != CXVSistemaArquivosQueda::EAlteracao::eSincroniza || !sCaminho.ends_with(k_pszNomeDiario))
                return;
            if (++iDescargas > 1) {
                if (fnAoDescarregar) fnAoDescarregar(iDescargas);
                return;
            }
            for (std::size_t i = 1; i < 3; ++i)
                m_fios.emplace_back([this, i] {
                    const CXVCapturaTrace captura;
                    m_aCodigos[i] = m_banco.Grava(m_bNoMesmoArquivo ? 0 : i, "depois", i + 1);
                });
            while (!m_banco.diario.TemNaFila(2) || !m_banco.diario.TemNaFila(3)) std::this_thread::yield();
            EXPECT_TRUE(m_banco.diario.TemFila());
            EXPECT_FALSE(m_banco.diario.TemNaFila(4));
        };
        const CXVCapturaTrace captura;
        m_aCodigos[0] = m_banco.Grava(0, "depois", 1);
        for (std::thread& rFio : m_fios) rFio.join();
        m_fnAoAlterar = nullptr;
        EXPECT_FALSE(m_banco.diario.TemFila());
    }
    // What was recorded, now and by whoever finds the store after a death.
    void Confere(const std::array<bool, 3>& rGravados) {
        const auto morte = Morre();
        ASSERT_EQ(m_banco.Fecha(m_Dono), S_OK);
        const auto depois = Morre();
        for (const auto& rRetrato : {depois, morte})
            ASSERT_NO_FATAL_FAILURE(ConfereRetrato(rRetrato, rGravados));
    }
    void ConfereRetrato(const CXVSistemaArquivosMemoria::TRetrato& rRetrato,
                        const std::array<bool, 3>& rGravados) {
        const CXVCapturaTrace captura;
        ASSERT_EQ(Reabre(rRetrato), S_OK);
        for (std::size_t i = 0; i < 3; ++i) {
            std::vector<std::string> esperados{"antes"};
            if (rGravados[i]) esperados.emplace_back("depois");
            ASSERT_EQ(LeTextos(std::string(1, static_cast<char>('A' + i)) + ".dat"), esperados);
        }
    }

    SBancoFila m_banco;
    bool m_bNoMesmoArquivo = false;
    std::vector<std::thread> m_fios;
    std::array<HRESULT, 3> m_aCodigos{E_FAIL, E_FAIL, E_FAIL};
};

TEST_F(FilaDoDiario, QuemEsperaJuntoDivideADescarga) {
    GravamJuntos();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{S_OK, S_OK, S_OK}));
    EXPECT_EQ(Conta("=" + std::string(k_pszNomeDiario)), 2) << "one for the first, one for both others";
    EXPECT_EQ(m_banco.ulRefeitas, 0U);
    EXPECT_EQ(Campo<XVUInt64>(LeDiario(), 512) % 2, 0U);
    Confere({true, true, true});
}

TEST_F(FilaDoDiario, QuemAnexaAoMesmoArquivoContaComQuemEspera) {
    m_bNoMesmoArquivo = true;
    GravamJuntos();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{S_OK, S_OK, S_OK}));
    const auto morte = Morre();
    ASSERT_EQ(m_banco.Fecha(m_Dono), S_OK);
    ASSERT_EQ(Reabre(morte), S_OK);
    EXPECT_EQ(LeTextos("A.dat"), (std::vector<std::string>{"antes", "depois", "depois", "depois"}));
}

// A safe point in between: what waits is in the journal alone, and stays needed.
TEST_F(FilaDoDiario, PontoSeguroNaoDispensaQuemEspera) {
    XVUInt64 uiPrimeira = 0;
    GravamJuntos([&](int iDescarga) {
        if (iDescarga != 2) return;
        EXPECT_EQ(m_banco.diario.PontoSeguro(&m_Dono), S_OK);
        uiPrimeira = Campo<XVUInt64>(LeDiario(), 520);
    });
    EXPECT_EQ(uiPrimeira, 5U) << "four are over, two wait";
    Confere({true, true, true});
}

// What was prepared on top of an operation that failed is prepared again, and its entries count for nothing.
TEST_F(FilaDoDiario, AtrasDeUmaQueFalhaTudoSePreparaDeNovo) {
    m_FalhasQueda.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
    m_FalhasQueda.Programa({.eOperacao = EOperacaoArquivo::eGrava});
    std::optional<CXVSistemaArquivosMemoria::TRetrato> morte;
    GravamJuntos([&](int iDescarga) {
        if (iDescarga == 2) morte = Morre();  // the first one is marked as to be undone
    });
    m_FalhasQueda.Limpa();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{eHardIO, S_OK, S_OK}));
    EXPECT_EQ(m_banco.ulRefeitas, 2U);
    Confere({false, true, true});
    ASSERT_TRUE(morte.has_value());
    ConfereRetrato(*morte, {false, false, false});
}

TEST_F(FilaDoDiario, DescargaQueFalhaFalhaParaTodosQueADividem) {
    m_FalhasQueda.SetFiltro([](const std::string& s) { return s.ends_with(k_pszNomeDiario); });
    m_FalhasQueda.Programa({.eOperacao = EOperacaoArquivo::eSincroniza, .uiNumero = 2});
    GravamJuntos();
    m_FalhasQueda.Limpa();
    EXPECT_EQ(m_aCodigos, (std::array<HRESULT, 3>{S_OK, eHardIO, eHardIO}));
    EXPECT_EQ(m_banco.ulRefeitas, 0U);
    Confere({true, false, false});
}

// Emptied by somebody who must be alone: those that waited are carried out, and the lock is held again.
TEST_F(FilaDoDiario, QuemPrecisaEstarSozinhoEsvaziaAFila) {
    std::unique_lock<std::mutex> bloqueio;
    std::array<XVUInt64, 2> auiTamanhos{};
    const auto fnSozinho = [&] {
        bloqueio = std::unique_lock(m_banco.mutexAlteracao);
        m_banco.diario.EsvaziaFila(bloqueio);
        auiTamanhos = {m_banco.aFiles[1].GetQtdRegistros(), m_banco.aFiles[2].GetQtdRegistros()};
        EXPECT_TRUE(bloqueio.owns_lock());
        EXPECT_FALSE(m_banco.diario.TemFila());
        bloqueio.unlock();
    };
    std::thread sozinho;
    m_fnAoAlterar = nullptr;
    GravamJuntos([&](int iDescarga) {
        if (iDescarga == 2) sozinho = std::thread(fnSozinho);
    });
    sozinho.join();
    EXPECT_EQ(auiTamanhos, (std::array<XVUInt64, 2>{2, 2}));
    Confere({true, true, true});
}

}  // namespace
