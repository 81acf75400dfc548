// Every refused file is named wherever the failure is told: in the error log, in the component's last error
// and in the message of the command-line program, with its date for the file of a day.
#include <gmock/gmock.h>

#include <functional>

#include "client/XVCliente.h"
#include "support/XVAmbiente.h"
#include "support/codes/XVCodigos.h"
#include "support/trace/XVArquivoRecusado.h"
#include "support/trace/XVCapturaTrace.h"
#include "tests/harness/XVGuardasPlataforma.h"
#include "tests/harness/XVRegistryFalso.h"
#include "tests/harness/XVRelogioFalso.h"
#include "tests/harness/XVSistemaArquivosFalhas.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tools/xvcr/text/XVErros.h"

namespace {

using testing::EndsWith;
using testing::StartsWith;

constexpr const char* k_pszIndice = "CRINDEXINTEG.dat";
constexpr const char* k_pszDia = "CRINTEGMID20240315.dat";
constexpr const char* k_pszJSONDia = "CRINTEGMIDJSON20240315.dat";
constexpr const char* k_pszVersao = "CRMIDDLEWAREVS.dat";
constexpr const char* k_pszControle = "XVDATABASE_FILE_CTRL.dat";

enum class EUso { eAbre, eLe, eBusca, eGrava };

// A store of the company "UM" with one integration of 2024-03-15, put back before every case.
class Recusa : public testing::Test {
  protected:
    struct SCaso {
        const char* pszCaso;
        const char* pszArquivo;  // the one that must be named
        HRESULT hr;
        EUso eUso;
        std::function<void()> fnEstraga;
    };

    Recusa() {
        m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/dados");
        XVCliente::CXVCliente cliente;
        CXVDadosCR_IntegracaoMiddleware dados;
        dados.sRegistroJSON = "{}";
        dados.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
        dados.eStatusIntegracao = eXVSMiddleware_Pendente;
        dados.eSistemaIntegracao = SimulacaoSistemaTerceiro;
        dados.eTipoTransacao = eXVSMiddleware_Inclusao;
        EXPECT_EQ(cliente.ConectaLocal(m_Identificacao, {}), S_OK);
        EXPECT_EQ(cliente.GravaIntegracao(&m_Dmc, dados), S_OK);
        EXPECT_EQ(cliente.Desconecta(), S_OK);
        // A file is listed when it is next opened.
        EXPECT_EQ(cliente.ConectaLocal(m_Identificacao, {}), S_OK);
        CXVDadosCR_IntegracaoMiddleware lida;
        EXPECT_EQ(cliente.LeIntegracao(m_Dmc, 7, &lida), S_OK);
        EXPECT_EQ(cliente.Desconecta(), S_OK);
        m_Sa = m_Arquivos.Retrata();
        m_Captura.emplace();
    }

    static std::string Caminho(const std::string& sNome) {
        return sNome.empty() ? "/dados/UM/DF" : "/dados/UM/DF/" + sNome;
    }
    std::string Le(const std::string& sNome) const {
        return m_Arquivos.LeConteudo(Caminho(sNome)).value_or("<ausente>");
    }
    void Cria(const std::string& sNome, std::string sConteudo) {
        m_Arquivos.CriaArquivo(Caminho(sNome), std::move(sConteudo));
    }
    void Apaga(const std::string& sNome) { ASSERT_TRUE(m_Arquivos.Apaga(Caminho(sNome)).Ok()); }
    // A damage of the file's bytes, sealed again, as another program's file would be.
    std::function<void()> Altera(const char* pszNome, std::function<void(std::string&)> fn) {
        return [this, pszNome, fn = std::move(fn)] {
            std::string s = Le(pszNome);
            fn(s);
            FechaCrc(s);
            Cria(pszNome, std::move(s));
        };
    }
    // One bit that is another, under the old seal.
    std::function<void()> Vira(const char* pszNome, std::size_t uiByte) {
        return [this, pszNome, uiByte] {
            std::string s = Le(pszNome);
            s[uiByte] ^= 1;
            Cria(pszNome, std::move(s));
        };
    }
    // The payload replaced; the header goes with it.
    std::function<void()> Conteudo(const char* pszNome, const std::string& sDados) {
        return Altera(pszNome, [sDados](std::string& s) {
            s = s.substr(0, 240) + sDados;
            Poe<XVUInt64>(s, 72, sDados.size());
        });
    }
    // The operation on this file fails from now on.
    std::function<void()> Impede(EOperacaoArquivo eOperacao, const char* pszNome, ECausaArquivo eCausa) {
        return [this, eOperacao, sPath = Caminho(pszNome), eCausa] {
            m_Falhas.SetFiltro([sPath](const std::string& s) { return s == sPath; });
            m_Falhas.Programa({.eOperacao = eOperacao, .bPermanente = true, .eCausa = eCausa});
        };
    }
    std::function<void()> PoeDiretorio(const char* pszNome) {
        return [this, pszNome] {
            Apaga(pszNome);
            Cria(std::string(pszNome) + "/x", "");
        };
    }

