#include "client/XVRegistryComDiretorio.h"

#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"

CXVRegistryComDiretorio::CXVRegistryComDiretorio()
    : m_sChave(CAmbienteXV::GetChaveRegistry(k_eModuloBase)), m_pAnterior(&XVPlataforma::RegistryNativo()) {}

CXVRegistryComDiretorio& CXVRegistryComDiretorio::Instancia() {
    static CXVRegistryComDiretorio s_registry;
    return s_registry;
}

bool CXVRegistryComDiretorio::Toma(const std::string& sDiretorio) {
    const std::lock_guard trava(m_Mutex);
    if (m_uiUsos > 0 && sDiretorio != m_sDiretorio) return false;
    if (m_uiUsos == 0) {
        m_sDiretorio = sDiretorio;
        if (!m_sDiretorio.empty()) m_pAnterior = XVPlataforma::TrocaRegistry(this);
    }
    ++m_uiUsos;
    return true;
}

void CXVRegistryComDiretorio::Larga() {
    const std::lock_guard trava(m_Mutex);
    if (--m_uiUsos == 0 && !m_sDiretorio.empty()) XVPlataforma::TrocaRegistry(m_pAnterior);
}

std::optional<std::string> CXVRegistryComDiretorio::LeTexto(std::string_view sChave,
                                                            std::string_view sValor) {
    // Both values, whichever the machine prefers.
    const bool bDiretorio = sChave == m_sChave && (sValor == "Path" || sValor == "Path_x64");
    const std::lock_guard trava(m_Mutex);
    if (bDiretorio && m_uiUsos > 0 && !m_sDiretorio.empty()) return m_sDiretorio;
    return m_pAnterior->LeTexto(sChave, sValor);
}

std::optional<XVUInt> CXVRegistryComDiretorio::LeNumero(std::string_view sChave, std::string_view sValor) {
    const std::lock_guard trava(m_Mutex);
    return m_pAnterior->LeNumero(sChave, sValor);
}
