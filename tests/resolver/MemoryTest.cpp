#include "tessgen/kelwhich/KELWhichResolver.hpp"
#include "tests/support/FailingAllocator.hpp"
#include "tests/support/World.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>

namespace tessgen::test {
namespace {

using Resolver = kelwhich::KELWhichResolver;

// Finds the same files for each name, and sees how many allocations are alive when it is asked.
class SameFiles final : public kelwhich::WhichResolver {
public:
    explicit SameFiles(std::ptrdiff_t& most) : most_(&most) {}
    Results which(const std::u16string& /*name*/) const override {
        *most_ = std::max(*most_, Allocations::alive());
        Results files;
        for (char16_t number = 0; number < count; ++number) {
            files.push_back({u"/a/long/path/of/a/file/" + std::u16string(1, number), Type::ORVAKPath});
        }
        return files;
    }
    static constexpr char16_t count = 200;

private:
    std::ptrdiff_t* most_;
};

TEST(Resolver, TakesNoMemoryForRepeats) {
    World world;
    world.isRecorded = false;
    for (int i = 0; i < 100; ++i) {
        world.add({u"r"}, redirect(u"r", u"g"));
    }
    std::ptrdiff_t most = 0;
    const Resolver resolver(std::make_unique<SameFiles>(most), std::make_unique<FakeMetadataResolver>(world),
                            std::make_unique<FakeFileSystem>(world));
    const auto before = Allocations::alive();
    EXPECT_EQ(resolver.resolve(u"r").size(), std::size_t{SameFiles::count});
    EXPECT_LT(most - before, 4 * SameFiles::count);
}

} // namespace
} // namespace tessgen::test
