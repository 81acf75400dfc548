// CXVRecuperacao: the four files of one day.
#include <algorithm>
#include <cstring>

#include "core/xvdatabase/XVNomeArquivo.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/verificacao/XVEscritaRecuperada.h"
#include "middleware/verificacao/XVRecuperacao.h"
#include "platform/XVPlataforma.h"

namespace {

using TRegistro = REG_CR_INTEGRACAO_MIDDLEWARE_V2;
constexpr std::size_t k_uiMensagem = 1;  // among the texts of a day

// So many places are kept vacant behind the records of a day for keys that the index knows. An index record
// that names a far position is more likely to be wrong itself.
constexpr XVUInt64 k_uiMaximoVagas = 65536;

constexpr XVUInt k_ulPerdida =
    eMotivo_SemRegistro | eMotivo_RegistroVazio | eMotivo_RegistroImpossivel | eMotivo_Ilegivel;
constexpr XVUInt k_ulComAviso = eMotivo_SemJSON | eMotivo_SemMensagem | eMotivo_SemRetorno |
                                eMotivo_TextoZerado | eMotivo_TextoDeOutra | eMotivo_SemIndice |
                                eMotivo_IndiceRepetido | eMotivo_TextoIlegivel | eMotivo_TextoDeduzido;

struct SFrase {
    XVUInt ulMotivos;
    const char* pszFrase;
};
constexpr SFrase k_aFrases[] = {
    {eMotivo_SemIndice | eMotivo_IndiceRepetido,
     " O registro do índice se perdeu: status e sistema externo não são conhecidos, e a chave externa é a do "
     "log geral, se ele a tem."},
    {eMotivo_SemJSON, " O JSON enviado se perdeu."},
    {eMotivo_SemMensagem, " A mensagem de retorno se perdeu."},
    {eMotivo_SemRetorno, " O JSON retornado se perdeu."},
    {eMotivo_TextoZerado, " Um texto que voltou em zeros foi posto de lado."},
    {eMotivo_TextoIlegivel, " Um texto que o disco não devolveu inteiro foi posto de lado."},
    {eMotivo_TextoDeduzido,
     " Um texto que está depois de um trecho danificado do arquivo foi posto de lado: que é desta "
     "integração, "
     "só a contagem a partir do fim diz."},
    {eMotivo_TextoDeOutra, " Um dos textos pode ser de outra integração, que aponta o mesmo."},
};

bool EhRuim(XVByte ucMarcas) {
    return (ucMarcas & (eTexto_Zerado | eTexto_ZerosNoFim | eTexto_Ilegivel | eTexto_Deduzido)) != 0;
}

void PoePonteiro(TRegistro* pReg, std::size_t uiQual, XVUInt ulPosicao) {
    if (uiQual == 0)
        pReg->ulPonteiroJSONRegistro = ulPosicao;
    else if (uiQual == k_uiMensagem)
        pReg->ulPonteiroMensagemRetorno = ulPosicao;
    else
        pReg->ulPonteiroJSONRetornoIntegracao = ulPosicao;
}

// Positions that the new file will give to other texts.
void EsqueceTextosPerdidos(const CXVExameDia& rDia, TRegistro* pReg) {
    for (std::size_t i = 0; i < CXVExameDia::k_uiTextos; ++i)
        if (XVPonteirosDeTextos(*pReg)[i] > rDia.GetTextos(i).GetQuantidade()) PoePonteiro(pReg, i, 0);
}

}  // namespace

HRESULT CXVRecuperacao::RecuperaDia(XVUInt64 uiDia, std::span<const SEntradaIndice> aEntradas) {
    CXVExameDia dia(m_leitura, m_semSelos, uiDia, CXVExameDia::EAlcance::eTudo);
    dia.ExaminaRegistros(aEntradas, ~XVUInt{0});
    dia.ExaminaTextos();
    HRESULT hr = RecusaOutroPrograma(dia);
    if (FAILED(hr)) return hr;
    const SArquivoLoja& rArquivo = dia.GetArquivo();
    if (!dia.TemChaves()) return SeparaDia(dia);
    AnotaIlegivel(rArquivo.sNome, dia.GetFalha(CXVExameDia::k_uiTextos));
    if (rArquivo.bInicioIlegivel) AnotaIlegivel(rArquivo.sNome, rArquivo.hr);
    hr = RecuperaTextos(dia);
    if (FAILED(hr)) return hr;
    const XVUInt64 uiLidos = dia.GetRegistros().size() * sizeof(TRegistro);
    hr = Separa(rArquivo, uiLidos, rArquivo.uiTamanho);
    if (SUCCEEDED(hr)) hr = RecuperaRegistros(dia, aEntradas);
    for (auto& rpTextos : m_aTextos) {
        if (SUCCEEDED(hr) && rpTextos->EstaAberta()) hr = Conclui(*rpTextos);
        rpTextos.reset();
    }
    return hr;
}

