// A file system on a device that may lose its power: it passes every operation on to one in memory and
// remembers what has reached the device.
//
// On the device are the contents of a file at its last Sincroniza and the names of a directory at its last
// SincronizaDiretorio; Substitui brings the moved file and its directory there. Of everything later a power
// failure leaves any part: writes in any subset, cut short or torn at multiples of 512 bytes; lengths without
// their bytes (zeros) and bytes without their length (gone); created and deleted names or not. Directories
// are on the device once they are created. Thread rule: any thread.
#pragma once

#include <algorithm>
#include <functional>
#include <mutex>

#include "platform/XVMascara.h"
#include "tests/harness/XVConteudoQueda.h"
#include "tests/harness/XVSistemaArquivosEnvolto.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"

enum class EAlteracaoQueda : std::uint8_t { eMuda, eSincroniza };

// Names and contents; what the file system in memory holds is always the newest of both.
class CXVDispositivoQueda {
  public:
    using TAoAlterar = std::function<void(const std::string& sCaminho, EAlteracaoQueda eAlteracao)>;

    explicit CXVDispositivoQueda(const CXVSistemaArquivosMemoria& rMemoria) {
        for (const auto& [sCaminho, rArquivo] : rMemoria.Retrata())
            if (sCaminho.back() != '/')
                m_mapaNomes[Chave(sCaminho)] = {
                    sCaminho, std::make_shared<CXVConteudoQueda>(rArquivo.sConteudo), {}};
    }

    template <class TFaz, class TMetade>
    CXVErroArquivo Opera(const SOperacaoArquivo& rOperacao, TFaz fnFaz, TMetade) {
        const bool bSincroniza = rOperacao.eOperacao == EOperacaoArquivo::eSincroniza;
        if (m_fnAoAlterar && Altera(rOperacao))
            m_fnAoAlterar(rOperacao.sCaminho,
                          bSincroniza ? EAlteracaoQueda::eSincroniza : EAlteracaoQueda::eMuda);
        // Others are held off while it goes on.
        const std::lock_guard trava(m_mutex);
        const CXVErroArquivo erro = fnFaz();
        if (erro.Ok()) Segue(rOperacao);
        return erro;
    }
    void Abriu(const std::shared_ptr<SAberto>&) {}
    void Fecha(SAberto& rAberto) { rAberto.Solta(); }

    void SetAoAlterar(TAoAlterar fnAoAlterar) { m_fnAoAlterar = std::move(fnAoAlterar); }
    // Replaces the files of the tree by what a power failure may leave of them.
    void Corta(CXVSorteio& rSorteio, CXVSistemaArquivosMemoria::TRetrato& rRetrato) const {
        const std::lock_guard trava(m_mutex);
        std::erase_if(rRetrato, [](const auto& it) { return it.first.back() != '/'; });
        for (const auto& [sChave, rNome] : m_mapaNomes) {
            const std::size_t uiMomento = rSorteio.Ate(rNome.listaPendentes.size() + 1);
            const TConteudo& pConteudo =
                uiMomento == 0 ? rNome.pNoDispositivo : rNome.listaPendentes[uiMomento - 1];
            if (pConteudo) rRetrato[rNome.sCaminho] = {pConteudo->Sobrevive(rSorteio), false};
        }
    }

  private:
    static std::string Chave(std::string sCaminho) {
        std::ranges::transform(sCaminho, sCaminho.begin(), XVMascara::Minuscula);
        return sCaminho;
    }

    static std::string DiretorioDe(const std::string& sCaminho) {
        return sCaminho.substr(0, sCaminho.rfind('/'));
    }

    using TConteudo = std::shared_ptr<CXVConteudoQueda>;
    struct SNome {
        std::string sCaminho;
        TConteudo pNoDispositivo;               // null: the name is not there
        std::vector<TConteudo> listaPendentes;  // what the name has stood for since

        const TConteudo& Atual() const {
            return listaPendentes.empty() ? pNoDispositivo : listaPendentes.back();
        }
    };

