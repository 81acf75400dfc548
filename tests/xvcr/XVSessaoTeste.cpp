// Whole sessions: each command's standard output, error output and exit status, and files that it makes, held
// against what is written down in sessoes/*.txt, in a directory of its own and with a clock that stands
// still.
//
//   $ words             runs xvcr with them, for the company 001 where they name none
//   > name, then "+ "   makes the file name of the lines that follow
//   % mostra name       the file's bytes; "relogio", "poe", "corta", "apaga", "copia", "repete", "cala",
//                       "ambiente": see Prepara
//   | ! =               answers: standard output, error output, exit status other than 0; "~": no line feed
//
// DIR stands for the directory, bytes that drive a terminal are <HH>. With XV_SESSOES_NOVAS=folder in the
// environment the sessions are written there as they are now; every change in them has to be meant.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <list>
#include <map>
#include <sstream>

#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/xvcr/XVPrograma.h"

namespace {

std::string Troca(std::string sTexto, const std::string& sDe, const std::string& sPara) {
    for (std::size_t i = 0; (i = sTexto.find(sDe, i)) != std::string::npos; i += sPara.size())
        sTexto.replace(i, sDe.size(), sPara);
    return sTexto;
}

std::string Visivel(const std::string& sTexto) {
    std::string sVisivel;
    for (const char c : sTexto) {
        char szByte[8];
        std::snprintf(szByte, sizeof(szByte), "<%02X>", static_cast<unsigned char>(c));
        sVisivel += static_cast<unsigned char>(c) < 0x20 || c == '\x7f' ? szByte : std::string(1, c);
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

// putenv makes no copy: what it was given stays for good.
void PoeVariavel(const std::string& sAtribuicao) {
    static std::list<std::string> s_lista;
    putenv(s_lista.emplace_back(sAtribuicao).data());
}

class Sessao : public testing::TestWithParam<const char*> {
  protected:
    std::string Executa(const std::string& sLinha) {
        TArgumentos listaTudo = XVPalavras("--diretorio DIR --empresa 001 " + sLinha);
        if (sLinha.find("--empresa") != std::string::npos || sLinha.find("--todas") != std::string::npos)
            listaTudo.erase(listaTudo.begin() + 2, listaTudo.begin() + 4);
        if (sLinha.find("--diretorio") != std::string::npos)
            listaTudo.erase(listaTudo.begin(), listaTudo.begin() + 2);
        for (std::string& r : listaTudo) r = Troca(Troca(r, "DIR", m_Diretorio.GetCaminho()), "_-_", " ");
        const SExecucao r = XVExecutaAqui(listaTudo);
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
    // What a directive does to files and clock.
    std::string Prepara(const std::string& sLinha) {
        std::istringstream palavras(sLinha);
        std::string sQual, sNome, sMais;
        palavras >> sQual >> sNome;
        std::string sBytes = Conteudo(sNome);
        std::size_t uiOnde = 0;
        if (sQual == "relogio") {  // UTC
            unsigned a[6] = {2026, 11, 21};
            std::sscanf(sNome.c_str(), "%u-%u-%uT%u:%u:%u", &a[0], &a[1], &a[2], &a[3], &a[4], &a[5]);
            const auto uc = [&](int i) { return static_cast<XVByte>(a[i]); };
            m_Relogio.SetUTC({static_cast<XVUShort>(a[0]), uc(1), uc(2), uc(3), uc(4), uc(5)});
        } else if (sQual == "mostra") {
            return SemLugar(Marca("| ", sBytes));
        } else if (sQual == "poe") {  // name, offset, one byte in hexadecimal
            palavras >> uiOnde >> sMais;
            sBytes.at(uiOnde) = static_cast<char>(std::stoi(sMais, nullptr, 16));
            m_Diretorio.CriaArquivo(sNome, sBytes);
        } else if (sQual == "corta") {  // name, bytes that are left
            palavras >> uiOnde;
            m_Diretorio.CriaArquivo(sNome, sBytes.substr(0, uiOnde));
        } else if (sQual == "apaga") {
            std::filesystem::remove_all(m_Diretorio.Junta(sNome));
        } else if (sQual == "copia") {  // from, to
            palavras >> sMais;
            std::filesystem::copy(m_Diretorio.Junta(sNome), m_Diretorio.Junta(sMais),
                                  std::filesystem::copy_options::recursive);
        } else if (sQual == "repete") {  // name, times: the file so often behind itself
            palavras >> uiOnde;
            std::string sVezes;
            while (uiOnde-- > 0) sVezes += sBytes;
            m_Diretorio.CriaArquivo(sNome, sVezes);
        } else if (sQual == "cala") {  // runs xvcr with the words, which are not looked at
            Executa(sLinha.substr(sQual.size() + 1));
        } else if (sQual == "ambiente") {
            PoeVariavel(sNome);
        } else {
            ADD_FAILURE() << sLinha;
        }
        return {};
    }
    // The session with what it answers now.
    std::string Refaz(const std::string& sEsperada) {
        std::istringstream linhas(sEsperada);
        std::string sNova, sArquivo;
        for (std::string s; std::getline(linhas, s);) {
            const char cMarca = s.empty() ? '\0' : s.front();
            const std::string sResto = s.size() > 2 ? s.substr(2) : std::string();
            if (cMarca != '\0' && std::string_view("|!=~").find(cMarca) != std::string_view::npos) continue;
            sNova += s + '\n';
            if (cMarca == '>') {
                const std::filesystem::path arquivo = m_Diretorio.Junta(sArquivo = sResto);
                std::filesystem::create_directories(arquivo.parent_path());
                m_Diretorio.CriaArquivo(sArquivo, "");
            }
            if (cMarca == '+') m_Diretorio.CriaArquivo(sArquivo, Conteudo(sArquivo) + sResto + '\n');
            if (cMarca == '%') sNova += Prepara(sResto);
            if (cMarca == '$') sNova += Executa(sResto);
        }
        return sNova;
    }

    CXVDiretorioTeste m_Diretorio;
    CXVRelogioFalso m_Relogio;
    const CXVGuardaRelogio m_Guarda{m_Relogio};
};

TEST_P(Sessao, RespondeCadaByte) {
    const std::string sNome = std::string(GetParam()) + ".txt";
    std::ifstream arquivo(std::string(XV_SESSOES "/") + sNome, std::ios::binary);
    const std::string sEsperada{std::istreambuf_iterator<char>(arquivo), {}};
    const std::string sNova = Refaz(sEsperada);
    if (const char* pszPasta = std::getenv("XV_SESSOES_NOVAS"); pszPasta != nullptr)
        std::ofstream(std::string(pszPasta) + '/' + sNome, std::ios::binary) << sNova;
    ASSERT_NE(sEsperada, "");
    EXPECT_EQ(sNova, sEsperada);
}

INSTANTIATE_TEST_SUITE_P(Todas, Sessao,
                         testing::Values("consulta", "acompanha", "carga", "transporte", "danos", "resumo"),
                         [](const auto& r) { return std::string(r.param); });

}  // namespace
