// The host's array handles, as functions of the host language are called with.
//
// A handle stands for one reference to an array. What is called "owned" is to be given up again, once.
// Threads: the thread that the host calls from.
// Errors: what a function throws leaves every array that it was given as it was; one that it took over is released.
#pragma once

#include <memory>
#include <string>
#include <vector>

struct qxArray;

namespace matrix {

// Ends an array that nobody refers to any more.
void destroyArray(qxArray* array) noexcept;

// Drops one reference; the last one ends the array.
struct ArrayDeleter {
    void operator()(qxArray* array) const noexcept;
};

using ArrayPtr = std::unique_ptr<qxArray, ArrayDeleter>;

// An owned cell array of one character array for each text, in the shape that the host gives to a list.
ArrayPtr create_cell(const std::vector<std::u16string>& texts);

// A further reference, which belongs to the host from then on.
qxArray* to_orvak(const ArrayPtr& array);

namespace detail::noninlined::qx_array_api {

// The text of a character array or of a string of one element, ended by a NUL; null when the array is no text.
// Lifetime: the buffer belongs to the host and outlives the call that the array was passed to.
const char16_t* qxArrayToString_UTF16(const qxArray* array);

} // namespace detail::noninlined::qx_array_api
} // namespace matrix

namespace String {

// An owned string array with the texts of a cell array, which it takes over.
matrix::ArrayPtr mustBeString(matrix::ArrayPtr cell);

} // namespace String
