#include "cli/checking/CheckText.hpp"
#include "cli/checking/Checking.hpp"
#include "cli/checking/KnownFindings.hpp"
#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Json.hpp"
#include "cli/reports/Formats.hpp"
#include "cli/reports/ReportFiles.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

using analysis::Level;

bool isSelected(std::string_view code, const Request& request) {
    const auto isAmong = [code](const std::vector<std::string>& codes) {
        return std::find(codes.begin(), codes.end(), code) != codes.end();
    };
    return (request.only.empty() || isAmong(request.only)) && !isAmong(request.except);
}

// The rules that are looked for: those about uses only where names are, that about a baseline where one is compared.
// Errors: std::runtime_error when there is none.
std::vector<analysis::Rule> rulesFor(const Request& request) {
    namespace rule = analysis::rule;
    std::vector<analysis::Rule> rules;
    std::copy_if(analysis::rules.begin(), analysis::rules.end(), std::back_inserter(rules), [&](const auto& r) {
        const bool isOfUses = r.code == rule::noCandidate.code || r.code == rule::missingFile.code;
        const bool isOfBaseline = r.code == rule::staleBaseline.code;
        return isSelected(r.code, request) && (!isOfUses || request.names)
               && (!isOfBaseline || (request.baseline && !request.updateBaseline));
    });
    if (rules.empty()) {
        throw std::runtime_error("nothing is left to look for; no-candidate and missing-file need --names, "
                                 "stale-baseline needs --baseline");
    }
    return rules;
}

// Notes are only counted, unless they were asked for.
Level leastListed(const Request& request) {
    const bool wantsNotes = request.verbose || request.failOn == Level::note || !request.only.empty();
    return wantsNotes ? Level::note : Level::warning;
}

Report reportOn(std::vector<ReportEntry> entries, std::vector<analysis::Rule> rules, const Request& request) {
    Report report{"check", std::move(rules), std::move(entries), workingFolder(),
                  standalone::currentSession().installation.manifest};
    std::erase_if(report.entries, [&](const auto& entry) { return !isSelected(entry.finding.code, request); });
    return report;
}

// Marks what is known, and adds what is stale; with --update-baseline writes the baseline. Returns what it wrote.
std::string applyBaseline(std::vector<ReportEntry>& entries, const CheckedScope& scope, const Request& request) {
    if (!request.baseline) {
        return "";
    }
    KnownFindings known(*request.baseline, request.updateBaseline, standalone::currentSession());
    if (!request.updateBaseline) {
        known.apply(entries, scope);
        return "";
    }
    const auto count = known.update(entries, scope);
    return fmt::format("{}: {}\n", escaped(*request.baseline), counted(count, "finding"));
}

// "1 error, 2 warnings in 120 definitions and 45 uses; 7 known; 3 skipped"
std::string summary(const Report& report, const Checked& checked) {
    std::string text;
    for (const auto level : {Level::error, Level::warning, Level::note}) {
        if (const auto count = countOf(report, level); count > 0) {
            text += (text.empty() ? "" : ", ") + counted(count, levelName(level));
        }
    }
    text = fmt::format("{} in {}", text.empty() ? "no findings" : text, counted(checked.definitions, "definition"));
    text += checked.uses > 0 ? " and " + counted(checked.uses, "use") : "";
    if (const auto known = knownCount(report); known > 0) {
        text += fmt::format("; {} known", known);
    }
    return text + (checked.skipped.empty() ? "" : fmt::format("; {} skipped", checked.skipped.size()));
}

std::string asJSON(const Report& report, const Checked& checked) {
    auto findings = nlohmann::ordered_json::array();
    for (const auto& entry : report.entries) {
        findings.push_back(document(entry));
    }
    auto skipped = nlohmann::ordered_json::array();
    for (const auto& [place, cause] : checked.skipped) {
        skipped.push_back({{"place", forJSON(place)}, {"message", forJSON(cause)}});
    }
    return printJSONDocument({{"schema", "kelwhich/1"},
                              {"findings", std::move(findings)},
                              {"definitions", checked.definitions},
                              {"uses", checked.uses},
                              {"skipped", std::move(skipped)}});
}

Checked checkAll(const Request& request, const SourceFiles& files, const Uses& uses, ResolverSession& resolver,
                 ReportedNames* names) {
    auto checked = checkAll(files.paths, uses.all, standalone::currentSession(), resolver, names);
    for (const auto* skipped : {&files.skipped, &uses.skipped}) {
        checked.skipped.insert(checked.skipped.end(), skipped->begin(), skipped->end());
    }
    for (const auto& [place, cause] : checked.skipped) {
        reportErrorInLine(place + ":", cause);
    }
    if (checked.definitions == 0 && (checked.uses == 0 || !request.operands.empty())) {
        throw std::runtime_error(request.operands.empty()
                                     ? "0 definitions checked; name files or folders to check"
                                     : "0 definitions checked; there is no source file in what is to be checked");
    }
    return checked;
}

bool fails(const Report& report, const Request& request) {
    return request.failOn && std::any_of(report.entries.begin(), report.entries.end(), [&](const ReportEntry& entry) {
               return !entry.isKnown && entry.finding.level >= *request.failOn;
           });
}

// Writes the reports and prints the findings; `written` is said of the baseline. Returns the exit code.
int print(const Report& report, const Checked& checked, const std::string& written, const Request& request) {
    const auto words = summary(report, checked);
    const int exitCode = !checked.skipped.empty() ? exitPartial : fails(report, request) ? exitNo : exitYes;
    auto text = request.json ? asJSON(report, checked) : asText(report, leastListed(request), outputIsColoured());
    if (!request.json) {
        text += written + (exitCode == exitYes ? words + "\n" : "");
    }
    writeOut(withReports(std::move(text), request.reports, report));
    if (exitCode != exitYes) {
        reportError(words);
    }
    return exitCode;
}

} // namespace

int check(const Request& request) {
    auto rules = rulesFor(request);
    requireReplaceable(request.reports);
    ResolverSession resolver(request, standalone::View::snapshot);
    const auto uses = request.names ? readUses(*request.names, request.null ? '\0' : '\n') : Uses();
    const auto& session = standalone::currentSession();
    const auto files =
        request.operands.empty() ? ownSourceFiles(session, resolver) : sourceFilesBelow(request.operands, session);
    ReportedNames names(resolver);
    auto checked = checkAll(request, files, uses, resolver, showNames(request.reports) ? &names : nullptr);
    auto report = reportOn(std::move(checked.entries), std::move(rules), request);
    names.moveTo(report);
    const CheckedScope scope{files, request.names.has_value(), checked.skipped.empty(),
                             [&request](const std::string& code) { return isSelected(code, request); }};
    const auto written = applyBaseline(report.entries, scope, request);
    noteOnName(request, resolver);
    return print(report, checked, written, request);
}

} // namespace tessgen::cli
