// Something about a resolved name that its user should know. Every analysis reports findings of this type.
//
// Texts are UTF-16, like those of an Explanation.
// Threads: a plain value.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::analysis {

enum class Level : std::uint8_t { note, warning, error };

// The level's name in every output.
[[nodiscard]] std::string_view levelName(Level level);

struct Finding {
    std::string_view code; // never changes
    Level level;
    std::u16string name;                           // that was resolved
    std::u16string path;                           // the file or built-in that it is about
    std::u16string other;                          // the other one that it is about; empty when there is none
    std::optional<kelwhich::Explanation::Key> key; // that decides which of the two comes first
    std::u16string message;                        // what is found, as a clause of a sentence
    std::string_view advice;                       // what to do, as a sentence
};

} // namespace tessgen::analysis
