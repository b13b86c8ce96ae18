// A value of the host language that may be missing, such as the missing element of a string array.
#pragma once

#include <optional>

namespace orvak::data {

template <typename T>
using optional = std::optional<T>;

} // namespace orvak::data
