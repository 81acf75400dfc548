// What the file system in memory is made of: contents with their openings, and the disk that holds them.
#pragma once

#include <algorithm>
#include <cstring>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "platform/XVCaminho.h"
#include "platform/XVMascara.h"
#include "platform/XVSistemaArquivos.h"

struct SConteudo {
    std::string sBytes;
    bool bSomenteLeitura = false;
    std::list<SAberturaArquivo> listaAberturas;

    static bool Permite(ECompartilhamentoArquivo eCompartilhamento, EAcessoArquivo eAcesso) {
        return eCompartilhamento == ECompartilhamentoArquivo::eNegaNada ||
               (eCompartilhamento == ECompartilhamentoArquivo::eNegaEscrita &&
                eAcesso == EAcessoArquivo::eLeitura);
    }
    // Whether every opening allows this one and this one allows every opening.
    bool PodeAbrir(const SAberturaArquivo& rNova) const {
        return std::ranges::all_of(listaAberturas, [&](const SAberturaArquivo& rOutra) {
            return Permite(rOutra.eCompartilhamento, rNova.eAcesso) &&
                   Permite(rNova.eCompartilhamento, rOutra.eAcesso);
        });
    }
};

// Names that differ only in the case of A-Z are one.
struct SSemCaixa {
    bool operator()(const std::string& s1, const std::string& s2) const {
        const auto par = std::ranges::mismatch(s1, s2, [](char c1, char c2) {
            return c1 == c2 || XVMascara::Minuscula(c1) == XVMascara::Minuscula(c2);
        });
        if (par.in1 == s1.end() || par.in2 == s2.end()) return s1.size() < s2.size();
        return XVMascara::Minuscula(*par.in1) < XVMascara::Minuscula(*par.in2);
    }
};

// What all files of one file system share; the mutex guards everything in it.
struct SDiscoMemoria {
    std::mutex mutex;
    std::map<std::string, std::shared_ptr<SConteudo>, SSemCaixa> mapaEntradas;  // null: a directory
    std::set<std::string, SSemCaixa> conjuntoMarcas;
    std::optional<XVUInt64> uiLimite;  // bytes of all contents

    // How long a content may become.
    XVUInt64 Maximo(const SConteudo& rConteudo) const {
        if (!uiLimite) return ~XVUInt64{0};
        XVUInt64 uiLivres = *uiLimite;
        for (const auto& [sCaminho, pConteudo] : mapaEntradas)
            uiLivres -= pConteudo ? std::min<XVUInt64>(uiLivres, pConteudo->sBytes.size()) : 0;
        return rConteudo.sBytes.size() + uiLivres;
    }

    static constexpr std::string_view k_sSeparadores = "/\\";

    static constexpr CXVErroArquivo Erro(ECausaArquivo eCausa) { return {eCausa, 0}; }

    // "/a/b" for every way to write it; "" for the root.
    static std::string Normaliza(std::string_view sCaminho) {
        std::string sNormal;
        while (!sCaminho.empty()) {
            const std::size_t uiFim = std::min(sCaminho.find_first_of(k_sSeparadores), sCaminho.size());
            const std::string_view sParte = sCaminho.substr(0, uiFim);
            if (!sParte.empty() && sParte != ".") sNormal.append(1, '/').append(sParte);
            sCaminho.remove_prefix(std::min(uiFim + 1, sCaminho.size()));
        }
        return sNormal;
    }

    static std::string DiretorioDe(const std::string& sNormal) {
        return sNormal.substr(0, sNormal.rfind('/'));
    }
    static std::string NomeDe(const std::string& sNormal) { return sNormal.substr(sNormal.rfind('/') + 1); }

    struct SLugar {
        std::string sNormal;
        std::shared_ptr<SConteudo> pConteudo;

        bool EstaAberto() const { return pConteudo && !pConteudo->listaAberturas.empty(); }
        bool EhSomenteLeitura() const { return pConteudo && pConteudo->bSomenteLeitura; }
    };

    // Null for a directory as well as for nothing.
    std::shared_ptr<SConteudo> Conteudo(const std::string& sNormal) const {
        const auto it = mapaEntradas.find(sNormal);
        return it == mapaEntradas.end() ? nullptr : it->second;
    }
    bool EhDiretorio(const std::string& sNormal) const {
        return sNormal.empty() || (mapaEntradas.contains(sNormal) && !Conteudo(sNormal));
    }
    // False when a file is in the way.
    bool CriaDiretorios(const std::string& sNormal) {
        return sNormal.empty() ||
               (CriaDiretorios(DiretorioDe(sNormal)) && !mapaEntradas.try_emplace(sNormal).first->second);
    }
    // The file that a path names.
    CXVErroArquivo Localiza(const std::string& sCaminho, SLugar& rLugar) const {
        if (!XVCaminho::PodeNomearArquivo(sCaminho, k_sSeparadores))
            return Erro(ECausaArquivo::eCaminhoInvalido);
        rLugar.sNormal = Normaliza(sCaminho);
        rLugar.pConteudo = Conteudo(rLugar.sNormal);
        if (EhDiretorio(rLugar.sNormal)) return Erro(ECausaArquivo::eAcessoNegado);
        if (rLugar.pConteudo) return {};
        return Erro(EhDiretorio(DiretorioDe(rLugar.sNormal)) ? ECausaArquivo::eArquivoNaoEncontrado
                                                             : ECausaArquivo::eCaminhoInvalido);
    }
};

