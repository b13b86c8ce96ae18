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

// The overview, and the help of one command, in lines of at most 80 characters.
std::string helpText();
std::string helpText(const CommandRow& command);

} // namespace tessgen::cli
