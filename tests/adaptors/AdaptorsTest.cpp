#include "standalone/services/DataArrays.hpp"
#include "tessgen/kelwhich/CachedFileSystemAdaptor.hpp"
#include "tessgen/kelwhich/RealFileSystem.hpp"
#include "tests/support/RecordingHost.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace tessgen::test {
namespace {

using foundation::orvakdata::Array;

TEST(RealFileSystem, KnowsWhatExistsOnDisk) {
    TemporaryFolder folder;
    folder.write("a/f.vk", "");
    std::filesystem::create_symlink("f.vk", folder.path() + "/a/link");
    std::filesystem::create_symlink("gone", folder.path() + "/a/dangling");
    const kelwhich::RealFileSystem files;
    const auto root = std::filesystem::path(folder.path()).u16string();
    const std::pair<std::u16string, bool> cases[] = {
        {root + u"/a/f.vk", true},      {root + u"/a", true},
        {root + u"/a/", true},          {root + u"/a/link", true},
        {root + u"/a/dangling", false}, {root + u"/a/F.vk", false},
        {root + u"/a/f.vk/g", false},   {u"/", true},
    };
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(files.exists(path), expected) << testing::PrintToString(path);
    }
    // A relative path does not exist, even where the working folder has such a file; no text is refused.
    const auto previous = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    for (const auto* path : {u"a/f.vk", u"./a", u"", u"\xD800"}) {
        EXPECT_FALSE(files.exists(path)) << testing::PrintToString(std::u16string(path));
    }
    std::filesystem::current_path(previous);
    // What the disk cannot tell is an error.
    EXPECT_THROW(static_cast<void>(files.exists(u"/" + std::u16string(300, u'x'))), std::filesystem::filesystem_error);
}

TEST(RealFileSystem, AsksTheHostForRootsEachTime) {
    auto& host = RecordingHost::reset();
    host.root = u"/h";
    std::vector<Array> outputs = {standalone::makeCharArray(u" /s/ ")};
    host.answer = [&](const auto&) { return outputs; };
    const kelwhich::RealFileSystem files;
    EXPECT_EQ(files.orvakroot(), u"/h");
    EXPECT_EQ(files.spkgroot(), u" /s/ ");
    outputs = {Array()};
    EXPECT_EQ(files.spkgroot(), std::nullopt);
    outputs = {standalone::makeStringColumn({u"/s"})};
    EXPECT_THROW(files.spkgroot(), std::exception);
    ASSERT_EQ(host.evaluations.size(), 3U);
    EXPECT_EQ(host.evaluations.front().function, "orvakshared.supportpkg.getSupportPackageRoot");
    EXPECT_TRUE(host.evaluations.front().arguments.empty());
    EXPECT_EQ(host.evaluations.front().outputCount, 0U);
}

TEST(RealFileSystem, FindsKELFilesBelowTheListedFolders) {
    auto& host = RecordingHost::reset();
    host.kelPath = {u"/r/kel", u"/r/kel", u"/r/slash/"};
    const kelwhich::RealFileSystem files;
    EXPECT_EQ(files.getKELPathDirs(), (kelwhich::RealFileSystem::FolderSet{u"/r/kel", u"/r/slash/"}));
    host.kelPathAsked = 0;
    const std::pair<const char16_t*, bool> cases[] = {
        {u"/r/kel/f.vk", true},
        {u"/r/kel/private/f.vk", true},
        {u"/r/kel/+pkg/f.vk", true},
        {u"/r/kel/+pkg/@Cls/f.vk", true},
        {u"/r/kel/+pkg/private/f.vk", true},
        {u"/r/kel/sub/f.vk", false},
        {u"/r/KEL/f.vk", false},
        {u"/r/kel/private/+pkg/f.vk", false},
        {u"/r/slash/f.vk", false},
        {u"f.vk", false},
    };
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(files.isOnKELPath(path), expected) << testing::PrintToString(std::u16string(path));
    }
    EXPECT_EQ(host.kelPathAsked, 1);
    host.kelPath = {u""};
    EXPECT_TRUE(kelwhich::RealFileSystem().isOnKELPath(u"f.vk"));
}

TEST(CachedFileSystemAdaptor, AsksOncePerPathAndRoot) {
    World world;
    world.files = {u"/w/f.vk"};
    world.kelFiles = {u"/w/f.vk"};
    const kelwhich::CachedFileSystemAdaptor files(std::make_unique<FakeFileSystem>(world));
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

} // namespace
} // namespace tessgen::test
