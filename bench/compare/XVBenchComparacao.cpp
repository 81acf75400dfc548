#include "bench/compare/XVBenchComparacao.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>
#include <thread>

namespace {

// Numbers at random, the same for every opponent of a round.
std::vector<unsigned> Sorteia(unsigned uiSemente, unsigned uiPrimeiro, unsigned uiEntre, unsigned uiQuantos) {
    std::mt19937 sorteio(uiSemente + 1);
    std::vector<unsigned> lista(uiQuantos);
    for (unsigned& rNumero : lista) rNumero = uiPrimeiro + static_cast<unsigned>(sorteio() % uiEntre);
    return lista;
}

std::vector<REG_XVDMC> Ordenadas(std::span<const REG_XVDMC> achadas) {
    std::vector<REG_XVDMC> lista(achadas.begin(), achadas.end());
    std::sort(lista.begin(), lista.end(), [](REG_XVDMC a, REG_XVDMC b) { return a.uiValor < b.uiValor; });
    return lista;
}

void Diz(const char* pszO) {
    std::fprintf(stderr, "   %s\n", pszO);
}

}  // namespace

CXVComparacao::CXVComparacao(const SOpcoesBench& rOpcoes, std::vector<SAdversarioBench> listaAdversarios)
    : m_opcoes(rOpcoes), m_listaAdversarios(std::move(listaAdversarios)) {}

std::string CXVComparacao::PastaGrande(const std::string& sPasta, const std::string& sAdversario) {
    return sPasta + "/grande-" + sAdversario;
}

CXVMedidasBench CXVComparacao::Mede() {
    Diz("recording, and status over ten days");
    MedeGravacao();
    Diz("durable recording");
    MedeDuravel();
    MedeDuravelEmThreads();
    Diz("shuffled index");
    MedeEmbaralhado();
    Diz("the large stores: filling, status, reading, searching");
    MedeGrande();
    return std::move(m_medidas);
}

// bloco(i, round) with every opponent in every round; in odd rounds backwards, and never the same one first.
template <class TBloco>
void CXVComparacao::EmRodadas(TBloco bloco) {
    const std::size_t uiQuantos = m_listaAdversarios.size();
    for (unsigned uiRodada = 0; uiRodada < m_opcoes.uiRodadas; ++uiRodada) {
        for (std::size_t i = 0; i < uiQuantos; ++i) {
            const std::size_t uiVez = (i + uiRodada) % uiQuantos;
            bloco(uiRodada % 2 == 0 ? uiVez : uiQuantos - 1 - uiVez, uiRodada);
        }
    }
}

std::unique_ptr<IXVBenchAdversario> CXVComparacao::Abre(std::size_t i, const std::string& sPasta,
                                                        unsigned uiIntegracoes, EDuracaoBench eDuracao) {
    std::filesystem::create_directories(sPasta);
    return m_listaAdversarios[i].fnAbre({sPasta, eDuracao, uiIntegracoes});
}

std::string CXVComparacao::Pasta(const char* pszTrabalho, std::size_t i) const {
    return m_opcoes.sPasta + "/" + pszTrabalho + "-" + m_listaAdversarios[i].pszNome;
}

void CXVComparacao::RemovePastas(const char* pszTrabalho) const {
    for (std::size_t i = 0; i < m_listaAdversarios.size(); ++i)
        std::filesystem::remove_all(Pasta(pszTrabalho, i));
}

// Every round makes new stores; those of the last one stay for the status.
void CXVComparacao::MedeGravacao() {
    CXVGeradorBench gerador(m_opcoes.uiGravacoes, m_opcoes.uiDiasGravacao);
    CAbertos listaAbertos(m_listaAdversarios.size());
    EmRodadas([&](std::size_t i, unsigned) {
        listaAbertos[i].reset();
        std::filesystem::remove_all(Pasta("grava", i));
        listaAbertos[i] = Abre(i, Pasta("grava", i), gerador.Quantidade());
        const CXVCronometro desde;
        for (unsigned n = 0; n < gerador.Quantidade(); ++n) listaAbertos[i]->Grava(gerador.Gera(n));
        m_medidas.AnotaTempo("record", m_listaAdversarios[i].pszNome, desde, gerador.Quantidade());
    });
    for (std::size_t i = 0; i < listaAbertos.size(); ++i)
        m_medidas.AnotaBytes("bytes on disk", m_listaAdversarios[i].pszNome,
                             static_cast<double>(listaAbertos[i]->BytesEmDisco()) / gerador.Quantidade());
    ComparaLeituras(listaAbertos, gerador);
    MedeStatus("status in a day", listaAbertos, gerador, gerador.PorDia());
    MedeStatus("status over 10 days", listaAbertos, gerador, gerador.Quantidade());
    ComparaLeituras(listaAbertos, gerador);
    listaAbertos.clear();
    RemovePastas("grava");
}

