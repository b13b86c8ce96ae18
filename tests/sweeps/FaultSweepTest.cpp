#include "tests/sweeps/AllocationSweep.hpp"
#include "tests/sweeps/Scenarios.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

namespace tessgen::test {
namespace {

TEST(FaultSweep, OfEveryAllocation) {
    std::size_t points = 0;
    forEachOperation(
        [&](const std::string& name, const auto& make) { points += sweepAllocations(name, make, resetHost); });
    std::cout << "sweep: " << points << " failing allocations of the library\n";
    EXPECT_GT(points, 1000U);
}

TEST(FaultSweep, OfTheKindsLeavesThePathsWritten) {
    resetHost();
    GatewayCall()(2);
    const auto before = Allocations::made();
    GatewayCall()(2);
    const auto count = Allocations::made() - before;
    GatewayCall call;
    Allocations::arm(count - 1, Allocations::Failure::once);
    EXPECT_THROW(call(2), std::bad_alloc);
    Allocations::disarm();
    EXPECT_NE(call.outputs[0], nullptr);
    EXPECT_EQ(call.outputs[1], nullptr);
}

struct ForeignFailure {
    int code;
};

// For every question to a collaborator or to a service of the host: what it throws arrives as the very same object,
// nothing is asked after it, references balance, and the next call asks again and is right.
template <typename Make>
std::size_t sweepQuestions(const std::string& name, Make make, const std::exception_ptr& failure) {
    Faults::arm(Faults::none, nullptr);
    const auto expected = make()();
    // Making may ask as well: what is made warm.
    const auto counted = make();
    Faults::arm(Faults::none, nullptr);
    counted();
    const std::size_t questions = Faults::asked;
    for (std::size_t k = 0; k < questions; ++k) {
        const auto call = make();
        Faults::arm(k, failure);
        try {
            call();
            ADD_FAILURE() << name << ": question " << k << " did not fail";
        } catch (...) {
            EXPECT_EQ(std::current_exception(), failure) << name << ", question " << k;
        }
        EXPECT_EQ(Faults::asked, k + 1) << name << ", question " << k;
        EXPECT_EQ(standalone::arraysAlive(), 0U) << name << ", question " << k;
        Faults::arm(Faults::none, nullptr);
        EXPECT_TRUE(call() == expected) << name << ", again after question " << k;
        EXPECT_GE(Faults::asked, questions - k) << name << ", again after question " << k;
    }
    return questions;
}

TEST(FaultSweep, OfEveryQuestion) {
    const std::exception_ptr failures[] = {std::make_exception_ptr(std::runtime_error("the collaborator's own")),
                                           std::make_exception_ptr(7), std::make_exception_ptr(ForeignFailure{7})};
    std::size_t points = 0;
    for (const auto& failure : failures) {
        forEachOperation(
            [&](const std::string& name, const auto& make) { points += sweepQuestions(name, make, failure); });
    }
    std::cout << "sweep: " << points << " failing questions\n";
    EXPECT_GT(points, 500U);
}

TEST(Resolver, TakesNoMemoryForRepeats) {
    constexpr char16_t count = 200;
    World world;
    world.isRecorded = false;
    for (char16_t number = 0; number < count; ++number) {
        world.hostAnswers[u"g"].push_back({u"/a/long/path/of/a/file/" + std::u16string(1, number), Type::ORVAKPath});
    }
    for (int i = 0; i < 100; ++i) {
        world.add({u"r"}, redirect(u"r", u"g"));
    }
    const auto resolver = makeResolver(world);
    Allocations::most();
    const auto before = Allocations::alive();
    EXPECT_EQ(resolver.resolve(u"r").size(), std::size_t{count});
    EXPECT_LT(Allocations::most() - before, 5 * count);
}

} // namespace
} // namespace tessgen::test
