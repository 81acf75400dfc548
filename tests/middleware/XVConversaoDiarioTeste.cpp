// A conversion that was interrupted in the middle of its exchange, and what somebody did to its files
// before it goes on.
#include <functional>

#include "support/codes/XVCodigos.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioConversao.h"

namespace {

constexpr const char* k_pszDiario = "CRMIDDLEWARECV.srk";

std::string Copia(const std::string& sNome) {
    return sNome.substr(0, sNome.size() - 3) + "tra";
}

std::string Diario(unsigned uiPasso, const std::string& sEntradas, std::uint32_t uiQuantidade,
                   const char* pszAssinatura) {
    CXVBytes diario;
    diario.Junta(pszAssinatura).U16(uiPasso).U16(0).U32(uiQuantidade).Junta(sEntradas);
    return diario.U64(CrcBitABit(diario.Str()));
}

class CXVConversaoDiarioTeste : public CXVCenarioConversao {
  protected:
    CXVConversaoDiarioTeste() {
        Instala(m_base);
        m_antes = m_Arquivos.Retrata();
        EXPECT_EQ(Converte(), S_OK);
        m_fim = RetratoSemLogs();
        // The same, stopped after the journal and the first of three members have come to their places.
        m_Arquivos.Restaura(m_antes);
        {
            CXVSistemaArquivosFalhas falhas(m_Arquivos);
            const CXVGuardaSistemaArquivos guarda(falhas);
            falhas.Programa({.eOperacao = EOperacaoArquivo::eSubstitui, .uiNumero = 3, .bPermanente = true});
            EXPECT_EQ(Converte(), E_XVCR_RENOMEACAO_ARQUIVO);
        }
        m_meio = m_Arquivos.Retrata();
        EXPECT_NE(Conteudo(k_pszDiario), "<ausente>");
        EXPECT_EQ(Conteudo(Copia(Membro(0))), "<ausente>");
        EXPECT_NE(Conteudo(Copia(Membro(1))), "<ausente>");
        EXPECT_NE(Conteudo(Copia(Membro(2))), "<ausente>");
    }

    static std::string Membro(unsigned i) { return k_apszDias[i]; }
    std::string Antigo(unsigned i) const { return m_base.at(Membro(i)); }
    void Poe(const std::string& sNome, const std::string& sBytes) {
        m_Arquivos.CriaArquivo(PastaDados(sNome), sBytes);
    }
    void Apaga(const std::string& sNome) { ASSERT_TRUE(m_Arquivos.Apaga(PastaDados(sNome)).Ok()); }

    // Goes back to the interrupted state, lets fnAltera change it, and expects that nothing is converted,
    // moved or removed, and that the error log names the file.
    void EsperaRecusa(const std::string& sNomeado, const std::string& sCaso,
                      const std::function<void()>& fnAltera) {
        SCOPED_TRACE(sCaso);
        m_Arquivos.Restaura(m_meio);
        fnAltera();
        const auto alterado = RetratoSemLogs();
        const CXVCapturaTrace captura;
        EXPECT_EQ(Converte(), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS);
        EXPECT_EQ(m_Arquivos.Diferenca(alterado, RetratoSemLogs()), "");
        EXPECT_TRUE(XVTextoNoLog(captura, sNomeado)) << sNomeado;
    }
    void EsperaConclusao(const std::string& sCaso, const std::function<void()>& fnAltera) {
        SCOPED_TRACE(sCaso);
        m_Arquivos.Restaura(m_meio);
        fnAltera();
        EXPECT_EQ(Converte(), S_OK);
        EXPECT_EQ(m_Arquivos.Diferenca(m_fim, RetratoSemLogs()), "");
    }