    void Restaura(const SCaso& rCaso) {
        m_Falhas.Limpa();
        m_Arquivos.Restaura(m_Sa);
        m_Captura.emplace();
        rCaso.fnEstraga();
    }

    HRESULT UsaCliente(XVCliente::CXVCliente& r, EUso eUso) const {
        const HRESULT hr = r.ConectaLocal(m_Identificacao, {});
        if (FAILED(hr) || eUso == EUso::eAbre) return hr;
        CXVDadosCR_IntegracaoMiddleware dados;
        dados.eTipoIntegracao = eXVSMiddleware_BuscaPedidos;
        if (eUso == EUso::eLe) return r.LeIntegracao(m_Dmc, 7, &dados);
        if (eUso == EUso::eGrava) {
            REG_XVDMC dmc;
            dados.eSistemaIntegracao = SimulacaoSistemaTerceiro;
            return r.GravaIntegracao(&dmc, dados);
        }
        CXVDadosCR_FiltroIntegracaoMiddleware filtro;
        filtro.listaTipoIntegracao = {eXVSMiddleware_BuscaPedidos};
        std::vector<REG_XVDMC> lista;
        return r.BuscaPonteiros(filtro, &lista);
    }

    void Confere(const SCaso& rCaso) {
        SCOPED_TRACE(rCaso.pszCaso);
        std::string sArquivo = Caminho(rCaso.pszArquivo);
        if (sArquivo.find("20240315") != std::string::npos) sArquivo += " (dia 15/03/2024)";
        Restaura(rCaso);
        {
            XVCliente::CXVCliente cliente;
            EXPECT_EQ(UsaCliente(cliente, rCaso.eUso), rCaso.hr);
            XVCliente::SUltimoErro erro;
            EXPECT_EQ(cliente.GetUltimoErro(&erro), S_OK);
            EXPECT_EQ(erro.hrErro, rCaso.hr);
            EXPECT_THAT(erro.sMensagem, EndsWith(" Arquivo: " + sArquivo));
        }
        EXPECT_TRUE(NoLog("Arquivo recusado: " + sArquivo + "\t"));
        Restaura(rCaso);
        const CXVArquivosRecusados recusados;
        XVCliente::CXVCliente cliente;
        try {
            XVConfere(UsaCliente(cliente, rCaso.eUso));
            ADD_FAILURE() << "not refused";
        } catch (const CXVErro& rErro) {
            EXPECT_THAT(rErro.what(), StartsWith(XVCliente::CodigoEmTexto(rCaso.hr)));
            EXPECT_THAT(rErro.what(), EndsWith(" Arquivo: " + sArquivo));
        }
    }
    bool NoLog(const std::string& sInicio) const {
        for (const SFalhaCapturada& r : m_Captura->GetFalhas())
            if (r.sMensagem.starts_with(sInicio)) return true;
        return false;
    }

