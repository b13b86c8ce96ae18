#include "standalone/json/JsonInput.hpp"

#include "standalone/json/JsonPlaces.hpp"
#include "standalone/text/Text.hpp"

#include <algorithm>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

namespace tessgen::standalone {

namespace {

using nlohmann::json;

// Without the parser's prefix and without the text that it quotes, which may be long and may be anything.
std::string detailOf(const json::parse_error& error) {
    std::string detail = error.what();
    if (const auto begin = detail.find(" - "); begin != std::string::npos) {
        detail.erase(0, begin + 3);
    }
    constexpr std::string_view lastRead = "; last read: '";
    if (const auto begin = detail.find(lastRead); begin != std::string::npos) {
        detail.erase(begin, detail.rfind('\'') + 1 - begin);
    }
    return detail;
}

// `byte` is counted from 0.
JsonSyntaxError syntaxError(std::string_view text, std::size_t byte, const std::string& what) {
    const auto [line, column] = lineAndColumn(text, byte);
    return {what, line, column};
}

// Unescaped. A long text is cut, and so is one with a NUL, where the message of an exception would end.
std::string inQuotes(std::string_view text) {
    constexpr std::size_t longest = 200;
    if (const auto end = text.find('\0'); end <= longest) {
        return '"' + std::string(text.substr(0, end)) + "...\" (with the character 0)";
    }
    if (text.size() <= longest) {
        return '"' + std::string(text) + '"';
    }
    auto size = longest;
    while ((static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80) { // do not cut a character
        --size;
    }
    return '"' + std::string(text.substr(0, size)) + "...\" (" + std::to_string(text.size()) + " bytes)";
}

// The value in an error; null is a missing key.
std::string describe(const json* value) {
    if (value == nullptr) {
        return "nothing";
    }
    switch (value->type()) {
    case json::value_t::object:
        return "an object";
    case json::value_t::array:
        return "a list of " + std::to_string(value->size());
    case json::value_t::string:
        return inQuotes(value->get_ref<const std::string&>());
    case json::value_t::null:
    case json::value_t::boolean:
        return value->dump();
    default:
        return "a number";
    }
}

// What to do about an unknown key.
std::string adviceFor(std::string_view key, std::initializer_list<std::string_view> known) {
    const auto* nearest = std::min_element(
        known.begin(), known.end(), [key](auto a, auto b) { return editDistance(key, a) < editDistance(key, b); });
    if (editDistance(key, *nearest) <= nearest->size() / 3 + 1) {
        return "did you mean " + inQuotes(*nearest) + "?";
    }
    std::string all = "known are";
    for (const auto name : known) {
        all.append(name == *known.begin() ? " " : ", ").append(inQuotes(name));
    }
    return all;
}

// Rejects what the parser accepts: the same key twice in an object, and nesting deeper than `deepest`. At an error that
// the parser reports itself, the check only ends. It is a second pass, made only over suspicious texts: it costs as
// much as parsing, and doing it in the parser's callbacks costs the square of a list's length.
class JsonCheck final : public json::json_sax_t {
public:
    explicit JsonCheck(std::string_view text) : text_(text) {}

    bool start_object(std::size_t /*size*/) override { return open(); }
    bool start_array(std::size_t /*size*/) override { return open(); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(std::string& key) override {
        if (!keys_.back().insert(key).second) {
            throw syntaxError(text_, placeOfKey(text_, keyCount_), "key " + inQuotes(key) + " is given twice");
        }
        ++keyCount_;
        return true;
    }
    bool null() override { return true; }
    bool boolean(bool /*value*/) override { return true; }
    bool number_integer(std::int64_t /*value*/) override { return true; }
    bool number_unsigned(std::uint64_t /*value*/) override { return true; }
    bool number_float(double /*value*/, const std::string& /*text*/) override { return true; }
    bool string(std::string& /*value*/) override { return true; }
    bool binary(json::binary_t& /*value*/) override { return true; }
    bool parse_error(std::size_t /*byte*/, const std::string& /*last*/, const json::exception& /*error*/) override {
        return false;
    }

    static constexpr std::size_t deepest = 100;

private:
    bool open() {
        if (keys_.size() == deepest) {
            throw syntaxError(text_, placeOfDepth(text_, deepest),
                              "lists and objects lie in each other more than " + std::to_string(deepest) + " deep");
        }
        keys_.emplace_back();
        return true;
    }
    bool close() {
        keys_.pop_back();
        return true;
    }

    std::string_view text_;
    std::vector<std::set<std::string>> keys_; // of each open object or list, outermost first; empty for a list
    std::size_t keyCount_ = 0;
};

void check(std::string_view text) {
    JsonCheck check(text);
    json::sax_parse(text, &check);
}

// Right for JSON; for other texts the numbers mean nothing.
struct Shape {
    std::size_t keys = 0;
    std::size_t depth = 0;      // of nested lists and objects
    std::size_t separators = 0; // commas, colons and opening brackets
    bool isWhole = true;        // false when they are too many; then it is the shape up to `end`
    std::size_t end = 0;
};

// Errors: JsonSyntaxError where a run is too long.
Shape shapeOf(std::string_view text, const JsonLimits& limits) {
    Shape shape;
    std::size_t open = 0;
    std::size_t last = 0;  // what ends a text, a number or white space
    bool isInside = false; // of quotes
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool separates = !isInside && (c == ',' || c == ':' || c == '{' || c == '[');
        if (i - last > limits.run) {
            throw syntaxError(text, last,
                              "a text, a number or white space of more than " + std::to_string(limits.run) + " bytes");
        }
        if (shape.separators > limits.values) {
            shape.isWhole = false;
            shape.end = i;
            break;
        }
        shape.separators += separates ? 1U : 0U;
        last = separates || c == '"' ? i : last;
        if (c == '"') {
            isInside = !isInside;
        } else if (isInside) {
            i += c == '\\' ? 1U : 0U;
        } else if (c == ':') {
            ++shape.keys;
        } else if (c == '{' || c == '[') {
            shape.depth = std::max(shape.depth, ++open);
        } else if (c == '}' || c == ']') {
            --open;
        }
    }
    return shape;
}

// At every depth; a key that the text gives twice counts once.
std::size_t keysOf(const json& value) {
    std::size_t count = value.is_object() ? value.size() : 0;
    if (value.is_structured()) {
        for (const auto& element : value) {
            count += keysOf(element);
        }
    }
    return count;
}

} // namespace

TextPlace lineAndColumn(std::string_view text, std::size_t byte) {
    const auto before = text.substr(0, byte);
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    return {static_cast<std::size_t>(line), before.size() - (before.rfind('\n') + 1) + 1};
}

json parseJson(std::string_view whole, const JsonLimits& limits) {
    const auto end = whole.find_last_not_of(" \t\r\n") + 1;
    const auto text = whole.size() - end > limits.run ? whole.substr(0, end) : whole; // blanks after it do no harm
    if (const auto byte = text.find('\0'); byte != std::string_view::npos) {          // the parser would stop there
        throw syntaxError(text, byte, "not valid JSON in UTF-8: the character 0");
    }
    const auto shape = shapeOf(text, limits);
    if (shape.depth > JsonCheck::deepest) {
        check(text);
    }
    if (!shape.isWhole) {
        throw syntaxError(text, shape.end, "more than " + std::to_string(limits.values) + " keys and values");
    }
    try {
        auto parsed = json::parse(text);
        if (keysOf(parsed) != shape.keys) {
            check(text);
        }
        return parsed;
    } catch (const json::parse_error& error) {
        check(text);
        // `byte` counts the bytes read, the wrong one included; at the end of the text it is one more.
        throw syntaxError(text, error.byte - 1, "not valid JSON: " + detailOf(error));
    } catch (const json::out_of_range& error) { // its message ends with the number in quotes
        check(text);
        const std::string_view what = error.what();
        const auto begin = what.find('\'') + 1;
        const auto number = what.substr(begin, what.rfind('\'') - begin);
        throw syntaxError(text, placeOfNumber(text, number), "the number is larger than any that can be read");
    }
}

const json* findValue(const json& object, std::string_view key) {
    const auto position = object.find(key);
    return position == object.end() ? nullptr : &*position;
}

std::string ValuePlace::spelled() const {
    return std::string(key) + (index ? "[" + std::to_string(*index) + "]" : "");
}

void failAtKey(const std::string& key, std::string_view expected, const json* found) {
    failAtKey(key, std::string(expected) + ", found " + describe(found));
}

void failAtKey(const std::string& key, std::string_view expected) {
    throw JsonKeyError((key.empty() ? "" : "key " + inQuotes(key) + ": ") + "expected " + std::string(expected), key);
}

void refuseUnknownKeys(const json& object, std::initializer_list<std::string_view> known, std::string_view place) {
    for (const auto& element : object.items()) {
        const auto& key = element.key();
        if (std::find(known.begin(), known.end(), key) == known.end()) {
            const auto whole = std::string(place) + key;
            throw JsonKeyError("unknown key " + inQuotes(whole) + "; " + adviceFor(key, known), whole, true);
        }
    }
}

} // namespace tessgen::standalone
