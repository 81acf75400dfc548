// The journal's ring, which goes round.
#include <optional>

#include "tests/xvdatabase/XVCenarioDiario.h"

namespace {

class DiarioAnel : public CXVCenarioDiario {};

// Texts of all sizes, also longer than the ring: at every moment the journal brings files that are one
// operation behind to where they were.
TEST_F(DiarioAnel, AnelQueDaVoltasConcluiSempreAUltima) {
    CXVDiarioAnel::SetTamanhoAnel(4096);
    std::vector<CXVSistemaArquivosMemoria::TRetrato> retratos;
    SBancoDuplo banco;
    ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
    for (std::size_t i = 0; i < 160; ++i) {
        std::size_t uiTamanho = i < 40 ? i * 389 % 2300 : i * 37 % 300;
        if (i >= 40 && i % 7 == 3) uiTamanho = 2700;
        if (i >= 40 && i % 11 == 5) uiTamanho = 5000;
        const std::string sTexto(uiTamanho, static_cast<char>('a' + i % 26));
        ASSERT_EQ(banco.Grava(i % 3 == 0 ? 0 : 1, {i, 0, 0}, sTexto), S_OK);
        retratos.push_back(Morre());
    }
    ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
    const CXVCapturaTrace captura;
    for (std::size_t i = 1; i < retratos.size(); ++i) {
        auto atrasado = retratos[i - 1];
        atrasado[PastaDados(k_pszNomeDiario)] = retratos[i][PastaDados(k_pszNomeDiario)];
        ASSERT_EQ(Reabre(atrasado), S_OK) << i;
        for (const char* psz : {"A.dat", "T.dat"})
            ASSERT_EQ(Le(psz), retratos[i].at(PastaDados(psz)).sConteudo) << i;
    }
}

// Power failures of a device that has to be flushed, a small ring, and an operation that fails now and then.
TEST_F(DiarioAnel, QuedaDeEnergiaComAnelPequenoNadaPerdeESempreAbre) {
    CXVDiarioAnel::SetTamanhoAnel(4096);
    SetDurabilidade(1);
    const auto inicial = m_Arquivos.Retrata();
    for (XVUInt64 uiSemente = 1; uiSemente <= 1500; ++uiSemente) {
        SCOPED_TRACE(uiSemente);
        m_Arquivos.Restaura(inicial);
        CXVSistemaArquivosQueda queda(m_Arquivos);
        CXVSistemaArquivosFalhas falhas(queda);
        const CXVGuardaSistemaArquivos guarda(falhas);
        const CXVCapturaTrace captura;
        std::size_t uiPasso = 0;
        const std::size_t uiMomento = uiSemente * 7 % 400;
        std::size_t uiReconhecidas = 0;
        std::size_t uiNaQueda = 0;
        std::optional<CXVSistemaArquivosMemoria::TRetrato> corte;
        queda.SetAoAlterar([&](const std::string&, CXVSistemaArquivosQueda::EAlteracao) {
            if (uiPasso++ != uiMomento) return;
            corte = queda.Corta(uiSemente);
            uiNaQueda = uiReconhecidas;
        });
        std::vector<std::string> textos;
        {
            SBancoDuplo banco;
            ASSERT_EQ(banco.Abre(m_Dono, PastaDados()), S_OK);
            for (std::size_t i = 0; i < 40 && !corte; ++i) {
                const std::string sTexto((i * 389 + uiSemente * 31) % (uiSemente % 2 == 0 ? 2300 : 600),
                                         static_cast<char>('a' + i % 26));
                const bool bFalha = i % 5 == 3;
                falhas.SetFiltro([](const std::string& s) { return s.ends_with("A.dat"); });
                if (bFalha) falhas.Programa({.eOperacao = EOperacaoArquivo::eGrava});
                const HRESULT hr = banco.Grava(i < 2 ? 0 : 1, {i, 0, 0}, sTexto);
                falhas.Limpa();
                ASSERT_EQ(hr, bFalha ? eHardIO : S_OK);
                if (bFalha) continue;
                textos.push_back(sTexto);
                ++uiReconhecidas;
            }
            ASSERT_EQ(banco.Fecha(m_Dono), S_OK);
        }
        if (!corte) continue;
        queda.SetAoAlterar(nullptr);
        ASSERT_EQ(Reabre(*corte), S_OK) << "at step " << uiMomento;
        const std::vector<std::string> lidos =
            Existe("T.dat") ? LeTextos("T.dat") : std::vector<std::string>{};
        ASSERT_GE(lidos.size(), uiNaQueda);
        ASSERT_LE(lidos.size(), uiNaQueda + 1);
        ASSERT_TRUE(std::equal(lidos.begin(), lidos.end() - (lidos.size() > textos.size()), textos.begin()));
    }
}

}  // namespace
