// Strict reading of the JSON that people write: the manifest and the lines of records.
//
// Errors: std::runtime_error without the file's name, which the caller adds. Texts are quoted unescaped: whoever prints
// an error escapes it.
#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace tessgen::standalone {

// Counted from 1; columns in bytes.
struct TextPlace {
    std::size_t line;
    std::size_t column;
};

// Of a byte, which is counted from 0.
[[nodiscard]] TextPlace lineAndColumn(std::string_view text, std::size_t byte);

// Malformed JSON, or JSON that is rejected here, and where.
class JsonSyntaxError : public std::runtime_error {
public:
    JsonSyntaxError(const std::string& what, std::size_t atLine, std::size_t atColumn)
        : std::runtime_error(what), line(atLine), column(atColumn) {}

    std::size_t line;
    std::size_t column;
};

// A value of the wrong form, or an unknown key. `placeOfValue` and `placeOfItsKey` find its place in the text.
class JsonKeyError : public std::runtime_error {
public:
    JsonKeyError(const std::string& what, std::string where, bool unknownKey = false)
        : std::runtime_error(what), place(std::move(where)), isUnknownKey(unknownKey) {}

    std::string place;
    bool isUnknownKey;
};

// What a text may hold at most, so that memory follows its size: a parsed value takes many times the bytes of its text.
struct JsonLimits {
    std::size_t values = std::string_view::npos; // keys, lists and objects count, too
    std::size_t run = std::string_view::npos;    // bytes of one text, number or white space
};

// Reads one JSON value that fills the text. A byte-order mark before it is skipped.
// Errors: JsonSyntaxError: malformed, not UTF-8, a key twice in one object, a number out of range, lists and objects
// nested more than 100 deep, a limit exceeded.
[[nodiscard]] nlohmann::json parseJson(std::string_view whole, const JsonLimits& limits = {});

// Returns what `read()` makes of the line of JSON at `place` ("FILE:NUMBER:").
// Errors: those of `read`, after the place.
template <typename Read>
auto readLine(const std::string& place, Read read) {
    try {
        return read();
    } catch (const JsonSyntaxError& error) {
        throw std::runtime_error(place + std::to_string(error.column) + ": " + error.what());
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(place + " " + error.what());
    }
}

// The value of a key; null when the object lacks it.
[[nodiscard]] const nlohmann::json* findValue(const nlohmann::json& object, std::string_view key);

// A key, or an element of its list. Lists are long, so the place is spelled only for an error.
struct ValuePlace {
    std::string_view key;
    std::optional<std::size_t> index = {};

    // "searchPath", or "searchPath[0]".
    [[nodiscard]] std::string spelled() const;
};

// Throws JsonKeyError: `key "KEY": expected EXPECTED, found ...`. `key` may be a place such as "builtins[1].name";
// empty means the whole text. `found` is null when the key is missing.
[[noreturn]] void failAtKey(const std::string& key, std::string_view expected, const nlohmann::json* found);
[[noreturn]] void failAtKey(const std::string& key, std::string_view expected);

// Errors: JsonKeyError for a key of `object` that is not in `known`; it suggests the most similar known key, or lists
// all when none is similar. `place` is the prefix of the key: "" or, for example, "builtins[1].".
void refuseUnknownKeys(const nlohmann::json& object, std::initializer_list<std::string_view> known,
                       std::string_view place = "");

} // namespace tessgen::standalone
