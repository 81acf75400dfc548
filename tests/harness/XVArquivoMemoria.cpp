#include "tests/harness/XVArquivoMemoria.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/XVMascara.h"

namespace {

constexpr XVUInt64 k_uiTamanhoMaximo = XVUInt64{1} << 30;  // bytes; a longer file is a mistake of the test

bool Permite(ECompartilhamentoArquivo eCompartilhamento, EAcessoArquivo eAcesso) {
    return eCompartilhamento == ECompartilhamentoArquivo::eNegaNada ||
           (eCompartilhamento == ECompartilhamentoArquivo::eNegaEscrita &&
            eAcesso == EAcessoArquivo::eLeitura);
}

constexpr CXVErroArquivo Erro(ECausaArquivo eCausa) {
    return {eCausa, 0};
}

}  // namespace

bool SConteudo::PodeAbrir(const SAberturaArquivo& rNova) const {
    return std::all_of(listaAberturas.begin(), listaAberturas.end(), [&](const SAberturaArquivo& rOutra) {
        return Permite(rOutra.eCompartilhamento, rNova.eAcesso) &&
               Permite(rNova.eCompartilhamento, rOutra.eAcesso);
    });
}

bool SSemCaixa::operator()(const std::string& s1, const std::string& s2) const {
    return std::lexicographical_compare(s1.begin(), s1.end(), s2.begin(), s2.end(), [](char c1, char c2) {
        return XVMascara::Minuscula(c1) < XVMascara::Minuscula(c2);
    });
}

XVUInt64 SDiscoMemoria::Livres() const {
    XVUInt64 uiLivres = uiLimite.value_or(0);
    for (const auto& [sCaminho, pConteudo] : mapaEntradas) {
        uiLivres -= pConteudo ? std::min<XVUInt64>(uiLivres, pConteudo->sBytes.size()) : 0;
    }
    return uiLivres;
}

CXVArquivoMemoria::CXVArquivoMemoria(std::shared_ptr<SDiscoMemoria> pDisco,
                                     std::shared_ptr<SConteudo> pConteudo, const SAberturaArquivo& rAbertura)
    : m_pDisco(std::move(pDisco)),
      m_pConteudo(std::move(pConteudo)),
      m_eAcesso(rAbertura.eAcesso),
      m_itAbertura(m_pConteudo->listaAberturas.insert(m_pConteudo->listaAberturas.end(), rAbertura)) {}

CXVArquivoMemoria::~CXVArquivoMemoria() {
    const std::lock_guard trava(m_pDisco->mutex);
    m_pConteudo->listaAberturas.erase(m_itAbertura);
}

CXVErroArquivo CXVArquivoMemoria::Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) {
    if (m_eAcesso == EAcessoArquivo::eAnexacao) {
        return Erro(ECausaArquivo::eAcessoNegado);
    }
    if (uiOffset > std::numeric_limits<XVUInt64>::max() / 2) {
        return Erro(ECausaArquivo::ePosicionamentoInvalido);
    }
    const std::lock_guard trava(m_pDisco->mutex);
    const std::string& sBytes = m_pConteudo->sBytes;
    if (uiTamanho > 0 && (uiOffset > sBytes.size() || uiTamanho > sBytes.size() - uiOffset)) {
        return Erro(ECausaArquivo::eFimDeArquivo);
    }
    if (uiTamanho > 0) std::memcpy(pDados, sBytes.data() + uiOffset, uiTamanho);
    return {};
}

bool CXVArquivoMemoria::Redimensiona(XVUInt64 uiTamanho) {
    std::string& sBytes = m_pConteudo->sBytes;
    const bool bCabe =
        uiTamanho <= sBytes.size() || !m_pDisco->uiLimite || uiTamanho - sBytes.size() <= m_pDisco->Livres();
    sBytes.resize(static_cast<std::size_t>(bCabe ? uiTamanho : sBytes.size() + m_pDisco->Livres()));
    return bCabe;
}

CXVErroArquivo CXVArquivoMemoria::Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) {
    if (m_eAcesso == EAcessoArquivo::eLeitura) {
        return Erro(ECausaArquivo::eAcessoNegado);
    }
    if (uiTamanho == 0) {
        return {};
    }
    const std::lock_guard trava(m_pDisco->mutex);
    std::string& sBytes = m_pConteudo->sBytes;
    if (m_eAcesso == EAcessoArquivo::eAnexacao) {
        uiOffset = sBytes.size();
    }
    if (uiOffset > k_uiTamanhoMaximo || uiTamanho > k_uiTamanhoMaximo - uiOffset) {
        return Erro(ECausaArquivo::ePosicionamentoInvalido);
    }
    const bool bCoube = uiOffset + uiTamanho <= sBytes.size() || Redimensiona(uiOffset + uiTamanho);
    if (uiOffset < sBytes.size()) {
        std::memcpy(sBytes.data() + uiOffset, pDados,
                    std::min(uiTamanho, sBytes.size() - static_cast<std::size_t>(uiOffset)));
    }
    return bCoube ? CXVErroArquivo() : Erro(ECausaArquivo::eDiscoCheio);
}

CXVErroArquivo CXVArquivoMemoria::GetTamanho(XVUInt64& uiTamanho) {
    const std::lock_guard trava(m_pDisco->mutex);
    uiTamanho = m_pConteudo->sBytes.size();
    return {};
}

CXVErroArquivo CXVArquivoMemoria::SetTamanho(XVUInt64 uiTamanho) {
    if (m_eAcesso != EAcessoArquivo::eLeituraEscrita) {
        return Erro(ECausaArquivo::eAcessoNegado);
    }
    if (uiTamanho > k_uiTamanhoMaximo) {
        return Erro(ECausaArquivo::ePosicionamentoInvalido);
    }
    const std::lock_guard trava(m_pDisco->mutex);
    const XVUInt64 uiAnterior = m_pConteudo->sBytes.size();
    if (!Redimensiona(uiTamanho)) {
        Redimensiona(uiAnterior);
        return Erro(ECausaArquivo::eDiscoCheio);
    }
    return {};
}
