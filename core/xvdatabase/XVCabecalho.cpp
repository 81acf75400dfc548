#include "core/xvdatabase/XVCabecalho.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "core/xvdatabase/XVNomeArquivo.h"
#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"
#include "support/codes/XVCodigos.h"
#include "support/values/XVCrc64.h"
#include "support/values/XVTextoAscii.h"

namespace {

constexpr std::size_t k_uiBytesDoCrcB = offsetof(REG_XVCABECALHO_B, uiCrc);
constexpr std::size_t k_uiOffsetTamanhoBloco =
    k_uiTamanhoBlocoA + offsetof(REG_XVCABECALHO_B, uiTamanhoBloco);
constexpr std::size_t k_uiOffsetNome = k_uiTamanhoBlocoA + offsetof(REG_XVCABECALHO_B, szNomeArquivo);
// Seven bytes of the signature are zero, as many bytes of a record are: fewer equal bytes than this may be
// chance.
constexpr std::ptrdiff_t k_iBytesDaAssinatura = 16;

REG_XVDATAHORA_CABECALHO Agora() {
    const SDataHora dh = XVPlataforma::Relogio().AgoraLocal();
    return {dh.ucDia, dh.ucMes, dh.usAno, dh.ucHora, dh.ucMinuto, dh.ucSegundo, 0};
}

template <std::size_t N>
std::string_view Texto(const char (&sz)[N]) {
    return {sz, static_cast<std::size_t>(std::find(sz, sz + N, '\0') - sz)};
}

// The last N-1 characters, NUL-padded.
template <std::size_t N>
void Preenche(char (&sz)[N], std::string_view s) {
    std::memset(sz, 0, N);
    if (s.size() > N - 1) s.remove_prefix(s.size() - (N - 1));
    std::memcpy(sz, s.data(), s.size());
}

std::string_view Final(std::string_view s, std::size_t uiMaximo) {
    return s.size() > uiMaximo ? s.substr(s.size() - uiMaximo) : s;
}

// The computer's name does not change while a process runs.
const std::string& NomeComputador() {
    static const std::string sNome = XVAmbienteSO::GetNomeComputador().substr(0, 15);
    return sNome;
}

// A text field whose change is remembered: content, previous content and moment of the change.
template <std::size_t N>
void AtualizaCampo(char (&szAtual)[N], char (&szAnterior)[N], REG_XVDATAHORA_CABECALHO& regAlteracao,
                   std::string_view sNovo, const REG_XVDATAHORA_CABECALHO& regAgora) {
    if (XVIgualSemCaixa(Texto(szAtual), Final(sNovo, N - 1))) return;
    std::memcpy(szAnterior, szAtual, N);
    Preenche(szAtual, sNovo);
    regAlteracao = regAgora;
}

bool TemAssinatura(std::span<const XVByte> aInicio) {
    const REG_XVCABECALHO_A regA = XVCabecalho::BlocoA();
    const auto* pAssinatura = reinterpret_cast<const XVByte*>(&regA);
    std::ptrdiff_t iIguais = 0;
    for (std::size_t i = 0; i < std::min(aInicio.size(), sizeof(regA)); ++i)
        iIguais += aInicio[i] == pAssinatura[i] ? 1 : 0;
    return iIguais >= k_iBytesDaAssinatura;
}

bool TemTamanhoDeBloco(std::span<const XVByte> aInicio) {
    XVUInt64 uiTamanhoBloco = 0;
    if (aInicio.size() < k_uiOffsetTamanhoBloco + sizeof(uiTamanhoBloco)) return false;
    std::memcpy(&uiTamanhoBloco, aInicio.data() + k_uiOffsetTamanhoBloco, sizeof(uiTamanhoBloco));
    return uiTamanhoBloco == k_uiTamanhoBlocoB;
}

bool TemNome(std::span<const XVByte> aInicio, std::string_view sNomeArquivo) {
    const std::string_view sNome = Final(sNomeArquivo, sizeof(REG_XVCABECALHO_B::szNomeArquivo) - 1);
    if (sNome.empty() || aInicio.size() < k_uiOffsetNome + sNome.size()) return false;
    return XVIgualSemCaixa({reinterpret_cast<const char*>(aInicio.data()) + k_uiOffsetNome, sNome.size()},
                           sNome);
}

}  // namespace