// Files that are named for a day that no calendar has: no key can name what they hold.
HRESULT CXVRecuperacao::SeparaDia(const CXVExameDia& rDia) {
    HRESULT hr = Separa(rDia.GetArquivo(), 0, rDia.GetArquivo().uiTamanho);
    for (std::size_t i = 0; i < CXVExameDia::k_uiTextos && SUCCEEDED(hr); ++i)
        hr = Separa(rDia.GetArquivoTextos(i), 0, rDia.GetArquivoTextos(i).uiTamanho);
    return hr;
}

HRESULT CXVRecuperacao::RecusaOutroPrograma(const CXVExameDia& rDia) {
    HRESULT hr = XVEhDeOutroPrograma(rDia.GetArquivo().hr) ? rDia.GetArquivo().hr : S_OK;
    for (std::size_t i = 0; i < CXVExameDia::k_uiTextos; ++i)
        if (XVEhDeOutroPrograma(rDia.GetArquivoTextos(i).hr)) hr = rDia.GetArquivoTextos(i).hr;
    return hr;
}

// The texts at their positions, up to where the chain breaks, and on behind the damage where their positions
// are known; empty ones stand for those that were lost. What is between, or behind, is put aside.
HRESULT CXVRecuperacao::RecuperaTextos(const CXVExameDia& rDia) {
    HRESULT hr = S_OK;
    for (std::size_t i = 0; i < CXVExameDia::k_uiTextos && SUCCEEDED(hr); ++i) {
        const SArquivoLoja& rArquivo = rDia.GetArquivoTextos(i);
        const CXVExameTextos& rTextos = rDia.GetTextos(i);
        m_aTextos[i] = std::make_unique<CXVEscritaRecuperada>(
            m_pastas.sDestino, XVNomeArquivo::ChaveParaNome(rDia.GetDia(), k_apszGruposDeTextos[i]),
            CXVEscritaRecuperada::ECabecalho::eCom);
        m_aulTextos[i] = static_cast<XVUInt>(rTextos.GetQuantidade());
        AnotaIlegivel(rArquivo.sNome, rArquivo.bInicioIlegivel ? rArquivo.hr : rDia.GetFalha(i));
        if (!rArquivo.bExiste) continue;
        const XVUInt64 uiRetomada = rTextos.GetPerdidos() == 0 ? rArquivo.uiTamanho : rTextos.GetRetomada();
        hr = m_aTextos[i]->Abre();
        if (SUCCEEDED(hr)) hr = CopiaTextos(rArquivo, 0, rTextos.GetFimSao(), *m_aTextos[i]);
        for (XVUInt64 ui = 0; ui < rTextos.GetPerdidos() && SUCCEEDED(hr); ++ui)
            hr = m_aTextos[i]->GravaTexto({});
        if (SUCCEEDED(hr)) hr = CopiaTextos(rArquivo, uiRetomada, rArquivo.uiTamanho, *m_aTextos[i]);
        if (SUCCEEDED(hr)) hr = Separa(rArquivo, rTextos.GetFimSao(), uiRetomada);
    }
    return hr;
}

// Zeros where they cannot be read; no record will name such a text.
HRESULT CXVRecuperacao::CopiaTextos(const SArquivoLoja& rArquivo, XVUInt64 uiDe, XVUInt64 uiAte,
                                    CXVEscritaRecuperada& rEscrita) {
    HRESULT hr = S_OK;
    CXVBuracos buracos;
    AnotaIlegivel(rArquivo.sNome, m_leitura.Percorre(
                                      rArquivo, uiDe, uiAte,
                                      [&](XVUInt64, std::span<const char> aBytes) {
                                          if (SUCCEEDED(hr))
                                              hr = rEscrita.Grava({aBytes.data(), aBytes.size()});
                                      },
                                      &buracos));
    return hr;
}

