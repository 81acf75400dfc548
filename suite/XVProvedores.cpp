#include <algorithm>
#include <string>

#include "platform/XVBibliotecaDinamica.h"
#include "suite/providers/XVProvedorAdaptador.h"
#include "suite/simulation/XVProvedorSimulacao.h"
#include "support/trace/XVProfiler.h"

namespace {

// Systems are single bits of 32, so the libraries that may exist are known by name.
class CXVListaProvedores {
  public:
    CXVListaProvedores() {
        for (unsigned uiBit = 0; uiBit < 32; ++uiBit) Carrega(XVUInt{1} << uiBit);
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
        const std::string sBiblioteca = "XVProvedor" + std::to_string(eSistema) + ".dll";
        auto pBiblioteca = std::make_unique<CXVBibliotecaDinamica>(sBiblioteca);
        std::string sMotivo = pBiblioteca->GetMotivoFalha();
        std::unique_ptr<IXVProvedorIntegracao> pProvedor;
        if (pBiblioteca->EstaCarregada())
            pProvedor = CXVProvedorAdaptador::Cria(
                pBiblioteca->GetFuncao<PFXVProvedorObtem>(XVPROVEDOR_FUNCAO), eSistema, &sMotivo);
        if (pProvedor == nullptr) {
            if (sMotivo.empty()) return;
            m_listaSituacao.push_back({eSistema, sBiblioteca, sMotivo});
            XVProfiler::RecordError(nullptr, "XVProvedores::Carrega", "suite/XVProvedores", __LINE__,
                                    "Biblioteca XVProvedor%u não utilizada: %s",
                                    static_cast<unsigned>(eSistema), sMotivo.c_str());
            return;
        }
        m_listaSituacao.push_back({eSistema, sBiblioteca, {}});
        m_listaBibliotecas.push_back(std::move(pBiblioteca));
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