namespace XVCabecalho {

bool AssinaturaConfere(const REG_XVCABECALHO_A& regA) {
    // Version 1 is one signature, its zero bytes included; what later ones keep there is theirs to say.
    if (regA.usVersao == k_usVersaoCabecalho) {
        const REG_XVCABECALHO_A regEsperado = BlocoA();
        return std::memcmp(&regA, &regEsperado, sizeof(regA)) == 0;
    }
    return regA.usVersao != 0 && XVCrc64(&regA.usVersao, sizeof(regA.usVersao)) == regA.uiCrcVersao &&
           XVCrc64(&regA.uiCrcVersao, sizeof(regA.uiCrcVersao)) == regA.uiCrcDoCrc;
}

REG_XVCABECALHO_A BlocoA() {
    REG_XVCABECALHO_A regA{};
    regA.usVersao = k_usVersaoCabecalho;
    regA.uiCrcVersao = XVCrc64(&regA.usVersao, sizeof(regA.usVersao));
    regA.uiCrcDoCrc = XVCrc64(&regA.uiCrcVersao, sizeof(regA.uiCrcVersao));
    return regA;
}

bool CrcConfere(const REG_XVCABECALHO_B& regB) {
    return XVCrc64(&regB, k_uiBytesDoCrcB) == regB.uiCrc;
}

void Gera(REG_XVCABECALHO& reg, std::string_view sNomeArquivo, const IXVDF_Profiler& rDono,
          XVUShort usVersaoArquivo, XVUInt64 uiTamanhoDados) {
    std::memset(&reg, 0, sizeof(reg));
    reg.regA = BlocoA();

    REG_XVCABECALHO_B& regB = reg.regB;
    regB.regUltimaAtualizacao = regB.regCriacao = regB.regSegundaCriacao = Agora();
    regB.uiTamanhoBloco = k_uiTamanhoBlocoB;
    regB.uiTamanhoDados = uiTamanhoDados;
    regB.uiNumeroSessao = rDono.GetNumeroSessao();
    regB.ulUsuario = rDono.GetUsuario();
    regB.usVersaoArquivo = usVersaoArquivo;
    regB.usVersaoSistemaCriacao = regB.usVersaoSistemaAtualizacao = k_usVersaoSistema;
    Preenche(regB.szNomeArquivo, sNomeArquivo);
    Preenche(regB.szEmpresa, rDono.GetEmpresa());
    Preenche(regB.szComputador, NomeComputador());
    regB.uiCrc = XVCrc64(&regB, k_uiBytesDoCrcB);
}

void Atualiza(REG_XVCABECALHO_B& regB, const IXVDF_Profiler& rDono, XVUInt64 uiTamanhoDados) {
    const REG_XVDATAHORA_CABECALHO regAgora = Agora();
    regB.regUltimaAtualizacao = regAgora;
    regB.uiTamanhoDados = uiTamanhoDados;
    if (regB.uiContadorAtualizacao == std::numeric_limits<XVUInt64>::max()) {
        regB.uiContadorAtualizacao = 0;
        regB.usVoltasContador = static_cast<XVUShort>(regB.usVoltasContador + 1);
    } else {
        ++regB.uiContadorAtualizacao;
    }
    regB.uiNumeroSessao = rDono.GetNumeroSessao();
    regB.ulUsuario = rDono.GetUsuario();
    regB.usVersaoSistemaAtualizacao = k_usVersaoSistema;
    AtualizaCampo(regB.szEmpresa, regB.szEmpresaAnterior, regB.regAlteracaoEmpresa, rDono.GetEmpresa(),
                  regAgora);
    AtualizaCampo(regB.szComputador, regB.szComputadorAnterior, regB.regAlteracaoComputador, NomeComputador(),
                  regAgora);
    Sela(regB);
}

void Sela(REG_XVCABECALHO_B& regB) {
    regB.uiCrc = XVCrc64(&regB, k_uiBytesDoCrcB);
}

bool EhReconhecivel(std::span<const XVByte> aInicio, std::string_view sNomeArquivo) {
    return TemAssinatura(aInicio) || TemTamanhoDeBloco(aInicio) || TemNome(aInicio, sNomeArquivo);
}

bool EhIntegro(const REG_XVCABECALHO& reg, std::string_view sNomeArquivo, XVUInt64 uiTamanhoArquivo) {
    return AssinaturaConfere(reg.regA) && reg.regA.usVersao == k_usVersaoCabecalho &&
           reg.regB.uiTamanhoBloco == k_uiTamanhoBlocoB && CrcConfere(reg.regB) &&
           uiTamanhoArquivo >= k_uiTamanhoCabecalho &&
           reg.regB.uiTamanhoDados == uiTamanhoArquivo - k_uiTamanhoCabecalho &&
           NomeConfere(reg.regB, sNomeArquivo);
}

HRESULT ValidaBlocoB(const REG_XVCABECALHO_B& regB, std::string_view sNomeArquivo,
                     XVUInt64 uiTamanhoArquivo) {
    if (regB.uiTamanhoBloco != k_uiTamanhoBlocoB) return E_XVCR_TAMANHO_CABECALHO_NAO_CONFERE;
    if (!CrcConfere(regB)) return E_XVCR_CRC_CABECALHO_NAO_CONFERE;
    if (regB.uiTamanhoDados != uiTamanhoArquivo - k_uiTamanhoCabecalho)
        return E_XVCR_TAMANHO_ARQUIVO_NAO_CONFERE;
    if (regB.usVersaoSistemaCriacao > k_usVersaoSistema)
        return E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_CRIACAO_CABECALHO;
    if (regB.usVersaoSistemaAtualizacao > k_usVersaoSistema)
        return E_XVCR_VERSAO_SISTEMA_INFERIOR_VERSAO_MODIFICACAO_ARQUIVO;
    return NomeConfere(regB, sNomeArquivo) ? S_OK : E_XVCR_NOME_ARQUIVO_NAO_CONFERE;
}

bool NomeConfere(const REG_XVCABECALHO_B& regB, std::string_view sNomeArquivo) {
    return XVIgualSemCaixa(Texto(regB.szNomeArquivo), Final(sNomeArquivo, sizeof(regB.szNomeArquivo) - 1));
}

}  // namespace XVCabecalho
