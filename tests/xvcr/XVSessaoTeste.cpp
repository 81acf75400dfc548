// Whole sessions: each command's standard output, error output and exit status, and files that it makes, held
// against what is written down in sessoes/*.txt, in a directory of its own and with a clock that stands
// still.
//
//   $ words             runs xvcr with them, in DIR and for the company 001 where they name none
//   $ words < name      the same by the program itself, with the file as its standard input
//   $$ words            runs xvcr with nothing but them
//   > name, then "+ "   makes the file name of the lines that follow; with ">>" they come behind what it has,
//                       and with "+~ " without a line feed
//   % mostra name       the file's bytes; what else a directive does: see Prepara, and
//                       XVProvedorDaSessao.h for what the provider is told
//   @ n line            the line waits for the n-th time that the next command sleeps, which has to come; the
//                       one of "@- n line" must not come
//   | ! =               answers: standard output, error output, exit status other than 0; "~": no line feed
//
// DIR stands for the directory, bytes that drive a terminal are <HH> in answers, any byte in words and files;
// "_-_" is a blank within a word, "<>" no byte. With XV_SESSOES_NOVAS=folder in the environment the sessions
// are written there as they are now; every change in them has to be meant.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <sstream>

#include "client/XVCliente.h"
#include "support/XVAmbiente.h"
#include "support/trace/XVProfilerConfig.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/xvcr/XVPrograma.h"
#include "tests/xvcr/XVProvedorDaSessao.h"

namespace {

std::string Troca(std::string sTexto, const std::string& sDe, const std::string& sPara) {
    for (std::size_t i = 0; (i = sTexto.find(sDe, i)) != std::string::npos; i += sPara.size())
        sTexto.replace(i, sDe.size(), sPara);
    return sTexto;
}

// Bytes above F7 stand in no UTF-8.
std::string Visivel(const std::string& sTexto) {
    std::string sVisivel;
    for (const char c : sTexto) {
        char szByte[8];
        const auto uc = static_cast<unsigned char>(c);
        std::snprintf(szByte, sizeof(szByte), "<%02X>", uc);
        sVisivel += uc < 0x20 || uc == 0x7f || uc > 0xf7 ? szByte : std::string(1, c);
    }
    return sVisivel;
}

// Each line of the text behind the mark.
std::string Marca(const std::string& sMarca, const std::string& sTexto) {
    std::istringstream linhas(sTexto);
    std::string sMarcado;
    for (std::string s; std::getline(linhas, s);) sMarcado += sMarca + Visivel(s) + '\n';
    return sMarcado + (sTexto.empty() || sTexto.ends_with('\n') ? "" : "~\n");
}

// Its bytes that are written as <HH>, two capital hexadecimal digits.
std::string Bytes(const std::string& sTexto) {
    std::string sBytes;
    const auto bDigito = [&](std::size_t i) {
        return std::string_view("0123456789ABCDEF").find(sTexto[i]) != std::string_view::npos;
    };
    for (std::size_t i = 0; i < sTexto.size(); ++i) {
        const bool bByte = sTexto[i] == '<' && i + 3 < sTexto.size() && sTexto[i + 3] == '>' &&
                           bDigito(i + 1) && bDigito(i + 2);
        sBytes += bByte ? static_cast<char>(std::stoi(sTexto.substr(i + 1, 2), nullptr, 16)) : sTexto[i];
        if (bByte) i += 3;
    }
    return sBytes;
}

class Sessao : public testing::TestWithParam<const char*> {
  protected:
    // Forgets what the session before has set, and where its logs lay.
    Sessao() {
        XVLimpaAmbiente();
        XVProfilerConfig::Recarrega();
    }

