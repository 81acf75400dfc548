// A file of texts walked from front to back: how many texts it holds, and what is to be said of each.
//
// Positions are told by counting, so nothing behind a text whose length is not known has a position of its
// own. Where the records tell how many texts there are, those behind the damage are counted from the end.
//
// Thread rule: one thread.
#pragma once

#include <vector>

#include "middleware/verificacao/XVSelos.h"

enum EMarcaTexto : XVByte {
    eTexto_Apontado = 1,     // a record names it
    eTexto_Repetido = 2,     // two records do
    eTexto_Zerado = 4,       // a run of zero bytes in it, which no program records
    eTexto_Alterado = 8,     // in a block that is not the one that was sealed
    eTexto_ZerosNoFim = 16,  // an empty text where the file ends in zeros
    eTexto_Ilegivel = 32,    // a part of it cannot be read
    eTexto_Perdido = 64,     // its bytes are among those of which nobody can tell whose they are
    eTexto_Deduzido = 128,   // behind such bytes: its position was counted from the end
};

class CXVExameTextos {
  public:
    // Walks the first uiAte bytes of payload. Forgets what it walked before.
    HRESULT Examina(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiAte,
                    const TSelos& rSelos);
    // The records name no position above ulUltima and, as in every file whose texts are not given up again,
    // that one: where the texts break off or are more than that with zeros among them, those behind the
    // damage get their positions from the end. Only where one chain of texts alone reaches it.
    void Emenda(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt ulUltima);

    XVUInt64 GetQuantidade() const { return m_aMarcas.size(); }
    // uiPosicao from 1. False: there is no such text. Notes that a record names it.
    bool Aponta(XVUInt uiPosicao);
    XVByte GetMarcas(XVUInt uiPosicao) const { return m_aMarcas[uiPosicao - 1]; }
    // Where the text's bytes begin in the payload, and how many there are.
    XVUInt64 GetInicio(XVUInt uiPosicao) const { return m_aInicios[uiPosicao - 1] + sizeof(XVUInt); }
    XVUInt64 GetTamanho(XVUInt uiPosicao) const { return m_aulTamanhos[uiPosicao - 1]; }
    // Where every text that can be told is named by a record as well as it ever will be: texts behind the
    // last one named are the ones of zeros that a power failure left in the place of others, unless they are
    // no more than the records that were lost.
    void MarcaZerosNoFim(XVUInt64 uiRegistrosPerdidos);

    // The chain does not reach the end: where the first text begins that runs past it.
    bool EstaPartida() const { return m_bPartida; }
    // There are more texts than the records know, and zeros that can have become texts.
    bool EstaDeslocada() const { return m_bDeslocada; }
    XVUInt64 GetFimSao() const { return m_uiFimSao; }
    // How many texts lie before the damage, how many were lost in it, and where the next one begins; with
    // nothing to go on with behind it: 0 lost, and the end.
    XVUInt64 GetTextosSaos() const { return m_uiSaos; }
    XVUInt64 GetPerdidos() const { return m_uiPerdidos; }
    XVUInt64 GetRetomada() const { return m_uiPerdidos == 0 ? m_uiAte : m_uiRetomada; }
    // Texts that no record names, and their bytes.
    void ContaMortos(XVUInt64* puiTextos, XVUInt64* puiBytes) const;
    XVUInt64 GetBlocosAlterados() const { return m_uiBlocosAlterados; }
    const SSelo& GetSelo() const { return m_selo; }

  private:
    void Anda(std::span<const char> aBytes, bool bAlterado);
    void Comeca(bool bAlterado);
    void Acaba();
    void ProcuraZeros(std::span<const char> aBytes);
    void Recua();
    void Encurta(std::size_t uiTextos);
    bool AchaZeros(XVUInt ulUltima, std::size_t* puiDe, std::size_t* puiAte) const;
    static bool TerminaEmZero(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiFim);
    void Junta(const CXVExameTextos& rCauda, std::size_t uiPrimeiro, XVUInt ulUltima);

    std::vector<XVByte> m_aMarcas;
    std::vector<XVUInt64> m_aInicios;  // of each text's length prefix in the payload
    std::vector<XVUInt> m_aulTamanhos;
    CXVBuracos m_buracos;
    SSelo m_selo;
    XVUInt64 m_uiBlocosAlterados = 0;
    XVUInt64 m_uiSaos = 0;
    XVUInt64 m_uiPerdidos = 0;
    XVUInt64 m_uiRetomada = 0;
    XVUInt64 m_uiFimSao = 0;
    XVUInt64 m_uiAte = 0;
    bool m_bPartida = false;
    bool m_bDeslocada = false;
    // Of the text that is being walked.
    std::size_t m_uiPrefixo = 0;  // bytes of its length that were seen
    XVUInt m_ulTamanho = 0;
    XVUInt64 m_uiFalta = 0;
    unsigned m_uiZeros = 0;  // zero bytes in a row
    bool m_bTemNul = false;
    bool m_bAlterado = false;
};
