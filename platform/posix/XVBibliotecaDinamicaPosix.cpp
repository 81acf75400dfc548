#include <dlfcn.h>
#include <sys/stat.h>

#include "platform/XVAmbienteSO.h"
#include "platform/XVBibliotecaDinamica.h"
#include "platform/XVCaminho.h"
#include "platform/XVMascara.h"

namespace {

std::string NomeLocal(const std::string& sNome) {
    constexpr std::string_view k_sExtensao = ".dll";
    if (sNome.size() <= k_sExtensao.size() ||
        !XVMascara::NomesIguais(std::string_view(sNome).substr(sNome.size() - k_sExtensao.size()),
                                k_sExtensao)) {
        return sNome;
    }
    return sNome.substr(0, sNome.size() - k_sExtensao.size()) + ".so";
}

void* Carrega(const std::string& sCaminho) {
    return dlopen(sCaminho.c_str(), RTLD_NOW | RTLD_LOCAL);
}

// What the loader said of its last failure; empty when nothing is there to load.
std::string MotivoSePresente(const std::string& sCaminho) {
    const char* pszMotivo = dlerror();
    struct stat estado {};
    if (lstat(sCaminho.c_str(), &estado) != 0) {
        return {};
    }
    return pszMotivo != nullptr ? pszMotivo : "?";
}

// Whether a name without directory would also be looked for in directories that are not absolute.
bool BuscaPassaPeloDiretorioCorrente() {
    std::string sLista = XVAmbienteSO::GetVariavelAmbiente("LD_LIBRARY_PATH").value_or(std::string());
    if (sLista.empty()) {
        return false;
    }
    sLista += ':';
    std::size_t uiInicio = 0;
    for (std::size_t uiFim = sLista.find_first_of(":;"); uiFim != std::string::npos;
         uiFim = sLista.find_first_of(":;", uiInicio)) {
        if (sLista[uiInicio] != '/') {
            return true;
        }
        uiInicio = uiFim + 1;
    }
    return false;
}

}  // namespace

CXVBibliotecaDinamica::CXVBibliotecaDinamica(const std::string& sNome) {
    if (!XVCaminho::EhNomeSimples(sNome)) {
        return;
    }
    const std::string sDiretorio = XVAmbienteSO::GetDiretorioExecutavel();
    const std::string sLocal = NomeLocal(sNome);
    for (const std::string& sCandidato : {sLocal, "lib" + sLocal}) {
        if (m_hBiblioteca == nullptr && !sDiretorio.empty()) {
            const std::string sCaminho = XVCaminho::Junta(sDiretorio, sCandidato, '/', "/");
            m_hBiblioteca = Carrega(sCaminho);
            if (m_hBiblioteca == nullptr && m_sMotivoFalha.empty()) {
                m_sMotivoFalha = MotivoSePresente(sCaminho);
            }
        }
    }
    const bool bSistema = !BuscaPassaPeloDiretorioCorrente();
    for (const std::string& sCandidato : {sLocal, "lib" + sLocal}) {
        if (m_hBiblioteca == nullptr && bSistema) {
            m_hBiblioteca = Carrega(sCandidato);
        }
    }
    if (m_hBiblioteca != nullptr) {
        m_sMotivoFalha.clear();
    }
}

CXVBibliotecaDinamica::~CXVBibliotecaDinamica() {
    if (m_hBiblioteca != nullptr) {
        dlclose(m_hBiblioteca);
    }
}

CXVBibliotecaDinamica::PFuncaoGenerica CXVBibliotecaDinamica::GetEndereco(const char* pszNome) const {
    return m_hBiblioteca == nullptr ? nullptr
                                    : reinterpret_cast<PFuncaoGenerica>(dlsym(m_hBiblioteca, pszNome));
}
