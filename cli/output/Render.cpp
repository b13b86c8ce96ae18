#include "cli/output/Render.hpp"

#include "analysis/Answer.hpp"
#include "cli/output/Columns.hpp"
#include "cli/output/Console.hpp"
#include "cli/output/Escape.hpp"
#include "cli/output/Findings.hpp"
#include "cli/output/Json.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

// In the order of WhichResultType.
constexpr std::array<std::string_view, 5> kinds = {"KEL path file", "KEL built-in", "host file", "host built-in",
                                                   "host built-in method"};

// Indexed by bits: 1 user, 2 supported, 4 indirect, 8 missing.
constexpr std::array<std::string_view, 16> verdicts{
    "",
    "user",
    "supported",
    "user, supported",
    "indirect",
    "user, indirect",
    "supported, indirect",
    "user, supported, indirect",
    "missing",
    "user, missing",
    "supported, missing",
    "user, supported, missing",
    "indirect, missing",
    "user, indirect, missing",
    "supported, indirect, missing",
    "user, supported, indirect, missing",
};

std::string_view verdictsOf(const Answer::Candidate& candidate) {
    return verdicts.at((candidate.isUser ? 1U : 0U) + (candidate.isSupported ? 2U : 0U)
                       + (candidate.isIndirect ? 4U : 0U) + (candidate.isMissing ? 8U : 0U));
}

std::string& appendPadded(std::string& text, std::string_view words, std::size_t width) {
    return text.append(words).append(width - words.size(), ' ');
}

struct Widths {
    std::size_t rank;
    std::size_t kind = widestKindWords;
    std::size_t verdicts = 0;
    std::size_t path = unlimitedColumns;
};

Widths widthsOf(const std::vector<Answer::Candidate>& candidates) {
    Widths widths{std::to_string(candidates.size()).size()};
    std::size_t kind = 0;
    for (const auto& candidate : candidates) {
        widths.verdicts = std::max(widths.verdicts, verdictsOf(candidate).size());
        kind = std::max(kind, kindWords(candidate.type).size());
    }
    if (const auto columns = outputColumns(); columns != unlimitedColumns) {
        constexpr std::size_t comfortable = 40; // for a path
        constexpr std::size_t gaps = 8;
        const auto others = gaps + widths.rank + widths.verdicts;
        widths.kind = others + widths.kind + comfortable > columns ? kind : widths.kind;
        widths.path = columns - std::min(columns - 1, others + widths.kind);
    }
    return widths;
}

// The paths as a terminal shows them; empty when they are shown as they are.
std::vector<std::string> shortPaths(const std::vector<Answer::Candidate>& candidates, std::size_t columns) {
    std::vector<std::string> paths;
    if (columns != unlimitedColumns) {
        for (const auto& candidate : candidates) {
            paths.push_back(escaped(candidate.path));
        }
    }
    return shortened(std::move(paths), columns);
}

// Hot with --from: formatting by fmt would take longer than finding the candidates.
void append(std::string& text, const Answer& answer, const Style& style) {
    text.append(style.name).append(escaped(answer.query)).append(style.end).append("\n");
    if (answer.candidates.empty()) {
        text.append("  no candidate")
            .append(answer.suggestion.empty() ? "" : "; ")
            .append(answer.suggestion)
            .append("\n");
    }
    const auto widths = widthsOf(answer.candidates);
    const auto paths = shortPaths(answer.candidates, widths.path);
    const std::string_view gap = widths.verdicts == 0 ? "" : "  ";
    for (std::size_t i = 0; i < answer.candidates.size(); ++i) {
        const auto& candidate = answer.candidates[i];
        const auto rank = std::to_string(i + 1);
        text.append("  ").append(i == 0 ? style.first : "");
        text.append(widths.rank - rank.size(), ' ').append(rank).append("  ");
        appendPadded(text, kindWords(candidate.type), widths.kind).append(gap);
        appendPadded(text, verdictsOf(candidate), widths.verdicts).append("  ");
        text.append(paths.empty() ? escaped(candidate.path) : paths[i]).append(i == 0 ? style.end : "").append("\n");
    }
    for (const auto& note : answer.notes) {
        text.append("  ").append(note).append("\n");
    }
}

nlohmann::ordered_json candidatesOf(const Answer& answer) {
    auto candidates = nlohmann::ordered_json::array();
    for (const auto& candidate : answer.candidates) {
        candidates.push_back({{"rank", candidates.size() + 1},
                              {"kind", kindName(candidate.type)},
                              {"path", candidate.path},
                              {"user", candidate.isUser},
                              {"supported", candidate.isSupported},
                              {"indirect", candidate.isIndirect}});
        if (candidate.isMissing) {
            candidates.back()["missing"] = true;
        }
    }
    return candidates;
}

// Adds what an answer and a line have in common.
nlohmann::ordered_json withAnswer(nlohmann::ordered_json object, const Answer& answer) {
    object["query"] = answer.query;
    object["candidates"] = candidatesOf(answer);
    if (answer.finding) {
        object["finding"] = document(*answer.finding);
    }
    return object;
}

} // namespace

std::string asText(const std::vector<Answer>& answers, bool coloured) {
    std::string text;
    for (const auto& answer : answers) {
        text += text.empty() ? "" : "\n";
        append(text, answer, outputStyle(coloured));
    }
    return text;
}

std::string asText(const Answer& answer, bool coloured) {
    constexpr std::size_t usualSize = 256;
    std::string text;
    text.reserve(usualSize);
    append(text, answer, outputStyle(coloured));
    return text;
}

std::string asJSON(const std::vector<Answer>& answers) {
    auto list = nlohmann::ordered_json::array();
    for (const auto& answer : answers) {
        list.push_back(withAnswer({}, answer));
    }
    const nlohmann::ordered_json document{{"schema", "kelwhich/1"}, {"answers", std::move(list)}};
    return printJSONDocument(document);
}

std::string asJSONLine(const Answer& answer) {
    return printJSON(withAnswer({{"schema", "kelwhich/1"}}, answer)) + '\n';
}

std::string asJSONLine(std::string_view query, std::string_view error) {
    const nlohmann::ordered_json line{
        {"schema", "kelwhich/1"}, {"query", forJSON(query)}, {"error", {{"message", forJSON(error)}}}};
    return printJSON(line) + '\n';
}

std::string asPaths(const Answer& answer) {
    std::string paths;
    for (const auto& candidate : answer.candidates) {
        if (analysis::isFile(candidate.type)) {
            paths.append(candidate.path).append(1, '\0');
        }
    }
    return paths;
}

std::string_view kindWords(kelwhich::WhichResultType type) {
    return kinds.at(static_cast<std::size_t>(type));
}

} // namespace tessgen::cli
