#include "tests/middleware/XVProtocoloMorte.h"

#include <cstdlib>

namespace {

constexpr unsigned k_uiDias = 3;

SDataHora Instante(unsigned uiVida) {
    return {2024,
            3,
            static_cast<XVByte>(15 + uiVida % k_uiDias),
            static_cast<XVByte>(uiVida / 3600 % 24),
            static_cast<XVByte>(uiVida / 60 % 60),
            static_cast<XVByte>(uiVida % 60)};
}

}  // namespace

std::vector<std::string> SPedidoMorte::Argumentos() const {
    return {sDiretorio,
            std::to_string(uiSemente),
            std::to_string(uiPrimeiraVersao),
            std::to_string(uiOperacoes),
            std::to_string(uiThreads),
            std::to_string(uiVida),
            std::to_string(ulDurabilidade)};
}

bool SPedidoMorte::DeArgumentos(const std::vector<std::string>& lista) {
    if (lista.size() != Argumentos().size()) return false;
    const auto numero = [&](std::size_t i) { return std::strtoull(lista[i].c_str(), nullptr, 10); };
    sDiretorio = lista[0];
    uiSemente = numero(1);
    uiPrimeiraVersao = numero(2);
    uiOperacoes = static_cast<unsigned>(numero(3));
    uiThreads = static_cast<unsigned>(numero(4));
    uiVida = static_cast<unsigned>(numero(5));
    ulDurabilidade = static_cast<XVUInt>(numero(6));
    return uiThreads > 0;
}

XVUInt64 SPedidoMorte::Agora() const {
    const SDataHora instante = Instante(uiVida);
    return XVDma(2024, 3, instante.ucDia) << 32 |
           (instante.ucHora * 3600U + instante.ucMinuto * 60U + instante.ucSegundo);
}

CXVMaquinaMorte::CXVMaquinaMorte(const SPedidoMorte& rPedido) {
    const std::string sChave = CAmbienteXV::GetChaveRegistro(XV_DF);
    m_registro.SetTexto(sChave, "Path", rPedido.sDiretorio);
    m_registro.SetNumero(sChave, "Durabilidade", rPedido.ulDurabilidade);
    m_relogio.SetUTC(Instante(rPedido.uiVida));
}

tagREG_CR_CHAVE_REGISTRO_TELVO_PARA_TERCEIROPS XVMapaDaVersao(XVUInt64 uiRegistro, XVUInt64 uiVersao) {
    return {uiVersao, {XVChaveDmc(0, uiRegistro, 2)},           1, eXVSMiddleware_CadastroProduto,
            Mercos,   {XVChaveDmc(XVDma(2023, 1, 1), uiVersao)}};
}

tagREG_CR_DATA_HORA_INTEGRACAO_TERCEIROPS XVDataHoraDaVersao(unsigned uiThread, XVUInt64 uiVersao) {
    return {
        {XVDma(2023, 1, 1) << 32 | uiVersao % 86400}, uiThread, Mercos, eXVSMiddleware_DataUltimaBusca, {}};
}
