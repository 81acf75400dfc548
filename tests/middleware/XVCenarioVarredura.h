// A sweep: one operation on one store, again and again from the same bytes, each time with another mishap;
// afterwards the store shows the picture from before the operation or the one from after it, nothing between.
#pragma once

#include <cstdlib>
#include <ostream>
#include <set>

#include "tests/middleware/XVCenarioLoja.h"
#include "tests/middleware/XVOperacoesLoja.h"
#include "tests/middleware/XVRetratoLoja.h"

// Whether every combination was asked for (XV_VARREDURA=completa) or a choice is enough.
bool XVVarreduraCompleta();
// From one mishap of a sweep to the next: 1 when all were asked for, uiBreve otherwise, and uiLento where
// each step takes ten times as long (XV_EXECUCAO_LENTA: under Wine and with sanitizers).
unsigned XVSaltoVarredura(unsigned uiBreve, unsigned uiLento);

inline void PrintTo(const SOperacaoLoja& rOperacao, std::ostream* pSaida) {
    *pSaida << rOperacao.pszNome;
}

class CXVCenarioVarredura : public CXVCenarioLoja, public testing::WithParamInterface<SOperacaoLoja> {
  protected:
    // The four pictures that may be seen: before and after the operation, with and without the one that the
    // sweep records next.
    struct SEsperado {
        TRetratoLoja antes, depois, antesEProxima, depoisEProxima;
    };

    void SetUp() override {
        CriaInicial();
        m_inicial = m_Arquivos.Retrata();
        m_esperado.antes = Executa(false, false);
        m_esperado.depois = Executa(true, false);
        m_esperado.antesEProxima = Executa(false, true);
        m_esperado.depoisEProxima = Executa(true, true);
        ASSERT_FALSE(m_esperado.antesEProxima == m_esperado.antes);
    }

    // Bytes and clock of the moment before the operation.
    void Prepara() {
        m_Arquivos.Restaura(m_inicial);
        SetDia(GetParam().uiDia);
    }
    HRESULT Opera(CBaseMiddleware& rLoja) const { return GetParam().fnExecuta(rLoja); }
    // A later recording of the same day.
    HRESULT GravaProxima(CBaseMiddleware& rLoja) {
        SetDia(GetParam().uiDia, 13);
        CXVIntegracaoTeste integracao(9000, Mercos, eXVSMiddleware_Enviado);
        integracao.Textos("{\"proxima\":1}", "proxima", "{}");
        REG_XVDMC regDmc;
        return rLoja.GravaIntegracao(&regDmc, integracao.Ptr());
    }

    // What a viewer sees in the files as they are, without anyone having opened the store for writing; its
    // refusal is an answer that no store gives.
    TRetratoLoja RetrataParaConsulta() { return RetrataOutra(true); }
    // Opens for writing, looks and closes; nothing is left open and no journal is left behind.
    TRetratoLoja RetrataReaberta() {
        TRetratoLoja retrato = RetrataOutra(false);
        EXPECT_EQ(m_Arquivos.GetQuantidadeAberta(), 0U);
        ConfereArquivosEmRepouso();
        return retrato;
    }
    // The files of a store at rest: those of a run without mishap, and no others.
    void ConfereArquivosEmRepouso() {
        for (const auto& [sCaminho, rArquivo] : RetratoSemLogs())
            EXPECT_TRUE(m_nomesEmRepouso.contains(sCaminho)) << sCaminho << " is a leftover";
    }

    // After a mishap that is over: the object shows the operation whole (bFeita) or nothing of it, its files
    // show the same to a viewer, the next operation works, and so it is found when it is opened again.
    void ConfereContinuacao(CBaseMiddleware& rLoja, bool bFeita) {
        const TRetratoLoja vivo = XVRetrataLoja(rLoja);
        ASSERT_TRUE(Igual(bFeita ? m_esperado.depois : m_esperado.antes, vivo)) << "the same object";
        ASSERT_TRUE(Igual(vivo, RetrataParaConsulta())) << "a viewer";
        ASSERT_EQ(GravaProxima(rLoja), S_OK) << "the next operation";
        const TRetratoLoja& rProximo = bFeita ? m_esperado.depoisEProxima : m_esperado.antesEProxima;
        ASSERT_TRUE(Igual(rProximo, XVRetrataLoja(rLoja))) << "after the next operation";
        ASSERT_EQ(rLoja.Finaliza(), S_OK);
        ASSERT_TRUE(Igual(rProximo, RetrataParaConsulta())) << "a viewer of the closed store";
        ASSERT_TRUE(Igual(rProximo, RetrataReaberta())) << "reopened";
    }

