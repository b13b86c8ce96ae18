#include "cli/output/Escape.hpp"
#include "cli/output/FileURI.hpp"
#include "cli/output/Findings.hpp"
#include "cli/output/Json.hpp"
#include "cli/reports/Formats.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <optional>

namespace tessgen::cli {

namespace {

using analysis::Rule;
using Document = nlohmann::ordered_json;

constexpr std::string_view baseId = "%SRCROOT%"; // the name by convention

// An element on each line.
template <typename Elements, typename Print>
std::string jsonList(const Elements& elements, Print print) {
    std::string text = "[";
    for (const auto& element : elements) {
        text += (text.size() == 1 ? "\n" : ",\n") + printJSON(print(element));
    }
    return text + (text.size() == 1 ? "]" : "\n]");
}

// Viewers want a line.
Document physicalLocation(const std::string& file, std::size_t line = 1, std::optional<std::size_t> column = {}) {
    Document artifact{{"uri", file.starts_with('/') ? fileURI(file) : encodedPath(file)}};
    if (!file.starts_with('/')) {
        artifact["uriBaseId"] = baseId;
    }
    Document region{{"startLine", line}};
    if (column) {
        region["startColumn"] = *column;
    }
    return {{"artifactLocation", std::move(artifact)}, {"region", std::move(region)}};
}

Document logicalLocations(const std::string& name) {
    return Document::array({{{"fullyQualifiedName", name}}});
}

Document sarifRule(const Rule& rule) {
    return {{"id", rule.code},
            {"shortDescription", {{"text", rule.message}}},
            {"fullDescription", {{"text", rule.message}}},
            {"help", {{"text", rule.advice}}},
            {"defaultConfiguration", {{"level", levelName(rule.level)}}}};
}

Document relatedLocations(const std::vector<ReportedFinding::Other>& others) {
    auto list = Document::array();
    for (const auto& [text, isFile] : others) {
        Document location{{"id", list.size() + 1}, {"message", {{"text", escaped(text)}}}};
        location[isFile ? "physicalLocation" : "logicalLocations"] =
            isFile ? physicalLocation(text) : logicalLocations(text);
        list.push_back(std::move(location));
    }
    return list;
}

// `showsKnown`: the results say whether they are suppressed, which is for all of them or for none.
Document sarifResult(const ReportedFinding& entry, const std::vector<Rule>& rules, bool showsKnown) {
    const auto& finding = entry.entry->finding;
    const auto rule = std::find_if(rules.begin(), rules.end(), [&](const Rule& r) { return r.code == finding.code; });
    Document location{{"physicalLocation", physicalLocation(entry.file, entry.line, entry.column)}};
    if (!entry.name.empty()) {
        location["logicalLocations"] = logicalLocations(entry.name);
    }
    Document result{{"ruleId", finding.code},
                    {"ruleIndex", rule - rules.begin()},
                    {"level", levelName(finding.level)},
                    {"message", {{"text", entry.text}}},
                    {"locations", Document::array({std::move(location)})}};
    if (!entry.others.empty()) {
        result["relatedLocations"] = relatedLocations(entry.others);
    }
    result["partialFingerprints"] = {{"finding/v1", entry.fingerprint}};
    if (showsKnown) {
        result["suppressions"] = Document::array();
        if (entry.entry->isKnown) {
            result["suppressions"].push_back({{"kind", "external"}, {"justification", knownWords}});
        }
    }
    return result;
}

Document gitlabIssue(const ReportedFinding& entry) {
    const auto level = entry.entry->finding.level;
    return {{"engine_name", "kelwhich"},
            {"check_name", entry.entry->finding.code},
            {"description", entry.text},
            {"severity", level == analysis::Level::error     ? "major"
                         : level == analysis::Level::warning ? "minor"
                                                             : "info"},
            {"fingerprint", entry.fingerprint},
            {"location", {{"path", forJSON(entry.file)}, {"lines", {{"begin", entry.line}}}}}};
}

} // namespace

nlohmann::ordered_json document(const ReportEntry& entry) {
    auto printed = document(entry.finding);
    if (!entry.finding.name.empty()) {
        printed["name"] = inUTF8(entry.finding.name);
    }
    if (entry.use && !entry.use->file.empty()) {
        printed["use"] = {{"file", entry.use->file}, {"line", entry.use->line}, {"column", entry.use->column}};
    }
    if (entry.isKnown) {
        printed["known"] = true;
    }
    return printed;
}

std::string jsonReport(const Report& report) {
    const auto list = jsonList(report.entries, [](const ReportEntry& entry) { return document(entry); });
    return fmt::format("{}{}}}\n", jsonBeginning, list.substr(1));
}

std::string sarifReport(const Report& report) {
    const auto base = fmt::format("{}{}", fileURI(report.folder), report.folder.ends_with('/') ? "" : "/");
    return fmt::format("{}\"version\":\"" KELWHICH_VERSION "\",\"rules\":{}}}}},\n"
                       "\"automationDetails\":{{\"id\":\"kelwhich/{}/\"}},\n"
                       "\"originalUriBaseIds\":{},\n\"results\":{}}}]}}\n",
                       sarifBeginning, jsonList(report.rules, sarifRule), report.command,
                       printJSON({{baseId, {{"uri", base}}}}),
                       jsonList(reported(report), [&, showsKnown = knownCount(report) != 0](const auto& entry) {
                           return sarifResult(entry, report.rules, showsKnown);
                       }));
}

std::string gitlabReport(const Report& report) {
    auto entries = reported(report);
    std::erase_if(entries, [](const auto& entry) { return entry.entry->isKnown; });
    return jsonList(entries, gitlabIssue) + "\n";
}

} // namespace tessgen::cli
