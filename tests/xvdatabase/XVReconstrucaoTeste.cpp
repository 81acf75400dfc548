// What an opening makes of a journal that this file puts together from the documented layout.
#include "core/xvdatabase/XVDiario.h"
#include "core/xvdatabase/XVReconstrucao.h"
#include "support/trace/XVArquivoRecusado.h"
#include "tests/xvdatabase/XVCenarioBanco.h"
#include "tests/xvdatabase/XVDiarioBytes.h"

namespace {

constexpr XVUInt64 k_uiSessao = 0x1122334455667788ULL;

// A sound file whose header has been updated so many times.
std::string Versao(const std::string& sNome, const std::string& sDados, XVUInt64 uiContador) {
    std::string s = ArquivoComCabecalho(sNome, sDados);
    Poe<XVUInt64>(s, 80, uiContador);
    FechaCrc(s);
    return s;
}
// Entry 1 appends to A.dat and makes B.dat, entry 2 overwrites within A.dat, across what entry 1 appended.
class Reconstrucao : public CXVCenarioBanco {
  protected:
    const std::string k_sA0 = Versao("A.dat", "0123456789abcdef", 0);
    const std::string k_sA1 = Versao("A.dat", "0123456789abcdefghij", 1);
    const std::string k_sA2 = Versao("A.dat", "0123456789abXXXXXXij", 2);
    const std::string k_sB0 = Versao("B.dat", "", 0);
    const std::string k_sB1 = Versao("B.dat", "novo", 1);

    SParteBytes AnexaA() const {
        return {"A.dat", 256, 256, 260, "ghij", "", false, Bloco(k_sA0), Bloco(k_sA1)};
    }
    SParteBytes CriaB() const {
        return {"B.dat", 240, 240, 244, "novo", "", true, Bloco(k_sB0), Bloco(k_sB1)};
    }
    SParteBytes SobrepoeA() const {
        return {"A.dat", 252, 260, 260, "XXXXXX", "cdefgh", false, Bloco(k_sA1), Bloco(k_sA2)};
    }
    std::string Entrada1(XVUInt ulEstado = k_ulRefazer) const {
        return EntradaBytes(k_uiSessao, {1, {AnexaA(), CriaB()}, ulEstado});
    }
    std::string Entrada2(XVUInt ulEstado = k_ulRefazer) const {
        return EntradaBytes(k_uiSessao, {2, {SobrepoeA()}, ulEstado});
    }

    // Empty: the file is not there.
    void Poe(const std::string& sNome, const std::string& sConteudo) {
        if (sConteudo.empty())
            m_Arquivos.Apaga(PastaDados(sNome)).Ignora();
        else
            Cria(sNome, sConteudo);
    }
    std::string Tem(const std::string& sNome) const { return Existe(sNome) ? Le(sNome) : ""; }

    HRESULT Abre(const std::string& sDiario) {
        Cria(k_pszNomeDiario, sDiario);
        CXVDiario diario;
        const HRESULT hr = diario.Abre(&m_Dono, XV_DF, PastaDados());
        EXPECT_EQ(diario.Fecha(&m_Dono), S_OK);
        return hr;
    }
    // The opening is refused, says which file is the cause, and leaves every byte as it is.
    void EsperaRecusa(const std::string& sDiario, const std::string& sCulpado) {
        Cria(k_pszNomeDiario, sDiario);
        const auto antes = m_Arquivos.Retrata();
        const CXVCapturaTrace captura;
        const CXVArquivosRecusados recusados;
        CXVDiario diario;
        ASSERT_EQ(diario.Abre(&m_Dono, XV_DF, PastaDados()), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS);
        EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, m_Arquivos.Retrata()), "");
        EXPECT_EQ(recusados.GetPath(E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS), PastaDados(sCulpado));
        EXPECT_TRUE(TemMensagem(captura, sCulpado));
    }
    // The first entry is concluded, and the second one is none: nothing else of the directory changes.
    void EsperaDescarte(const std::string& sSegunda) {
        Cria("A.dat", k_sA1);
        Cria("B.dat", k_sB1);
        const auto concluido = m_Arquivos.Retrata();
        Poe("A.dat", k_sA0);
        Poe("B.dat", "");
        const CXVCapturaTrace captura;
        ASSERT_EQ(Abre(DiarioBytes(k_uiSessao, {Entrada1(), sSegunda})), S_OK);
        EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(concluido, m_Arquivos.Retrata()), "");
        EXPECT_TRUE(TemMensagem(captura, "descartada"));
    }
    static bool TemMensagem(const CXVCapturaTrace& rCaptura, const std::string& sTexto) {
        for (const SFalhaCapturada& rFalha : rCaptura.GetFalhas())
            if (rFalha.sMensagem.find(sTexto) != std::string::npos) return true;
        return false;
    }
};

