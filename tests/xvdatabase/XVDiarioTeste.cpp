// The journal of a directory that is open for writing: its bytes, what it flushes and when.
#include <optional>

#include "tests/xvdatabase/XVCenarioDiario.h"

namespace {

class Diario : public CXVCenarioDiario {
  protected:
    std::string NomeDiretorio() const { return PastaDados().substr(PastaDados().find_last_of('/') + 1); }
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
        m_registry.Remove(CAmbienteXV::GetChaveRegistry(XV_DF), "Durabilidade");
        if (rCaso.ulValor) SetDurabilidade(*rCaso.ulValor);
        SCOPED_TRACE(rCaso.ulValor.value_or(99));
        m_listaPassos.clear();
        const CXVCapturaTrace captura;
        SBancoDuplo banco;
        ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
        EXPECT_EQ(!captura.GetFalhas().empty(), rCaso.bAviso);
        ASSERT_EQ(banco.Grava(0, {1, 0, 0}, "a"), S_OK);
        EXPECT_EQ(Conta("=" + NomeDiretorio()), rCaso.lDescargas) << "the journal's name";
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
        // Files that were flushed, or opened again, since an operation wrote to them.
        ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
        ASSERT_EQ(banco.xvDB.Inicializa(&m_Dono), S_OK);
        ASSERT_EQ(banco.diario.PontoSeguro(&m_Dono), S_OK);
        ASSERT_EQ(banco.Grava(0, {2, 0, 0}, "b"), S_OK);
        m_listaPassos.clear();
        ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
        const std::string sDiario = k_pszNomeDiario;
        // With names; and no entry counts when the journal is deleted.
        for (const std::string sNome : {"A.dat", "T.dat"})
            EsperaOrdem({"+" + sNome, "=" + sNome, "=" + NomeDiretorio(), "=" + sDiario, "+" + sDiario});
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
    // The journal is made ready and marked before the files change: viewers learn of the conclusion first.
    const std::string sDiario = k_pszNomeDiario;
    EXPECT_EQ(m_listaPassos,
              (std::vector<std::string>{"+" + sDiario, "+" + sDiario, "+A.dat", "=A.dat", "+T.dat", "+T.dat",
                                        "=T.dat", "=" + NomeDiretorio(), "+" + sDiario, "=" + sDiario}));
    EXPECT_EQ(diario.Fecha(&m_Dono), S_OK);
}

// As many writes as an operation holds, those of one file behind each other; and a disk without a free byte.
TEST_F(Diario, OperacaoCheiaEDiscoCheio) {
    SBancoDuplo banco;
    m_FalhasQueda.SetFiltro([](const std::string& s) { return s.ends_with(k_pszNomeDiario); });
    m_FalhasQueda.Programa({.bPermanente = true, .eCausa = ECausaArquivo::eDiscoCheio});
    ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
    const CXVCapturaTrace captura;
    EXPECT_EQ(banco.Grava(0, {1, 2, 3}, "cheio"), eDiskFull);
    m_FalhasQueda.Limpa();
    ASSERT_EQ(banco.Grava(0, {9, 8, 7}, "0"), S_OK);
    CXVOperacao operacao(&banco.xvDB);
    ASSERT_EQ(operacao.Inicia(), S_OK);
    for (XVUInt i = 1; i <= 4; ++i)
        ASSERT_EQ(banco.Prepara(operacao, 0, {i, i + 10, i + 20}, std::to_string(i)), S_OK);
    EXPECT_EQ(banco.Prepara(operacao, 0, {5, 0, 0}, "cinco"), E_OUTOFMEMORY);
    ASSERT_EQ(operacao.Executa(), S_OK);
    EXPECT_EQ(banco.xvDB.GetPublicacoesTerminadas(), banco.xvDB.GetPublicacoesIniciadas());
    EXPECT_EQ(banco.t.GetQtdRegistros(), 5U);
    ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
    EXPECT_EQ(LeRegistros("A.dat"),
              (std::vector<REG_TESTE>{{9, 8, 7}, {1, 11, 21}, {2, 12, 22}, {3, 13, 23}, {4, 14, 24}}));
    EXPECT_EQ(LeTextos("T.dat"), (std::vector<std::string>{"0", "1", "2", "3", "4"}));
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

}  // namespace
