// What is followed while it grows: whoever applies the lines of acompanha has what the store has, wherever
// they were cut, and registro --segue loses no line of a log that is moved away.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

#include "tests/xvcr/XVPrograma.h"

namespace {

using json = nlohmann::json;
using TLinhas = std::vector<json>;

// A table that is kept equal to the store, as a receiver of the lines would.
class CReceptor {
  public:
    void Aplica(const json& rLinha) {
        const std::string sEvento = rLinha.at("evento");
        if (sEvento == "emDia") return;
        m_sToken = rLinha.at("token");
        if (sEvento == "passagem") ++m_iPassagem;
        if (sEvento == "integracao") Grava(rLinha);
        if (sEvento == "ausente") m_mapLinhas.erase(rLinha.at("regDmc"));
        if (sEvento == "passagemConcluida")
            std::erase_if(m_mapLinhas, [&](const auto& r) { return r.second.second < m_iPassagem; });
    }
    json GetTudo() const {
        json lista = json::array();
        for (const auto& [sDmc, par] : m_mapLinhas) lista.push_back(par.first);
        return lista;
    }
    const std::string& GetToken() const { return m_sToken; }

  private:
    void Grava(const json& rLinha) {
        const json& rDados = rLinha.at("integracao");
        std::erase_if(m_mapLinhas, [&](const auto& r) {
            const auto igual = [&](const char* psz) { return r.second.first[psz] == rDados[psz]; };
            const json lista = rLinha.value("dmcsDaChave", json::array({r.first}));
            return igual("eSistemaIntegracao") && igual("uiChaveIntegracaoSistemaTerceiro") &&
                   std::ranges::find(lista, json(r.first)) == lista.end();
        });
        m_mapLinhas[rDados["regDmc"]] = {rDados, m_iPassagem};
    }
    std::map<std::string, std::pair<json, int>> m_mapLinhas;
    std::string m_sToken;
    int m_iPassagem = 0;
};

class Seguimento : public XVProgramaAqui {};

// New ones, changes, one of the bank that takes the place of another; and all cut behind each line.
TEST_F(Seguimento, QuemContinuaDeQualquerTokenFicaIgualABase) {
    const auto linhas = [&](const std::string& sMais) { return Json("acompanha --uma-vez " + sMais); };
    const std::string sPrimeira = Grava("grava --sistema Mercos --chave 5 --json-enviado um");
    const std::string sBanco = "grava --tipo BuscaPedidos --sistema OfficialBank --chave 77 --mensagem ";
    for (const std::string sTexto : {"a", "b"}) Grava("grava --sistema Mercos --json-enviado " + sTexto);
    TLinhas listaTudo = linhas("--desde-o-inicio");
    const auto segue = [&] {
        const TLinhas listaNovas = linhas("--token " + listaTudo.rbegin()[1]["token"].get<std::string>());
        listaTudo.insert(listaTudo.end(), listaNovas.begin(), listaNovas.end());
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
    const json listaBase = Json("busca --le --todos");
    ASSERT_EQ(listaBase.size(), 5U);
    CReceptor inteiro;
    for (std::size_t i = 0; i <= listaTudo.size(); ++i) {
        CReceptor cortado = inteiro;
        const std::string& rToken = cortado.GetToken();
        for (const json& rLinha : linhas("--desde-o-inicio" + (rToken.empty() ? "" : " --token " + rToken)))
            cortado.Aplica(rLinha);
        EXPECT_EQ(cortado.GetTudo(), listaBase) << "behind " << i << " lines";
        if (i < listaTudo.size()) inteiro.Aplica(listaTudo[i]);
    }
    EXPECT_EQ(inteiro.GetTudo(), listaBase);
}

// With a line that was not yet shown; the log of the same name begins anew and longer.
TEST_F(Seguimento, LogQueMudaDeNomeEMostradoAteOFim) {
    const std::string sCabecalho = "Data\tHora\tUsuario\n";
    const auto linha = [](unsigned ui) { return "21/11/2026\t10:11:12\tU00" + std::to_string(ui) + '\n'; };
    const std::string sLog = "001/DF/XVProfilerErros_Base_202611.log";
    std::filesystem::create_directories(m_Diretorio.Junta("001/DF"));
    m_Diretorio.CriaArquivo(sLog, sCabecalho + linha(1));
    m_Relogio.SetAoDormir([&](XVUInt64 uiDormidas) {
        if (uiDormidas != 1) return;
        std::ofstream(m_Diretorio.Junta(sLog), std::ios::app | std::ios::binary) << linha(2);
        std::error_code erro;  // Windows does not let a file be moved that somebody reads
        std::filesystem::rename(m_Diretorio.Junta(sLog), m_Diretorio.Junta("antigo.log"), erro);
        std::ofstream(m_Diretorio.Junta(sLog), std::ios::app | std::ios::binary)
            << (erro ? "" : sCabecalho) << linha(3) << linha(4);
    });
    std::string sUsuarios;
    for (const json& r : Json("registro --segue --por 1")) sUsuarios += r["Usuario"].get<std::string>();
    EXPECT_EQ(sUsuarios, "1234");
}

}  // namespace
