// The header as it lies on disk: every field at its offset, at creation and after writes.
#include "platform/XVAmbienteSO.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

const REG_TESTE k_reg{1, 2, 3};
// This computer's name, as wide as the field.
const std::string k_sComputador = [] {
    std::string s = XVAmbienteSO::GetNomeComputador().substr(0, 15);
    s.resize(16);
    return s;
}();

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

// The header of a new file, and of one that was written to, whole.
TEST_F(CabecalhoConteudo, TodosOsCamposDoArquivoNovoEDaPrimeiraGravacao) {
    TXVBanco<CXVFileTeste> banco("A.dat");
    ASSERT_EQ(banco->AbreArquivo(eModoLeituraGravacaoCriacao), E_INVALIDARG)
        << "no company before Inicializa";
    ASSERT_EQ(Abre(banco), S_OK);
    ASSERT_EQ(banco->AbreArquivo(eModoLeituraGravacaoCriacao), S_OK);
    const std::string sAgora = DataHora(15, 3, 2024, 9, 0, 0);
    std::string sEsperado = ArquivoComCabecalho("A.dat", "");
    sEsperado.replace(24, 24, sAgora + sAgora + sAgora);
    Poe<XVUInt64>(sEsperado, 88, 99);
    Poe<XVUInt>(sEsperado, 100, 7);
    PoeTexto(sEsperado, 184, k_sComputador);
    FechaCrc(sEsperado);
    EXPECT_EQ(Le("A.dat"), sEsperado);

    m_Relogio.Avanca(61'000);
    XVUInt uiPosicao = 0;
    ASSERT_EQ(banco->Grava(uiPosicao, k_reg), S_OK);
    sEsperado.replace(24, 8, DataHora(15, 3, 2024, 9, 1, 1));
    Poe<XVUInt64>(sEsperado, 72, 16);
    Poe<XVUInt64>(sEsperado, 80, 1);
    FechaCrc(sEsperado);
    EXPECT_EQ(Le("A.dat"), sEsperado + Bytes({k_reg}));
}

// A file of another company, computer, user, session and system, and what one write makes of its header.
TEST_F(CabecalhoConteudo, CadaCampoDeUmArquivoAntigoMudaOuFica) {
    for (const bool bOutraEmpresa : {false, true}) {
        std::string s = ArquivoComCabecalho("A.dat", "");
        for (int i = 0; i < 5; ++i)
            s.replace(static_cast<std::size_t>(24 + 8 * i), 8,
                      DataHora(1 + i, 2 + i, 2011, 3 + i, 4 + i, 5 + i));
        Poe<XVUInt64>(s, 80, bOutraEmpresa ? ~0ULL : 41);
        Poe<XVUInt64>(s, 88, 55);
        Poe<XVUInt>(s, 100, 66);
        Poe<XVUShort>(s, 104, 3);
        Poe<XVUShort>(s, 106, 101);
        Poe<XVUShort>(s, 108, 102);
        Poe<XVUShort>(s, 110, 4);
        PoeTexto(s, 136, bOutraEmpresa ? "FILIAL" : "Matriz");
        PoeTexto(s, 160, "PRIMEIRA");
        PoeTexto(s, 200, "VELHOPC");
        FechaCrc(s);
        Cria("A.dat", s);
        const std::string sAgora = DataHora(15, 3, 2024, 9, 0, 0);
        s.replace(24, 8, sAgora);
        Poe<XVUInt64>(s, 72, 16);
        Poe<XVUInt64>(s, 80, bOutraEmpresa ? 0 : 42);
        Poe<XVUInt64>(s, 88, 99);
        Poe<XVUInt>(s, 100, 7);
        Poe<XVUShort>(s, 108, 127);
        if (bOutraEmpresa) {  // and the counter goes round
            Poe<XVUShort>(s, 110, 5);
            s.replace(48, 8, sAgora);
            PoeTexto(s, 136, "MATRIZ" + std::string(18, '\0') + "FILIAL" + std::string(18, '\0'));
        }
        s.replace(56, 8, sAgora);
        PoeTexto(s, 184, k_sComputador + "OUTROPC");
        FechaCrc(s);
        EXPECT_EQ(Grava("A.dat"), s + Bytes({k_reg}));
    }
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
