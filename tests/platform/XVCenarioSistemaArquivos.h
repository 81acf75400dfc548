// The fixture of the conformance suite: every test in it runs on every implementation of the file system.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/XVSistemaArquivos.h"

enum class ECenario { eNativo, eMemoria, eEnvolto };

// One implementation with an empty directory of its own.
class IXVCenario {
  public:
    virtual ~IXVCenario() = default;
    virtual IXVSistemaArquivos& Sistema() = 0;
    virtual std::string Diretorio() = 0;
    virtual void SetSomenteLeitura(const std::string& sNome, bool bSomenteLeitura) = 0;
};
std::unique_ptr<IXVCenario> XVCriaCenario(ECenario eCenario);

inline constexpr SAberturaArquivo k_aberturaLeitura{
    EAcessoArquivo::eLeitura, ECompartilhamentoArquivo::eNegaNada, ECriacaoArquivo::eSomenteExistente};
inline constexpr SAberturaArquivo k_aberturaEscrita{
    EAcessoArquivo::eLeituraEscrita, ECompartilhamentoArquivo::eNegaEscrita, ECriacaoArquivo::eCriaSeAusente};

class CXVSistemaArquivosTeste : public testing::TestWithParam<ECenario> {
  protected:
    IXVSistemaArquivos& Sistema() { return m_pCenario->Sistema(); }
    std::string Caminho(const std::string& sNome) { return Sistema().Junta(m_pCenario->Diretorio(), sNome); }
    void SetSomenteLeitura(const std::string& sNome) { m_pCenario->SetSomenteLeitura(sNome, true); }

    ECausaArquivo Abre(const std::string& sNome, const SAberturaArquivo& rAbertura,
                       std::unique_ptr<IXVArquivo>& pArquivo);
    std::unique_ptr<IXVArquivo> AbreBem(const std::string& sNome, const SAberturaArquivo& rAbertura);
    void Cria(const std::string& sNome, const std::string& sConteudo);
    std::string Conteudo(const std::string& sNome);

    std::unique_ptr<IXVCenario> m_pCenario = XVCriaCenario(GetParam());
};

void PrintTo(ECausaArquivo eCausa, std::ostream* pSaida);
