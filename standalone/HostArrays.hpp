// The array handles of the stand-alone host, for a caller of the gateway: makes inputs and reads outputs.
//
// Threads: an array is used by one thread at a time.
// Errors: std::invalid_argument when an array is not what it is read as.
#pragma once

#include "matrix/array.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// A character array of one row.
matrix::ArrayPtr makeText(std::u16string_view text);

// The texts of a string array, in storage order.
std::vector<std::u16string> textsOf(const qxArray* array);

// The member names of an enumeration array, in storage order; an element that was never set has an empty name.
std::vector<std::string> membersOf(const qxArray* array);

// The name of an enumeration array's class.
std::string classOf(const qxArray* array);

struct Extent {
    std::size_t rows;
    std::size_t columns;

    friend bool operator==(const Extent&, const Extent&) = default;
};

Extent extentOf(const qxArray* array);

// How many arrays this process has, so that a caller can see that none is left over.
std::size_t arraysAlive() noexcept;

} // namespace tessgen::standalone
