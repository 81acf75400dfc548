// What an administrator asks of a registration beside the registration itself.
#pragma once

#include <optional>
#include <string>

// Not given: what stands there stays, whoever set it.
struct SOpcoesInscricao {
    // The account under which one server serves all users: "LocalService", "NetworkService", "Interativo"
    // (the user who is logged on), a name of the system's; "QuemChama": none, each user has a server of his
    // own.
    std::optional<std::wstring> sConta;
    // Who may start the server and call it, beside system and administrators: the name or the identifier
    // (S-1-...) of a group or user; "Padrao": as the system and the server decide.
    std::optional<std::wstring> sAcesso;
};
