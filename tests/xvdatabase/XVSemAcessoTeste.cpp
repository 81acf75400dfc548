// A file system that does not tell whether a file exists: whatever is under way is refused by its own code,
// and nothing is taken for absent, or for there, on a guess. Every question of every operation is refused
// once.
#include <algorithm>
#include <functional>

#include "core/xvdatabase/XVDataBaseUtil.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

const REG_TESTE k_reg{1, 2, 3};
const REG_TESTE k_regNovo{4, 5, 6};

class SemAcesso : public CXVCenarioBanco {
  protected:
    SemAcesso() {
        m_Falhas.SetFiltro([this](const std::string& s) {
            return s.starts_with(PastaDados("A.")) || s.starts_with(PastaDados("XVDATABASE_FILE_CTRL."));
        });
    }

    // fnPrepara before every run; fnEstado must hold after a refused run as after one that was not.
    void Varre(const std::function<void()>& fnPrepara, const std::function<HRESULT()>& fnExecuta,
               const std::function<bool()>& fnEstado) {
        XVUInt64 uiNumero = 0;
        bool bRecusou = true;
        while (bRecusou) {
            ++uiNumero;
            SCOPED_TRACE("question " + std::to_string(uiNumero));
            ASSERT_LT(uiNumero, 100U);
            fnPrepara();
            m_Falhas.Programa({.eOperacao = EOperacaoArquivo::eConsulta, .uiNumero = uiNumero});
            CXVCapturaTrace captura;
            const HRESULT hr = fnExecuta();
            bRecusou = m_Falhas.GetFalhasOcorridas() != 0;
            m_Falhas.Limpa();
            EXPECT_EQ(hr, bRecusou ? eAccessDenied : S_OK);
            EXPECT_EQ(NomeiaOArquivo(captura), bRecusou);
            EXPECT_TRUE(fnEstado());
        }
        EXPECT_GT(uiNumero, 1U) << "nothing was asked";
    }

    bool NomeiaOArquivo(const CXVCapturaTrace& rCaptura) const {
        const auto& listaFalhas = rCaptura.GetFalhas();
        return std::any_of(listaFalhas.begin(), listaFalhas.end(), [this](const SFalhaCapturada& rFalha) {
            return rFalha.sMensagem.starts_with("Arquivo recusado: " + PastaDados(""));
        });
    }

    HRESULT LeUmRegistro(XVUInt64 uiEsperados) {
        TXVBanco<CXVFileTeste> banco("A.dat");
        HRESULT hr = Abre(banco);
        if (SUCCEEDED(hr)) {
            EXPECT_EQ(banco->GetQtdRegistros(), uiEsperados);
        }
        const HRESULT hrFinaliza = banco.xvDB.Finaliza();
        return FAILED(hr) ? hr : hrFinaliza;
    }

    const std::string m_sVivo = ArquivoComCabecalho("A.dat", Bytes({k_reg}));
    const std::string m_sCopia = ArquivoComCabecalho("A.dat", Bytes({k_regNovo}));
};

TEST_F(SemAcesso, AbrirNaoTomaUmaBasePorVazia) {
    Varre(
        [&] {
            Cria("A.dat", m_sVivo);
            Cria(k_pszControle, Prefixado("A.dat"));
        },
        [&] { return LeUmRegistro(1); },
        [&] { return Le("A.dat").ends_with(Bytes({k_reg})) && Le(k_pszControle) == Prefixado("A.dat"); });
}

TEST_F(SemAcesso, AbrirUmArquivoSemCabecalhoGuardaOsDados) {
    Varre(
        [&] {
            Cria("A.dat", Bytes({k_reg}));
            Cria(k_pszControle, Prefixado("A.dat"));
        },
        [&] { return LeUmRegistro(1); },
        [&] { return Le("A.dat").ends_with(Bytes({k_reg})) && Le("A.cab") == "<ausente>"; });
}

TEST_F(SemAcesso, TrocarNaoApagaOArquivoVivo) {
    Varre(
        [&] {
            Cria("A.dat", m_sVivo);
            Cria("A.tra", m_sCopia);
            Cria(k_pszControle, Prefixado("A.dat"));
        },
        [&] { return CXVDataBaseUtil::RenomeiaArquivoTRA(&m_Dono, XV_DF, "A.dat", 1); },
        [&] {
            return (Le("A.dat") == m_sVivo && Le("A.tra") == m_sCopia) ||
                   (Le("A.dat").ends_with(Bytes({k_regNovo})) && Le("A.tra") == "<ausente>");
        });
}

TEST_F(SemAcesso, ApagarNaoDizFeitoOQueNaoFez) {
    for (const auto eControle : {CXVDataBaseUtil::eRemoveDoControle, CXVDataBaseUtil::eMantemNoControle}) {
        HRESULT hr = S_OK;
        Varre(
            [&] {
                Cria("A.dat", m_sVivo);
                Cria(k_pszControle, Prefixado("A.dat") + Prefixado("B.dat"));
            },
            [&] { return hr = CXVDataBaseUtil::DeletaArquivo(&m_Dono, XV_DF, "A.dat", eControle); },
            [&] { return Le("A.dat") == (SUCCEEDED(hr) ? "<ausente>" : m_sVivo); });
    }
}

}  // namespace
