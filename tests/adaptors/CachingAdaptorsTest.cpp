#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/CachedWhichResolverAdaptor.hpp"

#include "tests/support/World.hpp"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace tessgen::test {
namespace {

TEST(CachedFileSystemAdaptor, AsksOncePerPathAndRoot) {
    for (const bool nested : {false, true}) {
        World world;
        world.files = {u"/w/f.vk"};
        world.kelFiles = {u"/w/f.vk"};
        std::unique_ptr<kelwhich::FileSystem> inner = std::make_unique<FakeFileSystem>(world);
        if (nested) {
            inner = std::make_unique<kelwhich::CachedFileSystemAdaptor>(std::move(inner));
        }
        const kelwhich::CachedFileSystemAdaptor files(std::move(inner));
        EXPECT_EQ(world.questions(), Texts());
        for (int round = 0; round < 2; ++round) {
            EXPECT_TRUE(files.exists(u"/w/f.vk"));
            EXPECT_FALSE(files.exists(u"/W/f.vk"));
            EXPECT_FALSE(files.exists(u"/w/f.vk/"));
            EXPECT_EQ(files.orvakroot(), u"/h");
            EXPECT_EQ(files.spkgroot(), std::nullopt);
            world.files.clear();
            world.orvakroot = u"/other";
            world.spkgroot = u"/s";
        }
        EXPECT_EQ(world.questions(),
                  (Texts{u"exists /w/f.vk", u"exists /W/f.vk", u"exists /w/f.vk/", u"orvakroot", u"spkgroot"}));
        EXPECT_TRUE(files.isOnKELPath(u"/w/f.vk"));
        EXPECT_TRUE(files.isOnKELPath(u"/w/f.vk"));
        EXPECT_EQ(world.questions().size(), 2U);
    }
}

// A resolver that notices when it is asked twice at a time.
class SlowWhichResolver final : public kelwhich::WhichResolver {
public:
    SlowWhichResolver(std::atomic<int>& asked, std::atomic<int>& overlaps) : asked_(&asked), overlaps_(&overlaps) {}
    Results which(const std::u16string& name) const override {
        *overlaps_ += busy_.exchange(true) ? 1 : 0;
        ++*asked_;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        busy_ = false;
        return {{name, Type::ORVAKBuiltin}};
    }

private:
    std::atomic<int>* asked_;
    std::atomic<int>* overlaps_;
    mutable std::atomic<bool> busy_ = false;
};

TEST(CachedWhichResolverAdaptor, AsksOncePerNameAndOneAtATimeFromManyThreads) {
    std::atomic<int> asked = 0;
    std::atomic<int> overlaps = 0;
    const kelwhich::CachedWhichResolverAdaptor cached(std::make_unique<SlowWhichResolver>(asked, overlaps));
    const Texts names = {u"a", u"b", u"c", u"d", u"e"};
    std::array<std::thread, 8> threads;
    for (auto& thread : threads) {
        thread = std::thread([&] {
            for (const auto& name : names) {
                EXPECT_EQ(cached.which(name), (Results{{name, Type::ORVAKBuiltin}}));
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(asked, 5);
    EXPECT_EQ(overlaps, 0);
}

TEST(CachedWhichResolverAdaptor, AsksOncePerNameAndKeepsNothingOfAFailure) {
    for (const bool nested : {false, true}) {
        World world;
        const Results answer = {{u"/w/f.vk", Type::ORVAKPath}};
        world.hostAnswers[u"f"] = answer;
        world.failure = std::make_exception_ptr(std::runtime_error("host"));
        world.failing = 0;
        std::unique_ptr<kelwhich::WhichResolver> inner = std::make_unique<FakeWhichResolver>(world);
        if (nested) {
            inner = std::make_unique<kelwhich::CachedWhichResolverAdaptor>(std::move(inner));
        }
        const kelwhich::CachedWhichResolverAdaptor cached(std::move(inner));
        EXPECT_THROW(cached.which(u"f"), std::runtime_error);
        for (int round = 0; round < 2; ++round) {
            auto own = cached.which(u"f");
            EXPECT_EQ(own, answer);
            own.clear(); // the caller's copy
            EXPECT_EQ(cached.which(u"F"), Results());
            world.hostAnswers[u"F"] = answer;
        }
        EXPECT_EQ(world.questions(), (Texts{u"which f", u"which f", u"which F"}));
    }
}

} // namespace
} // namespace tessgen::test
