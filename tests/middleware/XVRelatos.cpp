#include "tests/middleware/XVRelatos.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "tests/harness/XVBytesBase.h"
#include "tests/harness/XVProcessoFilho.h"

namespace {

constexpr const char* k_pszControle = "XVDATABASE_FILE_CTRL.dat";

std::string Hexadecimal(XVUInt64 ui) {
    char szTexto[16];
    const auto [pFim, erro] = std::to_chars(std::begin(szTexto), std::end(szTexto), ui, 16);
    return {szTexto, pFim};
}

// Portuguese letters as they are, other bytes that are no characters by their numbers, runs by their length.
std::string Visivel(std::string_view s) {
    std::string sTexto;
    for (std::size_t i = 0; i < s.size();) {
        const auto uc = static_cast<unsigned char>(s[i]);
        std::size_t uiFim = std::min(s.find_first_not_of(s[i], i), s.size());
        if (uc == 0xC3 && i + 1 < s.size() && (s[i + 1] & 0xC0) == 0x80) {
            sTexto += s.substr(i, 2);
            i += 2;
            continue;
        }
        if (uiFim - i <= 4) uiFim = i + 1;
        sTexto += uc >= ' ' && uc < 0x7F ? std::string(1, s[i]) : '\\' + Hexadecimal(uc + 0x100U).substr(1);
        if (uiFim - i > 1) sTexto += '{' + std::to_string(uiFim - i) + '}';
        i = uiFim;
    }
    return sTexto;
}

std::string Diferenca(std::string_view sAntes, std::string_view sDepois) {
    const std::size_t uiMenor = std::min(sAntes.size(), sDepois.size());
    std::size_t uiDe = 0;
    while (uiDe < uiMenor && sAntes[uiDe] == sDepois[uiDe]) ++uiDe;
    std::size_t uiFim = 0;
    while (uiFim < uiMenor - uiDe && sAntes[sAntes.size() - 1 - uiFim] == sDepois[sDepois.size() - 1 - uiFim])
        ++uiFim;
    return " @" + std::to_string(uiDe) + " -" + std::to_string(sAntes.size() - uiFim - uiDe) + " +" +
           Visivel(sDepois.substr(uiDe, sDepois.size() - uiFim - uiDe));
}

bool TemCabecalho(const std::string& sNome) {
    return sNome.ends_with(".dat") && sNome != k_pszControle;
}

std::string Dados(const std::string& sNome, const std::string& sBytes) {
    return TemCabecalho(sNome) ? sBytes.substr(std::min<std::size_t>(240, sBytes.size())) : sBytes;
}

// Version first, the control itself not, each file once.
bool ControleConfere(const TBytesPorNome& rArquivos, std::string_view sBytes) {
    std::multiset<std::string> esperados;
    std::multiset<std::string> listados;
    for (const auto& [sNome, sConteudo] : rArquivos)
        if (TemCabecalho(sNome)) esperados.insert(sNome);
    const bool bVersaoNaFrente = sBytes.substr(0, sizeof(XVUInt) + 18).ends_with("CRMIDDLEWAREVS.dat");
    while (sBytes.size() >= sizeof(XVUInt)) {
        XVUInt ulTamanho = 0;
        std::memcpy(&ulTamanho, sBytes.data(), sizeof(ulTamanho));
        sBytes.remove_prefix(sizeof(ulTamanho));
        listados.emplace(sBytes.substr(0, ulTamanho));
        sBytes.remove_prefix(std::min<std::size_t>(ulTamanho, sBytes.size()));
    }
    return bVersaoNaFrente && sBytes.empty() && listados == esperados;
}

}  // namespace

