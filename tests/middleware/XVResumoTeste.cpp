// The summary of a store, all of it: every count, limit, age and group.
#include <sstream>

#include "middleware/resumo/XVMensagemNormal.h"
#include "middleware/resumo/XVResumoLoja.h"
#include "tests/middleware/XVOperacoesLoja.h"
#include "tests/middleware/XVRelatos.h"
#include "tests/middleware/XVRetratoLoja.h"

namespace {

std::string Relata(const SResumoLoja& r) {
    std::ostringstream texto;
    texto << r.regMomento.ToISO8601() << ": " << r.uiIntegracoes << " integrações, " << r.uiIlegiveis
          << " ilegíveis, " << r.Pendentes() << " pendentes";
    for (const XVUInt64 ui : r.auiPendentes) texto << ' ' << ui;
    if (r.maisAntiga) texto << ", desde " << r.maisAntiga->first.ToString() << ", " << r.maisAntiga->second;
    texto << "\n" << r.uiFalhas << " falhas, " << r.uiFalhasForaDosGrupos << " fora\n";
    for (const auto& [sNormal, rGrupo] : r.mapaFalhas)
        texto << "  [" << sNormal << "] " << rGrupo.uiQuantidade << ' ' << rGrupo.regDmc.ToString() << " ["
              << rGrupo.sExemplo << "]\n";
    for (const auto& [uiDia, ui] : r.mapaDias) texto << ' ' << uiDia << '=' << ui;
    for (const auto& [par, ui] : r.mapaStatusSistema)
        texto << ' ' << par.first << '/' << par.second << '=' << ui;
    for (const auto& [eTipo, ui] : r.mapaTipos) texto << " t" << eTipo << '=' << ui;
    texto << '\n'
          << r.regPrimeira.ToISO8601() << " a " << r.regUltima.ToISO8601() << ", " << r.uiArquivos
          << " arquivos, " << r.uiBytes << " bytes, " << r.uiTextosMortos << " mortos de " << r.uiBytesMortos
          << ", memória " << r.uiMemoria << '\n';
    return texto.str();
}

class Resumo : public CXVCenarioLoja {
  protected:
    using EAlcance = CXVResumoLoja::EAlcance;

    HRESULT Executa(EAlcance eAlcance = EAlcance::eTudo) {
        m_uiLidos = 0;
        CXVResumoLoja executor(PastaDados(), eAlcance);
        executor.m_fnProgresso = [this](XVUInt64 uiBytes) { m_uiLidos += uiBytes; };
        return executor.Executa(&m_resumo);
    }
    std::string Resume(EAlcance eAlcance = EAlcance::eTudo) {
        EXPECT_EQ(Executa(eAlcance), S_OK);
        return Relata(m_resumo);
    }
    static void Confere(const char* pszNome, const std::string& sRelato) {
        EXPECT_EQ(sRelato, XVRelatoEsperado(pszNome, sRelato));
    }
    // A pending one, included at a second of a day.
    void GravaPendente(CBaseMiddleware& rLoja, XVUInt64 uiDma, unsigned uiSegundo) {
        CXVIntegracaoTeste integracao(0, OfficialBank, eXVSMiddleware_Pendente);
        integracao.reg.regDataHoraInclusao = {uiDma << 32 | uiSegundo};
        Grava(rLoja, integracao);
    }
    void GravaErro(CBaseMiddleware& rLoja, const std::string& sMensagem) {
        Grava(rLoja, CXVIntegracaoTeste(0, Mercos, eXVSMiddleware_Erro).Textos("{}", sMensagem, "r"));
    }

