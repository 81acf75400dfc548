// The names that the creation control of a directory lists, kept while this process holds the directory for
// writing: nobody else can change the list then.
//
// Thread rule: any thread.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/XVTipos.h"

class CXVNomesControlados {
  public:
    // Whether the name is listed, without regard to case; without a value the list has to be read.
    std::optional<bool> Possui(std::string_view sNome) const;
    // To be asked before the list is read. What was read is kept unless somebody changed the list since.
    XVUInt64 GetGeracao() const;
    void Guarda(XVUInt64 uiGeracao, std::vector<std::string> listaNomes);
    void Esquece();

    // Around a change of the list: meanwhile nothing is kept. Null: nothing to do.
    class CMudanca {
      public:
        explicit CMudanca(CXVNomesControlados* pNomes) : m_pNomes(pNomes) { Soma(1); }
        ~CMudanca() { Soma(-1); }
        CMudanca(const CMudanca&) = delete;
        CMudanca& operator=(const CMudanca&) = delete;

      private:
        void Soma(int i) const;
        CXVNomesControlados* m_pNomes;
    };

    static bool Contem(const std::vector<std::string>& rLista, std::string_view sNome);

  private:
    mutable std::mutex m_Mutex;
    bool m_bConhecidos = false;
    int m_iMudancas = 0;  // under way
    XVUInt64 m_uiGeracao = 0;
    std::vector<std::string> m_listaNomes;
};
