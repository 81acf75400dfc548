// A file system whose process "dies" between two operations, as by kill -9: the chosen operation and all
// after it have no effect on the file system underneath, and everything that was open is released at
// once. What is on disk then is what a new process would find.
//
// The dying operation and those after it throw SProcessoMorto, or fail quietly (EMorte). While an exception
// is on its way, and once Executa has returned, they fail quietly instead, so that the destructors of what is
// left of the dead process can run. Thread rule: any thread, but the dying one must be inside Executa.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/XVSistemaArquivos.h"

// Deliberately no std::exception: no handler for the errors of a living process may take it.
struct SProcessoMorto {};

class CXVSistemaArquivosMorte final : public IXVSistemaArquivos {
  public:
    class CXVProcesso;

    enum class EContagem : std::uint8_t {
        eTodas,       // every operation, reads and questions included
        eAlteracoes,  // only those that can change something: openings that may create, writes, lengths,
                      // deletions, moves, directories, marks
    };

    enum class EMorte : std::uint8_t {
        eLanca,  // throws: the code behind the death does not run
        eCala,   // fails quietly: it runs to its end and nothing of it has an effect; also where nothing may
                 // throw
    };

    explicit CXVSistemaArquivosMorte(IXVSistemaArquivos& rInterno, EContagem eContagem = EContagem::eTodas,
                                     EMorte eMorte = EMorte::eLanca);
    ~CXVSistemaArquivosMorte() override;

    // A new process that dies at operation uiOperacao (1 is the first one; 0: lives and counts). With
    // bGravaMetade a write that it dies at has left the first half of its bytes.
    void Nasce(XVUInt64 uiOperacao, bool bGravaMetade = false);
    // Runs fn up to its end (false) or to the death of the process (true).
    bool Executa(const std::function<void()>& fn);
    bool EstaMorto() const;
    XVUInt64 GetQuantidade() const;  // operations counted since Nasce

    CXVErroArquivo Abre(const std::string& sCaminho, const SAberturaArquivo& rAbertura,
                        std::unique_ptr<IXVArquivo>& pArquivo) override;
    EExistencia Existe(const std::string& sCaminho) override;
    bool EhSomenteLeitura(const std::string& sCaminho) override;
    CXVErroArquivo BuscaNomeReal(const std::string& sCaminho, std::string& sNomeReal) override;
    CXVErroArquivo Apaga(const std::string& sCaminho) override;
    CXVErroArquivo Substitui(const std::string& sOrigem, const std::string& sDestino) override;
    CXVErroArquivo Lista(const std::string& sDiretorio, const std::string& sMascara,
                         std::vector<std::string>& listaNomes) override;
    CXVErroArquivo CriaDiretorio(const std::string& sDiretorio) override;
    CXVErroArquivo SincronizaDiretorio(const std::string& sDiretorio) override;
    CXVErroArquivo MarcaDiretorio(const std::string& sDiretorio, const std::string& sMarca,
                                  std::unique_ptr<IXVMarcaDiretorio>& pMarca) override;
    std::string Junta(std::string_view sDiretorio, std::string_view sNome) const override;

  private:
    IXVSistemaArquivos& m_rInterno;
    EContagem m_eContagem;
    EMorte m_eMorte;
    std::shared_ptr<CXVProcesso> m_pProcesso;
};
