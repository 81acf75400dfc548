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
#include <string>

#include "tests/harness/XVSistemaArquivosEnvolto.h"
#include "tests/harness/XVSistemaArquivosMemoria.h"

struct SVigiaNenhuma {};

class CXVSistemaArquivosQueda final : public TXVSistemaArquivosEnvolto<TXVVigiaGuarda<SVigiaNenhuma>> {
  public:
    using TRetrato = CXVSistemaArquivosMemoria::TRetrato;
    struct SDispositivo;

    // What rInterno holds counts as on the device.
    explicit CXVSistemaArquivosQueda(CXVSistemaArquivosMemoria& rInterno);
    ~CXVSistemaArquivosQueda() override;

    // One of the trees that a power failure at this moment may leave, chosen by the seed.
    TRetrato Corta(XVUInt64 uiSemente) const;

    enum class EAlteracao : std::uint8_t { eMuda, eSincroniza };
    // Runs, in the calling thread and without any lock, before each operation that changes something or
    // brings it to the device; null: nothing. Not to be set while another thread uses the file system.
    using TAoAlterar = std::function<void(const std::string& sCaminho, EAlteracao eAlteracao)>;
    void SetAoAlterar(TAoAlterar fnAoAlterar);

    CXVErroArquivo Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                        std::unique_ptr<IXVArquivo>& pArquivo) override;
    CXVErroArquivo Apaga(const std::string& sCaminho) override;
    CXVErroArquivo Substitui(const std::string& sOrigem, const std::string& sDestino) override;
    CXVErroArquivo SincronizaDiretorio(const std::string& sDiretorio) override;

  private:
    CXVSistemaArquivosMemoria& m_rMemoria;
    std::shared_ptr<SDispositivo> m_pDispositivo;
};
