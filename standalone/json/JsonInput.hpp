// JSON that people write: the manifest and the lines of records. It is read strictly, and what is wrong is said in
// the writer's own terms.
//
// Errors: std::runtime_error, without the file's name, which the caller puts before it. Texts that an error quotes are
// quoted as they are: whoever shows it makes them safe to look at.
#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace tessgen::standalone {

// A place in a text, counted from 1; columns in bytes.
struct TextPlace {
    std::size_t line;
    std::size_t column;
};

// The place of a byte, which is counted from 0.
TextPlace lineAndColumn(std::string_view text, std::size_t byte);

// A text that is not JSON, or not as it is read here, and where.
class JsonSyntaxError : public std::runtime_error {
public:
    JsonSyntaxError(const std::string& what, std::size_t atLine, std::size_t atColumn)
        : std::runtime_error(what), line(atLine), column(atColumn) {}

    std::size_t line;
    std::size_t column;
};

// A value that is not as it should be, or a key that should not be there; `placeOfValue` and `placeOfItsKey` find it.
class JsonKeyError : public std::runtime_error {
public:
    JsonKeyError(const std::string& what, std::string where, bool unknownKey = false)
        : std::runtime_error(what), place(std::move(where)), isUnknownKey(unknownKey) {}

    std::string place;
    bool isUnknownKey;
};

// Reads one JSON value that fills `text`. A byte-order mark before it is passed over.
// Errors: JsonSyntaxError, also for text that is not UTF-8, for a key that one object gives twice, for a number that
// no number type holds, and for lists and objects within each other beyond all use.
nlohmann::json parseJson(std::string_view text);

// What `read()` makes of a line of JSON, which is at `place` ("FILE:NUMBER:").
// Errors: those of `read` about the line, with the place before them.
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

// The value of a key, or null when the object does not give it.
const nlohmann::json* findValue(const nlohmann::json& object, std::string_view key);

// The place of an element: "searchPath[0]".
std::string elementOf(const std::string& list, std::size_t index);

// Throws JsonKeyError: `key "KEY": expected EXPECTED, found ...`. `key` may be a place such as "builtins[1].name", and
// is empty for the whole text; `found` is null when it is not given.
[[noreturn]] void failAtKey(const std::string& key, std::string_view expected, const nlohmann::json* found);
[[noreturn]] void failAtKey(const std::string& key, std::string_view expected);

// Errors: JsonKeyError for a key of `object` that is not among `known`; names the nearest known key, or all when none
// is near. `place` stands before the key: "" or, for example, "builtins[1].".
void refuseUnknownKeys(const nlohmann::json& object, std::initializer_list<std::string_view> known,
                       std::string_view place = "");

} // namespace tessgen::standalone
