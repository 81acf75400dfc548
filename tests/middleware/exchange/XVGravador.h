// A provider library for system 16 that writes down everything it is asked, as one line of text a call, and
// answers what the test told it. Test and library are built together and share these types.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "suite/providers/XVProvedorPlugin.h"

// What the operations on an integration and on parameters answer. With bMuda every field of the answer is
// handed back, those that are not the library's to change as well.
struct SRespostaDados {
    std::int32_t iResultado = 0;
    bool bMuda = false;
    XVProvedorDados reg{};
    std::string sJSON{}, sMensagem{}, sRetorno{};
    std::function<void()> fnDepois{};  // runs at the end of the operation
};
struct SRespostaParametros {
    std::int32_t iResultado = 0;
    bool bMuda = false;
    XVProvedorParametros reg{};
};

struct SItemGravador {
    std::string sJSON;
    XVProvedorPendencia reg;
};

struct SRespostaConsulta {
    std::uint32_t eStatus = 0;
    std::string sMensagem{}, sJSON{}, sDocumento{};
};

struct SGravador {
    std::vector<std::string> listaChamadas;
    std::map<std::string, SRespostaDados> mapDados;            // by operation
    std::map<std::string, SRespostaParametros> mapParametros;  // by operation
    std::vector<SItemGravador> listaItens;
    std::int32_t iResultadoLista = 0;
    SRespostaConsulta consulta{};
    long lBuffersVivos = 0;
};

// Exported by the library under this name.
using PFXVGravador = SGravador* (*)();
inline constexpr const char* k_pszFuncaoGravador = "XVProvedorGravador";

inline std::string_view XVVista(const XVProvedorTexto& rTexto) {
    return {rTexto.pBytes, static_cast<std::size_t>(rTexto.uiTamanho)};
}

// A key as day, position and kind; a date-time as day and second.
inline std::string XVDescreveDmc(std::uint64_t uiDmc) {
    return std::to_string(uiDmc >> 46) + '-' + std::to_string(uiDmc >> 14 & 0xFFFFFFFFU) + '-' +
           std::to_string(uiDmc & 0x3FFFU);
}
inline std::string XVDescreveDataHora(std::uint64_t uiDataHora) {
    return std::to_string(uiDataHora >> 32) + '+' + std::to_string(uiDataHora & 0xFFFFFFFFU);
}

// The fields that have the same names in the provider's records and in the store's.
template <class TRegistro>
std::string XVDescreveComuns(const TRegistro& r) {
    std::ostringstream s;
    s << " tipo=" << r.eTipoIntegracao << " sistema=" << r.eSistemaIntegracao
      << " transacao=" << r.eTipoTransacao << " auxiliar=" << r.ulPonteiroAuxiliar << '/'
      << +r.ucTipoPonteiroAuxiliar << " chaveRegistro=" << r.uiChaveRegistroSistemaTerceiro
      << " base=" << r.uiBaseDadosTerceiro << " filial=" << r.ulPonteiroFilial;
    return s.str();
}
template <class TRegistro>
std::string XVDescreveSituacao(const TRegistro& r, std::string_view sJSON, std::string_view sMensagem,
                               std::string_view sRetorno) {
    std::ostringstream s;
    s << " chave=" << r.uiChaveIntegracaoSistemaTerceiro << " status=" << r.eStatusIntegracao
      << " reconsultar=" << +r.cReconsultarIdTerceiros << " textos=[" << sJSON << "][" << sMensagem << "]["
      << sRetorno << "]";
    return s.str();
}

inline std::string XVDescreve(const XVProvedorDados& r) {
    return "dmc=" + XVDescreveDmc(r.uiDmc) + " origens=" + XVDescreveDmc(r.uiDmcIntegracaoOrigem) + '/' +
           XVDescreveDmc(r.uiDmcMovimentoOrigem) + " datas=" + XVDescreveDataHora(r.uiDataHoraInclusao) +
           '/' + XVDescreveDataHora(r.uiDataHoraAlteracaoStatus) + XVDescreveComuns(r) +
           XVDescreveSituacao(r, XVVista(r.sRegistroJSON), XVVista(r.sMensagemIntegracao),
                              XVVista(r.sJSONRetornoIntegracao));
}

inline std::string XVDescreve(const XVProvedorParametros& r) {
    return "dmc=" + XVDescreveDmc(r.uiDmcIntegracao) + " origem=" + XVDescreveDmc(r.uiDmcOrigem) +
           XVDescreveComuns(r);
}

inline std::string XVDescreve(const XVProvedorConsulta& r) {
    std::ostringstream s;
    s << "tipo=" << r.eTipoConsulta << " chave=[" << XVVista(r.sChaveConsulta)
      << "] auxiliar=" << r.ulPonteiroAuxiliar << " tipoAuxiliar=" << +r.ucTipoPonteiroAuxiliar;
    return s.str();
}