TEST_F(Reconstrucao, CadaEntradaConformeSeuEstadoDeQualquerPontoDaEscrita) {
    const std::string sMeioA1 = k_sA0 + "gh";
    const std::string sMeioCabecalho =
        Versao("A.dat", "0123456789abXXXXXXij", 1).substr(0, 100) + k_sA2.substr(100);
    const std::string sMeioB = k_sB0.substr(0, 77);
    // Of an opening that was cut off while it put the last header over the first one.
    std::string sMeiaConclusao = k_sA0.substr(0, 240) + k_sA2.substr(240);
    ::Poe<XVUInt64>(sMeiaConclusao, 80, 2);
    struct SCaso {
        XVUInt ulEstado1, ulEstado2;
        std::string sA, sB;            // found
        std::string sAFinal, sBFinal;  // wanted
        const char* pszDito;
    };
    const std::vector<SCaso> casos = {
        {k_ulRefazer, k_ulRefazer, k_sA0, "", k_sA2, k_sB1, "concluída"},
        {k_ulRefazer, k_ulRefazer, sMeioA1, sMeioB, k_sA2, k_sB1, "concluída"},
        {k_ulRefazer, k_ulRefazer, k_sA1, k_sB0, k_sA2, k_sB1, "concluída"},
        {k_ulRefazer, k_ulRefazer, sMeioCabecalho, k_sB1, k_sA2, k_sB1, "concluída"},
        {k_ulRefazer, k_ulRefazer, sMeiaConclusao, k_sB1, k_sA2, k_sB1, "concluída"},
        {k_ulRefazer, k_ulRefazer, k_sA2, k_sB1, k_sA2, k_sB1, nullptr},
        {k_ulRefazer, k_ulDesfazer, k_sA2, k_sB1, k_sA1, k_sB1, "desfeita"},
        {k_ulRefazer, k_ulDesfazer, k_sA1, k_sB1, k_sA1, k_sB1, nullptr},
        {k_ulRefazer, k_ulNula, k_sA0, "", k_sA1, k_sB1, "concluída"},
        {k_ulDesfazer, k_ulNula, k_sA1, k_sB1, k_sA0, "", "desfeita"},
        {k_ulDesfazer, k_ulNula, sMeioA1, sMeioB, k_sA0, "", "desfeita"},
        {k_ulNula, k_ulNula, k_sA0, "", k_sA0, "", nullptr},
        // It counts for nothing, and so does what it says of files.
        {k_ulNula, k_ulNula, k_sA2, k_sB1, k_sA2, k_sB1, nullptr}};
    for (std::size_t i = 0; i < casos.size(); ++i) {
        SCOPED_TRACE(i);
        const SCaso& c = casos[i];
        Poe("A.dat", c.sA);
        Poe("B.dat", c.sB);
        const CXVCapturaTrace captura;
        ASSERT_EQ(Abre(DiarioBytes(k_uiSessao, {Entrada1(c.ulEstado1), Entrada2(c.ulEstado2)})), S_OK);
        EXPECT_EQ(Tem("A.dat"), c.sAFinal);
        EXPECT_EQ(Tem("B.dat"), c.sBFinal);
        EXPECT_FALSE(Existe(k_pszNomeDiario));
        for (const char* psz : {"concluída", "desfeita"})
            EXPECT_EQ(TemMensagem(captura, psz), c.pszDito != nullptr && std::string(psz) == c.pszDito);
        if (c.sA != c.sAFinal) {
            EXPECT_TRUE(TemMensagem(captura, "A.dat"));
        }
        EXPECT_EQ(TemMensagem(captura, "descartada"), false);
    }
}

