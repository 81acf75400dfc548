// The fixture of every test of the seam's files: a directory, in the system or in memory, and the calls on
// the names in it. What opens files and marks keeps them in the fixture unless it is given a place.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"

inline constexpr SAberturaArquivo k_leitura{EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaNada,
                                            ECriacaoArquivo::eSomenteExistente};
inline constexpr SAberturaArquivo k_escrita{EAcessoArquivo::eLeituraEscrita,
                                            ECompartilhamentoArquivo::eNegaEscrita,
                                            ECriacaoArquivo::eSomenteExistente};
inline constexpr SAberturaArquivo k_criacao{
    EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita, ECriacaoArquivo::eCriaSeAusente};
inline constexpr SAberturaArquivo k_anexacao{EAcessoArquivo::eAnexacao, ECompartilhamentoArquivo::eNegaNada,
                                             ECriacaoArquivo::eCriaSeAusente};

class CXVCenarioArquivos : public testing::Test {
  protected:
    using ECausa = ECausaArquivo;
    using TNomes = std::vector<std::string>;

    explicit CXVCenarioArquivos(bool bMemoria = false) : m_bMemoria(bMemoria) {
        EXPECT_TRUE(m_memoria.CriaDiretorio("/raiz").Ok());
    }

    std::string Caminho(const std::string& sNome) const {
        return m_rSistema.Junta(m_bMemoria ? "/raiz" : m_diretorio.GetCaminho(), sNome);
    }
    // Beside the seam.
    void Cria(const std::string& sNome, const std::string& sConteudo) {
        m_bMemoria ? m_memoria.CriaArquivo(Caminho(sNome), sConteudo)
                   : m_diretorio.CriaArquivo(sNome, sConteudo);
    }
    std::string Conteudo(const std::string& sNome) const {
        return (m_bMemoria ? m_memoria.LeConteudo(Caminho(sNome)) : m_diretorio.LeConteudo(sNome))
            .value_or("<ausente>");
    }
    void SetSomenteLeitura(const std::string& sNome) {
        m_bMemoria ? m_memoria.SetSomenteLeitura(Caminho(sNome), true)
                   : m_diretorio.SetSomenteLeitura(sNome, true);
    }

    ECausa Abre(const std::string& sNome, const SAberturaArquivo& rAbertura,
                std::unique_ptr<IXVArquivo>& pArquivo) {
        const CXVErroArquivo erro = m_rSistema.Abre(Caminho(sNome), rAbertura, pArquivo);
        EXPECT_EQ(erro.Ok(), pArquivo != nullptr);
        return erro.GetCausa();
    }
    ECausa Abre(const std::string& sNome, const SAberturaArquivo& rAbertura) {
        return Abre(sNome, rAbertura, m_pArquivo);
    }
    ECausa Grava(XVUInt64 uiOffset, const std::string& sBytes) {
        return m_pArquivo->Grava(uiOffset, sBytes.data(), sBytes.size()).GetCausa();
    }
    ECausa Le(XVUInt64 uiOffset, std::size_t uiTamanho) {
        m_sLido.assign(uiTamanho, '?');
        return m_pArquivo->Le(uiOffset, m_sLido.data(), uiTamanho).GetCausa();
    }
    EExistencia Existe(const std::string& sNome) { return m_rSistema.Existe(Caminho(sNome)); }
    ECausa Apaga(const std::string& sNome) { return m_rSistema.Apaga(Caminho(sNome)).GetCausa(); }
    ECausa Substitui(const std::string& sOrigem, const std::string& sDestino) {
        return m_rSistema.Substitui(Caminho(sOrigem), Caminho(sDestino)).GetCausa();
    }
    ECausa BuscaNomeReal(const std::string& sNome) {
        return m_rSistema.BuscaNomeReal(Caminho(sNome), m_sNomeReal).GetCausa();
    }
    ECausa CriaDiretorio(const std::string& sNome) {
        return m_rSistema.CriaDiretorio(Caminho(sNome)).GetCausa();
    }
    ECausa Lista(const std::string& sDiretorio, const std::string& sMascara = "*") {
        m_listaNomes = {"sobra"};
        const CXVErroArquivo erro = m_rSistema.Lista(Caminho(sDiretorio), sMascara, m_listaNomes);
        std::sort(m_listaNomes.begin(), m_listaNomes.end());
        return erro.GetCausa();
    }
    ECausa Marca(const std::string& sNome, std::unique_ptr<IXVMarcaDiretorio>& rpMarca) {
        return m_rSistema.MarcaDiretorio(Caminho(""), sNome, rpMarca).GetCausa();
    }
    ECausa Marca(const std::string& sNome) { return Marca(sNome, m_pMarca); }

    const bool m_bMemoria;
    CXVDiretorioTeste m_diretorio;
    CXVSistemaArquivosMemoria m_memoria;
    IXVSistemaArquivos& m_rSistema =
        m_bMemoria ? static_cast<IXVSistemaArquivos&>(m_memoria) : XVPlataforma::SistemaArquivosNativo();
    std::unique_ptr<IXVArquivo> m_pArquivo;
    std::unique_ptr<IXVMarcaDiretorio> m_pMarca;
    std::string m_sLido;
    std::string m_sNomeReal;
    TNomes m_listaNomes;
};

// Every test of this suite runs on every implementation of the file system.
class CXVSistemaArquivosTeste : public CXVCenarioArquivos, public testing::WithParamInterface<bool> {
  protected:
    CXVSistemaArquivosTeste() : CXVCenarioArquivos(GetParam()) {}
};
