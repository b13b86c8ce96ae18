#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/CachedWhichResolverAdaptor.hpp"
#include "tests/support/Model.hpp"
#include "tests/support/RandomWorld.hpp"
#include "tests/support/RecordingHost.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <iostream>

namespace tessgen::test {
namespace {

constexpr std::size_t worlds = KELWHICH_RANDOM_WORLDS;

// Over both caching decorators.
kelwhich::KELWhichResolver cachedResolver(World& world) {
    return {std::make_unique<kelwhich::CachedWhichResolverAdaptor>(std::make_unique<FakeWhichResolver>(world)),
            std::make_unique<FakeMetadataResolver>(world),
            std::make_unique<kelwhich::CachedFileSystemAdaptor>(std::make_unique<FakeFileSystem>(world))};
}

TEST(RandomWorlds, AreResolvedAsTheModelSays) {
    std::size_t longLists = 0;
    Model::Counts all;
    WorldMaker maker(20261121);
    for (std::size_t i = 0; i < worlds; ++i) {
        auto made = maker.make();
        RecordingHost::reset().sourceCodeDirs = made.sourceCodeDirs;
        const Model model(made.world, made.sourceCodeDirs);
        const auto resolver = makeResolver(made.world);
        const auto cached = cachedResolver(made.world);
        for (const auto& name : made.names) {
            const auto expected = model.resolve(name);
            ASSERT_EQ(resolver.unorderedResolveWithoutRedirect(name), model.gathered(name)) << "world " << i;
            ASSERT_EQ(resolver.resolveWithoutRedirect(name), model.ordered(name)) << "world " << i;
            ASSERT_EQ(resolver.resolve(name), expected) << "world " << i;
            ASSERT_EQ(cached.resolve(name), expected) << "world " << i;
            longLists += expected.size() > 3 ? 1U : 0U;
        }
        all.redirects += model.counts.redirects;
        all.repeats += model.counts.repeats;
        all.privateFiles += model.counts.privateFiles;
        all.movedRecords += model.counts.movedRecords;
        all.movedQueries += model.counts.movedQueries;
        all.unsupportedNames += model.counts.unsupportedNames;
    }
    std::cout << "worlds: " << worlds << " as the model says\n";
    // The worlds are worth something: long lists are many, and every rule decides often.
    EXPECT_GT(longLists, worlds / 2);
    for (const auto count :
         {all.redirects, all.repeats, all.privateFiles, all.movedRecords, all.movedQueries, all.unsupportedNames}) {
        EXPECT_GT(count, worlds / 50);
    }
}

} // namespace
} // namespace tessgen::test
