// The header as it lies on disk: every field at its offset.
#include "platform/XVAmbienteSO.h"
#include "tests/xvdatabase/XVCabecalhoTeste.h"
#include "tests/xvdatabase/XVCenarioBanco.h"

namespace {

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

class CabecalhoConteudo : public CXVCenarioBanco {};

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
        TXVBanco<CXVFileTeste> banco("A.dat");
        ASSERT_EQ(Abre(banco), S_OK);
        XVUInt uiPosicao = 0;
        ASSERT_EQ(banco->Grava(uiPosicao, {1, 2, 3}), S_OK);
        EXPECT_EQ(Le("A.dat"), s + Bytes({{1, 2, 3}}));
    }
}

// Of a name longer than its field the end is kept, and is no change at the next write.
TEST_F(CabecalhoConteudo, EmpresaDeNomeLongoNaoMudaACadaGravacao) {
    const std::string sLonga = "COMERCIO_DE_FERRAGENS_DO_NORTE";
    const CXVDonoFixo dono(sLonga);
    REG_XVCABECALHO reg;
    XVCabecalho::Gera(reg, "A.dat", dono, 1, 0);
    XVCabecalho::Atualiza(reg.regB, dono, 16);
    EXPECT_EQ(reg.regB.szEmpresa, sLonga.substr(sLonga.size() - 23));
    EXPECT_STREQ(reg.regB.szEmpresaAnterior, "");
}

}  // namespace
