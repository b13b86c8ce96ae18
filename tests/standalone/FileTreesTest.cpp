#include "standalone/files/CachingFileTree.hpp"
#include "standalone/files/MountPoints.hpp"
#include "standalone/files/OverlayFileTree.hpp"
#include "standalone/files/RealFileTree.hpp"
#include "standalone/search/NameSearch.hpp"
#include "standalone/search/SnapshotSearch.hpp"
#include "tests/support/MemoryFileTree.hpp"
#include "tests/support/SupportStores.hpp"

#include <gmock/gmock.h>

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <tuple>
#include <unistd.h>

namespace tessgen::standalone {
namespace {

using test::errorOf;
using test::TemporaryFolder;
using testing::UnorderedElementsAre;
using Kind = FileTree::Kind;

const EntryFilter all{[](std::string_view) { return true; }};

TEST(MountPoints, HaveNamesThatTheSystemEscapes) {
    const TemporaryFolder top;
    const auto list = top.write("mounts", "22 1 8:1 / /a/b\\040c\\134d rw - ext4 disk rw\n");
    const Descriptor mounts(open(list.c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_TRUE(namesOfMountPoints(mounts).contains("b c\\d"));
}

// The first folder may be entered, but not listed; a class folder of the other may be listed, but not entered.
TEST(RealFileTree, FindsFilesInFoldersThatItMayOnlyEnterOrOnlyList) {
    const TemporaryFolder top;
    top.write("entered/sub/f.vk");
    top.write("listed/@C/f.vk");
    Installation entered;
    entered.searchPath = {top.path("entered")};
    Installation listed;
    listed.searchPath = {top.path("listed")};
    listed.extensions = entered.extensions = {"vk"};
    chmod(top.path().c_str(), 0755);
    chmod(top.path("entered").c_str(), 0711);
    chmod(top.path("listed/@C").c_str(), 0744);
    const RealFileTree tree;
    const uid_t user = geteuid();
    ASSERT_TRUE(user != 0 || seteuid(65534) == 0); // the superuser may read everything
    const auto error = errorOf([&] {
        EXPECT_EQ(NameSearch(entered, tree).find(u"sub/f").size(), 1);
        EXPECT_EQ(NameSearch(listed, tree).find(u"f").size(), 1);
        static_cast<void>(NameSearch(entered, tree).find(u"p.f"));
    });
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_EQ(error, top.path("entered")
                         + ": cannot be read: Permission denied; give the right to read it, or leave it out of the "
                           "installation");
}

// No path reaches such a file: whether it exists cannot be found out, or nobody could open what is found.
TEST(RealFileTree, RefusesPathsThatAreTooLongForTheSystem) {
    const TemporaryFolder top;
    std::string folder = top.path();
    while (folder.size() < 4090) {
        const auto rest = 4090 - folder.size();
        folder += "/" + std::string(rest > 300 ? 199 : rest > 200 ? 99 : rest - 1, 'd');
    }
    const std::string below = folder.substr(top.path().size() + 1);
    top.write(below + "/f.vk"); // 4095 bytes: the longest path
    const auto previous = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    std::ofstream("g.vkx").flush();
    std::filesystem::current_path(previous);
    Installation installation;
    installation.searchPath = {folder};
    installation.extensions = {"vk", "vkx"};
    const DirectoryHandle held(std::filesystem::canonical(top.path()));
    for (const auto* handle : {static_cast<const DirectoryHandle*>(nullptr), &held}) {
        const RealFileTree tree(handle);
        const NameSearch search(installation, tree);
        EXPECT_EQ(search.find(u"f").size(), 1U);
        EXPECT_TRUE(search.find(u"h").empty());
        const std::string why = ": cannot be read: File name too long; move it to where its path is shorter";
        EXPECT_EQ(errorOf([&] { static_cast<void>(search.find(u"g")); }), folder + "/g.vkx" + why);
        EXPECT_EQ(errorOf([&] { static_cast<void>(search.find(u"g.vkx/")); }), folder + "/g.vkx/" + why);
        EXPECT_EQ(errorOf([&] { static_cast<void>(tree.entries(folder + "/@Class", all)); }), folder + "/@Class" + why);
        EXPECT_EQ(errorOf([&] { static_cast<void>(realPath(folder + "/g.vkx")); }), folder + "/g.vkx" + why);
    }
}

// A predicate sees each name while the folder is read, and so can change the folder just then.
TEST(RealFileTree, ListsALargeFolderAsItIsAtOneMoment) {
    const TemporaryFolder top;
    const std::string pad(200, 'n');
    for (int i = 0; i < 400; ++i) {
        top.write("large/" + std::to_string(i) + pad);
    }
    for (const int changes : {0, 1, 1000}) {
        int seen = 0;
        const EntryFilter changing{[&](std::string_view /*name*/) {
            if (++seen % 200 == 1 && seen / 200 < changes) { // at the first entry, and at some others
                std::filesystem::rename(top.path("large/0" + pad), top.path("large/renamed"));
                std::filesystem::rename(top.path("large/renamed"), top.path("large/0" + pad));
            }
            return true;
        }};
        if (changes == 1000) {
            EXPECT_THAT(errorOf([&] { static_cast<void>(RealFileTree().entries(top.path("large"), changing)); }),
                        testing::HasSubstr("it keeps changing"));
        } else {
            EXPECT_EQ(RealFileTree().entries(top.path("large"), changing)->size(), 400U);
            EXPECT_GE(seen, 399 * (1 + changes)); // read again after a change, which may have hidden one entry
        }
    }
}

TEST(DirectoryHandle, IsWalkedFromToWhatLiesBelowIt) {
    const DirectoryHandle root("/");
    if (root.to("/x").folder == AT_FDCWD) {
        GTEST_SKIP() << "the system cannot open a folder so";
    }
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

// The system follows 40 links in one walk at most, wherever the walk begins.
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
    for (const auto& [root, folder, found] : {std::tuple("25", "10", 1), {"25", "25", 0}, {"0", "25", 1}}) {
        const DirectoryHandle held(top.path(root));
        const RealFileTree disk(&held);
        installation.searchPath = {top.path(root) + "/" + folder};
        EXPECT_EQ(NameSearch(installation, disk).find(u"f").size(), found) << root << " " << folder;
        EXPECT_EQ(SnapshotSearch(installation, disk).find(u"f").size(), found) << root << " " << folder;
    }
}

TEST(CachingFileTree, AsksForEachPathOnceUntilItIsFull) {
    test::MemoryFileTree disk;
    disk.add("/a/f.vk", FileTree::Kind::file);
    disk.add("/c/f.vk", FileTree::Kind::file);
    disk.fail("/b", EACCES);
    for (const bool isFull : {false, true}) {
        const CachingFileTree files(disk, all, isFull ? 0 : 1000);
        static_cast<void>(disk.takeQuestions());
        for (int round = 0; round < 2; ++round) {
            EXPECT_EQ(files.entriesBy(disk, "/a")->size(), 1U); // a snapshot is always kept
            EXPECT_EQ(files.entries("/c", all)->size(), 1U);
            EXPECT_EQ(files.entries("/c", {[](std::string_view name) { return name == "g"; }})->size(), 0U);
            EXPECT_EQ(files.kindOf("/a/f.vk"), FileTree::Kind::file);
            EXPECT_THROW(files.kindOf("/b"), std::system_error);
        }
        EXPECT_EQ(disk.takeQuestions().size(), isFull ? 9U : 4U);
    }
}

TEST(OverlayFileTree, HasMoreFilesAndTheFoldersThatLeadToThem) {
    test::MemoryFileTree files("/w", {"f.vk", "a/x.vk", "+p/g.vk", "dir.vk/y"});
    const OverlayFileTree tree(files, {"/w/f.vk", "/w/new.vk", "/w/+p/h.vk", "/w/+q/@C/m.vk", "/w/dir.vk", "/w2/z.vk"});
    const auto listed = [&](const std::string& folder) { // folders with "/"
        std::vector<std::string> entries;
        const auto found = tree.entries(folder, {[](std::string_view name) { return name != "new.vk"; }});
        for (const auto& entry : found.value()) {
            entries.push_back(entry.name + (entry.kind == Kind::folder ? "/" : ""));
        }
        return entries;
    };
    EXPECT_THAT(listed("/w"), UnorderedElementsAre("f.vk", "a/", "+p/", "+q/", "dir.vk"));
    EXPECT_THAT(listed("/"), UnorderedElementsAre("w/", "w2/"));
    EXPECT_THAT(listed("/w/+p"), UnorderedElementsAre("g.vk", "h.vk"));
    EXPECT_THAT(listed("/w/+q"), UnorderedElementsAre("@C/"));
    EXPECT_FALSE(tree.entries("/w/+", all));
    const std::map<std::string, std::optional<Kind>> kinds = {
        {"/w/new.vk", Kind::file}, {"/w/dir.vk", Kind::file}, {"/w/+q", Kind::folder},   {"/w/+q/@C", Kind::folder},
        {"/", Kind::folder},       {"/w/+", std::nullopt},    {"/w/none", std::nullopt}, {"/w/a/x.vk", Kind::file}};
    for (const auto& [path, kind] : kinds) {
        EXPECT_EQ(tree.kindOf(path), kind) << path;
    }
}

} // namespace
} // namespace tessgen::standalone
