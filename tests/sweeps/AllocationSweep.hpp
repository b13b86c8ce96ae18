// Lets each allocation of an operation fail in turn.
#pragma once

#include "tests/support/FailingAllocator.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <string>

namespace tessgen::test {

// For every allocation, failing alone and failing with all after it: what leaves the operation is bad_alloc, or the
// right answer where there is another way; the same object answers rightly when asked again; nothing leaks.
// Returns how many failures were tried.
template <typename Make, typename Reset>
std::size_t sweepAllocations(const std::string& name, Make make, Reset reset) {
    auto expected = make()(); // and what is made once for all is there
    std::size_t points = 0;
    for (const auto failure : {Allocations::Failure::once, Allocations::Failure::fromThenOn}) {
        bool failed = true;
        for (std::size_t k = 0; failed; ++k) {
            reset();
            const auto before = Allocations::alive();
            {
                const auto call = make();
                auto answer = decltype(expected)();
                bool answered = false;
                Allocations::arm(k, failure);
                try {
                    answer = call();
                    answered = true;
                } catch (const std::bad_alloc&) {
                }
                failed = Allocations::disarm();
                EXPECT_TRUE(answered ? answer == expected : failed) << name << ", allocation " << k;
                EXPECT_TRUE(answered || call() == expected) << name << ", again after allocation " << k;
            }
            reset();
            EXPECT_EQ(Allocations::alive(), before) << name << ", allocation " << k;
            points += failed ? 1 : 0;
        }
    }
    return points;
}

} // namespace tessgen::test
