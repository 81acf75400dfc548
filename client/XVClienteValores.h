// What a client of the component gives and receives: values that own their texts. Keys and date-times are
// the component's 64-bit forms (docs/component.md says how they are made up); 0 is none. Texts are
// bytes, UTF-8 where they are texts at all, and never converted on the way.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace XVCliente {

// The codes of COM and of the component, as values: negative is a failure.
using HResult = long;

// Who calls, for which company. Fields left empty are filled in from the running process.
struct SIdentificacao {
    std::string sEmpresa{};  // 1 to 47 characters of A-Z a-z 0-9 _ -
    std::uint16_t usUsuario = 0;
    std::uint32_t ulNumeroSessao = 0;
    std::uint32_t ulNumeroChamador = 1;  // any number but 0
    std::string sExecutavel{};           // at most 47 bytes
    std::string sModulo{};               // at most 47 bytes
    std::string sIdentificacao{};        // at most 63 bytes
};

struct SIntegracao {
    std::string sRegistroJSON{};
    std::string sMensagemIntegracao{};
    std::string sJSONRetornoIntegracao{};
    std::uint64_t uiDmc = 0;
    std::uint64_t uiDmcIntegracaoOrigem = 0;
    std::uint64_t uiDmcMovimentoOrigem = 0;
    std::uint64_t uiDataHoraInclusao = 0;
    std::uint64_t uiDataHoraAlteracaoStatus = 0;
    std::uint64_t uiChaveIntegracaoSistemaTerceiro = 0;
    std::uint64_t uiChaveRegistroSistemaTerceiro = 0;
    std::uint64_t uiBaseDadosTerceiro = 0;
    std::uint32_t eTipoIntegracao = 0;
    std::uint32_t eStatusIntegracao = 0;
    std::uint32_t eSistemaIntegracao = 0;
    std::uint32_t eTipoTransacao = 0;
    std::uint32_t ulPonteiroFilial = 0;
    std::uint32_t ulPonteiroUsuarioInclusao = 0;
    std::uint32_t ulPonteiroUsuarioCancelamento = 0;
    std::uint32_t ulPonteiroAuxiliar = 0;
    std::uint8_t cReconsultarIdTerceiros = 0;
    std::uint8_t ucTipoPonteiroAuxiliar = 0;
};

struct SStatusIntegracao {
    std::uint64_t uiDmc = 0;  // 0: named by key and system
    std::string sMensagemIntegracao{};
    std::string sJSONRetornoIntegracao{};
    std::uint64_t uiChaveIntegracaoSistemaTerceiro = 0;
    std::uint32_t eStatusIntegracao = 0;
    std::uint32_t eSistemaIntegracao = 0;
};

// Bounds of 0 and empty lists restrict nothing.
struct SFiltroIntegracao {
    std::uint64_t uiChaveInicial = 0;
    std::uint64_t uiChaveFinal = 0;
    std::uint64_t uiInclusaoInicial = 0;
    std::uint64_t uiInclusaoFinal = 0;
    std::uint64_t uiAlteracaoStatusInicial = 0;
    std::uint64_t uiAlteracaoStatusFinal = 0;
    std::vector<std::uint32_t> listaTipoIntegracao{};
    std::vector<std::uint32_t> listaStatusIntegracao{};
    std::vector<std::uint32_t> listaSistemaIntegracao{};
    std::vector<std::uint32_t> listaTipoTransacao{};
};

// Also the filter of the key map, which does not look at uiDmcOrigemIntegracao.
struct SChaveRegistro {
    std::uint64_t uiChaveRegistroSistemaTerceiro = 0;
    std::uint64_t uiDmcRegistroTelvo = 0;
    std::uint64_t uiBaseDadosTerceiro = 0;
    std::uint32_t eTipoIntegracao = 0;
    std::uint32_t eSistemaIntegracao = 0;
    std::uint64_t uiDmcOrigemIntegracao = 0;
};

// Also the filter of the date-times, which does not look at uiDataHora.
struct SDataHoraIntegracao {
    std::uint64_t uiDataHora = 0;
    std::uint32_t eTipoIntegracao = 0;
    std::uint32_t eSistemaIntegracao = 0;
    std::uint32_t eTipoData = 0;
};

struct SConsultaTerceiro {
    std::string sChaveConsulta{};
    std::uint32_t eTipoConsulta = 0;
    std::uint32_t ulPonteiroAuxiliar = 0;
    std::uint8_t ucTipoPonteiroAuxiliar = 0;
};

struct SRespostaConsulta {
    std::string sMensagemRetorno{};
    std::string sJSONRetorno{};
    std::string sDocumentoRetorno{};  // bytes of any kind
    std::uint32_t eStatusConsulta = 0;
};

struct SUltimoErro {
    HResult hrErro = 0;  // 0: the component has had no failure
    std::uint32_t ulLinha = 0;
    std::uint64_t uiDataHora = 0;
    std::string sNome{};
    std::string sFuncao{};
    std::string sFonte{};
    std::string sMensagem{};  // a sentence for a person, in Portuguese
};

}  // namespace XVCliente