    static testing::AssertionResult Igual(const TRetratoLoja& rEsperado, const TRetratoLoja& rObtido) {
        if (rEsperado == rObtido) return testing::AssertionSuccess();
        return testing::AssertionFailure() << XVDiferenca(rEsperado, rObtido);
    }
    // Whether a question that is answered by a code may stand for its answer: an object whose device refused
    // even the undoing may say so, and must not show anything else.
    enum class ERecusa : std::uint8_t { eFalha, eAceita };
    // Before or after; bDepois: only after.
    static testing::AssertionResult AntesOuDepois(const TRetratoLoja& rAntes, const TRetratoLoja& rDepois,
                                                  bool bDepois, const TRetratoLoja& rObtido,
                                                  ERecusa eRecusa = ERecusa::eFalha) {
        if (Confere(rDepois, rObtido, eRecusa) || (!bDepois && Confere(rAntes, rObtido, eRecusa)))
            return testing::AssertionSuccess();
        if (bDepois)
            return testing::AssertionFailure() << "was acknowledged\n" << XVDiferenca(rDepois, rObtido);
        return testing::AssertionFailure() << "neither before\n"
                                           << XVDiferenca(rAntes, rObtido) << "nor after\n"
                                           << XVDiferenca(rDepois, rObtido);
    }

    SEsperado m_esperado;
    CXVSistemaArquivosMemoria::TRetrato m_inicial;

  private:
    void CriaInicial() {
        if (GetParam().eInicial == ELojaInicial::eAusente) return;
        const TLoja pLoja = Abre();
        ASSERT_NE(pLoja, nullptr);
        ASSERT_TRUE(XVPovoaLoja(*pLoja, [&](unsigned uiDia) { SetDia(uiDia); }));
        ASSERT_EQ(pLoja->Finaliza(), S_OK);
        if (GetParam().eInicial == ELojaInicial::eSemCabecalho) TiraCabecalhos();
    }
    void TiraCabecalhos() {
        for (const auto& [sCaminho, rArquivo] : m_Arquivos.Retrata())
            if (sCaminho.ends_with(".dat") && !sCaminho.ends_with("XVDATABASE_FILE_CTRL.dat"))
                m_Arquivos.CriaArquivo(sCaminho, rArquivo.sConteudo.substr(240));
    }
    static bool Confere(const TRetratoLoja& rEsperado, const TRetratoLoja& rObtido, ERecusa eRecusa) {
        if (eRecusa == ERecusa::eFalha) return rEsperado == rObtido;
        return std::all_of(rObtido.begin(), rObtido.end(), [&](const auto& it) {
            const auto itEsperado = rEsperado.find(it.first);
            return it.second.starts_with(k_pszRecusa) ||
                   (itEsperado != rEsperado.end() && itEsperado->second == it.second);
        });
    }
    TRetratoLoja RetrataOutra(bool bSomenteLeitura) {
        CBaseMiddleware loja;
        const HRESULT hr = XVInicializa(loja, bSomenteLeitura);
        if (FAILED(hr)) return XVRetratoRecusado(hr);
        TRetratoLoja retrato = XVRetrataLoja(loja);
        EXPECT_EQ(loja.Finaliza(), S_OK);
        return retrato;
    }
    TRetratoLoja Executa(bool bOperacao, bool bProxima) {
        Prepara();
        const TLoja pLoja = Abre();
        if (pLoja == nullptr) return {};
        if (bOperacao) {
            EXPECT_EQ(Opera(*pLoja), S_OK);
        }
        if (bProxima) {
            EXPECT_EQ(GravaProxima(*pLoja), S_OK);
        }
        TRetratoLoja retrato = XVRetrataLoja(*pLoja);
        EXPECT_EQ(pLoja->Finaliza(), S_OK);
        for (const auto& [sCaminho, rArquivo] : RetratoSemLogs()) m_nomesEmRepouso.insert(sCaminho);
        return retrato;
    }

    std::set<std::string> m_nomesEmRepouso;
};
