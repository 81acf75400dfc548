#include "tests/middleware/XVFabricaBases.h"

namespace {

constexpr std::uint64_t k_uiDia = XVDma(2023, 5, 1);

template <class TRegistro>
std::string Repete(unsigned uiQuantidade, TRegistro registro) {
    std::string s;
    for (unsigned i = 0; i < uiQuantidade; ++i) s += registro(i);
    return s;
}

constexpr unsigned k_uiMapa = 24;
constexpr unsigned k_uiDatas = 20;

}  // namespace

unsigned CXVFabricaBases::Renumerado(unsigned uiTipo) {
    // Spelled out: the table that the first users' data went through.
    static const std::map<unsigned, unsigned> tabela{{5, 2},   {7, 3},   {8, 4},   {9, 5},   {10, 6},
                                                     {11, 7},  {12, 8},  {13, 9},  {14, 10}, {15, 11},
                                                     {16, 12}, {17, 13}, {18, 14}, {19, 15}};
    const auto it = tabela.find(uiTipo);
    return it == tabela.end() ? uiTipo : it->second;
}

std::string CXVFabricaBases::NomeMembro(unsigned uiMembro) {
    const unsigned uiChave = 20230501 + uiMembro % 28 + uiMembro / 28 * 100;
    return "CRINTEGMID" + std::to_string(uiChave) + ".dat";
}

std::string CXVFabricaBases::Integracao(const SRegistroAntigo& rReg, unsigned uiVersao,
                                        bool bFilialComoBase) {
    const unsigned n = rReg.uiNumero;
    CXVBytes bytes;
    bytes.U64(n == 0 ? 0 : XVChaveDmc(k_uiDia, n)).U64(XVChaveDmc(0, n + 1, 2));
    bytes.U64(XVDataHora(k_uiDia, n % 24)).U64(XVDataHora(k_uiDia, n % 24, 30));
    if (uiVersao >= 3) bytes.U64(bFilialComoBase ? n + 40 : 0);
    bytes.U32(uiVersao >= 4 ? Renumerado(rReg.uiTipo) : rReg.uiTipo).U32(n % 4);
    bytes.U32(n + 10).U32(n + 20).U32(n % 2 == 0 ? 0 : n + 30).U32(n + 40).U32(n + 50).U32(n % 3);
    bytes.U8(n % 2);
    return uiVersao >= 3 ? bytes.U8(0).U32(0).Zeros(10) : bytes.Zeros(15);
}

std::string CXVFabricaBases::Chave(const SRegistroAntigo& rReg, unsigned uiVersao) {
    const unsigned n = rReg.uiNumero;
    CXVBytes bytes;
    bytes.U64(n % 5 == 0 ? 0 : 1000 + n).U64(XVChaveDmc(0, n + 1, 2));
    if (uiVersao >= 2) bytes.U64(0);
    bytes.U32(uiVersao >= 5 ? Renumerado(rReg.uiTipo) : rReg.uiTipo).U32(n % 2 == 0 ? 2 : 16);
    if (uiVersao >= 2) bytes.U64(0);
    return bytes;
}

std::string CXVFabricaBases::DataHora(const SRegistroAntigo& rReg, unsigned uiVersao) {
    return CXVBytes()
        .U64(XVDataHora(k_uiDia, rReg.uiNumero % 24))
        .U32(uiVersao >= 5 ? Renumerado(rReg.uiTipo) : rReg.uiTipo)
        .U32(8)
        .U32(1 + rReg.uiNumero % 2)
        .Zeros(12);
}

std::string CXVFabricaBases::Arquivo(const std::string& sNome, const std::string& sDados) const {
    return m_bCabecalho ? XVArquivoDoTeste({sNome, 3, 1, 5, 6}, sDados) : sDados;
}

