#include "standalone/HeldFolder.hpp"

#include "standalone/FileTree.hpp"
#include "standalone/NameSearch.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <string>

namespace tessgen::standalone {
namespace {

using test::TemporaryFolder;

TEST(HeldFolder, IsWalkedFromToWhatLiesBelowIt) {
    const TemporaryFolder top;
    const std::string folder = top.makeFolder("a");
    top.makeFolder("a/b");
    const HeldFolder held(folder);
    const std::string below = folder + "/b/c";
    const WalkedPath walk = held.to(below);
    EXPECT_GE(walk.folder, 0);
    EXPECT_STREQ(walk.path, "b/c");
    const std::string tooLong = folder + "/" + std::string(PATH_MAX - folder.size() - 1, 'n');
    for (const std::string& path : {folder, folder + "/", folder + "b", top.path(), std::string("/"), tooLong}) {
        EXPECT_EQ(held.to(path).folder, AT_FDCWD) << path;
        EXPECT_EQ(held.to(path).path, path.c_str());
    }
    for (const std::string& other : {top.path("none"), top.write("file")}) {
        EXPECT_EQ(HeldFolder(other).to(below).folder, AT_FDCWD) << other;
    }
    const HeldFolder root("/");
    EXPECT_STREQ(root.to("/x").path, "x");
}

// Between two questions another folder may come to lie where the root was.
TEST(HeldFolder, IsTheRootOfTheMoment) {
    const TemporaryFolder top;
    top.write("root/a/f.vk");
    top.write("other/a/g.vk");
    Installation installation;
    installation.root = top.path("root");
    installation.searchPath = {top.path("root/a")};
    installation.extensions = {"vk"};
    const RealFileTree disk;
    const NameSearch search(installation, disk);
    EXPECT_EQ(search.find(u"f").size(), 1);
    std::filesystem::rename(top.path("root"), top.path("moved"));
    EXPECT_TRUE(search.find(u"f").empty());
    std::filesystem::rename(top.path("other"), top.path("root"));
    EXPECT_TRUE(search.find(u"f").empty());
    EXPECT_EQ(search.find(u"g").size(), 1);
}

} // namespace
} // namespace tessgen::standalone
