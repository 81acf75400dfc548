// Every refused file is named wherever the failure is told: in the error log, in the component's last error
// and in the message of the command-line program, with its date for the file of a day.
#include <gmock/gmock.h>

#include "support/codes/XVCodigos.h"
#include "support/trace/XVArquivoRecusado.h"
#include "tests/client/XVPortaTeste.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVTextoNoLog.h"
#include "tests/suite/XVCenarioSuite.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tools/xvcr/text/XVErros.h"

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::StartsWith;

constexpr const char* k_pszIndice = "CRINDEXINTEG.dat";
constexpr const char* k_pszDia = "CRINTEGMID20240315.dat";
constexpr const char* k_pszJSONDia = "CRINTEGMIDJSON20240315.dat";
constexpr const char* k_pszVersao = "CRMIDDLEWAREVS.dat";
constexpr const char* k_pszControle = "XVDATABASE_FILE_CTRL.dat";

enum class EUso { eAbre, eLe, eBusca, eGrava };

// A store with one integration of 2024-03-15, put back before every case.
class Recusa : public CXVCenarioSuite {
  protected:
    using TEstrago = std::function<void(const std::string& sArquivo)>;
    struct SCaso {
        const char* pszArquivo;  // the one that must be named; "" is the data directory
        HRESULT hr;
        EUso eUso;
        TEstrago fnEstraga;
    };

    Recusa() {
        EXPECT_EQ(Usa(EUso::eGrava), S_OK);
        EXPECT_EQ(Usa(EUso::eLe), S_OK);  // a file is listed when it is next opened
        EXPECT_EQ(m_Cliente.Desconecta(), S_OK);
        m_Sa = m_Arquivos.Retrata();
    }

    HRESULT Usa(EUso eUso) {
        HRESULT hr = m_Cliente.ConectaLocal({.sEmpresa = "MATRIZ", .usUsuario = 7}, {});
        auto dados = XVPortaTeste::IntegracaoPendente("{}");
        std::vector<REG_XVDMC> lista;
        REG_XVDMC regNova;
        if (SUCCEEDED(hr) && eUso == EUso::eGrava) hr = m_Cliente.GravaIntegracao(&regNova, dados);
        if (SUCCEEDED(hr) && eUso == EUso::eLe) hr = m_Cliente.LeIntegracao(m_Dmc, 7, &dados);
        if (SUCCEEDED(hr) && eUso == EUso::eBusca)
            hr = m_Cliente.BuscaPonteiros({.listaTipoIntegracao = {eXVSMiddleware_BuscaPedidos}}, &lista);
        return hr;
    }

    std::string Le(const std::string& sNome) const {
        return m_Arquivos.LeConteudo(PastaDados(sNome)).value_or("<ausente>");
    }
    void Cria(const std::string& sNome, std::string sConteudo) {
        m_Arquivos.CriaArquivo(PastaDados(sNome), std::move(sConteudo));
    }
    void Apaga(const std::string& sNome) { ASSERT_TRUE(m_Arquivos.Apaga(PastaDados(sNome)).Ok()); }
    // One bit that is another, under the old seal.
    TEstrago Vira(std::size_t uiByte) {
        return [this, uiByte](const std::string& sNome) {
            std::string s = Le(sNome);
            s[uiByte] ^= 1;
            Cria(sNome, std::move(s));
        };
    }
    // The payload replaced, sealed again as another program's file would be.
    TEstrago Conteudo(const std::string& sDados) {
        return [this, sDados](const std::string& sNome) {
            std::string s = Le(sNome).substr(0, 240) + sDados;
            Poe<XVUInt64>(s, 72, sDados.size());
            FechaCrc(s);
            Cria(sNome, std::move(s));
        };
    }
    TEstrago Escreve(const std::string& sConteudo) {
        return [this, sConteudo](const std::string& sNome) { Cria(sNome, sConteudo); };
    }
    TEstrago Some() {
        return [this](const std::string& sNome) { Apaga(sNome); };
    }
    // The operation on this file fails from now on.
    TEstrago Impede(EOperacaoArquivo eOperacao, ECausaArquivo eCausa) {
        return [this, eOperacao, eCausa](const std::string& sNome) {
            m_Falhas.SetFiltro([sPath = PastaDados(sNome)](const std::string& s) { return s == sPath; });
            m_Falhas.Programa({.eOperacao = eOperacao, .bPermanente = true, .eCausa = eCausa});
        };
    }

    void Confere(const SCaso& rCaso) {
        SCOPED_TRACE(rCaso.pszArquivo + XVCliente::DescreveCodigo(rCaso.hr));
        std::string sArquivo = PastaDados(rCaso.pszArquivo);
        if (sArquivo.find("20240315") != std::string::npos) sArquivo += " (dia 15/03/2024)";
        m_Arquivos.Restaura(m_Sa);
        rCaso.fnEstraga(rCaso.pszArquivo);
        const CXVCapturaTrace captura;
        const CXVArquivosRecusados recusados;
        EXPECT_EQ(Usa(rCaso.eUso), rCaso.hr);
        EXPECT_TRUE(XVTextoNoLog(captura, "Arquivo recusado: " + sArquivo + "\t"));
        EXPECT_THAT(XVDescreveFalha(rCaso.hr),
                    AllOf(StartsWith(XVCliente::CodigoEmTexto(rCaso.hr)), EndsWith(" Arquivo: " + sArquivo)));
        XVCliente::SUltimoErro erro;
        EXPECT_EQ(m_Cliente.GetUltimoErro(&erro), S_OK);
        EXPECT_EQ(erro.hrErro, rCaso.hr);
        EXPECT_THAT(erro.sMensagem, EndsWith(" Arquivo: " + sArquivo));
        m_Falhas.Limpa();
        XVIgnora(m_Cliente.Desconecta());
    }

