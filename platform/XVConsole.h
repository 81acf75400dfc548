// The standard streams and the arguments of a program of the command line. Thread rule: called while the
// program starts, except for the two questions, which any thread may ask.
#pragma once

#include <string>
#include <vector>

namespace XVConsole {

// Lets bytes pass unchanged through the standard streams and tells the terminal that they are UTF-8.
void Prepara();

// The program's arguments in UTF-8, without its own name.
std::vector<std::string> GetArgumentos(int iQuantidade, const char* const* ppszArgumentos);

// Writing to a pipe without reader fails from here on and does not end the process, which has recorded
// something and has to say so.
void CanoSemLeitorEhFalha();

bool SaidaEhTerminal();
// Columns of the terminal that shows the standard output; 0 where there is none.
unsigned GetLarguraSaida();
// Whether it is one that understands the attributes of ECMA-48 ("\x1b[31m").
bool SaidaAceitaCores();
bool ErroEhTerminal();

}  // namespace XVConsole
