// The data behind a host data array: its elements.
#pragma once

#include "foundation/orvakdata/Array.hpp"
#include "foundation/orvakdata/ArrayFactory.hpp"
#include "orvak/data/optional.hpp"

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace foundation::orvakdata {

using StringElements = std::vector<orvak::data::optional<std::u16string>>;

class ArrayData {
public:
    explicit ArrayData(StringElements strings) : elements(std::move(strings)) {}
    explicit ArrayData(std::u16string text) : elements(std::move(text)) {}

    std::variant<StringElements, std::u16string> elements; // a string array, or a character array
};

} // namespace foundation::orvakdata

namespace tessgen::standalone {

// A character array of one row.
[[nodiscard]] foundation::orvakdata::Array makeCharArray(std::u16string text);

// The first element of a string array.
// Lifetime: the array's data.
// Errors: an array of another type, or without elements; a missing element.
[[nodiscard]] const std::u16string& firstString(const foundation::orvakdata::Array& array);

// A string array of one column.
[[nodiscard]] foundation::orvakdata::Array makeStringColumn(foundation::orvakdata::StringElements elements);

} // namespace tessgen::standalone
