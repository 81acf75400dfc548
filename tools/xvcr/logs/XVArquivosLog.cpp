#include "tools/xvcr/logs/XVArquivosLog.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "platform/XVPlataforma.h"
#include "tools/xvcr/text/XVArquivoSaida.h"
#include "tools/xvcr/text/XVErros.h"

namespace {

constexpr std::size_t k_uiLimiteLinha = 1024U * 1024U;  // bytes; a record is far below

// "202611" of "XVProfilerErros_Base_202611.log".
std::string_view AnoMes(std::string_view sNome) {
    constexpr std::size_t k_uiFim = sizeof("202611.log") - 1;
    return sNome.size() < k_uiFim ? std::string_view() : sNome.substr(sNome.size() - k_uiFim, 6);
}

// The header and the first records, which hold their moments: what tells one log from another.
std::string Inicio(const std::string& sArquivo) {
    constexpr std::streamsize k_iInicio = 4096;  // bytes
    std::ifstream arquivo(XVCaminhoDeUtf8(sArquivo), std::ios::binary);
    std::string sInicio(k_iInicio, '\0');
    arquivo.read(sInicio.data(), k_iInicio);
    sInicio.resize(static_cast<std::size_t>(arquivo.gcount()));
    return sInicio;
}

// 0 also of what can only be read from its beginning.
std::uintmax_t Tamanho(const std::string& sArquivo) {
    std::error_code erro;
    const std::uintmax_t uiTamanho =
        XVFonteSoSeLeUmaVez(sArquivo) ? 0 : std::filesystem::file_size(XVCaminhoDeUtf8(sArquivo), erro);
    return erro ? 0 : uiTamanho;
}

}  // namespace

std::vector<std::string> SOrigemLog::Lista() const {
    if (!sArquivo.empty()) return {sArquivo};
    const IXVSistemaArquivos& rSistema = XVPlataforma::SistemaArquivos();
    std::vector<std::string> listaNomes;
    const std::string sMascara = bPerfil ? "XVProfiler.log" : "XVProfilerErros_*_??????.log";
    if (!XVPlataforma::SistemaArquivos().Lista(sDiretorio, sMascara, listaNomes).Ok())
        XVFalha("não foi possível listar o diretório \"" + sDiretorio + "\"");
    if (!sAnoMes.empty() && !bPerfil)
        std::erase_if(listaNomes, [&](const std::string& rNome) { return AnoMes(rNome) != sAnoMes; });
    std::sort(listaNomes.begin(), listaNomes.end());
    for (std::string& rNome : listaNomes) rNome = rSistema.Junta(sDiretorio, rNome);
    return listaNomes;
}

// One byte earlier than wanted: where that is a line feed, a line begins behind it.
CXVLeitorLog::CXVLeitorLog(const std::string& sArquivo, bool bCresce, std::uintmax_t uiInicio)
    : m_sArquivo(sArquivo),
      m_uiInicio(uiInicio > 0 ? uiInicio - 1 : 0),
      m_sInicio(Inicio(sArquivo)),
      m_pFonte(XVAbreFonte(sArquivo, m_uiInicio)),
      m_Leitor(*m_pFonte, k_uiLimiteLinha, bCresce),
      m_bNoMeioDaLinha(uiInicio > 0) {
    const std::string_view sPrimeira = std::string_view(m_sInicio).substr(0, m_sInicio.find('\n'));
    if (uiInicio > 0 && CXVCabecalhoLog::EhCabecalho(sPrimeira)) m_Cabecalho.emplace(sPrimeira);
}

bool CXVLeitorLog::Proximo(SLinhaLog* pLinha) {
    std::string sLinha;
    for (;;) {
        const CXVLeitorLinhas::EResultado eResultado = m_Leitor.Proxima(&sLinha);
        if (eResultado == CXVLeitorLinhas::EResultado::eFim) return false;
        if (std::exchange(m_bNoMeioDaLinha, false)) continue;
        if (eResultado == CXVLeitorLinhas::EResultado::eLinha && CXVCabecalhoLog::EhCabecalho(sLinha))
            m_Cabecalho.emplace(sLinha);
        else if (eResultado == CXVLeitorLinhas::EResultado::eLinha && m_Cabecalho.has_value() &&
                 m_Cabecalho->Le(sLinha, pLinha))
            return true;
        else
            AvisaIlegivel();
    }
}

