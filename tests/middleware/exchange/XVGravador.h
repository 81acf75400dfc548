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

// An integration in the words of the provider's interface, with its texts.
struct SDadosGravador {
    XVProvedorDados reg{};
    std::string sJSON{}, sMensagem{}, sRetorno{};
};

// What the operations on an integration and on parameters answer. With bMuda every field of the answer is
// handed back, those that are not the library's to change as well.
struct SRespostaDados {
    std::int32_t iResultado = 0;
    bool bMuda = false;
    SDadosGravador dados{};
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

// The fields that have the same names in the provider's record and in the store's.
template <class TRegistro>
std::string XVDescreveComuns(const TRegistro& r) {
    std::ostringstream s;
    s << " chave=" << r.uiChaveIntegracaoSistemaTerceiro
      << " chaveRegistro=" << r.uiChaveRegistroSistemaTerceiro << " base=" << r.uiBaseDadosTerceiro
      << " tipo=" << r.eTipoIntegracao << " status=" << r.eStatusIntegracao
      << " sistema=" << r.eSistemaIntegracao << " transacao=" << r.eTipoTransacao
      << " filial=" << r.ulPonteiroFilial << " auxiliar=" << r.ulPonteiroAuxiliar
      << " reconsultar=" << +r.cReconsultarIdTerceiros << " tipoAuxiliar=" << +r.ucTipoPonteiroAuxiliar;
    return s.str();
}

inline std::string XVDescreve(const XVProvedorDados& r) {
    std::ostringstream s;
    s << "dmc=" << r.uiDmc << " integracaoOrigem=" << r.uiDmcIntegracaoOrigem
      << " movimentoOrigem=" << r.uiDmcMovimentoOrigem << " inclusao=" << r.uiDataHoraInclusao
      << " alteracao=" << r.uiDataHoraAlteracaoStatus << XVDescreveComuns(r) << " json=["
      << XVVista(r.sRegistroJSON) << "] mensagem=[" << XVVista(r.sMensagemIntegracao) << "] retorno=["
      << XVVista(r.sJSONRetornoIntegracao) << "]";
    return s.str();
}

inline std::string XVDescreve(const XVProvedorParametros& r) {
    std::ostringstream s;
    s << "tipo=" << r.eTipoIntegracao << " origem=" << r.uiDmcOrigem << " dmc=" << r.uiDmcIntegracao
      << " chaveRegistro=" << r.uiChaveRegistroSistemaTerceiro << " base=" << r.uiBaseDadosTerceiro
      << " sistema=" << r.eSistemaIntegracao << " transacao=" << r.eTipoTransacao
      << " filial=" << r.ulPonteiroFilial << " auxiliar=" << r.ulPonteiroAuxiliar
      << " tipoAuxiliar=" << +r.ucTipoPonteiroAuxiliar;
    return s.str();
}

inline std::string XVDescreve(const XVProvedorConsulta& r) {
    std::ostringstream s;
    s << "tipo=" << r.eTipoConsulta << " chave=[" << XVVista(r.sChaveConsulta)
      << "] auxiliar=" << r.ulPonteiroAuxiliar << " tipoAuxiliar=" << +r.ucTipoPonteiroAuxiliar;
    return s.str();
}
