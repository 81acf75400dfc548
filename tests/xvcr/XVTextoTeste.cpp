// Texts as the terminal, a table and a line of JSON have them: properties of every character, sizes that no
// command line has, and what none says.
#include <gtest/gtest.h>

#include <sstream>

#include "contract/XVEnumeracoesTexto.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tools/xvcr/fields/XVRegistroJson.h"
#include "tools/xvcr/output/XVTabela.h"
#include "tools/xvcr/text/XVErros.h"
#include "tools/xvcr/text/XVFonteBytes.h"
#include "tools/xvcr/text/XVTextoTela.h"

namespace {

TEST(TextoTela, ReconheceUtf8) {
    for (const char* pszTexto : {"", "ação", "日本", "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(XVTextoTela::EhUtf8(pszTexto)) << pszTexto;
    // Overlong, surrogate, beyond Unicode, cut off, lone continuation, Latin-1.
    for (const char* pszTexto : {"\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE6\x97",
                                 "\x80", "a\xE7\xE3o", "\xF0\x80\x80\x80", "\xFF"})
        EXPECT_FALSE(XVTextoTela::EhUtf8(pszTexto)) << XVTextoTela::Escapa(pszTexto, false);
}

TEST(TextoTela, BytesGuardadosNaoComandamOTerminal) {
    EXPECT_EQ(XVTextoTela::Escapa("a\x1b[2Jb\x7f\xC2\x9B", false), "a\\x1B[2Jb\\x7F\\xC2\\x9B");
    EXPECT_EQ(XVTextoTela::Escapa("ç\xe7\n", false), "ç\\xE7\\x0A");
    EXPECT_EQ(XVTextoTela::Escapa("a\n\tb\r", true), "a\n\tb\\x0D");
    EXPECT_EQ(XVTextoTela::Escapa("\xE2\x80\xAE"
                                  "abc",
                                  false),
              "\\xE2\\x80\\xAE"
              "abc");
}

std::string Utf8(char32_t c) {
    const auto byte = [c](unsigned uiDesloca, unsigned uiMarca) {
        return static_cast<char>(uiMarca | (uiMarca == 0x80 ? c >> uiDesloca & 0x3FU : c >> uiDesloca));
    };
    if (c < 0x80) return {byte(0, 0)};
    if (c < 0x800) return {byte(6, 0xC0), byte(0, 0x80)};
    if (c < 0x10000) return {byte(12, 0xE0), byte(6, 0x80), byte(0, 0x80)};
    return {byte(18, 0xF0), byte(12, 0x80), byte(6, 0x80), byte(0, 0x80)};
}

// The runs of characters for which fnVale is true.
template <class TFn>
std::string Faixas(TFn fnVale) {
    std::ostringstream fluxo;
    fluxo << std::hex << std::uppercase;
    bool bDentro = false;
    for (char32_t c = 0; c <= 0x110000; ++c) {
        const bool bVale = c < 0x110000 && (c < 0xD800 || c > 0xDFFF) && fnVale(Utf8(c));
        if (bVale && !bDentro) fluxo << static_cast<unsigned>(c) << '-';
        if (!bVale && bDentro) fluxo << static_cast<unsigned>(c) - 1 << ' ';
        bDentro = bVale;
    }
    return fluxo.str();
}

TEST(TextoTela, CadaCaracterePassaOuNaoETemSuaLargura) {
    EXPECT_EQ(Faixas([](const std::string& s) { return XVTextoTela::Escapa(s, false) != s; }),
              "0-1F 7F-9F 202A-202E 2066-2069 ");
    EXPECT_EQ(Faixas([](const std::string& s) { return XVTextoTela::Escapa(s, true) != s; }),
              "0-8 B-1F 7F-9F 202A-202E 2066-2069 ");
    EXPECT_EQ(Faixas([](const std::string& s) { return XVTextoTela::GetLargura(s) == 0; }),
              "300-36F 483-489 591-5BD 610-61A 64B-65F 1AB0-1AFF 1DC0-1DFF 200B-200F 20D0-20F0 FE00-FE0F "
              "FE20-FE2F FEFF-FEFF ");
    EXPECT_EQ(Faixas([](const std::string& s) { return XVTextoTela::GetLargura(s) == 2; }),
              "1100-115F 2E80-303E 3041-A4CF AC00-D7A3 F900-FAFF FE30-FE6F FF00-FF60 FFE0-FFE6 1F300-1F64F "
              "1F680-1F6FF 1F900-1F9FF 20000-3FFFD ");
    EXPECT_EQ(Faixas([](const std::string& s) { return !XVTextoTela::EhUtf8(s); }), "");
}

TEST(TextoTela, CortaEQuebraNaLarguraVista) {
    EXPECT_EQ(XVTextoTela::Corta("açúcar", 6), "açúcar");
    EXPECT_EQ(XVTextoTela::Corta("açúcar", 5), "açúc…");
    EXPECT_EQ(XVTextoTela::Corta("日本語", 5), "日本…");
    EXPECT_EQ(XVTextoTela::Corta("日本語", 4), "日…");
    EXPECT_EQ(XVTextoTela::Corta("\xFFx", 1), "…");
    using TLinhas = std::vector<std::string>;
    EXPECT_EQ(XVTextoTela::Quebra("um açaí e nós", 7), (TLinhas{"um açaí", "e nós"}));
    EXPECT_EQ(XVTextoTela::Quebra("um açaí e nós", 6), (TLinhas{"um", "açaí e", "nós"}));
    EXPECT_EQ(XVTextoTela::Quebra("umapalavra e", 3), (TLinhas{"umapalavra", "e"}));
    EXPECT_EQ(XVTextoTela::Quebra("", 3), TLinhas{""});
}

TEST(Tabela, AlinhaPelaLarguraVistaDasLinhasAteAi) {
    CXVTabela tabela({{"Nome"}, {"Nº", CXVTabela::EAlinhamento::eDireita}, {"Fim"}});
    tabela.Inclui({"a\xCC\x81ção", "7", "x"});
    tabela.Inclui({"日\xF0\x9F\x98\x80", "12345", "y\n"});
    EXPECT_EQ(tabela.Monta(),
              "Nome     Nº  Fim\n"
              "----  -----  -----\n"
              "a\xCC\x81ção      7  x\n"
              "日\xF0\x9F\x98\x80  12345  y\\x0A\n");
    EXPECT_EQ(tabela.Monta(), "");
    tabela.Inclui({"cinco", "8", "z"});
    EXPECT_EQ(tabela.Monta(), "cinco      8  z\n");
    tabela.Inclui({"a", "9", ""});
    EXPECT_EQ(tabela.Monta(), "a          9  \n");
}

// As many columns as find room, those that may be shortened, and colours around nothing but the cell.
TEST(Tabela, CabeNoTerminal) {
    const auto monta = [](std::size_t uiLargura) {
        const auto cor = [](std::string_view s) { return s == "Erro" ? std::string_view("31") : ""; };
        CXVTabela tabela({{"DMC"},
                          {"Tipo", CXVTabela::EAlinhamento::eEsquerda, 1, 6},
                          {"Status", CXVTabela::EAlinhamento::eEsquerda, 2, 0, cor},
                          {"Movimento", CXVTabela::EAlinhamento::eEsquerda, 3}},
                         uiLargura, true);
        tabela.Inclui({"20261121-1-1", "CadastroPreço", "Erro", "20261103-217-2"});
        std::string sTudo = tabela.Monta();
        tabela.Inclui({"20261121-2-1", "CadastroProduto", "Enviado", ""});
        return sTudo + tabela.Monta();
    };
    EXPECT_EQ(monta(0),
              "DMC           Tipo           Status  Movimento\n"
              "------------  -------------  ------  --------------\n"
              "20261121-1-1  CadastroPreço  \x1b[31mErro\x1b[0m    20261103-217-2\n"
              "20261121-2-1  CadastroProduto  Enviado  \n");
    EXPECT_EQ(monta(30),
              "DMC           Tipo      Status\n"
              "------------  --------  ------\n"
              "20261121-1-1  Cadastr…  \x1b[31mErro\x1b[0m\n"
              "20261121-2-1  Cadastr…  Enviado\n");
    EXPECT_EQ(monta(21),
              "DMC           Tipo\n------------  -------\n"
              "20261121-1-1  Cadast…\n20261121-2-1  Cadast…\n");
    EXPECT_EQ(monta(5), "DMC\n------------\n20261121-1-1\n20261121-2-1\n");
}

std::string Le(const std::string& sLinha, CXVDadosCR_IntegracaoMiddleware* pDados) {
    std::vector<SMembroJson> listaMembros;
    std::string sErro = XVSeparaMembros(sLinha, &listaMembros);
    if (!sErro.empty()) return sErro;
    return XVRegistroJson::DeMembros(
               listaMembros, [](const SMembroJson&) { return false; }, pDados)
        .sMensagem;
}

// A null empties what was there, and a logical value is one of two.
TEST(RegistroJson, NuloEsvaziaELogicoValeUmOuZero) {
    CXVDadosCR_IntegracaoMiddleware dados, vazios;
    dados.regDmc.uiValor = dados.regDataHoraInclusao.uiValor = 5;
    dados.sMensagemIntegracao = "antes";
    dados.cReconsultarIdTerceiros = dados.ucTipoPonteiroAuxiliar = 7;
    vazios.ucTipoPonteiroAuxiliar = 1;
    ASSERT_EQ(Le(R"({"regDmc":null,"regDataHoraInclusao":null,"regMensagemIntegracao":null,)"
                 R"("cReconsultarIdTerceiros":false,"ucTipoPonteiroAuxiliar":true})",
                 &dados),
              "");
    EXPECT_TRUE(dados == vazios);
}

// A document in a string of a document, where what looks ahead at each escape needs hours; and depths that
// exhaust a stack.
TEST(RegistroJson, TextoDeMuitosEscapesEAninhamentoFundo) {
    CXVDadosCR_IntegracaoMiddleware dados;
    std::string sEscapes;
    for (int i = 0; i < 1 << 23; ++i) sEscapes += "\\/";
    ASSERT_EQ(Le(R"({"regRegistroJSON":[")" + sEscapes + "\" ]}", &dados), "");
    EXPECT_TRUE(dados.sRegistroJSON == "[\"" + sEscapes + "\"]");
    const std::string sFundo = std::string(1000000, '[') + std::string(1000000, ']');
    ASSERT_EQ(Le("{\"regRegistroJSON\":" + sFundo + "}", &dados), "");
    EXPECT_TRUE(dados.sRegistroJSON == sFundo);
    EXPECT_NE(Le("{\"regRegistroJSON\":" + sFundo, &dados), "");
}

// That a later program recorded.
TEST(Enumeracoes, ValorSemNomeEMostradoComoNumero) {
    EXPECT_EQ(XVEnumeracoesTexto::GetNomeCurto(EEnumeracao::eSistemaIntegracao, 4), "4");
}

TEST(FonteBytes, TextoVaiAteOLimiteENaoAlem) {
    const CXVDiretorioTeste diretorio;
    diretorio.CriaArquivo("a", "abc");
    EXPECT_EQ(XVLeTudo(*XVAbreFonte(diretorio.Junta("a")), 3), "abc");
    EXPECT_THROW(XVLeTudo(*XVAbreFonte(diretorio.Junta("a")), 2), CXVErro);
}

}  // namespace
