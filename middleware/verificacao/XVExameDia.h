// One day of a store: its records, held against the index, and their texts.
//
// Thread rule: one thread.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "middleware/verificacao/XVChavesDoLog.h"
#include "middleware/verificacao/XVExameIndice.h"
#include "middleware/verificacao/XVExameTextos.h"

// Why an integration is not whole; several may hold.
enum EMotivo : XVUInt {
    eMotivo_SemRegistro = 1U << 0,
    eMotivo_RegistroVazio = 1U << 1,
    eMotivo_RegistroImpossivel = 1U << 2,
    eMotivo_SemJSON = 1U << 3,
    eMotivo_SemMensagem = 1U << 4,
    eMotivo_SemRetorno = 1U << 5,
    eMotivo_TextoZerado = 1U << 6,
    eMotivo_TextoDeOutra = 1U << 7,
    eMotivo_SemIndice = 1U << 8,
    eMotivo_IndiceRepetido = 1U << 9,
    eMotivo_DiaRecusado = 1U << 10,
    eMotivo_Alterada = 1U << 11,
    eMotivo_Ilegivel = 1U << 12,
    eMotivo_TextoIlegivel = 1U << 13,
    eMotivo_TextoDeduzido = 1U << 14,
    eMotivo_SemRegistroNemIndice = 1U << 15,
};
inline constexpr unsigned k_uiMotivos = 16;

class CXVExameDia {
  public:
    static constexpr std::size_t k_uiTextos = 3;  // JSON, message, returned JSON: the order of the motives
    // Bytes of payload to look at: up to where the header says, or all that there are.
    enum class EAlcance : bool { eAteOCabecalho, eTudo };

    CXVExameDia(CXVLeituraLoja& rLeitura, const TSelos& rSelos, XVUInt64 uiDia, EAlcance eAlcance);

    // First the records. aEntradas: what the index says of this day, in order. A record at a position above
    // ulLimite that the index does not know is newer than the reading of the index.
    void ExaminaRegistros(std::span<const SEntradaIndice> aEntradas, XVUInt ulLimite);
    // Then the texts that they name.
    void ExaminaTextos();

    XVUInt64 GetDia() const { return m_uiDia; }
    // Key of the integration at a pointer of this day.
    REG_XVDMC GetDmc(XVUInt ulPonteiro) const;
    // The day is one of the calendar; keys of any other would name another day, or nothing.
    bool TemChaves() const { return GetDmc(1).EhDeIntegracao() && GetDmc(1).GetDma().ToChave() == m_uiDia; }
    const SArquivoLoja& GetArquivo() const { return m_arquivo; }
    const SArquivoLoja& GetArquivoTextos(std::size_t uiQual) const { return m_aArquivosTextos[uiQual]; }
    const CXVExameTextos& GetTextos(std::size_t uiQual) const { return m_aTextos[uiQual]; }
    const std::vector<REG_CR_INTEGRACAO_MIDDLEWARE_V2>& GetRegistros() const { return m_aRegistros; }
    // EMotivo of each record, the first of them for pointer 1.
    const std::vector<XVUInt>& GetMotivos() const { return m_aMotivos; }
    bool EstaNoIndice(XVUInt ulPonteiro) const { return m_aNoIndice[ulPonteiro - 1]; }
    // What the index names and the day does not hold.
    const std::vector<SEntradaIndice>& GetAusentes() const { return m_aAusentes; }
    // Pointers of records that the index does not know; whether they are missed is not decided here.
    const std::vector<XVUInt>& GetSemIndice() const { return m_aSemIndice; }
    // Pointers that neither the records nor the index hold, and that the header proves to have been recorded.
    const std::vector<XVUInt>& GetSoNoCabecalho() const { return m_aSoNoCabecalho; }
    // How many records the header counts, at most four million; 0 where it is not whole, or another file's.
    XVUInt GetContadosNoCabecalho() const;
    // Adds the bank's integrations of this day that the index names once and whose records are there: each
    // took over the place of all others with its key.
    void JuntaDoBanco(std::span<const SEntradaIndice> aEntradas, std::vector<TChaveDmc>* paDoBanco) const;
    XVUInt64 GetVagos() const { return m_uiVagos; }
    XVUInt64 GetSobra() const { return m_uiSobra; }
    XVUInt64 GetBlocosAlterados() const { return m_uiBlocosAlterados; }
    const SSelo& GetSelo() const { return m_selo; }
    // S_OK, or why a file of the day could not be read to its end.
    HRESULT GetFalha(std::size_t uiQual) const { return m_aFalhas[uiQual]; }  // k_uiTextos: the records

  private:
    HRESULT LeRegistros();
    void ExaminaTexto(std::size_t uiQual);
    void JulgaIndice(std::span<const SEntradaIndice> aEntradas, XVUInt ulLimite);
    void JulgaCabecalho();
    void JulgaTextos();
    // The highest position that a record names in a file of texts; 0: a record that may name a higher one is
    // lost, or that file's texts are given up again.
    XVUInt UltimaApontada(std::size_t uiQual) const;
    // Records that the index or the header tells of and the file does not hold, or not as they were.
    XVUInt64 RegistrosPerdidos() const;
    // A file that carries another's name is of another day, or another store: nothing of it is this day's.
    XVUInt64 Alcance(const SArquivoLoja& rArquivo) const {
        if (rArquivo.hr == E_XVCR_NOME_ARQUIVO_NAO_CONFERE || rArquivo.bInicioIncerto) return 0;
        return m_eAlcance == EAlcance::eTudo ? rArquivo.uiTamanho : rArquivo.GetTamanhoDados();
    }

    CXVLeituraLoja& m_rLeitura;
    const TSelos& m_rSelos;
    XVUInt64 m_uiDia;
    EAlcance m_eAlcance;
    SArquivoLoja m_arquivo;
    std::array<SArquivoLoja, k_uiTextos> m_aArquivosTextos;  // before the records were read, then after
    std::array<CXVExameTextos, k_uiTextos> m_aTextos;
    std::array<HRESULT, k_uiTextos + 1> m_aFalhas{};
    std::vector<REG_CR_INTEGRACAO_MIDDLEWARE_V2> m_aRegistros;
    std::vector<XVUInt> m_aMotivos;
    std::vector<bool> m_aNoIndice;
    std::vector<SEntradaIndice> m_aAusentes;
    std::vector<XVUInt> m_aSemIndice;
    std::vector<XVUInt> m_aSoNoCabecalho;
    XVUInt64 m_uiVagos = 0;
    XVUInt64 m_uiSobra = 0;
    XVUInt64 m_uiBlocosAlterados = 0;
    SSelo m_selo;
};

// Positions of the three texts of a record, in the order of CXVExameDia.
std::array<XVUInt, CXVExameDia::k_uiTextos> XVPonteirosDeTextos(const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg);
// A position that was never recorded, or whose bytes never reached the device.
bool XVEhRegistroVago(const REG_CR_INTEGRACAO_MIDDLEWARE_V2& reg);
// The patterns of the three groups of texts, in the same order.
extern const std::array<const char*, CXVExameDia::k_uiTextos> k_apszGruposDeTextos;
