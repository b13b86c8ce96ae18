#include "cli/Render.hpp"

#include "cli/Escape.hpp"
#include "cli/Kinds.hpp"
#include "cli/Style.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <utf8.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

std::string verdictsOf(const Candidate& candidate) {
    std::string words;
    const auto add = [&words](bool holds, std::string_view word) {
        if (holds) {
            words.append(words.empty() ? "" : ", ").append(word);
        }
    };
    add(candidate.isUser, "user");
    add(candidate.isSupported, "supported");
    add(candidate.isIndirect, "indirect");
    return words;
}

std::string nearWords(const std::vector<std::string>& names) {
    std::string words;
    for (const auto& name : names) {
        words.append(words.empty() ? "; did you mean " : &name == &names.back() ? " or " : ", ").append(escaped(name));
    }
    return words.append(words.empty() ? "" : "?");
}

void append(std::string& text, const Answer& answer, const Style& style) {
    auto to = std::back_inserter(text);
    fmt::format_to(to, "{}{}{}\n", style.name, escaped(answer.query), style.end);
    if (answer.candidates.empty()) {
        fmt::format_to(to, "  {}no candidate{}{}\n", style.aside, nearWords(answer.near), style.end);
    }
    const auto rankWidth = fmt::formatted_size("{}", answer.candidates.size());
    std::size_t widestVerdicts = 0;
    for (const auto& candidate : answer.candidates) {
        widestVerdicts = std::max(widestVerdicts, verdictsOf(candidate).size());
    }
    const std::string_view gap = widestVerdicts == 0 ? "" : "  ";
    std::size_t rank = 0;
    for (const auto& candidate : answer.candidates) {
        const bool isFirst = ++rank == 1;
        fmt::format_to(to, "  {}{:>{}}  {:{}}{}{:{}}{}  {}{}\n", isFirst ? style.first : style.aside, rank, rankWidth,
                       kindWords(candidate.type), widestKindWords, gap, verdictsOf(candidate), widestVerdicts,
                       isFirst ? "" : style.end, escaped(candidate.path), isFirst ? style.end : "");
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
    }
    return candidates;
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

std::string asText(const Answer& answer, bool coloured) {
    std::string text;
    append(text, answer, styleOf(coloured));
    return text;
}

std::string asJSON(const std::vector<Answer>& answers) {
    auto list = nlohmann::ordered_json::array();
    for (const auto& answer : answers) {
        list.push_back({{"query", answer.query}, {"candidates", candidatesOf(answer)}});
    }
    const nlohmann::ordered_json document{{"schema", "kelwhich/1"}, {"answers", std::move(list)}};
    return escapedJSON(document.dump(2)) + '\n';
}

std::string asJSONLine(const Answer& answer) {
    const nlohmann::ordered_json line{
        {"schema", "kelwhich/1"}, {"query", answer.query}, {"candidates", candidatesOf(answer)}};
    return escapedJSON(line.dump()) + '\n';
}

std::string asJSONLine(std::string_view query, std::string_view error) {
    const auto text = [](std::string_view bytes) {
        return utf8::is_valid(bytes.begin(), bytes.end()) ? std::string(bytes) : escaped(bytes);
    };
    const nlohmann::ordered_json line{{"schema", "kelwhich/1"}, {"query", text(query)}, {"error", text(error)}};
    return escapedJSON(line.dump()) + '\n';
}

std::string asPaths(const Answer& answer) {
    std::string paths;
    for (const auto& candidate : answer.candidates) {
        using Type = kelwhich::WhichResultType;
        if (candidate.type == Type::KELPath || candidate.type == Type::ORVAKPath) {
            paths.append(candidate.path).append(1, '\0');
        }
    }
    return paths;
}

} // namespace tessgen::cli
