#include "middleware/verificacao/XVDiasDaLoja.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "core/xvdatabase/XVNomeArquivo.h"
#include "middleware/XVDataBase_CR_Middleware.h"

namespace {

std::set<XVUInt64> Dias(const CXVLeituraLoja& rLeitura) {
    std::set<XVUInt64> dias;
    for (const auto& [sMinusculo, sNome] : rLeitura.GetNomes())
        for (const char* pszPadrao : k_apszGrupos)
            if (const auto uiDia = XVNomeArquivo::NomeParaChave(sNome, pszPadrao)) dias.insert(*uiDia);
    return dias;
}

}  // namespace

bool XVTemDados(const CXVLeituraLoja& rLeitura) {
    return !Dias(rLeitura).empty() ||
           std::any_of(std::begin(k_apszArquivosUnicos), std::end(k_apszArquivosUnicos),
                       [&](const char* pszNome) { return rLeitura.TemNome(pszNome); });
}

std::vector<SDiaListado> XVListaDias(CXVLeituraLoja& rLeitura) {
    std::vector<SDiaListado> listaDias;
    for (const XVUInt64 uiDia : Dias(rLeitura)) {
        SArquivoLoja arquivo;
        XVIgnora(rLeitura.Descreve(XVNomeArquivo::ChaveParaNome(uiDia, k_pszArquivoIntegracao), &arquivo));
        listaDias.push_back({uiDia, static_cast<XVUInt>(arquivo.GetTamanhoDados() /
                                                        sizeof(REG_CR_INTEGRACAO_MIDDLEWARE_V2))});
    }
    return listaDias;
}

bool XVEhArquivoDaLoja(const std::string& sNome) {
    const auto igual = [&](const char* psz) { return XVIgualSemCaixa(sNome, psz); };
    return std::any_of(std::begin(k_apszArquivosUnicos), std::end(k_apszArquivosUnicos), igual) ||
           igual(k_pszArquivoVersao) || XVNomeArquivo::EhArquivoControle(sNome) ||
           std::any_of(std::begin(k_apszGrupos), std::end(k_apszGrupos),
                       [&](const char* psz) { return XVNomeArquivo::NomeParaChave(sNome, psz).has_value(); });
}