HRESULT CXVRecuperacao::RecuperaRegistros(const CXVExameDia& rDia,
                                          std::span<const SEntradaIndice> aEntradas) {
    CXVEscritaRecuperada escrita(m_pastas.sDestino,
                                 XVNomeArquivo::ChaveParaNome(rDia.GetDia(), k_pszArquivoIntegracao),
                                 CXVEscritaRecuperada::ECabecalho::eCom);
    HRESULT hr = escrita.Abre();
    auto itEntrada = aEntradas.begin();
    const auto& rRegistros = rDia.GetRegistros();
    for (XVUInt ulPonteiro = 1; ulPonteiro <= rRegistros.size() && SUCCEEDED(hr); ++ulPonteiro) {
        while (itEntrada != aEntradas.end() && itEntrada->GetPonteiro() < ulPonteiro) ++itEntrada;
        const bool bTem = itEntrada != aEntradas.end() && itEntrada->GetPonteiro() == ulPonteiro;
        // Aligned as a whole, the packed record has its text positions aligned too.
        alignas(XVUInt64) TRegistro reg = rRegistros[ulPonteiro - 1];
        hr = RecuperaRegistro(rDia, ulPonteiro, bTem ? &*itEntrada : nullptr, &reg);
        if (SUCCEEDED(hr)) hr = escrita.Grava({reinterpret_cast<const char*>(&reg), sizeof(reg)});
    }
    const TRegistro regVago{};
    const XVUInt64 uiLugares = ContaLugares(rDia);
    for (XVUInt64 ui = rRegistros.size(); ui < uiLugares && SUCCEEDED(hr); ++ui)
        hr = escrita.Grava({reinterpret_cast<const char*>(&regVago), sizeof(regVago)});
    return SUCCEEDED(hr) ? Conclui(escrita) : hr;
}

XVUInt64 CXVRecuperacao::ContaLugares(const CXVExameDia& rDia) {
    const XVUInt64 uiRegistros = rDia.GetRegistros().size();
    XVUInt64 uiLugares = std::max<XVUInt64>(uiRegistros, rDia.GetContadosNoCabecalho());
    for (const SEntradaIndice& rAusente : rDia.GetAusentes()) {
        AnotaPerdida(rAusente.reg.regDmcIntegracao, eMotivo_SemRegistro,
                     rAusente.reg.uiChaveIntegracaoSistemaTerceiro);
        if (rAusente.GetPonteiro() <= uiRegistros + k_uiMaximoVagas)
            uiLugares = std::max<XVUInt64>(uiLugares, rAusente.GetPonteiro());
    }
    for (const XVUInt ulPonteiro : rDia.GetSoNoCabecalho()) {
        const REG_XVDMC regDmc = rDia.GetDmc(ulPonteiro);
        if (!FoiSubstituida(regDmc))
            AnotaPerdida(regDmc, eMotivo_SemRegistroNemIndice, m_log.GetChave(regDmc));
    }
    return uiLugares;
}

HRESULT CXVRecuperacao::RecuperaRegistro(const CXVExameDia& rDia, XVUInt ulPonteiro,
                                         const SEntradaIndice* pEntrada, TRegistro* pReg) {
    XVUInt ulMotivos = rDia.GetMotivos()[ulPonteiro - 1];
    const bool bVago = XVEhRegistroVago(*pReg);
    const REG_XVDMC regDmc =
        pEntrada != nullptr ? REG_XVDMC(pEntrada->reg.regDmcIntegracao) : rDia.GetDmc(ulPonteiro);
    const bool bIlegivel = (ulMotivos & eMotivo_Ilegivel) != 0;
    if (pEntrada == nullptr && bVago && !bIlegivel) return S_OK;
    if ((ulMotivos & k_ulPerdida) != 0) {
        AnotaPerdida(regDmc, ulMotivos,
                     pEntrada != nullptr
                         ? std::optional<XVUInt64>(pEntrada->reg.uiChaveIntegracaoSistemaTerceiro)
                         : m_log.GetChave(regDmc));
        *pReg = {};
        const XVUInt64 uiDe = (XVUInt64{ulPonteiro} - 1) * sizeof(TRegistro);
        return bVago && !bIlegivel ? S_OK : Separa(rDia.GetArquivo(), uiDe, uiDe + sizeof(TRegistro));
    }
    if (pEntrada == nullptr) {
        if (FoiSubstituida(regDmc)) {
            EsqueceTextosPerdidos(rDia, pReg);
            return S_OK;
        }
        ulMotivos |= eMotivo_SemIndice;
    }
    if ((ulMotivos & (eMotivo_SemIndice | eMotivo_IndiceRepetido)) != 0)
        PoeNoIndice(regDmc);
    else
        m_mapaIndice.emplace(pEntrada->ulPosicao, pEntrada->reg);
    ulMotivos &= k_ulComAviso;
    if (ulMotivos == 0) {
        ++m_pRecuperacao->uiInteiras;
        return S_OK;
    }
    ++m_pRecuperacao->uiComFaltas;
    m_pRecuperacao->listaIntegracoes.push_back({regDmc, false, ulMotivos, m_log.GetChave(regDmc)});
    const HRESULT hr = RefazTextos(rDia, ulMotivos, pReg);
    return SUCCEEDED(hr) ? GravaAviso(rDia, ulMotivos, pReg) : hr;
}

