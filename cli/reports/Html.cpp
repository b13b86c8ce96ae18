#include "cli/reports/Html.hpp"

#include "cli/output/Escape.hpp"
#include "cli/reports/Formats.hpp"
#include "cli/reports/Markup.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <map>

namespace tessgen::cli {

namespace {

using analysis::Level;

constexpr std::array levels = {Level::error, Level::warning, Level::note};

std::size_t hiding(const Report& report) {
    const auto& names = report.names;
    return static_cast<std::size_t>(
        std::count_if(names.begin(), names.end(), [](const auto& name) { return name.candidates.size() > 1; }));
}

// "2 errors, 1 warning and 0 notes, of which ..."
std::string counts(const Report& report) {
    std::string text;
    for (const auto level : levels) {
        text += (text.empty() ? "" : ", ") + counted(countOf(report, level), levelName(level));
    }
    if (const auto known = knownCount(report); known != 0) {
        text += fmt::format("; {} {}", counted(known, "finding"), knownWords);
    }
    if (!report.names.empty()) {
        text += fmt::format(". {}, of which {} more than one definition", counted(report.names.size(), "name"),
                            hiding(report) == 1 ? "1 has" : fmt::format("{} have", hiding(report)));
    }
    return text + ".";
}

// A box that hides the rows of a class, once it is not any more as it is at first.
std::string box(std::string_view words, std::size_t count, std::string_view rowClass, bool isChecked) {
    return fmt::format("<label><input type=\"checkbox\" id=\"box-{0}\" value=\".{0}\" autocomplete=\"off\"{1}> {2} "
                       "<span class=\"quiet\">{3}</span></label>\n",
                       rowClass, isChecked ? " checked" : "", words, count);
}

std::string filters(const Report& report) {
    std::string boxes;
    for (const auto level : levels) {
        if (const auto count = countOf(report, level); count != 0) {
            boxes += box(fmt::format("{}s", levelName(level)), count, levelName(level), true);
        }
    }
    if (knownCount(report) != 0) {
        boxes += box("known", knownCount(report), "known", true);
    }
    if (!report.names.empty()) {
        boxes += box("hidden only", hiding(report), "only", false);
    }
    return boxes;
}

std::string row(const ReportedFinding& entry, const std::map<std::string_view, std::size_t>& numbers) {
    const auto& finding = entry.entry->finding;
    const auto place = entry.column ? fmt::format(":{}:{}", entry.line, *entry.column) : "";
    const auto number = numbers.find(entry.name);
    const auto link = number == numbers.end() ? "" : fmt::format(" <a href=\"#n{}\">explain</a>", number->second);
    return fmt::format("<tr class=\"{0}{1}\"><td>{0}{2}</td><td class=\"path\">{3}{4}</td><td>{5}{6}</td>"
                       "<td><a href=\"#code-{7}\">{7}</a></td></tr>",
                       levelName(finding.level), entry.entry->isKnown ? " known" : "",
                       entry.entry->isKnown ? ", known" : "", visibleInXML(entry.file), place, inXML(entry.statement),
                       link, finding.code);
}

std::string findings(const Report& report) {
    if (report.entries.empty()) {
        return "<p>Nothing was found.</p>";
    }
    std::map<std::string_view, std::size_t> numbers;
    for (const auto& name : report.names) {
        numbers.emplace(name.name, numbers.size() + 1);
    }
    std::vector<std::string> rows;
    for (const auto& entry : reported(report)) {
        rows.push_back(row(entry, numbers));
    }
    return "<div class=\"findings\">\n"
           + htmlTables(R"(<colgroup><col class="level"><col class="path"><col><col class="code"></colgroup>)",
                        {"<th scope=\"col\"><span>Level</span></th>", "<th scope=\"col\"><span>Place</span></th>",
                         "<th scope=\"col\"><span>Finding</span></th>", "<th scope=\"col\"><span>Code</span></th>"},
                        rows, FirstHead::isShown)
           + "</div>";
}

std::string codes(const Report& report) {
    std::string rows;
    for (const auto& rule : report.rules) {
        const auto count = std::count_if(report.entries.begin(), report.entries.end(),
                                         [&](const auto& entry) { return entry.finding.code == rule.code; });
        rows += fmt::format(
            "<tr id=\"code-{0}\"{1}><th scope=\"row\">{0}</th><td>{2}</td><td>{3}</td><td>{4}</td></tr>\n", rule.code,
            count == 0 ? " class=\"quiet\"" : "", count, inXML(rule.message), inXML(rule.advice));
    }
    return fmt::format("<table class=\"codes\">\n<thead><tr><th scope=\"col\">Code</th><th scope=\"col\">Found</th>"
                       "<th scope=\"col\">Means</th><th scope=\"col\">What to do</th></tr></thead>\n<tbody>\n{}</tbody>"
                       "</table>",
                       rows);
}

// The text with each {{word}} replaced.
std::string filled(std::string_view text, const std::map<std::string_view, std::string>& words) {
    std::string out;
    for (auto begin = text.find("{{"); begin != std::string_view::npos; begin = text.find("{{")) {
        const auto end = text.find("}}");
        out.append(text.substr(0, begin)).append(words.at(text.substr(begin + 2, end - begin - 2)));
        text.remove_prefix(end + 2);
    }
    return out.append(text);
}

} // namespace

std::string htmlTables(std::string_view group, const std::vector<std::string>& columns,
                       const std::vector<std::string>& rows, FirstHead firstHead) {
    constexpr std::size_t inPart = 250;
    std::string text;
    for (std::size_t begin = 0; begin < rows.size(); begin += inPart) {
        const auto end = std::min(rows.size(), begin + inPart);
        const auto at = [&](std::size_t i) { return rows.begin() + static_cast<std::ptrdiff_t>(i); };
        text += fmt::format(
            "<div class=\"part\"><table>{}<thead{}><tr>{}</tr></thead><tbody>\n{}\n</tbody></table></div>\n", group,
            begin == 0 && firstHead == FirstHead::isShown ? "" : " class=\"again\"", fmt::join(columns, ""),
            fmt::join(at(begin), at(end), "\n"));
    }
    return text;
}

std::string htmlReport(const Report& report) {
    return filled(htmlPage, {{"command", std::string(report.command)},
                             {"version", KELWHICH_VERSION},
                             {"folder", visibleInXML(report.folder)},
                             {"counts", counts(report)},
                             {"filters", filters(report)},
                             {"findings", findings(report)},
                             {"codes", codes(report)},
                             {"toNames", report.names.empty() ? "" : R"( <a href="#names">Names</a>)"},
                             {"names", htmlNames(report)},
                             {"explanations", htmlExplanations(report)}});
}

} // namespace tessgen::cli
