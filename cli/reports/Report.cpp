#include "cli/reports/Report.hpp"

#include "cli/output/Escape.hpp"
#include "standalone/text/Hash.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>

namespace tessgen::cli {

namespace {

std::string below(const std::string& folder) {
    return folder.ends_with('/') ? folder : folder + "/";
}

std::string relativeTo(const std::string& folder, std::string path) {
    const auto above = below(folder);
    return path.size() > above.size() && path.starts_with(above) ? path.substr(above.size()) : std::move(path);
}

// `path`, as it is shown, in a fingerprint: where the command runs and where the installation lies makes no difference.
std::string stablePath(const Report& report, const std::string& path) {
    return relativeTo(report.manifest.substr(0, report.manifest.rfind('/')),
                      path.starts_with('/') ? path : below(report.folder) + path);
}

// Everything that tells a finding from others, but lines.
std::string identity(const Report& report, const ReportedFinding& finding) {
    auto text = fmt::format("{}\n{}\n{}\n", finding.entry->finding.code, escaped(finding.name),
                            escaped(stablePath(report, finding.file)));
    for (const auto& other : finding.others) {
        text += escaped(other.isFile ? stablePath(report, other.text) : other.text) + "\n";
    }
    return text;
}

ReportedFinding reportedFinding(const ReportEntry& entry, const Report& report) {
    const auto& finding = entry.finding;
    const auto path = entry.path.empty() ? inUTF8(finding.path) : entry.path;
    const auto isFile = path.starts_with('/');
    ReportedFinding result;
    result.entry = &entry;
    result.name = inUTF8(finding.name.empty() && !isFile ? finding.path : finding.name);
    const bool isPlaced = entry.use && !entry.use->file.empty();
    result.file = shownPath(report, isPlaced ? entry.use->file : isFile ? path : report.manifest);
    if (isPlaced) {
        result.line = entry.use->line;
        result.column = entry.use->column;
    }
    std::vector<std::string> unnamed; // in the message
    for (const auto* other : {&finding.path, &finding.other}) {
        // Whether it is the place.
        const bool isShown =
            other == &finding.path && (!entry.use || (isFile && (!isPlaced || path == entry.use->file)));
        if (other->empty() || isShown) {
            continue;
        }
        result.others.push_back({shownPath(report, inUTF8(*other)), other->front() == u'/'});
        if (finding.message.find(*other) == std::u16string::npos) {
            unnamed.push_back(escaped(result.others.back().text));
        }
    }
    result.message = fmt::format("{}{}", escaped(inUTF8(finding.message)),
                                 unnamed.empty() ? "" : fmt::format(" ({})", fmt::join(unnamed, ", ")));
    const bool isNamed = entry.use || path.empty();
    result.statement = fmt::format("{}{}", isNamed ? escaped(result.name) + ": " : "", result.message);
    result.text = fmt::format("{}. {}", result.statement, finding.advice);
    return result;
}

} // namespace

std::size_t knownCount(const Report& report) {
    const auto& entries = report.entries;
    return static_cast<std::size_t>(
        std::count_if(entries.begin(), entries.end(), [](const ReportEntry& entry) { return entry.isKnown; }));
}

std::size_t countOf(const Report& report, analysis::Level level) {
    const auto& entries = report.entries;
    return static_cast<std::size_t>(std::count_if(entries.begin(), entries.end(), [level](const ReportEntry& entry) {
        return !entry.isKnown && entry.finding.level == level;
    }));
}

std::string shownPath(const Report& report, std::string path) {
    return report.folder.empty() ? path : relativeTo(report.folder, std::move(path));
}

std::string workingFolder() {
    std::error_code unknown;
    const auto folder = std::filesystem::current_path(unknown).string();
    return unknown ? "" : folder;
}

std::vector<ReportedFinding> reported(const Report& report) {
    std::vector<ReportedFinding> all;
    std::map<std::string, std::size_t> known; // how often each text was seen
    for (const auto& entry : report.entries) {
        auto& result = all.emplace_back(reportedFinding(entry, report));
        auto text = identity(report, result);
        text += std::to_string(known[text]++);
        result.fingerprint = fmt::format("{:016x}", standalone::hashOf(text));
    }
    return all;
}

} // namespace tessgen::cli
