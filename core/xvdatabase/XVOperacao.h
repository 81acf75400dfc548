// An operation: writes of several files that take place all or none.
//
// Every write is prepared first: positions, bytes, header. Nothing changes meanwhile, neither memory nor
// disk, and whatever can fail for lack of memory fails then. Executa writes them: what appends first, what
// overwrites last, each file's header after its data; then memory and indexes follow. A failing write undoes
// those before it. With a journal of the directory the operation is whole or absent also after the death of
// the process (XVDiario.h).
//
// Thread rule: one object is used by one thread at a time. Between Prepara and Executa no other operation on
// the same files may run, except through the same journal's queue.
#pragma once

#include <array>
#include <mutex>
#include <span>

#include "core/xvdatabase/XVCabecalho.h"
#include "platform/XVErroArquivo.h"
#include "support/trace/XVCheck.h"

class CXVDataBase;
class CXVFileBase;
class CXVGroupFileBase;

// What goes where, and what stands there before.
struct SGravacao {
    XVUInt64 uiOffset = 0;  // of the bytes in the file, header included
    XVUInt64 uiTamanhoAntes = 0;
    XVUInt64 uiTamanhoDepois = 0;
    const void* pNovos = nullptr;
    std::size_t uiNovos = 0;
    const void* pAntigos = nullptr;  // the bytes that are overwritten
    std::size_t uiAntigos = 0;
    bool bCria = false;          // the file is not there yet
    bool bTemCabecalho = false;  // the header is kept up: regAntes becomes regDepois
    REG_XVCABECALHO_B regAntes;
    REG_XVCABECALHO_B regDepois;
};

// The places at which the failures of one attempt at a write are recorded.
struct SPontosGravacao {
    SPontoFalha catchGravacao;  // the data
    SPontoFalha atualiza;       // the header
    SPontoFalha tentativa;      // the attempt
    SPontoFalha abre;           // making the file
};
// Answers CXVGravacaoPreparada::GetPontos in a class that is nested in a file's: the failures carry the names
// of the file's class and source. The attempt is called pszTentativa by its caller funcao.
#define XV_PONTOS_GRAVACAO(funcao, funcaoTentativa, pszTentativa)                                          \
    const SPontosGravacao& GetPontos() const override {                                                    \
        static constexpr SPontosGravacao pontosXV{                                                         \
            {"CatchGravacao(pEx)", XVNomeClasse(), funcaoTentativa, XVNomeFonte(), __LINE__},              \
            {"AtualizaArquivo()", XVNomeClasse(), funcaoTentativa, XVNomeFonte(), __LINE__},               \
            {pszTentativa, XVNomeClasse(), funcao, XVNomeFonte(), __LINE__},                               \
            {"AbreArquivo(EXVDataBase_ModoAbertura::eModoLeituraGravacaoCriacao)", XVNomeClasse(), funcao, \
             XVNomeFonte(), __LINE__}};                                                                    \
        return pontosXV;                                                                                   \
    }

// One prepared write. Belongs to its file, which keeps it for the next operation; the bytes that it points to
// live until Devolve.
class CXVGravacaoPreparada {
  public:
    virtual ~CXVGravacaoPreparada() = default;

    virtual CXVFileBase& GetArquivo() const = 0;
    virtual const SPontosGravacao& GetPontos() const = 0;
    // Memory follows the disk.
    virtual void Publica() noexcept = 0;
    // The write is over, done or not: back to the file.
    virtual void Devolve() noexcept = 0;

    SGravacao m_gravacao;

    // The callers, innermost first, that record a failure after the attempts.
    static constexpr std::size_t k_uiPontos = 4;
    std::array<const SPontoFalha*, k_uiPontos> m_aPontos{};
    std::size_t m_uiPontos = 0;
    // Between its preparation and Devolve; outside of it the file may prepare another write in this object.
    bool m_bEmUso = false;
    // The group that made its member for this write; it forgets the member when there is no write.
    CXVGroupFileBase* m_pGrupo = nullptr;
    XVUInt64 m_uiChaveGrupo = 0;
};

class CXVOperacao {
  public:
    // An operation of the store touches five files at the most.
    static constexpr std::size_t k_uiPartes = 8;

    explicit CXVOperacao(CXVDataBase* pDataBase) : m_pDataBase(pDataBase) {}
    ~CXVOperacao() { Termina(); }
    CXVOperacao(const CXVOperacao&) = delete;
    CXVOperacao& operator=(const CXVOperacao&) = delete;

