// Every byte of a header damaged, in every mode; and which files without header deserve one.
#include "core/xvdatabase/XVConteudo.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

const std::string k_sTexto = "dezesseis letras";
enum class EModoTeste : std::uint8_t { eGravacao, eVista, eSemCabecalho };
constexpr EModoTeste k_aModos[] = {EModoTeste::eGravacao, EModoTeste::eVista, EModoTeste::eSemCabecalho};

class CabecalhoVarredura : public CXVCenarioBanco {
  protected:
    // The result of opening the text file, which must not change a byte on disk nor show anything but the
    // texts that were written.
    HRESULT AbreTexto(const std::string& sConteudo, EModoTeste eModo) {
        Cria("A.dat", sConteudo);
        TXVBanco<CXVTextFile> banco("A.dat");
        banco.xvDB.SetSomenteLeituraSemBloqueio(eModo == EModoTeste::eVista);
        if (eModo == EModoTeste::eSemCabecalho) banco.xvDB.DesabilitaCabecalho();
        const HRESULT hr = Abre(banco);
        if (SUCCEEDED(hr)) {
            std::string sLido;
            EXPECT_EQ(banco->GetQtdRegistros(), (sConteudo.size() - 240) / 20);
            if (banco->GetQtdRegistros() == 1) {
                EXPECT_EQ(banco->Le(1, sLido), S_OK);
                EXPECT_EQ(sLido, k_sTexto);
            }
        }
        EXPECT_EQ(banco.xvDB.Finaliza(), S_OK);
        EXPECT_EQ(Le("A.dat"), sConteudo);
        EXPECT_FALSE(Existe("A.cab"));
        return hr;
    }
    // A file without header is refused, byte for byte as it was and without a copy beside it.
    template <class TArquivo>
    void EsperaSemCabecalhoRecusado(const std::string& sConteudo, const char* pszCaso) {
        SCOPED_TRACE(pszCaso);
        Cria("A.dat", sConteudo);
        m_Falhas.Limpa();
        EXPECT_EQ(Tenta<TArquivo>("A.dat"), E_XVCR_CRC_CABECALHO_NAO_CONFERE);
        EXPECT_EQ(Le("A.dat"), sConteudo);
        EXPECT_FALSE(Existe("A.cab"));
        EXPECT_EQ(Conta(EOperacaoArquivo::eSubstitui), 0U) << "not even for a moment";
    }
    template <class TArquivo>
    void EsperaSemCabecalhoAceito(const std::string& sConteudo, const char* pszCaso) {
        SCOPED_TRACE(pszCaso);
        Cria("A.dat", sConteudo);
        EXPECT_EQ(Tenta<TArquivo>("A.dat"), S_OK);
        EXPECT_TRUE(Le("A.dat").substr(240) == sConteudo);
        EXPECT_EQ(Campo<XVUInt64>(Le("A.dat"), 72), sConteudo.size());
        EXPECT_FALSE(Existe("A.cab"));
        EXPECT_EQ(Tenta<TArquivo>("A.dat"), S_OK) << "the header that it got holds";
    }
};

TEST_F(CabecalhoVarredura, CadaByteDanificadoERecusadoParaGravacaoENuncaLidoComoDados) {
    for (const std::string& sDados : {std::string(), Prefixado(k_sTexto)}) {
        const std::string sBom = ArquivoComCabecalho("A.dat", sDados);
        for (const EModoTeste eModo : {EModoTeste::eVista, EModoTeste::eSemCabecalho})
            ASSERT_EQ(AbreTexto(sBom, eModo), S_OK);
        for (std::size_t i = 0; i < 240 && !HasFailure(); ++i)
            for (const char cMascara : {'\x01', '\x80'}) {
                SCOPED_TRACE(testing::Message() << sBom.size() << " bytes, byte " << i);
                std::string s = sBom;
                s[i] = static_cast<char>(s[i] ^ cMascara);
                const bool bTamanho = i >= 64 && i < 72;
                EXPECT_EQ(AbreTexto(s, EModoTeste::eGravacao),
                          bTamanho ? E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE : E_XVCR_CRC_CABECALHO_NAO_CONFERE);
                for (const EModoTeste eModo : {EModoTeste::eVista, EModoTeste::eSemCabecalho}) {
                    const HRESULT hr = AbreTexto(s, eModo);
                    // Without its signature nobody knows where the payload begins.
                    EXPECT_TRUE(i >= 24 || hr == E_XVCR_CRC_CABECALHO_NAO_CONFERE) << std::hex << hr;
                }
            }
    }
}

TEST_F(CabecalhoVarredura, VersaoPosteriorDoCabecalhoERecusadaEmTodosOsModos) {
    for (const std::string& sDados : {std::string(), Prefixado(k_sTexto)}) {
        std::string s = ArquivoComCabecalho("A.dat", sDados);
        Poe<XVUShort>(s, 0, 2);
        Poe(s, 8, CrcBitABit(s.substr(0, 2)));
        Poe(s, 16, CrcBitABit(s.substr(8, 8)));
        for (const EModoTeste eModo : k_aModos)
            EXPECT_EQ(AbreTexto(s, eModo), E_XVCR_VERSAO_CABECALHO_SUPERIOR_VERSAO_SISTEMA);
    }
}