    // Whether it changes names or contents, or brings them to the device.
    bool Altera(const SOperacaoArquivo& rOperacao) const {
        switch (rOperacao.eOperacao) {
            case EOperacaoArquivo::eAbre: {
                const std::lock_guard trava(m_mutex);
                return rOperacao.bAltera && !Atual(rOperacao.sCaminho);
            }
            case EOperacaoArquivo::eCriaDiretorio:
            case EOperacaoArquivo::eMarca:
                return false;
            default:
                return rOperacao.bAltera || rOperacao.eOperacao == EOperacaoArquivo::eSincroniza;
        }
    }
    // Does what the file system beneath has done.
    void Segue(const SOperacaoArquivo& rOperacao) {
        const std::string& sCaminho = rOperacao.sCaminho;
        const TConteudo pConteudo = Atual(sCaminho);
        switch (rOperacao.eOperacao) {
            case EOperacaoArquivo::eAbre:
                if (!pConteudo) Nomeia(sCaminho, std::make_shared<CXVConteudoQueda>());
                return;
            case EOperacaoArquivo::eGrava:
                return pConteudo->Grava(rOperacao.uiOffset, rOperacao.sDados);
            case EOperacaoArquivo::eSetTamanho:
                return pConteudo->SetTamanho(static_cast<std::size_t>(rOperacao.uiOffset));
            case EOperacaoArquivo::eSincroniza:
                return pConteudo ? pConteudo->Sincroniza() : SincronizaNomes(sCaminho);
            case EOperacaoArquivo::eApaga:
                return Nomeia(sCaminho, nullptr);
            case EOperacaoArquivo::eSubstitui: {
                const std::string sOrigem(rOperacao.sDados);
                const TConteudo pMovido = Atual(sOrigem);
                pMovido->Sincroniza();
                Nomeia(sOrigem, nullptr);
                Nomeia(sCaminho, pMovido);
                SincronizaNomes(DiretorioDe(sOrigem));
                return SincronizaNomes(DiretorioDe(sCaminho));
            }
            default:
                return;
        }
    }
    TConteudo Atual(const std::string& sCaminho) const {
        const auto it = m_mapaNomes.find(Chave(sCaminho));
        return it == m_mapaNomes.end() ? nullptr : it->second.Atual();
    }
    void Nomeia(const std::string& sCaminho, TConteudo pConteudo) {
        SNome& rNome = m_mapaNomes[Chave(sCaminho)];
        if (pConteudo) rNome.sCaminho = sCaminho;
        rNome.listaPendentes.push_back(std::move(pConteudo));
    }
    void SincronizaNomes(const std::string& sDiretorio) {
        for (auto& [sChave, rNome] : m_mapaNomes) {
            if (DiretorioDe(sChave) != Chave(sDiretorio)) continue;
            rNome.pNoDispositivo = rNome.Atual();
            rNome.listaPendentes.clear();
        }
    }

    mutable std::mutex m_mutex;  // guards the names
    std::map<std::string, SNome> m_mapaNomes;
    TAoAlterar m_fnAoAlterar;
};

class CXVSistemaArquivosQueda final : public TXVSistemaArquivosEnvolto<CXVDispositivoQueda> {
  public:
    using TRetrato = CXVSistemaArquivosMemoria::TRetrato;
    using EAlteracao = EAlteracaoQueda;

    // What rInterno holds counts as on the device.
    explicit CXVSistemaArquivosQueda(CXVSistemaArquivosMemoria& rInterno)
        : TXVSistemaArquivosEnvolto(rInterno, std::make_shared<CXVDispositivoQueda>(rInterno)),
          m_rMemoria(rInterno) {}

    // One of the trees that a power failure at this moment may leave, chosen by the seed.
    TRetrato Corta(XVUInt64 uiSemente) const {
        CXVSorteio sorteio(uiSemente);
        TRetrato retrato = m_rMemoria.Retrata();
        m_pVigia->Corta(sorteio, retrato);
        return retrato;
    }

    // What some power failure at this moment would take away or leave otherwise; empty: all is on the device.
    std::string NaoGarantido() const {
        const TRetrato retrato = m_rMemoria.Retrata();
        std::string sDiferenca;
        for (XVUInt64 uiSemente = 0; uiSemente < 16 && sDiferenca.empty(); ++uiSemente)
            sDiferenca = CXVSistemaArquivosMemoria::Diferenca(retrato, Corta(uiSemente));
        return sDiferenca;
    }

    // Runs, in the calling thread and without any lock, before each operation that changes something or
    // brings it to the device; null: nothing. Not to be set while another thread uses the file system.
    using TAoAlterar = CXVDispositivoQueda::TAoAlterar;
    void SetAoAlterar(TAoAlterar fnAoAlterar) { m_pVigia->SetAoAlterar(std::move(fnAoAlterar)); }

  private:
    CXVSistemaArquivosMemoria& m_rMemoria;
};
