// A search in a directory. It tells what the directory's own entries say, for which no file has to be opened.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

class CXVBuscaArquivos {
  public:
    // When nothing is found, GetLastError tells why.
    explicit CXVBuscaArquivos(const std::wstring& sMascara)
        : m_hBusca(FindFirstFileExW(sMascara.c_str(), FindExInfoBasic, &m_dados, FindExSearchNameMatch,
                                    nullptr, FIND_FIRST_EX_LARGE_FETCH)) {}
    ~CXVBuscaArquivos() {
        if (Achou()) {
            FindClose(m_hBusca);
        }
    }
    CXVBuscaArquivos(const CXVBuscaArquivos&) = delete;
    CXVBuscaArquivos& operator=(const CXVBuscaArquivos&) = delete;

    bool Achou() const { return m_hBusca != INVALID_HANDLE_VALUE; }
    bool Proximo() { return FindNextFileW(m_hBusca, &m_dados) != FALSE; }
    std::wstring_view GetNome() const { return m_dados.cFileName; }
    bool EhDiretorio() const { return (m_dados.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
    bool EhElo() const {
        return (m_dados.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
               m_dados.dwReserved0 == IO_REPARSE_TAG_SYMLINK;
    }

  private:
    WIN32_FIND_DATAW m_dados{};
    HANDLE m_hBusca;
};
