// The machine's configuration with another module directory, for as long as the object lives: what
// --diretorio names is found by the store as if the installation had written it.
#pragma once

#include <memory>
#include <string>

#include "platform/XVPlataforma.h"
#include "support/XVAmbiente.h"
#include "tools/xvcr/IXVOperacoes.h"

class CXVRegistroComDiretorio : public IXVRegistro {
  public:
    explicit CXVRegistroComDiretorio(std::string sDiretorio)
        : m_sChave(CAmbienteXV::GetChaveRegistro(k_eModuloBase)),
          m_sDiretorio(std::move(sDiretorio)),
          m_pAnterior(XVPlataforma::TrocaRegistro(this)) {}
    ~CXVRegistroComDiretorio() override { XVPlataforma::TrocaRegistro(m_pAnterior); }
    CXVRegistroComDiretorio(const CXVRegistroComDiretorio&) = delete;
    CXVRegistroComDiretorio& operator=(const CXVRegistroComDiretorio&) = delete;

    std::optional<std::string> LeTexto(std::string_view sChave, std::string_view sValor) override {
        // Both values, whichever the machine prefers.
        if (sChave == m_sChave && (sValor == "Path" || sValor == "Path_x64")) return m_sDiretorio;
        return m_pAnterior->LeTexto(sChave, sValor);
    }
    std::optional<XVUInt> LeNumero(std::string_view sChave, std::string_view sValor) override {
        return m_pAnterior->LeNumero(sChave, sValor);
    }

  private:
    std::string m_sChave;
    std::string m_sDiretorio;
    IXVRegistro* m_pAnterior;
};

// In force where the access names a directory; otherwise null.
inline std::unique_ptr<CXVRegistroComDiretorio> XVRegistroDoAcesso(const SAcesso& rAcesso) {
    if (rAcesso.sDiretorio.empty()) return nullptr;
    return std::make_unique<CXVRegistroComDiretorio>(rAcesso.sDiretorio);
}
