// A file system in memory with the contract of the real ones: share modes, attributes, deletion rules,
// marks. Names ignore the case of A-Z and keep the case they were created with; '/' and '\' both separate
// components; every path starts at one root, which always exists. Thread rule: any thread.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/XVCaminho.h"
#include "platform/XVMascara.h"
#include "platform/XVSistemaArquivos.h"
#include "tests/harness/XVArquivoMemoria.h"

class CXVSistemaArquivosMemoria final : public IXVSistemaArquivos {
  public:
    struct SArquivoRetratado {
        std::string sConteudo;
        bool bSomenteLeitura = false;
        bool operator==(const SArquivoRetratado&) const = default;
    };
    // The whole tree: files by path, directories by path with a '/' at the end.
    using TRetrato = std::map<std::string, SArquivoRetratado>;

    CXVErroArquivo Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                        std::unique_ptr<IXVArquivo>& pArquivo) override {
        pArquivo.reset();
        const std::lock_guard trava(m_pEstado->mutex);
        SLugar lugar;
        const CXVErroArquivo erro = m_pEstado->Localiza(sCaminho, lugar);
        if (erro.GetCausa() == ECausaArquivo::eArquivoNaoEncontrado &&
            rAbertura.eCriacao == ECriacaoArquivo::eCriaSeAusente)
            lugar.pConteudo = m_pEstado->mapaEntradas[lugar.sNormal] = std::make_shared<SConteudo>();
        else if (!erro.Ok())
            return erro;
        if (rAbertura.eAcesso != EAcessoArquivo::eLeitura && lugar.EhSomenteLeitura())
            return Erro(ECausaArquivo::eAcessoNegado);
        if (!lugar.pConteudo->PodeAbrir(rAbertura)) return Erro(ECausaArquivo::eViolacaoCompartilhamento);
        pArquivo = std::make_unique<CXVArquivoMemoria>(m_pEstado, std::move(lugar.pConteudo), rAbertura);
        return {};
    }
    EExistencia Existe(const std::string& sCaminho) override {
        const std::lock_guard trava(m_pEstado->mutex);
        const std::string sNormal = Normaliza(sCaminho);
        if (!XVCaminho::PodeNomearDiretorio(sCaminho)) return EExistencia::eAusente;
        if (m_pEstado->EhDiretorio(sNormal)) return EExistencia::eDiretorio;
        return m_pEstado->Conteudo(sNormal) ? EExistencia::eArquivo : EExistencia::eAusente;
    }
    bool EhSomenteLeitura(const std::string& sCaminho) override {
        const std::lock_guard trava(m_pEstado->mutex);
        const std::shared_ptr<SConteudo> pConteudo = m_pEstado->Conteudo(Normaliza(sCaminho));
        return pConteudo && pConteudo->bSomenteLeitura;
    }
    CXVErroArquivo BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) override {
        sNomeReal.clear();
        const std::lock_guard trava(m_pEstado->mutex);
        const std::string sNormal = Normaliza(sCaminho);
        const auto it = m_pEstado->mapaEntradas.find(sNormal);
        if (it == m_pEstado->mapaEntradas.end() || !XVCaminho::EhNomeSimples(SDiscoMemoria::NomeDe(sNormal)))
            return Erro(ECausaArquivo::eArquivoNaoEncontrado);
        sNomeReal = SDiscoMemoria::NomeDe(it->first);
        return {};
    }
    CXVErroArquivo GetCaminhoReal(const std::string& sDiretorio, std::string& sReal) override {
        const std::lock_guard trava(m_pEstado->mutex);
        // As the real ones do it: what stands before ".." has to be there.
        std::filesystem::path caminho;
        bool bTem = XVCaminho::PodeNomearDiretorio(sDiretorio);
        for (const auto& rParte : std::filesystem::path(sDiretorio)) {
            caminho = rParte == ".." ? caminho.parent_path() : rParte == "." ? caminho : caminho / rParte;
            bTem = bTem && m_pEstado->EhDiretorio(Normaliza(caminho.generic_string()));
        }
        const std::string sNormal = Normaliza(caminho.generic_string());
        sReal = bTem ? sNormal : "";
        return bTem ? CXVErroArquivo() : Erro(ECausaArquivo::eCaminhoInvalido);
    }
    CXVErroArquivo Apaga(const std::string& sCaminho) override {
        const std::lock_guard trava(m_pEstado->mutex);
        SLugar lugar;
        const CXVErroArquivo erro = m_pEstado->Localiza(sCaminho, lugar);
        if (!erro.Ok()) return erro;
        if (lugar.EhSomenteLeitura()) return Erro(ECausaArquivo::eAcessoNegado);
        if (lugar.EstaAberto()) return Erro(ECausaArquivo::eViolacaoCompartilhamento);
        m_pEstado->mapaEntradas.erase(lugar.sNormal);
        return {};
    }
    CXVErroArquivo Substitui(const std::string& sOrigem, const std::string& sDestino) override {
        const std::lock_guard trava(m_pEstado->mutex);
        SLugar origem;
        SLugar destino;
        CXVErroArquivo erro = m_pEstado->Localiza(sOrigem, origem);
        if (!erro.Ok()) return erro;
        erro = m_pEstado->Localiza(sDestino, destino);
        if (!erro.Ok() && erro.GetCausa() != ECausaArquivo::eArquivoNaoEncontrado) return erro;
        if (destino.EhSomenteLeitura()) return Erro(ECausaArquivo::eAcessoNegado);
        if (origem.EstaAberto() || destino.EstaAberto())
            return Erro(ECausaArquivo::eViolacaoCompartilhamento);
        m_pEstado->mapaEntradas.erase(origem.sNormal);
        m_pEstado->mapaEntradas.erase(destino.sNormal);
        m_pEstado->mapaEntradas[destino.sNormal] = origem.pConteudo;
        return {};
    }
    CXVErroArquivo Lista(const std::string& sDiretorio, const std::string& sMascara,
                         std::vector<std::string>& listaNomes) override {
        listaNomes.clear();
        const std::lock_guard trava(m_pEstado->mutex);
        const std::string sNormal = Normaliza(sDiretorio);
        if (!XVCaminho::PodeNomearDiretorio(sDiretorio) || !m_pEstado->EhDiretorio(sNormal))
            return Erro(ECausaArquivo::eCaminhoInvalido);
        for (const auto& [sCaminho, pConteudo] : m_pEstado->mapaEntradas)
            if (pConteudo && XVMascara::NomesIguais(SDiscoMemoria::DiretorioDe(sCaminho), sNormal) &&
                XVMascara::Confere(sMascara, SDiscoMemoria::NomeDe(sCaminho)))
                listaNomes.push_back(SDiscoMemoria::NomeDe(sCaminho));
        std::reverse(listaNomes.begin(), listaNomes.end());  // no directory promises the order of the names
        return {};
    }
    CXVErroArquivo CriaDiretorio(const std::string& sDiretorio) override {
        const std::lock_guard trava(m_pEstado->mutex);
        return XVCaminho::PodeNomearDiretorio(sDiretorio) && m_pEstado->CriaDiretorios(Normaliza(sDiretorio))
                   ? CXVErroArquivo()
                   : Erro(ECausaArquivo::eCaminhoInvalido);
    }
    CXVErroArquivo SincronizaDiretorio(const std::string& sDiretorio) override {
        const std::lock_guard trava(m_pEstado->mutex);
        return m_pEstado->EhDiretorio(Normaliza(sDiretorio)) ? CXVErroArquivo()
                                                             : Erro(ECausaArquivo::eCaminhoInvalido);
    }
    CXVErroArquivo MarcaDiretorio(const std::string& sDiretorio, const std::string& sMarca,
                                  std::unique_ptr<IXVMarcaDiretorio>& pMarca) override {
        pMarca.reset();
        const std::lock_guard trava(m_pEstado->mutex);
        const std::string sNormal = Normaliza(sDiretorio);
        if (!XVCaminho::PodeNomearDiretorio(sDiretorio) || !XVCaminho::EhNomeSimples(sMarca) ||
            !m_pEstado->EhDiretorio(sNormal))
            return Erro(ECausaArquivo::eCaminhoInvalido);
        if (!m_pEstado->conjuntoMarcas.insert(sNormal + '/' + sMarca).second)
            return Erro(ECausaArquivo::eViolacaoCompartilhamento);
        pMarca = std::make_unique<CXVMarcaMemoria>(m_pEstado, sNormal + '/' + sMarca);
        return {};
    }
    std::string Junta(std::string_view sDiretorio, std::string_view sNome) const override {
        return XVCaminho::Junta(sDiretorio, sNome, '/', SDiscoMemoria::k_sSeparadores);
    }

    // Behind the contract, for tests. They heed neither share modes nor attributes.
    // With its directories; replaces.
    void CriaArquivo(const std::string& sCaminho, std::string sConteudo) {
        const std::lock_guard trava(m_pEstado->mutex);
        const std::string sNormal = Normaliza(sCaminho);
        m_pEstado->CriaDiretorios(SDiscoMemoria::DiretorioDe(sNormal));
        std::shared_ptr<SConteudo>& rpConteudo = m_pEstado->mapaEntradas[sNormal];
        if (!rpConteudo) rpConteudo = std::make_shared<SConteudo>();
        rpConteudo->sBytes = std::move(sConteudo);
    }
    std::optional<std::string> LeConteudo(const std::string& sCaminho) const {
        const std::lock_guard trava(m_pEstado->mutex);
        const std::shared_ptr<SConteudo> pConteudo = m_pEstado->Conteudo(Normaliza(sCaminho));
        return pConteudo ? std::optional(pConteudo->sBytes) : std::nullopt;
    }
    void SetSomenteLeitura(const std::string& sCaminho, bool bSomenteLeitura) {
        const std::lock_guard trava(m_pEstado->mutex);
        const std::shared_ptr<SConteudo> pConteudo = m_pEstado->Conteudo(Normaliza(sCaminho));
        if (pConteudo) pConteudo->bSomenteLeitura = bSomenteLeitura;
    }
    // Of all contents together; beyond it: eDiscoCheio.
    void LimitaEspaco(std::optional<XVUInt64> uiBytes) {
        const std::lock_guard trava(m_pEstado->mutex);
        m_pEstado->uiLimite = uiBytes;
    }
    // Openings and marks that are still held.
    std::size_t GetQuantidadeAberta() const {
        const std::lock_guard trava(m_pEstado->mutex);
        std::size_t uiQuantidade = m_pEstado->conjuntoMarcas.size();
        for (const auto& [sCaminho, pConteudo] : m_pEstado->mapaEntradas)
            uiQuantidade += pConteudo ? pConteudo->listaAberturas.size() : 0;
        return uiQuantidade;
    }

    TRetrato Retrata() const {
        const std::lock_guard trava(m_pEstado->mutex);
        TRetrato retrato;
        for (const auto& [sCaminho, pConteudo] : m_pEstado->mapaEntradas)
            if (pConteudo)
                retrato[sCaminho] = {pConteudo->sBytes, pConteudo->bSomenteLeitura};
            else
                retrato[sCaminho + '/'] = {};
        return retrato;
    }
    // Nothing may be open.
    void Restaura(const TRetrato& rRetrato) {
        const std::lock_guard trava(m_pEstado->mutex);
        m_pEstado->mapaEntradas.clear();
        for (const auto& [sCaminho, rArquivo] : rRetrato) {
            std::shared_ptr<SConteudo>& rpConteudo = m_pEstado->mapaEntradas[Normaliza(sCaminho)];
            if (sCaminho.back() == '/') continue;
            rpConteudo =
                std::make_shared<SConteudo>(SConteudo{rArquivo.sConteudo, rArquivo.bSomenteLeitura, {}});
        }
    }
    // What differs, one line for each path; empty when nothing does.
    static std::string Diferenca(const TRetrato& rEsperado, const TRetrato& rObtido) {
        std::string sDiferenca;
        for (const auto& [sCaminho, rArquivo] : rEsperado) {
            const auto it = rObtido.find(sCaminho);
            if (it == rObtido.end()) {
                sDiferenca += sCaminho + ": missing\n";
            } else if (!(it->second == rArquivo)) {
                const std::string& s1 = rArquivo.sConteudo;
                const std::string& s2 = it->second.sConteudo;
                const auto par = std::mismatch(s1.begin(), s1.end(), s2.begin(), s2.end());
                sDiferenca +=
                    sCaminho + ": " + std::to_string(s1.size()) + " and " + std::to_string(s2.size()) +
                    " bytes, equal up to " + std::to_string(par.first - s1.begin()) +
                    (rArquivo.bSomenteLeitura == it->second.bSomenteLeitura ? "\n" : ", attribute\n");
            }
        }
        for (const auto& [sCaminho, rArquivo] : rObtido)
            if (!rEsperado.contains(sCaminho)) sDiferenca += sCaminho + ": unexpected\n";
        return sDiferenca;
    }

  private:
    using SLugar = SDiscoMemoria::SLugar;
    static CXVErroArquivo Erro(ECausaArquivo eCausa) { return SDiscoMemoria::Erro(eCausa); }
    static std::string Normaliza(const std::string& s) { return SDiscoMemoria::Normaliza(s); }

    const std::shared_ptr<SDiscoMemoria> m_pEstado = std::make_shared<SDiscoMemoria>();
};
