// A file system in memory with the contract of the real ones: share modes, attributes, deletion rules,
// marks. Names ignore the case of A-Z and keep the case they were created with; '/' and '\' both separate
// components; every path starts at one root, which always exists. Thread rule: any thread.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/XVSistemaArquivos.h"

class CXVSistemaArquivosMemoria final : public IXVSistemaArquivos {
  public:
    struct SEstado;

    struct SArquivoRetratado {
        std::string sConteudo;
        bool bSomenteLeitura = false;
        bool operator==(const SArquivoRetratado&) const = default;
    };
    // The whole tree: files by path, directories by path with a '/' at the end.
    using TRetrato = std::map<std::string, SArquivoRetratado>;

    CXVSistemaArquivosMemoria();
    ~CXVSistemaArquivosMemoria() override;

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

    // Behind the contract, for tests. They heed neither share modes nor attributes.
    void CriaArquivo(const std::string& sCaminho, std::string sConteudo);  // with its directories; replaces
    std::optional<std::string> LeConteudo(const std::string& sCaminho) const;
    void SetSomenteLeitura(const std::string& sCaminho, bool bSomenteLeitura);
    void LimitaEspaco(std::optional<XVUInt64> uiBytes);  // of all contents together; beyond it: eDiscoCheio
    std::size_t GetQuantidadeAberta() const;             // openings and marks that are still held

    TRetrato Retrata() const;
    void Restaura(const TRetrato& rRetrato);  // nothing may be open
    // What differs, one line for each path; empty when nothing does.
    static std::string Diferenca(const TRetrato& rEsperado, const TRetrato& rObtido);

  private:
    std::shared_ptr<SEstado> m_pEstado;
};
