// Libraries loaded by name, only from the program's own directory or the system's, never from the
// current directory. The name is given without directory; ".dll" is replaced by ".so" (prefixed "lib"
// when the plain name is absent) where libraries have that form. Thread rule: any thread.
#pragma once

#include <memory>
#include <string>

class CXVBibliotecaDinamica {
  public:
    // Loads the library; EstaCarregada() is false when it is absent, or sNome holds a directory.
    explicit CXVBibliotecaDinamica(const std::string& sNome);
    ~CXVBibliotecaDinamica();
    CXVBibliotecaDinamica(const CXVBibliotecaDinamica&) = delete;
    CXVBibliotecaDinamica& operator=(const CXVBibliotecaDinamica&) = delete;

    bool EstaCarregada() const { return m_hBiblioteca != nullptr; }
    // Why a library that lies in the program's directory was not loaded, as the system says it; empty when it
    // was loaded, or when it is absent.
    const std::string& GetMotivoFalha() const { return m_sMotivoFalha; }

    // The exported function, or null.
    template <class TFuncao>
    TFuncao GetFuncao(const char* pszNome) const {
        return reinterpret_cast<TFuncao>(GetEndereco(pszNome));
    }

  private:
    using PFuncaoGenerica = void (*)();
    PFuncaoGenerica GetEndereco(const char* pszNome) const;
    void* m_hBiblioteca = nullptr;
    std::string m_sMotivoFalha;
};
