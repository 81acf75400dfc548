#include "tools/xvcr/logs/XVLogGeral.h"

#include <algorithm>
#include <charconv>

#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigosArquivo.h"
#include "support/values/XVCrc64.h"
#include "tools/xvcr/text/XVErros.h"

namespace {

constexpr std::string_view k_sInicioNome = "XVLogGeral_";
constexpr std::string_view k_sFimNome = ".log";

// What stands between a label and the next blank.
std::string_view Campo(std::string_view sTexto, std::string_view sRotulo) {
    const std::size_t uiOnde = sTexto.find(sRotulo);
    if (uiOnde == std::string_view::npos) return {};
    sTexto.remove_prefix(uiOnde + sRotulo.size());
    return sTexto.substr(0, sTexto.find(' '));
}

// The position of a month; of one that is new, its beginning, and those are given up that were read to their
// ends before.
std::size_t GetPosicao(XVUInt ulAnoMes, CPosicoesLog* pPosicoes) {
    auto it = std::lower_bound(pPosicoes->begin(), pPosicoes->end(), ulAnoMes,
                               [](const SPosicaoLog& r, XVUInt ul) { return r.ulAnoMes < ul; });
    if (it == pPosicoes->end() || it->ulAnoMes != ulAnoMes)
        it = pPosicoes->insert(it, {.ulAnoMes = ulAnoMes});
    auto uiQual = static_cast<std::size_t>(it - pPosicoes->begin());
    for (; uiQual > 0 && pPosicoes->size() > k_uiMesesGuardados; --uiQual)
        pPosicoes->erase(pPosicoes->begin());
    return uiQual;
}

[[noreturn]] void FichaNaoServe(const std::string& sArquivo, const char* pszPorque) {
    XVFalha("o token não vale mais: o log \"" + sArquivo + "\" " + pszPorque +
            "; comece de novo, sem o token, com --desde-o-inicio");
}

SPosicaoLog Posicao(XVUInt ulAnoMes, XVUInt64 uiInicio, std::string_view sLinha) {
    return {ulAnoMes, uiInicio, uiInicio + sLinha.size(), XVCrc64(sLinha.data(), sLinha.size())};
}

}  // namespace

// The columns are counted from the end, for the line may begin with what is left of another one.
bool SLinhaLogGeral::Le(std::string_view sLinha, SLinhaLogGeral* pLinha) {
    constexpr std::size_t k_uiColunas = 9;
    if (std::count(sLinha.begin(), sLinha.end(), '\t') < static_cast<std::ptrdiff_t>(k_uiColunas) - 1)
        return false;
    const std::string_view sTexto = sLinha.substr(sLinha.rfind('\t') + 1);
    REG_XVDMC regDmc;
    if (!REG_XVDMC::DeString(Campo(sTexto, " - DMCIntegracao: "), &regDmc) || !regDmc.EhDeIntegracao())
        return false;
    pLinha->regDmc = regDmc;
    pLinha->bNova = sTexto.starts_with("GravaInternalIntegracao ");
    return true;
}

std::string CXVLogGeral::GetCaminho(XVUInt ulAnoMes) const {
    return XVPlataforma::SistemaArquivos().Junta(
        m_sDiretorio, std::string(k_sInicioNome) + std::to_string(ulAnoMes) + std::string(k_sFimNome));
}

std::vector<XVUInt> CXVLogGeral::ListaMeses() const {
    std::vector<std::string> listaNomes;
    if (const CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Lista(
            m_sDiretorio, std::string(k_sInicioNome) + "??????" + std::string(k_sFimNome), listaNomes);
        !erro.Ok())
        XVFalha("\"" + m_sDiretorio + "\": " + XVDescreveFalha(XVCodigoArquivo(erro)));
    std::vector<XVUInt> listaMeses;
    for (const std::string& rNome : listaNomes) {
        const char* pszMes = rNome.data() + k_sInicioNome.size();
        const char* pszFim = rNome.data() + rNome.size() - k_sFimNome.size();
        XVUInt ulAnoMes = 0;
        const auto lido = std::from_chars(pszMes, pszFim, ulAnoMes);
        if (lido.ec == std::errc() && lido.ptr == pszFim) listaMeses.push_back(ulAnoMes);
    }
    std::sort(listaMeses.begin(), listaMeses.end());
    return listaMeses;
}

// The bytes of a range, those of it that the file has.
std::string CXVLogGeral::LeBytes(XVUInt ulAnoMes, XVUInt64 uiInicio, XVUInt64 uiFim,
                                 XVUInt64* puiTamanho) const {
    std::unique_ptr<IXVArquivo> pArquivo;
    const std::string sCaminho = GetCaminho(ulAnoMes);
    std::string sBytes;
    CXVErroArquivo erro = XVPlataforma::SistemaArquivos().Abre(sCaminho, k_aberturaConsulta, pArquivo);
    if (erro.Ok()) erro = pArquivo->GetTamanho(*puiTamanho);
    uiFim = std::min(uiFim, *puiTamanho);
    if (erro.Ok() && uiInicio < uiFim) {
        sBytes.resize(static_cast<std::size_t>(uiFim - uiInicio));
        erro = pArquivo->Le(uiInicio, sBytes.data(), sBytes.size());
    }
    if (!erro.Ok()) XVFalha("\"" + sCaminho + "\": " + XVDescreveFalha(XVCodigoArquivo(erro)));
    return sBytes;
}

