// The reports that --report asks for: reads the option, and writes the files.
//
// Threads: one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessgen::cli {

struct Report;
struct ReportFormat;

// What may stand before the file in the argument of --report.
inline constexpr std::string_view reportFormats = "json= sarif= junit= gitlab= github= html=";

struct ReportTarget {
    const ReportFormat* format;
    std::string file; // "-" is standard output
};
using ReportTargets = std::vector<ReportTarget>;

// Adds the argument of --report, FORMAT=FILE.
// Errors: std::runtime_error for an unknown format, a file that was given before, or a format that cannot be written to
// standard output, which has the text.
void addReport(ReportTargets& targets, std::string_view argument);

// Whether one of the formats shows the names of a report.
[[nodiscard]] bool showNames(const ReportTargets& targets);

// Errors: an existing file is neither empty nor a report of the same format.
void requireReplaceable(const ReportTargets& targets);

// Replaces each file. Returns `text`, then the report that goes to standard output, if any; no line of `text` is then
// one of its commands.
// Errors: those of AtomicFile.
[[nodiscard]] std::string withReports(std::string text, const ReportTargets& targets, const Report& report);

} // namespace tessgen::cli
