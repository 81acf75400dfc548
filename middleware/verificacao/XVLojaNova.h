// A store that is written from front to back out of the integrations of another one: each file once, in the
// order of its bytes, its header last.
//
// Until Conclui ends well the directory is no store that anybody would open for writing: its list of files
// names an index that is not there. What was begun and not concluded is taken away again.
//
// Thread rule: one thread.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "middleware/XVRegistrosMiddleware.h"
#include "middleware/XVTransporte.h"
#include "middleware/verificacao/XVEscritaRecuperada.h"
#include "support/trace/IXVDF_Profiler.h"

class CXVLojaNova {
  public:
    // rDono must outlive this object.
    CXVLojaNova(std::string sDiretorio, const IXVDF_Profiler& rDono);
    ~CXVLojaNova();
    CXVLojaNova(const CXVLojaNova&) = delete;
    CXVLojaNova& operator=(const CXVLojaNova&) = delete;

    // S_FALSE: the directory holds something besides logs, so a store cannot be made there like this, and
    // the other operations do nothing.
    HRESULT Comeca();
    // Days and, in each of them, positions come in ascending order without a gap. S_FALSE: this one does not,
    // or the store's own operations have to judge it; nothing of it was written.
    HRESULT Inclui(const SIntegracaoTransportada& rIntegracao);
    HRESULT Conclui();

  private:
    struct SNoIndice {
        REG_CR_INDEX_INTEGRACAO_V1 reg;
        XVUInt ulPosicao;
    };
    static constexpr std::size_t k_uiTextos = 3;

    bool Segue(const SIntegracaoTransportada& rIntegracao) const;
    bool TemChaveDoBanco(const CXVDadosCR_IntegracaoMiddleware& rDados);
    HRESULT ComecaDia(REG_XVDMA dma);
    HRESULT ConcluiDia();
    HRESULT GravaTexto(std::size_t uiQual, const std::string& sTexto, XVUInt* pulPosicao);
    HRESULT GravaControle(std::vector<std::string> listaNomes);
    HRESULT GravaVersao();
    HRESULT GravaIndice();
    // A file that is whole under its name from the first moment on.
    template <class FEscreve>
    HRESULT PoeDeUmaVez(const std::string& sNome, CXVEscritaRecuperada::ECabecalho eCabecalho,
                        FEscreve fnEscreve);
    HRESULT CriaArquivo(const std::string& sNome, std::unique_ptr<CXVEscritaRecuperada>* ppEscrita);
    HRESULT ConcluiArquivo(std::unique_ptr<CXVEscritaRecuperada>& rpEscrita);
    void Desfaz();

    std::string m_sDiretorio;
    const IXVDF_Profiler& m_rDono;
    bool m_bComecou = false;
    REG_XVDMA m_dma;
    XVUInt m_ulRegistros = 0;  // of the day
    std::unique_ptr<CXVEscritaRecuperada> m_pRegistros;
    std::array<std::unique_ptr<CXVEscritaRecuperada>, k_uiTextos> m_aTextos;
    std::array<XVUInt, k_uiTextos> m_aulTextos{};
    std::vector<SNoIndice> m_listaIndice;
    std::unordered_set<XVUInt64> m_chavesDoBanco;
    std::vector<std::string> m_listaArquivos;  // that were made
};
