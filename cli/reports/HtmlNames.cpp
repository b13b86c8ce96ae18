#include "cli/output/Columns.hpp"
#include "cli/output/Escape.hpp"
#include "cli/reports/Html.hpp"
#include "cli/reports/Markup.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace tessgen::cli {

namespace {

// The folders of a report in which something was found, each a column of the matrix.
class Matrix {
public:
    explicit Matrix(const Report& report) : report_(report), places_(report.folders.size()) {
        for (const auto& name : report.names) {
            for (const auto& candidate : name.candidates) {
                auto& place = places_.at(candidate.folder);
                ++place.definitions;
                place.preferred += &candidate == &name.candidates.front() ? 1U : 0U;
            }
        }
        for (auto& place : places_) {
            place.column = columns_;
            columns_ += place.definitions == 0 ? 0U : 1U;
        }
    }

    [[nodiscard]] std::string list() const {
        std::string items;
        for (std::size_t i = 0; i < places_.size(); ++i) {
            const auto& place = places_[i];
            items += fmt::format(
                "<li><code>{}</code>: {}</li>\n", folder(i),
                place.definitions == 0
                    ? "nothing"
                    : fmt::format("{}, {} preferred", counted(place.definitions, "definition"), place.preferred));
        }
        return fmt::format("<details><summary>{} in search order</summary>\n<ol>\n{}</ol></details>\n",
                           counted(places_.size(), "place"), items);
    }

    [[nodiscard]] std::string group() const {
        return fmt::format("<colgroup><col class=\"name\"><col class=\"path\"><col class=\"place\" span=\"{}\">"
                           "</colgroup>",
                           columns_);
    }

    // The cells of the head.
    [[nodiscard]] std::vector<std::string> head() const {
        constexpr std::size_t widest = 26;
        std::vector<std::string> cells = {R"(<th class="name" scope="col"><span>Name</span></th>)",
                                          R"(<th class="path" scope="col"><span>Stands for</span></th>)"};
        for (std::size_t i = 0; i < places_.size(); ++i) {
            if (places_[i].definitions != 0) {
                const auto shown = shortened(escaped(shownPath(report_, report_.folders[i])), widest);
                cells.push_back(fmt::format(R"(<th class="place" scope="col" title="{}"><span>{}</span></th>)",
                                            folder(i), inXML(shown)));
            }
        }
        return cells;
    }

    [[nodiscard]] std::string row(std::size_t number, const ReportedName& name) const {
        const auto& candidates = name.candidates;
        const auto preferred =
            candidates.empty() ? "no candidate" : visibleInXML(shownPath(report_, candidates.front().path));
        return fmt::format("<tr id=\"r{0}\"{1}><th scope=\"row\"><a href=\"#n{0}\">{2}</a></th>"
                           "<td class=\"path\" title=\"{3}\">{3}</td>{4}</tr>",
                           number, candidates.size() > 1 ? "" : " class=\"only\"", visibleInXML(name.name), preferred,
                           cells(candidates));
    }

private:
    struct Place {
        std::size_t column = 0;
        std::size_t definitions = 0;
        std::size_t preferred = 0;
    };

    [[nodiscard]] std::string folder(std::size_t i) const {
        return visibleInXML(shownPath(report_, report_.folders[i]));
    }

    static std::string mark(std::size_t rank, const ReportedCandidate& candidate) {
        const auto words = fmt::format("{}{}", candidate.isSupported ? "supported" : "not supported",
                                       candidate.isMissing ? ", does not exist" : "");
        return fmt::format(R"(<b class="{}{}{}" title="{}">{}</b>)", candidate.isSupported ? "good" : "bad",
                           rank == 1 ? " first" : "", candidate.isMissing ? " missing" : "", words, rank);
    }

    // One for each column with a candidate, and one for each gap between them.
    [[nodiscard]] std::string cells(const std::vector<ReportedCandidate>& candidates) const {
        std::vector<std::pair<std::size_t, std::size_t>> ranks; // column, rank
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            ranks.emplace_back(places_[candidates[i].folder].column, i + 1);
        }
        std::sort(ranks.begin(), ranks.end());
        std::string text;
        std::size_t next = 0;
        const auto fill = [&](std::size_t column) {
            if (column > next) {
                text += fmt::format("<td colspan=\"{}\"></td>", column - next);
            }
            next = column;
        };
        for (auto first = ranks.begin(); first != ranks.end();) {
            fill(first->first);
            std::vector<std::string> marks;
            for (; first != ranks.end() && first->first == next; ++first) {
                marks.push_back(mark(first->second, candidates[first->second - 1]));
            }
            text += fmt::format("<td>{}</td>", fmt::join(marks, " "));
            ++next;
        }
        fill(columns_);
        return text;
    }

    const Report& report_;
    std::vector<Place> places_; // for each folder
    std::size_t columns_ = 0;
};

constexpr std::string_view legend =
    R"(<p class="legend"><span><b class="good first">1</b> preferred, supported</span>)"
    R"(<span><b class="bad first">1</b> preferred, not supported</span>)"
    R"(<span><b class="good">2</b> <b class="bad">2</b> hidden, in the order of preference</span>)"
    R"(<span><b class="good missing">1</b> does not exist</span></p>)";

} // namespace

std::string htmlNames(const Report& report) {
    if (report.names.empty()) {
        return "";
    }
    const Matrix matrix(report);
    std::vector<std::string> rows;
    for (const auto& name : report.names) {
        rows.push_back(matrix.row(rows.size() + 1, name));
    }
    return fmt::format("<section aria-labelledby=\"names\">\n<h2 id=\"names\">Names</h2>\n{}\n{}"
                       "<div class=\"matrix\" tabindex=\"0\" role=\"region\" aria-label=\"Names by folders\"><div>\n"
                       "<table aria-hidden=\"true\">{}<thead><tr>{}</tr></thead></table>\n{}"
                       "</div></div>\n</section>",
                       legend, matrix.list(), matrix.group(), fmt::join(matrix.head(), ""),
                       htmlTables(matrix.group(), matrix.head(), rows, FirstHead::isElsewhere));
}

std::string htmlExplanations(const Report& report) {
    if (report.names.empty()) {
        return "";
    }
    std::string text = "<section aria-label=\"Explanations\">\n";
    std::size_t number = 0;
    for (const auto& name : report.names) {
        ++number;
        text += fmt::format("<article id=\"n{0}\" tabindex=\"-1\" aria-label=\"{1}\"><a href=\"#r{0}\">Close</a>"
                            "<pre>{2}</pre></article>\n",
                            number, visibleInXML(name.name), inXML(name.explanation, "\n"));
    }
    return text + "</section>";
}

} // namespace tessgen::cli
