// Registry values held in memory. Thread rule: any thread.
#pragma once

#include <algorithm>
#include <functional>
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
        Set(Nome(sChave, sValor), std::string(sTexto));
    }
    void SetNumero(std::string_view sChave, std::string_view sValor, XVUInt ulNumero) {
        Set(Nome(sChave, sValor), ulNumero);
    }
    void Remove(std::string_view sChave, std::string_view sValor) { Set(Nome(sChave, sValor), {}); }

    std::optional<std::string> LeTexto(std::string_view sChave, std::string_view sValor) override {
        const TValor valor = Get(Nome(sChave, sValor));
        const std::string* psTexto = std::get_if<std::string>(&valor);
        return psTexto != nullptr ? std::optional(*psTexto) : std::nullopt;
    }
    std::optional<XVUInt> LeNumero(std::string_view sChave, std::string_view sValor) override {
        const TValor valor = Get(Nome(sChave, sValor));
        if (const XVUInt* pulNumero = std::get_if<XVUInt>(&valor)) return *pulNumero;
        return CXVRegistryTexto::ConverteNumero(LeTexto(sChave, sValor).value_or(""));
    }

    std::function<void()> fnAoLer;  // runs before each reading, without any lock

  private:
    using TValor = std::variant<std::monostate, std::string, XVUInt>;

    void Set(const std::string& sNome, TValor valor) {
        const std::lock_guard trava(m_mutex);
        m_mapaValores[sNome] = std::move(valor);
    }
    TValor Get(const std::string& sNome) {
        if (fnAoLer) fnAoLer();
        const std::lock_guard trava(m_mutex);
        return m_mapaValores[sNome];
    }
    static std::string Nome(std::string_view sChave, std::string_view sValor) {
        std::string sNome = std::string(sChave) + '\n' + std::string(sValor);
        std::transform(sNome.begin(), sNome.end(), sNome.begin(), XVMascara::Minuscula);
        return sNome;
    }

    std::mutex m_mutex;
    std::map<std::string, TValor> m_mapaValores;
};
