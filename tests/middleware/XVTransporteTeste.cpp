// Integrations out of one store and into another: what is read, what becomes of it, and what is told of it.
#include "middleware/XVTransporte.h"

#include <functional>

#include "tests/middleware/XVOperacoesLoja.h"
#include "tests/middleware/XVRetratoLoja.h"

namespace {

using ETipo = SIntegracaoTransportada::ETipo;
using TLista = std::vector<SIntegracaoTransportada>;

class Transporte : public CXVCenarioLoja {
  protected:
    // Two days with everything, a replaced one of the bank, and a vacant place behind the 15th.
    Transporte() {
        EXPECT_TRUE(XVPovoaLoja(*Abre(), [this](unsigned uiDia) { SetDia(uiDia); }));
        Grava(*Abre(), CXVIntegracaoTeste(500, OfficialBank).Textos("{}", "nova", ""));
        const char* pszDia = "CRINTEGMID20240315.dat";
        m_Arquivos.CriaArquivo(
            PastaDados(pszDia),
            XVArquivoDoTeste({.sNome = pszDia}, Dados(Conteudo(pszDia)) + std::string(88, '\0')));
        m_lista = Le();
    }
    static TLista Le() {
        TLista lista;
        CBaseMiddleware loja;
        EXPECT_EQ(XVInicializa(loja), S_OK);
        std::vector<XVUInt64> dias;
        EXPECT_EQ(loja.ListaDias(&dias), S_OK);
        for (const XVUInt64 uiDia : dias) {
            XVUInt ulQuantidade = 0;
            EXPECT_EQ(loja.ContaRegistrosDoDia(uiDia, &ulQuantidade), S_OK);
            std::vector<REG_XVDMC> aDmcs;
            const auto uiDma =
                XVDma(static_cast<unsigned>(uiDia / 10000), static_cast<unsigned>(uiDia / 100 % 100),
                      static_cast<unsigned>(uiDia % 100));
            for (XVUInt ul = 1; ul <= ulQuantidade; ++ul) aDmcs.push_back({XVChaveDmc(uiDma, ul)});
            TLista listaDoDia{{}};  // what was in it is forgotten
            EXPECT_EQ(loja.LeTransportadas(aDmcs, &listaDoDia), S_OK);
            lista.insert(lista.end(), listaDoDia.begin(), listaDoDia.end());
        }
        EXPECT_EQ(loja.Finaliza(), S_OK);
        return lista;
    }
    static std::string Relata(const TLista& rLista) {
        std::string sTexto;
        for (const SIntegracaoTransportada& r : rLista)
            sTexto += r.dados.regDmc.ToString() + " tipo " + std::to_string(static_cast<int>(r.eTipo)) +
                      " no índice " + std::to_string(r.ulPosicaoIndice) + "; ";
        return sTexto;
    }
    // "N": new, "J" was there already, "C" conflict, "L" gap, "B" key of the bank; "!" a failure.
    static std::string Importa(const TLista& rLista) {
        CBaseMiddleware loja;
        EXPECT_EQ(XVInicializa(loja), S_OK);
        std::string sTexto;
        for (const SIntegracaoTransportada& r : rLista) {
            EImportada eImportada = EImportada::eNova;
            const HRESULT hr = loja.ImportaIntegracao(r, &eImportada);
            sTexto += FAILED(hr) ? '!' : "NJCLB"[static_cast<int>(eImportada)];
        }
        EXPECT_EQ(loja.Finaliza(), S_OK);
        return sTexto;
    }

