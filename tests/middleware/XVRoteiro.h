// A fixed script of about 200 operations on a real directory, and a list of the files it makes.
#pragma once

#include <string>

// Runs the script below the module directory sDiretorio. One line per file, in order of names: name, length
// and CRC-64 of the bytes, with the fields that name the computer taken as zero. Empty: an operation failed.
std::string XVExecutaRoteiro(const std::string& sDiretorio);
