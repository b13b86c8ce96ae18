#include "cli/options/Options.hpp"

#include "analysis/Rules.hpp"
#include "cli/options/CommandLine.hpp"
#include "cli/output/Console.hpp"
#include "standalone/text/Text.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>

namespace tessgen::cli {

namespace {

constexpr unsigned everyCommand = ~0U;
constexpr unsigned asksNames = bit(Action::which) | bit(Action::explain);
constexpr unsigned comparesLocks = bit(Action::lock) | bit(Action::diff);

// The codes of findings, separated by spaces.
constexpr auto joinedCodes = [] {
    constexpr std::size_t size = [] {
        std::size_t sum = 0;
        for (const auto& rule : analysis::rules) {
            sum += rule.code.size() + 1;
        }
        return sum;
    }();
    std::array<char, size> text{};
    std::size_t end = 0;
    for (const auto& rule : analysis::rules) {
        for (const char c : rule.code) {
            text.at(end++) = c;
        }
        text.at(end++) = ' ';
    }
    return text;
}();
constexpr std::string_view codes(joinedCodes.data(), joinedCodes.size() - 1);

constexpr CommandRow hiddenCommand = {
    Action::completeName,
    hiddenWord,
    "",
    "BEGINNING",
    Operands::one,
    "print the names that begin like this and that no shell needs to quote, for the completions of shells"};

constexpr auto commands = std::to_array<CommandRow>({
    {Action::which, "which", "", "NAME...", Operands::names,
     "print the candidates of each name, the preferred one first (\"which\" may be omitted)", Completes::names},
    {Action::explain, "explain", "", "NAME...", Operands::names,
     "print why the candidates of each name are ranked as they are", Completes::names},
    {Action::provides, "provides", "", "FILE...", Operands::names,
     "print the names that lead to each file, with its rank there and what comes before it"},
    {Action::batch, "batch", "", "", Operands::none,
     "answer each name on standard input, one per line, as soon as it is read; with --json print one line per name"},
    {Action::lsp, "lsp", "", "", Operands::none,
     "serve an editor: speak the Language Server Protocol 3.17 on standard input and output"},
    {Action::storeBuild, "store", "build", "RECORDS.jsonl", Operands::one,
     "build the support store from a file (- for standard input) with one JSON record per line"},
    {Action::storeInfo, "store", "info", "[STORE]", Operands::optional,
     "print the figures of a support store, by default the manifest's"},
    {Action::storeVerify, "store", "verify", "[STORE]", Operands::optional, "check every byte of a support store"},
    {Action::storeExport, "store", "export", "[STORE]", Operands::optional,
     "print the records of a support store, one JSON record per line"},
    {Action::indexBuild, "index", "build", "", Operands::none,
     "build the search index, which saves listing the folders of the search path for each name"},
    {Action::indexVerify, "index", "verify", "", Operands::none,
     "check every byte of the search index, and print the folders that changed since it was built"},
    {Action::config, "config", "", "", Operands::none, "print every setting in effect and its source"},
    {Action::init, "init", "", "FOLDER", Operands::one,
     "write a manifest for the source files in a folder, or with --update add to it", Completes::folders},
    {Action::check, "check", "", "[PATH...]", Operands::any,
     "print what is worth knowing of every definition in files and folders, by default in the user's own search "
     "folders"},
    {Action::doctor, "doctor", "", "", Operands::none, "print what is wrong with the installation and what to do"},
    {Action::lock, "lock", "", "", Operands::none,
     "write what every known name stands for, one line per name, or check that nothing has changed since"},
    {Action::diff, "diff", "", "BEFORE AFTER", Operands::two,
     "print the names that stand for something else after than before; each is a manifest, its folder or a lock"},
    {Action::help, "help", "", "[COMMAND]", Operands::optional, "print the overview, or the help of a command",
     Completes::commands},
    hiddenCommand,
});

constexpr auto options = std::to_array<OptionRow>({
    {"installation", 'i', "FILE-or-FOLDER", everyCommand & ~bit(Action::help) & ~bit(Action::diff),
     "use this manifest, or the one in this folder",
     [](Request& request, const char* argument) { request.installation = argument; }},
    {"json", 'j', nullptr,
     asksNames | bit(Action::provides) | bit(Action::batch) | bit(Action::storeInfo) | bit(Action::config)
         | bit(Action::doctor) | bit(Action::check) | comparesLocks,
     "print JSON instead of text, errors included", [](Request& request, const char*) { request.json = true; }},
    {"from", 'f', "FILE", bit(Action::which) | comparesLocks,
     "read names from the lines of a file (- for standard input); with --json print one line per name",
     [](Request& request, const char* argument) { request.from = argument; }},
    {"first", 0, nullptr, bit(Action::which) | bit(Action::batch), "print only the preferred candidate of each name",
     [](Request& request, const char*) { request.first = true; }},
    {"null", '0', nullptr, bit(Action::which) | bit(Action::check) | comparesLocks,
     "print only file paths, unescaped and NUL-terminated; with --from also read NUL-terminated names",
     [](Request& request, const char*) { request.null = true; }},
    {"quiet", 'q', nullptr, bit(Action::which), "print no answers; only set the exit code",
     [](Request& request, const char*) { request.quiet = true; }},
    {"require", 0, "WORD,...", bit(Action::which),
     "exit 1 unless the first candidate is the user's (user), is supported (supported), or is the only one (single)",
     [](Request& request, const char* argument) { addRequirements(request.require, argument); }, Completes::nothing,
     "user supported single"},
    {"why-not", 0, "PATH", bit(Action::explain),
     "explain why the definition at this path is not the first candidate, or not one at all",
     [](Request& request, const char* argument) { request.whyNot = argument; }},
    {"verbose", 'v', nullptr, bit(Action::explain) | bit(Action::check), "also list the folders that the host searched",
     [](Request& request, const char*) { request.verbose = true; }},
    {"output", 'o', "FILE", bit(Action::storeBuild) | bit(Action::storeExport) | bit(Action::lock),
     "write to this file; without it, store build writes the manifest's supportStore, store export standard output",
     [](Request& request, const char* argument) { request.output = argument; }},
    {"check", 0, "FILE", bit(Action::lock),
     "write nothing; print what differs from this lock, as diff does, and exit 1 if anything does",
     [](Request& request, const char* argument) { request.lockToCheck = argument; }},
    {"live", 0, nullptr, bit(Action::batch), "search the disk anew for each name, and watch no folders",
     [](Request& request, const char*) { request.live = true; }},
    {"stats", 0, nullptr, bit(Action::batch),
     "print at the end, on standard error, how often folders were listed, and which kinds of folders are not watched",
     [](Request& request, const char*) { request.stats = true; }},
    {"record", 0, "FILE", asksNames, "record every question to the installation, and its answer, in a file",
     [](Request& request, const char* argument) { request.record = argument; }},
    {"replay", 0, "FILE", asksNames, "answer from a recording, without an installation",
     [](Request& request, const char* argument) { request.replay = argument; }},
    {"names", 0, "FILE", bit(Action::check),
     "also check the names that a program uses: a line for each, NAME or FILE:LINE:COLUMN, a TAB and NAME (- for "
     "standard input)",
     [](Request& request, const char* argument) { request.names = argument; }},
    {"fail-on", 0, "LEVEL", bit(Action::check),
     "exit 1 when a finding has this level or a graver one: note, warning, which is the default, error or never",
     [](Request& request, const char* argument) { request.failOn = levelNamed(argument); }, Completes::nothing,
     "error warning note never"},
    {"only", 0, "CODE,...", bit(Action::check), "report only findings with these codes",
     [](Request& request, const char* argument) { addCodes(request.only, "only", argument); }, Completes::nothing,
     codes},
    {"except", 0, "CODE,...", bit(Action::check), "do not report findings with these codes",
     [](Request& request, const char* argument) { addCodes(request.except, "except", argument); }, Completes::nothing,
     codes},
    {"baseline", 0, "FILE", bit(Action::check), "pass over the findings that this file lists; they do not fail",
     [](Request& request, const char* argument) { request.baseline = argument; }},
    {"update-baseline", 0, nullptr, bit(Action::check), "write the file of --baseline, so that it lists what is found",
     [](Request& request, const char*) { request.updateBaseline = true; }},
    {"report", 0, "FORMAT=FILE", bit(Action::doctor) | bit(Action::check) | comparesLocks,
     "also write the findings to this file, as json, sarif, junit, gitlab, github or html; may be repeated",
     [](Request& request, const char* argument) { addReport(request.reports, argument); }, Completes::files,
     reportFormats},
    {"kel", 0, "FOLDER", bit(Action::init), "treat this folder as the code generator's own; may be repeated",
     [](Request& request, const char* argument) { request.kelFolders.emplace_back(argument); }, Completes::folders},
    {"source-code", 0, "FOLDER", bit(Action::init), "treat this folder as the host's own code; may be repeated",
     [](Request& request, const char* argument) { request.sourceCodeFolders.emplace_back(argument); },
     Completes::folders},
    {"records", 0, nullptr, bit(Action::init), "also write support.jsonl, with a record for each KEL file",
     [](Request& request, const char*) { request.records = true; }},
    {"update", 0, nullptr, bit(Action::init),
     "add new folders and KEL files to the manifest and to support.jsonl; change and remove nothing",
     [](Request& request, const char*) { request.update = true; }},
    {"force", 0, nullptr, bit(Action::init), "replace existing files",
     [](Request& request, const char*) { request.force = true; }},
    {"color", 0, "WHEN", everyCommand,
     "colour the output and errors: always, never or auto, which is the default and obeys NO_COLOR and FORCE_COLOR",
     [](Request&, const char* argument) { setColour(argument); }, Completes::nothing, "auto always never"},
    {"help", 'h', nullptr, everyCommand, "print this help, or the help of a command",
     [](Request& request, const char*) { request.action = Action::help; }},
    {"version", 'V', nullptr, everyCommand, "print the version",
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

const std::span<const CommandRow> commandTable = std::span(commands).first<commands.size() - 1>();
const std::span<const OptionRow> optionTable = options;

const CommandRow* findCommand(std::span<const std::string> words) {
    const auto* const row = std::find_if(commands.begin(), commands.end(), [&](const auto& command) {
        return !words.empty() && command.word == words[0]
               && (command.secondWord.empty() || (words.size() > 1 && command.secondWord == words[1]));
    });
    return row == commands.end() ? nullptr : row;
}

std::vector<std::string> commandsBeginning(std::string_view word) {
    std::vector<std::string> found;
    for (const auto& row : commandTable) {
        if (row.word == word && !row.secondWord.empty()) {
            found.push_back(row.words());
        }
    }
    return found;
}

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
                fmt::format("--require: unknown word '{}'; use user, supported or single; see kelwhich --help", word));
        }
    }
}

void addCodes(std::vector<std::string>& chosen, std::string_view option, std::string_view words) {
    for (const auto& code : standalone::split(words, ',')) {
        if (std::none_of(analysis::rules.begin(), analysis::rules.end(),
                         [&](const analysis::Rule& rule) { return rule.code == code; })) {
            throw std::runtime_error(fmt::format("--{}: unknown code '{}'; use some of {}", option, code, codes));
        }
        chosen.push_back(code);
    }
}

std::optional<analysis::Level> levelNamed(std::string_view word) {
    for (const auto level : {analysis::Level::note, analysis::Level::warning, analysis::Level::error}) {
        if (word == levelName(level)) {
            return level;
        }
    }
    if (word != "never") {
        throw std::runtime_error(
            fmt::format("--fail-on: unknown level '{}'; use note, warning, error or never; see kelwhich --help", word));
    }
    return std::nullopt;
}

} // namespace tessgen::cli
