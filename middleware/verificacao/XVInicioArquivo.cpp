#include "middleware/verificacao/XVInicioArquivo.h"

#include "middleware/verificacao/XVExameTextos.h"
#include "support/codes/XVCodigos.h"

using XVInicioArquivo::EVale;

SArquivoLoja XVInicioArquivo::APartirDe(const SArquivoLoja& rArquivo, XVUInt64 uiInicio) {
    SArquivoLoja arquivo = rArquivo;
    const XVUInt64 uiTamanhoArquivo = rArquivo.uiInicio + rArquivo.uiTamanho;
    arquivo.uiInicio = std::min(uiInicio, uiTamanhoArquivo);
    arquivo.uiTamanho = uiTamanhoArquivo - arquivo.uiInicio;
    return arquivo;
}

void XVInicioArquivo::Poe(SArquivoLoja* pArquivo, EVale eDoInicio, EVale eDepoisDoCabecalho) {
    const bool bIlegivel = pArquivo->bInicioIlegivel;
    if (eDoInicio != eDepoisDoCabecalho) {
        *pArquivo = APartirDe(*pArquivo, eDoInicio > eDepoisDoCabecalho ? 0 : k_uiTamanhoCabecalho);
        if (!bIlegivel) pArquivo->hr = pArquivo->uiInicio == 0 ? S_OK : E_XVCR_CRC_CABECALHO_NAO_CONFERE;
        return;
    }
    *pArquivo = APartirDe(*pArquivo, 0);
    pArquivo->bInicioIncerto = pArquivo->uiTamanho > 0;
    if (!bIlegivel && pArquivo->bInicioIncerto) pArquivo->hr = E_XVCR_CRC_CABECALHO_NAO_CONFERE;
}

// Zeros are sixty empty texts as well as the remains of a header; of two chains that both reach the end the
// one counts that has no text fewer than the records name, and where both have, the header.
void XVDecideInicioDosTextos(CXVLeituraLoja& rLeitura, XVUInt ulMaior, SArquivoLoja* pArquivo) {
    if (!pArquivo->bSemSinal) return;
    const TSelos semSelos;
    EVale aeVale[2]{EVale::eNao, EVale::eNao};
    XVUInt64 auiTextos[2]{};
    for (const std::size_t i : {0U, 1U}) {
        const SArquivoLoja arquivo = XVInicioArquivo::APartirDe(*pArquivo, i == 0 ? 0 : k_uiTamanhoCabecalho);
        CXVExameTextos textos;
        XVIgnora(textos.Examina(rLeitura, arquivo, arquivo.uiTamanho, semSelos));
        auiTextos[i] = textos.GetQuantidade();
        const bool bCabe = i == 0 || arquivo.uiInicio == k_uiTamanhoCabecalho;
        aeVale[i] = bCabe && !textos.EstaPartida() ? EVale::eSim : EVale::eNao;
    }
    if (aeVale[0] == EVale::eSim && aeVale[1] == EVale::eSim)
        aeVale[auiTextos[1] >= ulMaior ? 0 : 1] = EVale::eTalvez;
    XVInicioArquivo::Poe(pArquivo, aeVale[0], aeVale[1]);
}
