// What the code generator knows about one definition: whether it supports it, and under which names it does not.
//
// Lifetime: shared and never changed; a holder may keep it for as long as it likes.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace tessapp::internal::screener::meta {

struct SupportEntry {
    // The definition is supported when any is set. What each of the six means, only the metadata service knows.
    std::array<bool, 6> supportFlags{};
    // The definition is a KEL built-in, and `path` a text that identifies it.
    bool isBuiltin = false;
    // Whoever asks for the definition is to be given `symbol` first.
    bool isRedirect = false;
    std::u16string symbol;
    std::u16string path;
    // Names for which the definition does not count as supported.
    std::vector<std::u16string> unsupportedSymbols;
};

} // namespace tessapp::internal::screener::meta
