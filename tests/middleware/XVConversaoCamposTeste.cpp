// Whole records through each step: every byte of the old record is another non-zero value, so that a field
// that is lost, moved or mixed up with another cannot hide behind an equal one.
#include "support/codes/XVCodigos.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/middleware/XVCenarioConversao.h"

namespace {

constexpr const char* k_pszMembro = "CRINTEGMID20230501.dat";
constexpr const char* k_pszMapa = "CRCHAVEREGTER.dat";
constexpr const char* k_pszDatas = "CRDTHRINTEG.dat";

// uiTamanho bytes, all different and none zero.
std::string Padrao(std::size_t uiTamanho) {
    std::string s;
    for (std::size_t i = 0; i < uiTamanho; ++i) s += static_cast<char>(i + 1);
    return s;
}
std::string ComTipo(std::string sRegistro, std::size_t uiOffset, std::uint32_t uiTipo) {
    return sRegistro.replace(uiOffset, 4, CXVBytes().U32(uiTipo).Str());
}

class CXVConversaoCamposTeste : public CXVCenarioConversao {
  protected:
    // Converts a store of version uiVersao with one file (with header, as the last step left it) and gives
    // the payload that it has then.
    std::string Converte1(unsigned uiVersao, const std::string& sNome, const std::string& sDados) {
        m_Arquivos.CriaArquivo(PastaDados(sNome), XVArquivoDoTeste({sNome}, sDados));
        m_Arquivos.CriaArquivo(
            PastaDados("CRMIDDLEWAREVS.dat"),
            XVArquivoDoTeste({"CRMIDDLEWAREVS.dat"}, CXVBytes().U16(uiVersao).Zeros(14).Str()));
        EXPECT_EQ(Converte(), S_OK);
        EXPECT_EQ(Dados(Conteudo("CRMIDDLEWAREVS.dat")), CXVBytes().U16(5).Zeros(14).Str());
        return Dados(Conteudo(sNome));
    }
};

TEST_F(CXVConversaoCamposTeste, PassosTresEQuatroLevamCadaCampoAoSeuLugarEDeixamOEnchimento) {
    for (const XVUInt ulOpcoes : {0U, 0xEFU, 0x10U, 0xFFU}) {
        const bool bFilial = (ulOpcoes & 0x10) != 0;  // the branch serves as the database's id
        m_registry.SetNumero(CAmbienteXV::GetChaveRegistry(k_eModuloBase), "AcessoServidores_1", ulOpcoes);
        const std::string sAntigo = ComTipo(Padrao(80), 32, 12);
        const std::string sNovo =
            sAntigo.substr(0, 32) +
            (bFilial ? sAntigo.substr(52, 4) + std::string(4, '\0') : std::string(8, '\0')) +
            CXVBytes().U32(8).Str() + sAntigo.substr(36, 29) + std::string(15, '\0');
        for (const unsigned uiVersao : {1U, 2U}) EXPECT_EQ(Converte1(uiVersao, k_pszMembro, sAntigo), sNovo);
    }
}

TEST_F(CXVConversaoCamposTeste, PassoQuatroMudaSoOTipo) {
    EXPECT_EQ(Converte1(3, k_pszMembro, ComTipo(Padrao(88), 40, 19)), ComTipo(Padrao(88), 40, 15));
}

TEST_F(CXVConversaoCamposTeste, PassoDoisAcrescentaBaseEOrigemVazias) {
    const std::string sAntigo = ComTipo(Padrao(24), 16, 7);
    EXPECT_EQ(Converte1(1, k_pszMapa, sAntigo), sAntigo.substr(0, 16) + std::string(8, '\0') +
                                                    CXVBytes().U32(3).Str() + sAntigo.substr(20, 4) +
                                                    std::string(8, '\0'));
}

TEST_F(CXVConversaoCamposTeste, PassoCincoMudaSoOTipoNosDoisArquivos) {
    EXPECT_EQ(Converte1(4, k_pszMapa, ComTipo(Padrao(40), 24, 5)), ComTipo(Padrao(40), 24, 2));
    EXPECT_EQ(Converte1(4, k_pszDatas, ComTipo(Padrao(32), 8, 7)), ComTipo(Padrao(32), 8, 3));
    EXPECT_EQ(Converte1(4, k_pszMembro, Padrao(88)), Padrao(88)) << "no file of this step";
}

// The whole table, and numbers that only look like one of it in their low bytes.
TEST_F(CXVConversaoCamposTeste, TiposSaoComparadosPorInteiro) {
    std::string sAntigos;
    std::string sNovos;
    const auto inclui = [&](std::uint32_t uiTipo, std::uint32_t uiNovo) {
        sAntigos += ComTipo(Padrao(88), 40, uiTipo);
        sNovos += ComTipo(Padrao(88), 40, uiNovo);
    };
    for (std::uint32_t uiTipo = 0; uiTipo < 40; ++uiTipo) inclui(uiTipo, CXVFabricaBases::Renumerado(uiTipo));
    for (const std::uint32_t uiTipo : {0x105U, 0x107U, 0x10005U, 0x1000007U, 0x05000000U, 0xFFFFFFFFU})
        inclui(uiTipo, uiTipo);
    EXPECT_EQ(Converte1(3, k_pszMembro, sAntigos), sNovos);
}

// Three members and both single files: a copy and the journal count only once they are on the device.
TEST_F(CXVConversaoCamposTeste, CopiasEDiarioChegamAoDispositivoAntesDaTroca) {
    CXVSistemaArquivosFalhas falhas(m_Arquivos);
    const CXVGuardaSistemaArquivos guarda(falhas);
    for (const unsigned uiVersao : {3U, 4U}) {
        const TArquivos base = CXVFabricaBases(uiVersao, true).Cria(3, 2);
        const XVUInt64 uiCopias = uiVersao == 3 ? 3 : 2;
        for (const char* pszFim : {".tra", ".srk"}) {
            falhas.SetFiltro([pszFim](const std::string& s) {
                return s.ends_with(pszFim) && s.find("CRMIDDLEWAREVS") == std::string::npos;
            });
            const XVUInt64 uiEsperadas = pszFim == std::string(".tra") ? uiCopias : 1;
            for (XVUInt64 i = 1; i <= uiEsperadas; ++i) {
                Instala(base);
                falhas.Programa({.eOperacao = EOperacaoArquivo::eSincroniza, .uiNumero = i});
                EXPECT_EQ(Converte(), eHardIO) << uiVersao << pszFim << i;
                for (const auto& [sNome, sBytes] : base)
                    EXPECT_EQ(Conteudo(sNome), sBytes) << uiVersao << pszFim << i << sNome;
            }
        }
        falhas.Limpa();
        falhas.SetFiltro(nullptr);
        EXPECT_EQ(Converte(), S_OK);
        for (const auto& [sNome, sDados] : CXVFabricaBases(uiVersao, true).DadosConvertidos(3, 2))
            EXPECT_EQ(Dados(Conteudo(sNome)), sDados) << uiVersao << sNome;
        ConfereSemRestos();
    }
}

}  // namespace
