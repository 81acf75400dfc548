// A conversion that was interrupted in the middle of its exchange, and what somebody did to its files
// before it goes on.
#include "support/codes/XVCodigos.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioConversao.h"

namespace {

constexpr const char* k_pszDiario = "CRMIDDLEWARECV.srk";
constexpr const char* k_pszComSomas = "SVKRCV02";
constexpr const char* k_pszSemSomas = "SVKRCV01";

std::string Copia(const std::string& sNome) {
    return sNome.substr(0, sNome.size() - 3) + "tra";
}

std::string ComByteTrocado(std::string s, std::size_t uiByte) {
    s[uiByte] = static_cast<char>(s[uiByte] ^ 0x21);
    return s;
}

std::string Diario(unsigned uiPasso, const std::string& sEntradas, std::uint32_t uiQuantidade,
                   const char* pszAssinatura = k_pszComSomas) {
    CXVBytes diario;
    diario.Junta(pszAssinatura).U16(uiPasso).U16(0).U32(uiQuantidade).Junta(sEntradas);
    return diario.U64(CrcBitABit(diario.Str()));
}

// Name -> new bytes; none: the file goes.
using TMudancas = std::map<std::string, std::optional<std::string>>;

class CXVConversaoDiarioTeste : public CXVCenarioConversao {
  protected:
    CXVConversaoDiarioTeste() {
        Instala(m_base);
        EXPECT_EQ(Converte(), S_OK);
        m_fim = RetratoSemLogs();
        // The same, stopped after the journal and the first of three members have come to their places.
        Recomeca(m_base);
        {
            CXVSistemaArquivosFalhas falhas(m_Arquivos);
            const CXVGuardaSistemaArquivos guarda(falhas);
            falhas.Programa({.eOperacao = EOperacaoArquivo::eSubstitui, .uiNumero = 3, .bPermanente = true});
            EXPECT_EQ(Converte(), E_XVCR_RENOMEACAO_ARQUIVO);
        }
        m_meio = m_Arquivos.Retrata();
        m_sDiario = Conteudo(k_pszDiario);
        m_sCopia = Conteudo(Copia(Membro(1)));
        EXPECT_EQ(Conteudo(Copia(Membro(0))), "<ausente>");
        EXPECT_NE(Conteudo(Copia(Membro(2))), "<ausente>");
    }

    static std::string Membro(unsigned i) { return k_apszDias[i]; }
    std::string Antigo(unsigned i) const { return m_base.at(Membro(i)); }

    // From the interrupted state with these changes: nothing is converted, moved or removed.
    void Recusa(const std::string& sNomeado, const std::string& sCaso, const TMudancas& rMudancas) {
        Muda(rMudancas);
        EsperaRecusa(sNomeado, sCaso);
    }
    void Conclui(const std::string& sCaso, const TMudancas& rMudancas) {
        Muda(rMudancas);
        EXPECT_EQ(Converte(), S_OK) << sCaso;
        EXPECT_EQ(m_Arquivos.Diferenca(m_fim, RetratoSemLogs()), "") << sCaso;
    }

    const TArquivos m_base = XVBaseDourada(3, true);
    CXVSistemaArquivosMemoria::TRetrato m_meio, m_fim;
    std::string m_sDiario, m_sCopia;  // the copy of the second member