CPosicoesLog CXVLogGeral::GetFim() const {
    CPosicoesLog listaPosicoes;
    std::vector<XVUInt> listaMeses = ListaMeses();
    if (listaMeses.size() > k_uiMesesGuardados) listaMeses.erase(listaMeses.begin(), listaMeses.end() - 2);
    for (const XVUInt ulAnoMes : listaMeses) {
        XVUInt64 uiTamanho = 0;
        LeBytes(ulAnoMes, 0, 0, &uiTamanho);
        const XVUInt64 uiInicio = uiTamanho - std::min(uiTamanho, 2 * SPosicaoLog::k_uiMaiorLinha);
        const std::string sFim = LeBytes(ulAnoMes, uiInicio, uiTamanho, &uiTamanho);
        const std::size_t uiUltimo = sFim.rfind('\n');
        if (uiUltimo == std::string::npos) {
            if (uiInicio > 0) XVFalha("\"" + GetCaminho(ulAnoMes) + "\": não é um log geral");
            listaPosicoes.push_back({.ulAnoMes = ulAnoMes});
            continue;
        }
        const std::size_t uiAntes = uiUltimo == 0 ? std::string::npos : sFim.rfind('\n', uiUltimo - 1);
        const std::size_t uiLinha = uiAntes == std::string::npos ? 0 : uiAntes + 1;
        listaPosicoes.push_back(Posicao(ulAnoMes, uiInicio + uiLinha,
                                        std::string_view(sFim).substr(uiLinha, uiUltimo + 1 - uiLinha)));
    }
    return listaPosicoes;
}

// The last log may not be gone, for nobody knows what else stood in it. One before it was read to its end.
void CXVLogGeral::ConfereMeses(const std::vector<XVUInt>& listaMeses, const CPosicoesLog& rPosicoes) const {
    for (const SPosicaoLog& rPosicao : rPosicoes) {
        const bool bExiste = std::binary_search(listaMeses.begin(), listaMeses.end(), rPosicao.ulAnoMes);
        if (!bExiste && &rPosicao == &rPosicoes.back())
            FichaNaoServe(GetCaminho(rPosicao.ulAnoMes), "não existe mais");
    }
}

// The names are listed before a file is read to its end: a month that has a successor is then complete.
bool CXVLogGeral::LeParte(CPosicoesLog* pPosicoes, std::vector<SLinhaLogGeral>* pLinhas) const {
    pLinhas->clear();
    const std::vector<XVUInt> listaMeses = ListaMeses();
    ConfereMeses(listaMeses, *pPosicoes);
    const XVUInt ulPrimeiro = pPosicoes->empty() ? 0 : pPosicoes->front().ulAnoMes;
    for (const XVUInt ulAnoMes : listaMeses) {
        if (ulAnoMes < ulPrimeiro) continue;
        if (LeArquivo(GetPosicao(ulAnoMes, pPosicoes), pPosicoes, pLinhas)) return true;
    }
    return false;
}

bool CXVLogGeral::LeArquivo(std::size_t uiQual, CPosicoesLog* pPosicoes,
                            std::vector<SLinhaLogGeral>* pLinhas) const {
    SPosicaoLog& rPosicao = (*pPosicoes)[uiQual];
    const SPosicaoLog lida = rPosicao;
    XVUInt64 uiTamanho = 0;
    const std::string sBytes =
        LeBytes(lida.ulAnoMes, lida.uiLinha, lida.uiFim + SPosicaoLog::k_uiMaiorLinha, &uiTamanho);
    const auto uiLida = static_cast<std::size_t>(lida.uiFim - lida.uiLinha);
    if (sBytes.size() < uiLida) FichaNaoServe(GetCaminho(lida.ulAnoMes), "foi cortado ou trocado");
    if (XVCrc64(sBytes.data(), uiLida) != lida.uiSoma) FichaNaoServe(GetCaminho(lida.ulAnoMes), "é outro");
    std::size_t uiLinha = uiLida;
    for (std::size_t uiFim = 0; (uiFim = sBytes.find('\n', uiLinha)) != std::string::npos;
         uiLinha = uiFim + 1) {
        const auto sLinha = std::string_view(sBytes).substr(uiLinha, uiFim + 1 - uiLinha);
        rPosicao = Posicao(lida.ulAnoMes, lida.uiLinha + uiLinha, sLinha);
        if (SLinhaLogGeral linha; SLinhaLogGeral::Le(sLinha.substr(0, sLinha.size() - 1), &linha)) {
            linha.depois = *pPosicoes;
            pLinhas->push_back(std::move(linha));
        }
    }
    if (uiLinha == uiLida && sBytes.size() - uiLida == SPosicaoLog::k_uiMaiorLinha)
        XVFalha("\"" + GetCaminho(lida.ulAnoMes) + "\": não é um log geral");
    return uiLinha > uiLida;
}
