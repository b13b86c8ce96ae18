#include "cli/output/Render.hpp"
#include "cli/recording/RecordingFormat.hpp"
#include "standalone/json/JsonInput.hpp"
#include "standalone/text/Text.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <limits>
#include <stdexcept>

namespace tessgen::cli {

namespace {

using kelwhich::SupportEntry;
using kelwhich::WhichResult;
using nlohmann::json;
using standalone::failAtKey;
using standalone::findValue;
using standalone::refuseUnknownKeys;

// `read<T>(value, key)` reads the value of `key`; `value` is null when the key is absent.

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
            failAtKey(place + "supportFlags", "six values, each true or false", findValue(*value, "supportFlags"));
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

// In the order of QueryKind.
constexpr std::array answerReaders{
    readAnswer<std::vector<WhichResult>>,      // which
    readAnswer<std::optional<SharedEntry>>,    // findByPath
    readAnswer<std::vector<SharedEntry>>,      // findBySymbol
    readAnswer<bool>,                          // exists
    readAnswer<std::u16string>,                // orvakroot
    readAnswer<std::optional<std::u16string>>, // spkgroot
    readAnswer<bool>,                          // isOnKELPath
};

Question readQuestion(const json& line) {
    const auto* const name = findValue(line, "ask");
    const auto* const query = std::find_if(queryFormats.begin(), queryFormats.end(), [&](const QueryFormat& row) {
        return name != nullptr && *name == row.name;
    });
    if (query == queryFormats.end()) {
        std::vector<std::string_view> known;
        std::transform(queryFormats.begin(), queryFormats.end(), std::back_inserter(known),
                       [](const auto& row) { return row.name; });
        failAtKey("ask", fmt::format("one of \"{}\"", fmt::join(known, R"(", ")")), name);
    }
    Question question{static_cast<QueryKind>(query - queryFormats.begin()), {}};
    if (query->hasArgument) {
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

RecordingHead readHeadLine(std::string_view line) {
    const auto head = parseObject(line, R"(the head of a recording, {"schema":"kelwhich-recording/1",...})");
    const auto* const found = findValue(head, "schema");
    if (found == nullptr || *found != recordingSchema) {
        failAtKey("schema", fmt::format("\"{}\"", recordingSchema), found);
    }
    refuseUnknownKeys(head, {"schema", "sourceCode", "searchPath"});
    return {readKey<std::vector<std::vector<std::string>>>(head, "sourceCode"),
            readKey<std::vector<std::string>>(head, "searchPath")};
}

std::pair<Question, RecordedAnswer> readAnswerLine(std::string_view line) {
    const auto parsed = parseObject(line, R"(a question and its answer, such as {"ask":"spkgroot","answer":null})");
    const auto question = readQuestion(parsed);
    const auto* const error = findValue(parsed, "error");
    const std::string_view answerKey = error != nullptr ? "error" : "answer";
    queryFormat(question.kind).hasArgument ? refuseUnknownKeys(parsed, {"ask", "of", answerKey})
                                           : refuseUnknownKeys(parsed, {"ask", answerKey});
    return {question, error != nullptr
                          ? read<RecordedError>(error, "error")
                          : answerReaders.at(static_cast<std::size_t>(question.kind))(findValue(parsed, "answer"))};
}

} // namespace tessgen::cli
