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

// What an operation on an integration answers. With bMuda false it changes nothing.
struct SRespostaDados {
    std::int32_t iResultado = 0;
    bool bMuda = false;
    std::string sJSON, sMensagem, sRetorno;
    std::uint64_t uiChave = 0, uiChaveRegistro = 0, uiBase = 0;
    std::uint32_t eStatus = 0, ulFilial = 0;
    std::uint8_t cReconsultar = 0;
};

// What the operations on parameters answer. With bMuda they also write fields that are not theirs.
struct SRespostaParametros {
    std::int32_t iResultado = 0;
    bool bMuda = false;
    std::uint32_t eTipo = 0, eTransacao = 0, ulFilial = 0;
    std::uint64_t uiOrigem = 0, uiChaveRegistro = 0;
};

struct SItemGravador {
    std::string sJSON;
    std::uint64_t uiOrigem = 0, uiBase = 0, uiChaveRegistro = 0;
    std::uint32_t eSistema = 16, ulFilial = 0;
    std::uint8_t cReconsultar = 0;
};

struct SRespostaConsulta {
    std::int32_t iResultado = 0;
    std::uint32_t eStatus = 0;
    std::string sMensagem, sJSON, sDocumento;
};

struct SGravador {
    std::vector<std::string> listaChamadas;
    std::map<std::string, SRespostaDados> mapDados;            // by operation
    std::map<std::string, SRespostaParametros> mapParametros;  // by operation
    std::vector<SItemGravador> listaItens;
    std::int32_t iResultadoLista = 0;
    SRespostaConsulta consulta;
    std::function<void()> fnDepoisDaTroca;  // at the end of send, query and deletion
    long lBuffersVivos = 0;
};

// Exported by the library under this name.
using PFXVGravador = SGravador* (*)();
inline constexpr const char* k_pszFuncaoGravador = "XVProvedorGravador";

inline std::string_view XVVista(const XVProvedorTexto& rTexto) {
    return {rTexto.pBytes, static_cast<std::size_t>(rTexto.uiTamanho)};
}

inline std::string XVDescreve(const XVProvedorDados& r) {
    std::ostringstream s;
    s << "dmc=" << r.uiDmc << " integracaoOrigem=" << r.uiDmcIntegracaoOrigem
      << " movimentoOrigem=" << r.uiDmcMovimentoOrigem << " inclusao=" << r.uiDataHoraInclusao
      << " alteracao=" << r.uiDataHoraAlteracaoStatus << " chave=" << r.uiChaveIntegracaoSistemaTerceiro
      << " chaveRegistro=" << r.uiChaveRegistroSistemaTerceiro << " base=" << r.uiBaseDadosTerceiro
      << " tipo=" << r.eTipoIntegracao << " status=" << r.eStatusIntegracao
      << " sistema=" << r.eSistemaIntegracao << " transacao=" << r.eTipoTransacao
      << " filial=" << r.ulPonteiroFilial << " auxiliar=" << r.ulPonteiroAuxiliar
      << " reconsultar=" << +r.cReconsultarIdTerceiros << " tipoAuxiliar=" << +r.ucTipoPonteiroAuxiliar
      << " json=[" << XVVista(r.sRegistroJSON) << "] mensagem=[" << XVVista(r.sMensagemIntegracao)
      << "] retorno=[" << XVVista(r.sJSONRetornoIntegracao) << "]";
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