void CXVComparacao::MedeDuravel() {
    const unsigned uiTodas = m_opcoes.uiDuraveis * (m_opcoes.uiRodadas + 1);
    CXVGeradorBench gerador(uiTodas, 1);
    CAbertos listaAbertos;
    const auto grava = [&](std::size_t i, unsigned uiBloco) {
        for (unsigned n = 0; n < m_opcoes.uiDuraveis; ++n)
            listaAbertos[i]->Grava(gerador.Gera(uiBloco * m_opcoes.uiDuraveis + n));
    };
    for (std::size_t i = 0; i < m_listaAdversarios.size(); ++i) {
        listaAbertos.push_back(Abre(i, Pasta("duravel", i), uiTodas, EDuracaoBench::eDispositivo));
        grava(i, 0);  // so that files and journals have met their pages
    }
    EmRodadas([&](std::size_t i, unsigned uiRodada) {
        const CXVCronometro desde;
        grava(i, uiRodada + 1);
        m_medidas.AnotaTempo("durable record", m_listaAdversarios[i].pszNome, desde, m_opcoes.uiDuraveis);
    });
    listaAbertos.clear();
    RemovePastas("duravel");
}

// Each caller has an opponent of its own on the same store, and records a part of every block.
void CXVComparacao::MedeDuravelEmThreads() {
    constexpr unsigned k_uiThreads = 8;
    const unsigned uiCada = m_opcoes.uiDuraveis;
    const unsigned uiTodas = uiCada * k_uiThreads * m_opcoes.uiRodadas;
    std::vector<CAbertos> listaAbertos(m_listaAdversarios.size());
    for (std::size_t i = 0; i < m_listaAdversarios.size(); ++i)
        for (unsigned t = 0; t < k_uiThreads && m_listaAdversarios[i].bVarios; ++t)
            listaAbertos[i].push_back(Abre(i, Pasta("threads", i), uiTodas, EDuracaoBench::eDispositivo));
    EmRodadas([&](std::size_t i, unsigned uiRodada) {
        if (listaAbertos[i].empty()) return;
        const CXVCronometro desde;
        {
            std::vector<std::jthread> listaThreads;
            for (unsigned t = 0; t < k_uiThreads; ++t)
                listaThreads.emplace_back([&rAberto = *listaAbertos[i][t], uiTodas, uiCada,
                                           uiPrimeira = (uiRodada * k_uiThreads + t) * uiCada] {
                    CXVGeradorBench gerador(uiTodas, 1);
                    for (unsigned n = 0; n < uiCada; ++n) {
                        SIntegracaoBench integracao = gerador.Gera(uiPrimeira + n);
                        integracao.bQualquerPosicao = true;
                        rAberto.Grava(integracao);
                    }
                });
        }
        m_medidas.AnotaTempo("durable record, 8 callers", m_listaAdversarios[i].pszNome, desde,
                             std::size_t{uiCada} * k_uiThreads);
    });
    listaAbertos.clear();
    RemovePastas("threads");
}

void CXVComparacao::MedeEmbaralhado() {
    CXVGeradorBench gerador(m_opcoes.uiIntegracoes, m_opcoes.uiDias, EOrdemBench::eEmbaralhados);
    CAbertos listaAbertos;
    for (std::size_t i = 0; i < m_listaAdversarios.size(); ++i) {
        listaAbertos.push_back(Abre(i, Pasta("embaralha", i), gerador.Quantidade()));
        for (unsigned n = 0; n < gerador.Quantidade(); ++n) listaAbertos[i]->Grava(gerador.Gera(n));
        listaAbertos[i]->Assenta();
    }
    const SFiltroBench filtro = gerador.Filtros().front();
    ComparaBusca(listaAbertos, filtro);
    MedeBusca("search (a), shuffled index", listaAbertos, filtro);
    listaAbertos.clear();
    RemovePastas("embaralha");
}

// Closed and opened again between filling and the works, as a store is found.
void CXVComparacao::MedeGrande() {
    CXVGeradorBench gerador(m_opcoes.uiIntegracoes, m_opcoes.uiDias);
    CAbertos listaAbertos;
    for (std::size_t i = 0; i < m_listaAdversarios.size(); ++i) {
        const std::string sPasta = PastaGrande(m_opcoes.sPasta, m_listaAdversarios[i].pszNome);
        {
            const auto p = Abre(i, sPasta, gerador.Quantidade());
            for (unsigned n = 0; n < gerador.Quantidade(); ++n) p->Grava(gerador.Gera(n));
            p->Assenta();
        }
        listaAbertos.push_back(Abre(i, sPasta, gerador.Quantidade()));
    }
    ComparaLeituras(listaAbertos, gerador);
    const unsigned uiDiaDoMeio = gerador.Dias() / 2 * gerador.PorDia();
    MedeLeitura("read in a day", listaAbertos, gerador, uiDiaDoMeio, gerador.PorDia());
    MedeLeitura("read over 100 days", listaAbertos, gerador, 0, gerador.Quantidade());
    for (const SFiltroBench& rFiltro : gerador.Filtros()) {
        ComparaBusca(listaAbertos, rFiltro);
        MedeBusca(rFiltro.pszNome, listaAbertos, rFiltro);
    }
    MedeStatus("status over 100 days", listaAbertos, gerador, gerador.Quantidade());
    ComparaLeituras(listaAbertos, gerador);
    for (const SFiltroBench& rFiltro : gerador.Filtros()) ComparaBusca(listaAbertos, rFiltro);
}

