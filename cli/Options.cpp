#include "cli/Options.hpp"

#include "cli/CommandLine.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

namespace tessgen::cli {

namespace {

constexpr unsigned everyCommand = ~0U;
constexpr unsigned asksNames = bit(Action::which) | bit(Action::explain);

std::string spelled(const CommandRow& row) {
    return fmt::format("{}{}{}", row.words(), row.operands.empty() ? "" : " ", row.operands);
}

std::string spelled(const OptionRow& row) {
    const auto letter = row.letter == 0 ? std::string(4, ' ') : fmt::format("-{}, ", row.letter);
    return fmt::format("{}--{}{}{}", letter, row.name, row.argument == nullptr ? "" : " ",
                       row.argument == nullptr ? "" : row.argument);
}

// One line for each row: how it is written, what it does.
template <typename Table>
void append(std::string& text, const Table& table) {
    const auto widest = std::max_element(
        table.begin(), table.end(), [](const auto& a, const auto& b) { return spelled(a).size() < spelled(b).size(); });
    for (const auto& row : table) {
        fmt::format_to(std::back_inserter(text), "  {:{}}  {}\n", spelled(row), spelled(*widest).size(), row.help);
    }
}

} // namespace

std::string CommandRow::words() const {
    return fmt::format("{}{}{}", word, secondWord.empty() ? "" : " ", secondWord);
}

namespace {

constexpr auto commands = std::to_array<CommandRow>({
    {Action::which, "which", "", "NAME...", Operands::names,
     "the candidates of each name (the word \"which\" may be left out)"},
    {Action::explain, "explain", "", "NAME...", Operands::names, "why the candidates of each name stand as they do"},
    {Action::batch, "batch", "", "", Operands::none,
     "the candidates of each name on standard input, line by line, answered at once"},
    {Action::storeBuild, "store", "build", "RECORDS.jsonl", Operands::one,
     "the support store, from a file with a JSON record on each line"},
    {Action::doctor, "doctor", "", "", Operands::none, "what is wrong with the installation, and what to do"},
});

constexpr auto options = std::to_array<OptionRow>({
    {"installation", 'i', "FILE-or-FOLDER", everyCommand, "the manifest of the installation, or its folder",
     [](Request& request, const char* argument) { request.installation = argument; }},
    {"json", 'j', nullptr, asksNames | bit(Action::batch) | bit(Action::doctor),
     "JSON instead of text: one document; with --from, and for batch, a line for each name",
     [](Request& request, const char*) { request.json = true; }},
    {"from", 'f', "FILE", bit(Action::which), "the names are the lines of a file, or of standard input when it is -",
     [](Request& request, const char* argument) { request.from = argument; }},
    {"first", 0, nullptr, bit(Action::which) | bit(Action::batch), "only the preferred candidate of each name",
     [](Request& request, const char*) { request.first = true; }},
    {"null", '0', nullptr, bit(Action::which), "only the paths of files, as they are, each ended by a NUL",
     [](Request& request, const char*) { request.null = true; }},
    {"quiet", 'q', nullptr, bit(Action::which), "no output: the exit code alone",
     [](Request& request, const char*) { request.quiet = true; }},
    {"require", 0, "WORD,...", bit(Action::which),
     "exit code 1 unless the preferred candidate is user or supported, or the only one (single)",
     [](Request& request, const char* argument) { addRequirements(request.require, argument); }},
    {"why-not", 0, "PATH", bit(Action::explain), "why this definition is not the first, or none at all",
     [](Request& request, const char* argument) { request.whyNot = argument; }},
    {"output", 'o', "FILE", bit(Action::storeBuild),
     "store build: the file to write, if not the manifest's supportStore",
     [](Request& request, const char* argument) { request.output = argument; }},
    {"record", 0, "FILE", asksNames, "keep what was asked of the installation, and its answers",
     [](Request& request, const char* argument) { request.record = argument; }},
    {"replay", 0, "FILE", asksNames, "answer from such a recording, without an installation",
     [](Request& request, const char* argument) { request.replay = argument; }},
    {"help", 'h', nullptr, everyCommand, "this text",
     [](Request& request, const char*) { request.action = Action::help; }},
    {"version", 'V', nullptr, everyCommand, "the version",
     [](Request& request, const char*) { request.action = Action::version; }},
});

} // namespace

const std::span<const CommandRow> commandTable = commands;
const std::span<const OptionRow> optionTable = options;

std::string helpText() {
    std::string text =
        "Usage: kelwhich [OPTION...] NAME...\n"
        "       kelwhich [OPTION...] COMMAND ...\n"
        "\n"
        "Which definitions a name may stand for when its program is translated, the preferred one first.\n"
        "\n"
        "Commands:\n";
    append(text, commandTable);
    text += "\nOptions:\n";
    append(text, optionTable);
    text += "\n"
            "Only the first word can be a command, and after the first name every word is a name. After -- no word is\n"
            "a command or an option: kelwhich -- store asks for the name store.\n"
            "\n"
            "The manifest is the one that --installation names, else KELWHICH_INSTALLATION, else the nearest\n"
            "installation.json in the working folder or above.\n"
            "\n"
            "Exit codes: 0 every name has a candidate, 1 some name has none or is not as required,\n"
            "2 nothing could be answered, 3 some names were answered and others not.\n"
            "doctor: 0 no findings, 1 findings, 2 nothing could be looked at.\n";
    return text;
}

} // namespace tessgen::cli
