// What the system says of itself, chosen by the test while it lives: name of the machine, kernel, user,
// clocks. Thread rule: one thread, and one object at a time.
#pragma once

#include <ctime>
#include <string>

struct SSistemaFalso {
    SSistemaFalso();
    ~SSistemaFalso();
    SSistemaFalso(const SSistemaFalso&) = delete;
    SSistemaFalso& operator=(const SSistemaFalso&) = delete;

    std::string sMaquina;
    std::string sNucleo;
    unsigned ulUsuario = 0;
    time_t iAgora = 0;
    timespec monotonico{};  // every other clock stands at 0
};
