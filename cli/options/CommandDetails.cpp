#include "cli/options/CommandDetails.hpp"

#include <algorithm>
#include <array>

namespace tessgen::cli {

namespace {

constexpr auto whichColumns = std::to_array<Term>({
    {"rank", "1 is the preferred candidate"},
    {"kind", "KEL path file, KEL built-in, host file, host built-in, or host built-in method"},
    {"user", "the user's own file, outside the host's source code and the support packages"},
    {"supported", "code can be generated for it under this name"},
    {"indirect", "it defines another name, or is a method of the host"},
    {"missing", "only a record leads to it: there is no such file"},
    {"path", "of a file; for a built-in, its name"},
});
constexpr auto whichExamples = std::to_array<Example>({
    {"kelwhich wave legacy", "print the candidates of two names"},
    {"kelwhich --json --first wave", "print the preferred candidate as JSON"},
    {"kelwhich -q --require user wave", "ask by the exit code whether wave is the user's own"},
    {"printf '%s\\n' wave sum | kelwhich --from -", "resolve many names against one snapshot of the disk"},
});

constexpr auto explainColumns = std::to_array<Term>({
    {"direct", "no: it defines another name, or is a method of the host"},
    {"user", "it is the user's own file"},
    {"supported", "code can be generated for it under this name"},
    {"source file", "it is a built-in or a source file of the host language"},
    {"kind", "KEL built-in before KEL path before other"},
    {"found", "its place among all that was found, and where"},
    {"*", "the column that puts a candidate before the next one"},
    {"=2", "a repeat of the second candidate, not listed again"},
});
constexpr auto explainExamples = std::to_array<Example>({
    {"kelwhich explain wave", "print why wave.vk of the user comes first"},
    {"kelwhich explain --why-not host/kel/wave.vk wave", "print what keeps this file from being the first"},
});

constexpr auto providesColumns = std::to_array<Term>({
    {"name", "has the file among its candidates"},
    {"rank, kind", "of the file there, as for kelwhich which"},
    {"last column", "what led to it: a support record or the host; after: the candidates before it"},
    {"with \"/\"", "the usual names with a \"/\" that lead to it"},
});
constexpr auto providesExamples = std::to_array<Example>({
    {"kelwhich provides host/kel/wave.vk", "print the names that lead to this file"},
});

constexpr auto batchColumns = std::to_array<Term>({
    {"(empty line)", "the end of an answer; each has the columns of kelwhich which"},
});
constexpr auto batchExamples = std::to_array<Example>({
    {"printf 'sum\\nrows\\n' | kelwhich batch --json", "print a line of JSON for each name, as soon as it is read"},
});

constexpr auto lspExamples = std::to_array<Example>({
    {"kelwhich lsp", "what an editor runs: it goes to definitions, explains names and reports findings"},
});

constexpr auto buildExamples = std::to_array<Example>({
    {"kelwhich store build support.jsonl", "build the store that the manifest names"},
    {"kelwhich store export | kelwhich store build -o copy.cdb -", "build a copy of the store from its records"},
});
constexpr auto infoColumns = std::to_array<Term>({
    {"file, bytes, version", "of the store; the version is its format's"},
    {"root", "the installation root that it was built for"},
    {"records", "in the store, with built-ins and redirects among them"},
    {"names", "that lead to a record, counted over all records"},
});
constexpr auto infoExamples = std::to_array<Example>({
    {"kelwhich store info --json", "print the figures as JSON"},
});
constexpr auto verifyExamples = std::to_array<Example>({
    {"kelwhich store verify", "check the store of the manifest"},
});
constexpr auto exportExamples = std::to_array<Example>({
    {"kelwhich store export --output records.jsonl", "write the records of the store to a file"},
});

constexpr auto indexBuildExamples = std::to_array<Example>({
    {"kelwhich index build", "build the file that the manifest names as searchIndex"},
});
constexpr auto indexVerifyExamples = std::to_array<Example>({
    {"kelwhich index verify || kelwhich index build", "build the index anew when folders have changed"},
});

constexpr auto configColumns = std::to_array<Term>({
    {"first column", "the setting, a key of the manifest; its values are below it, with absolute paths"},
    {"second column", "where it comes from: key of the manifest, or default"},
});
constexpr auto configExamples = std::to_array<Example>({
    {"kelwhich config", "print which manifest is used, and every setting"},
});
constexpr auto initExamples = std::to_array<Example>({
    {"kelwhich init . --kel kel --source-code library --records", "write installation.json and support.jsonl here"},
});
constexpr auto checkColumns = std::to_array<Term>({
    {"place", "the definition; for a use, FILE:LINE:COLUMN or the name alone"},
    {"level", "error, warning or note"},
    {"[code]", "what kind of finding it is; below the findings is what to do about each kind"},
});
constexpr auto checkExamples = std::to_array<Example>({
    {"kelwhich check mine", "print what is worth knowing of the definitions in a folder"},
    {"printf 'main.vk:3:5\\tsum\\n' | kelwhich check --names - --fail-on error",
     "check also a use; fail only on errors"},
    {"kelwhich check --baseline known.txt --update-baseline", "let only findings fail that are new from now on"},
    {"kelwhich check --except hides-host --report sarif=check.sarif", "also write a report for code scanning"},
});
constexpr auto doctorExamples = std::to_array<Example>({
    {"kelwhich doctor", "print what is wrong; exit with 1 when something is"},
    {"kelwhich doctor --report sarif=doctor.sarif --report junit=doctor.xml", "also write reports for programs"},
    {"kelwhich doctor --report html=doctor.html", "also write a page for a browser"},
});
constexpr auto lockColumns = std::to_array<Term>({
    {"name", "a plain or dotted name that has a candidate"},
    {"path, kind", "of a candidate; <root> and <packages> are the installation's roots"},
    {"verdicts", "user, supported, indirect, missing, as for kelwhich which; - for none"},
    {"by KEY", "what puts it before the next candidate, which follows"},
});
constexpr auto lockExamples = std::to_array<Example>({
    {"kelwhich lock -o names.lock", "write what every name stands for, to be kept beside the programs"},
    {"kelwhich lock --check names.lock", "print what has changed since; exit with 1 when something has"},
    {"printf '%s\\n' wave sum | kelwhich lock --from - -o used.lock", "the same for the names that are used"},
});
constexpr auto diffExamples = std::to_array<Example>({
    {"kelwhich diff names.lock .", "print what has changed since the lock was written"},
    {"kelwhich diff --json names.lock .", "the same as JSON, with all candidates before and after"},
});
constexpr auto helpExamples = std::to_array<Example>({
    {"kelwhich help store build", "print the help of one command"},
});

constexpr auto detailsTable = std::to_array<CommandDetails>({
    {Action::which, whichColumns, whichExamples},
    {Action::explain, explainColumns, explainExamples},
    {Action::provides, providesColumns, providesExamples},
    {Action::batch, batchColumns, batchExamples},
    {Action::lsp, {}, lspExamples},
    {Action::storeBuild, {}, buildExamples},
    {Action::storeInfo, infoColumns, infoExamples},
    {Action::storeVerify, {}, verifyExamples},
    {Action::storeExport, {}, exportExamples},
    {Action::indexBuild, {}, indexBuildExamples},
    {Action::indexVerify, {}, indexVerifyExamples},
    {Action::config, configColumns, configExamples},
    {Action::init, {}, initExamples},
    {Action::check, checkColumns, checkExamples},
    {Action::doctor, {}, doctorExamples},
    {Action::lock, lockColumns, lockExamples},
    {Action::diff, {}, diffExamples},
    {Action::help, {}, helpExamples},
});

struct OwnHelp {
    Action action;
    std::string_view option;
    std::string_view help;
};

// For options that do different things for different commands.
constexpr auto ownHelpTable = std::to_array<OwnHelp>({
    {Action::which, "json", "print one JSON document; with --from one line per name; errors are JSON, too"},
    {Action::batch, "json", "print one line of JSON per name; errors are JSON, too"},
    {Action::check, "null", "read NUL-terminated lines from the file of --names"},
    {Action::check, "verbose", "also list the notes, which are only counted otherwise"},
    {Action::storeBuild, "output", "write the store to this file, not to the manifest's supportStore"},
    {Action::lock, "from", "lock only the names in the lines of a file (- for standard input)"},
    {Action::lock, "null", "the names of --from are NUL-terminated"},
    {Action::lock, "json", "with --check: print JSON instead of text, errors included"},
    {Action::lock, "report", "with --check: also write what differs to this file, as for doctor; may be repeated"},
    {Action::lock, "output", "write the lock to this file, whole or not at all, not to standard output"},
    {Action::diff, "from", "compare only the names in the lines of a file (- for standard input)"},
    {Action::diff, "null", "the names of --from are NUL-terminated"},
    {Action::storeExport, "output", "write the records to this file, whole or not at all, not to standard output"},
});

} // namespace

const CommandDetails* findDetails(const CommandRow& command) {
    const auto* const found = std::find_if(detailsTable.begin(), detailsTable.end(),
                                           [&](const CommandDetails& d) { return d.action == command.action; });
    return found == detailsTable.end() ? nullptr : found;
}

std::string_view helpOf(const OptionRow& row, const CommandRow& command) {
    const auto* const found = std::find_if(ownHelpTable.begin(), ownHelpTable.end(), [&](const OwnHelp& own) {
        return own.action == command.action && own.option == row.name;
    });
    return found == ownHelpTable.end() ? row.help : found->help;
}

} // namespace tessgen::cli
