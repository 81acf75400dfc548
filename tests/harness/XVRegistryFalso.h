// Registry values held in memory. Thread rule: any thread.
#pragma once

#include <algorithm>
#include <map>
#include <mutex>
#include <string>
#include <variant>

#include "platform/XVMascara.h"
#include "platform/XVRegistry.h"
#include "platform/XVRegistryTexto.h"

class CXVRegistryFalso final : public IXVRegistry {
  public:
    void SetTexto(std::string_view sChave, std::string_view sValor, std::string_view sTexto) {
        const std::lock_guard trava(m_mutex);
        m_mapaValores.insert_or_assign(Nome(sChave, sValor), std::string(sTexto));
    }
    void SetNumero(std::string_view sChave, std::string_view sValor, XVUInt ulNumero) {
        const std::lock_guard trava(m_mutex);
        m_mapaValores.insert_or_assign(Nome(sChave, sValor), ulNumero);
    }
    void Remove(std::string_view sChave, std::string_view sValor) {
        const std::lock_guard trava(m_mutex);
        m_mapaValores.erase(Nome(sChave, sValor));
    }

    std::optional<std::string> LeTexto(std::string_view sChave, std::string_view sValor) override {
        const std::lock_guard trava(m_mutex);
        const auto it = m_mapaValores.find(Nome(sChave, sValor));
        if (it == m_mapaValores.end() || !std::holds_alternative<std::string>(it->second)) {
            return std::nullopt;
        }
        return std::get<std::string>(it->second);
    }
    std::optional<XVUInt> LeNumero(std::string_view sChave, std::string_view sValor) override {
        const std::lock_guard trava(m_mutex);
        const auto it = m_mapaValores.find(Nome(sChave, sValor));
        if (it == m_mapaValores.end()) {
            return std::nullopt;
        }
        const XVUInt* pulNumero = std::get_if<XVUInt>(&it->second);
        return pulNumero != nullptr ? *pulNumero
                                    : CXVRegistryTexto::ConverteNumero(std::get<std::string>(it->second));
    }

  private:
    static std::string Nome(std::string_view sChave, std::string_view sValor) {
        std::string sNome = std::string(sChave) + '\n' + std::string(sValor);
        std::transform(sNome.begin(), sNome.end(), sNome.begin(), XVMascara::Minuscula);
        return sNome;
    }

    std::mutex m_mutex;
    std::map<std::string, std::variant<std::string, XVUInt>> m_mapaValores;
};
