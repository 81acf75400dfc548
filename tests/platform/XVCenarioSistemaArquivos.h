// The fixture of the conformance suite: every test in it runs on every implementation of the file system.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"

enum class ECenario { eNativo, eMemoria };

inline constexpr SAberturaArquivo k_aberturaLeitura{
    EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaNada, ECriacaoArquivo::eSomenteExistente};
inline constexpr SAberturaArquivo k_aberturaEscrita{
    EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita, ECriacaoArquivo::eCriaSeAusente};

class CXVSistemaArquivosTeste : public testing::TestWithParam<ECenario> {
  protected:
    bool EhNativo() const { return GetParam() == ECenario::eNativo; }
    IXVSistemaArquivos& Sistema() {
        return EhNativo() ? XVPlataforma::SistemaArquivosNativo()
                          : static_cast<IXVSistemaArquivos&>(m_memoria);
    }
    std::string Caminho(const std::string& sNome) {
        return Sistema().Junta(EhNativo() ? m_diretorio.GetCaminho() : "/raiz", sNome);
    }
    void SetSomenteLeitura(const std::string& sNome);

    ECausaArquivo Abre(const std::string& sNome, const SAberturaArquivo& rAbertura,
                       std::unique_ptr<IXVArquivo>& pArquivo);
    std::unique_ptr<IXVArquivo> AbreBem(const std::string& sNome, const SAberturaArquivo& rAbertura);
    void Cria(const std::string& sNome, const std::string& sConteudo);
    std::string Conteudo(const std::string& sNome);

  private:
    void SetUp() override { ASSERT_TRUE(Sistema().CriaDiretorio(Caminho("")).Ok()); }

    CXVDiretorioTeste m_diretorio;
    CXVSistemaArquivosMemoria m_memoria;
};

void PrintTo(ECausaArquivo eCausa, std::ostream* pSaida);
