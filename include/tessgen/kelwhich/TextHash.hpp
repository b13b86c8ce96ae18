// The hash of the caches: keyed anew in each process, so that names chosen to collide cost no more than others.
#pragma once

#include <cstddef>
#include <string_view>

namespace tessgen::kelwhich {

struct TextHash {
    // Not `noexcept`, so that tables keep the hash beside each key.
    std::size_t operator()(std::u16string_view text) const;
};

} // namespace tessgen::kelwhich
