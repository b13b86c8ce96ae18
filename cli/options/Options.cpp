#include "cli/options/Options.hpp"

#include "cli/options/CommandLine.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

namespace tessgen::cli {

namespace {

constexpr unsigned everyCommand = ~0U;
constexpr unsigned asksNames = bit(Action::which) | bit(Action::explain);

constexpr auto commands = std::to_array<CommandRow>({
    {Action::which, "which", "", "NAME...", Operands::names,
     "the candidates of each name (the word \"which\" may be left out)"},
    {Action::explain, "explain", "", "NAME...", Operands::names, "why the candidates of each name stand as they do"},
    {Action::batch, "batch", "", "", Operands::none,
     "the candidates of each name on standard input, line by line, answered at once; with --json a line answers each"},
    {Action::storeBuild, "store", "build", "RECORDS.jsonl", Operands::one,
     "the support store, from a file (- for standard input) with a JSON record on each line"},
    {Action::storeInfo, "store", "info", "[STORE]", Operands::optional,
     "what a support store holds (the manifest's, unless a file is named)"},
    {Action::storeVerify, "store", "verify", "[STORE]", Operands::optional,
     "whether every byte of a support store is as it was written"},
    {Action::storeExport, "store", "export", "[STORE]", Operands::optional,
     "the records of a support store, a JSON record on each line"},
    {Action::indexBuild, "index", "build", "", Operands::none,
     "the search index: what the folders of the search path hold, so that they are not listed for each question"},
    {Action::indexVerify, "index", "verify", "", Operands::none,
     "whether every byte of the search index is as it was written, and which folders have changed since"},
    {Action::config, "config", "", "", Operands::none, "every setting as it takes effect, and where it comes from"},
    {Action::init, "init", "", "FOLDER", Operands::one, "a manifest for the source files that a folder holds",
     Completes::folders},
    {Action::doctor, "doctor", "", "", Operands::none, "what is wrong with the installation, and what to do"},
});

constexpr auto options = std::to_array<OptionRow>({
    {"installation", 'i', "FILE-or-FOLDER", everyCommand & ~bit(Action::init),
     "the manifest of the installation, or its folder",
     [](Request& request, const char* argument) { request.installation = argument; }},
    {"json", 'j', nullptr,
     asksNames | bit(Action::batch) | bit(Action::storeInfo) | bit(Action::config) | bit(Action::doctor),
     "JSON instead of text, errors too", [](Request& request, const char*) { request.json = true; }},
    {"from", 'f', "FILE", bit(Action::which),
     "the names are the lines of a file, or of standard input when it is -; with --json a line answers each",
     [](Request& request, const char* argument) { request.from = argument; }},
    {"first", 0, nullptr, bit(Action::which) | bit(Action::batch), "only the preferred candidate of each name",
     [](Request& request, const char*) { request.first = true; }},
    {"null", '0', nullptr, bit(Action::which), "only the paths of files, as they are, each ended by a NUL",
     [](Request& request, const char*) { request.null = true; }},
    {"quiet", 'q', nullptr, bit(Action::which), "no output: the exit code alone",
     [](Request& request, const char*) { request.quiet = true; }},
    {"require", 0, "WORD,...", bit(Action::which),
     "exit code 1 unless the first is user, supported, or the only one: single",
     [](Request& request, const char* argument) { addRequirements(request.require, argument); }, Completes::nothing,
     "user supported single"},
    {"why-not", 0, "PATH", bit(Action::explain), "why the definition of this path is not the first, or none at all",
     [](Request& request, const char* argument) { request.whyNot = argument; }},
    {"output", 'o', "FILE", bit(Action::storeBuild) | bit(Action::storeExport),
     "the file to write: store build, if not the manifest's supportStore; store export",
     [](Request& request, const char* argument) { request.output = argument; }},
    {"record", 0, "FILE", asksNames, "keep what was asked of the installation, and its answers",
     [](Request& request, const char* argument) { request.record = argument; }},
    {"replay", 0, "FILE", asksNames, "answer from such a recording, without an installation",
     [](Request& request, const char* argument) { request.replay = argument; }},
    {"kel", 0, "FOLDER", bit(Action::init), "init: a folder of the code generator's own files; may be repeated",
     [](Request& request, const char* argument) { request.kelFolders.emplace_back(argument); }, Completes::folders},
    {"source-code", 0, "FOLDER", bit(Action::init), "init: a folder of the host's own code; may be repeated",
     [](Request& request, const char* argument) { request.sourceCodeFolders.emplace_back(argument); },
     Completes::folders},
    {"records", 0, nullptr, bit(Action::init), "init: also support.jsonl, with a record for each KEL file",
     [](Request& request, const char*) { request.records = true; }},
    {"force", 0, nullptr, bit(Action::init), "init: replace what is there",
     [](Request& request, const char*) { request.force = true; }},
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

void addRequirements(Requirement& requirement, std::string_view words) {
    for (const auto& word : standalone::split(words, ',')) {
        if (word == "user") {
            requirement.user = true;
        } else if (word == "supported") {
            requirement.supported = true;
        } else if (word == "single") {
            requirement.single = true;
        } else {
            throw std::runtime_error(
                fmt::format("--require knows user, supported and single, not '{}'; see kelwhich --help", word));
        }
    }
}

} // namespace tessgen::cli
