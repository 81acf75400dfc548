#include "tools/xvcr/logs/XVArquivosLog.h"

#include <algorithm>
#include <fstream>
#include <utility>

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

CXVLeitorLog::CXVLeitorLog(const std::string& sArquivo, bool bCresce)
    : m_sArquivo(sArquivo),
      m_sInicio(Inicio(sArquivo)),
      m_pFonte(XVAbreFonte(sArquivo)),
      m_Leitor(*m_pFonte, k_uiLimiteLinha, bCresce) {}

bool CXVLeitorLog::Proximo(SLinhaLog* pLinha) {
    std::string sLinha;
    for (;;) {
        const CXVLeitorLinhas::EResultado eResultado = m_Leitor.Proxima(&sLinha);
        if (eResultado == CXVLeitorLinhas::EResultado::eFim) return false;
        if (eResultado == CXVLeitorLinhas::EResultado::eLinha && CXVCabecalhoLog::EhCabecalho(sLinha))
            m_Cabecalho.emplace(sLinha);
        else if (eResultado == CXVLeitorLinhas::EResultado::eLinha && m_Cabecalho.has_value() &&
                 m_Cabecalho->Le(sLinha, pLinha))
            return true;
        else
            DizIlegivel();
    }
}

void CXVLeitorLog::DizIlegivel() {
    const std::string sOnde = "aviso: \"" + m_sArquivo + "\", linha " + std::to_string(m_Leitor.GetNumero());
    if (m_Cabecalho.has_value())
        XVEscreveErro(sOnde + ": cortada ou longa demais, não é mostrada");
    else if (!std::exchange(m_bDitoSemCabecalho, true))
        XVEscreveErro(sOnde + ": o log não começa por um cabeçalho; o que vem antes de um não é mostrado");
}

bool CXVLeitorLog::FoiTrocado() {
    std::error_code erro;
    const std::uintmax_t uiTamanho = std::filesystem::file_size(XVCaminhoDeUtf8(m_sArquivo), erro);
    if (erro) return false;
    std::string sInicio = Inicio(m_sArquivo);
    if (uiTamanho < m_Leitor.GetBytes() || !sInicio.starts_with(m_sInicio)) return true;
    m_sInicio = std::move(sInicio);
    return false;
}
