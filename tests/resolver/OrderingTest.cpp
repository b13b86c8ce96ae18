// What no small or drawn world reaches: long lists, and kinds that the library does not know.
#include "resolver/Ordering.hpp"

#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace tessgen::test {
namespace {

TEST(StablePartition, IsTheStandardOneAndAsksOfEachOnce) {
    for (std::size_t count = 0; count < 70; ++count) {
        std::vector<int> list(count);
        std::iota(list.begin(), list.end(), 1);
        auto expected = list;
        const auto original = list;
        const auto holds = [](int number) { return number * number % 7 > 2; };
        const auto end = std::stable_partition(expected.begin(), expected.end(), holds) - expected.begin();
        std::vector<int> asked;
        const auto found = kelwhich::stablePartition(list.begin(), list.end(), [&](int number) {
            asked.push_back(number);
            return holds(number);
        });
        EXPECT_EQ(found - list.begin(), end);
        EXPECT_EQ(list, expected);
        EXPECT_EQ(asked, original);
    }
}

TEST(Resolver, JudgesAKindOutsideTheFiveAsAFile) {
    constexpr auto unknown = Type{7};
    World world;
    world.add({}, supported(u"/w/f.vk"));
    world.hostAnswers[u"f"] = {
        {u"/w/g.vk", unknown}, {u"/w/f.x", unknown}, {u"/private/f.vk", unknown}, {u"/w/f.vk", unknown}};
    RecordingHost::reset();
    const auto resolver = makeResolver(world);
    EXPECT_EQ(
        resolver.resolve(u"f"),
        (Results{{u"/w/f.vk", unknown}, {u"/private/f.vk", unknown}, {u"/w/f.x", unknown}, {u"/w/g.vk", unknown}}));
    EXPECT_FALSE(resolver.isUserResult({u"/w/f.vk", unknown}));
    EXPECT_FALSE(resolver.isSupportedForCodegen({u"/w/g.vk", unknown}, u"f"));
}

} // namespace
} // namespace tessgen::test