  private:
    void Muda(const TMudancas& rMudancas) {
        m_Arquivos.Restaura(m_meio);
        for (const auto& [sNome, sBytes] : rMudancas) sBytes ? Poe(sNome, *sBytes) : Apaga(sNome);
    }
};

TEST_F(CXVConversaoDiarioTeste, CopiaOuArquivoVivoQueNaoSaoOsDoDiarioFicam) {
    const std::string sCopia = Copia(Membro(1));
    Recusa(sCopia, "truncated", {{sCopia, m_sCopia.substr(0, m_sCopia.size() - 88)}});
    Recusa(sCopia, "longer", {{sCopia, m_sCopia + std::string(88, '\0')}});
    Recusa(sCopia, "emptied", {{sCopia, ""}});
    for (const std::size_t uiByte : {std::size_t{0}, std::size_t{104}, std::size_t{240}, m_sCopia.size() - 1})
        Recusa(sCopia, "byte " + std::to_string(uiByte), {{sCopia, ComByteTrocado(m_sCopia, uiByte)}});
    const std::string sOutra = Conteudo(Copia(Membro(2)));
    Recusa(sCopia, "swapped", {{Copia(Membro(2)), m_sCopia}, {sCopia, sOutra}});
    Recusa(Membro(2), "gone", {{Copia(Membro(2)), {}}});
    Recusa(Membro(0), "one that came back", {{Copia(Membro(0)), m_sCopia}});

    const std::string sDados = Dados(Antigo(1));
    Recusa(Membro(1), "written to meanwhile",
           {{Membro(1), XVArquivoDoTeste({Membro(1), 4}, sDados + sDados.substr(0, 88))}});
    Recusa(Membro(1), "one header field", {{Membro(1), XVArquivoDoTeste({Membro(1), 4}, sDados)}});
    Recusa(Membro(0), "moved one put back to the old", {{Membro(0), Antigo(0)}});
    Recusa(Membro(0), "moved one gone", {{Membro(0), {}}});
    Recusa(Membro(2), "waiting one gone", {{Membro(2), {}}});
    const std::string sNovo = "CRINTEGMID20230801.dat";
    Recusa(sNovo, "a day that came later", {{sNovo, XVArquivoDoTeste({sNovo}, sDados)}});
}

TEST_F(CXVConversaoDiarioTeste, DiarioAlteradoEmQualquerByteOuComprimentoERecusado) {
    ASSERT_GT(m_sDiario.size(), 150U);
    for (std::size_t i = 0; i < m_sDiario.size() && !HasFailure(); ++i)
        Recusa(k_pszDiario, "byte " + std::to_string(i), {{k_pszDiario, ComByteTrocado(m_sDiario, i)}});
    for (const std::size_t uiTamanho :
         {std::size_t{8}, std::size_t{15}, std::size_t{16}, std::size_t{60}, m_sDiario.size() - 1})
        Recusa(k_pszDiario, "length " + std::to_string(uiTamanho),
               {{k_pszDiario, m_sDiario.substr(0, uiTamanho)}});
    Recusa(k_pszDiario, "longer", {{k_pszDiario, m_sDiario + '\0'}});
    Recusa(k_pszDiario, "foreign", {{k_pszDiario, "nada disso"}});
    Recusa("Diário da conversão grande demais", "larger than any",
           {{k_pszDiario, std::string((64U << 20) + 1, '\0')}});
}

// Checksum right, content wrong: what another program or another store's journal would look like.
TEST_F(CXVConversaoDiarioTeste, DiarioDeOutroPassoOuDeOutrosArquivosERecusado) {
    const std::string sEntradas = m_sDiario.substr(16, m_sDiario.size() - 24);
    const std::size_t uiEntrada = 4 + Membro(0).size() + 48;
    EXPECT_EQ(m_sDiario, Diario(4, sEntradas, 3)) << "the bytes are those of the description";
    Recusa(k_pszDiario, "a later step", {{k_pszDiario, Diario(5, sEntradas, 3)}});
    std::string sReservado = m_sDiario.substr(0, m_sDiario.size() - 8);
    sReservado[10] = 1;
    Recusa(k_pszDiario, "reserved bytes",
           {{k_pszDiario, CXVBytes().Junta(sReservado).U64(CrcBitABit(sReservado)).Str()}});
    Recusa(k_pszDiario, "more names than there are", {{k_pszDiario, Diario(4, sEntradas, 4)}});
    Recusa(k_pszDiario, "fewer", {{k_pszDiario, Diario(4, sEntradas, 2)}});
    for (const char* pszNome : {k_pszIndice, "../../fora.dat", "CRINTEGMIDJSON20230605.dat", ""}) {
        const std::string sAlheia = CXVBytes().Texto(pszNome).Zeros(48);
        Recusa(pszNome, pszNome, {{k_pszDiario, Diario(4, sAlheia + sEntradas, 4)}});
    }
    const std::string sSemSegundo = sEntradas.substr(0, uiEntrada) + sEntradas.substr(2 * uiEntrada);
    Recusa(Membro(1), "a file of the step that it does not name", {{k_pszDiario, Diario(4, sSemSegundo, 2)}});
}

// More than one piece of the reading: the sum is of all its bytes.
TEST_F(CXVConversaoDiarioTeste, CopiaGrandeValePelaSomaDeTodosOsBytes) {
    const std::string sGrande = XVArquivoDoTeste({Membro(1), 0, 4}, std::string(88 * 12000, '\1'));
    std::string sEntradas = m_sDiario.substr(16, m_sDiario.size() - 24);
    CXVBytes soma;
    soma.U64(sGrande.size()).U64(CrcBitABit(sGrande.substr(0, 232))).U64(CrcBitABit(sGrande.substr(232)));
    sEntradas.replace(2 * (4 + Membro(1).size() + 48) - 24, 24, soma.Str());
    m_Arquivos.Restaura(m_meio);
    Poe(k_pszDiario, Diario(4, sEntradas, 3));
    Poe(Copia(Membro(1)), sGrande);
    EXPECT_EQ(Converte(), S_OK);
    EXPECT_EQ(Conteudo(Membro(1)) == sGrande, true);
}

// Moved files carry the step's stamp, which contradicts a version before it where no journal explains it.
TEST_F(CXVConversaoDiarioTeste, DeixadaEmPazTerminaESemDiarioERecusada) {
    Conclui("untouched", {});
    Conclui("a journal that did not come to its name has served nobody",
            {{"CRMIDDLEWARECVN.srk", "SVKRCV02"}});
    Recusa(k_pszVersao, "journal gone", {{k_pszDiario, {}}});
    Recusa(k_pszVersao, "journal and copies gone",
           {{k_pszDiario, {}}, {Copia(Membro(1)), {}}, {Copia(Membro(2)), {}}});
    Conclui("journal of the step before, which has served",
            {{k_pszDiario, Diario(3, CXVBytes().Texto(k_pszIndice).Zeros(48), 1)}});
}

// Journals of earlier programs name the files and no more.
TEST_F(CXVConversaoDiarioTeste, DiarioSemSomasSoValeComOsCarimbos) {
    CXVBytes nomes;
    for (unsigned i = 0; i < 3; ++i) nomes.Texto(Membro(i));
    const std::string sDiario = Diario(4, nomes, 3, k_pszSemSomas);
    Conclui("complete", {{k_pszDiario, sDiario}});
    for (std::size_t i = 0; i < sDiario.size() - 8 && !HasFailure(); ++i)
        Conclui("cut off while it was written", {{k_pszDiario, sDiario.substr(0, i)}});
    Recusa(k_pszDiario, "checksum", {{k_pszDiario, ComByteTrocado(sDiario, 30)}});
    const std::string sCopia = Copia(Membro(1));
    const auto recusaCopia = [&](const char* pszCaso, const std::string& sBytes) {
        Recusa(sCopia, pszCaso, {{k_pszDiario, sDiario}, {sCopia, sBytes}});
    };
    recusaCopia("copy cut off", m_sCopia.substr(0, m_sCopia.size() - 88));
    recusaCopia("copy without header", Dados(m_sCopia));
    recusaCopia("copy of another step", XVArquivoDoTeste({Membro(1), 0, 3}, Dados(m_sCopia)));
    recusaCopia("copy of another file", XVArquivoDoTeste({Membro(2), 0, 4}, Dados(m_sCopia)));
    Recusa(Membro(1), "copy gone", {{k_pszDiario, sDiario}, {sCopia, {}}});
    Recusa(Membro(1), "live file converted already", {{k_pszDiario, sDiario}, {Membro(1), m_sCopia}});
    Recusa(Membro(1), "live file gone", {{k_pszDiario, sDiario}, {Membro(1), {}}});
}

}  // namespace
