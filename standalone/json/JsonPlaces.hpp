// Places in a JSON text, for errors: bytes, counted from 0. Found by reading the text again, so that a text without
// errors costs nothing.
//
// The text must be JSON up to the place; where there is none, its end is returned.
// Threads: any.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessgen::standalone {

// The key of that number, counted from 0 over all objects in the order of the text.
[[nodiscard]] std::size_t placeOfKey(std::string_view text, std::size_t ordinal);

// The first number that is written so; the text after it need not be JSON.
[[nodiscard]] std::size_t placeOfNumber(std::string_view text, std::string_view number);

// The first list or object inside `depth` others.
[[nodiscard]] std::size_t placeOfDepth(std::string_view text, std::size_t depth);

// The value at a place such as "builtins[1].name"; when the key is missing, the object that lacks it.
[[nodiscard]] std::size_t placeOfValue(std::string_view text, const std::string& place);
// The key at such a place.
[[nodiscard]] std::size_t placeOfItsKey(std::string_view text, const std::string& place);

} // namespace tessgen::standalone