    CXVSistemaArquivosFalhas m_Falhas{m_Arquivos};
    CXVGuardaSistemaArquivos m_GuardaFalhas{m_Falhas};
    XVCliente::CXVCliente m_Cliente;
    const REG_XVDMC m_Dmc = REG_XVDMC::Cria(1, 1, REG_XVDMA::Cria(2024, 3, 15));
    CXVSistemaArquivosMemoria::TRetrato m_Sa;
    const CXVCapturaTrace m_Captura;
};

TEST_F(Recusa, ArquivoDanificado) {
    const SCaso aCasos[] = {
        {k_pszIndice, E_XVCR_CRC_CABECALHO_NAO_CONFERE, EUso::eAbre, Vira(130)},
        {k_pszIndice, E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE, EUso::eAbre,
         Escreve(Le(k_pszIndice).substr(0, 100))},
        {k_pszDia, E_XVCR_CRC_CABECALHO_NAO_CONFERE, EUso::eLe, Vira(130)},
        {k_pszDia, E_XVCR_CRC_CABECALHO_NAO_CONFERE, EUso::eBusca, Vira(130)},
        {k_pszDia, E_XVCR_CRC_CABECALHO_NAO_CONFERE, EUso::eGrava, Vira(130)},
        {k_pszDia, E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA, EUso::eLe, Conteudo("12345")},
        {k_pszJSONDia, E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA, EUso::eLe,
         Conteudo(std::string("\xFF\0\0\0x", 5))},
        {k_pszVersao, E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA, EUso::eAbre, Conteudo("abc")},
        {k_pszVersao, E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA, EUso::eAbre,
         Conteudo("\x09" + Le(k_pszVersao).substr(241))},
        {k_pszIndice, E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA, EUso::eAbre,
         Conteudo(Le(k_pszIndice).substr(240) + Le(k_pszIndice).substr(240))},
    };
    for (const SCaso& rCaso : aCasos) Confere(rCaso);
}

TEST_F(Recusa, ArquivoAusenteOuSobra) {
    const SCaso aCasos[] = {
        {k_pszIndice, E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, EUso::eAbre, Some()},
        {k_pszVersao, E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, EUso::eAbre, Some()},
        {k_pszDia, E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO, EUso::eLe, Some()},
        {k_pszDia, E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, EUso::eGrava, Some()},
        {"CRINDEXINTEG.tra", E_XVCR_ARQUIVO_TRA_ENCONTRADO, EUso::eAbre, Escreve("x")},
        {"CRINDEXINTEG.cab", E_XVCR_ARQUIVO_CAB_ENCONTRADO, EUso::eAbre,
         [this](const std::string& sNome) {
             Cria(k_pszIndice, Le(k_pszIndice).substr(240));
             Cria(sNome, "x");
         }},
    };
    for (const SCaso& rCaso : aCasos) Confere(rCaso);
}

TEST_F(Recusa, SistemaQueNega) {
    constexpr auto eAbre = EOperacaoArquivo::eAbre;
    constexpr auto eAcessoNegado = ECausaArquivo::eAcessoNegado;
    constexpr auto eErroFisico = ECausaArquivo::eErroFisico;
    const SCaso aCasos[] = {
        {k_pszIndice, eAccessDenied, EUso::eAbre, Impede(eAbre, eAcessoNegado)},
        {k_pszDia, eSharingViolation, EUso::eLe, Impede(eAbre, ECausaArquivo::eViolacaoCompartilhamento)},
        {k_pszDia, eHardIO, EUso::eBusca, Impede(EOperacaoArquivo::eLe, eErroFisico)},
        {k_pszDia, eDiskFull, EUso::eGrava, Impede(EOperacaoArquivo::eGrava, ECausaArquivo::eDiscoCheio)},
        {k_pszDia, eXVReadOnly, EUso::eLe,
         [this](const std::string& sNome) { m_Arquivos.SetSomenteLeitura(PastaDados(sNome), true); }},
        {"", eAccessDenied, EUso::eAbre, Impede(EOperacaoArquivo::eCriaDiretorio, eAcessoNegado)},
        {"", eAccessDenied, EUso::eAbre, Impede(EOperacaoArquivo::eLista, eAcessoNegado)},
        {k_pszControle, eAccessDenied, EUso::eAbre, Impede(eAbre, eAcessoNegado)},
    };
    for (const SCaso& rCaso : aCasos) Confere(rCaso);
}

// A failure that is no file's must not bear the name of the one before, which the component noted by itself.
TEST_F(Recusa, FalhaSeguinteNaoHerdaOArquivo) {
    ASSERT_EQ(Usa(EUso::eAbre), S_OK);
    Vira(130)(k_pszDia);
    CXVDadosCR_IntegracaoMiddleware dados;
    XVCliente::SUltimoErro erro;
    EXPECT_EQ(m_Cliente.LeIntegracao(m_Dmc, 7, &dados), E_XVCR_CRC_CABECALHO_NAO_CONFERE);
    EXPECT_EQ(m_Cliente.GetUltimoErro(&erro), S_OK);
    EXPECT_THAT(erro.sMensagem, EndsWith(" (dia 15/03/2024)"))
        << "also for a caller without a note of its own";
    EXPECT_EQ(m_Cliente.LeIntegracao({m_Dmc.uiValor + (1U << 14)}, 7, &dados),
              E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_EQ(m_Cliente.GetUltimoErro(&erro), S_OK);
    EXPECT_EQ(erro.hrErro, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_EQ(erro.sMensagem.find("Arquivo:"), std::string::npos);
}

}  // namespace
