#include "cli/Render.hpp"

#include "cli/Escape.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <utf8.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::cli {

namespace {

struct Kind {
    std::string_view name;
    std::string_view words;
};

// In the order of the types' values.
constexpr std::array kinds{
    Kind{"KELPath", "KEL path file"},
    Kind{"KELBuiltin", "KEL built-in"},
    Kind{"ORVAKPath", "host file"},
    Kind{"ORVAKBuiltin", "host built-in"},
    Kind{"ORVAKBuiltinMethod", "host built-in method"},
};
constexpr std::size_t widestKind = std::string_view("host built-in method").size();

const Kind& kindOf(kelwhich::WhichResultType type) {
    return kinds.at(static_cast<std::size_t>(type));
}

// What is sent to a terminal around a piece of text; all empty when there are no colours.
struct Style {
    std::string_view name;
    std::string_view first;
    std::string_view aside;
    std::string_view end;
};

constexpr Style highlighted{"\x1B[1m", "\x1B[32m", "\x1B[2m", "\x1B[0m"};
constexpr Style plain{};

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
                       kindOf(candidate.type).words, widestKind, gap, verdictsOf(candidate), widestVerdicts,
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

std::string_view kindName(kelwhich::WhichResultType type) {
    return kindOf(type).name;
}

std::optional<kelwhich::WhichResultType> kindNamed(std::string_view name) {
    const auto* const kind = std::find_if(kinds.begin(), kinds.end(), [name](const Kind& k) { return k.name == name; });
    return kind == kinds.end() ? std::nullopt
                               : std::optional(static_cast<kelwhich::WhichResultType>(kind - kinds.begin()));
}

std::string asText(const std::vector<Answer>& answers, bool coloured) {
    std::string text;
    for (const auto& answer : answers) {
        text += text.empty() ? "" : "\n";
        append(text, answer, coloured ? highlighted : plain);
    }
    return text;
}

std::string asText(const Answer& answer, bool coloured) {
    std::string text;
    append(text, answer, coloured ? highlighted : plain);
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
