#include "cli/recording/RecordingFormat.hpp"

#include "cli/output/Escape.hpp"
#include "cli/output/Render.hpp"
#include "standalone/json/JsonInput.hpp"
#include "standalone/text/Text.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <stdexcept>

namespace tessgen::cli {

namespace {

using kelwhich::SupportEntry;
using kelwhich::WhichResult;
using nlohmann::json;
using nlohmann::ordered_json;
using standalone::failAtKey;
using standalone::findValue;
using standalone::refuseUnknownKeys;

constexpr std::string_view schema = "kelwhich-recording/1";

// How answers are written.

ordered_json written(bool answer) {
    return answer;
}

ordered_json written(std::u16string_view text) {
    if (const auto inUTF8 = standalone::toUTF8(text)) {
        return *inUTF8;
    }
    auto units = ordered_json::array();
    for (const char16_t unit : text) {
        units.push_back(static_cast<unsigned>(unit));
    }
    return units;
}

ordered_json written(const WhichResult& result) {
    return {{"path", written(result.path)}, {"kind", kindName(result.type)}};
}

ordered_json written(const SharedEntry& entry) {
    auto unsupported = ordered_json::array();
    for (const auto& symbol : entry->unsupportedSymbols) {
        unsupported.push_back(written(symbol));
    }
    return {{"path", written(entry->path)},        {"symbol", written(entry->symbol)},
            {"builtin", entry->isBuiltin},         {"redirect", entry->isRedirect},
            {"supportFlags", entry->supportFlags}, {"unsupportedSymbols", std::move(unsupported)}};
}

template <typename Answer>
ordered_json written(const std::optional<Answer>& answer) {
    return answer ? written(*answer) : ordered_json();
}

template <typename Answer>
ordered_json written(const std::vector<Answer>& answers) {
    auto list = ordered_json::array();
    for (const auto& answer : answers) {
        list.push_back(written(answer));
    }
    return list;
}

ordered_json written(const RecordedError& error) {
    if (standalone::isUTF8(error.message)) {
        return error.message;
    }
    auto bytes = ordered_json::array();
    for (const char byte : error.message) {
        bytes.push_back(static_cast<unsigned>(static_cast<unsigned char>(byte)));
    }
    return bytes;
}

// How they are read: `read<T>(value, key)`, where `value` is null when the key is not given.

template <typename T>
struct Reading;

template <typename T>
T read(const json* value, const std::string& key) {
    return Reading<T>::read(value, key);
}

template <typename T>
T readKey(const json& object, const std::string& key, const std::string& place = "") {
    return read<T>(findValue(object, key), place + key);
}

// The units of a text that is written as a list.
template <typename Text>
Text readUnits(const json* value, const std::string& key) {
    using Unit = typename Text::value_type;
    constexpr auto greatest = std::numeric_limits<std::make_unsigned_t<Unit>>::max();
    const auto isUnit = [](const json& unit) { return unit.is_number_unsigned() && unit <= greatest; };
    if (value == nullptr || !value->is_array() || !std::all_of(value->begin(), value->end(), isUnit)) {
        failAtKey(key, fmt::format("a text, or a list of numbers up to {}", greatest), value);
    }
    Text text;
    for (const auto& unit : *value) {
        text.push_back(static_cast<Unit>(unit.get<unsigned>()));
    }
    return text;
}

void requireObject(const json* value, const std::string& key) {
    if (value == nullptr || !value->is_object()) {
        failAtKey(key, "an object", value);
    }
}

template <>
struct Reading<bool> {
    static bool read(const json* value, const std::string& key) {
        if (value == nullptr || !value->is_boolean()) {
            failAtKey(key, "true or false", value);
        }
        return value->get<bool>();
    }
};

template <>
struct Reading<std::u16string> {
    static std::u16string read(const json* value, const std::string& key) {
        return value != nullptr && value->is_string()
                   ? standalone::toUTF16(value->get_ref<const std::string&>()).value()
                   : readUnits<std::u16string>(value, key);
    }
};

template <>
struct Reading<std::string> {
    static std::string read(const json* value, const std::string& key) {
        if (value == nullptr || !value->is_string()) {
            failAtKey(key, "a text", value);
        }
        return value->get<std::string>();
    }
};

template <>
struct Reading<RecordedError> {
    static RecordedError read(const json* value, const std::string& key) {
        return {value != nullptr && value->is_string() ? value->get<std::string>()
                                                       : readUnits<std::string>(value, key)};
    }
};

template <>
struct Reading<WhichResult> {
    static WhichResult read(const json* value, const std::string& key) {
        requireObject(value, key);
        const auto place = key + ".";
        refuseUnknownKeys(*value, {"path", "kind"}, place);
        const auto* const kind = findValue(*value, "kind");
        const auto type =
            kind != nullptr && kind->is_string() ? kindNamed(kind->get_ref<const std::string&>()) : std::nullopt;
        if (!type) {
            failAtKey(place + "kind", R"(the kind of a candidate, such as "KELPath")", kind);
        }
        return {readKey<std::u16string>(*value, "path", place), *type};
    }
};

template <typename Element>
struct Reading<std::vector<Element>> {
    static std::vector<Element> read(const json* value, const std::string& key) {
        if (value == nullptr || !value->is_array()) {
            failAtKey(key, "a list", value);
        }
        std::vector<Element> list;
        list.reserve(value->size());
        for (const auto& element : *value) {
            list.push_back(Reading<Element>::read(&element, fmt::format("{}[{}]", key, list.size())));
        }
        return list;
    }
};

template <typename Answer>
struct Reading<std::optional<Answer>> {
    static std::optional<Answer> read(const json* value, const std::string& key) {
        return value != nullptr && value->is_null() ? std::nullopt : std::optional(Reading<Answer>::read(value, key));
    }
};

template <>
struct Reading<SharedEntry> {
    static SharedEntry read(const json* value, const std::string& key) {
        requireObject(value, key);
        const auto place = key + ".";
        refuseUnknownKeys(*value, {"path", "symbol", "builtin", "redirect", "supportFlags", "unsupportedSymbols"},
                          place);
        SupportEntry entry;
        entry.path = readKey<std::u16string>(*value, "path", place);
        entry.symbol = readKey<std::u16string>(*value, "symbol", place);
        entry.isBuiltin = readKey<bool>(*value, "builtin", place);
        entry.isRedirect = readKey<bool>(*value, "redirect", place);
        const auto flags = readKey<std::vector<bool>>(*value, "supportFlags", place);
        if (flags.size() != entry.supportFlags.size()) {
            failAtKey(place + "supportFlags", "six of true and false", findValue(*value, "supportFlags"));
        }
        std::copy(flags.begin(), flags.end(), entry.supportFlags.begin());
        entry.unsupportedSymbols = readKey<std::vector<std::u16string>>(*value, "unsupportedSymbols", place);
        return std::make_shared<const SupportEntry>(std::move(entry));
    }
};

template <typename Answer>
RecordedAnswer readAnswer(const json* value) {
    return read<Answer>(value, "answer");
}

struct Asked {
    std::string_view name;
    bool ofSomething;
    RecordedAnswer (*readAnswer)(const json* value);
};

// In the order of Ask.
constexpr std::array questions{
    Asked{"which", true, readAnswer<std::vector<WhichResult>>},
    Asked{"findByPath", true, readAnswer<std::optional<SharedEntry>>},
    Asked{"findBySymbol", true, readAnswer<std::vector<SharedEntry>>},
    Asked{"exists", true, readAnswer<bool>},
    Asked{"orvakroot", false, readAnswer<std::u16string>},
    Asked{"spkgroot", false, readAnswer<std::optional<std::u16string>>},
    Asked{"isOnKELPath", true, readAnswer<bool>},
};

const Asked& kindOf(const Question& question) {
    return questions.at(static_cast<std::size_t>(question.kind));
}

ordered_json writtenQuestion(const Question& question) {
    ordered_json line{{"ask", kindOf(question).name}};
    if (kindOf(question).ofSomething) {
        line["of"] = written(question.argument);
    }
    return line;
}

Question readQuestion(const json& line) {
    const auto* const name = findValue(line, "ask");
    const auto* const asked = std::find_if(questions.begin(), questions.end(),
                                           [&](const Asked& row) { return name != nullptr && *name == row.name; });
    if (asked == questions.end()) {
        std::vector<std::string_view> known;
        std::transform(questions.begin(), questions.end(), std::back_inserter(known),
                       [](const auto& row) { return row.name; });
        failAtKey("ask", fmt::format("one of \"{}\"", fmt::join(known, R"(", ")")), name);
    }
    Question question{static_cast<QueryKind>(asked - questions.begin()), {}};
    if (asked->ofSomething) {
        question.argument = readKey<std::u16string>(line, "of");
    }
    return question;
}

json parseObject(std::string_view line, std::string_view expected) {
    auto parsed = standalone::parseJson(line);
    if (!parsed.is_object()) {
        throw std::runtime_error(fmt::format("expected {}", expected));
    }
    return parsed;
}

} // namespace

std::string headLine(const RecordingHead& head) {
    return escapedJSON(
        ordered_json{{"schema", schema}, {"sourceCode", head.sourceCode}, {"searchPath", head.searchPath}}.dump());
}

std::string answerLine(const Question& question, const RecordedAnswer& answer) {
    auto line = writtenQuestion(question);
    line[std::holds_alternative<RecordedError>(answer) ? "error" : "answer"] =
        std::visit([](const auto& value) { return written(value); }, answer);
    return escapedJSON(line.dump());
}

RecordingHead readHeadLine(std::string_view line) {
    const auto head = parseObject(line, R"(the head of a recording, {"schema":"kelwhich-recording/1",...})");
    const auto* const found = findValue(head, "schema");
    if (found == nullptr || *found != schema) {
        failAtKey("schema", fmt::format("\"{}\"", schema), found);
    }
    refuseUnknownKeys(head, {"schema", "sourceCode", "searchPath"});
    return {readKey<std::vector<std::vector<std::string>>>(head, "sourceCode"),
            readKey<std::vector<std::string>>(head, "searchPath")};
}

std::pair<Question, RecordedAnswer> readAnswerLine(std::string_view line) {
    const auto parsed = parseObject(line, R"(a question and its answer, such as {"ask":"spkgroot","answer":null})");
    const auto question = readQuestion(parsed);
    const auto& kind = kindOf(question);
    if (const auto* const error = findValue(parsed, "error")) {
        kind.ofSomething ? refuseUnknownKeys(parsed, {"ask", "of", "error"})
                         : refuseUnknownKeys(parsed, {"ask", "error"});
        return {question, read<RecordedError>(error, "error")};
    }
    kind.ofSomething ? refuseUnknownKeys(parsed, {"ask", "of", "answer"})
                     : refuseUnknownKeys(parsed, {"ask", "answer"});
    return {question, kind.readAnswer(findValue(parsed, "answer"))};
}

std::string spelled(const Question& question) {
    return writtenQuestion(question).dump();
}

} // namespace tessgen::cli
