// Makes host data arrays.
#pragma once

#include "foundation/orvakdata/TypedArray.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace foundation::orvakdata {

// The extent of each dimension, rows first.
using ArrayDimensions = std::vector<std::size_t>;

class ArrayFactory {
public:
    // A string array of the given dimensions over the texts of [first, last), in storage order.
    // Errors: throws when the number of texts is not the product of the dimensions.
    template <typename Iterator>
    StringArray createArray(const ArrayDimensions& dimensions, Iterator first, Iterator last) {
        return createStringArray(dimensions, {first, last});
    }

private:
    static StringArray createStringArray(const ArrayDimensions& dimensions,
                                         std::vector<orvak::data::optional<std::u16string>> elements);
};

} // namespace foundation::orvakdata
