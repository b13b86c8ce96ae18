// What --help prints, and the parts of it that the man page shares.
#pragma once

#include "cli/options/Options.hpp"

#include <span>
#include <string>
#include <string_view>

namespace tessgen::cli {

constexpr std::string_view purpose =
    "Prints which definitions a name may stand for when its program is translated, the preferred one first.";

struct HelpSection {
    std::string_view title;
    std::string_view text; // one paragraph per line
};

extern const std::span<const HelpSection> helpSections;

// "store build RECORDS.jsonl"
std::string spelled(const CommandRow& row);
// "-o, --output FILE"
std::string spelled(const OptionRow& row);

// The help of a row as a sentence: with a capital letter and a full stop.
std::string sentence(std::string_view help);

// The help of a command or of the commands with this first word, or the overview when `topic` is empty, in lines of at
// most 80 characters.
std::string helpText(std::string_view topic);

} // namespace tessgen::cli
