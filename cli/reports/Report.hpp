// What a command found, as every format of a report shows it.
//
// Threads: plain values.
#pragma once

#include "analysis/Finding.hpp"
#include "analysis/Rules.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

// Where a program uses the name of a finding. Line and column count from 1.
struct UsePlace {
    std::string file; // UTF-8, absolute; empty when it is not known where
    std::size_t line = 1;
    std::size_t column = 1;
};

struct ReportEntry {
    analysis::Finding finding;
    std::optional<UsePlace> use = {}; // of a name that is used; without its file, the finding's own file is the place
    bool isKnown = false;             // a baseline lists it: shown as such, or left out
    std::string path = {};            // the finding's own, when it is not UTF-8, for which the finding has it escaped
};

// A definition that a name may stand for.
struct ReportedCandidate {
    std::string path;   // UTF-8
    std::size_t folder; // where it lies: an index of Report::folders
    bool isSupported;
    bool isMissing; // it is a file that does not exist
};

struct ReportedName {
    std::string name;                          // UTF-8
    std::vector<ReportedCandidate> candidates; // the preferred one first
    std::string explanation;                   // escaped lines
};

struct Report {
    std::string_view command;
    std::vector<analysis::Rule> rules; // of the codes that were looked for, found or not
    std::vector<ReportEntry> entries;
    std::string folder;   // absolute, or empty; paths below it are shown relative to it
    std::string manifest; // the place of a finding about something that is not a file

    // For formats that show names.
    std::vector<ReportedName> names = {};
    std::vector<std::string> folders = {}; // UTF-8, in search order; then what candidates lie in that are not files
};

// How many entries a baseline lists.
[[nodiscard]] std::size_t knownCount(const Report& report);

// How many of the others have this level.
[[nodiscard]] std::size_t countOf(const Report& report, analysis::Level level);

// `path` relative to the report's folder, if that is known and it lies below it.
[[nodiscard]] std::string shownPath(const Report& report, std::string path);

// The working folder, as `Report::folder`; empty when it is unknown.
std::string workingFolder();

// An entry with its texts in UTF-8.
struct ReportedFinding {
    struct Other {
        std::string text; // a file, relative or absolute, or a built-in; unescaped
        bool isFile;
    };

    const ReportEntry* entry = nullptr;
    std::string name;
    std::string file; // of its place: relative or absolute, unescaped; any bytes
    std::size_t line = 1;
    std::optional<std::size_t> column;
    std::vector<Other> others; // what else it is about
    std::string message;       // a clause that names the others; escaped
    std::string statement;     // the message; before it the name, when the place is not what it is about; escaped
    std::string text;          // the statement, then the advice
    std::string fingerprint;   // same for the same code, name and files below the manifest; none is there twice
};

// In the order of the entries.
std::vector<ReportedFinding> reported(const Report& report);

} // namespace tessgen::cli
