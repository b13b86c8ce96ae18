#include "cli/reports/Report.hpp"

#include "cli/output/Escape.hpp"
#include "standalone/text/Hash.hpp"

#include <fmt/format.h>

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

ReportedFinding reportedFinding(const analysis::Finding& finding, const Report& report) {
    const auto path = inUTF8(finding.path);
    const auto isFile = path.starts_with('/');
    ReportedFinding result{&finding,
                           inUTF8(finding.name.empty() && !isFile ? finding.path : finding.name),
                           relativeTo(report.folder, isFile ? path : forJSON(report.manifest)),
                           relativeTo(report.folder, inUTF8(finding.other)),
                           escaped(inUTF8(finding.message)),
                           {},
                           {}};
    const auto isNamed = finding.message.find(finding.other) != std::u16string::npos;
    result.text =
        fmt::format("{}{}. {}", result.message, isNamed ? "" : " (" + escaped(result.other) + ")", finding.advice);
    return result;
}

} // namespace

std::string workingFolder() {
    std::error_code unknown;
    const auto folder = std::filesystem::current_path(unknown).string();
    return unknown ? "/" : folder;
}

std::vector<ReportedFinding> reported(const Report& report) {
    std::vector<ReportedFinding> all;
    std::map<std::string, std::size_t> known; // how often each text was seen
    for (const auto& finding : report.findings) {
        auto& entry = all.emplace_back(reportedFinding(finding, report));
        const auto identity =
            fmt::format("{}\n{}\n{}\n{}", finding.code, escaped(entry.name), escaped(entry.file), escaped(entry.other));
        entry.fingerprint =
            fmt::format("{:016x}", standalone::hashOf(fmt::format("{}\n{}", identity, known[identity]++)));
    }
    return all;
}

} // namespace tessgen::cli
