// A directory with its journal, above a file system that tells every step that reaches the device.
#pragma once

#include <cstddef>

#include "core/xvdatabase/XVDiario.h"
#include "tests/harness/XVSistemaArquivosQueda.h"
#include "tests/xvdatabase/XVCenarioBanco.h"
#include "tests/xvdatabase/XVDiarioBytes.h"

constexpr std::size_t k_uiAnelUsual = 1U << 20;

class CXVCenarioDiario : public CXVCenarioBanco {
  protected:
    CXVCenarioDiario() : m_Queda(m_Arquivos), m_FalhasQueda(m_Queda), m_GuardaQueda(m_FalhasQueda) {
        m_Queda.SetAoAlterar([this](const std::string& sCaminho, CXVSistemaArquivosQueda::EAlteracao e) {
            if (m_fnAoAlterar) m_fnAoAlterar(sCaminho, e);
            const std::size_t uiBarra = sCaminho.find_last_of('/');
            const std::lock_guard lock(
                m_mutexPassos);  // one writes an entry while another's flush is at work
            m_listaPassos.push_back((e == CXVSistemaArquivosQueda::EAlteracao::eMuda ? "+" : "=") +
                                    sCaminho.substr(uiBarra + 1));
        });
    }
    ~CXVCenarioDiario() override { CXVDiarioAnel::SetTamanhoAnel(k_uiAnelUsual); }

    void SetDurabilidade(XVUInt ulValor) {
        m_registry.SetNumero(CAmbienteXV::GetChaveRegistry(XV_DF), "Durabilidade", ulValor);
    }
    HRESULT AbreDiario(CXVDiario& rDiario) { return rDiario.Abre(&m_Dono, XV_DF, PastaDados()); }
    std::string LeDiario() const { return Le(k_pszNomeDiario); }
    // So that no operation but the test's own is written.
    void ListaNomes() { Cria(k_pszControle, Prefixado("A.dat")); }

    // What an opening finds when this process dies now.
    CXVSistemaArquivosMemoria::TRetrato Morre() const { return m_Arquivos.Retrata(); }
    HRESULT Reabre(const CXVSistemaArquivosMemoria::TRetrato& rRetrato) {
        m_Arquivos.Restaura(rRetrato);
        CXVDiario diario;
        const HRESULT hr = AbreDiario(diario);
        EXPECT_EQ(diario.Fecha(&m_Dono), S_OK);
        return hr;
    }
    // How often a step was taken since the last call.
    std::ptrdiff_t Conta(const std::string& sPasso) const {
        return std::count(m_listaPassos.begin(), m_listaPassos.end(), sPasso);
    }
    std::size_t Ultimo(const std::string& sPasso) const {
        const auto it = std::find(m_listaPassos.rbegin(), m_listaPassos.rend(), sPasso);
        return static_cast<std::size_t>(m_listaPassos.rend() - it);  // 0: never
    }
    // That the last times of these steps were taken one behind the other.
    void EsperaOrdem(const std::vector<std::string>& rPassos) const {
        for (std::size_t i = 1; i < rPassos.size(); ++i) {
            EXPECT_NE(Ultimo(rPassos[i - 1]), 0U) << rPassos[i - 1];
            EXPECT_LT(Ultimo(rPassos[i - 1]), Ultimo(rPassos[i])) << rPassos[i - 1] << ' ' << rPassos[i];
        }
    }
    std::size_t Primeiro(const std::string& sPasso) const {
        const auto it = std::find(m_listaPassos.begin(), m_listaPassos.end(), sPasso);
        return static_cast<std::size_t>(it - m_listaPassos.begin()) + 1;
    }

    CXVSistemaArquivosQueda m_Queda;
    CXVSistemaArquivosFalhas m_FalhasQueda;
    CXVGuardaSistemaArquivos m_GuardaQueda;
    std::mutex m_mutexPassos;
    std::vector<std::string> m_listaPassos;
    CXVSistemaArquivosQueda::TAoAlterar m_fnAoAlterar;
};

// A container and the journal around it.
struct SBancoComDiario {
    HRESULT Abre(const IXVDF_Profiler& rDono, const std::string& sDiretorio) {
        const HRESULT hr = diario.Abre(&rDono, XV_DF, sDiretorio);
        return FAILED(hr) ? hr : xvDB.Inicializa(&rDono);
    }
    HRESULT Fecha(const IXVDF_Profiler& rDono) {
        const HRESULT hr = xvDB.Finaliza();
        const HRESULT hrDiario = diario.Fecha(&rDono);
        return FAILED(hr) ? hr : hrDiario;
    }

    CXVDiario diario;
    CXVDataBase xvDB{XV_DF};
};

// With two files.
struct SBancoDuplo : SBancoComDiario {
    // A record and a text in one operation; the record's position is overwritten or, with 0, appended.
    HRESULT Grava(XVUInt uiPosicao, const REG_TESTE& reg, const std::string& sTexto) {
        CXVOperacao operacao(&xvDB);
        HRESULT hr = operacao.Inicia();
        if (SUCCEEDED(hr)) hr = Prepara(operacao, uiPosicao, reg, sTexto);
        return SUCCEEDED(hr) ? operacao.Executa() : hr;
    }
    HRESULT Prepara(CXVOperacao& rOperacao, XVUInt uiPosicao, const REG_TESTE& reg,
                    const std::string& sTexto) {
        HRESULT hr = a.PreparaColecao(rOperacao, uiPosicao, std::vector<REG_TESTE>{reg});
        XVUInt uiPosicaoTexto = 0;
        if (SUCCEEDED(hr))
            hr = t.PreparaColecao(rOperacao, uiPosicaoTexto, std::vector<std::string_view>{sTexto});
        return hr;
    }

    CXVFileTeste a{"A.dat", &xvDB};
    CXVTextFile t{"T.dat", &xvDB};
};
