// The header as it lies on disk: every field at its offset, at creation and after writes.
#include "platform/XVAmbienteSO.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

const REG_TESTE k_reg{1, 2, 3};

std::string DataHora(int iDia, int iMes, XVUShort usAno, int iHora, int iMinuto, int iSegundo) {
    std::string s(8, '\0');
    s[0] = static_cast<char>(iDia);
    s[1] = static_cast<char>(iMes);
    Poe(s, 2, usAno);
    s[4] = static_cast<char>(iHora);
    s[5] = static_cast<char>(iMinuto);
    s[6] = static_cast<char>(iSegundo);
    return s;
}

class CabecalhoConteudo : public CXVCenarioBanco {
  protected:
    // Opens the file, writes one record and gives what stands on disk then.
    std::string Grava(const std::string& sNome) {
        TXVBanco<CXVFileTeste> banco(sNome);
        EXPECT_EQ(Abre(banco), S_OK);
        XVUInt uiPosicao = 0;
        EXPECT_EQ(banco->Grava(uiPosicao, k_reg), S_OK);
        return Le(sNome);
    }
};

TEST_F(CabecalhoConteudo, TodosOsCamposDoArquivoNovoEDaPrimeiraGravacao) {
    TXVBanco<CXVFileTeste> banco("A.dat");
    ASSERT_EQ(banco->AbreArquivo(eModoLeituraGravacaoCriacao), E_INVALIDARG)
        << "no company before Inicializa";
    ASSERT_EQ(Abre(banco), S_OK);
    ASSERT_EQ(banco->AbreArquivo(eModoLeituraGravacaoCriacao), S_OK);
    const std::string sCriado = Le("A.dat");
    const std::string sAgora = DataHora(15, 3, 2024, 9, 0, 0);
    ASSERT_EQ(sCriado.size(), 240U);
    EXPECT_EQ(Campo<XVUShort>(sCriado, 0), 1);
    EXPECT_EQ(sCriado.substr(2, 6), std::string(6, '\0'));
    EXPECT_EQ(Campo<XVUInt64>(sCriado, 8), 0x54E979925CD0F10DULL);
    EXPECT_EQ(Campo<XVUInt64>(sCriado, 16), 0x53E7815838846436ULL);
    EXPECT_EQ(sCriado.substr(24, 24), sAgora + sAgora + sAgora);
    EXPECT_EQ(sCriado.substr(48, 16), std::string(16, '\0'));
    EXPECT_EQ(Campo<XVUInt64>(sCriado, 64), 216U);
    EXPECT_EQ(Campo<XVUInt64>(sCriado, 72), 0U);
    EXPECT_EQ(Campo<XVUInt64>(sCriado, 80), 0U);
    EXPECT_EQ(Campo<XVUInt64>(sCriado, 88), 99U);
    EXPECT_EQ(Campo<XVUInt>(sCriado, 96), 0U);
    EXPECT_EQ(Campo<XVUInt>(sCriado, 100), 7U);
    EXPECT_EQ(Campo<XVUShort>(sCriado, 104), 1);
    EXPECT_EQ(Campo<XVUShort>(sCriado, 106), 127);
    EXPECT_EQ(Campo<XVUShort>(sCriado, 108), 127);
    EXPECT_EQ(Campo<XVUShort>(sCriado, 110), 0);
    EXPECT_EQ(sCriado.substr(112, 24), std::string("A.dat") + std::string(19, '\0'));
    EXPECT_EQ(sCriado.substr(136, 48), std::string("MATRIZ") + std::string(42, '\0'));
    EXPECT_EQ(CampoTexto(sCriado, 184, 16), XVAmbienteSO::GetNomeComputador().substr(0, 15));
    EXPECT_EQ(sCriado.substr(200, 32), std::string(32, '\0'));
    EXPECT_EQ(Campo<XVUInt64>(sCriado, 232), CrcBitABit(sCriado.substr(24, 208)));

    m_Relogio.Avanca(61'000);
    XVUInt uiPosicao = 0;
    ASSERT_EQ(banco->Grava(uiPosicao, k_reg), S_OK);
    std::string sEsperado = sCriado + Bytes({k_reg});
    sEsperado.replace(24, 8, DataHora(15, 3, 2024, 9, 1, 1));
    Poe<XVUInt64>(sEsperado, 72, 16);
    Poe<XVUInt64>(sEsperado, 80, 1);
    FechaCrc(sEsperado);
    EXPECT_EQ(Le("A.dat"), sEsperado);
}

TEST_F(CabecalhoConteudo, EmpresaEComputadorMudadosGuardamOAnteriorEAHora) {
    std::string sAntigo = ArquivoComCabecalho("A.dat", "");
    PoeTexto(sAntigo, 136, "FILIAL");
    FechaCrc(sAntigo);
    Cria("A.dat", sAntigo);
    const std::string s = Grava("A.dat");
    EXPECT_EQ(CampoTexto(s, 136, 24), "MATRIZ");
    EXPECT_EQ(CampoTexto(s, 160, 24), "FILIAL");
    EXPECT_EQ(s.substr(48, 8), DataHora(15, 3, 2024, 9, 0, 0));
    EXPECT_EQ(CampoTexto(s, 200, 16), "OUTROPC");
    EXPECT_EQ(s.substr(56, 8), DataHora(15, 3, 2024, 9, 0, 0));
    EXPECT_EQ(s.substr(32, 16), std::string(16, '\0')) << "creation moments never change";
}

TEST_F(CabecalhoConteudo, CaixaDaEmpresaNaoEMudanca) {
    std::string sAntigo = ArquivoComCabecalho("A.dat", "");
    PoeTexto(sAntigo, 136, "Matriz");
    FechaCrc(sAntigo);
    Cria("A.dat", sAntigo);
    const std::string s = Grava("A.dat");
    EXPECT_EQ(CampoTexto(s, 136, 24), "Matriz");
    EXPECT_EQ(s.substr(160, 24), std::string(24, '\0'));
    EXPECT_EQ(s.substr(48, 8), std::string(8, '\0'));
}

TEST_F(CabecalhoConteudo, ContadorDeAtualizacoesDaAVolta) {
    std::string sAntigo = ArquivoComCabecalho("A.dat", "");
    Poe<XVUInt64>(sAntigo, 80, ~0ULL);
    Poe<XVUShort>(sAntigo, 110, 4);
    FechaCrc(sAntigo);
    Cria("A.dat", sAntigo);
    const std::string s = Grava("A.dat");
    EXPECT_EQ(Campo<XVUInt64>(s, 80), 0U);
    EXPECT_EQ(Campo<XVUShort>(s, 110), 5);
}

TEST_F(CabecalhoConteudo, NomeEEmpresaLongosGuardamOsUltimos23Caracteres) {
    const CXVDonoFixo dono("EMPRESA-COM-NOME-MUITO-MAIS-LONGO-0123456789");
    std::string sPasta;
    ASSERT_EQ(CAmbienteXV::GetPathDados(XV_DF, dono.GetEmpresa(), &sPasta), S_OK);
    ASSERT_TRUE(m_Arquivos.CriaDiretorio(sPasta).Ok());
    const std::string sNome = "INICIO_012345678901234567.dat";
    for (int i = 0; i < 2; ++i) {  // written, then validated by a second opening
        TXVBanco<CXVFileTeste> banco(sNome);
        ASSERT_EQ(banco.xvDB.Inicializa(&dono), S_OK);
        XVUInt uiPosicao = 0;
        ASSERT_EQ(banco->Grava(uiPosicao, k_reg), S_OK);
    }
    const std::string s = *m_Arquivos.LeConteudo(m_Arquivos.Junta(sPasta, sNome));
    EXPECT_EQ(s.substr(112, 24), sNome.substr(sNome.size() - 23) + '\0');
    EXPECT_EQ(s.substr(136, 24), std::string("AIS-LONGO-0123456789").insert(0, "O-M") + '\0');
    EXPECT_EQ(s.substr(160, 24), std::string(24, '\0')) << "the same company is no change";
}

TEST_F(CabecalhoConteudo, VersaoDoArquivoEGravadaUmaVez) {
    Cria("A.dat", ArquivoComCabecalho("A.dat", Bytes({k_reg})));
    TXVBanco<CXVFileTeste> banco("A.dat");
    ASSERT_EQ(Abre(banco), S_OK);
    m_Falhas.Limpa();
    EXPECT_EQ(banco->GravaVersaoArquivo(3), S_OK);
    EXPECT_EQ(banco->GravaVersaoArquivo(3), S_OK);
    EXPECT_EQ(Conta(EOperacaoArquivo::eGrava), 1U);
    EXPECT_EQ(Campo<XVUShort>(Le("A.dat"), 104), 3);
    EXPECT_EQ(LeRegistros("B.dat").size(), 0U);
    ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
    EXPECT_EQ(LeRegistros("A.dat"), std::vector{k_reg});
}

TEST_F(CabecalhoConteudo, FinalizarAtualizaOCabecalhoSomenteDoArquivoAlterado) {
    for (const bool bAltera : {false, true}) {
        const std::string sAntes = ArquivoComCabecalho("A.dat", "");
        Cria("A.dat", sAntes);
        TXVBanco<CXVFileTeste> banco("A.dat");
        ASSERT_EQ(Abre(banco), S_OK);
        XVUInt uiPosicao = 0;
        const std::vector<REG_TESTE> aRegistros(bAltera ? 1 : 0, {1, 2, 3});
        ASSERT_EQ(banco->GravaColecao(uiPosicao, aRegistros), S_OK);
        ASSERT_EQ(banco.xvDB.Finaliza(), S_OK);
        EXPECT_EQ(Campo<XVUInt64>(Le("A.dat"), 80), bAltera ? 2U : 0U);
        EXPECT_EQ(Le("A.dat") == sAntes, !bAltera);
    }
}

}  // namespace