// Lost texts are named no more. Of a text that two records name each gets a copy: whose it is nobody can
// tell.
HRESULT CXVRecuperacao::RefazTextos(const CXVExameDia& rDia, XVUInt ulMotivos, TRegistro* pReg) {
    HRESULT hr = S_OK;
    for (std::size_t i = 0; i < CXVExameDia::k_uiTextos && SUCCEEDED(hr); ++i) {
        const XVUInt ulPosicao = XVPonteirosDeTextos(*pReg)[i];
        const CXVExameTextos& rTextos = rDia.GetTextos(i);
        if (ulPosicao == 0) continue;
        if ((ulMotivos & (eMotivo_SemJSON << i)) != 0) {
            PoePonteiro(pReg, i, 0);
            continue;
        }
        const XVByte ucMarcas = rTextos.GetMarcas(ulPosicao);
        if (EhRuim(ucMarcas)) {
            const XVUInt64 uiDe = rTextos.GetInicio(ulPosicao);
            hr = Separa(rDia.GetArquivoTextos(i), uiDe, uiDe + rTextos.GetTamanho(ulPosicao));
            PoePonteiro(pReg, i, 0);
        } else if ((ucMarcas & eTexto_Repetido) != 0 && i != k_uiMensagem) {
            std::string sTexto;
            hr = LeTexto(rDia, i, ulPosicao, &sTexto);
            if (SUCCEEDED(hr)) hr = GravaTexto(i, sTexto, pReg);
        }
    }
    return hr;
}

HRESULT CXVRecuperacao::LeTexto(const CXVExameDia& rDia, std::size_t uiQual, XVUInt ulPosicao,
                                std::string* psTexto) {
    const CXVExameTextos& rTextos = rDia.GetTextos(uiQual);
    const XVUInt64 uiDe = rTextos.GetInicio(ulPosicao);
    psTexto->clear();
    return m_leitura.Percorre(
        rDia.GetArquivoTextos(uiQual), uiDe, uiDe + rTextos.GetTamanho(ulPosicao),
        [&](XVUInt64, std::span<const char> aBytes) { psTexto->append(aBytes.data(), aBytes.size()); });
}

// Behind the texts of the day, which keep their positions.
HRESULT CXVRecuperacao::GravaTexto(std::size_t uiQual, const std::string& sTexto, TRegistro* pReg) {
    HRESULT hr = m_aTextos[uiQual]->EstaAberta() ? S_OK : m_aTextos[uiQual]->Abre();
    if (SUCCEEDED(hr)) hr = m_aTextos[uiQual]->GravaTexto(sTexto);
    PoePonteiro(pReg, uiQual, ++m_aulTextos[uiQual]);
    return hr;
}

HRESULT CXVRecuperacao::GravaAviso(const CXVExameDia& rDia, XVUInt ulMotivos, TRegistro* pReg) {
    std::string sAviso = "Integração recuperada de uma base danificada.";
    for (const SFrase& rFrase : k_aFrases)
        if ((ulMotivos & rFrase.ulMotivos) != 0) sAviso += rFrase.pszFrase;
    sAviso += " Confira no sistema externo.";
    std::string sAnterior;
    if (pReg->ulPonteiroMensagemRetorno != 0) {
        const HRESULT hr = LeTexto(rDia, k_uiMensagem, pReg->ulPonteiroMensagemRetorno, &sAnterior);
        if (FAILED(hr)) return hr;
    }
    if (!sAnterior.empty()) sAviso += " Mensagem anterior: " + sAnterior;
    return GravaTexto(k_uiMensagem, sAviso, pReg);
}
