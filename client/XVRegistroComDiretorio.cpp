#include "client/XVRegistroComDiretorio.h"

#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"

CXVRegistroComDiretorio::CXVRegistroComDiretorio()
    : m_sChave(CAmbienteXV::GetChaveRegistro(k_eModuloBase)), m_pAnterior(&XVPlataforma::RegistroNativo()) {}

CXVRegistroComDiretorio& CXVRegistroComDiretorio::Instancia() {
    static CXVRegistroComDiretorio s_registro;
    return s_registro;
}

bool CXVRegistroComDiretorio::Toma(const std::string& sDiretorio) {
    const std::lock_guard trava(m_Mutex);
    if (m_uiUsos > 0 && sDiretorio != m_sDiretorio) return false;
    if (m_uiUsos == 0) {
        m_sDiretorio = sDiretorio;
        if (!m_sDiretorio.empty()) m_pAnterior = XVPlataforma::TrocaRegistro(this);
    }
    ++m_uiUsos;
    return true;
}

void CXVRegistroComDiretorio::Larga() {
    const std::lock_guard trava(m_Mutex);
    if (--m_uiUsos == 0 && !m_sDiretorio.empty()) XVPlataforma::TrocaRegistro(m_pAnterior);
}

std::optional<std::string> CXVRegistroComDiretorio::LeTexto(std::string_view sChave,
                                                            std::string_view sValor) {
    // Both values, whichever the machine prefers.
    const bool bDiretorio = sChave == m_sChave && (sValor == "Path" || sValor == "Path_x64");
    const std::lock_guard trava(m_Mutex);
    if (bDiretorio && m_uiUsos > 0 && !m_sDiretorio.empty()) return m_sDiretorio;
    return m_pAnterior->LeTexto(sChave, sValor);
}

std::optional<XVUInt> CXVRegistroComDiretorio::LeNumero(std::string_view sChave, std::string_view sValor) {
    const std::lock_guard trava(m_Mutex);
    return m_pAnterior->LeNumero(sChave, sValor);
}
