// What a person may have meant by a name that does not exist.
#pragma once

#include <span>
#include <string>
#include <string_view>

// " (quis dizer Pendente?)" for the nearest of the names, where one differs little enough; otherwise empty.
std::string XVQuisDizer(std::string_view sTexto, std::span<const std::string> aNomes);