    TLista m_lista;
};

TEST_F(Transporte, OutraLojaFicaIgualECadaNovaDeixaSuaLinha) {
    EXPECT_EQ(Relata(m_lista),
              "20240313-1-1 tipo 0 no índice 1; 20240313-2-1 tipo 0 no índice 2; "
              "20240314-1-1 tipo 0 no índice 3; 20240315-1-1 tipo 0 no índice 4; "
              "20240315-2-1 tipo 1 no índice 0; 20240315-3-1 tipo 0 no índice 6; "
              "20240315-4-1 tipo 0 no índice 5; 20240315-5-1 tipo 2 no índice 0; ");
    const TRetratoLoja retrato = XVRetrataLoja(*Abre());
    m_registry.SetTexto(CAmbienteXV::GetChaveRegistry(XV_DF), "Path", "/outra");
    EXPECT_EQ(Importa(m_lista), "NNNNNNNN");
    const TLista obtida = Le();
    ASSERT_EQ(obtida.size(), m_lista.size());
    for (std::size_t i = 0; i < obtida.size(); ++i) {
        EXPECT_EQ(obtida[i].eTipo, m_lista[i].eTipo) << i;
        EXPECT_TRUE(obtida[i].dados == m_lista[i].dados) << i;
    }
    TRetratoLoja outro = XVRetrataLoja(*Abre());
    for (const auto& [sPergunta, sResposta] : retrato)
        if (sPergunta.starts_with("integracao ")) {
            EXPECT_EQ(outro[sPergunta], sResposta) << sPergunta;
        }
    const std::string sLog = LogGeral();
    std::string sEsperado = "Data\tHora\tEmpresa\tUsuario\tSessao\tServico\tTipoRegistro\tChave\tTexto\n";
    for (const SIntegracaoTransportada& r : m_lista)
        if (r.eTipo == ETipo::eInteira)
            sEsperado += "15/03/2024\t09:00:00\tMATRIZ\t7\t99\t1\t0\t0\tImportaIntegracao - DMCIntegracao: " +
                         r.dados.regDmc.ToString() + " - ChaveSistemaTerceiro: " +
                         std::to_string(r.dados.uiChaveIntegracaoSistemaTerceiro) +
                         " - DMCMovimentoOrigem: 20230102-5-2\n";
    EXPECT_EQ(sLog, sEsperado);
    TLista repetida = m_lista;
    EXPECT_EQ(Importa(repetida), "JJJJJJJJ");
    for (SIntegracaoTransportada& r : repetida) r.dados.ulPonteiroFilial += 1;
    EXPECT_EQ(Importa(repetida), "CCCCCCCC");
    repetida = m_lista;
    repetida[7].eTipo = ETipo::eSubstituida;
    EXPECT_EQ(Importa({repetida[7]}), "C") << "the same in all but what is known of it";
    SIntegracaoTransportada nova = m_lista[1];
    nova.dados.regDmc = {XVChaveDmc(k_uiHoje, m_lista.size())};
    EXPECT_EQ(Importa({nova}), "L");
    nova.dados.regDmc = {XVChaveDmc(k_uiHoje, 6)};
    nova.dados.eSistemaIntegracao = OfficialBank;
    nova.dados.uiChaveIntegracaoSistemaTerceiro = 500;
    EXPECT_EQ(Importa({nova}), "B");
    EXPECT_EQ(LogGeral(), sLog) << "what was not recorded is not told";
    EXPECT_EQ(XVDiferenca(outro, XVRetrataLoja(*Abre())), "");
}

TEST_F(Transporte, OQueALojaNaoPoderiaTerGravadoERecusado) {
    const std::function<void(SIntegracaoTransportada&)> aMudancas[] = {
        [](auto& r) { r.dados.regDmc = {}; },
        [](auto& r) { r.dados.regDmc = {XVChaveDmc(k_uiHoje, 6, 2)}; },
        [](auto& r) { r.dados.regDmcIntegracaoOrigem = {~XVUInt64{0}}; },
        [](auto& r) { r.dados.regDmcMovimentoOrigem = {~XVUInt64{0}}; },
        [](auto& r) { r.dados.regDataHoraInclusao = {~XVUInt64{0}}; },
        [](auto& r) { r.dados.regDataHoraAlteracaoStatus = {~XVUInt64{0}}; },
        [](auto& r) { r.dados.eTipoIntegracao = 999; },
        [](auto& r) { r.dados.eStatusIntegracao = 999; },
        [](auto& r) { r.dados.eSistemaIntegracao = 999; },
        [](auto& r) { r.dados.eTipoTransacao = 999; },
        [](auto& r) { r.dados.uiChaveRegistroSistemaTerceiro = 1; },
        [](auto& r) { r.dados.sRegistroJSON += '\0'; },
        [](auto& r) { r.dados.sMensagemIntegracao += '\0'; },
        [](auto& r) { r.dados.sJSONRetornoIntegracao += '\0'; },
        // Where the index does not know it, it has nothing that only the index tells.
        [](auto& r) {
            r.eTipo = ETipo::eSubstituida;
            r.dados.eSistemaIntegracao = r.dados.eStatusIntegracao = 0;
        },
        [](auto& r) {
            r.eTipo = ETipo::eVaga;
            r.dados.eSistemaIntegracao = 0;
            r.dados.uiChaveIntegracaoSistemaTerceiro = 0;
        },
        [](auto& r) {
            r.eTipo = ETipo::eSubstituida;
            r.dados.eStatusIntegracao = 0;
            r.dados.uiChaveIntegracaoSistemaTerceiro = 0;
        },
    };
    SIntegracaoTransportada nova = m_lista[0];
    nova.dados.regDmc = {XVChaveDmc(k_uiHoje, 6)};
    EXPECT_TRUE(XVPodeSerImportada(nova));
    const auto antes = m_Arquivos.Retrata();
    unsigned i = 0;
    for (const auto& fn : aMudancas) {
        SIntegracaoTransportada mudada = nova;
        fn(mudada);
        SCOPED_TRACE(i++);
        EXPECT_FALSE(XVPodeSerImportada(mudada));
        EXPECT_EQ(Importa({mudada}), "!");
    }
    EXPECT_EQ(CXVSistemaArquivosMemoria::Diferenca(antes, m_Arquivos.Retrata()), "");
    EXPECT_EQ(Importa({nova}), "N");
}

}  // namespace
