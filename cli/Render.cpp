#include "cli/Render.hpp"

#include "cli/Escape.hpp"
#include "cli/Kinds.hpp"
#include "cli/Style.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

void append(std::string& text, const Answer& answer, const Style& style) {
    auto to = std::back_inserter(text);
    fmt::format_to(to, "{}{}{}\n", style.name, escaped(answer.query), style.end);
    if (answer.candidates.empty()) {
        fmt::format_to(to, "  {}no candidate{}\n", style.aside, style.end);
    }
    const auto rankWidth = fmt::formatted_size("{}", answer.candidates.size());
    std::size_t rank = 0;
    for (const auto& candidate : answer.candidates) {
        const bool isFirst = ++rank == 1;
        fmt::format_to(to, "  {}{:>{}}  {:{}}{}  {}{}\n", isFirst ? style.first : style.aside, rank, rankWidth,
                       kindWords(candidate.type), widestKindWords, isFirst ? "" : style.end, escaped(candidate.path),
                       isFirst ? style.end : "");
    }
}

} // namespace

std::string asText(const std::vector<Answer>& answers, bool coloured) {
    std::string text;
    for (const auto& answer : answers) {
        text += text.empty() ? "" : "\n";
        append(text, answer, styleOf(coloured));
    }
    return text;
}

std::string asJSON(const std::vector<Answer>& answers) {
    auto list = nlohmann::ordered_json::array();
    for (const auto& answer : answers) {
        auto candidates = nlohmann::ordered_json::array();
        for (const auto& candidate : answer.candidates) {
            candidates.push_back(
                {{"rank", candidates.size() + 1}, {"kind", kindName(candidate.type)}, {"path", candidate.path}});
        }
        list.push_back({{"query", answer.query}, {"candidates", std::move(candidates)}});
    }
    const nlohmann::ordered_json document{{"schema", "kelwhich/1"}, {"answers", std::move(list)}};
    return escapedJSON(document.dump(2)) + '\n';
}

} // namespace tessgen::cli