    // "$ words" or "$$ words".
    std::string Executa(const std::string& sLinha) {
        const std::size_t uiEntrada = sLinha.find(" < ");
        TArgumentos listaTudo = XVPalavras(sLinha.substr(0, uiEntrada));
        const auto tem = [&](const char* psz) {
            return std::ranges::find(listaTudo, psz) != listaTudo.end();
        };
        const bool bCompleta = listaTudo.front() == "$";
        const bool bComEmpresa = bCompleta && !tem("--empresa") && !tem("--todas");
        const bool bComDiretorio = bCompleta && !tem("--diretorio");
        listaTudo.erase(listaTudo.begin());
        if (bComEmpresa) listaTudo.insert(listaTudo.begin(), {"--empresa", "001"});
        if (bComDiretorio) listaTudo.insert(listaTudo.begin(), {"--diretorio", "DIR"});
        for (std::string& r : listaTudo)
            r = Bytes(Troca(Troca(Troca(r, "DIR", m_Diretorio.GetCaminho()), "_-_", " "), "<>", ""));
        unsigned long ulVez = 0;
        m_Relogio.SetAoDormir([&](XVUInt64) {
            const unsigned long ul = ++ulVez;  // a line may sleep as well
            for (auto it = m_mapaAoDormir.find(ul); it != m_mapaAoDormir.end(); it = m_mapaAoDormir.find(ul))
                Faz(m_mapaAoDormir.extract(m_mapaAoDormir.lower_bound(ul)).mapped());
        });
        const SExecucao r = uiEntrada == std::string::npos
                                ? XVExecutaAqui(listaTudo)
                                : XVExecuta(XV_PROGRAMA, listaTudo, Conteudo(sLinha.substr(uiEntrada + 3)));
        m_Relogio.SetAoDormir({});
        for (const auto& [ul, s] : m_mapaAoDormir)
            EXPECT_TRUE(s.starts_with("@-")) << "moment " << ul << " never came: " << s;
        m_mapaAoDormir.clear();
        m_iSaida = r.iSaida;
        const std::string sSaida = r.iSaida == 0 ? "" : "= " + std::to_string(r.iSaida) + '\n';
        return SemLugar(Marca("| ", r.sSaida) + Marca("! ", r.sErro) + sSaida);
    }
    // Also as JSON has it, and with the separators of the system in what follows.
    std::string SemLugar(std::string sTexto) const {
        const std::string sLugar = m_Diretorio.GetCaminho();
        sTexto = Troca(Troca(std::move(sTexto), Troca(sLugar, "\\", "\\\\"), "DIR"), sLugar, "DIR");
        for (std::size_t i = 0; (i = sTexto.find("DIR", i)) != std::string::npos;)
            for (i += 3; i < sTexto.size() && std::string_view("\" \n").find(sTexto[i]) == std::string::npos;
                 ++i)
                if (sTexto[i] == '\\') sTexto.replace(i, sTexto.substr(i, 2) == "\\\\" ? 2 : 1, "/");
        return sTexto;
    }
    std::string Conteudo(const std::string& sNome) const {
        const bool bPasta = std::filesystem::is_directory(m_Diretorio.Junta(sNome));
        return bPasta ? "(pasta)" : m_Diretorio.LeConteudo(sNome).value_or("(não há)");
    }
    std::map<std::string, std::string> Pasta(const std::string& sNome) const {
        std::map<std::string, std::string> mapa;
        for (const auto& r : std::filesystem::directory_iterator(m_Diretorio.Junta(sNome)))
            mapa[r.path().filename().string()] = Conteudo(sNome + '/' + r.path().filename().string());
        return mapa;
    }
    // What a directive does to files; false: it does another thing.
    bool Muda(const std::string& sQual, const std::string& sNome, std::istringstream& rPalavras) {
        std::size_t uiOnde = 0;
        std::string sMais, sBytes = Conteudo(sNome);
        const std::filesystem::path caminho = m_Diretorio.Junta(sNome);
        if (sQual == "poe") {  // name, offset, one byte in hexadecimal
            rPalavras >> uiOnde >> sMais;
            sBytes.at(uiOnde) = static_cast<char>(std::stoi(sMais, nullptr, 16));
            m_Diretorio.CriaArquivo(sNome, sBytes);
        } else if (sQual == "corta") {  // name, bytes that are left
            rPalavras >> uiOnde;
            m_Diretorio.CriaArquivo(sNome, sBytes.substr(0, uiOnde));
        } else if (sQual == "apaga") {
            std::filesystem::remove_all(caminho);
        } else if (sQual == "iguais") {  // two folders, whose files are the same
            rPalavras >> sMais;
            EXPECT_EQ(Pasta(sNome), Pasta(sMais));
        } else if (sQual == "copia") {  // from, to
            rPalavras >> sMais;
            std::filesystem::copy(caminho, m_Diretorio.Junta(sMais),
                                  std::filesystem::copy_options::recursive);
        } else if (sQual == "repete") {  // name, times: the file so often behind itself
            rPalavras >> uiOnde;
            std::string sVezes;
            while (uiOnde-- > 0) sVezes += sBytes;
            m_Diretorio.CriaArquivo(sNome, sVezes);
        } else if (sQual == "junta") {  // name, another whose bytes come behind its own
            rPalavras >> sMais;
            m_Diretorio.CriaArquivo(sNome, sBytes + Conteudo(sMais));
        } else if (sQual == "dourada") {  // version, company: a store as the program of that version left it
            rPalavras >> sMais;
            std::filesystem::create_directories(m_Diretorio.Junta(sMais));
            std::filesystem::copy(std::filesystem::path(XV_DOURADOS) / sNome,
                                  m_Diretorio.Junta(sMais + "/DF"));
        } else {
            return false;
        }
        return true;
    }
    // The files of a folder that are not as they were when one was last asked for.
    std::string Mudados(const std::string& sPasta) {
        std::set<std::pair<std::string, std::string>> agora;
        for (const auto& r : std::filesystem::recursive_directory_iterator(m_Diretorio.Junta(sPasta))) {
            const auto nome = r.path().lexically_relative(m_Diretorio.Junta(sPasta)).generic_string();
            if (r.is_regular_file()) agora.emplace(nome, Conteudo(sPasta + '/' + nome));
        }
        std::map<std::string, std::string> mapMudados;
        std::ranges::set_symmetric_difference(agora, m_vistos, std::inserter(mapMudados, mapMudados.end()));
        m_vistos = std::move(agora);
        std::string sNomes;
        for (const auto& [sNome, _] : mapMudados) sNomes += sNome + '\n';
        return sNomes;
    }
    // What a directive does, and what is answered.
    std::string Prepara(const std::string& sLinha) {
        std::istringstream palavras(sLinha);
        std::string sQual, sNome;
        palavras >> sQual >> sNome;
        if (sQual == "relogio") {  // UTC
            unsigned a[6] = {2026, 11, 21};
            std::sscanf(sNome.c_str(), "%u-%u-%uT%u:%u:%u", &a[0], &a[1], &a[2], &a[3], &a[4], &a[5]);
            const auto uc = [&](int i) { return static_cast<XVByte>(a[i]); };
            m_Relogio.SetUTC({static_cast<XVUShort>(a[0]), uc(1), uc(2), uc(3), uc(4), uc(5)});
        } else if (sQual == "mostra") {
            return SemLugar(Marca("| ", Conteudo(sNome)));
        } else if (sQual == "mudados") {  // folder
            return Marca("| ", Mudados(sNome));
        } else if (sQual == "instalado") {  // directory
            m_Registry.SetTexto(CAmbienteXV::GetChaveRegistry(k_eModuloBase), "Path",
                                Troca(sNome, "DIR", m_Diretorio.GetCaminho()));
            XVProfilerConfig::Recarrega();
        } else if (sQual == "cala") {  // runs xvcr with the words, of whose answers only the status counts:
            const bool bDito = sNome.starts_with('=');  // 0, or n with "=n" before the words
            Executa("$ " + sLinha.substr(sLinha.find(' ', bDito ? sQual.size() + 1 : 0) + 1));
            EXPECT_EQ(m_iSaida, bDito ? std::stoi(sNome.substr(1)) : 0) << sLinha;
        } else if (sQual == "componente" || sQual == "ocupa") {  // company, key: recorded beside what runs,
            XVCliente::CXVCliente cliente;  // by the component, which "ocupa" leaves open for writing
            XVCliente::CXVCliente& rCliente = sQual == "ocupa" ? m_Escritor : cliente;
            REG_XVDMC regDmc;
            CXVDadosCR_IntegracaoMiddleware dados;
            palavras >> dados.uiChaveIntegracaoSistemaTerceiro;
            EXPECT_EQ(rCliente.ConectaLocal({.sEmpresa = sNome}, {.sDiretorio = m_Diretorio.GetCaminho()}),
                      S_OK);
            EXPECT_EQ(rCliente.GravaIntegracao(&regDmc, dados), S_OK);
        } else if (sQual == "ambiente") {
            XVPoeVariavel(Troca(sNome, "=DIR", '=' + m_Diretorio.GetCaminho()));
        } else if (!Muda(sQual, sNome, palavras)) {
            std::istringstream resto(Bytes(sLinha.substr(sQual.size())));
            const std::optional<std::string> sDito = m_Provedor.Faz(sQual, resto);
            if (!sDito) ADD_FAILURE() << sLinha;
            return sDito.value_or("");
        }
        return {};
    }
    // What a line does, and what is answered.
    std::string Faz(const std::string& sLinha) {
        const std::string sMarca = sLinha.substr(0, sLinha.find(' '));
        const std::string sResto = sLinha.size() > sMarca.size() ? sLinha.substr(sMarca.size() + 1) : "";
        if (sMarca == "%") return Prepara(sResto);
        if (sMarca == "$" || sMarca == "$$") return Executa(sLinha);
        if (sMarca == ">" || sMarca == ">>") {
            const std::filesystem::path arquivo = m_Diretorio.Junta(m_sArquivo = sResto);
            std::filesystem::create_directories(arquivo.parent_path());
            if (sMarca == ">") m_Diretorio.CriaArquivo(m_sArquivo, "");
        } else if (sMarca == "+" || sMarca == "+~") {
            m_Diretorio.CriaArquivo(m_sArquivo,
                                    Conteudo(m_sArquivo) + Bytes(sResto) + (sMarca == "+" ? "\n" : ""));
        } else if (sMarca == "@" || sMarca == "@-") {  // no line begins as one does that must not come
            const std::string sQuando = sMarca == "@" ? "" : sMarca;
            m_mapaAoDormir.emplace(std::stoul(sResto), sQuando + sResto.substr(sResto.find(' ') + 1));
        } else if (!sMarca.empty() && sMarca != "#") {
            ADD_FAILURE() << sLinha;
        }
        return {};
    }
    // The session with what it answers now.
    std::string Refaz(const std::string& sEsperada) {
        std::istringstream linhas(sEsperada);
        std::string sNova;
        for (std::string s; std::getline(linhas, s);) {
            const char cMarca = s.empty() ? '\0' : s.front();
            if (cMarca != '\0' && std::string_view("|!=~").find(cMarca) != std::string_view::npos) continue;
            sNova += s + '\n';
            sNova += Faz(s);
        }
        return sNova;
    }

