// The library's one way of evaluating a function of the host.
#pragma once

#include "foundation/orvakdata/TypedArray.hpp"
#include "orvak/data/optional.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace tessgen::kelwhich {

// Evaluates a host function on the engine of the calling thread and waits for its end, without a time-out. Returns the
// outputs as the host delivers them; how many there are is not checked.
// Errors: the exception object that the host stored.
[[nodiscard]] std::vector<foundation::orvakdata::Array>
evaluate(const std::string& function, const std::vector<foundation::orvakdata::Array>& arguments,
         unsigned long outputCount);

// A host string array of one element.
[[nodiscard]] foundation::orvakdata::Array toStringArray(const std::u16string& text);

// How many elements a host string array has.
// Errors: thrown by the host's data interface for an array of another type.
[[nodiscard]] std::size_t stringCount(const foundation::orvakdata::Array& array);

// Calls `use` with each element of a host string array, in its order.
// Errors: thrown by the host's data interface for an array of another type and for a missing element.
template <typename Use>
void forEachString(const foundation::orvakdata::Array& array, Use use) {
    const foundation::orvakdata::TypedArray<orvak::data::optional<std::u16string>> elements(array);
    const auto end = elements.end();
    for (auto element = elements.begin(); !element.isEqual(end); element.increment()) {
        use(std::u16string(element.getRef()));
    }
}

} // namespace tessgen::kelwhich
