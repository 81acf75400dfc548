#include <algorithm>
#include <bit>
#include <charconv>
#include <set>
#include <string>
#include <string_view>

#include "platform/XVAmbienteSO.h"
#include "platform/XVBibliotecaDinamica.h"
#include "platform/XVMascara.h"
#include "platform/XVPlataforma.h"
#include "suite/providers/XVProvedorAdaptador.h"
#include "suite/simulation/XVProvedorSimulacao.h"
#include "support/trace/XVProfiler.h"

namespace {

constexpr std::string_view k_sInicioBiblioteca = "XVProvedor";

// The system of a file's name, with or without the "lib" of other systems' libraries; 0: no provider's.
XVUInt SistemaDoNome(std::string_view sNome) {
    for (const std::string_view sInicio : {std::string_view("lib"), k_sInicioBiblioteca})
        if (XVMascara::NomesIguais(sNome.substr(0, sInicio.size()), sInicio))
            sNome.remove_prefix(sInicio.size());
    XVUInt eSistema = 0;
    const auto [pFim, erro] = std::from_chars(sNome.data(), sNome.data() + sNome.size(), eSistema);
    return erro == std::errc() ? eSistema : 0;
}

// The numbers of the libraries that lie in the program's directory: one look at it instead of one for each
// name that could be there. A directory that cannot be listed may still hold all of them.
std::set<XVUInt> SistemasInstalados() {
    std::set<XVUInt> conjunto{SimulacaoSistemaTerceiro};
    std::vector<std::string> listaNomes;
    if (XVPlataforma::SistemaArquivosNativo()
            .Lista(XVAmbienteSO::GetDiretorioExecutavel(), "*XVProvedor*", listaNomes)
            .Ok()) {
        for (const std::string& sNome : listaNomes) conjunto.insert(SistemaDoNome(sNome));
        std::erase_if(conjunto, [](XVUInt eSistema) { return !std::has_single_bit(eSistema); });
    } else {
        for (unsigned uiBit = 0; uiBit < 32; ++uiBit) conjunto.insert(XVUInt{1} << uiBit);
    }
    return conjunto;
}

class CXVListaProvedores {
  public:
    CXVListaProvedores() {
        for (const XVUInt eSistema : SistemasInstalados()) Carrega(eSistema);
    }

    IXVProvedorIntegracao* Busca(XVUInt eSistema) const {
        const auto it = std::find_if(m_lista.begin(), m_lista.end(),
                                     [eSistema](const auto& p) { return p->GetSistema() == eSistema; });
        return it != m_lista.end() ? it->get() : nullptr;
    }
    std::vector<IXVProvedorIntegracao*> Lista() const {
        std::vector<IXVProvedorIntegracao*> lista;
        lista.reserve(m_lista.size());
        for (const auto& p : m_lista) lista.push_back(p.get());
        return lista;
    }

    const std::vector<SSituacaoProvedor>& Situacao() const { return m_listaSituacao; }

  private:
    // An absent library is a system without provider; one that is there and cannot be used is told.
    void Carrega(XVUInt eSistema) {
        if (eSistema == SimulacaoSistemaTerceiro) {
            m_lista.push_back(std::make_unique<CXVProvedorSimulacao>());
            m_listaSituacao.push_back({eSistema, {}, {}});
            return;
        }
        const std::string sBiblioteca = std::string(k_sInicioBiblioteca) + std::to_string(eSistema) + ".dll";
        auto pBiblioteca = std::make_unique<CXVBibliotecaDinamica>(sBiblioteca);
        std::string sMotivo = pBiblioteca->GetMotivoFalha();
        std::unique_ptr<IXVProvedorIntegracao> pProvedor;
        if (pBiblioteca->EstaCarregada()) {
            pProvedor = CXVProvedorAdaptador::Cria(
                pBiblioteca->GetFuncao<PFXVProvedorObtem>(XVPROVEDOR_FUNCAO), eSistema, &sMotivo);
            // One that is refused stays as well: its entry may not have returned yet.
            m_listaBibliotecas.push_back(std::move(pBiblioteca));
        }
        if (pProvedor == nullptr) {
            if (sMotivo.empty()) return;
            m_listaSituacao.push_back({eSistema, sBiblioteca, sMotivo});
            XVProfiler::RecordError(nullptr, "XVProvedores::Carrega", "suite/XVProvedores", __LINE__,
                                    "Biblioteca XVProvedor%u não utilizada: %s",
                                    static_cast<unsigned>(eSistema), sMotivo.c_str());
            return;
        }
        m_listaSituacao.push_back({eSistema, sBiblioteca, {}});
        m_lista.push_back(std::move(pProvedor));
    }

    std::vector<SSituacaoProvedor> m_listaSituacao;
    std::vector<std::unique_ptr<CXVBibliotecaDinamica>> m_listaBibliotecas;
    std::vector<std::unique_ptr<IXVProvedorIntegracao>> m_lista;  // ascending system
};

// Never destroyed: calls may still be under way while the process ends.
const CXVListaProvedores& GetProvedores() {
    static const CXVListaProvedores& rLista = *new CXVListaProvedores;
    return rLista;
}

}  // namespace

IXVProvedorIntegracao* XVProvedores::Busca(XVUInt eSistema) {
    return GetProvedores().Busca(eSistema);
}

std::vector<IXVProvedorIntegracao*> XVProvedores::Lista() {
    return GetProvedores().Lista();
}

const std::vector<SSituacaoProvedor>& XVProvedores::Situacao() {
    return GetProvedores().Situacao();
}