TEST_F(Reconstrucao, ArquivoQueODiarioNaoExplicaFicaComoEstaETodosOsOutros) {
    std::string sOutroCabecalho = k_sA0;
    PoeTexto(sOutroCabecalho, 136, "FILIAL");
    FechaCrc(sOutroCabecalho);
    std::string sOutroRegistro = k_sA0;
    PoeTexto(sOutroRegistro, 252, "c?ef");
    std::string sRegistroZerado = k_sA0;
    PoeTexto(sRegistroZerado, 252, std::string(4, '\0'));
    const std::string sCabecalhoZerado = k_sA0.substr(0, 24) + std::string(216, '\0') + k_sA0.substr(240);
    std::string sOutroAnexado = k_sA1;
    PoeTexto(sOutroAnexado, 256, "gh?j");
    const struct {
        const char* pszCaso;
        std::string sA, sB;
        const char* pszCulpado;
    } aCasos[] = {
        {"absent", "", "", "A.dat"},
        {"shorter", k_sA0.substr(0, 255), "", "A.dat"},
        {"shorter than its header", k_sA0.substr(0, 200), "", "A.dat"},
        {"longer", k_sA1 + "k", "", "A.dat"},
        {"another header", sOutroCabecalho, "", "A.dat"},
        {"another record", sOutroRegistro, "", "A.dat"},
        {"a record of zeros", sRegistroZerado, "", "A.dat"},
        {"a header of zeros", sCabecalhoZerado, "", "A.dat"},
        {"other appended bytes", sOutroAnexado, "", "A.dat"},
        {"another new file", k_sA0, Versao("B.dat", "", 9), "B.dat"},
        {"longer new file", k_sA0, k_sB1 + "!", "B.dat"},
    };
    for (const auto& rCaso : aCasos) {
        SCOPED_TRACE(rCaso.pszCaso);
        Poe("A.dat", rCaso.sA);
        Poe("B.dat", rCaso.sB);
        EsperaRecusa(DiarioBytes(k_uiSessao, {Entrada1(), Entrada2()}), rCaso.pszCulpado);
    }
}

// Without a header the bytes count. Of ranges that lie in, across and over each other it is the newest byte,
// and none is lost.
TEST_F(Reconstrucao, SemCabecalhoContamOsBytesMaisNovos) {
    const std::vector<SParteBytes> partes = {{"C.dat", 2, 2, 10, "cdefghij", ""},
                                             {"C.dat", 4, 10, 10, "EF", "ef"},
                                             {"C.dat", 1, 10, 10, "BC", "bc"},
                                             {"C.dat", 3, 10, 10, "dEFG", "dEFg"},
                                             {"C.dat", 8, 10, 12, "IJKL", "ij"}};
    std::vector<std::string> entradas;
    for (const SParteBytes& p : partes)
        entradas.push_back(EntradaBytes(k_uiSessao, {entradas.size() + 1, {p}}));
    for (const char* pszComeco : {"ab", "abcd", "abcdefghij", "aBCdEFGhIJKL", "abCdeFghi"}) {
        Poe("C.dat", pszComeco);
        ASSERT_EQ(Abre(DiarioBytes(k_uiSessao, entradas)), S_OK) << pszComeco;
        EXPECT_EQ(Tem("C.dat"), "aBCdEFGhIJKL") << pszComeco;
    }
    // The length came and a part of the bytes did not; and bytes of somebody else's.
    const SParteBytes anexa{"C.dat", 4, 4, 8, "efgh", ""};
    Poe("C.dat", std::string("abcd\0\0gh", 8));
    ASSERT_EQ(Abre(DiarioBytes(k_uiSessao, {EntradaBytes(k_uiSessao, {1, {anexa}})})), S_OK);
    EXPECT_EQ(Tem("C.dat"), "abcdefgh");
    Poe("C.dat", "abcdoutr");
    for (const XVUInt ulEstado : {k_ulRefazer, k_ulDesfazer})
        EsperaRecusa(DiarioBytes(k_uiSessao, {EntradaBytes(k_uiSessao, {1, {anexa}, ulEstado})}), "C.dat");
}

