#include "cli/commands/Commands.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "standalone/doctor/SpellingSuggestions.hpp"
#include "standalone/services/SessionState.hpp"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <string>

namespace tessgen::cli {

namespace {

// Whether every shell takes the name for one word as it is, and the program for a name.
bool isPlainWord(const std::string& name) {
    const auto isPlain = [](unsigned char c) { return c >= 0x80 || std::isalnum(c) != 0 || c == '_' || c == '.'; };
    return std::all_of(name.begin(), name.end(), isPlain) && escaped(name) == name;
}

} // namespace

int completeName(const Request& request) {
    using standalone::SpellingSuggestions;
    constexpr std::chrono::seconds patience(2); // of somebody who pressed a key
    const ResolverSession resolver(request);
    const SpellingSuggestions known(standalone::currentSession(), SpellingSuggestions::Clock::now() + patience);
    std::string text;
    for (const auto& name : known.beginningWith(request.operands.front())) {
        text += isPlainWord(name) ? name + '\n' : "";
    }
    writeOut(text);
    return exitYes;
}

} // namespace tessgen::cli
