// What every interface method shares, whatever component it belongs to: its place in traces, the codes
// after which a component is dead, and the one way in which a failed call is reported.
#pragma once

#include <array>
#include <initializer_list>
#include <string_view>

#include "platform/XVTipos.h"
#include "suite/XVBaseParaRotinas.h"

// An interface method as traces and the last-error record name it. Lives in constant data.
struct SMetodoInterface {
    const char* pszClasse;  // without "::"
    const char* pszFuncao;
    const char* pszNomeCompleto;  // "Classe::Funcao"
    SFonteTrace fonte;
    int iLinha;
};

// The parts in a row, zero-terminated, composed at compile time; N is their length plus 1.
template <std::size_t N>
consteval std::array<char, N> XVCompoeTexto(std::initializer_list<std::string_view> listaPartes) {
    std::array<char, N> aTexto{};
    std::size_t i = 0;
    for (const std::string_view s : listaPartes)
        for (const char c : s) aTexto[i++] = c;
    return aTexto;
}

// Declares, in a member function of a class that names itself (XV_CLASSE), the method's constant entry under
// the identifier metodoXV.
#define XV_METODO_INTERFACE(nome)                                                   \
    static constexpr auto nomeCompletoXV =                                          \
        XVCompoeTexto<std::string_view(XVNomeClasse()).size() + sizeof("::" nome)>( \
            {XVNomeClasse(), "::" nome});                                           \
    static constexpr SMetodoInterface metodoXV {                                    \
        XVNomeClasse(), nome, nomeCompletoXV.data(), XVNomeFonte(), __LINE__        \
    }

// Failures of the run time after which the logic object's memory cannot be trusted.
constexpr bool XVEhResultadoFatal(HRESULT hr) {
    const auto ulCodigo = static_cast<XVUInt>(hr);
    return (ulCodigo >= 0x8004EAC5U && ulCodigo <= 0x8004EADBU) || ulCodigo == 0x8004EE47U;
}

// Records a failed call in the error log and as the component's last error. rBase: in whose name.
void XVRegistraFalhaMetodo(HRESULT hr, const char* pszExpressao, const SMetodoInterface& rMetodo,
                           CXVBaseParaRotinas& rBase) noexcept;

// The result hr, recorded as that of a failed call under the text of its own name.
#define XV_FALHA_METODO(hr, metodo, base) (XVRegistraFalhaMetodo((hr), #hr, (metodo), (base)), (hr))

// "T_XVUnknown<struct IInterface,class CLogica>", composed at compile time.
template <class TInterface, class TLogica>
struct TXVNomeComponente {
    static constexpr std::string_view k_sLogica = TLogica::XVNomeClasse();
    static constexpr auto k_aTexto = XVCompoeTexto<sizeof("T_XVUnknown<struct ,class >") +
                                                   TInterface::k_sNomeInterface.size() + k_sLogica.size()>(
        {"T_XVUnknown<struct ", TInterface::k_sNomeInterface, ",class ", k_sLogica, ">"});
};
