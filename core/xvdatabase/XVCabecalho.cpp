#include "core/xvdatabase/XVCabecalho.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "core/xvdatabase/XVNomeArquivo.h"
#include "platform/XVAmbienteSO.h"
#include "platform/XVPlataforma.h"
#include "support/XVCrc64.h"
#include "support/XVTextoAscii.h"

namespace {

constexpr std::size_t k_uiBytesDoCrcB = offsetof(REG_XVCABECALHO_B, uiCrc);

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

}  // namespace

namespace XVCabecalho {

bool AssinaturaConfere(const REG_XVCABECALHO_A& regA) {
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

bool NomeConfere(const REG_XVCABECALHO_B& regB, std::string_view sNomeArquivo) {
    return XVIgualSemCaixa(Texto(regB.szNomeArquivo), Final(sNomeArquivo, sizeof(regB.szNomeArquivo) - 1));
}

}  // namespace XVCabecalho
