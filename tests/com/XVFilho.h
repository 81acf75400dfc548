// What this program does when a test starts it again as a client process ("--filho <modo> ...").
#pragma once

#include <string>
#include <vector>

// Modes: "grava <company> <n> <user>" records and reads back n integrations; "espera <company>" initialises,
// says so in one line and sleeps; "chama <company>" initialises and records large texts for ever, one line
// after each; "crash <directory> <0|1>" faults under the crash handler, with or without minidump; "termina
// <directory>" ends by an exception that nobody catches. The exit code is 0 on success.
int XVExecutaFilho(const std::vector<std::string>& listaArgumentos);
