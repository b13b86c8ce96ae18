#include "cli/Options.hpp"

#include "cli/CommandLine.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>

namespace tessgen::cli {

namespace {

constexpr unsigned everyCommand = ~0U;
constexpr unsigned asksNames = bit(Action::which) | bit(Action::explain);

constexpr auto commands = std::to_array<CommandRow>({
    {Action::which, "which", "", "NAME...", Operands::names,
     "the candidates of each name (the word \"which\" may be left out)"},
    {Action::explain, "explain", "", "NAME...", Operands::names, "why the candidates of each name stand as they do"},
    {Action::storeBuild, "store", "build", "RECORDS.jsonl", Operands::one,
     "the support store, from a file with a JSON record on each line"},
});

constexpr auto options = std::to_array<OptionRow>({
    {"installation", 'i', "FILE-or-FOLDER", everyCommand, "the manifest of the installation, or its folder",
     [](Request& request, const char* argument) { request.installation = argument; }},
    {"json", 'j', nullptr, asksNames, "one JSON document instead of text, and errors in JSON",
     [](Request& request, const char*) { request.json = true; }},
    {"why-not", 0, "PATH", bit(Action::explain), "why this definition is not the first, or none at all",
     [](Request& request, const char* argument) { request.whyNot = argument; }},
    {"output", 'o', "FILE", bit(Action::storeBuild),
     "store build: the file to write, if not the manifest's supportStore",
     [](Request& request, const char* argument) { request.output = argument; }},
    {"record", 0, "FILE", asksNames, "keep what was asked of the installation, and its answers",
     [](Request& request, const char* argument) { request.record = argument; }},
    {"replay", 0, "FILE", asksNames, "answer from such a recording, without an installation",
     [](Request& request, const char* argument) { request.replay = argument; }},
    {"help", 'h', nullptr, everyCommand, "this text, or that of a command",
     [](Request& request, const char*) { request.action = Action::help; }},
    {"version", 'V', nullptr, everyCommand, "the version",
     [](Request& request, const char*) { request.action = Action::version; }},
});

} // namespace

std::string CommandRow::words() const {
    return fmt::format("{}{}{}", word, secondWord.empty() ? "" : " ", secondWord);
}

bool OptionRow::belongsTo(const CommandRow& command) const {
    return (commands & bit(command.action)) != 0;
}

bool OptionRow::belongsToAll() const {
    return std::all_of(commandTable.begin(), commandTable.end(), [&](const auto& row) { return belongsTo(row); });
}

const std::span<const CommandRow> commandTable = commands;
const std::span<const OptionRow> optionTable = options;

} // namespace tessgen::cli
