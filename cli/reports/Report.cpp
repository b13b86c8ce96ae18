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

std::string relativeTo(const std::string& folder, std::string path) {
    const auto above = folder.ends_with('/') ? folder : folder + "/";
    return path.size() > above.size() && path.starts_with(above) ? path.substr(above.size()) : std::move(path);
}

ReportedFinding reportedFinding(const ReportEntry& entry, const Report& report) {
    const auto& finding = entry.finding;
    const auto path = inUTF8(finding.path);
    const auto isFile = path.starts_with('/');
    ReportedFinding result;
    result.entry = &entry;
    result.name = inUTF8(finding.name.empty() && !isFile ? finding.path : finding.name);
    result.file = relativeTo(report.folder, entry.use ? entry.use->file : isFile ? path : forJSON(report.manifest));
    if (entry.use) {
        result.line = entry.use->line;
        result.column = entry.use->column;
    }
    std::vector<std::string> unnamed; // in the message
    for (const auto* other : {entry.use ? &finding.path : nullptr, &finding.other}) {
        if (other == nullptr || other->empty()) {
            continue;
        }
        result.others.push_back({relativeTo(report.folder, inUTF8(*other)), other->front() == u'/'});
        if (finding.message.find(*other) == std::u16string::npos) {
            unnamed.push_back(escaped(result.others.back().text));
        }
    }
    const bool needsName = entry.use || path.empty();
    result.message = (needsName ? escaped(result.name) + ": " : "") + escaped(inUTF8(finding.message));
    result.text = fmt::format("{}{}. {}", result.message,
                              unnamed.empty() ? "" : fmt::format(" ({})", fmt::join(unnamed, ", ")), finding.advice);
    return result;
}

} // namespace

bool hasKnown(const Report& report) {
    return std::any_of(report.entries.begin(), report.entries.end(), [](const ReportEntry& e) { return e.isKnown; });
}

std::string workingFolder() {
    std::error_code unknown;
    const auto folder = std::filesystem::current_path(unknown).string();
    return unknown ? "/" : folder;
}

std::vector<ReportedFinding> reported(const Report& report) {
    std::vector<ReportedFinding> all;
    std::map<std::string, std::size_t> known; // how often each text was seen
    for (const auto& entry : report.entries) {
        auto& result = all.emplace_back(reportedFinding(entry, report));
        auto identity = fmt::format("{}\n{}\n{}\n", entry.finding.code, escaped(result.name), escaped(result.file));
        for (const auto& other : result.others) {
            identity += (&other == &result.others.front() ? "" : "\n") + escaped(other.text);
        }
        result.fingerprint =
            fmt::format("{:016x}", standalone::hashOf(fmt::format("{}\n{}", identity, known[identity]++)));
    }
    return all;
}

} // namespace tessgen::cli
