#include "tools/xvcr/text/XVDestinoBytes.h"

#include <cstdio>

#include "tools/xvcr/text/XVArquivoSaida.h"
#include "tools/xvcr/text/XVErros.h"

CXVDestinoBytes::CXVDestinoBytes(std::string sCaminho) : m_sCaminho(std::move(sCaminho)) {
    if (m_sCaminho.empty()) return;
    const std::filesystem::path caminho = XVCaminhoDeUtf8(m_sCaminho);
    std::error_code erro;
    if (std::filesystem::exists(caminho, erro))
        XVFalha("\"" + m_sCaminho + "\" já existe; nada foi gravado por cima");
    m_Arquivo.open(caminho, std::ios::binary);
    if (!m_Arquivo) XVFalha("não foi possível criar o arquivo \"" + m_sCaminho + "\"");
}

void CXVDestinoBytes::Escreve(std::string_view sBytes) {
    constexpr std::size_t k_uiBuffer = 256U << 10;
    m_sBuffer += sBytes;
    if (m_sBuffer.size() >= k_uiBuffer) Descarrega();
}

void CXVDestinoBytes::Descarrega() {
    if (m_sCaminho.empty()) {
        if (std::fwrite(m_sBuffer.data(), 1, m_sBuffer.size(), stdout) != m_sBuffer.size()) Falha();
    } else {
        m_Arquivo.write(m_sBuffer.data(), static_cast<std::streamsize>(m_sBuffer.size()));
        if (!m_Arquivo) Falha();
    }
    m_sBuffer.clear();
}

void CXVDestinoBytes::Termina() {
    Descarrega();
    if (m_sCaminho.empty()) {
        if (std::fflush(stdout) != 0) Falha();
        return;
    }
    m_Arquivo.close();
    if (!m_Arquivo) Falha();
}

void CXVDestinoBytes::Falha() const {
    if (m_sCaminho.empty())
        XVFalha("não foi possível escrever o resultado na saída padrão" + XVSeDiscoCheio());
    XVFalha("não foi possível gravar o arquivo \"" + m_sCaminho + "\", que ficou incompleto" +
            XVSeDiscoCheio());
}
