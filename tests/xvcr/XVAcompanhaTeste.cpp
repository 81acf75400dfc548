// acompanha: whoever applies its lines has what the store has, wherever they were cut.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <utility>

#include "client/XVCliente.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/xvcr/XVPrograma.h"
#include "tools/xvcr/logs/XVFicha.h"

namespace {

using json = nlohmann::json;
using TLinhas = std::vector<json>;

// A table that is kept equal to the stores, as a receiver of the lines would.
class CReceptor {
  public:
    void Aplica(const json& rLinha) {
        const std::string sEvento = rLinha.at("evento");
        if (sEvento == "emDia") return;
        m_mapTokens[rLinha.at("sEmpresa")] = rLinha.at("token");
        if (sEvento == "passagem") ++m_iPassagem;
        if (sEvento == "integracao") Grava(rLinha);
        if (sEvento == "ausente") m_mapLinhas.erase(rLinha.at("regDmc"));
        if (sEvento == "passagemConcluida")
            std::erase_if(m_mapLinhas, [&](const auto& r) { return r.second.second < m_iPassagem; });
    }
    TLinhas GetTudo() const {
        TLinhas lista;
        for (const auto& [sDmc, par] : m_mapLinhas) lista.push_back(par.first);
        return lista;
    }
    std::string GetToken(const std::string& sEmpresa = "001") { return m_mapTokens[sEmpresa]; }

  private:
    void Grava(const json& rLinha) {
        const json& rDados = rLinha.at("integracao");
        if (rLinha.contains("dmcsDaChave"))
            std::erase_if(m_mapLinhas, [&](const auto& r) {
                const json& rOutra = r.second.first;
                const json& rLista = rLinha["dmcsDaChave"];
                return rOutra["eSistemaIntegracao"] == rDados["eSistemaIntegracao"] &&
                       rOutra["uiChaveIntegracaoSistemaTerceiro"] ==
                           rDados["uiChaveIntegracaoSistemaTerceiro"] &&
                       std::find(rLista.begin(), rLista.end(), rOutra["regDmc"]) == rLista.end();
            });
        m_mapLinhas[rDados["regDmc"]] = {rDados, m_iPassagem};
    }
    std::map<std::string, std::pair<json, int>> m_mapLinhas;
    std::map<std::string, std::string> m_mapTokens;
    int m_iPassagem = 0;
};

class Acompanha : public XVPrograma {
  protected:
    Acompanha() : XVPrograma(true) {}
    SExecucao Execucao(const std::string& sMais) const { return Xvcr("acompanha " + sMais); }
    TLinhas Linhas(const std::string& sMais) const {
        const SExecucao execucao = Execucao(sMais);
        EXPECT_EQ(execucao.iSaida, 0) << execucao.sErro;
        return XVLinhasJson(execucao.sSaida);
    }
    TLinhas Base() const { return Json("busca --le --todos"); }
    std::string Log(const std::string& sMes, const std::string& sEmpresa = "001") const {
        return m_Diretorio.Junta(sEmpresa + "/DF/XVLogGeral_" + sMes + ".log");
    }
    static std::string Conteudo(const std::string& sArquivo) {
        std::ifstream arquivo(sArquivo, std::ios::binary);
        return {std::istreambuf_iterator<char>(arquivo), {}};
    }
    static void Escreve(const std::string& sArquivo, const std::string& sTexto) {
        std::ofstream(sArquivo, std::ios::binary) << sTexto;
    }
    std::map<std::string, std::string> Retrato() const {
        std::map<std::string, std::string> mapArquivos;
        for (const auto& rEntrada : std::filesystem::recursive_directory_iterator(m_Diretorio.GetCaminho()))
            if (rEntrada.is_regular_file())
                mapArquivos[rEntrada.path().string()] = Conteudo(rEntrada.path().string());
        return mapArquivos;
    }
    // By the component, while the program runs in this process too.
    void GravaAoLado(const std::string& sEmpresa, XVUInt64 uiChave) const {
        XVCliente::CXVCliente cliente;
        REG_XVDMC regDmc;
        CXVDadosCR_IntegracaoMiddleware dados;
        dados.uiChaveIntegracaoSistemaTerceiro = uiChave;
        ASSERT_EQ(cliente.ConectaLocal({.sEmpresa = sEmpresa}, {.sDiretorio = m_Diretorio.GetCaminho()}),
                  S_OK);
        ASSERT_EQ(cliente.GravaIntegracao(&regDmc, dados), S_OK);
    }

