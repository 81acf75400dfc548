#include "middleware/verificacao/XVSelagemDeDias.h"

#include <algorithm>
#include <utility>

#include "core/xvdatabase/XVNomeArquivo.h"
#include "middleware/XVDataBase_CR_Middleware.h"
#include "middleware/verificacao/XVExameDia.h"
#include "support/trace/XVCapturaTrace.h"

namespace {

// Of the motives those that the files of a day tell without the index.
constexpr XVUInt k_ulDosArquivos = ~XVUInt{eMotivo_SemIndice | eMotivo_IndiceRepetido};

struct SInterrompida {};

bool EhSao(const SArquivoLoja& rArquivo, HRESULT hrLeitura, XVUInt64 uiBlocosAlterados) {
    return SUCCEEDED(hrLeitura) && SUCCEEDED(rArquivo.hr) && uiBlocosAlterados == 0;
}

// The seals of the day's files; none where one of them is not sound.
TSelos SelosDoDia(CXVExameDia& rDia) {
    rDia.ExaminaRegistros({}, 0);
    rDia.ExaminaTextos();
    TSelos selos;
    bool bSao = rDia.GetSobra() == 0 &&
                EhSao(rDia.GetArquivo(), rDia.GetFalha(CXVExameDia::k_uiTextos), rDia.GetBlocosAlterados());
    for (std::size_t i = 0; i < rDia.GetRegistros().size() && bSao; ++i)
        bSao = (rDia.GetMotivos()[i] & k_ulDosArquivos) == 0 &&
               TXVPlausibilidade<REG_CR_INTEGRACAO_MIDDLEWARE_V2>::EhPlausivel(rDia.GetRegistros()[i]);
    const auto junta = [&selos](const SArquivoLoja& rArquivo, const SSelo& rSelo) {
        if (rArquivo.bCabecalho) selos[XVEmMinusculas(rArquivo.sNome)] = rSelo;
    };
    junta(rDia.GetArquivo(), rDia.GetSelo());
    for (std::size_t i = 0; i < CXVExameDia::k_uiTextos; ++i) {
        const CXVExameTextos& rTextos = rDia.GetTextos(i);
        bSao = bSao && !rTextos.EstaPartida() && !rTextos.EstaDeslocada() &&
               EhSao(rDia.GetArquivoTextos(i), rDia.GetFalha(i), rTextos.GetBlocosAlterados());
        junta(rDia.GetArquivoTextos(i), rTextos.GetSelo());
    }
    return bSao ? selos : TSelos();
}

// Whether the file still is the one that was read.
bool EhOMesmo(CXVLeituraLoja& rLeitura, const std::string& sNome, const SSelo& rSelo) {
    SArquivoLoja arquivo;
    return SUCCEEDED(rLeitura.Descreve(sNome, &arquivo)) && arquivo.bCabecalho &&
           arquivo.regB.uiContadorAtualizacao == rSelo.uiContador &&
           arquivo.GetTamanhoDados() == rSelo.uiTamanho;
}

bool EstaSelado(CXVLeituraLoja& rLeitura, const TSelos& rSelos, XVUInt64 uiDia) {
    std::vector<const char*> listaPadroes(k_apszGruposDeTextos.begin(), k_apszGruposDeTextos.end());
    listaPadroes.push_back(k_pszArquivoIntegracao);
    return std::all_of(listaPadroes.begin(), listaPadroes.end(), [&](const char* pszPadrao) {
        const std::string sNome = XVNomeArquivo::ChaveParaNome(uiDia, pszPadrao);
        const auto it = rSelos.find(XVEmMinusculas(sNome));
        return it == rSelos.end() ? !rLeitura.TemNome(sNome) : EhOMesmo(rLeitura, sNome, it->second);
    });
}

HRESULT SelaDia(CXVLeituraLoja& rLeitura, const std::string& sDiretorio, XVUInt64 uiDia) {
    TSelos selos;
    HRESULT hr = XVSelos::Le(sDiretorio, &selos);
    if (FAILED(hr) || EstaSelado(rLeitura, selos, uiDia)) return hr;
    CXVExameDia dia(rLeitura, selos, uiDia, CXVExameDia::EAlcance::eAteOCabecalho);
    bool bMudou = false;
    for (const auto& [sNome, selo] : SelosDoDia(dia)) {
        if (!EhOMesmo(rLeitura, sNome, selo)) continue;
        selos[sNome] = selo;
        bMudou = true;
    }
    return bMudou ? XVSelos::Grava(sDiretorio, selos) : S_OK;
}

}  // namespace

HRESULT XVSelaDias(const std::string& sDiretorio, const std::vector<XVUInt64>& rDias,
                   const std::atomic<bool>& bTermina) {
    CXVLeituraLoja leitura(sDiretorio);
    HRESULT hr = leitura.Abre();
    XVUInt64 uiDepois = 0;
    leitura.m_fnProgresso = [&](const std::string&, XVUInt64 uiBytes) {
        if (bTermina && (uiDepois += uiBytes) > k_uiBytesDepoisDoPedido) throw SInterrompida();
    };
    try {
        for (auto it = rDias.begin(); it != rDias.end() && SUCCEEDED(hr); ++it)
            hr = SelaDia(leitura, sDiretorio, *it);
    } catch (const SInterrompida&) {
        return S_FALSE;
    }
    return hr;
}

void CXVSelagemDeDias::Comeca(std::string sDiretorio, std::vector<XVUInt64> listaDias) noexcept {
    try {
        Espera();
        m_bTermina = false;
        m_fio = std::thread([this, sDiretorio = std::move(sDiretorio), listaDias = std::move(listaDias)] {
            const CXVCapturaTrace captura;  // nobody asked for it: a seal that is missing is no failure
            try {
                XVIgnora(XVSelaDias(sDiretorio, listaDias, m_bTermina));
            } catch (...) {
                return;  // no memory; the next verification with seals does the same
            }
        });
    } catch (...) {
        return;
    }
}

void CXVSelagemDeDias::Espera() {
    m_bTermina = true;
    if (m_fio.joinable()) m_fio.join();
}