TArquivos CXVFabricaBases::Cria(unsigned uiMembros, unsigned uiRegistros) const {
    TArquivos arquivos;
    const auto inclui = [&](const std::string& sNome, const std::string& sDados) {
        arquivos[sNome] = Arquivo(sNome, sDados);
    };
    std::string sIndex;
    for (unsigned m = 0; m < uiMembros; ++m) {
        inclui(NomeMembro(m), Repete(uiRegistros, [&](unsigned i) {
                   const unsigned n = m * uiRegistros + i;
                   return Integracao({Tipo(n), n}, m_uiVersao);
               }));
        const std::uint64_t uiChave = std::stoull(NomeMembro(m).substr(10, 8));
        for (unsigned i = 0; i < uiRegistros; ++i)
            sIndex += CXVBytes()
                          .U64(m * uiRegistros + i + 1)
                          .U64(XVChaveDmc(XVDma(static_cast<unsigned>(uiChave / 10000),
                                                static_cast<unsigned>(uiChave / 100 % 100),
                                                static_cast<unsigned>(uiChave % 100)),
                                          i + 1))
                          .U32(16)
                          .U32(1)
                          .Str();
    }
    inclui("CRINTEGMIDJSON20230501.dat", CXVBytes().Texto("{}").Texto("{\"a\":1}"));
    inclui("CRINTEGMIDMENS20230501.dat", CXVBytes().Texto("ok"));
    inclui("CRINTEGMIDJSONRET20230501.dat", CXVBytes().Texto("{\"r\":1}"));
    inclui("CRINDEXINTEG.dat", sIndex);
    inclui("CRCHAVEREGTER.dat", Repete(k_uiMapa, [&](unsigned i) {
               return Chave({Tipo(i), i}, m_uiVersao);
           }));
    inclui("CRDTHRINTEG.dat", Repete(k_uiDatas, [&](unsigned i) {
               return DataHora({Tipo(i), i}, m_uiVersao);
           }));
    if (m_uiVersao > 0) inclui("CRMIDDLEWAREVS.dat", CXVBytes().U16(m_uiVersao).Zeros(14));
    return arquivos;
}

TArquivos CXVFabricaBases::CriaComSujeira() const {
    TArquivos arquivos = Cria(2, 3);
    arquivos["CRINTEGMID20230601.dat"] = "";
    arquivos["CRINTEGMID20230602.dat"] = Arquivo("CRINTEGMID20230602.dat", "");
    arquivos.erase("CRDTHRINTEG.dat");
    arquivos["CRINTEGMIDJSONX1.dat"] = "nenhum membro";
    arquivos["CRINTEGMID2023060.dat"] = "curto";
    arquivos["CRINTEGMID20230603.datx"] = "extensao";
    arquivos["CRINTEGMIDMENS0101.dat"] = "letras";
    arquivos["CRINTEGMID20230501.tra"] = "metade de uma copia";
    arquivos["CRCHAVEREGTER.tra"] = "";
    arquivos["CRINTEGMID20230502.cab"] = "copia alheia";
    return arquivos;
}

TArquivos CXVFabricaBases::DadosConvertidos(unsigned uiMembros, unsigned uiRegistros,
                                            bool bFilialComoBase) const {
    TArquivos dados;
    const bool bFilial = bFilialComoBase && m_uiVersao < 3;
    for (unsigned m = 0; m < uiMembros; ++m)
        dados[NomeMembro(m)] = Repete(uiRegistros, [&](unsigned i) {
            const unsigned n = m * uiRegistros + i;
            return Integracao({Tipo(n), n}, 5, bFilial);
        });
    dados["CRCHAVEREGTER.dat"] = Repete(k_uiMapa, [&](unsigned i) { return Chave({Tipo(i), i}, 5); });
    dados["CRDTHRINTEG.dat"] = Repete(k_uiDatas, [&](unsigned i) { return DataHora({Tipo(i), i}, 5); });
    dados["CRMIDDLEWAREVS.dat"] = CXVBytes().U16(5).Zeros(14);
    return dados;
}
