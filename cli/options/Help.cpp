#include "cli/options/Help.hpp"

#include "cli/options/CommandDetails.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>

namespace tessgen::cli {

namespace {

constexpr std::size_t helpWidth = 80;
constexpr std::size_t helpColumn = 29; // where the help of a row begins

constexpr auto sections = std::to_array<HelpSection>({
    {"Names", "Only the first word can be a command. Options stand anywhere before --; after it every word is a name: "
              "kelwhich -- store resolves the name store."},
    {"Manifest", "The manifest is the one of --installation, else of KELWHICH_INSTALLATION, else the nearest "
                 "installation.json in the working folder or above."},
    {"Exit status", "0  every name has a candidate and meets --require; the task is done\n"
                    "1  some name has no candidate or does not meet --require; there are findings\n"
                    "2  nothing could be answered or done\n"
                    "3  some names were answered, others were not\n"
                    "When the reader of standard output goes away, SIGPIPE ends the program."},
    {"Errors",
     "The last line on standard error says why the exit status is not 0; --quiet omits it for 1. With --json it is a "
     "JSON object, {\"schema\":\"kelwhich/1\",\"error\":{\"message\":...,\"exit\":...}}."},
});

// Appends `text` to the last line of `out`, wrapped and indented by `indent`.
void appendWrapped(std::string& out, std::string_view text, std::size_t indent) {
    auto column = out.size() - (out.rfind('\n') + 1);
    bool startsLine = true;
    while (!text.empty()) {
        const auto word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(word.size() + 1, text.size()));
        if (!startsLine && column + 1 + word.size() > helpWidth) {
            out += '\n';
            column = 0;
            startsLine = true;
        }
        const auto gap = startsLine ? indent - std::min(indent, column) : 1;
        out.append(gap, ' ').append(word);
        column += gap + word.size();
        startsLine = false;
    }
    out += '\n';
}

void append(std::string& text, const std::string& words, std::string_view help) {
    const auto left = "  " + words;
    text += left;
    if (left.size() + 2 > helpColumn) {
        text += '\n';
    }
    appendWrapped(text, help, helpColumn);
}

// Appends a title and the options of `command` that are of every command, or those that are not; nothing when there are
// none.
void appendOptions(std::string& text, const std::string& title, const CommandRow& command, bool ofEveryCommand) {
    std::string list;
    for (const auto& row : optionTable) {
        if (row.belongsTo(command) && row.belongsToAll() == ofEveryCommand) {
            append(list, spelled(row), helpOf(row, command));
        }
    }
    if (!list.empty()) {
        text += fmt::format("\n{}:\n{}", title, list);
    }
}

void appendOptionsOf(std::string& text, const CommandRow& command) {
    appendOptions(text, fmt::format("Options of {}", command.words()), command, false);
    appendOptions(text, "Options of every command", command, true);
}

void appendDetails(std::string& text, const CommandDetails& details) {
    text += details.columns.empty() ? "" : "\nColumns:\n";
    for (const auto& column : details.columns) {
        append(text, std::string(column.word), column.meaning);
    }
    text += "\nExamples:\n";
    for (const auto& example : details.examples) {
        text += fmt::format("  {}\n", example.command); // alone in its line, to be copied
        appendWrapped(text, example.purpose, 6);
    }
}

std::string overview() {
    std::string text = "Usage: kelwhich [OPTION...] NAME...\n"
                       "       kelwhich COMMAND [OPTION...] ...\n\n";
    appendWrapped(text, purpose, 0);
    text += "\nCommands (see kelwhich COMMAND --help):\n";
    for (const auto& row : commandTable) {
        append(text, spelled(row), row.help);
    }
    appendOptionsOf(text, commandTable.front());
    for (const auto& section : helpSections) {
        text += fmt::format("\n{}:\n", section.title);
        for (const auto& line : standalone::split(section.text, '\n')) {
            appendWrapped(text, line, 2);
        }
    }
    return text;
}

std::string wholeHelpOf(const CommandRow& command) {
    std::string text = fmt::format("Usage: kelwhich {} [OPTION...]{}{}\n\n", command.words(),
                                   command.operands.empty() ? "" : " ", command.operands);
    appendWrapped(text, sentence(command.help), 0);
    appendOptionsOf(text, command);
    if (const auto* const details = findDetails(command)) {
        appendDetails(text, *details);
    }
    return text;
}

} // namespace

const std::span<const HelpSection> helpSections = sections;

std::string spelled(const CommandRow& row) {
    return fmt::format("{}{}{}", row.words(), row.operands.empty() ? "" : " ", row.operands);
}

std::string spelled(const OptionRow& row) {
    const auto letter = row.letter == 0 ? std::string(4, ' ') : fmt::format("-{}, ", row.letter);
    return fmt::format("{}--{}{}{}", letter, row.name, row.argument == nullptr ? "" : " ",
                       row.argument == nullptr ? "" : row.argument);
}

std::string sentence(std::string_view help) {
    std::string text(help);
    text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    return text + (text.ends_with('.') ? "" : ".");
}

std::string helpText(std::string_view topic) {
    if (topic.empty()) {
        return overview();
    }
    const auto words = standalone::split(topic, ' ');
    if (const auto* const command = findCommand(words)) {
        return wholeHelpOf(*command);
    }
    auto text = fmt::format(
        "Usage: kelwhich {} COMMAND [OPTION...] ...\n\nCommands (see kelwhich {} COMMAND --help):\n", topic, topic);
    for (const auto& row : commandTable) {
        if (row.word == topic) {
            append(text, spelled(row), row.help);
        }
    }
    return text;
}

} // namespace tessgen::cli
