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
    if (entry.column) {
        name += fmt::format(":{}:{}", entry.line, *entry.column);
    }
    name += entry.name.empty() ? "" : ", " + escaped(entry.name);
    for (const auto& other : entry.others) {
        name += ", " + escaped(other.text);
    }
    return name;
}

std::string resultOf(const ReportedFinding& entry) {
    if (entry.entry->isKnown) {
        return fmt::format("<skipped message=\"{}\"/>", knownWords);
    }
    return fmt::format("<failure type=\"{}\" message=\"{}\">{}</failure>", levelName(entry.entry->finding.level),
                       inXML(entry.message), inXML(entry.text));
}

std::string testCase(const ReportedFinding& entry) {
    const auto line = entry.column ? fmt::format(" line=\"{}\"", entry.line) : "";
    return fmt::format("    <testcase classname=\"{}\" name=\"{}\" file=\"{}\"{}>\n"
                       "      {}\n"
                       "    </testcase>\n",
                       entry.entry->finding.code, inXML(caseName(entry)), inXML(entry.file), line, resultOf(entry));
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
    const auto known =
        static_cast<std::size_t>(std::count_if(found.begin(), found.end(), [](const auto& e) { return e.isKnown; }));
    const auto counts = fmt::format(R"(tests="{}" failures="{}" errors="0"{})", found.size() + passed,
                                    found.size() - known, known == 0 ? "" : fmt::format(R"( skipped="{}")", known));
    return fmt::format("{0}{1}\" {2}>\n  <testsuite name=\"kelwhich {1}\" {2}>\n{3}  </testsuite>\n</testsuites>\n",
                       junitBeginning, report.command, counts, cases);
}

} // namespace tessgen::cli
