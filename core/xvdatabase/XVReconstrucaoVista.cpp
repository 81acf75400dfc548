// CXVReconstrucao: what viewing lays over the files.
#include <algorithm>
#include <cstring>

#include "core/xvdatabase/XVReconstrucao.h"
#include "platform/XVAberturaConsulta.h"
#include "platform/XVPlataforma.h"

CXVErroArquivo CXVReconstrucao::LeDesfeita(const std::string& sDiretorio, IXVArquivo& rDiario,
                                           XVUInt64 uiNumero) {
    m_sDiretorio = sDiretorio;
    const CXVErroArquivo erro = m_diario.Le(rDiario);
    if (!erro.Ok()) return erro;
    const auto& rEntradas = m_diario.GetEntradas();
    const auto it = std::find_if(rEntradas.begin(), rEntradas.end(), [uiNumero](const SEntradaLida& e) {
        return e.uiNumero == uiNumero && e.eTipo == ETipoEntrada::eGravacao;
    });
    if (it == rEntradas.end() || it->eEstado == EEstadoEntrada::eNula || EstaEscrita(*it)) return {};
    if (!it->eEstado.has_value()) return {ECausaArquivo::eArquivoInvalido, 0};
    for (const SParteLida& rParte : it->listaPartes)
        if (!Inclui(rParte, true)) return {ECausaArquivo::eArquivoInvalido, 0};
    return {};
}

bool CXVReconstrucao::EstaEscrita(const SEntradaLida& rEntrada) const {
    return rEntrada.eEstado == EEstadoEntrada::eRefazer &&
           std::all_of(rEntrada.listaPartes.begin(), rEntrada.listaPartes.end(),
                       [this](const SParteLida& rParte) { return EstaEscrita(rParte); });
}

bool CXVReconstrucao::EstaEscrita(const SParteLida& rParte) const {
    std::unique_ptr<IXVArquivo> pFile;
    if (!XVPlataforma::SistemaArquivos()
             .Abre(Path(std::string(rParte.sNome)), k_aberturaConsulta, pFile)
             .Ok())
        return false;
    XVUInt64 uiTamanho = 0;
    if (!pFile->GetTamanho(uiTamanho).Ok() || uiTamanho != rParte.uiTamanhoDepois) return false;
    std::string sDisco(rParte.sNovos.size(), '\0');
    if (!pFile->Le(rParte.uiOffset, sDisco.data(), sDisco.size()).Ok() || sDisco != rParte.sNovos)
        return false;
    if (rParte.pDepois == nullptr) return true;
    REG_XVCABECALHO_B reg;
    return pFile->Le(k_uiTamanhoBlocoA, &reg, sizeof(reg)).Ok() &&
           std::memcmp(&reg, rParte.pDepois, sizeof(reg)) == 0;
}

std::map<std::string, bool> CXVReconstrucao::GetExistencias() const {
    std::map<std::string, bool> mapa;
    for (const auto& [sNome, rArquivo] : m_mapaArquivos) mapa.emplace(sNome, !rArquivo.bApaga);
    return mapa;
}

bool CXVReconstrucao::BuscaExistencia(const std::string& sNomeArquivo, bool* pbExiste) const {
    const auto it = m_mapaArquivos.find(sNomeArquivo);
    if (it == m_mapaArquivos.end()) return false;
    *pbExiste = !it->second.bApaga;
    return true;
}

bool CXVReconstrucao::BuscaTamanho(const std::string& sNomeArquivo, XVUInt64* puiTamanho) const {
    const auto it = m_mapaArquivos.find(sNomeArquivo);
    if (it == m_mapaArquivos.end()) return false;
    *puiTamanho = it->second.bApaga ? 0 : it->second.uiTamanhoFinal;
    return true;
}

void CXVReconstrucao::Sobrepoe(const std::string& sNomeArquivo, XVUInt64 uiOffset, void* pDados,
                               std::size_t uiTamanho) const {
    const auto it = m_mapaArquivos.find(sNomeArquivo);
    if (it == m_mapaArquivos.end()) return;
    const auto copia = [&](XVUInt64 uiInicio, std::string_view sBytes) {
        const XVUInt64 uiDe = std::max(uiInicio, uiOffset);
        const XVUInt64 uiAte = std::min(uiInicio + sBytes.size(), uiOffset + uiTamanho);
        if (uiDe < uiAte)
            std::memcpy(static_cast<char*>(pDados) + (uiDe - uiOffset), sBytes.data() + (uiDe - uiInicio),
                        static_cast<std::size_t>(uiAte - uiDe));
    };
    for (const auto& [uiInicio, sBytes] : it->second.faixasFinais) copia(uiInicio, sBytes);
    if (it->second.pCabecalhoFinal == nullptr) return;
    const REG_XVCABECALHO reg{XVCabecalho::BlocoA(), *it->second.pCabecalhoFinal};
    copia(0, std::string_view(reinterpret_cast<const char*>(&reg), sizeof(reg)));
}
