// The surroundings of the store's benchmarks: a directory of the local disk as module directory, a clock
// whose day can be moved, a data set made once.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "middleware/BaseMiddleware.h"
#include "platform/XVPlataforma.h"

struct SOpcoesBench {
    unsigned uiIntegracoes = 1000000;
    unsigned uiDias = 100;
    bool bCarga = false;  // the plain load instead of the benchmarks
    std::string sPasta;   // empty: a fresh one of the temporary directory, removed at the end
    std::optional<XVUInt> ulMemoriaMembros;  // registry value MemoriaMembros
};

class CXVAmbienteBench final : public IXVRegistry, public IXVRelogio, public IXVDF_Profiler {
  public:
    explicit CXVAmbienteBench(const SOpcoesBench& rOpcoes);
    ~CXVAmbienteBench() override;
    CXVAmbienteBench(const CXVAmbienteBench&) = delete;
    CXVAmbienteBench& operator=(const CXVAmbienteBench&) = delete;

    static CXVAmbienteBench& Instancia();
    const SOpcoesBench& GetOpcoes() const { return m_opcoes; }
    const std::filesystem::path& GetPasta() const { return m_pasta; }

    // Writes the data set of the options through the schema's groups, unless it is there.
    void CriaDados();
    void SetDia(unsigned uiDia) { m_uiDia = uiDia; }  // 0 is 2025-01-01
    static REG_XVDMA Data(unsigned uiDia);
    // The integration uiNumero of the data set.
    REG_XVDMC Dmc(unsigned uiNumero) const;
    unsigned PorDia() const { return m_opcoes.uiIntegracoes / m_opcoes.uiDias; }

    std::optional<std::string> LeTexto(std::string_view sChave, std::string_view sValor) override;
    std::optional<XVUInt> LeNumero(std::string_view, std::string_view sValor) override {
        return sValor == "MemoriaMembros" ? m_opcoes.ulMemoriaMembros : std::nullopt;
    }
    SDataHora AgoraLocal() override { return AgoraUTC(); }
    SDataHora AgoraUTC() override;
    XVUInt GetTicks() override { return XVPlataforma::RelogioNativo().GetTicks(); }
    void Dorme(XVUInt ul) override { XVPlataforma::RelogioNativo().Dorme(ul); }
    std::string_view GetEmpresa() const override { return "BENCH"; }
    XVUShort GetUsuario() const override { return 1; }
    XVUInt GetNumeroSessao() const override { return 1; }

  private:
    SOpcoesBench m_opcoes;
    std::filesystem::path m_pasta;
    bool m_bRemove = false;
    unsigned m_uiDia = 0;
};

// Ends the program when hr is a failure: a benchmark of an error measures nothing.
void Exige(HRESULT hr, const char* pszO);

// Peak resident memory in MiB, where the system tells it; 0 otherwise.
double XVPicoMemoria();

// A new integration with texts of 1,500, 80 and 600 bytes; the texts live as long as the program.
tagREG_CR_INTEGRACAO_MIDDLEWAREPS XVIntegracaoBench(unsigned uiNumero);

// Records the options' integrations one by one through the store, day after day, and prints time and memory.
int XVCargaMilhao(CXVAmbienteBench& rAmbiente);
