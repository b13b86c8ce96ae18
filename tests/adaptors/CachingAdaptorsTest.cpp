#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/CachedWhichResolverAdaptor.hpp"

#include "tests/support/World.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>

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

TEST(CachingAdaptors, AskOncePerKeyHoweverManyThereAre) {
    World world;
    const kelwhich::CachedFileSystemAdaptor files(std::make_unique<FakeFileSystem>(world));
    const kelwhich::CachedWhichResolverAdaptor which(std::make_unique<FakeWhichResolver>(world));
    constexpr std::size_t many = 1000;
    for (std::size_t i = 0; i < 2 * many; ++i) {
        const std::u16string key(1 + i % many, u'f');
        static_cast<void>(files.exists(key));
        static_cast<void>(which.which(key));
    }
    EXPECT_EQ(world.questions().size(), 2 * many);
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
