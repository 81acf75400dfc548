#include "tools/xvcr/logs/XVFicha.h"

#include <charconv>
#include <cstdio>

#include "support/XVAmbiente.h"
#include "support/values/XVTextoDecimal.h"

namespace {

constexpr std::string_view k_sVersao = "1";

std::string_view Tira(std::string_view* psResto, char cFim) {
    const std::size_t uiFim = psResto->find(cFim);
    const std::string_view sParte = psResto->substr(0, uiFim);
    psResto->remove_prefix(uiFim == std::string_view::npos ? psResto->size() : uiFim + 1);
    return sParte;
}

template <class T>
bool LeNumero(std::string_view sTexto, T* pValor, int iBase = 10) {
    return std::from_chars(sTexto.data(), sTexto.data() + sTexto.size(), *pValor, iBase).ec == std::errc();
}

bool LePosicao(std::string_view sTexto, SPosicaoLog* pPosicao) {
    constexpr int k_iHexadecimal = 16;
    const bool bLida = LeNumero(Tira(&sTexto, '.'), &pPosicao->ulAnoMes) &&
                       LeNumero(Tira(&sTexto, '.'), &pPosicao->uiLinha) &&
                       LeNumero(Tira(&sTexto, '.'), &pPosicao->uiFim) &&
                       LeNumero(sTexto, &pPosicao->uiSoma, k_iHexadecimal);
    return bLida && pPosicao->uiLinha <= pPosicao->uiFim &&
           pPosicao->uiFim - pPosicao->uiLinha <= SPosicaoLog::k_uiMaiorLinha;
}

}  // namespace

std::string SFicha::ToString() const {
    std::string sTexto(k_sVersao);
    sTexto.append(":").append(sEmpresa);
    for (const SPosicaoLog& rPosicao : listaPosicoes) {
        sTexto += ':';
        for (const XVUInt64 uiValor : {XVUInt64{rPosicao.ulAnoMes}, rPosicao.uiLinha, rPosicao.uiFim}) {
            XVAnexaDecimal(sTexto, uiValor);
            sTexto += '.';
        }
        char szSoma[17];
        std::snprintf(szSoma, sizeof(szSoma), "%016llx", static_cast<unsigned long long>(rPosicao.uiSoma));
        sTexto += szSoma;
    }
    if (passagem.has_value()) {
        sTexto += ":p";
        XVAnexaDecimal(sTexto, *passagem);
    }
    return sTexto;
}

bool SFicha::DeString(std::string_view sTexto, SFicha* pFicha) {
    SFicha ficha;
    std::string_view sResto = sTexto;
    if (Tira(&sResto, ':') != k_sVersao) return false;
    ficha.sEmpresa = Tira(&sResto, ':');
    while (!sResto.empty()) {
        const std::string_view sParte = Tira(&sResto, ':');
        if (sParte.starts_with('p')) {
            if (!LeNumero(sParte.substr(1), &ficha.passagem.emplace())) return false;
        } else if (!LePosicao(sParte, &ficha.listaPosicoes.emplace_back())) {
            return false;
        }
    }
    const CPosicoesLog& rLista = ficha.listaPosicoes;
    const bool bEmOrdem = rLista.size() < 2 || rLista.front().ulAnoMes < rLista.back().ulAnoMes;
    if (rLista.size() > k_uiMesesGuardados || !bEmOrdem || !CAmbienteXV::EhEmpresaValida(ficha.sEmpresa) ||
        ficha.ToString() != sTexto)
        return false;
    *pFicha = std::move(ficha);
    return true;
}
