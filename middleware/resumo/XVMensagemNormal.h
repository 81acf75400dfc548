// Messages of external systems as what they have in common: words that hold a digit (numbers, keys, dates,
// codes) become "#", so that the same failure of many integrations is one.
#pragma once

#include <string>
#include <string_view>

// At most 200 bytes of the message count, cut between characters; control characters and blanks in a row are
// one blank.
std::string XVMensagemNormal(std::string_view sMensagem);
