// A host array read as a row of characters.
#pragma once

#include "foundation/orvakdata/Array.hpp"

#include <string>

namespace foundation::orvakdata {

class CharArray : public Array {
public:
    // Errors: throws when `array` is of another type.
    explicit CharArray(const Array& array);

    // The characters as UTF-16, in order; nothing is trimmed.
    [[nodiscard]] std::u16string toUTF16() const;
};

} // namespace foundation::orvakdata
