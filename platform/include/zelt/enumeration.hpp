// Arrays of enumeration values in the host's class system.
//
// Threads: the thread that the host calls from.
#pragma once

#include <cstddef>
#include <string_view>

struct qxArray;

namespace zelt::internal {

class InternedText;

// A name that the class system knows; the same name has the same value for as long as the process lives.
using Interned = const InternedText*;

// Errors: throws when the name cannot be kept.
Interned makeInterned(std::string_view name);

// The name of no member.
inline constexpr Interned nullValue = nullptr;

} // namespace zelt::internal

// A new array of values of the enumeration class `className`, owned by the caller.
// Errors: throws when there is no such class.
qxArray* omCreateZELTEnumerationMatrix(std::size_t rows, std::size_t columns, zelt::internal::Interned className);

// Sets one element, counted from 0 in storage order, to the member of that name.
// Errors: throws when the class has no such member.
void omSetEnumerationElement(qxArray* array, std::size_t index, zelt::internal::Interned member);
