#include "cli/commands/Answering.hpp"
#include "cli/commands/Commands.hpp"
#include "cli/installation/ResolverSession.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Json.hpp"
#include "cli/reports/DoctorFindings.hpp"
#include "cli/reports/Report.hpp"
#include "cli/reports/ReportFiles.hpp"
#include "standalone/doctor/Diagnosis.hpp"
#include "standalone/services/SessionState.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <utility>

namespace tessgen::cli {

namespace {

using standalone::Finding;
using standalone::Findings;

constexpr std::ptrdiff_t shownPlaces = 10; // of each diagnostic, in text

standalone::DiagnosisInput diagnosisInput(const ResolverSession& resolver) {
    const auto& session = standalone::currentSession();
    return {session.installation,
            session.files,
            session.store ? &*session.store : nullptr,
            standalone::realPath,
            [&resolver](const std::u16string& name) { return !resolver->resolve(name).empty(); },
            session.index ? &*session.index : nullptr,
            standalone::isLinkCircle};
}

// For each diagnostic: its code, message and advice, then its places. Findings of one diagnostic are adjacent.
std::string asText(const Findings& findings) {
    const auto style = outputStyle(outputIsColoured());
    std::string text;
    for (auto first = findings.begin(); first != findings.end();) {
        const auto last = std::find_if(first, findings.end(), [diagnostic = first->diagnostic](const Finding& other) {
            return other.diagnostic != diagnostic;
        });
        const auto& [code, message, advice] = textOf(first->diagnostic);
        text += fmt::format("{}{}{}{}\n  {}\n  {}\n", text.empty() ? "" : "\n", style.name, code, style.end, message,
                            advice);
        const auto shown = std::min(last - first, shownPlaces);
        for (const auto& finding : Findings(first, first + shown)) {
            text += fmt::format("    {}\n", escaped(finding.place));
        }
        if (last - first > shown) {
            text += fmt::format("    and {} more; --json shows all\n", last - first - shown);
        }
        first = last;
    }
    return text.empty() ? "no findings\n" : text;
}

std::string asJSON(const Findings& findings) {
    auto list = nlohmann::ordered_json::array();
    for (const auto& finding : findings) {
        const auto& [code, message, advice] = textOf(finding.diagnostic);
        list.push_back({{"code", code}, {"place", escaped(finding.place)}, {"message", message}, {"advice", advice}});
    }
    const nlohmann::ordered_json document{{"schema", "kelwhich/1"}, {"findings", std::move(list)}};
    return printJSONDocument(document);
}

Report reportOn(const Findings& findings) {
    Report report{"doctor", doctorRules(), {}, workingFolder(), standalone::currentSession().installation.manifest};
    std::transform(findings.begin(), findings.end(), std::back_inserter(report.entries), [](const Finding& finding) {
        const bool isUTF8 = standalone::isUTF8(finding.path);
        return ReportEntry{asFinding(finding), {}, false, isUTF8 ? "" : finding.path};
    });
    return report;
}

} // namespace

int doctor(const Request& request) {
    requireReplaceable(request.reports);
    const ResolverSession resolver(request, standalone::View::snapshot);
    const auto findings = diagnose(diagnosisInput(resolver));
    auto text = request.json ? asJSON(findings) : asText(findings);
    writeOut(request.reports.empty() ? text : withReports(std::move(text), request.reports, reportOn(findings)));
    noteOnName(request, resolver);
    if (findings.empty()) {
        return exitYes;
    }
    reportError(counted(findings.size(), "finding"));
    return exitNo;
}

} // namespace tessgen::cli
