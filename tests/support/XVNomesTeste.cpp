// Names of HRESULTs and sentences of messages.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>

#include "support/codes/XVCodigos.h"
#include "support/messages/XVMensagens.h"
#include "support/names/XVNomesHResult.h"
#include "support/trace/XVDescricaoHResult.h"
#include "tests/support/XVBancadaTrace.h"

using namespace XVDescricaoHResult;

TEST(Mensagens, TodoCodigoDoSistemaTemNomeESentenca) {
    std::ifstream arquivo(XV_CABECALHO_CODIGOS);
    ASSERT_TRUE(arquivo);
    const std::string sTexto((std::istreambuf_iterator<char>(arquivo)), {});
    const std::regex padrao(R"(HRESULT (\w+)\s*=\s*XVHResult\(0x([0-9A-Fa-f]{8})U\))");
    int iCodigos = 0;
    for (std::sregex_iterator it(sTexto.begin(), sTexto.end(), padrao), fim; it != fim; ++it, ++iCodigos) {
        const SMensagemCodigo* p =
            XVBuscaMensagem(XVHResult(static_cast<XVUInt>(std::stoul((*it)[2], nullptr, 16))));
        ASSERT_NE(p, nullptr) << (*it)[1];
        EXPECT_TRUE((*it)[1] == "E_XV_ERRNO_PRIMEIRO" || p->sNome == (*it)[1].str()) << p->sNome;
    }
    EXPECT_GE(iCodigos, 55);
    for (XVUInt ul = 0x8004EADCU; ul <= 0x8004EB02U; ++ul) EXPECT_NE(XVBuscaMensagem(XVHResult(ul)), nullptr);
    for (const XVUInt ul : {0x80004001U, 0x80004003U, 0x80004005U, 0x8007000EU, 0x80070057U, 0x800706BAU,
                            0x800706BEU, 0x80040154U, 0x80010108U, 0x800401FDU, 0x80080005U, 0x800703E6U,
                            0x800706B5U, 0x80070005U, 0x8004EAC5U, 0x8004EADBU, 0x8004EE47U})
        EXPECT_NE(XVBuscaMensagem(XVHResult(ul)), nullptr);
    EXPECT_EQ(XVBuscaMensagem(S_OK), nullptr);
    for (const XVUInt ul : {0x8004EAC4U, 0x8004EB03U, 0x8004EE46U, 0x8004EE48U, 0x81080D07U})
        EXPECT_EQ(XVBuscaMensagem(XVHResult(ul)), nullptr);
}

// The files of a company are of one moment: no advice restores one of them or moves data away.
TEST(Mensagens, OConselhoDeCadaCodigoEstaCompletoENaoEstragaABase) {
    for (const auto aMensagens : XVListaMensagens()) {
        for (const SMensagemCodigo& rMensagem : aMensagens) {
            for (const std::string_view sTexto : {rMensagem.sDescricao, rMensagem.sCausa, rMensagem.sAcao}) {
                EXPECT_GT(sTexto.size(), 15U) << rMensagem.sNome;
                EXPECT_EQ(sTexto.back(), '.') << sTexto;
                const std::size_t uiRestaura = sTexto.find("restaure");
                EXPECT_TRUE(uiRestaura == std::string_view::npos ||
                            sTexto.substr(uiRestaura).starts_with("restaure o diretório inteiro"))
                    << sTexto;
            }
            EXPECT_LE(rMensagem.sDescricao.size(), 205U) << "no room for the file: " << rMensagem.sDescricao;
        }
    }
}

// The tables themselves are compared with the system's header.
TEST(Nomes, CodigosQueNinguemConheceEOsUltimosDasTabelas) {
    EXPECT_STREQ(GetNomeSeverity(2), "Desconhecido ou novo código de SEVERITY");
    EXPECT_STREQ(GetDescricao_FACILITY(XVHResult(0x9FFF0A04U)), "Desconhecido ou novo código de FACILITY");
    EXPECT_STREQ(GetDescricao_FACILITY(XVHResult(0xE0070001U)), "FACILITY_WIN32") << "without reserved bits";
    EXPECT_STREQ(GetNomeFacility(82), "FACILITY_XPS");
    const SDescricaoHResult proprio = Decodifica(E_XVCR_CRC_CABECALHO_NAO_CONFERE);
    EXPECT_EQ(std::tuple(proprio.iSeverity, proprio.iFacility, proprio.iCode), std::tuple(1, 0x108, 0x0A3F));
    EXPECT_STREQ(proprio.pszFacility, "FACILITY_DEPLOYMENT_SERVICES_TFTP") << "who has that number";
    EXPECT_STREQ(GetNomeHRESULT(S_OK), "S_OK");
    EXPECT_STREQ(GetNomeCodigoWin32(0xFFFF), "");
}

TEST(Mensagens, SemABibliotecaOsTextosFicamVazios) {
    const CXVBancadaTrace bancada;
    EXPECT_EQ(GetMensagem(E_XVCR_ARQUIVO_NAO_EXISTE), "");
    EXPECT_STREQ(GetDescricao_CODE(E_INVALIDARG), "");  // nobody says that the facility is not the suite's
}
