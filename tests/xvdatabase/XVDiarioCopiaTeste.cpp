// Copies that are written beside a file, and the deletion of files.
#include "core/xvdatabase/XVDataBaseUtil.h"
#include "tests/xvdatabase/XVCenarioDiario.h"

namespace {

class DiarioCopia : public CXVCenarioDiario {};

TEST_F(DiarioCopia, CopiaSaiNaAberturaSoEnquantoEstavaSendoFeita) {
    const auto inicial = m_Arquivos.Retrata();
    enum class EFim { eEmCurso, eTerminada, eDescargaFalhou, eEntradaFalhou };
    for (const EFim eFim : {EFim::eEmCurso, EFim::eTerminada, EFim::eDescargaFalhou, EFim::eEntradaFalhou}) {
        SCOPED_TRACE(static_cast<int>(eFim));
        const bool bFalhou = eFim == EFim::eDescargaFalhou || eFim == EFim::eEntradaFalhou;
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
            if (bFalhou) {
                m_FalhasQueda.SetFiltro([](const std::string& s) { return s.ends_with(k_pszNomeDiario); });
                m_FalhasQueda.Programa({.eOperacao = eFim == EFim::eEntradaFalhou
                                                         ? EOperacaoArquivo::eGrava
                                                         : EOperacaoArquivo::eSincroniza,
                                        .uiNumero = 2});
            }
            ASSERT_EQ(banco.diario.IniciaCopia(&m_Dono, "C.cab", &uiCopia), bFalhou ? eHardIO : S_OK);
            m_FalhasQueda.Limpa();
            Cria("C.cab", "metade");
            if (eFim == EFim::eTerminada) {
                banco.diario.TerminaCopia(uiCopia);
                EXPECT_FALSE(Existe("C.cab"));
                Cria("C.cab", "alheia");
            }
            // Of a copy that was never begun nothing stays in the ring.
            for (XVUInt i = 0; i < (bFalhou ? 8U : 1U); ++i) ASSERT_EQ(banco.Grava(1, {i, 9, 9}, "b"), S_OK);
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
TEST_F(DiarioCopia, CopiaDemoradaContinuaProtegida) {
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

// A death while a header is added, or the list is made shorter, leaves no copy in the way of the next
// opening.
TEST_F(DiarioCopia, CopiaInterrompidaNaoFicaNoCaminho) {
    Cria("A.dat", Bytes({{1, 2, 3}}));
    Cria("B.dat", "b");
    Cria(k_pszControle, Prefixado("A.dat") + Prefixado("B.dat"));
    std::vector<CXVSistemaArquivosMemoria::TRetrato> mortes;
    m_fnAoAlterar = [&](const std::string& s, CXVSistemaArquivosQueda::EAlteracao) {
        if (s.ends_with("A.cab") || s.ends_with("CTRL.tra")) mortes.push_back(Morre());
    };
    {
        SBancoDuplo banco;
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        const std::size_t uiCabecalho = mortes.size();
        EXPECT_GT(uiCabecalho, 0U);
        ASSERT_EQ(CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "B.dat", CXVDataBaseUtil::eRemoveDoControle),
                  S_OK);
        EXPECT_GT(mortes.size(), uiCabecalho);
        m_fnAoAlterar = nullptr;
        ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
    }
    const CXVCapturaTrace captura;
    for (const auto& rMorte : mortes) {
        ASSERT_EQ(Reabre(rMorte), S_OK);
        EXPECT_FALSE(Existe("A.cab") || Existe("XVDATABASE_FILE_CTRL.tra"));
        EXPECT_EQ(LeRegistros("A.dat"), (std::vector<REG_TESTE>{{1, 2, 3}}));
    }
}

}  // namespace
