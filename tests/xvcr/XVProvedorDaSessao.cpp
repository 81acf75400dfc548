#include "tests/xvcr/XVProvedorDaSessao.h"

#include <utility>

std::optional<std::string> CXVProvedorDaSessao::Faz(const std::string& sQual, std::istream& rPalavras) {
    std::string sOperacao;
    if (sQual == "chamadas") {
        std::string sTudo;
        for (const std::string& r : std::exchange(m_rGravador.listaChamadas, {})) sTudo += "| " + r + '\n';
        return sTudo;
    }
    if (sQual == "item") {
        SItemGravador item{};
        rPalavras >> item.reg.uiDmcOrigem >> item.reg.uiBaseDadosTerceiro >> item.reg.eSistemaIntegracao;
        if (rPalavras >> item.sJSON)
            m_rGravador.listaItens.push_back(item);
        else
            m_rGravador.listaItens.clear();
    } else if (sQual == "responde") {
        rPalavras >> sOperacao;
        SRespostaDados& r = m_rGravador.mapDados[sOperacao];
        r = {.bMuda = true};
        rPalavras >> r.reg.eStatusIntegracao >> r.reg.uiChaveIntegracaoSistemaTerceiro >> r.sMensagem;
    } else if (sQual == "falha") {
        int iVez = 0;
        rPalavras >> sOperacao >> iVez;
        SRespostaDados& r = m_rGravador.mapDados[sOperacao];
        r.fnDepois = [&r, iVez]() mutable {
            if (--iVez == 0) r.iResultado = static_cast<std::int32_t>(0x80990001U);
        };
    } else if (sQual == "documento") {
        SRespostaConsulta& r = m_rGravador.consulta;
        rPalavras >> r.eStatus >> r.sMensagem >> r.sJSON >> r.sDocumento;
    } else {
        return std::nullopt;
    }
    return "";
}
