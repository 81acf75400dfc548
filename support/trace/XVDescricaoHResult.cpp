#include "support/trace/XVDescricaoHResult.h"

#include "support/names/XVNomesHResult.h"
#include "support/trace/XVBibliotecaMensagens.h"

namespace {

constexpr unsigned k_uiFacilityItf = 4;

unsigned Severity(HRESULT hr) {
    return static_cast<XVUInt>(hr) >> 31;
}
unsigned Facility(HRESULT hr) {
    return static_cast<XVUInt>(hr) >> 16 & 0x1FFFU;
}
unsigned Codigo(HRESULT hr) {
    return static_cast<XVUInt>(hr) & 0xFFFFU;
}

const char* OuTexto(const char* psz, const char* pszAusente) {
    return psz != nullptr ? psz : pszAusente;
}

const char* NomeCodigo(HRESULT hr, const SRespostaMensagens& rResposta) {
    if (Facility(hr) == k_uiFacilityItf || !rResposta.bFacilityAlheia) return "";
    return XVDescricaoHResult::GetNomeCodigoWin32(Codigo(hr));
}

}  // namespace

namespace XVDescricaoHResult {

SDescricaoHResult Decodifica(HRESULT hr) {
    SRespostaMensagens resposta = XVBibliotecaMensagens::Consulta(hr);
    SDescricaoHResult descricao;
    descricao.iSeverity = static_cast<int>(Severity(hr));
    descricao.pszSeverity = GetDescricao_SEVERITY(hr);
    descricao.iFacility = static_cast<int>(Facility(hr));
    descricao.pszFacility = GetDescricao_FACILITY(hr);
    descricao.iCode = static_cast<int>(Codigo(hr));
    descricao.pszCode = NomeCodigo(hr, resposta);
    descricao.pszNome = GetNomeHRESULT(hr);
    descricao.sMensagem = std::move(resposta.sTexto);
    return descricao;
}

const char* GetDescricao_SEVERITY(HRESULT hr) {
    return GetNomeSeverity(Severity(hr));
}

const char* GetDescricao_FACILITY(HRESULT hr) {
    return GetNomeFacility(Facility(hr));
}

const char* GetDescricao_CODE(HRESULT hr) {
    return NomeCodigo(hr, XVBibliotecaMensagens::Consulta(hr));
}

const char* GetNomeHRESULT(HRESULT hr) {
    return OuTexto(XVNomesHResult::Busca(XVNomesHResult::k_listaHResult, static_cast<XVUInt>(hr)), "");
}

std::string GetMensagem(HRESULT hr) {
    return XVBibliotecaMensagens::Consulta(hr).sTexto;
}

const char* GetNomeSeverity(unsigned uiSeverity) {
    if (uiSeverity == 0) return "SEVERITY_SUCCESS";
    if (uiSeverity == 1) return "SEVERITY_ERROR";
    return "Desconhecido ou novo código de SEVERITY";
}

const char* GetNomeFacility(unsigned uiFacility) {
    return OuTexto(XVNomesHResult::Busca(XVNomesHResult::k_listaFacility, uiFacility),
                   "Desconhecido ou novo código de FACILITY");
}

const char* GetNomeCodigoWin32(unsigned uiCodigo) {
    return OuTexto(XVNomesHResult::Busca(XVNomesHResult::k_listaWin32, uiCodigo), "");
}

}  // namespace XVDescricaoHResult