TEST_F(Reconstrucao, EntradasQueFaltamOuNaoSeSeguemSaoRecusadas) {
    Poe("A.dat", k_sA0);
    SParteBytes cria = SobrepoeA();
    cria.bCria = true;
    SParteBytes outroCabecalho = SobrepoeA();
    outroCabecalho.sBlocoAntes = Bloco(k_sA0);
    SParteBytes outroTamanho = SobrepoeA();
    outroTamanho.uiAntes = outroTamanho.uiDepois = 261;
    const auto segunda = [](const SParteBytes& p) { return EntradaBytes(k_uiSessao, {2, {p}}); };
    EsperaRecusa(DiarioBytes(k_uiSessao, {Entrada1(), segunda(cria)}), "A.dat");
    EsperaRecusa(DiarioBytes(k_uiSessao, {Entrada1(), segunda(outroCabecalho)}), "A.dat");
    EsperaRecusa(DiarioBytes(k_uiSessao, {Entrada1(), segunda(outroTamanho)}), "A.dat");
    const std::string sTerceira = EntradaBytes(k_uiSessao, {3, {SobrepoeA()}});
    EsperaRecusa(DiarioBytes(k_uiSessao, {Entrada1(), sTerceira}), k_pszNomeDiario);
    EsperaRecusa(DiarioBytes(k_uiSessao, {Entrada2()}), k_pszNomeDiario);
    EsperaRecusa(DiarioBytes(k_uiSessao, {Entrada1(), Entrada1()}), k_pszNomeDiario);
    EsperaRecusa(DiarioBytes(k_uiSessao, {Entrada1(), Entrada1(), sTerceira}), k_pszNomeDiario);
    std::string sPrimeira = Entrada1();
    sPrimeira.back() = static_cast<char>(sPrimeira.back() ^ 1);
    EsperaRecusa(DiarioBytes(k_uiSessao, {sPrimeira, Entrada2()}), k_pszNomeDiario);
    // Neither concluded nor undone nor void: whatever were done with the files would be a guess.
    for (const XVUInt64 uiEstado : {XVUInt64{0}, XVUInt64{4}, XVUInt64{11}, XVUInt64{12}, ~XVUInt64{0}}) {
        std::string sSegunda = Entrada2();
        ::Poe<XVUInt64>(sSegunda, 40, uiEstado);
        EsperaRecusa(DiarioBytes(k_uiSessao, {Entrada1(), sSegunda}), k_pszNomeDiario);
        ASSERT_EQ(Abre(DiarioBytes(k_uiSessao, {Entrada1(), sSegunda}, 3)), S_OK) << "nobody needs it";
    }
}

// Nothing of the journal counts: the opening works and changes no file.
TEST_F(Reconstrucao, OQueNaoEDiarioNaoFazMal) {
    Poe("A.dat", k_sA0);
    const std::string sBom = DiarioBytes(k_uiSessao, {Entrada1(), Entrada2()});
    const auto muda = [&](std::size_t uiOffset, XVUInt64 uiValor, bool bSela) {
        std::string s = sBom;
        ::Poe<XVUInt64>(s, uiOffset, uiValor);
        if (bSela) ::Poe<XVUInt64>(s, 24, SomaPalavraAPalavra(s.substr(0, 24)));
        return s;
    };
    const struct {
        const char* pszCaso;
        std::string sDiario;
    } aCasos[] = {
        {"the mark of an earlier program", "1"},
        {"empty", ""},
        {"cut inside its page", sBom.substr(0, 4095)},
        {"zeros", std::string(8192, '\0')},
        {"another signature", muda(0, 0x324F495241494456ULL, true)},
        {"its checksum", muda(24, 1, false)},
        {"a session changed without its checksum", muda(8, k_uiSessao + 1, false)},
        {"entries of an earlier session", muda(8, k_uiSessao + 1, true)},
        {"a ring longer than the file", muda(16, 4097, true)},
        {"a ring of no length that fits", muda(16, ~XVUInt64{0} - 4095, true)},
        {"a ring over its limit", muda(16, (1ULL << 30) + 64, true)},
        {"cut inside its ring", sBom.substr(0, 8191)},
        {"all entries given up", muda(520, 3, false)},
    };
    for (const auto& rCaso : aCasos) {
        SCOPED_TRACE(rCaso.pszCaso);
        const CXVCapturaTrace captura;
        ASSERT_EQ(Abre(rCaso.sDiario), S_OK);
        EXPECT_EQ(Tem("A.dat"), k_sA0);
        EXPECT_FALSE(Existe("B.dat"));
        EXPECT_TRUE(captura.GetFalhas().empty());
        EXPECT_FALSE(Existe(k_pszNomeDiario));
    }
}

// An entry with any byte wrong had not begun.
TEST_F(Reconstrucao, UltimaEntradaInacabadaEDescartada) {
    const std::string sBoa = Entrada2();
    for (std::size_t i = 24; i < sBoa.size(); i += i < 64 ? 1 : 23) {
        if (i >= 40 && i < 48) continue;  // its state
        SCOPED_TRACE(i);
        std::string sMa = sBoa;
        sMa[i] = static_cast<char>(sMa[i] ^ 0x10);
        EsperaDescarte(sMa);
    }
}

