#include "cli/options/Spelling.hpp"

#include "cli/options/Options.hpp"
#include "standalone/doctor/SpellingSuggestions.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

namespace tessgen::cli {

namespace {

// The texts nearest to `word`, each once, in their order; empty when none is near enough.
std::vector<std::string> nearest(std::string_view word, const std::vector<std::string_view>& texts) {
    auto least = standalone::toleratedEdits(word);
    std::vector<std::string> found;
    for (const auto text : texts) {
        const auto distance = standalone::editDistance(word, text, least);
        if (distance < least) {
            found.clear();
        }
        if (distance <= least && std::find(found.begin(), found.end(), text) == found.end()) {
            found.emplace_back(text);
            least = distance;
        }
    }
    return found;
}

} // namespace

bool isOption(std::string_view name) {
    return std::any_of(optionTable.begin(), optionTable.end(), [name](const auto& row) { return row.name == name; });
}

std::vector<std::string> optionsLike(std::string_view word) {
    const auto name = word.substr(std::min(word.find_first_not_of('-'), word.size()));
    const auto typed = name.substr(0, name.find('='));
    std::vector<std::string_view> names;
    std::vector<std::string> found;
    for (const auto& row : optionTable) {
        names.emplace_back(row.name);
        if (word.starts_with("--") && !typed.empty() && names.back().starts_with(typed)) {
            found.push_back(fmt::format("--{}", row.name));
        }
    }
    if (found.empty()) {
        for (const auto& near : nearest(typed, names)) {
            found.push_back(fmt::format("--{}", near));
        }
    }
    return found;
}

std::vector<std::string> commandsLike(std::string_view word) {
    std::vector<std::string_view> words;
    for (const auto& row : commandTable) {
        words.push_back(row.word);
    }
    return nearest(word, words);
}

void refuseSecondWord(const std::vector<std::string>& words) {
    std::vector<std::string_view> seconds;
    for (const auto& row : commandTable) {
        if (row.word == words.front()) {
            seconds.push_back(row.secondWord);
        }
    }
    if (const auto meant = words.size() > 1 ? nearest(words[1], seconds) : std::vector<std::string>(); !meant.empty()) {
        const auto before = words.front() + " ";
        refuseWord("command", before + words[1], {before + fmt::format("{}", fmt::join(meant, " or " + before))});
    }
}

std::string topicOf(const std::vector<std::string>& words, bool mustBeCommand) {
    if (words.empty()) {
        return "";
    }
    if (const auto* const row = findCommand(words)) {
        return row->words();
    }
    if (!commandsBeginning(words.front()).empty()) {
        return words.front();
    }
    const auto meant = commandsLike(words.front());
    if (mustBeCommand || !meant.empty()) {
        refuseWord("command", words.front(), meant);
    }
    return "";
}

void refuseWord(std::string_view kind, std::string_view word, const std::vector<std::string>& meant) {
    throw std::runtime_error(
        fmt::format("unknown {} '{}'; {}", kind, word,
                    meant.empty() ? "see kelwhich --help" : fmt::format("did you mean {}?", fmt::join(meant, " or "))));
}

} // namespace tessgen::cli