std::string XVRelata(const SVerificacao& r) {
    std::ostringstream texto;
    texto << "verificação: " << r.uiIntegracoes << " integrações, " << r.uiInteiras << " inteiras, "
          << r.uiSubstituidas << " substituídas, " << r.uiDias << " dias, " << r.uiArquivos << " arquivos, "
          << r.uiBytes << " bytes, " << r.uiTextosMortos << " mortos de " << r.uiBytesMortos << " bytes, "
          << r.uiPosicoesVagas << " vagas, " << r.uiSelados << " selados\n";
    for (const SXVAchado& rAchado : r.listaAchados) {
        texto << "  " << XVDescreveAchado(rAchado.eTipo).pszNome << ' ' << rAchado.sArquivo << " dia "
              << rAchado.uiDia << " hr " << Hexadecimal(static_cast<XVUInt>(rAchado.hr)) << ' '
              << rAchado.uiQuantidade << " vez(es)";
        for (const SFaixa& rFaixa : rAchado.aFaixas) texto << ' ' << rFaixa.ulDe << '-' << rFaixa.ulAte;
        texto << (rAchado.sDetalhe.empty() ? "" : ": ") << rAchado.sDetalhe << '\n';
    }
    return texto.str();
}

std::string XVRelata(const SRecuperacao& r) {
    std::ostringstream texto;
    texto << "recuperação: " << r.uiInteiras << " inteiras, " << r.uiComFaltas << " com faltas, "
          << r.uiPerdidas << " perdidas, " << r.uiLancamentos << " lançamentos"
          << (r.TudoVoltou() ? ", tudo" : "") << '\n';
    for (const SIntegracaoRecuperada& rIntegracao : r.listaIntegracoes)
        texto << "  " << rIntegracao.regDmc.ToString() << (rIntegracao.bPerdida ? " perdida" : " com faltas")
              << " motivos " << Hexadecimal(rIntegracao.ulMotivos) << " chave "
              << (rIntegracao.uiChave ? std::to_string(*rIntegracao.uiChave) : "?") << '\n';
    for (const SBytesSeparados& rBytes : r.listaSeparados)
        texto << "  separados " << rBytes.sArquivo << ' ' << rBytes.uiOffset << ' ' << rBytes.uiBytes << '\n';
    for (const std::string& rNome : r.listaIlegiveis) texto << "  ilegível " << rNome << '\n';
    for (const std::string& rNome : r.listaIncompletos) texto << "  incompleto " << rNome << '\n';
    return texto.str();
}

std::string XVRelataMudancas(const TBytesPorNome& rAntes, const TBytesPorNome& rDepois) {
    std::string sTexto;
    for (const auto& [sNome, sBytes] : rDepois) {
        const unsigned uiVersao = sNome == "CRMIDDLEWAREVS.dat" ? 5 : 1;
        const std::string sDados = Dados(sNome, sBytes);
        const auto it = rAntes.find(sNome);
        const std::string sAntes = it == rAntes.end() ? std::string() : Dados(sNome, it->second);
        if (sNome == k_pszControle && !ControleConfere(rDepois, sBytes))
            sTexto += "  " + sNome + " lista outros\n";
        if (TemCabecalho(sNome) &&
            sBytes != XVArquivoDoTeste({.sNome = sNome, .uiVersaoArquivo = uiVersao}, sDados))
            sTexto += "  " + sNome + " tem outro cabeçalho\n";
        if (it == rAntes.end() || (sNome != k_pszControle && sDados != sAntes))
            sTexto += "  " + sNome + (it == rAntes.end() ? " é novo" : "") + Diferenca(sAntes, sDados) + '\n';
    }
    for (const auto& [sNome, sBytes] : rAntes)
        if (!rDepois.contains(sNome)) sTexto += "  " + sNome + " não está\n";
    return sTexto;
}

std::string XVRelatoEsperado(const std::string& sNome, const std::string& sObtido) {
    if (const char* pszArquivo = std::getenv("XV_RELATOS_OBTIDOS"))
        std::ofstream(pszArquivo, std::ios::binary | std::ios::app) << "# " << sNome << '\n' << sObtido;
    std::ifstream arquivo(
        std::filesystem::path(XVProgramaVizinho("x")).parent_path() / "golden" / "relatos.txt",
        std::ios::binary);
    std::string sEsperado;
    bool bDesta = false;
    for (std::string sLinha; std::getline(arquivo, sLinha);) {
        if (sLinha.starts_with("# "))
            bDesta = sLinha.substr(2) == sNome;
        else if (bDesta)
            sEsperado += sLinha + '\n';
    }
    return sEsperado;
}
