// A sweep: one operation on one store, again and again from the same bytes, each time with another mishap;
// afterwards the store shows the picture from before the operation or the one from after it, nothing between.
#pragma once

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

    void SetUp() override;

    // Bytes and clock of the moment before the operation.
    void Prepara();
    HRESULT Opera(CBaseMiddleware& rLoja) const { return GetParam().fnExecuta(rLoja); }
    // A later recording of the same day.
    HRESULT GravaProxima(CBaseMiddleware& rLoja);

    // What a viewer sees in the files as they are, without anyone having opened the store for writing; its
    // refusal is an answer that no store gives.
    TRetratoLoja RetrataParaConsulta() { return RetrataOutra(true); }
    // Opens for writing, looks and closes; nothing is left open and no journal is left behind.
    TRetratoLoja RetrataReaberta();
    // The files of a store at rest: those of a run without mishap, and no others.
    void ConfereArquivosEmRepouso();

    // After a mishap that is over: the object shows the operation whole (bFeita) or nothing of it, its files
    // show the same to a viewer, the next operation works, and so it is found when it is opened again.
    void ConfereContinuacao(CBaseMiddleware& rLoja, bool bFeita);

    static testing::AssertionResult Igual(const TRetratoLoja& rEsperado, const TRetratoLoja& rObtido);
    // Whether a question that is answered by a code may stand for its answer: an object whose device refused
    // even the undoing may say so, and must not show anything else.
    enum class ERecusa : std::uint8_t { eFalha, eAceita };
    // Before or after; bDepois: only after.
    static testing::AssertionResult AntesOuDepois(const TRetratoLoja& rAntes, const TRetratoLoja& rDepois,
                                                  bool bDepois, const TRetratoLoja& rObtido,
                                                  ERecusa eRecusa = ERecusa::eFalha);

    SEsperado m_esperado;
    CXVSistemaArquivosMemoria::TRetrato m_inicial;

  private:
    void CriaInicial();
    void TiraCabecalhos();
    static bool Confere(const TRetratoLoja& rEsperado, const TRetratoLoja& rObtido, ERecusa eRecusa);
    TRetratoLoja RetrataOutra(bool bSomenteLeitura);
    TRetratoLoja Executa(bool bOperacao, bool bProxima);

    std::set<std::string> m_nomesEmRepouso;
};