// Of the first uiAte integrations.
void CXVComparacao::MedeStatus(const char* pszTrabalho, CAbertos& rAbertos, CXVGeradorBench& rGerador,
                               unsigned uiAte) {
    EmRodadas([&](std::size_t i, unsigned uiRodada) {
        const std::vector<unsigned> lista = Sorteia(uiRodada, 0, uiAte, m_opcoes.uiStatus);
        const CXVCronometro desde;
        for (const unsigned n : lista) rAbertos[i]->GravaStatus(rGerador.GeraStatus(n, uiRodada));
        m_medidas.AnotaTempo(pszTrabalho, m_listaAdversarios[i].pszNome, desde, m_opcoes.uiStatus);
    });
}

// What comes first of each is warming up: it opens files, meets pages, and makes a day one that is read
// often.
void CXVComparacao::MedeLeitura(const char* pszTrabalho, CAbertos& rAbertos, CXVGeradorBench& rGerador,
                                unsigned uiPrimeiro, unsigned uiQuantos) {
    const auto sorteia = [&](unsigned uiSemente, unsigned uiLeituras) {
        std::vector<REG_XVDMC> lista;
        for (const unsigned n : Sorteia(uiSemente, uiPrimeiro, uiQuantos, uiLeituras))
            lista.push_back(rGerador.Gera(n).regDmc);
        return lista;
    };
    const auto le = [&](std::size_t i, const std::vector<REG_XVDMC>& rLista) {
        std::size_t uiBytes = 0;
        for (const REG_XVDMC regDmc : rLista) uiBytes += rAbertos[i]->Le(regDmc).sRetorno.size();
        if (uiBytes != k_uiBytesRetorno * rLista.size()) XVTermina("a text came back with another length");
    };
    const unsigned uiAquece = std::max(m_opcoes.uiLeituras, std::min(uiQuantos, rGerador.PorDia()) * 2);
    for (std::size_t i = 0; i < rAbertos.size(); ++i) le(i, sorteia(m_opcoes.uiRodadas, uiAquece));
    EmRodadas([&](std::size_t i, unsigned uiRodada) {
        const std::vector<REG_XVDMC> lista = sorteia(uiRodada, m_opcoes.uiLeituras);
        const CXVCronometro desde;
        le(i, lista);
        m_medidas.AnotaTempo(pszTrabalho, m_listaAdversarios[i].pszNome, desde, lista.size());
    });
}

void CXVComparacao::MedeBusca(const std::string& sTrabalho, CAbertos& rAbertos, const SFiltroBench& rFiltro) {
    const double dMinimo = m_opcoes.uiMilissegundosBusca * 1000.0;
    EmRodadas([&](std::size_t i, unsigned) {
        const CXVCronometro desde;
        unsigned uiVezes = 0;
        do {
            if (rAbertos[i]->Busca(rFiltro).empty()) XVTermina("a search found nothing");
            ++uiVezes;
        } while (desde.Decorridos() < dMinimo);
        m_medidas.AnotaTempo(sTrabalho, m_listaAdversarios[i].pszNome, desde, uiVezes);
    });
}

// Against the first opponent, which is the store.
void CXVComparacao::ComparaLeituras(CAbertos& rAbertos, CXVGeradorBench& rGerador) const {
    constexpr unsigned k_uiAmostras = 300;
    for (const unsigned n : Sorteia(k_uiAmostras, 0, rGerador.Quantidade(), k_uiAmostras)) {
        const REG_XVDMC regDmc = rGerador.Gera(n).regDmc;
        const SLidaBench lida = rAbertos[0]->Le(regDmc);
        for (std::size_t i = 1; i < rAbertos.size(); ++i)
            if (rAbertos[i]->Le(regDmc) != lida)
                XVTermina(std::string(m_listaAdversarios[i].pszNome) + " reads " + regDmc.ToString() +
                          " otherwise than " + m_listaAdversarios[0].pszNome);
    }
}

void CXVComparacao::ComparaBusca(CAbertos& rAbertos, const SFiltroBench& rFiltro) const {
    const std::vector<REG_XVDMC> lista = Ordenadas(rAbertos[0]->Busca(rFiltro));
    if (lista.empty()) XVTermina(std::string(rFiltro.pszNome) + " finds nothing");
    for (std::size_t i = 1; i < rAbertos.size(); ++i) {
        const std::vector<REG_XVDMC> listaOutra = Ordenadas(rAbertos[i]->Busca(rFiltro));
        if (listaOutra != lista)
            XVTermina(std::string(rFiltro.pszNome) + ": " + m_listaAdversarios[i].pszNome + " finds " +
                      std::to_string(listaOutra.size()) + ", " + m_listaAdversarios[0].pszNome + " " +
                      std::to_string(lista.size()));
    }
}