    std::string m_sArquivo;                                    // the one that lines are put to
    std::multimap<unsigned long, std::string> m_mapaAoDormir;  // {which time the clock sleeps, line}
    int m_iSaida = 0;                                          // of the command that ran last
    CXVProvedorDaSessao m_Provedor;
    std::set<std::pair<std::string, std::string>> m_vistos;  // {file, bytes}
    CXVDiretorioTeste m_Diretorio;
    CXVRelogioFalso m_Relogio;
    CXVRegistryFalso m_Registry;
    const CXVGuardaRelogio m_Guarda{m_Relogio};
    const CXVGuardaRegistry m_GuardaRegistry{m_Registry};
    XVCliente::CXVCliente m_Escritor;
};

TEST_P(Sessao, RespondeCadaByte) {
    const std::string sNome = std::string(GetParam()) + ".txt";
    std::ifstream arquivo(std::string(XV_SESSOES "/") + sNome, std::ios::binary);
    const std::string sEsperada{std::istreambuf_iterator<char>(arquivo), {}};
    const std::string sNova = Refaz(sEsperada);
    if (const char* pszPasta = std::getenv("XV_SESSOES_NOVAS"); pszPasta != nullptr)
        std::ofstream(std::string(pszPasta) + '/' + sNome, std::ios::binary) << sNova;
    ASSERT_NE(sEsperada, "");
    EXPECT_TRUE(m_mapaAoDormir.empty()) << "no command follows";
    EXPECT_EQ(sNova, sEsperada);
}

INSTANTIATE_TEST_SUITE_P(Todas, Sessao,
                         testing::Values("consulta", "acompanha", "carga", "transporte", "danos", "resumo",
                                         "base", "busca", "linhas", "nomes", "textos", "importacao",
                                         "exportacao", "opcoes", "troca", "contagens", "lugares", "uso",
                                         "valores", "registro", "seguimento"),
                         [](const auto& r) { return std::string(r.param); });

}  // namespace
