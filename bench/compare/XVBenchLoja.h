// The opponent that all others are there for: the integration store as its callers use it, with its journal
// and its general log. Its company is named for its folder, and all stores of one process lie side by side.
#pragma once

#include "bench/compare/IXVBenchAdversario.h"
#include "platform/XVPlataforma.h"

// What the store asks its surroundings: the folder above the companies, how durable it is when it opens, and
// a clock whose day can be moved. Lives as long as any store.
class CXVAmbienteBench final : public IXVRegistry, public IXVRelogio {
  public:
    explicit CXVAmbienteBench(std::string sPasta);
    ~CXVAmbienteBench() override;
    CXVAmbienteBench(const CXVAmbienteBench&) = delete;
    CXVAmbienteBench& operator=(const CXVAmbienteBench&) = delete;

    void SetDuracao(EDuracaoBench eDuracao) { m_eDuracao = eDuracao; }
    void SetDia(unsigned uiDia);

    std::optional<std::string> LeTexto(std::string_view sChave, std::string_view sValor) override;
    std::optional<XVUInt> LeNumero(std::string_view sChave, std::string_view sValor) override;
    SDataHora AgoraLocal() override { return m_agora; }
    SDataHora AgoraUTC() override { return m_agora; }
    XVUInt GetTicks() override { return XVPlataforma::RelogioNativo().GetTicks(); }
    void Dorme(XVUInt ul) override { XVPlataforma::RelogioNativo().Dorme(ul); }

  private:
    std::string m_sPasta;
    EDuracaoBench m_eDuracao = EDuracaoBench::eSistema;
    unsigned m_uiDia = 0;
    SDataHora m_agora;
};

std::unique_ptr<IXVBenchAdversario> XVAbreLoja(CXVAmbienteBench& rAmbiente, const SAberturaBench& rAbertura);
