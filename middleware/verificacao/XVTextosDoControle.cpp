#include "middleware/verificacao/XVTextosDoControle.h"

#include <cstring>

#include "core/xvdatabase/XVNomeArquivo.h"

namespace {
constexpr XVUInt64 k_uiMaximo = 64U << 20;  // bytes: names of a thousand years
}

HRESULT XVTextosDoControle::Le(CXVLeituraLoja& rLeitura, std::vector<std::string>* plistaNomes,
                               bool* pbPartida) {
    SArquivoLoja arquivo;
    std::string sBytes;
    HRESULT hr = rLeitura.Descreve(std::string(XVDATABASE_NOME_ARQUIVO_CONTROLE_CRIACAO_ARQUIVOS), &arquivo);
    *pbPartida = arquivo.uiTamanho > k_uiMaximo;
    if (SUCCEEDED(hr) && !*pbPartida)
        hr = rLeitura.Percorre(arquivo, arquivo.uiTamanho, [&](XVUInt64, std::span<const char> aBytes) {
            sBytes.append(aBytes.data(), aBytes.size());
        });
    std::string_view sResto = sBytes;
    while (!sResto.empty() && !*pbPartida) {
        XVUInt ulTamanho = 0;
        std::memcpy(&ulTamanho, sResto.data(), std::min(sizeof(ulTamanho), sResto.size()));
        *pbPartida = sResto.size() < sizeof(ulTamanho) || ulTamanho > sResto.size() - sizeof(ulTamanho);
        if (*pbPartida) break;
        plistaNomes->emplace_back(sResto.substr(sizeof(ulTamanho), ulTamanho));
        sResto.remove_prefix(sizeof(ulTamanho) + ulTamanho);
    }
    return hr;
}