// Under checksums that hold: no count, length, offset or name leads outside.
TEST_F(Reconstrucao, CamposImpossiveisNaoSaoEntrada) {
    constexpr std::size_t k_uiParte = 64;
    constexpr XVUInt64 k_uiEnorme = ~XVUInt64{0};
    const struct {
        const char* pszCaso;
        std::size_t uiOffset;
        XVUInt64 uiValor;
    } aCasos[] = {
        {"part longer than the entry", k_uiParte, 1000},
        {"part of no length", k_uiParte, 0},
        {"part as long as its filler wraps", k_uiParte, k_uiEnorme - 7},
        {"part not filled up", k_uiParte, 57},
        {"offset beyond the file", k_uiParte + 8, 261},
        {"offset that overflows", k_uiParte + 8, k_uiEnorme - 2},
        {"length before", k_uiParte + 16, 251},
        {"huge length before", k_uiParte + 16, k_uiEnorme},
        {"length after", k_uiParte + 24, 261},
        {"more new bytes", k_uiParte + 32, 64},
        {"new bytes whose filler wraps", k_uiParte + 32, k_uiEnorme},
        {"more old bytes", k_uiParte + 40, 7},
        {"old bytes whose filler wraps", k_uiParte + 40, k_uiEnorme - 6},
        {"longer name", k_uiParte + 48, 0x2FFFFULL},
        {"no name", k_uiParte + 48, 0x20000ULL},
        {"no header though there are blocks", k_uiParte + 48, 5},
        {"one part more", 48, 1 + (2ULL << 32)},
        {"no part", 48, 1},
        {"as many parts as a count holds", 48, 1 + (0xFFFFFFFFULL << 32)},
    };
    for (const auto& rCaso : aCasos) {
        SCOPED_TRACE(rCaso.pszCaso);
        std::string s = Entrada2();
        ::Poe<XVUInt64>(s, rCaso.uiOffset, rCaso.uiValor);
        SelaEntrada(s);
        EsperaDescarte(s);
    }
    constexpr XVUInt64 k_uiFim = k_uiEnorme - 2;
    std::vector<SParteBytes> partes{{"C.dat", k_uiFim, k_uiFim, k_uiFim, "12345678", ""}};
    partes.push_back({"C.dat", 8, 4, 12, "efgh", "efgh"});  // a gap behind the end
    for (const char* pszNome : {"../A.dat", "/A.dat", "sub/A.dat", "..\\A.dat", "..", ".", "A", "C:A.dat"})
        partes.push_back({pszNome, 0, 0, 4, "mal!", "", true});
    for (const SParteBytes& rParte : partes) {
        SCOPED_TRACE(rParte.sNome);
        EsperaDescarte(EntradaBytes(k_uiSessao, {2, {rParte}}));
    }
}

TEST_F(Reconstrucao, EntradaAtrasDoAnel) {
    const std::string sGrande(3000, 'g');
    const std::string sA3 = Versao("A.dat", "0123456789abXXXXXXij" + sGrande, 3);
    const std::string sLonga = EntradaBytes(
        k_uiSessao, {3, {{"A.dat", 260, 260, 3260, sGrande, "", false, Bloco(k_sA2), Bloco(sA3)}}});
    Poe("A.dat", k_sA0);
    ASSERT_EQ(Abre(DiarioBytes(k_uiSessao, {Entrada1(), Entrada2()}, 1, 4096, sLonga)), S_OK);
    EXPECT_EQ(Tem("A.dat"), sA3);
    Poe("A.dat", k_sA0);
    ASSERT_EQ(Abre(DiarioBytes(k_uiSessao, {Entrada1(), Entrada2()}, 1, 4096, sLonga.substr(0, 600))), S_OK);
    EXPECT_EQ(Tem("A.dat"), k_sA2) << "its file ends before it does: it is none";
}

// Of the entries of copies only copies are ever deleted, and only while they are being made.
TEST_F(Reconstrucao, CopiaQueEstavaSendoFeitaSaiENadaMais) {
    const struct {
        const char* pszNome;
        XVUInt ulEstado;
        bool bSai;
    } aCasos[] = {{"A.cab", k_ulRefazer, true},    {"A.tra", k_ulRefazer, true},
                  {"A.cab", k_ulNula, false},      {"A.dat", k_ulRefazer, false},
                  {"log.ini", k_ulRefazer, false}, {"../A.cab", k_ulRefazer, false}};
    for (const auto& rCaso : aCasos) {
        SCOPED_TRACE(rCaso.pszNome);
        Poe("A.dat", k_sA0);
        Cria(rCaso.pszNome, k_sA0);
        const CXVCapturaTrace captura;
        const SEntradaBytes entrada{1, {{rCaso.pszNome, 0, 0, 0, "", ""}}, rCaso.ulEstado, k_ulCopia};
        ASSERT_EQ(Abre(DiarioBytes(k_uiSessao, {EntradaBytes(k_uiSessao, entrada)})), S_OK);
        EXPECT_EQ(Existe(rCaso.pszNome), !rCaso.bSai);
        EXPECT_EQ(TemMensagem(captura, "transitória"), rCaso.bSai);
        EXPECT_EQ(Tem("A.dat"), k_sA0);
        Poe(rCaso.pszNome, "");
    }
}

}  // namespace
