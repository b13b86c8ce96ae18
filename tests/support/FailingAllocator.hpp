// The allocations of a test program, counted, so that any one of them can be made to fail.
//
// Threads: counts those of all threads.
#pragma once

#include <cstddef>

namespace tessgen::test {

struct Allocations {
    enum class Failure { once, fromThenOn };

    // The allocation with this number, from 0 counted anew, throws bad_alloc, and with `fromThenOn` all after it.
    static void arm(std::size_t number, Failure failure);
    // Lets all succeed again. True when one failed since `arm`.
    static bool disarm();

    static std::size_t made();     // so far
    static std::ptrdiff_t alive(); // made and not freed
    static std::ptrdiff_t most();  // of those that were alive at one moment since the last call of this
};

} // namespace tessgen::test
