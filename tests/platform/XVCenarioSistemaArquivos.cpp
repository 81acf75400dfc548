#include "tests/platform/XVCenarioSistemaArquivos.h"

#include <ostream>
#include <stdexcept>

void CXVSistemaArquivosTeste::SetSomenteLeitura(const std::string& sNome) {
    if (EhNativo())
        m_diretorio.SetSomenteLeitura(sNome, true);
    else
        m_memoria.SetSomenteLeitura(Caminho(sNome), true);
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
                         testing::Values(ECenario::eNativo, ECenario::eMemoria), [](const auto& rInfo) {
                             return rInfo.param == ECenario::eNativo ? "Native" : "Memory";
                         });
