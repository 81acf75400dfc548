#include "support/messages/XVMensagens.h"

#include <algorithm>

#include "support/messages/XVMensagensTabela.h"
#include "support/values/XVTextoAscii.h"

std::array<std::span<const SMensagemCodigo>, 4> XVListaMensagens() {
    return {XVMensagensTabela::Base(), XVMensagensTabela::Arquivos(), XVMensagensTabela::Sistema(),
            XVMensagensTabela::Execucao()};
}

const SMensagemCodigo* XVBuscaMensagem(HRESULT hr) {
    const auto codigo = [](const SMensagemCodigo& r) { return static_cast<XVUInt>(r.hr); };
    const auto ulCodigo = static_cast<XVUInt>(hr);
    for (const std::span<const SMensagemCodigo> aMensagens : XVListaMensagens()) {
        // The last entry that does not begin after the code.
        const auto p = std::ranges::upper_bound(aMensagens, ulCodigo, {}, codigo);
        if (p == aMensagens.begin()) continue;
        const SMensagemCodigo& rMensagem = *std::prev(p);
        if (rMensagem.hr == hr || ulCodigo <= static_cast<XVUInt>(rMensagem.hrUltimo)) return &rMensagem;
    }
    return nullptr;
}

const SMensagemCodigo* XVBuscaMensagemPorNome(std::string_view sNome) {
    if (sNome.empty()) return nullptr;
    for (const std::span<const SMensagemCodigo> aMensagens : XVListaMensagens())
        for (const SMensagemCodigo& rMensagem : aMensagens)
            if (XVIgualSemCaixa(rMensagem.sNome, sNome)) return &rMensagem;
    return nullptr;
}

std::string_view XVNomeAssunto(EAssuntoMensagem eAssunto) {
    switch (eAssunto) {
        case EAssuntoMensagem::eAbertura:
            return "abertura";
        case EAssuntoMensagem::eArquivos:
            return "arquivos";
        case EAssuntoMensagem::eChamada:
            return "chamada";
        case EAssuntoMensagem::eProcesso:
            return "processo";
        case EAssuntoMensagem::eExecucao:
            break;
    }
    return "execucao";
}
