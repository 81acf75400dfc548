// The fixture of what only POSIX systems have: a directory, and the seam's calls on the names in it.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTemporario.h"

inline constexpr SAberturaArquivo k_leitura{EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaNada,
                                            ECriacaoArquivo::eSomenteExistente};
inline constexpr SAberturaArquivo k_escrita{EAcessoArquivo::eLeituraEscrita,
                                            ECompartilhamentoArquivo::eNegaEscrita,
                                            ECriacaoArquivo::eSomenteExistente};
inline constexpr SAberturaArquivo k_criacao{
    EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita, ECriacaoArquivo::eCriaSeAusente};
inline constexpr SAberturaArquivo k_anexacao{EAcessoArquivo::eAnexacao, ECompartilhamentoArquivo::eNegaNada,
                                             ECriacaoArquivo::eCriaSeAusente};

class CXVCenarioPosix : public testing::Test {
  protected:
    std::string Caminho(const std::string& sNome) const { return m_diretorio.Junta(sNome); }
    std::string Conteudo(const std::string& sNome) const {
        return m_diretorio.LeConteudo(sNome).value_or("<ausente>");
    }
    ECausaArquivo Abre(const std::string& sNome, const SAberturaArquivo& rAbertura) {
        return m_rSistema.Abre(Caminho(sNome), rAbertura, m_pArquivo).GetCausa();
    }
    ECausaArquivo Apaga(const std::string& sNome) { return m_rSistema.Apaga(Caminho(sNome)).GetCausa(); }
    ECausaArquivo Substitui(const std::string& sOrigem, const std::string& sDestino) {
        return m_rSistema.Substitui(Caminho(sOrigem), Caminho(sDestino)).GetCausa();
    }
    ECausaArquivo BuscaNomeReal(const std::string& sNome) {
        return m_rSistema.BuscaNomeReal(Caminho(sNome), m_sNomeReal).GetCausa();
    }
    ECausaArquivo Marca(const std::string& sNome, std::unique_ptr<IXVMarcaDiretorio>& rpMarca) {
        return m_rSistema.MarcaDiretorio(m_diretorio.GetCaminho(), sNome, rpMarca).GetCausa();
    }
    ECausaArquivo Marca(const std::string& sNome) { return Marca(sNome, m_pMarca); }

    IXVSistemaArquivos& m_rSistema = XVPlataforma::SistemaArquivosNativo();
    CXVDiretorioTeste m_diretorio;
    std::unique_ptr<IXVArquivo> m_pArquivo;
    std::unique_ptr<IXVMarcaDiretorio> m_pMarca;
    std::string m_sNomeReal;
};
