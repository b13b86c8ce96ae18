#include "cli/output/Escape.hpp"
#include "cli/reports/Formats.hpp"
#include "cli/reports/Markup.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>

namespace tessgen::cli {

namespace {

// What tells it from other findings of its code.
std::string caseName(const ReportedFinding& entry) {
    auto name = escaped(entry.file);
    if (entry.column) {
        name += fmt::format(":{}:{}", entry.line, *entry.column);
    }
    name += entry.name.empty() ? "" : ", " + escaped(entry.name);
    for (const auto& other : entry.others) {
        name += ", " + escaped(other.text);
    }
    return name;
}

bool isFailure(const ReportEntry& entry) {
    return !entry.isKnown && entry.finding.level != analysis::Level::note;
}

std::string resultOf(const ReportedFinding& entry) {
    if (entry.entry->isKnown) {
        return fmt::format("<skipped message=\"{}\"/>", knownWords);
    }
    if (!isFailure(*entry.entry)) {
        return fmt::format("<system-out>{}</system-out>", inXML(entry.text));
    }
    return fmt::format(R"(<failure type="{}" message="{}">{}</failure>)", levelName(entry.entry->finding.level),
                       inXML(entry.message), inXML(entry.text));
}

std::string testCase(const ReportedFinding& entry) {
    return fmt::format("    <testcase classname=\"{}\" name=\"{}\">\n"
                       "      {}\n"
                       "    </testcase>\n",
                       entry.entry->finding.code, inXML(caseName(entry)), resultOf(entry));
}

} // namespace

std::string junitReport(const Report& report) {
    const auto& found = report.entries;
    std::string cases;
    std::size_t passed = 0;
    for (const auto& entry : reported(report)) {
        cases += testCase(entry);
    }
    for (const auto& rule : report.rules) {
        if (std::none_of(found.begin(), found.end(), [&](const auto& e) { return e.finding.code == rule.code; })) {
            cases += fmt::format("    <testcase classname=\"{}\" name=\"no findings\"/>\n", rule.code);
            ++passed;
        }
    }
    const auto counts = fmt::format(R"(tests="{}" failures="{}" errors="0")", found.size() + passed,
                                    std::count_if(found.begin(), found.end(), isFailure));
    return fmt::format("{0}{1}\" {2}>\n  <testsuite name=\"kelwhich {1}\" {2} skipped=\"{3}\">\n{4}  </testsuite>\n"
                       "</testsuites>\n",
                       junitBeginning, report.command, counts, knownCount(report), cases);
}

} // namespace tessgen::cli