    CXVRelogioFalso m_Relogio;  // 15 March 2024
    const CXVGuardaRelogio m_Guarda{m_Relogio};
};

// New ones, changes, one of the bank that takes the place of another; and all cut behind each line.
TEST_F(Acompanha, QuemContinuaDeQualquerTokenFicaIgualABase) {
    const std::string sPrimeira = Grava("grava --sistema Mercos --chave 5 --json-enviado um");
    const std::string sBanco = "grava --tipo BuscaPedidos --sistema OfficialBank --chave 77 --mensagem ";
    for (const char* pszTexto : {"a", "b"})
        Grava("grava --sistema Mercos --json-enviado " + std::string(pszTexto));
    TLinhas listaTudo = Linhas("--uma-vez --desde-o-inicio");
    const auto segue = [&] {
        CReceptor ate;
        for (const json& rLinha : listaTudo) ate.Aplica(rLinha);
        for (json& rLinha : Linhas("--uma-vez --token " + ate.GetToken()))
            listaTudo.push_back(std::move(rLinha));
    };
    Grava(sBanco + "primeira");
    Grava("status --dmc " + sPrimeira + " --status Erro --mensagem caiu");
    segue();
    Grava(sBanco + "segunda");
    Grava("grava --dmc " + sPrimeira + " --json-enviado dois");
    Grava("grava --sistema Mercos --chave 6", {"--mensagem", "\xFF nao e UTF-8"});
    Grava("grava --dmc " + sPrimeira + " --json-enviado tres");
    segue();
    ASSERT_EQ(listaTudo.size(), 13U);
    const TLinhas listaBase = Base();
    ASSERT_EQ(listaBase.size(), 5U);
    CReceptor inteiro;
    for (std::size_t i = 0; i <= listaTudo.size(); ++i) {
        CReceptor cortado = inteiro;
        const std::string sToken = cortado.GetToken();
        for (const json& rLinha :
             Linhas("--uma-vez --desde-o-inicio" + (sToken.empty() ? "" : " --token " + sToken)))
            cortado.Aplica(rLinha);
        EXPECT_EQ(json(cortado.GetTudo()), json(listaBase)) << "behind " << i << " lines";
        if (i < listaTudo.size()) inteiro.Aplica(listaTudo[i]);
    }
    EXPECT_EQ(json(inteiro.GetTudo()), json(listaBase));
    EXPECT_EQ(json(Linhas("--uma-vez --token " + inteiro.GetToken())), json::array()) << "nothing new";
    EXPECT_FALSE(
        Linhas("--uma-vez --desde-o-inicio --sem-textos")[1]["integracao"].contains("regRegistroJSON"));
}

TEST_F(Acompanha, MesesNovosELinhasPartidas) {
    Grava("grava --chave 1");
    const std::string sToken = Linhas("--uma-vez").at(0)["token"];
    const auto chaves = [&](const std::string& sDesde) {
        std::string sChaves;
        for (const json& rLinha : Linhas("--uma-vez --token " + sDesde))
            if (rLinha.contains("integracao"))
                sChaves += rLinha["integracao"]["uiChaveIntegracaoSistemaTerceiro"].get<std::string>() + ' ';
        return sChaves;
    };
    Grava("grava --chave 2");
    m_Relogio.SetUTC({2024, 4, 2, 12, 0, 0});
    Grava("grava --chave 3");
    EXPECT_EQ(chaves(sToken), "2 3 ");
    const std::string sAbril = Linhas("--uma-vez --token " + sToken).at(1)["token"];
    m_Relogio.SetUTC({2024, 3, 31, 12, 0, 0});
    Grava("grava --chave 4");
    EXPECT_EQ(chaves(sAbril), "4 ") << "the clock was set back";
    m_Relogio.SetUTC({2024, 5, 2, 12, 0, 0});
    Grava("grava --chave 5");
    EXPECT_EQ(chaves(sAbril), "4 5 ");

    // The beginning of a line that a power failure cut, with the next one behind it; and one not yet whole.
    const std::string sLog = Conteudo(Log("202405"));
    const std::size_t uiUltima = sLog.rfind("02/05/2024");
    const std::string sUltima = sLog.substr(uiUltima);
    Escreve(Log("202405"), sLog.substr(0, uiUltima) + sUltima.substr(0, 60) + sUltima);
    EXPECT_EQ(chaves(sAbril), "4 5 ");
    Escreve(Log("202405"), sLog.substr(0, sLog.size() - 1));
    EXPECT_EQ(chaves(sAbril), "4 ");
    Escreve(Log("202405"), sLog);

    std::filesystem::remove(Log("202403"));
    EXPECT_EQ(chaves(sAbril), "5 ") << "a month that was read whole may go";
    const auto recusa = [&](const char* pszPorque) {
        const SExecucao execucao = Execucao("--uma-vez --token " + sAbril);
        EXPECT_EQ(execucao.iSaida, 1) << pszPorque;
        EXPECT_NE(execucao.sErro.find("\" " + std::string(pszPorque) + "; comece de novo"), std::string::npos)
            << execucao.sErro;
    };
    const std::string sLogAbril = Conteudo(Log("202404"));
    Escreve(Log("202404"), sLogAbril.substr(0, sLogAbril.size() - 1));
    recusa("foi cortado ou trocado");
    Escreve(Log("202404"), std::string(sLogAbril).replace(sLogAbril.size() - 4, 1, "#") + "mais\n");
    recusa("é outro");
    std::filesystem::remove(Log("202404"));
    recusa("não existe mais");
}

// One company fails and heals, one comes later; the stores stay as they are to the byte.
TEST_F(Acompanha, SegueMuitasEmpresasEUmaQueFalhaNaoPrendeAsOutras) {
    for (const char* pszEmpresa : {"001", "002"}) GravaAoLado(pszEmpresa, 1);
    std::string sLog;
    std::map<std::string, std::string> mapAntes;
    int iPasso = 0;
    bool bDentro = false;  // what is recorded here may wait too
    m_Relogio.SetAoDormir([&](XVUInt64) {
        if (std::exchange(bDentro, true)) return;
        ++iPasso;
        // What failed before and is well again fails anew.
        if (iPasso == 1 || iPasso == 40) sLog = Conteudo(Log("202403", "002"));
        if (iPasso == 1 || iPasso == 40) Escreve(Log("202403", "002"), "outro\n");
        if (iPasso == 3) GravaAoLado("001", 2);
        if (iPasso == 5 || iPasso == 43) Escreve(Log("202403", "002"), sLog);
        if (iPasso == 6) GravaAoLado("002", 3);
        if (iPasso == 7) GravaAoLado("003", 4);
        if (iPasso == 8) mapAntes = Retrato();
        bDentro = false;
    });
    const auto executa = [&](const std::string& sPalavras) {
        return XVExecutaAqui(
            XVPalavras("acompanha " + sPalavras + " --diretorio " + m_Diretorio.GetCaminho()));
    };
    const SExecucao execucao = executa("--todas --desde-o-inicio --por 12");
    EXPECT_EQ(mapAntes, Retrato());
    EXPECT_EQ(execucao.iSaida, 1);
    EXPECT_TRUE(execucao.sErro.starts_with("xvcr: empresa 002: o token não vale mais: o log \""))
        << execucao.sErro;
    EXPECT_EQ(std::count(execucao.sErro.begin(), execucao.sErro.end(), '\n'), 2)
        << "once each time: " << execucao.sErro;
    EXPECT_EQ(m_Relogio.GetMilissegundosDormidos(), 12000U);
    CReceptor receptor;
    std::string sChaves;
    for (const json& rLinha : XVLinhasJson(execucao.sSaida)) {
        receptor.Aplica(rLinha);
        if (rLinha.contains("integracao"))
            sChaves += rLinha["sEmpresa"].get<std::string>() + ':' +
                       rLinha["integracao"]["uiChaveIntegracaoSistemaTerceiro"].get<std::string>() + ' ';
    }
    EXPECT_EQ(sChaves, "001:1 002:1 001:2 003:4 002:3 ");
    m_Diretorio.CriaArquivo("tokens", receptor.GetToken("001") + "\n\n" + receptor.GetToken("003") + "\n");
    const std::string sTokens = " --uma-vez --tokens " + m_Diretorio.Junta("tokens");
    EXPECT_EQ(executa("--empresa 001,003" + sTokens).sSaida, "");
    const std::string sPrimeiro =
        "--empresa 001,003 --uma-vez --token " + receptor.GetToken("001") + " --token ";
    EXPECT_EQ(executa(sPrimeiro + receptor.GetToken("003")).sSaida, "") << "each of them counts";
    EXPECT_EQ(executa(sPrimeiro + receptor.GetToken("001")).iSaida, 2);
    EXPECT_EQ(executa("--empresa 001" + sTokens).sErro,
              "xvcr: há um token da empresa \"003\", que não está entre as acompanhadas\n");
}

// What the damage of one integration leaves unread is said; what the whole store cannot do is no such damage.
TEST_F(Acompanha, IntegracaoDanificadaEDita) {
    Grava("grava --chave 1");
    m_Relogio.SetUTC({2024, 3, 16, 12, 0, 0});
    Grava("grava --chave 2");
    const std::string sDia = m_Diretorio.Junta("001/DF/CRINTEGMID20240315.dat");
    std::filesystem::remove(sDia);
    const SExecucao execucao = Execucao("--uma-vez --desde-o-inicio");
    const TLinhas listaLinhas = XVLinhasJson(execucao.sSaida);
    EXPECT_EQ(execucao.iSaida, 1);
    ASSERT_EQ(listaLinhas.size(), 5U) << execucao.sErro;
    EXPECT_EQ(listaLinhas[1]["evento"], "ilegivel");
    EXPECT_EQ(listaLinhas[1]["hr"], "0x810809D7");
    EXPECT_EQ(listaLinhas[2]["integracao"]["uiChaveIntegracaoSistemaTerceiro"], "2");
    std::filesystem::create_directory(sDia);
    const SExecucao negada = Execucao("--uma-vez --desde-o-inicio");
    EXPECT_EQ(XVLinhasJson(negada.sSaida).size(), 2U) << "the pass ends where the machine fails";
    EXPECT_EQ(negada.iSaida, 1);
}

TEST(FichaTeste, SoLeOQueEscreveu) {
    SFicha ficha;
    const std::string sBoa = "1:001:202403.90.185.00000000000000ff:202404.0.0.0000000000000000:p12";
    ASSERT_TRUE(SFicha::DeString(sBoa, &ficha));
    EXPECT_EQ(ficha.ToString(), sBoa);
    for (const char* pszRuim :
         {"", "2:001", "1:..", "1:001:", "1:001:202403.90.80.0000000000000001",
          "1:001:202403.0.99999.0000000000000001", "1:001:p", "1:001:p1x",
          "1:001:202404.0.0.0000000000000000:202403.0.0.0000000000000000", "1:001:202403.0.0.0",
          "1:001:1.0.0.0000000000000000:2.0.0.0000000000000000:"
          "3.0.0.0000000000000000"})
        EXPECT_FALSE(SFicha::DeString(pszRuim, &ficha)) << pszRuim;
}

// Which integrations have its key is told of a new one of the bank, also where it was changed before anybody
// looked, and of no other. What is no line of an integration is passed over, and so is what is no log.
TEST_F(Acompanha, ChaveDoBancoSoComUmaNova) {
    Grava("grava --sistema Mercos --chave 5");
    std::string sToken = Linhas("--uma-vez").at(0)["token"];
    const auto segue = [&] {
        std::string sTudo;
        for (const json& rLinha : Linhas("--uma-vez --token " + sToken)) {
            if (rLinha["evento"] == "emDia") continue;
            sToken = rLinha.value("token", "");
            sTudo += rLinha["evento"].get<std::string>() + ' ' +
                     rLinha.value("integracao", json::object()).value("sDmc", "20240315-?").substr(9) + ' ' +
                     rLinha.value("dmcsDaChave", json()).dump() + ' ';
        }
        return sTudo;
    };
    const auto doBanco = [&] {
        const std::string sDmc = Grava("grava --tipo BuscaPedidos --sistema OfficialBank --chave 77");
        const std::string sLista = json::array({Le(sDmc)["regDmc"]}).dump();
        return std::pair(sDmc, sLista);
    };
    const auto [sPrimeira, sSoPrimeira] = doBanco();
    const std::string sStatus = "status --status Erro --mensagem caiu --dmc ";
    Grava(sStatus + sPrimeira);
    EXPECT_EQ(segue(), "integracao 2-1 " + sSoPrimeira + ' ');
    Grava(sStatus + sPrimeira);
    Grava("grava --sistema Mercos --chave 77");
    EXPECT_EQ(segue(), "integracao 2-1 null integracao 3-1 null ");
    const auto [sSegunda, sSoSegunda] = doBanco();
    Grava(sStatus + sSegunda);
    const std::string sColunas(8, '\t');
    const std::string sAlheia = sColunas + "GravaMapa - DMCIntegracao: 0-33-0 \n";
    Escreve(Log("202403"), Conteudo(Log("202403")) + sAlheia + sAlheia.substr(1));
    Escreve(Log("2024x3"), "outro");
    EXPECT_EQ(segue(), "integracao 4-1 " + sSoSegunda + ' ');
    const std::string sTamanho = std::to_string(Conteudo(Log("202403")).size());
    EXPECT_NE(sToken.find('.' + sTamanho + '.'), std::string::npos) << "read to its end: " << sToken;
    for (XVByte ucMes = 4; ucMes <= 6; ++ucMes) {
        m_Relogio.SetUTC({2024, ucMes, 2, 12, 0, 0});
        Grava("grava --sistema Mercos");
    }
    EXPECT_EQ(segue(), "integracao 1-1 null integracao 1-1 null integracao 1-1 null ");
    EXPECT_EQ(std::count(sToken.begin(), sToken.end(), ':'), 3) << "two months: " << sToken;
    EXPECT_EQ(segue(), "");
    Escreve(Log("202406"), std::string(3 * SPosicaoLog::k_uiMaiorLinha, 'x'));
    const SExecucao execucao = Execucao("--uma-vez");
    const std::string sLog = std::filesystem::path(Log("202406")).make_preferred().string();
    EXPECT_EQ(execucao.sErro, "xvcr: empresa 001: \"" + sLog + "\": não é um log geral\n");
    EXPECT_EQ(execucao.sSaida, "");
}

}  // namespace
