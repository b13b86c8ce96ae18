#include "cli/output/Escape.hpp"
#include "cli/reports/Formats.hpp"

#include <fmt/format.h>
#include <utf8.h>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace tessgen::cli {

namespace {

// `text`, which is UTF-8, for an attribute or an element. Characters that XML 1.0 refuses, even as a reference, are
// spelled out: \u{1}.
std::string inXML(std::string_view text) {
    std::string out;
    const auto* const end = text.data() + text.size();
    for (const auto* at = text.data(); at != end;) {
        const auto* const begin = at;
        const auto character = utf8::unchecked::next(at);
        const bool isLineEndOrTab = character == U'\t' || character == U'\n' || character == U'\r';
        if (isLineEndOrTab || std::string_view("&<>\"'").find(*begin) != std::string_view::npos) {
            fmt::format_to(std::back_inserter(out), "&#{};", static_cast<unsigned>(character));
        } else if (character < U' ' || character == 0xFFFE || character == 0xFFFF) {
            fmt::format_to(std::back_inserter(out), "\\u{{{:X}}}", static_cast<unsigned>(character));
        } else {
            out.append(begin, at);
        }
    }
    return out;
}

// What tells it from other findings of its code.
std::string caseName(const ReportedFinding& entry) {
    auto name = escaped(entry.file);
    for (const auto& part : {entry.name, entry.other}) {
        name += part.empty() ? "" : ", " + escaped(part);
    }
    return name;
}

std::string failedCase(const ReportedFinding& entry) {
    return fmt::format("    <testcase classname=\"{}\" name=\"{}\" file=\"{}\">\n"
                       "      <failure type=\"{}\" message=\"{}\">{}</failure>\n"
                       "    </testcase>\n",
                       entry.finding->code, inXML(caseName(entry)), inXML(entry.file), levelName(entry.finding->level),
                       inXML(entry.message), inXML(entry.text));
}

} // namespace

std::string junitReport(const Report& report) {
    const auto& found = report.findings;
    std::string cases;
    std::size_t passed = 0;
    for (const auto& entry : reported(report)) {
        cases += failedCase(entry);
    }
    for (const auto& rule : report.rules) {
        if (std::none_of(found.begin(), found.end(), [&](const auto& finding) { return finding.code == rule.code; })) {
            cases += fmt::format("    <testcase classname=\"{}\" name=\"no findings\"/>\n", rule.code);
            ++passed;
        }
    }
    const auto counts = fmt::format(R"(tests="{}" failures="{}" errors="0")", found.size() + passed, found.size());
    return fmt::format("{0}{1}\" {2}>\n  <testsuite name=\"kelwhich {1}\" {2}>\n{3}  </testsuite>\n</testsuites>\n",
                       junitBeginning, report.command, counts, cases);
}

} // namespace tessgen::cli
