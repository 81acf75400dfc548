// A file system on a device that may lose its power: it passes every operation on to one in memory and
// remembers what has reached the device.
//
// On the device are the contents of a file at its last Sincroniza and the names of a directory at its last
// SincronizaDiretorio; Substitui brings the moved file and its directory there. Of everything later a power
// failure leaves any part: writes in any subset, cut short or torn at multiples of 512 bytes; lengths without
// their bytes (zeros) and bytes without their length (gone); created and deleted names or not. Directories
// are on the device once they are created. Thread rule: any thread.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "tests/harness/XVConteudoQueda.h"
#include "tests/harness/XVSistemaArquivosEnvolto.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"

enum class EAlteracaoQueda : std::uint8_t { eMuda, eSincroniza };

// Names and contents; what the file system in memory holds is always the newest of both.
class CXVDispositivoQueda {
  public:
    using TAoAlterar = std::function<void(const std::string& sCaminho, EAlteracaoQueda eAlteracao)>;

    explicit CXVDispositivoQueda(const CXVSistemaArquivosMemoria& rMemoria);

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
    void Corta(CXVSorteio& rSorteio, CXVSistemaArquivosMemoria::TRetrato& rRetrato) const;

  private:
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
    bool Altera(const SOperacaoArquivo& rOperacao) const;
    // Does what the file system beneath has done.
    void Segue(const SOperacaoArquivo& rOperacao);
    TConteudo Atual(const std::string& sCaminho) const;
    void Nomeia(const std::string& sCaminho, TConteudo pConteudo);
    void SincronizaNomes(const std::string& sDiretorio);

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
    TRetrato Corta(XVUInt64 uiSemente) const;

    // Runs, in the calling thread and without any lock, before each operation that changes something or
    // brings it to the device; null: nothing. Not to be set while another thread uses the file system.
    using TAoAlterar = CXVDispositivoQueda::TAoAlterar;
    void SetAoAlterar(TAoAlterar fnAoAlterar) { m_pVigia->SetAoAlterar(std::move(fnAoAlterar)); }

  private:
    CXVSistemaArquivosMemoria& m_rMemoria;
};
