// Contents that tell to whom they belong: every part of a text carries the number of its integration and the
// kind of the text, so that not even a fragment can stand under a strange key unseen.
#pragma once

#include <cstdio>

#include "tests/harness/XVSorteio.h"
#include "tests/middleware/XVCenarioLoja.h"

// The three texts of an integration.
inline constexpr char k_cDonoJSON = 'J';
inline constexpr char k_cDonoMensagem = 'M';
inline constexpr char k_cDonoRetorno = 'R';

inline constexpr std::size_t k_uiMaiorTexto = 3000;

namespace XVMarcaDeDono {

inline constexpr std::size_t k_uiTrecho = 64;
inline constexpr std::size_t k_uiMarca = 10;

inline std::string Marca(unsigned uiDono, char cTipo) {
    char sz[k_uiMarca + 8];
    std::snprintf(sz, sizeof(sz), "[%07u%c]", uiDono, cTipo);
    return sz;
}

inline bool EhMarca(const std::string& sTexto, std::size_t ui) {
    return ui + k_uiMarca <= sTexto.size() && sTexto[ui] == '[' && sTexto[ui + k_uiMarca - 1] == ']' &&
           std::all_of(sTexto.begin() + static_cast<std::ptrdiff_t>(ui) + 1,
                       sTexto.begin() + static_cast<std::ptrdiff_t>(ui + k_uiMarca) - 2,
                       [](char c) { return c >= '0' && c <= '9'; });
}

inline std::string MarcaAlheia(const std::string& sTexto, unsigned uiDono, char cTipo) {
    const std::string sMarca = Marca(uiDono, cTipo);
    for (std::size_t ui = sTexto.find('['); ui != std::string::npos; ui = sTexto.find('[', ui + 1))
        if (EhMarca(sTexto, ui) && sTexto.compare(ui, k_uiMarca, sMarca) != 0)
            return "a text shows " + sTexto.substr(ui, k_uiMarca) + " for " + sMarca;
    return {};
}

inline XVUInt IdentidadeDaChave(XVUInt eTipo, XVUInt eSistema, XVUInt eData) {
    return eTipo * 10 + eSistema / 8 * 3 + eData;
}

}  // namespace XVMarcaDeDono

// A text of 0 to uiMaior bytes of any value but NUL, with a mark "[nnnnnnnX]" in each 64 of them.
inline std::string XVTextoComDono(unsigned uiDono, char cTipo, CXVSorteio& rSorteio,
                                  std::size_t uiMaior = k_uiMaiorTexto) {
    const std::size_t aLimites[] = {1, 40, 600, uiMaior + 1};
    const std::size_t uiTamanho = rSorteio.Ate(aLimites[rSorteio.Ate(4)]);
    const std::string sMarca = XVMarcaDeDono::Marca(uiDono, cTipo);
    std::string sTexto;
    while (sTexto.size() < uiTamanho) {
        if (sTexto.size() % XVMarcaDeDono::k_uiTrecho == 0) sTexto += sMarca;
        const char c = static_cast<char>(1 + rSorteio.Ate(255));
        sTexto += c == '[' ? '(' : c;  // marks alone begin with it
    }
    return sTexto;
}

// An input record all of whose fields and texts belong to uiDono. OfficialBank ones share one external key.
inline CXVIntegracaoTeste XVIntegracaoComDono(unsigned uiDono, XVUInt eSistema, XVUInt eStatus,
                                              CXVSorteio& rSorteio, std::size_t uiMaior = k_uiMaiorTexto) {
    CXVIntegracaoTeste integracao(eSistema == OfficialBank ? 500 : 1000 + uiDono, eSistema, eStatus);
    integracao.reg.uiBaseDadosTerceiro = uiDono;
    integracao.reg.ulPonteiroFilial = uiDono;
    integracao.reg.ulPonteiroUsuarioInclusao = uiDono;
    std::string sJSON = XVTextoComDono(uiDono, k_cDonoJSON, rSorteio, uiMaior);
    std::string sMensagem = XVTextoComDono(uiDono, k_cDonoMensagem, rSorteio, uiMaior);
    std::string sRetorno = XVTextoComDono(uiDono, k_cDonoRetorno, rSorteio, uiMaior);
    integracao.Textos(std::move(sJSON), std::move(sMensagem), std::move(sRetorno));
    return integracao;
}

// What in an integration that was read belongs to somebody else; empty: nothing. Bytes that belong to nobody
// (zeros that a device left) are no fault here.
inline std::string XVConteudoAlheio(const SIntegracaoLida& rLida, unsigned uiDono) {
    const tagREG_CR_INTEGRACAO_MIDDLEWAREPS& reg = rLida.reg;
    for (const XVUInt64 uiCampo :
         {reg.uiBaseDadosTerceiro, XVUInt64{reg.ulPonteiroFilial}, XVUInt64{reg.ulPonteiroUsuarioInclusao}})
        if (uiCampo != 0 && uiCampo != uiDono)
            return "a field shows " + std::to_string(uiCampo) + " for " + std::to_string(uiDono);
    const XVUInt64 uiChave = reg.uiChaveIntegracaoSistemaTerceiro;
    if (uiChave != 0 && uiChave != 500 && uiChave != 1000 + XVUInt64{uiDono})
        return "the key shows " + std::to_string(uiChave) + " for " + std::to_string(uiDono);
    std::string sAlheia = XVMarcaDeDono::MarcaAlheia(rLida.sJSON, uiDono, k_cDonoJSON);
    if (sAlheia.empty()) sAlheia = XVMarcaDeDono::MarcaAlheia(rLida.sMensagem, uiDono, k_cDonoMensagem);
    if (sAlheia.empty()) sAlheia = XVMarcaDeDono::MarcaAlheia(rLida.sRetorno, uiDono, k_cDonoRetorno);
    return sAlheia;
}

// The same for the key map and the date-times: their values are made from their keys.
inline XVUInt64 XVIdDoRegistro(unsigned uiRegistro, unsigned uiVersao) {
    return uiRegistro * 1000 + uiVersao % 1000;
}
inline bool XVEhIdDoRegistro(XVUInt64 uiId, unsigned uiRegistro) {
    return uiId / 1000 == uiRegistro;
}
inline REG_XVDMAHMSUTC XVDataHoraDaChave(XVUInt eTipo, XVUInt eSistema, XVUInt eData, unsigned uiVersao) {
    return REG_XVDMAHMSUTC::Cria(
        REG_XVDMA::Cria(2024, 3, 15),
        uiVersao % 80 * 1000 + XVMarcaDeDono::IdentidadeDaChave(eTipo, eSistema, eData));
}
inline bool XVEhDataHoraDaChave(REG_XVDMAHMSUTC reg, XVUInt eTipo, XVUInt eSistema, XVUInt eData) {
    return reg.GetSegundos() % 1000 == XVMarcaDeDono::IdentidadeDaChave(eTipo, eSistema, eData);
}
