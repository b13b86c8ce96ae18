// JSON that people write: the manifest and the lines of records. It is read strictly, and what is wrong is said in
// the writer's own terms.
//
// Errors: std::runtime_error, one line without the file's name, which the caller puts before it.
#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tessgen::standalone {

// A text that is not JSON: "not valid JSON: ..." and where, both counted from 1 (columns in bytes).
class JsonSyntaxError : public std::runtime_error {
public:
    JsonSyntaxError(const std::string& what, std::size_t atLine, std::size_t atColumn)
        : std::runtime_error(what), line(atLine), column(atColumn) {}

    std::size_t line;
    std::size_t column;
};

// Reads one JSON value that fills `text`. A byte-order mark before it is passed over.
// Errors: JsonSyntaxError, also for text that is not UTF-8; a key that one object gives twice.
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

// `key "KEY": expected EXPECTED, found ...`. `key` may be a place such as "builtins[1].name"; `found` is null when it
// is not given.
[[noreturn]] void failAtKey(std::string_view key, std::string_view expected, const nlohmann::json* found);
[[noreturn]] void failAtKey(std::string_view key, std::string_view expected);

// Errors: a key of `object` that is not among `known`; names the nearest known key, or all when none is near.
// `place` stands before the key: "" or, for example, "builtins[1].".
void refuseUnknownKeys(const nlohmann::json& object, std::initializer_list<std::string_view> known,
                       std::string_view place = "");

} // namespace tessgen::standalone
