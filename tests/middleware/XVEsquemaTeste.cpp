// What the store leaves on disk, byte for byte.
#include "tests/middleware/XVCenarioLoja.h"

namespace {

using CXVEsquemaTeste = CXVCenarioLoja;

TEST_F(CXVEsquemaTeste, TodosOsArquivosDeUmaLojaComUmRegistroDeCada) {
    CXVIntegracaoTeste integracao(0x1122334455667788ULL, Mercos, eXVSMiddleware_Sucesso);
    integracao.Textos("{\"pão\":1}", "aceito", "{\"id\":9}");
    integracao.reg.regDmcIntegracaoOrigem = {XVChaveDmc(XVDma(2022, 12, 31), 3)};
    integracao.reg.regDataHoraAlteracaoStatus = {XVDataHora(XVDma(2024, 2, 29), 23, 59)};
    integracao.reg.uiBaseDadosTerceiro = 0x0102030405060708ULL;
    integracao.reg.ulPonteiroFilial = 11;
    integracao.reg.ulPonteiroUsuarioInclusao = 12;
    integracao.reg.ulPonteiroUsuarioCancelamento = 13;
    integracao.reg.cReconsultarIdTerceiros = 1;
    integracao.reg.ucTipoPonteiroAuxiliar = 5;
    integracao.reg.ulPonteiroAuxiliar = 0xA1B2C3D4;
    integracao.reg.uiChaveRegistroSistemaTerceiro = 999;  // stored nowhere
    const XVUInt64 uiDmc = XVChaveDmc(k_uiHoje, 1);
    const XVUInt64 uiRegistro = XVChaveDmc(k_uiHoje, 4, 2);
    const auto vazio = m_Arquivos.Retrata();
    {
        const TLoja pLoja = Abre();
        EXPECT_EQ(Grava(*pLoja, integracao).uiValor, uiDmc);
        EXPECT_EQ(pLoja->GravaChaveRegistroTelvoParaTerceiro({77, {uiRegistro}, 3, 6, 16, {}}), S_OK);
        EXPECT_EQ(pLoja->GravaDataHoraIntegracaoTerceiro({{XVDataHora(k_uiHoje, 8)}, 9, 2, 1, {}}), S_OK);
    }
    CXVBytes registro = CXVBytes().U64(XVChaveDmc(XVDma(2022, 12, 31), 3));
    registro.U64(XVChaveDmc(XVDma(2023, 1, 2), 5, 2)).U64(XVDataHora(k_uiHoje, 12));
    registro.U64(XVDataHora(XVDma(2024, 2, 29), 23, 59)).U64(0x0102030405060708ULL);
    registro.U32(9).U32(1).U32(1).U32(1).U32(1).U32(11).U32(12).U32(13);
    registro.U8(1).U8(5).U32(0xA1B2C3D4).Zeros(10);
    const std::pair<std::string, CXVBytes> aDados[] = {
        {"CRINTEGMID20240315.dat", registro},
        {"CRINDEXINTEG.dat", CXVBytes().U64(0x1122334455667788ULL).U64(uiDmc).U32(16).U32(3)},
        {"CRINTEGMIDJSON20240315.dat", CXVBytes().Texto("{\"pão\":1}")},
        {"CRINTEGMIDMENS20240315.dat", CXVBytes().Texto("aceito")},
        {"CRINTEGMIDJSONRET20240315.dat", CXVBytes().Texto("{\"id\":9}")},
        {"CRCHAVEREGTER.dat", CXVBytes().U64(77).U64(uiRegistro).U64(3).U32(6).U32(16).U64(0)},
        {"CRDTHRINTEG.dat", CXVBytes().U64(XVDataHora(k_uiHoje, 8)).U32(9).U32(2).U32(1).Zeros(12)}};
    const auto obtido = RetratoSemLogs();
    m_Arquivos.Restaura(vazio);
    const auto poe = [&](const std::string& sNome, const std::string& sBytes) {
        m_Arquivos.CriaArquivo(PastaDados(sNome), sBytes);
    };
    // Stamped by the recording and by the closing.
    for (const auto& [sNome, dados] : aDados) poe(sNome, XVArquivoDoTeste({sNome, 2}, dados.Str()));
    // Made by the conversion of an empty store, and the only one that was there when it was opened.
    poe("CRMIDDLEWAREVS.dat",
        XVArquivoDoTeste({"CRMIDDLEWAREVS.dat", 4, 5, 65535}, CXVBytes().U16(5).Zeros(14).Str()));
    poe("XVDATABASE_FILE_CTRL.dat", CXVBytes().Texto("CRMIDDLEWAREVS.dat"));
    EXPECT_EQ(m_Arquivos.Diferenca(RetratoSemLogs(), obtido), "");
}

}  // namespace
