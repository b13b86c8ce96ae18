#include "cli/pages/Shells.hpp"

#include <fmt/format.h>

#include <algorithm>

namespace tessgen::cli {

std::string quoted(std::string_view text) {
    std::string out = "'";
    for (const char c : text) {
        out += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return out + "'";
}

std::vector<const CommandRow*> firstWords() {
    std::vector<const CommandRow*> rows;
    for (const auto& row : commandTable) {
        if (std::none_of(rows.begin(), rows.end(), [&](const auto* known) { return known->word == row.word; })) {
            rows.push_back(&row);
        }
    }
    return rows;
}

std::string wordsOfCommands(std::string_view between) {
    std::string all;
    for (const auto* const row : firstWords()) {
        all += fmt::format("{}{}", all.empty() ? "" : between, row->word);
    }
    return all;
}

std::vector<const CommandRow*> commandsBelow(const CommandRow& first) {
    std::vector<const CommandRow*> rows;
    for (const auto& row : commandTable) {
        if (row.word == first.word && !row.secondWord.empty()) {
            rows.push_back(&row);
        }
    }
    return rows;
}

std::string secondWords(const CommandRow& first, std::string_view between) {
    std::string seconds;
    for (const auto* const row : commandsBelow(first)) {
        seconds += fmt::format("{}{}", seconds.empty() ? "" : between, row->secondWord);
    }
    return seconds;
}

std::string helpOfFirstWord(const CommandRow& first) {
    auto seconds = secondWords(first, ", ");
    return seconds.empty() ? std::string(first.help) : seconds;
}

std::string spellings(const OptionRow& row, std::string_view between) {
    return row.letter == 0 ? fmt::format("--{}", row.name) : fmt::format("-{}{}--{}", row.letter, between, row.name);
}

std::string spellingsWithArgument(std::string_view between) {
    std::string all;
    for (const auto& row : optionTable) {
        if (row.argument != nullptr) {
            all += fmt::format("{}{}", all.empty() ? "" : between, spellings(row, between));
        }
    }
    return all;
}

} // namespace tessgen::cli