class CXVArquivoMemoria final : public IXVArquivo {
  public:
    // The disk's mutex is held by the caller.
    CXVArquivoMemoria(std::shared_ptr<SDiscoMemoria> pDisco, std::shared_ptr<SConteudo> pConteudo,
                      const SAberturaArquivo& rAbertura)
        : m_pDisco(std::move(pDisco)),
          m_pConteudo(std::move(pConteudo)),
          m_eAcesso(rAbertura.eAcesso),
          m_itAbertura(m_pConteudo->listaAberturas.insert(m_pConteudo->listaAberturas.end(), rAbertura)) {}
    ~CXVArquivoMemoria() override {
        const std::lock_guard trava(m_pDisco->mutex);
        m_pConteudo->listaAberturas.erase(m_itAbertura);
    }
    CXVArquivoMemoria(const CXVArquivoMemoria&) = delete;
    CXVArquivoMemoria& operator=(const CXVArquivoMemoria&) = delete;

    CXVErroArquivo Le(XVUInt64 uiOffset, void* pDados, std::size_t uiTamanho) override {
        if (m_eAcesso == EAcessoArquivo::eAnexacao) return {ECausaArquivo::eAcessoNegado, 0};
        if (!Alcanca(uiOffset, 0)) return {ECausaArquivo::ePosicionamentoInvalido, 0};
        const std::lock_guard trava(m_pDisco->mutex);
        const std::string& sBytes = m_pConteudo->sBytes;
        if (uiTamanho == 0) return {};
        if (uiOffset > sBytes.size() || uiTamanho > sBytes.size() - uiOffset)
            return {ECausaArquivo::eFimDeArquivo, 0};
        std::memcpy(pDados, sBytes.data() + uiOffset, uiTamanho);
        return {};
    }
    CXVErroArquivo Grava(XVUInt64 uiOffset, const void* pDados, std::size_t uiTamanho) override {
        if (m_eAcesso == EAcessoArquivo::eLeitura) return {ECausaArquivo::eAcessoNegado, 0};
        const std::lock_guard trava(m_pDisco->mutex);
        std::string& sBytes = m_pConteudo->sBytes;
        if (m_eAcesso == EAcessoArquivo::eAnexacao) uiOffset = sBytes.size();
        if (!Alcanca(uiOffset, uiTamanho)) return {ECausaArquivo::ePosicionamentoInvalido, 0};
        if (uiTamanho == 0) return {};
        // A full disk takes what has room.
        const XVUInt64 uiFim = std::min(m_pDisco->Maximo(*m_pConteudo), uiOffset + uiTamanho);
        if (sBytes.size() < uiFim) sBytes.resize(static_cast<std::size_t>(uiFim));
        if (uiOffset < uiFim)
            std::memcpy(sBytes.data() + uiOffset, pDados, static_cast<std::size_t>(uiFim - uiOffset));
        return uiFim == uiOffset + uiTamanho ? CXVErroArquivo()
                                             : CXVErroArquivo(ECausaArquivo::eDiscoCheio, 0);
    }
    CXVErroArquivo GetTamanho(XVUInt64& uiTamanho) override {
        const std::lock_guard trava(m_pDisco->mutex);
        uiTamanho = m_pConteudo->sBytes.size();
        return {};
    }
    CXVErroArquivo SetTamanho(XVUInt64 uiTamanho) override {
        if (m_eAcesso != EAcessoArquivo::eLeituraEscrita) return {ECausaArquivo::eAcessoNegado, 0};
        if (!Alcanca(uiTamanho, 0)) return {ECausaArquivo::ePosicionamentoInvalido, 0};
        const std::lock_guard trava(m_pDisco->mutex);
        if (uiTamanho > m_pDisco->Maximo(*m_pConteudo)) return {ECausaArquivo::eDiscoCheio, 0};
        m_pConteudo->sBytes.resize(static_cast<std::size_t>(uiTamanho));
        return {};
    }
    CXVErroArquivo Sincroniza() override { return {}; }

  private:
    static bool Alcanca(XVUInt64 uiOffset, std::size_t uiTamanho) {
        constexpr XVUInt64 k_uiTamanhoMaximo = XVUInt64{1} << 30;  // a longer file is a mistake of the test
        return uiOffset <= k_uiTamanhoMaximo && uiTamanho <= k_uiTamanhoMaximo - uiOffset;
    }

    std::shared_ptr<SDiscoMemoria> m_pDisco;
    std::shared_ptr<SConteudo> m_pConteudo;
    EAcessoArquivo m_eAcesso;
    std::list<SAberturaArquivo>::iterator m_itAbertura;
};

class CXVMarcaMemoria final : public IXVMarcaDiretorio {
  public:
    CXVMarcaMemoria(std::shared_ptr<SDiscoMemoria> pDisco, std::string sCaminho)
        : m_pDisco(std::move(pDisco)), m_sCaminho(std::move(sCaminho)) {}
    ~CXVMarcaMemoria() override {
        const std::lock_guard trava(m_pDisco->mutex);
        m_pDisco->conjuntoMarcas.erase(m_sCaminho);
    }
    CXVMarcaMemoria(const CXVMarcaMemoria&) = delete;
    CXVMarcaMemoria& operator=(const CXVMarcaMemoria&) = delete;

  private:
    std::shared_ptr<SDiscoMemoria> m_pDisco;
    std::string m_sCaminho;
};