TEST_F(CabecalhoVarredura, RestoDeCabecalhoEReconhecidoPorCadaSinalSozinho) {
    const std::string sCabecalho = ArquivoComCabecalho("A.dat", "");
    const std::string sNada(256, '\x07');
    const auto comAssinatura = [&](std::size_t uiCertos) {
        return sCabecalho.substr(0, uiCertos) + sNada.substr(uiCertos);
    };
    EsperaSemCabecalhoRecusado<CXVFileTeste>(comAssinatura(16), "16 bytes of the signature");
    EsperaSemCabecalhoAceito<CXVFileTeste>(comAssinatura(15), "15 bytes of the signature");
    std::string s = sNada;
    Poe<XVUInt64>(s, 64, 216);
    EsperaSemCabecalhoRecusado<CXVFileTeste>(s, "block size");
    Poe<XVUInt64>(s, 64, 217);
    EsperaSemCabecalhoAceito<CXVFileTeste>(s, "another number");
    s = sNada;
    PoeTexto(s, 112, "a.DAT");
    EsperaSemCabecalhoRecusado<CXVFileTeste>(s, "own name");
    PoeTexto(s, 112, "B.dat");
    EsperaSemCabecalhoAceito<CXVFileTeste>(s, "another file's name");
    EsperaSemCabecalhoRecusado<CXVFileTeste>(comAssinatura(24).substr(0, 16), "16 bytes and no more");
    EsperaSemCabecalhoRecusado<CXVFileTeste>(sNada.substr(0, 64) + sCabecalho.substr(64, 16),
                                             "cut after the size");
    EsperaSemCabecalhoRecusado<CXVFileTeste>(sNada.substr(0, 112) + "A.dat" + sNada.substr(0, 11),
                                             "cut after the name");
}

TEST_F(CabecalhoVarredura, ArquivoAntigoSemSinalDeCabecalhoGanhaUm) {
    EsperaSemCabecalhoAceito<CXVFileTeste>(std::string(32, '\0'), "two zero records");
    EsperaSemCabecalhoAceito<CXVFileTeste>(std::string(24, '\0') + std::string(8, 'x'), "24 zero bytes");
    EsperaSemCabecalhoAceito<CXVFileTeste>(std::string(240, '\0') + std::string(16, 'x'), "240 zero bytes");
    EsperaSemCabecalhoAceito<CXVTextFile>(std::string(24, '\0') + Prefixado("x"), "six empty texts");
    EsperaSemCabecalhoAceito<CXVTextFile>(Prefixado(std::string(19, 't')), "23 bytes");
    EsperaSemCabecalhoAceito<CXVFileTeste>(std::string((3U << 20) - 16, 'r') + std::string(16, 'z'),
                                           "copied in pieces");
}

TEST_F(CabecalhoVarredura, ConteudoQueNaoCarregariaNaoRecebeCabecalho) {
    const std::string sRegistro(16, 'r');
    EsperaSemCabecalhoRecusado<CXVFileTeste>(sRegistro + "x", "part of a record");
    EsperaSemCabecalhoRecusado<CXVFileTeste>(sRegistro.substr(1), "less than a record");
    EsperaSemCabecalhoRecusado<CXVFileUnico>(sRegistro + sRegistro, "two records where one belongs");
    EsperaSemCabecalhoAceito<CXVFileUnico>(sRegistro, "the one record");
    const std::string sBom = Prefixado("um") + Prefixado("");
    EsperaSemCabecalhoAceito<CXVTextFile>(sBom, "texts");
    for (const std::size_t uiResto : {1U, 2U, 3U})
        EsperaSemCabecalhoRecusado<CXVTextFile>(sBom + std::string(uiResto, '\0'), "rest of a prefix");
    EsperaSemCabecalhoRecusado<CXVTextFile>(sBom + Prefixado("dois").substr(0, 7), "text cut off");
    EsperaSemCabecalhoRecusado<CXVTextFile>(sBom + std::string(4, '\xFF'), "length of 4 GiB");
}

// The walk goes in pieces: prefixes at, before and across the end of one.
TEST_F(CabecalhoVarredura, CadeiaDeTextosAtravessaOsPedacosDaLeitura) {
    for (const std::size_t uiFolga : {8U, 6U, 5U, 4U, 3U, 0U}) {
        const std::string s = Prefixado(std::string(k_uiPedacoConteudo - uiFolga, 'a')) + Prefixado("b") +
                              Prefixado(std::string(2 * k_uiPedacoConteudo, 'c')) + Prefixado("");
        EsperaSemCabecalhoAceito<CXVTextFile>(s, "whole chain");
        EsperaSemCabecalhoRecusado<CXVTextFile>(s + "x", "one byte too many");
    }
}

}  // namespace
