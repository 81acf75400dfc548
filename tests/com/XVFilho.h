// What this program does when a test starts it again as a client process ("--filho <modo> ...").
#pragma once

#include <string>
#include <vector>

// Modes: "grava <company> <n> <user>" records and reads back n integrations; "espera <company> <event>"
// initialises, signals and sleeps; "chama <company> <event>" initialises, signals and records large texts
// for ever; "crash <directory> <0|1>" faults under the crash handler, with or without minidump; "termina
// <directory>" ends by an exception that nobody catches. The exit code is 0 on success.
int XVExecutaFilho(const std::vector<std::wstring>& listaArgumentos);
