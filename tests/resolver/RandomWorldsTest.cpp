#include "tests/support/Model.hpp"
#include "tests/support/RandomWorld.hpp"
#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <iostream>

namespace tessgen::test {
namespace {

constexpr std::size_t worlds = KELWHICH_RANDOM_WORLDS / 2;

Texts paths(const std::vector<kelwhich::KELWhichResolver::BasicSupportEntry>& entries) {
    Texts found;
    for (const auto& entry : entries) {
        found.push_back(entry.path);
    }
    return found;
}

// By the seed: ctest runs each in a process of its own.
class RandomWorlds : public testing::TestWithParam<unsigned> {};

TEST_P(RandomWorlds, AreResolvedAsTheModelSays) {
    std::size_t longLists = 0;
    const auto& all = Model::counts = {};
    WorldMaker maker(GetParam());
    for (std::size_t i = 0; i < worlds; ++i) {
        auto made = maker.make();
        RecordingHost::reset().sourceCodeDirs = made.sourceCodeDirs;
        const Model model(made.world, made.sourceCodeDirs);
        const auto resolver = makeResolver(made.world);
        const auto cached = makeResolver(made.world, Over::caches);
        for (const auto& name : made.names) {
            const auto expected = model.resolve(name);
            const auto gathered = model.gathered(name);
            for (const auto& result : gathered) {
                ASSERT_EQ(resolver.isUserResult(result), model.user(result)) << "world " << i;
                ASSERT_EQ(resolver.isSupportedForCodegen(result, name), model.supported(result, name)) << "world " << i;
            }
            ASSERT_EQ(paths(resolver.findSupportEntry(name)), model.recordPaths(name)) << "world " << i;
            ASSERT_EQ(resolver.unorderedResolveWithoutRedirect(name), gathered) << "world " << i;
            ASSERT_EQ(resolver.resolveWithoutRedirect(name), model.ordered(name)) << "world " << i;
            ASSERT_EQ(resolver.resolve(name), expected) << "world " << i;
            ASSERT_EQ(cached.resolve(name), expected) << "world " << i;
            longLists += expected.size() > 3 ? 1U : 0U;
        }
    }
    std::cout << "worlds: " << worlds << " as the model says\n";
    // The worlds are worth something: they have what no small world has.
    EXPECT_GT(longLists, worlds / 2);
    for (const auto count : {all.chains, all.cycles, all.deepPackages, all.files}) {
        EXPECT_GT(count, worlds / 500);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWorlds, testing::Values(20261121, 20261122));

} // namespace
} // namespace tessgen::test
