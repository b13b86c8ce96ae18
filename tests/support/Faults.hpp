// Every question to the fakes of a test, counted together, so that any one of them can be made to fail.
//
// Threads: any; set up while no other thread asks.
#pragma once

#include <atomic>
#include <cstddef>
#include <exception>
#include <limits>

namespace tessgen::test {

struct Faults {
    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

    static inline std::atomic<std::size_t> asked = 0;
    static inline std::size_t failing = none; // the number of the question that fails, from 0
    static inline std::exception_ptr failure;

    static void ask() {
        if (asked++ == failing) {
            std::rethrow_exception(failure);
        }
    }

    // Counts anew; the question with this number throws.
    static void arm(std::size_t number, const std::exception_ptr& thrown) {
        asked = 0;
        failing = number;
        failure = thrown;
    }

    static void disarm() { failing = none; }
};

} // namespace tessgen::test
