// A file of texts walked from front to back: how many texts it holds, and what is to be said of each.
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
};

class CXVExameTextos {
  public:
    // Walks the first uiAte bytes of payload. Forgets what it walked before.
    HRESULT Examina(CXVLeituraLoja& rLeitura, const SArquivoLoja& rArquivo, XVUInt64 uiAte,
                    const TSelos& rSelos);

    XVUInt64 GetQuantidade() const { return m_aMarcas.size(); }
    // uiPosicao from 1. False: there is no such text. Notes that a record names it.
    bool Aponta(XVUInt uiPosicao);
    XVByte GetMarcas(XVUInt uiPosicao) const { return m_aMarcas[uiPosicao - 1]; }
    // Where the text's bytes begin in the payload, and how many there are.
    XVUInt64 GetInicio(XVUInt uiPosicao) const { return m_aInicios[uiPosicao - 1] + sizeof(XVUInt); }
    XVUInt64 GetTamanho(XVUInt uiPosicao) const {
        return (uiPosicao < m_aInicios.size() ? m_aInicios[uiPosicao] : m_uiFimSao) - GetInicio(uiPosicao);
    }
    // Where every text that can be told is named by a record as well as it ever will be: texts behind the
    // last one named are the ones of zeros that a power failure left in the place of others.
    void MarcaZerosNoFim();

    // The chain does not reach the end: where the first text begins that runs past it.
    bool EstaPartida() const { return m_bPartida; }
    XVUInt64 GetFimSao() const { return m_uiFimSao; }
    // Texts that no record names, and their bytes.
    void ContaMortos(XVUInt64* puiTextos, XVUInt64* puiBytes) const;
    XVUInt64 GetBlocosAlterados() const { return m_uiBlocosAlterados; }
    const SSelo& GetSelo() const { return m_selo; }

  private:
    void Anda(std::span<const char> aBytes, bool bAlterado);
    void Comeca(bool bAlterado);
    void ProcuraZeros(std::span<const char> aBytes);

    std::vector<XVByte> m_aMarcas;
    std::vector<XVUInt64> m_aInicios;  // of each text's length prefix in the payload
    SSelo m_selo;
    XVUInt64 m_uiBlocosAlterados = 0;
    XVUInt64 m_uiFimSao = 0;
    XVUInt64 m_uiAte = 0;
    bool m_bPartida = false;
    // Of the text that is being walked.
    std::size_t m_uiPrefixo = 0;  // bytes of its length that were seen
    XVUInt m_ulTamanho = 0;
    XVUInt64 m_uiFalta = 0;
    unsigned m_uiZeros = 0;  // zero bytes in a row
    bool m_bAlterado = false;
};
