// What the error log was told, as a test's capture has it.
#pragma once

#include <algorithm>
#include <string_view>

#include "support/trace/XVCapturaTrace.h"

// Whether the message of some failure holds the text.
inline bool XVTextoNoLog(const CXVCapturaTrace& rCaptura, std::string_view sTexto) {
    return std::ranges::any_of(rCaptura.GetFalhas(), [&](const SFalhaCapturada& rFalha) {
        return rFalha.sMensagem.find(sTexto) != std::string::npos;
    });
}
