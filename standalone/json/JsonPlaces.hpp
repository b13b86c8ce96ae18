// Where in a JSON text something stands. It is looked for only when there is an error to tell of, so that reading a
// text without one costs nothing for it.
//
// Every text is JSON as far as the place that is looked for; places are bytes, counted from 0.
// Threads: any.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessgen::standalone {

// The key (counted from 0, in the order of the text) of some object.
std::size_t placeOfKey(std::string_view text, std::size_t ordinal);

// The first number that is written so, whatever follows it: the text need not be JSON from its end on.
std::size_t placeOfNumber(std::string_view text, std::string_view number);

// The first list or object that lies in `depth` others.
std::size_t placeOfDepth(std::string_view text, std::size_t depth);

// The value of a place such as "builtins[1].name", or its key; when it is not there, the object that lacks it.
std::size_t placeOfValue(std::string_view text, const std::string& place);
std::size_t placeOfItsKey(std::string_view text, const std::string& place);

} // namespace tessgen::standalone
