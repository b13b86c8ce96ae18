// A host data array: a shared handle on immutable data of one type, as host functions take and return it.
//
// Threads: a handle is used by one thread at a time; copies may be used by others.
// Lifetime: the data lives as long as any copy of the handle.
#pragma once

#include <memory>

namespace foundation::orvakdata {

class ArrayData;

class Array {
public:
    // An empty array.
    Array() noexcept;
    explicit Array(std::shared_ptr<const ArrayData> data) noexcept;

    // True when the array has no elements, whatever its type.
    [[nodiscard]] bool isEmpty() const noexcept;

protected:
    // Null for the empty array.
    [[nodiscard]] const ArrayData* data() const noexcept { return data_.get(); }

private:
    std::shared_ptr<const ArrayData> data_;
};

} // namespace foundation::orvakdata
