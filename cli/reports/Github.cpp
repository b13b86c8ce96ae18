#include "cli/output/Escape.hpp"
#include "cli/reports/Formats.hpp"

#include <fmt/format.h>

#include <cstddef>

namespace tessgen::cli {

namespace {

using analysis::Level;

constexpr std::size_t mostShown = 10; // of a level; GitHub drops the rest

std::string_view githubLevel(Level level) {
    return level == Level::note ? "notice" : levelName(level);
}

// The text holds no line ends, since it is escaped. In a property, ":" and "," are syntax too.
std::string inCommand(std::string_view text, bool isProperty) {
    std::string out;
    for (const char c : text) {
        const bool isSyntax = c == '%' || (isProperty && (c == ':' || c == ','));
        out += isSyntax ? fmt::format("%{:02X}", static_cast<unsigned>(c)) : std::string(1, c);
    }
    return out;
}

std::string annotation(const ReportedFinding& entry) {
    const auto& finding = entry.entry->finding;
    const auto place = entry.column ? fmt::format(",line={},col={}", entry.line, *entry.column) : "";
    return fmt::format("::{} {}{},file={}{}::{}\n", githubLevel(finding.level), githubTitle, finding.code,
                       inCommand(escaped(entry.file), true), place, inCommand(entry.text, false));
}

} // namespace

std::string githubReport(const Report& report) {
    const auto entries = reported(report);
    std::string annotations;
    std::string counts;
    for (const auto level : {Level::error, Level::warning, Level::note}) {
        std::size_t count = 0;
        for (const auto& entry : entries) {
            if (!entry.entry->isKnown && entry.entry->finding.level == level && ++count <= mostShown) {
                annotations += annotation(entry);
            }
        }
        if (count > mostShown) {
            counts += fmt::format("kelwhich: {} without an annotation\n",
                                  counted(count - mostShown, fmt::format("more {}", levelName(level))));
        }
    }
    return annotations + counts;
}

} // namespace tessgen::cli
