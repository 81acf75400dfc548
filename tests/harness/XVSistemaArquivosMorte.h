// A file system whose process "dies" between two operations, as by kill -9: the chosen change and all
// operations after it have no effect on the file system underneath, and everything that was open is released
// at once. What is on disk then is what a new process would find.
//
// The code of the dead process runs to its end; all that it asks fails quietly. Thread rule: any thread.
#pragma once

#include <functional>
#include <mutex>
#include <vector>

#include "tests/harness/XVSistemaArquivosEnvolto.h"

// The life of one process: what it changed and what it holds open. One mutex covers each operation as a
// whole, so nothing of the dead process reaches the file system after its death.
class CXVProcessoMortal {
  public:
    CXVProcessoMortal(XVUInt64 uiAlteracao, bool bGravaMetade)
        : m_uiAlteracao(uiAlteracao), m_bGravaMetade(bGravaMetade) {}

    template <class TFaz, class TMetade>
    CXVErroArquivo Opera(const SOperacaoArquivo& rOperacao, TFaz fnFaz, TMetade fnMetade) {
        const std::lock_guard trava(m_mutex);
        if (!m_bMorto && rOperacao.bAltera && ++m_uiQuantidade == m_uiAlteracao) {
            if (m_bGravaMetade) fnMetade();
            m_bMorto = true;
            for (const std::weak_ptr<SAberto>& rAberto : m_listaAbertos)
                if (const auto pAberto = rAberto.lock()) pAberto->Solta();
        }
        return m_bMorto ? CXVErroArquivo(ECausaArquivo::eGenerica, 0) : fnFaz();
    }
    // Called from inside Opera.
    void Abriu(const std::shared_ptr<SAberto>& pAberto) { m_listaAbertos.push_back(pAberto); }
    void Fecha(SAberto& rAberto) {
        const std::lock_guard trava(m_mutex);
        rAberto.Solta();
    }
    bool EstaMorto() const {
        const std::lock_guard trava(m_mutex);
        return m_bMorto;
    }
    XVUInt64 GetQuantidade() const {
        const std::lock_guard trava(m_mutex);
        return m_uiQuantidade;
    }

  private:
    mutable std::mutex m_mutex;
    const XVUInt64 m_uiAlteracao;
    const bool m_bGravaMetade;
    XVUInt64 m_uiQuantidade = 0;
    bool m_bMorto = false;
    std::vector<std::weak_ptr<SAberto>> m_listaAbertos;
};

class CXVSistemaArquivosMorte final : public TXVSistemaArquivosEnvolto<CXVProcessoMortal> {
  public:
    explicit CXVSistemaArquivosMorte(IXVSistemaArquivos& rInterno)
        : TXVSistemaArquivosEnvolto(rInterno, nullptr) {
        Nasce(0);
    }

    // A new process that dies at change uiAlteracao (1 is the first one; 0: lives and counts). With
    // bGravaMetade a write that it dies at has left the first half of its bytes.
    void Nasce(XVUInt64 uiAlteracao, bool bGravaMetade = false) {
        m_pVigia = std::make_shared<CXVProcessoMortal>(uiAlteracao, bGravaMetade);
    }
    bool EstaMorto() const { return m_pVigia->EstaMorto(); }
    XVUInt64 GetQuantidade() const { return m_pVigia->GetQuantidade(); }  // changes counted since Nasce
};
