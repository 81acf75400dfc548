// The folder "simulacao" of a company's data directory: reading, writing and listing its documents, and
// issuing keys. Several threads and processes may use one folder at once; one object serves one call.
#pragma once

#include <string>
#include <vector>

#include "suite/simulation/XVDocumentoSimulacao.h"
#include "support/trace/XVCheck.h"

class CXVPastaSimulacao {
  public:
    XV_CLASSE("CXVPastaSimulacao", "suite/simulation/XVPastaSimulacao")

    // A document that cannot be understood (ERROR_INVALID_DATA); the trace says which and why.
    static constexpr HRESULT k_hrDocumentoInvalido = XVHResult(0x8007000DU);
    static constexpr XVUInt64 k_uiMaximoArquivo = 256ULL * 1024 * 1024;  // bytes of one document

    // rDono must outlive the object.
    explicit CXVPastaSimulacao(const IXVDF_Profiler& rDono) : m_rDono(rDono) {}

    // Resolves the folder; it need not exist.
    HRESULT Abre();
    // Makes sure that the folder exists.
    HRESULT Cria() const;

    // Names of the documents "*.<extension>" of a subfolder ("" for the folder itself), in ascending order
    // of their bytes. An absent folder holds none.
    HRESULT Lista(std::string_view sPasta, std::string_view sExtensao,
                  std::vector<std::string>* pLista) const;
    // eFileNotFound or eBadPath: no such document, not recorded as an error.
    HRESULT Le(std::string_view sPasta, std::string_view sNome, CXVDocumentoSimulacao* pDocumento) const;
    // Fields only; the body may be cut.
    HRESULT LeCampos(std::string_view sNome, CXVDocumentoSimulacao* pDocumento) const;
    // A file as it stands.
    HRESULT LeBytes(std::string_view sPasta, std::string_view sNome, XVUInt64 uiMaximo,
                    std::string* psBytes) const;
    // Writes a document of the folder itself, old or new content whatever happens in between.
    HRESULT Grava(std::string_view sNome, const CXVDocumentoSimulacao& rDocumento) const;
    // A key above all issued before, whose document does not exist.
    HRESULT EmiteChave(XVUInt64* puiChave) const;

    // Records why a document is refused and returns k_hrDocumentoInvalido.
    HRESULT Recusa(std::string_view sNome, const std::string& sMotivo) const;
    static std::string NomeDocumento(XVUInt64 uiChave) { return std::to_string(uiChave) + ".doc"; }

  private:
    std::string Caminho(std::string_view sPasta, std::string_view sNome) const;
    HRESULT LeInicio(const std::string& sCaminho, XVUInt64 uiMaximo, bool bInteiro,
                     std::string* psBytes) const;
    HRESULT LeContador(XVUInt64* puiChave) const;

    const IXVDF_Profiler& m_rDono;
    std::string m_sPasta;
};
