// A resolver's world drawn from the input: the resolver answers as the model says, with caches as without, and explains
// the answer that it gives.
#include "fuzz/Fuzz.hpp"
#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/CachedWhichResolverAdaptor.hpp"
#include "tests/support/Model.hpp"
#include "tests/support/RandomWorld.hpp"
#include "tests/support/RecordingHost.hpp"

#include <memory>

namespace {

using namespace tessgen;
using fuzz::require;
using kelwhich::Explanation;
using test::Results;

Results answeredBy(const Explanation& explanation) {
    Results results;
    for (const auto& resolution : explanation.resolutions) {
        for (const auto& candidate : resolution.candidates) {
            if (!candidate.repeat) {
                results.push_back(candidate.result);
            }
            require(results.at(candidate.rank - 1) == candidate.result, "a rank is that of the first of repeats");
        }
    }
    return results;
}

kelwhich::KELWhichResolver makeCachedResolver(test::World& world) {
    return {std::make_unique<kelwhich::CachedWhichResolverAdaptor>(std::make_unique<test::FakeWhichResolver>(world)),
            std::make_unique<test::FakeMetadataResolver>(world),
            std::make_unique<kelwhich::CachedFileSystemAdaptor>(std::make_unique<test::FakeFileSystem>(world))};
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto* const end = data + size;
    auto made = test::WorldMaker([&](std::size_t bound) { return data == end ? 0 : *data++ % bound; }).make();
    test::RecordingHost::reset().sourceCodeDirs = made.sourceCodeDirs;
    const test::Model model(made.world, made.sourceCodeDirs);
    const bool isCached = size % 2 == 0; // one way for each input, so that more of them are tried
    const auto resolver = isCached ? makeCachedResolver(made.world) : test::makeResolver(made.world);
    for (const auto& name : made.names) {
        const auto expected = model.resolve(name);
        require(resolver.resolve(name) == expected, "the answer is the model's");
        if (!isCached) {
            require(answeredBy(resolver.explain(name)) == expected, "what is explained is the answer");
        }
    }
    return 0;
}