    SResumoLoja m_resumo;
    XVUInt64 m_uiLidos = 0;
};

TEST_F(Resumo, ContaTudoAteOsLimites) {
    Confere("Resumo de nada", Resume());
    EXPECT_TRUE(XVPovoaLoja(*Abre(), [this](unsigned uiDia) { SetDia(uiDia); }));
    {
        const TLoja pLoja = Abre();
        EXPECT_EQ(XVOperacaoLoja("AlteracaoSemRetorno").fnExecuta(*pLoja), S_OK);
        constexpr unsigned k_uiMeioDia = 12 * 3600;
        for (const unsigned uiAtraso : {3600U, 3601U})
            GravaPendente(*pLoja, k_uiHoje, k_uiMeioDia - uiAtraso);
        for (const XVUInt64 uiDma : {XVDma(2024, 3, 14), XVDma(2024, 3, 8), XVDma(2024, 2, 14)})
            for (const unsigned uiMais : {0U, 1U}) GravaPendente(*pLoja, uiDma, k_uiMeioDia - uiMais);
        GravaPendente(*pLoja, k_uiHoje, k_uiMeioDia + 100);
        GravaErro(*pLoja, "Produto P1004 não encontrado (pedido 12/2026, às 10:05)");
        GravaErro(*pLoja, "Produto 77-B não encontrado  (pedido 9, às 11:00)");
        GravaErro(*pLoja, "");
    }
    Confere("Resumo", Resume());
    EXPECT_EQ(m_uiLidos, 8301U);
    Confere("Resumo só de números", Resume(EAlcance::eNumeros));
    EXPECT_EQ(m_uiLidos, 2032U) << "no text";
    // A record and a place in the index of which nothing can be told.
    for (const auto& [sNome, uiDe, uiBytes] :
         {std::tuple("CRINTEGMID20240313.dat", 240U, 88U), std::tuple("CRINDEXINTEG.dat", 240U + 48, 24U)}) {
        const std::string sBytes = Conteudo(sNome);
        m_Arquivos.CriaArquivo(
            PastaDados(sNome),
            XVArquivoDoTeste({.sNome = sNome},
                             std::string(sBytes).replace(uiDe, uiBytes, uiBytes, '\0').substr(240)));
    }
    Confere("Resumo com dano", Resume());
}

// The groups end at a thousand; those that are there go on being counted.
TEST_F(Resumo, MilGruposDeFalhas) {
    {
        const TLoja pLoja = Abre();
        for (unsigned i = 0; i < 1003; ++i) {
            std::string sMensagem = "falha ";
            for (unsigned ui = i < 1002 ? i : 7; ui != 0; ui /= 10)
                sMensagem += static_cast<char>('a' + ui % 10);
            GravaErro(*pLoja, sMensagem);
        }
    }
    ASSERT_EQ(Executa(), S_OK);
    EXPECT_EQ(m_resumo.uiFalhas, 1003U);
    EXPECT_EQ(m_resumo.mapaFalhas.size(), 1000U);
    EXPECT_EQ(m_resumo.uiFalhasForaDosGrupos, 2U);
    EXPECT_EQ(m_resumo.mapaFalhas["falha h"].uiQuantidade, 2U);
    EXPECT_EQ(m_resumo.mapaFalhas["falha h"].regDmc.ToString(), "20240315-1003-1");
}

TEST_F(Resumo, RecusaOQueNaoPodeContar) {
    EXPECT_TRUE(XVPovoaLoja(*Abre(), [this](unsigned uiDia) { SetDia(uiDia); }));
    const auto inteira = m_Arquivos.Retrata();
    const auto responde = [&](const char* pszNome, std::string sBytes) {
        m_Arquivos.Restaura(inteira);
        m_Arquivos.CriaArquivo(PastaDados(pszNome), std::move(sBytes));
        return Executa();
    };
    const char* pszVersao = "CRMIDDLEWAREVS.dat";
    const auto versao = [&](char c) {
        return XVArquivoDoTeste({.sNome = pszVersao}, Dados(Conteudo(pszVersao)).replace(0, 1, 1, c));
    };
    EXPECT_EQ(responde(pszVersao, versao('\4')), E_XVCR_VERSAO_INCOMPATIVEL);
    EXPECT_EQ(responde(pszVersao, versao('\6')), E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA);
    const char* pszIndice = "CRINDEXINTEG.dat";
    const std::string sIndice = Conteudo(pszIndice);
    EXPECT_EQ(responde(pszIndice, ""), E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS);
    EXPECT_EQ(responde(pszIndice, sIndice + "x"), E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE);
    EXPECT_EQ(CXVResumoLoja("/nao/ha", EAlcance::eTudo).Executa(&m_resumo), eBadPath);
}

TEST(MensagemNormal, OQueTemDigitoEhUmSo) {
    for (const auto& [pszMensagem, pszNormal] :
         {std::pair("", ""), std::pair("  a\t\n b  ", "a b"),
          std::pair("1.234,56 em 2026-11-21T10:05", "# em #"), std::pair("a/b_7: x", "#: x"),
          std::pair("fim 12.", "fim #."), std::pair("-5", "-#"), std::pair("ção9 é", "# é"),
          std::pair("a-b c", "a-b c"), std::pair("(0)[z]{9}", "(#)[z]{#}")})
        EXPECT_EQ(XVMensagemNormal(pszMensagem), pszNormal) << pszMensagem;
    EXPECT_EQ(XVMensagemNormal(std::string(199, 'x') + "çz"), std::string(199, 'x'));
    EXPECT_EQ(XVMensagemNormal(std::string(198, 'x') + "çz"), std::string(198, 'x') + "ç");
}

}  // namespace