void CXVLeitorLog::AvisaIlegivel() {
    const std::string sLugar =
        m_uiInicio == 0 ? "linha " + std::to_string(m_Leitor.GetNumero())
                        : "linha que termina no byte " + std::to_string(m_uiInicio + m_Leitor.GetBytes());
    const std::string sOnde = "aviso: \"" + m_sArquivo + "\", " + sLugar;
    if (m_Cabecalho.has_value())
        m_listaAvisos.push_back(sOnde + ": cortada ou longa demais, não é mostrada");
    else if (!std::exchange(m_bDitoSemCabecalho, true))
        m_listaAvisos.push_back(sOnde +
                                ": o log não começa por um cabeçalho; o que vem antes de um não é mostrado");
}

bool CXVLeitorLog::FoiTrocado() {
    std::error_code erro;
    const std::uintmax_t uiTamanho = std::filesystem::file_size(XVCaminhoDeUtf8(m_sArquivo), erro);
    if (erro) return false;
    std::string sInicio = Inicio(m_sArquivo);
    if (uiTamanho < m_uiInicio + m_Leitor.GetBytes() || !sInicio.starts_with(m_sInicio)) return true;
    m_sInicio = std::move(sInicio);
    return false;
}

void CXVLeitoresLog::Avisa(const std::vector<std::string>& listaAvisos) {
    for (const std::string& rAviso : listaAvisos) XVEscreveErro(rAviso);
}

// From ever farther before the end, until there are enough. A reader whose beginning lay too late is given
// up.
std::deque<CXVLeitoresLog::SAchada> CXVLeitoresLog::UltimosDe(
    const std::string& sArquivo, std::size_t uiQuantos,
    const std::function<bool(const SLinhaLog&)>& fAceita) {
    constexpr std::uintmax_t k_uiPrimeiraJanela = 64U * 1024U;  // bytes
    constexpr std::uintmax_t k_uiFator = 4;
    const std::uintmax_t uiTamanho = Tamanho(sArquivo);
    for (std::uintmax_t uiJanela = k_uiPrimeiraJanela;; uiJanela *= k_uiFator) {
        const std::uintmax_t uiInicio = uiJanela < uiTamanho ? uiTamanho - uiJanela : 0;
        m_mapLeitores.erase(sArquivo);
        CXVLeitorLog& rLeitor =
            m_mapLeitores.try_emplace(sArquivo, sArquivo, m_Origem.bSegue, uiInicio).first->second;
        std::deque<SAchada> listaAchadas;
        SAchada achada;
        while (rLeitor.Proximo(&achada.linha)) {
            if (!fAceita(achada.linha)) continue;
            achada.listaAvisos = rLeitor.TiraAvisos();
            listaAchadas.push_back(std::move(achada));
            if (listaAchadas.size() > uiQuantos) listaAchadas.pop_front();
        }
        if (uiInicio > 0 && listaAchadas.size() < uiQuantos) continue;
        return listaAchadas;
    }
}

std::vector<SLinhaLog> CXVLeitoresLog::LeUltimos(std::size_t uiQuantos,
                                                 const std::function<bool(const SLinhaLog&)>& fAceita) {
    std::vector<std::string> listaArquivos = m_Origem.Lista();
    std::deque<SAchada> listaTodas;
    for (auto p = listaArquivos.rbegin(); p != listaArquivos.rend(); ++p) {
        if (listaTodas.size() == uiQuantos) {
            if (m_Origem.bSegue) m_mapLeitores.try_emplace(*p, *p, true, Tamanho(*p));
            continue;
        }
        std::deque<SAchada> listaDoArquivo = UltimosDe(*p, uiQuantos - listaTodas.size(), fAceita);
        std::move(listaDoArquivo.rbegin(), listaDoArquivo.rend(), std::front_inserter(listaTodas));
    }
    std::vector<SLinhaLog> listaLinhas;
    for (SAchada& rAchada : listaTodas) {
        Avisa(rAchada.listaAvisos);
        listaLinhas.push_back(std::move(rAchada.linha));
    }
    for (auto& [sArquivo, rLeitor] : m_mapLeitores) Avisa(rLeitor.TiraAvisos());
    return listaLinhas;
}
