// A host array read element by element. The library reads string arrays, whose elements may be missing.
//
// Lifetime: iterators and element references are valid while the array that gave them lives.
#pragma once

#include "foundation/orvakdata/Array.hpp"
#include "orvak/data/optional.hpp"

#include <cstddef>
#include <string>

namespace foundation::orvakdata {

// One element of a string array.
class ORVAKStringReferenceExt {
public:
    explicit ORVAKStringReferenceExt(const orvak::data::optional<std::u16string>& element) noexcept
        : element_(&element) {}

    // Errors: throws when the element is missing.
    operator std::u16string() const; // NOLINT(google-explicit-constructor): reads like the string it stands for

private:
    const orvak::data::optional<std::u16string>* element_;
};

template <typename T>
class TypedIterator;

template <>
class TypedIterator<orvak::data::optional<std::u16string>> {
public:
    explicit TypedIterator(const orvak::data::optional<std::u16string>* position) noexcept : position_(position) {}

    [[nodiscard]] bool isEqual(const TypedIterator& other) const noexcept;
    [[nodiscard]] ORVAKStringReferenceExt getRef() const noexcept;
    void increment() noexcept;

private:
    const orvak::data::optional<std::u16string>* position_;
};

template <typename T>
class TypedArray;

template <>
class TypedArray<orvak::data::optional<std::u16string>> : public Array {
public:
    using Iterator = TypedIterator<orvak::data::optional<std::u16string>>;

    // Errors: throws when `array` is of another type.
    explicit TypedArray(const Array& array);

    // The elements in the array's own storage order.
    [[nodiscard]] Iterator begin() const noexcept;
    [[nodiscard]] Iterator end() const noexcept;
};

using StringArray = TypedArray<orvak::data::optional<std::u16string>>;

} // namespace foundation::orvakdata
