// Operations that fail, and what the journal leaves of them.
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "tests/xvdatabase/XVCenarioDiario.h"

namespace {

class DiarioDesfaz : public CXVCenarioDiario {};

// An operation that failed stays away, and the one after it stays, whatever of the journal failed and
// whenever the process dies.
TEST_F(DiarioDesfaz, FalhasDoDiarioNaoDeixamOperacaoQueVolta) {
    const auto inicial = m_Arquivos.Retrata();
    for (const XVUInt ulDurabilidade : {0U, 1U}) {
        SetDurabilidade(ulDurabilidade);
        for (const auto& [bPermanente, bFazTudo] :
             {std::pair(false, false), {true, false}, {false, true}, {true, true}}) {
            bool bHouveFalha = true;
            XVUInt64 uiNumero = 1;
            for (; bHouveFalha; ++uiNumero) {
                SCOPED_TRACE(testing::Message() << ulDurabilidade << bPermanente << bFazTudo << uiNumero);
                ASSERT_LT(uiNumero, 60U);
                m_Arquivos.Restaura(inicial);
                const CXVCapturaTrace captura;
                CXVSistemaArquivosMemoria::TRetrato depois, morte, falha;
                HRESULT hr = S_OK;
                {
                    SBancoDuplo banco;
                    ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
                    ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "primeiro"), S_OK);
                    m_FalhasQueda.SetFiltro(
                        [](const std::string& s) { return s.ends_with(k_pszNomeDiario); });
                    m_FalhasQueda.Programa(
                        {.uiNumero = uiNumero, .bPermanente = bPermanente, .bFazTudo = bFazTudo});
                    hr = banco.Grava(1, {2, 0, 0}, "que falha");
                    bHouveFalha = m_FalhasQueda.GetFalhasOcorridas() > 0;
                    m_FalhasQueda.Limpa();
                    falha = Morre();
                    ASSERT_EQ(banco.Grava(1, {3, 0, 0}, "seguinte"), S_OK);
                    morte = Morre();
                    ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
                    depois = Morre();
                }
                if (FAILED(hr) && bFazTudo) {
                    ASSERT_EQ(Reabre(falha), S_OK);
                    ASSERT_EQ(LeTextos("T.dat"), std::vector<std::string>{"primeiro"});
                }
                for (const auto& rRetrato : {depois, morte}) {
                    ASSERT_EQ(Reabre(rRetrato), S_OK);
                    std::vector<std::string> esperados{"primeiro", "que falha", "seguinte"};
                    if (FAILED(hr)) esperados.erase(esperados.begin() + 1);
                    ASSERT_EQ(LeTextos("T.dat"), esperados);
                    ASSERT_EQ(LeRegistros("A.dat"), (std::vector<REG_TESTE>{{3, 0, 0}}));
                }
            }
            EXPECT_GT(uiNumero, 3U) << "the sweep must have met the operation";
        }
    }
}

// What could not be undone either is undone by the next operation, by closing, or by the next opening; until
// then nothing else is written.
TEST_F(DiarioDesfaz, OQueNaoSeDesfazEspera) {
    enum class EVolta { eAntesDaSeguinte, eAoFechar, eDepoisDeFechado, eNunca };
    const auto inicial = m_Arquivos.Retrata();
    for (const EVolta eVolta :
         {EVolta::eAntesDaSeguinte, EVolta::eAoFechar, EVolta::eDepoisDeFechado, EVolta::eNunca}) {
        SCOPED_TRACE(static_cast<int>(eVolta));
        m_Arquivos.Restaura(inicial);
        const CXVCapturaTrace captura;
        SBancoDuplo banco;
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        ASSERT_EQ(banco.Grava(0, {1, 2, 3}, "um"), S_OK);
        m_FalhasQueda.SetFiltro([](const std::string& s) { return s.ends_with("T.dat"); });
        m_FalhasQueda.Programa({.bPermanente = true});
        EXPECT_EQ(banco.Grava(0, {4, 5, 6}, "dois"), eHardIO);
        const std::string sA = Le("A.dat");
        EXPECT_EQ(banco.Grava(1, {7, 8, 9}, "tres"), eHardIO);
        EXPECT_EQ(Le("A.dat"), sA);
        std::vector<REG_TESTE> esperados{{1, 2, 3}};
        XVUInt uiPosicao = 0;
        if (eVolta == EVolta::eAntesDaSeguinte) {
            m_FalhasQueda.Limpa();
            ASSERT_EQ(banco.a.Grava(uiPosicao, {7, 8, 9}), S_OK);
            EXPECT_EQ(uiPosicao, 2U);
            esperados.push_back({7, 8, 9});
        } else if (eVolta == EVolta::eDepoisDeFechado) {
            XVIgnora(banco.xvDB.Finaliza());
            m_FalhasQueda.Limpa();
            XVIgnora(banco.xvDB.Inicializa(&m_Dono));
            EXPECT_EQ(banco.a.Grava(uiPosicao, {7, 8, 9}), eInvalidFile) << "given up until the next opening";
        }
        if (eVolta != EVolta::eNunca) m_FalhasQueda.Limpa();
        const bool bFecha = eVolta == EVolta::eAntesDaSeguinte || eVolta == EVolta::eAoFechar;
        EXPECT_EQ(SUCCEEDED(banco.Fecha(m_Dono)), bFecha);
        EXPECT_EQ(Existe(k_pszNomeDiario), !bFecha);
        m_FalhasQueda.Limpa();
        ASSERT_EQ(Reabre(Morre()), S_OK);
        EXPECT_EQ(LeRegistros("A.dat"), esperados);
        EXPECT_EQ(LeTextos("T.dat"), std::vector<std::string>{"um"});
    }
}

// A file that somebody made since the operation was prepared is not ours, neither to write nor to delete.
TEST_F(DiarioDesfaz, ArquivoQueSurgiuNoMeioNaoETocado) {
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
TEST_F(DiarioDesfaz, ArquivoSoSaiQuandoNenhumaEntradaPrecisaDele) {
    for (const XVUInt ulDurabilidade : {0U, 1U}) {
        SetDurabilidade(ulDurabilidade);
        Cria("X.dat", "x");
        SBancoDuplo banco;
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "a"), S_OK);
        m_listaPassos.clear();
        ASSERT_EQ(CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "X.dat", CXVDataBaseUtil::eMantemNoControle),
                  S_OK);
        const std::string sEscrito = "+" + std::string(k_pszNomeDiario);
        for (const char* psz : {"=A.dat", "=T.dat"}) EsperaOrdem({psz, "+X.dat"});
        EsperaOrdem({sEscrito, "+X.dat"});
        if (ulDurabilidade == 1) {
            EsperaOrdem({sEscrito, "=" + std::string(k_pszNomeDiario)});
        }
        EXPECT_EQ(Campo<XVUInt64>(LeDiario(), 520), 2U);
        auto morte = Morre();
        morte.erase(PastaDados("T.dat"));
        ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
        EXPECT_EQ(Reabre(morte), S_OK) << "it has nothing to say of files any more";
        m_Arquivos.Apaga(PastaDados("A.dat")).Ignora();
    }
}

}  // namespace
