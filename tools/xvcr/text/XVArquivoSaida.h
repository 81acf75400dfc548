// Files that the program makes for its user.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

std::filesystem::path XVCaminhoDeUtf8(std::string_view sCaminho);

// Creates the directory where it is missing. Failures are thrown as CXVErro.
void XVCriaPasta(const std::string& sPasta);

// Writes the bytes as the whole content of the file. Failures are thrown as CXVErro.
void XVGravaArquivo(const std::string& sCaminho, std::string_view sBytes);

// sPasta and sNome with the separator of the system.
std::string XVJuntaCaminho(const std::string& sPasta, const std::string& sNome);
