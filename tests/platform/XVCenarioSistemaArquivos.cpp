#include "tests/platform/XVCenarioSistemaArquivos.h"

#include <ostream>
#include <stdexcept>

#include "platform/XVPlataforma.h"
#include "tests/harness/XVDiretorioTemporario.h"
#include "tests/harness/XVSistemaArquivosEnvolto.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"

namespace {

class CXVCenarioNativo final : public IXVCenario {
  public:
    IXVSistemaArquivos& Sistema() override { return XVPlataforma::SistemaArquivosNativo(); }
    std::string Diretorio() override { return m_diretorio.GetCaminho(); }
    void SetSomenteLeitura(const std::string& sNome, bool bSomenteLeitura) override {
        m_diretorio.SetSomenteLeitura(sNome, bSomenteLeitura);
    }

  private:
    CXVDiretorioTeste m_diretorio;
};

class CXVCenarioMemoria final : public IXVCenario {
  public:
    CXVCenarioMemoria() { m_memoria.CriaDiretorio(Diretorio()).Ignora(); }
    IXVSistemaArquivos& Sistema() override { return m_memoria; }
    std::string Diretorio() override { return "/raiz/dados"; }
    void SetSomenteLeitura(const std::string& sNome, bool bSomenteLeitura) override {
        m_memoria.SetSomenteLeitura(m_memoria.Junta(Diretorio(), sNome), bSomenteLeitura);
    }

  private:
    CXVSistemaArquivosMemoria m_memoria;
};

// The file system that all doubles of the tests are made of, with nothing to watch for.
class CXVCenarioEnvolto final : public IXVCenario {
  public:
    IXVSistemaArquivos& Sistema() override { return m_envolto; }
    std::string Diretorio() override { return m_interno.Diretorio(); }
    void SetSomenteLeitura(const std::string& sNome, bool bSomenteLeitura) override {
        m_interno.SetSomenteLeitura(sNome, bSomenteLeitura);
    }

  private:
    struct SNada {};

    CXVCenarioMemoria m_interno;
    TXVSistemaArquivosEnvolto<TXVVigiaGuarda<SNada>> m_envolto{m_interno.Sistema()};
};

std::string NomeDoCenario(const testing::TestParamInfo<ECenario>& rInfo) {
    constexpr const char* k_apszNomes[] = {"Native", "Memory", "Forwarding"};
    return k_apszNomes[static_cast<int>(rInfo.param)];
}

}  // namespace

std::unique_ptr<IXVCenario> XVCriaCenario(ECenario eCenario) {
    if (eCenario == ECenario::eNativo) return std::make_unique<CXVCenarioNativo>();
    if (eCenario == ECenario::eMemoria) return std::make_unique<CXVCenarioMemoria>();
    return std::make_unique<CXVCenarioEnvolto>();
}

ECausaArquivo CXVSistemaArquivosTeste::Abre(const std::string& sNome, const SAberturaArquivo& rAbertura,
                                            std::unique_ptr<IXVArquivo>& pArquivo) {
    const CXVErroArquivo erro = Sistema().Abre(Caminho(sNome), rAbertura, pArquivo);
    EXPECT_EQ(erro.Ok(), pArquivo != nullptr);
    return erro.GetCausa();
}

std::unique_ptr<IXVArquivo> CXVSistemaArquivosTeste::AbreBem(const std::string& sNome,
                                                             const SAberturaArquivo& rAbertura) {
    std::unique_ptr<IXVArquivo> pArquivo;
    if (Abre(sNome, rAbertura, pArquivo) != ECausaArquivo::eNenhuma) {
        throw std::runtime_error("cannot open " + sNome);
    }
    return pArquivo;
}

void CXVSistemaArquivosTeste::Cria(const std::string& sNome, const std::string& sConteudo) {
    const std::unique_ptr<IXVArquivo> pArquivo = AbreBem(sNome, k_aberturaEscrita);
    ASSERT_TRUE(pArquivo->Grava(0, sConteudo.data(), sConteudo.size()).Ok());
}

std::string CXVSistemaArquivosTeste::Conteudo(const std::string& sNome) {
    const std::unique_ptr<IXVArquivo> pArquivo = AbreBem(sNome, k_aberturaLeitura);
    XVUInt64 uiTamanho = 0;
    EXPECT_TRUE(pArquivo->GetTamanho(uiTamanho).Ok());
    std::string sConteudo(static_cast<std::size_t>(uiTamanho), '\0');
    EXPECT_TRUE(pArquivo->Le(0, sConteudo.data(), sConteudo.size()).Ok());
    return sConteudo;
}

void PrintTo(ECausaArquivo eCausa, std::ostream* pSaida) {
    *pSaida << "cause " << static_cast<int>(eCausa);
}

INSTANTIATE_TEST_SUITE_P(Cenarios, CXVSistemaArquivosTeste,
                         testing::Values(ECenario::eNativo, ECenario::eMemoria, ECenario::eEnvolto),
                         NomeDoCenario);