    const TArquivos m_base = XVBaseDourada(3, true);
    CXVSistemaArquivosMemoria::TRetrato m_antes, m_meio, m_fim;
};

TEST_F(CXVConversaoDiarioTeste, DeixadaEmPazTermina) {
    EsperaConclusao("untouched", [] {});
    // A journal that did not come to its name has served nobody.
    Poe("CRMIDDLEWARECVN.srk", "SVKRCV02");
    EXPECT_EQ(Converte(), S_OK);
    EXPECT_EQ(m_Arquivos.Diferenca(m_fim, RetratoSemLogs()), "");
}

TEST_F(CXVConversaoDiarioTeste, CopiaQueNaoEADoDiarioNaoEMovida) {
    const std::string sCopia = Copia(Membro(1));
    const std::string sBoa = Conteudo(sCopia);
    EsperaRecusa(sCopia, "truncated", [&] { Poe(sCopia, sBoa.substr(0, sBoa.size() - 88)); });
    EsperaRecusa(sCopia, "longer", [&] { Poe(sCopia, sBoa + std::string(88, '\0')); });
    EsperaRecusa(sCopia, "emptied", [&] { Poe(sCopia, ""); });
    for (const std::size_t uiByte : {std::size_t{0}, std::size_t{104}, std::size_t{240}, sBoa.size() - 1})
        EsperaRecusa(sCopia, "byte " + std::to_string(uiByte), [&] {
            std::string s = sBoa;
            s[uiByte] = static_cast<char>(s[uiByte] ^ 1);
            Poe(sCopia, s);
        });
    EsperaRecusa(sCopia, "swapped", [&] {
        const std::string sOutra = Conteudo(Copia(Membro(2)));
        Poe(Copia(Membro(2)), sBoa);
        Poe(sCopia, sOutra);
    });
    EsperaRecusa(Membro(2), "gone", [&] { Apaga(Copia(Membro(2))); });
    EsperaRecusa(Membro(0), "one that came back", [&] { Poe(Copia(Membro(0)), sBoa); });
}

TEST_F(CXVConversaoDiarioTeste, ArquivoVivoQueNaoEODoDiarioNaoESubstituido) {
    EsperaRecusa(Membro(1), "written to meanwhile", [&] {
        const std::string sDados = Dados(Antigo(1));
        Poe(Membro(1), XVArquivoDoTeste({Membro(1), 4}, sDados + sDados.substr(0, 88)));
    });
    EsperaRecusa(Membro(1), "one header field", [&] {
        Poe(Membro(1), XVArquivoDoTeste({Membro(1), 4}, Dados(Antigo(1))));
    });
    EsperaRecusa(Membro(0), "moved one put back to the old", [&] { Poe(Membro(0), Antigo(0)); });
    EsperaRecusa(Membro(0), "moved one gone", [&] { Apaga(Membro(0)); });
    EsperaRecusa(Membro(2), "waiting one gone", [&] { Apaga(Membro(2)); });
    const std::string sNovo = "CRINTEGMID20230801.dat";
    EsperaRecusa(sNovo, "a day that came later",
                 [&] { Poe(sNovo, XVArquivoDoTeste({sNovo}, Dados(Antigo(1)))); });
}

TEST_F(CXVConversaoDiarioTeste, DiarioAlteradoEmQualquerByteOuComprimentoERecusado) {
    const std::string sBom = Conteudo(k_pszDiario);
    ASSERT_GT(sBom.size(), 150U);
    for (std::size_t i = 0; i < sBom.size() && !HasFailure(); ++i)
        EsperaRecusa(k_pszDiario, "byte " + std::to_string(i), [&] {
            std::string s = sBom;
            s[i] = static_cast<char>(s[i] ^ 0x20);
            Poe(k_pszDiario, s);
        });
    for (const std::size_t uiTamanho :
         {std::size_t{8}, std::size_t{15}, std::size_t{16}, std::size_t{60}, sBom.size() - 1})
        EsperaRecusa(k_pszDiario, "length " + std::to_string(uiTamanho),
                     [&] { Poe(k_pszDiario, sBom.substr(0, uiTamanho)); });
    EsperaRecusa(k_pszDiario, "longer", [&] { Poe(k_pszDiario, sBom + '\0'); });
    EsperaRecusa(k_pszDiario, "foreign", [&] { Poe(k_pszDiario, "nada disso"); });
    EsperaRecusa("Diário da conversão grande demais", "larger than any",
                 [&] { Poe(k_pszDiario, std::string((64U << 20) + 1, '\0')); });
}

// Checksum right, content wrong: what another program or another store's journal would look like.
TEST_F(CXVConversaoDiarioTeste, DiarioDeOutroPassoOuDeOutrosArquivosERecusado) {
    const std::string sBom = Conteudo(k_pszDiario);
    const std::string sEntradas = sBom.substr(16, sBom.size() - 24);
    EXPECT_EQ(sBom, Diario(4, sEntradas, 3, "SVKRCV02")) << "the bytes are those of the description";
    EsperaRecusa(k_pszDiario, "a later step", [&] { Poe(k_pszDiario, Diario(5, sEntradas, 3, "SVKRCV02")); });
    EsperaRecusa(k_pszDiario, "reserved bytes", [&] {
        std::string s = sBom.substr(0, sBom.size() - 8);
        s[10] = 1;
        Poe(k_pszDiario, CXVBytes().Junta(s).U64(CrcBitABit(s)));
    });
    EsperaRecusa(k_pszDiario, "more names than there are",
                 [&] { Poe(k_pszDiario, Diario(4, sEntradas, 4, "SVKRCV02")); });
    EsperaRecusa(k_pszDiario, "fewer", [&] { Poe(k_pszDiario, Diario(4, sEntradas, 2, "SVKRCV02")); });
    for (const char* pszNome : {"CRINDEXINTEG.dat", "../../fora.dat", "CRINTEGMIDJSON20230605.dat", ""})
        EsperaRecusa(pszNome, pszNome, [&] {
            const std::string sNome = pszNome;
            Poe(k_pszDiario, Diario(4, CXVBytes().Texto(sNome).Zeros(48).Junta(sEntradas), 4, "SVKRCV02"));
        });
    const std::size_t uiEntrada = 4 + Membro(0).size() + 48;
    EsperaRecusa(Membro(1), "a file of the step that it does not name", [&] {
        Poe(k_pszDiario,
            Diario(4, sEntradas.substr(0, uiEntrada) + sEntradas.substr(2 * uiEntrada), 2, "SVKRCV02"));
    });
}

// Moved files carry the step's stamp: they are not converted again whatever became of the journal.
TEST_F(CXVConversaoDiarioTeste, SemDiarioOsCarimbosImpedemASegundaConversao) {
    EsperaConclusao("journal gone", [&] { Apaga(k_pszDiario); });
    EsperaConclusao("journal and copies gone", [&] {
        Apaga(k_pszDiario);
        Apaga(Copia(Membro(1)));
        Apaga(Copia(Membro(2)));
    });
    EsperaConclusao("journal of the step before, which has served", [&] {
        Poe(k_pszDiario, Diario(3, CXVBytes().Texto(Membro(0)).Zeros(48), 1, "SVKRCV02"));
    });
}

// Journals of earlier programs name the files and no more.
TEST_F(CXVConversaoDiarioTeste, DiarioSemSomasSoValeComOsCarimbos) {
    CXVBytes nomes;
    for (unsigned i = 0; i < 3; ++i) nomes.Texto(Membro(i));
    const std::string sDiario = Diario(4, nomes, 3, "SVKRCV01");
    const auto poe = [&] { Poe(k_pszDiario, sDiario); };
    EsperaConclusao("complete", poe);
    for (std::size_t i = 0; i < sDiario.size() - 8 && !HasFailure(); ++i)
        EsperaConclusao("cut off while it was written", [&] { Poe(k_pszDiario, sDiario.substr(0, i)); });
    EsperaRecusa(k_pszDiario, "checksum", [&] {
        std::string s = sDiario;
        s[30] = static_cast<char>(s[30] ^ 1);
        Poe(k_pszDiario, s);
    });
    const std::string sCopia = Copia(Membro(1));
    const std::string sBoa = Conteudo(sCopia);
    const auto comCopia = [&](const std::string& sNovaCopia) {
        return [&, sNovaCopia] {
            poe();
            Poe(sCopia, sNovaCopia);
        };
    };
    EsperaRecusa(sCopia, "copy cut off", comCopia(sBoa.substr(0, sBoa.size() - 88)));
    EsperaRecusa(sCopia, "copy without header", comCopia(Dados(sBoa)));
    EsperaRecusa(sCopia, "copy of another step", comCopia(XVArquivoDoTeste({Membro(1), 0, 3}, Dados(sBoa))));
    EsperaRecusa(sCopia, "copy of another file", comCopia(XVArquivoDoTeste({Membro(2), 0, 4}, Dados(sBoa))));
    EsperaRecusa(Membro(1), "copy gone", [&] {
        poe();
        Apaga(sCopia);
    });
    EsperaRecusa(Membro(1), "live file converted already", [&] {
        poe();
        Poe(Membro(1), sBoa);
    });
    EsperaRecusa(Membro(1), "live file gone", [&] {
        poe();
        Apaga(Membro(1));
    });
}

}  // namespace
