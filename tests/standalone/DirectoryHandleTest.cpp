#include "standalone/files/DirectoryHandle.hpp"

#include "standalone/files/FileTree.hpp"
#include "standalone/search/NameSearch.hpp"
#include "standalone/search/SnapshotSearch.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <tuple>

namespace tessgen::standalone {
namespace {

using test::TemporaryFolder;

TEST(DirectoryHandle, IsWalkedFromToWhatLiesBelowIt) {
    const DirectoryHandle root("/");
    if (root.to("/x").folder == AT_FDCWD) {
        GTEST_SKIP() << "the system cannot open a folder so";
    }
    EXPECT_STREQ(root.to("/x").path, "x");
    const TemporaryFolder top;
    top.makeFolder("a/b");
    const std::string folder = std::filesystem::canonical(top.path("a"));
    const DirectoryHandle held(folder);
    const std::string below = folder + "/b/c";
    const PathAt walk = held.to(below);
    EXPECT_GE(walk.folder, 0);
    EXPECT_STREQ(walk.path, "b/c");
    const std::string tooLong = folder + "/" + std::string(PATH_MAX - folder.size() - 1, 'n');
    for (const std::string& path :
         {folder, folder + "/", folder + "//b", folder + "b", top.path(), std::string("/"), tooLong}) {
        EXPECT_EQ(held.to(path).folder, AT_FDCWD) << path;
        EXPECT_EQ(held.to(path).path, path.c_str());
    }
    top.link("linked", "a");
    for (const std::string& other : {top.path("none"), top.write("file"), top.path("linked"), top.path("linked/b")}) {
        EXPECT_EQ(DirectoryHandle(other).to(other + "/c").folder, AT_FDCWD) << other;
    }
}

// Between two questions another folder may come to lie where the root was.
TEST(DirectoryHandle, IsTheRootOfTheMoment) {
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

// The system walks along 40 links at most, from wherever it begins.
TEST(DirectoryHandle, LeadsToNothingThatItsPathDoesNotLeadTo) {
    const TemporaryFolder top;
    top.write("real/0/f.vk");
    std::filesystem::rename(top.path("real"), top.path("0"));
    for (int i = 1; i <= 25; ++i) {
        top.link(std::to_string(i), std::to_string(i - 1));
        top.link("0/" + std::to_string(i), std::to_string(i - 1));
    }
    Installation installation;
    installation.extensions = {"vk"};
    const RealFileTree disk;
    for (const auto& [root, folder, found] : {std::tuple("25", "10", 1), {"25", "25", 0}, {"0", "25", 1}}) {
        installation.root = top.path(root);
        installation.searchPath = {installation.root + "/" + folder};
        EXPECT_EQ(NameSearch(installation, disk).find(u"f").size(), found) << root << " " << folder;
        EXPECT_EQ(SnapshotSearch(installation, disk).find(u"f").size(), found) << root << " " << folder;
    }
}

} // namespace
} // namespace tessgen::standalone