    CXVSistemaArquivosMemoria m_Arquivos;
    CXVSistemaArquivosFalhas m_Falhas{m_Arquivos};
    CXVRegistryFalso m_registry;
    CXVRelogioFalso m_Relogio;
    CXVGuardaSistemaArquivos m_GuardaSistema{m_Falhas};
    CXVGuardaRegistry m_guardaRegistry{m_registry};
    CXVGuardaRelogio m_GuardaRelogio{m_Relogio};
    const XVCliente::SIdentificacao m_Identificacao{.sEmpresa = "UM", .usUsuario = 7};
    REG_XVDMC m_Dmc;
    CXVSistemaArquivosMemoria::TRetrato m_Sa;
    std::optional<CXVCapturaTrace> m_Captura;
};

TEST_F(Recusa, CabecalhoDanificadoDeCadaForma) {
    const SCaso aCasos[] = {
        {"block size", k_pszIndice, E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE, EUso::eAbre,
         Altera(k_pszIndice, [](auto& s) { Poe<XVUInt64>(s, 64, 215); })},
        {"block B", k_pszIndice, E_XVCR_CRC_CABECALHO_NAO_CONFERE, EUso::eAbre, Vira(k_pszIndice, 130)},
        {"block A", k_pszIndice, E_XVCR_CRC_CABECALHO_NAO_CONFERE, EUso::eAbre, Vira(k_pszIndice, 8)},
        {"appended to", k_pszIndice, E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE, EUso::eAbre,
         [this] { Cria(k_pszIndice, Le(k_pszIndice).substr(0, 250)); }},
        {"cut in the header", k_pszIndice, E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE, EUso::eAbre,
         [this] { Cria(k_pszIndice, Le(k_pszIndice).substr(0, 100)); }},
        {"created by a later engine", k_pszIndice, E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_CRIACAO_CABECALHO,
         EUso::eAbre, Altera(k_pszIndice, [](auto& s) { Poe<XVUShort>(s, 106, 128); })},
        {"updated by a later engine", k_pszIndice, E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_MODIFICACAO_ARQUIVO,
         EUso::eAbre, Altera(k_pszIndice, [](auto& s) { Poe<XVUShort>(s, 108, 128); })},
        {"another file's", k_pszIndice, E_XVCR_NOME_ARQUIVO_NAO_CONFERE, EUso::eAbre,
         Altera(k_pszIndice, [](auto& s) { s[112] = 'X'; })},
        {"header version 2", k_pszIndice, E_XVCR_VERSAO_CABECALHO_SUPERIOR_VERSAO_SISTEMA, EUso::eAbre,
         Altera(k_pszIndice,
                [](auto& s) {
                    Poe<XVUShort>(s, 0, 2);
                    Poe(s, 8, CrcBitABit(s.substr(0, 2)));
                    Poe(s, 16, CrcBitABit(s.substr(8, 8)));
                })},
        {"version file", k_pszVersao, E_XVCR_CRC_CABECALHO_NAO_CONFERE, EUso::eAbre, Vira(k_pszVersao, 130)},
        {"a day read", k_pszDia, E_XVCR_CRC_CABECALHO_NAO_CONFERE, EUso::eLe, Vira(k_pszDia, 130)},
        {"a day searched", k_pszDia, E_XVCR_CRC_CABECALHO_NAO_CONFERE, EUso::eBusca, Vira(k_pszDia, 130)},
        {"a day written to", k_pszDia, E_XVCR_CRC_CABECALHO_NAO_CONFERE, EUso::eGrava, Vira(k_pszDia, 130)},
        {"a day's texts", k_pszJSONDia, E_XVCR_NOME_ARQUIVO_NAO_CONFERE, EUso::eLe,
         Altera(k_pszJSONDia, [](auto& s) { s[112] = 'X'; })},
    };
    for (const SCaso& rCaso : aCasos) Confere(rCaso);
}

TEST_F(Recusa, ConteudoQueNaoServe) {
    const SCaso aCasos[] = {
        {"record size", k_pszIndice, E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA, EUso::eAbre,
         Conteudo(k_pszIndice, "12345")},
        {"record size of a day", k_pszDia, E_XVCR_ARQUIVO_NAO_EH_MOD_ESTRUTURA, EUso::eLe,
         Conteudo(k_pszDia, "12345")},
        {"text chain", k_pszJSONDia, E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA, EUso::eLe,
         Conteudo(k_pszJSONDia, std::string("\xFF\0\0\0x", 5))},
        {"single record", k_pszVersao, E_XVCR_ARQUIVO_SINGLE_REG_NAO_TEM_TAMANHO_ESTRUTURA, EUso::eAbre,
         Conteudo(k_pszVersao, "abc")},
        {"later version", k_pszVersao, E_XVCR_VERSAO_BASE_SUPERIOR_VERSAO_SISTEMA, EUso::eAbre,
         Altera(k_pszVersao, [](auto& s) { Poe<XVUShort>(s, 240, 9); })},
        {"control list", k_pszControle, E_XVCR_ARQUIVO_TEXTO_QUANTIDADE_CARACTERES_INVALIDA, EUso::eAbre,
         [this] { Cria(k_pszControle, "abc"); }},
        {"repeated key", k_pszIndice, E_XVCR_CHAVE_DE_INDEXACAO_REPETIDA, EUso::eAbre,
         [this] {
             const std::string sDados = Le(k_pszIndice).substr(240);
             Conteudo(k_pszIndice, sDados + sDados)();
         }},
    };
    for (const SCaso& rCaso : aCasos) Confere(rCaso);
}

TEST_F(Recusa, ArquivoAusenteOuSobra) {
    const SCaso aCasos[] = {
        {"listed and missing", k_pszIndice, E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, EUso::eAbre,
         [this] { Apaga(k_pszIndice); }},
        {"version listed and missing", k_pszVersao, E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS,
         EUso::eAbre, [this] { Apaga(k_pszVersao); }},
        {"a day read", k_pszDia, E_XVCR_ARQUIVO_GROUP_NAO_ENCONTRADO, EUso::eLe, [this] { Apaga(k_pszDia); }},
        {"a day written to", k_pszDia, E_XVCR_INCONSISTENCIA_CONTROLE_CRIACAO_ARQUIVOS, EUso::eGrava,
         [this] { Apaga(k_pszDia); }},
        {".tra", "CRINDEXINTEG.tra", E_XVCR_ARQUIVO_TRA_ENCONTRADO, EUso::eAbre,
         [this] { Cria("CRINDEXINTEG.tra", "x"); }},
        {".tra of a day", "CRINTEGMID20240315.tra", E_XVCR_ARQUIVO_TRA_ENCONTRADO, EUso::eLe,
         [this] { Cria("CRINTEGMID20240315.tra", "x"); }},
        {".cab", "CRINDEXINTEG.cab", E_XVCR_ARQUIVO_CAB_ENCONTRADO, EUso::eAbre,
         [this] {
             Cria(k_pszIndice, Le(k_pszIndice).substr(240));
             Cria("CRINDEXINTEG.cab", "x");
         }},
    };
    for (const SCaso& rCaso : aCasos) Confere(rCaso);
}

TEST_F(Recusa, SistemaQueNega) {
    constexpr auto eAbre = EOperacaoArquivo::eAbre;
    const SCaso aCasos[] = {
        {"no access", k_pszIndice, eAccessDenied, EUso::eAbre,
         Impede(eAbre, k_pszIndice, ECausaArquivo::eAcessoNegado)},
        {"in use", k_pszDia, eSharingViolation, EUso::eLe,
         Impede(eAbre, k_pszDia, ECausaArquivo::eViolacaoCompartilhamento)},
        {"full disk", k_pszIndice, eDiskFull, EUso::eAbre,
         Impede(eAbre, k_pszIndice, ECausaArquivo::eDiscoCheio)},
        {"read error", k_pszDia, eHardIO, EUso::eBusca,
         Impede(EOperacaoArquivo::eLe, k_pszDia, ECausaArquivo::eErroFisico)},
        {"length unknown", k_pszDia, eHardIO, EUso::eLe,
         Impede(EOperacaoArquivo::eGetTamanho, k_pszDia, ECausaArquivo::eErroFisico)},
        {"full disk at a write", k_pszDia, eDiskFull, EUso::eGrava,
         Impede(EOperacaoArquivo::eGrava, k_pszDia, ECausaArquivo::eDiscoCheio)},
        {"read-only", k_pszDia, eXVReadOnly, EUso::eLe,
         [this] { m_Arquivos.SetSomenteLeitura(Caminho(k_pszDia), true); }},
        {"a directory in its place", k_pszIndice, eAccessDenied, EUso::eAbre, PoeDiretorio(k_pszIndice)},
        {"the data directory not made", "", eAccessDenied, EUso::eAbre,
         Impede(EOperacaoArquivo::eCriaDiretorio, "", ECausaArquivo::eAcessoNegado)},
        {"the data directory not listed", "", eAccessDenied, EUso::eAbre,
         Impede(EOperacaoArquivo::eLista, "", ECausaArquivo::eAcessoNegado)},
        {"control list", k_pszControle, eAccessDenied, EUso::eAbre,
         Impede(eAbre, k_pszControle, ECausaArquivo::eAcessoNegado)},
    };
    for (const SCaso& rCaso : aCasos) Confere(rCaso);
}

// A failure that is no file's must not bear the name of the one before.
TEST_F(Recusa, FalhaSeguinteNaoHerdaOArquivo) {
    XVCliente::CXVCliente cliente;
    ASSERT_EQ(UsaCliente(cliente, EUso::eAbre), S_OK);
    Vira(k_pszDia, 130)();
    CXVDadosCR_IntegracaoMiddleware dados;
    XVCliente::SUltimoErro erro;
    EXPECT_EQ(cliente.LeIntegracao(m_Dmc, 7, &dados), E_XVCR_CRC_CABECALHO_NAO_CONFERE);
    EXPECT_EQ(cliente.LeIntegracao({m_Dmc.uiValor + (1U << 14)}, 7, &dados),
              E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_EQ(cliente.GetUltimoErro(&erro), S_OK);
    EXPECT_EQ(erro.hrErro, E_XVCR_POSICAO_DE_INDEXACAO_INVALIDA);
    EXPECT_EQ(erro.sMensagem.find("Arquivo:"), std::string::npos);
}

}  // namespace
