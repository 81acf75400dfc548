// The values of the text file that the environment variable XV_REGISTRO names (see XVRegistryTexto.h).
// The file is read at the first question and again whenever its time or length has changed.
// Thread rule: any thread.
#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

#include "platform/XVRegistry.h"
#include "platform/XVRegistryTexto.h"

class CXVRegistryArquivo final : public IXVRegistry {
  public:
    static constexpr const char* k_pszVariavel = "XV_REGISTRO";

    // Whether the variable is set; when it is not, every value is absent.
    static bool EstaConfigurado();

    std::optional<std::string> LeTexto(std::string_view sChave, std::string_view sValor) override;
    std::optional<XVUInt> LeNumero(std::string_view sChave, std::string_view sValor) override;

  private:
    void Atualiza();

    std::mutex m_mutex;
    std::string m_sCaminho;
    std::optional<std::filesystem::file_time_type> m_instante;
    std::uintmax_t m_uiTamanho = 0;
    CXVRegistryTexto m_texto;
};
