#include "cli/checking/CheckText.hpp"

#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

using analysis::Level;

std::string placeOf(const ReportedFinding& reported) {
    if (reported.column) {
        return fmt::format("{}:{}:{}", escaped(reported.file), reported.line, *reported.column);
    }
    return escaped(reported.entry->use ? reported.name : reported.file);
}

std::string_view styleOf(Level level, const Style& style) {
    return level == Level::error ? style.error : level == Level::warning ? style.warning : style.aside;
}

std::string lineOf(const ReportedFinding& reported, const Style& style) {
    const auto& finding = reported.entry->finding;
    const auto name = reported.column ? escaped(reported.name) + ": " : "";
    return fmt::format("{}{}{}: {}{}{}: {}{} {}[{}]{}\n", style.name, placeOf(reported), style.end,
                       styleOf(finding.level, style), levelName(finding.level), style.end, name, reported.message,
                       style.aside, finding.code, style.end);
}

// What to do about the listed findings, in the order in which they come.
class Advice {
public:
    void add(const analysis::Finding& finding) {
        const std::pair<std::string_view, std::string_view> line{finding.code, finding.advice};
        if (std::find(lines_.begin(), lines_.end(), line) == lines_.end()) {
            lines_.push_back(line);
        }
    }

    [[nodiscard]] std::string text(const Style& style) const {
        std::string text;
        for (const auto& [code, advice] : lines_) {
            text += fmt::format("{}{}{}: {}\n", style.name, code, style.end, advice);
        }
        return text.empty() ? "" : "\n" + text;
    }

private:
    std::vector<std::pair<std::string_view, std::string_view>> lines_;
};

} // namespace

std::string asText(const Report& report, Level least, bool coloured) {
    const auto style = outputStyle(coloured);
    Report listed{report.command, {}, {}, report.folder, report.manifest};
    std::map<std::string_view, std::size_t> notListed; // by code
    for (const auto& entry : report.entries) {
        if (!entry.isKnown && entry.finding.level >= least) {
            listed.entries.push_back(entry);
        } else if (!entry.isKnown) {
            ++notListed[entry.finding.code];
        }
    }
    std::string text;
    Advice advice;
    for (const auto& reported : reported(listed)) {
        text += lineOf(reported, style);
        advice.add(reported.entry->finding);
    }
    text += advice.text(style);
    std::string codes;
    for (const auto& [code, count] : notListed) {
        codes += fmt::format("{}{} {}", codes.empty() ? "" : ", ", count, code);
    }
    if (!codes.empty()) {
        text += fmt::format("{}notes that --verbose lists: {}\n", text.empty() ? "" : "\n", codes);
    }
    return text;
}

} // namespace tessgen::cli
