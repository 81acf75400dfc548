// The text documents of the simulated external system (docs/simulation.md): header lines "Campo: valor", an
// empty line, then the body as it stands. People write them by hand, so everything is checked and every
// refusal says the line or the field.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/values/XVDmc.h"

class CXVDocumentoSimulacao {
  public:
    static constexpr std::size_t k_uiMaximoCabecalho = 65536;  // bytes, the empty line included
    static constexpr std::size_t k_uiMaximoCampos = 64;

    struct SCampo {
        std::string sNome;
        std::string sValor;
    };

    // Replaces the content. False: a fault of the document, told in *psErro; the content is undefined.
    bool Interpreta(std::string_view sBytes, std::string* psErro);
    std::string Monta() const;

    // Control characters of the value become spaces: a value is one line.
    void Inclui(std::string_view sNome, std::string_view sValor);
    void Inclui(std::string_view sNome, XVUInt64 uiValor);
    // Names are compared without case. Null: no such field.
    const SCampo* Busca(std::string_view sNome) const;
    const std::vector<SCampo>& GetCampos() const { return m_listaCampos; }

    const std::string& GetCorpo() const { return m_sCorpo; }
    // The body without the one line end that editors put at the end of a file.
    std::string GetCorpoEscrito() const;
    void SetCorpo(std::string sCorpo) { m_sCorpo = std::move(sCorpo); }

  private:
    bool InterpretaLinha(std::string_view sLinha, std::string* psErro);

    std::vector<SCampo> m_listaCampos;
    std::string m_sCorpo;
};

// A name that may stand for a number in a field.
struct SNomeValor {
    std::string_view sNome;
    XVUInt ulValor;
};

// Takes the fields out of a document one by one and keeps the first fault; a field that nobody took is one.
class CXVLeitorCampos {
  public:
    explicit CXVLeitorCampos(const CXVDocumentoSimulacao& rDocumento);

    // Absent: nothing. A value that is no number, or out of its range: nothing, and a fault.
    std::optional<XVUInt64> Numero(std::string_view sNome, XVUInt64 uiMaximo);
    std::optional<XVUInt> Numero32(std::string_view sNome, XVUInt ulMaximo);
    // One of the names or one of their numbers.
    std::optional<XVUInt> Enumeracao(std::string_view sNome, const std::vector<SNomeValor>& listaNomes);
    std::optional<REG_XVDMC> Dmc(std::string_view sNome);
    std::optional<std::string> Texto(std::string_view sNome);
    // "0x" and 8 hexadecimal digits of a failure.
    std::optional<HRESULT> Codigo(std::string_view sNome);

    void Recusa(std::string_view sNome, std::string_view sMotivo);
    // True when every field was taken and nothing was refused.
    bool Termina(std::string* psErro);

  private:
    const std::string* Toma(std::string_view sNome);

    const CXVDocumentoSimulacao& m_rDocumento;
    std::vector<bool> m_aTomado;
    std::string m_sErro;
};
