#include "tests/sweeps/Threads.hpp"
#include "tests/sweeps/Scenarios.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace tessgen::test {
namespace {

constexpr int rounds = 60;

// Names that share files, records and redirects; each thread begins with another one.
TEST(Threads, ShareAResolver) {
    const Texts names = {u"f", u"g", u"tb/f.vk", u"/w/f.vk", u"p.f", u"nothing"};
    for (int round = 0; round < rounds; ++round) {
        resetHost();
        auto world = wideWorld();
        std::vector<Results> expected;
        for (const auto& name : names) {
            expected.push_back(makeResolver(world).resolve(name));
        }
        RecordingHost::instance().sourceCodeDirsAsked = 0;
        const auto resolver = makeResolver(world, Over::caches);
        together([&](int number) {
            for (std::size_t i = 0; i < names.size(); ++i) {
                const auto at = (i + static_cast<std::size_t>(number)) % names.size();
                EXPECT_EQ(resolver.resolve(names[at]), expected[at]);
            }
        });
        EXPECT_EQ(RecordingHost::instance().sourceCodeDirsAsked, 1); // by whoever came first
    }
    tellMeetings();
}

TEST(Threads, ShareTheRealFileSystem) {
    for (int round = 0; round < rounds; ++round) {
        resetHost();
        const kelwhich::RealFileSystem files;
        together([&](int /*number*/) {
            EXPECT_TRUE(files.isOnKELPath(u"/k/private/f.vk"));
            EXPECT_FALSE(files.exists(u"/k/there/is/no/such/file"));
        });
        EXPECT_EQ(RecordingHost::instance().kelPathAsked, 1);
    }
    tellMeetings();
}

// Collaborators that notice when they are asked twice at a time.
class OneAtATime final : public kelwhich::WhichResolver, public kelwhich::FileSystem {
public:
    Results which(const std::u16string& name) const override {
        EXPECT_FALSE(busy.exchange(true));
        ++asked;
        std::this_thread::yield();
        busy = false;
        return {{name, Type::ORVAKBuiltin}};
    }
    bool exists(const std::u16string& path) const override { return !which(path).empty(); }
    std::u16string orvakroot() const override { return which(u"/h").front().path; }
    std::optional<std::u16string> spkgroot() const override { return which(u"/s").front().path; }
    bool isOnKELPath(const std::u16string& /*path*/) const override { return false; }

    static inline std::atomic<int> asked = 0;
    static inline std::atomic<bool> busy = false;
};

TEST(Threads, ShareDecoratorsThatAskOncePerKeyAndOneAtATime) {
    for (int round = 0; round < rounds; ++round) {
        const kelwhich::CachedWhichResolverAdaptor which(std::make_unique<OneAtATime>());
        OneAtATime::asked = 0;
        together([&](int /*number*/) {
            for (const auto* name : {u"a", u"b", u"c"}) {
                EXPECT_EQ(which.which(name), (Results{{name, Type::ORVAKBuiltin}}));
            }
        });
        EXPECT_EQ(OneAtATime::asked, 3);
        const kelwhich::CachedFileSystemAdaptor files(std::make_unique<OneAtATime>());
        together([&](int /*number*/) {
            for (const auto* name : {u"/a", u"/b"}) {
                EXPECT_TRUE(files.exists(name));
            }
        });
        EXPECT_EQ(OneAtATime::asked, 5);
        together([&](int /*number*/) { EXPECT_EQ(files.orvakroot(), u"/h"); });
        EXPECT_EQ(OneAtATime::asked, 6);
        together([&](int /*number*/) { EXPECT_EQ(files.spkgroot(), u"/s"); });
        EXPECT_EQ(OneAtATime::asked, 7);
    }
    tellMeetings();
}

// Run by itself under the thread sanitizer, which must report it: so the harness does make threads meet.
TEST(Threads, DISABLED_PlantedRace) {
    int unguarded = 0;
    together([&](int number) { unguarded += number; });
    EXPECT_GT(unguarded, 0);
}

} // namespace
} // namespace tessgen::test
