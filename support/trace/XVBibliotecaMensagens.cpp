#include "support/trace/XVBibliotecaMensagens.h"

#include <algorithm>
#include <map>
#include <mutex>

#include "platform/XVBibliotecaDinamica.h"
#include "support/messages/XVLMensagem.h"
#include "support/trace/XVProfilerConfig.h"

namespace {

constexpr std::size_t k_uiMaximoRespostas = 256;

struct SRespostas {
    std::mutex mutex;
    XVUInt ulGeracao = 0;  // reading of log.ini that the answers belong to
    std::map<HRESULT, SRespostaMensagens> mapa;
};

// Never destroyed: records may be written while the process ends.
SRespostas& Respostas() {
    static SRespostas& s_rRespostas = *new SRespostas;
    return s_rRespostas;
}

SRespostaMensagens PerguntaBiblioteca(HRESULT hr) {
    SRespostaMensagens resposta;
    const CXVBibliotecaDinamica biblioteca(k_pszBibliotecaMensagens);
    if (!biblioteca.EstaCarregada()) return resposta;
    const XVUInt ulFacility = static_cast<XVUInt>(hr) >> 16 & 0x1FFFU;
    if (const auto pEhFacility = biblioteca.GetFuncao<PFuncaoEhFacilityMT>(k_pszEhFacilityMT))
        resposta.bFacilityAlheia = pEhFacility(ulFacility) == 0;
    if (const auto pDescricao =
            biblioteca.GetFuncao<PFuncaoXVGetDescricaoHRESULT>(k_pszXVGetDescricaoHRESULT)) {
        char szTexto[1024];
        const XVUInt ulTamanho = pDescricao(hr, szTexto, sizeof szTexto);
        resposta.sTexto.assign(szTexto, std::min<std::size_t>(ulTamanho, sizeof szTexto - 1));
    }
    return resposta;
}

}  // namespace

namespace XVBibliotecaMensagens {

SRespostaMensagens Consulta(HRESULT hr) {
    SRespostas& rRespostas = Respostas();
    const std::lock_guard trava(rRespostas.mutex);
    const XVUInt ulGeracao = XVProfilerConfig::GetGeracao();
    if (rRespostas.ulGeracao != ulGeracao || rRespostas.mapa.size() >= k_uiMaximoRespostas)
        rRespostas.mapa.clear();
    rRespostas.ulGeracao = ulGeracao;
    const auto it = rRespostas.mapa.find(hr);
    if (it != rRespostas.mapa.end()) return it->second;
    return rRespostas.mapa.emplace(hr, PerguntaBiblioteca(hr)).first->second;
}

}  // namespace XVBibliotecaMensagens
