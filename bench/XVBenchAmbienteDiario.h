// The surroundings of the benchmark of the journal: a fresh directory of the local disk, a registry that says
// how durable a store is when it opens, and a file system that can leave the general log out.
#pragma once

#include <filesystem>
#include <string>

#include "middleware/BaseMiddleware.h"
#include "platform/XVPlataforma.h"

// Whose store it is. In companies whose name begins with SEMLOG the general log goes nowhere.
class CXVDonoBench final : public IXVDF_Profiler {
  public:
    explicit CXVDonoBench(std::string sEmpresa) : m_sEmpresa(std::move(sEmpresa)) {}
    std::string_view GetEmpresa() const override { return m_sEmpresa; }
    XVUShort GetUsuario() const override { return 1; }
    XVUInt GetNumeroSessao() const override { return 1; }

  private:
    std::string m_sEmpresa;
};

class CXVAmbienteDiario final : public IXVRegistry {
  public:
    // sPasta: where the fresh directory is made; empty: the system's place for temporary files.
    explicit CXVAmbienteDiario(const std::string& sPasta);
    ~CXVAmbienteDiario() override;
    CXVAmbienteDiario(const CXVAmbienteDiario&) = delete;
    CXVAmbienteDiario& operator=(const CXVAmbienteDiario&) = delete;

    // Of the stores that are opened from now on.
    void SetDurabilidade(XVUInt ulDurabilidade) { m_ulDurabilidade = ulDurabilidade; }
    // A directory in the fresh one, made when it is not there.
    std::string Pasta(const std::string& sNome) const;
    // The data directory of a company, made when it is not there.
    std::string PastaDados(const CXVDonoBench& rDono) const;

    std::optional<std::string> LeTexto(std::string_view sChave, std::string_view sValor) override;
    std::optional<XVUInt> LeNumero(std::string_view sChave, std::string_view sValor) override;

  private:
    std::filesystem::path m_pasta;
    std::unique_ptr<IXVSistemaArquivos> m_pSemLogGeral;
    XVUInt m_ulDurabilidade = 0;
};

// What one recording writes: 24 bytes of index, 88 of record, texts of 1500, 80 and 600 bytes.
struct STextosBench {
    std::string sJSON;
    std::string sMensagem;
    std::string sRetorno;
};
const STextosBench& XVTextosDiario();
// The integration uiNumero as a caller hands it over; the texts live as long as the program.
tagREG_CR_INTEGRACAO_MIDDLEWAREPS XVIntegracaoDiario(unsigned uiNumero);
