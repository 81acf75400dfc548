// A file system on a device with bad sectors: a read that touches one fails, every other one is good.
#pragma once

#include <vector>

#include "tests/harness/XVSistemaArquivosEnvolto.h"

class CXVSetoresRuins {
  public:
    struct STrecho {
        std::string sFimDoCaminho;
        XVUInt64 uiDe;
        XVUInt64 uiBytes;
    };
    std::vector<STrecho> m_listaTrechos;

    template <class TFaz, class TMetade>
    CXVErroArquivo Opera(const SOperacaoArquivo& r, TFaz fnFaz, TMetade) {
        if (r.eOperacao == EOperacaoArquivo::eLe)
            for (const STrecho& rTrecho : m_listaTrechos)
                if (r.sCaminho.ends_with(rTrecho.sFimDoCaminho) &&
                    r.uiOffset < rTrecho.uiDe + rTrecho.uiBytes &&
                    rTrecho.uiDe < r.uiOffset + r.sDados.size())
                    return {ECausaArquivo::eErroFisico, 5};
        return fnFaz();
    }
    void Abriu(const std::shared_ptr<SAberto>&) {}
    void Fecha(SAberto& rAberto) { rAberto.Solta(); }
};

class CXVSistemaArquivosSetorRuim final : public TXVSistemaArquivosEnvolto<CXVSetoresRuins> {
  public:
    explicit CXVSistemaArquivosSetorRuim(IXVSistemaArquivos& rInterno)
        : TXVSistemaArquivosEnvolto(rInterno) {}
    std::vector<CXVSetoresRuins::STrecho>& GetTrechos() { return m_pVigia->m_listaTrechos; }
};