    // Before the first write is prepared: what an earlier operation left to be undone is undone, or nothing
    // can be prepared and its code is returned. No lock of a file or group is held.
    HRESULT Inicia();
    // Adds a prepared write; not more than k_uiPartes.
    void Inclui(CXVGravacaoPreparada& rGravacao) { m_aPartes[m_uiPartes++] = &rGravacao; }
    bool EstaCheia() const { return m_uiPartes == k_uiPartes; }
    bool EhVazia() const { return m_uiPartes == 0; }
    std::size_t GetQuantidade() const { return m_uiPartes; }
    std::span<CXVGravacaoPreparada* const> GetPartes() const { return {m_aPartes.data(), m_uiPartes}; }
    // What the operation changes, for those that are prepared while it waits; 0: nothing that others may
    // touch.
    void SetChave(XVUInt64 uiChave) { m_uiChave = uiChave; }
    XVUInt64 GetChave() const { return m_uiChave; }
    // It makes a file that a waiting operation makes, too, and both would begin at its start: it has to be
    // prepared again when nobody waits.
    void SetRepeteCriacao() { m_bRepeteCriacao = true; }
    bool RepeteCriacao() const { return m_bRepeteCriacao; }
    // Adds a caller's place to the writes from uiPrimeira on.
    void Anota(std::size_t uiPrimeira, const SPontoFalha& rPonto);

    // Writes what was prepared, at once. The first failing step's code; then nothing has changed.
    HRESULT Executa();
    // The same for what need not take place. S_FALSE: nothing has changed, because operations that wait for
    // the device leave it no place in the journal.
    HRESULT ExecutaSeCabe();

    // An operation of one write that belongs to no operation of a store: prepara(CXVOperacao&, XVUInt&)
    // prepares it. mutexGravacao keeps such writers of one file or group apart. uiPosicao in: where the
    // caller wants the write; out: where it went, unchanged when it did not take place.
    template <class TPrepara>
    static HRESULT ExecutaSozinha(CXVDataBase* pDataBase, std::mutex& mutexGravacao, XVUInt& uiPosicao,
                                  TPrepara prepara) {
        const std::lock_guard gravacao(mutexGravacao);
        CXVOperacao operacao(pDataBase);
        XVUInt uiPosicaoNova = uiPosicao;
        HRESULT hr = operacao.Inicia();
        if (SUCCEEDED(hr)) hr = prepara(operacao, uiPosicaoNova);
        if (SUCCEEDED(hr)) hr = operacao.Executa();
        if (SUCCEEDED(hr)) uiPosicao = uiPosicaoNova;
        return hr;
    }

    // The rest is for whoever carries the operation out. Everything to disk, up to the first failure, which
    // is recorded.
    HRESULT Escreve();
    // Takes back what Escreve wrote; after a failure it may be tried again.
    CXVErroArquivo Desfaz();
    // Memory follows the disk; readers that watch the database's sequence see all of it or nothing.
    void Publica() noexcept;
    // Gives the writes back to their files.
    void Termina() noexcept;
    // Takes over the writes of another operation, to undo them later.
    void Assume(CXVOperacao& rOutra) noexcept;

  private:
    CXVDataBase* m_pDataBase;
    XVUInt64 m_uiChave = 0;
    bool m_bRepeteCriacao = false;
    std::array<CXVGravacaoPreparada*, k_uiPartes> m_aPartes{};
    std::array<CXVGravacaoPreparada*, k_uiPartes> m_aOrdem{};  // of writing
    std::size_t m_uiPartes = 0;
    std::size_t m_uiEscritas = 0;  // writes begun and not taken back, in that order
};

// Prepares a write; a failure of it, now or when it is executed, is recorded under the text of the call. Of
// the forms that end in EM see XVCheck.h.
#define XV_PREPARA_COMPLETO(operacao, funcao, chamada, texto)                        \
    do {                                                                             \
        static constexpr TXVTextoDeCodigo textoXV(texto);                            \
        static constexpr SPontoFalha pontoXV = XV_PONTO_FALHA(funcao, textoXV.m_sz); \
        const std::size_t uiPrimeiraXV = (operacao).GetQuantidade();                 \
        const HRESULT hrXV = (chamada);                                              \
        if (FAILED(hrXV)) [[unlikely]]                                               \
            return XVRegistraFalha(hrXV, pontoXV, this);                             \
        (operacao).Anota(uiPrimeiraXV, pontoXV);                                     \
    } while (false)
#define XV_PREPARA(operacao, chamada) XV_PREPARA_COMPLETO(operacao, XV_FUNCAO_ATUAL, chamada, #chamada)
#define XV_PREPARA_EM(operacao, funcao, chamada) XV_PREPARA_COMPLETO(operacao, funcao, chamada, #chamada)
// arquivo.Prepara(operacao, ...), recorded as the write that it stands for: arquivo.Grava(...).
#define XV_GRAVA_EM(operacao, funcao, arquivo, ...)                                   \
    XV_PREPARA_COMPLETO(operacao, funcao, (arquivo).Prepara((operacao), __VA_ARGS__), \
                        #arquivo ".Grava(" #__VA_ARGS__ ")")
