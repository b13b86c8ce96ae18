#include "standalone/index/SearchIndex.hpp"

#include "standalone/files/RealFileTree.hpp"
#include "standalone/index/SearchIndexBuilder.hpp"
#include "standalone/index/SearchIndexCheck.hpp"
#include "standalone/index/SearchIndexFormat.hpp"
#include "standalone/search/NameSearch.hpp"
#include "tests/support/StoreDatabases.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace tessgen::standalone {
namespace {

using test::TemporaryFolder;

namespace fs = std::filesystem;

const EntryFilter every{[](std::string_view) { return true; }};

struct stat statusOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

timespec after(const timespec& time, long seconds, long nanoseconds = 0) {
    constexpr long second = 1'000'000'000;
    const long all = (time.tv_sec + seconds) * second + time.tv_nsec + nanoseconds;
    return {all / second, all % second};
}

Installation installationIn(const TemporaryFolder& folder) {
    Installation installation;
    installation.root = folder.path();
    installation.searchPath = {folder.path("w/a"), folder.path("w/b"), folder.path("w/none")};
    installation.extensions = {"vk", "vkx", "a.vk"};
    installation.searchIndex = folder.path("search.cdb");
    return installation;
}

std::vector<std::string> answers(const Installation& installation, const FileTree& files) {
    const NameSearch search(installation, files);
    std::vector<std::string> all;
    for (const char* name : {"f", "g", "C.f", "none"}) {
        all.push_back(test::outcome(search, name));
    }
    return all;
}

TEST(FolderStamp, HasTheFoldersIdentityAndTimes) {
    struct stat status {};
    status.st_dev = 1;
    status.st_ino = 2;
    status.st_mtim = {3, 4};
    status.st_ctim = {5, 6};
    EXPECT_EQ(stampOf(status), (FolderStamp{1, 2, 3, 4, 5, 6}));
}

TEST(FolderStamp, IsNotBelievedOnDisksWithoutTheTimeOfTheInode) {
    struct stat changed {};
    changed.st_ctim.tv_sec = 1;
    constexpr std::uint32_t overlay = 0x794C7630;
    for (const std::uint32_t disk : {0xEF53U, overlay}) {
        EXPECT_TRUE(hasReliableTimestamps({changed, disk, true})) << std::hex << disk;
        EXPECT_FALSE(hasReliableTimestamps({{}, disk, true})) << std::hex << disk;
    }
    for (const std::uint32_t disk : {0x4D44U, 0x2011BAB0U, 0x9660U, 0x73717368U, 0xE0F5E1E2U}) {
        EXPECT_FALSE(hasReliableTimestamps({changed, disk, true})) << std::hex << disk;
    }
}

TEST(SearchIndexBuilder, LeavesOutWhatMayChangeUnseen) {
    const TemporaryFolder folder;
    folder.write("w/a/f.vk");
    const auto installation = installationIn(folder);
    const auto foldersAt = [&](const timespec& now) {
        return buildSearchIndex(installation, *installation.searchIndex, [&now] { return now; }).folders;
    };
    const auto changed = [&] { return statusOf(folder.path("w/a")).st_ctim; };
    EXPECT_EQ(foldersAt(after(changed(), 2, -1)), 0);
    EXPECT_EQ(foldersAt(after(changed(), 2)), 1);
    EXPECT_EQ(foldersAt(after(changed(), -3600)), 0);
    using std::chrono::file_clock;
    fs::last_write_time(folder.path("w/a"), file_clock::now() + std::chrono::hours(1));
    EXPECT_EQ(foldersAt(after(changed(), 10)), 0);
    fs::last_write_time(folder.path("w/a"), file_clock::from_sys(std::chrono::sys_seconds()));
    EXPECT_EQ(foldersAt(after(changed(), 10)), 1);
}

constexpr uid_t nobody = 65534;

// Gives the folder an access list by which all but `nobody` may list it; its mode then says that all may. In the form
// of linux/posix_acl_xattr.h. False where the disk knows no such lists.
bool keepNobodyOut(const std::string& folder) {
    std::string list;
    appendNumber(list, 2); // the version
    constexpr std::uint32_t all = 0xFFFFFFFF;
    for (const auto& [tag, rights, user] :
         {std::array{1U, 7U, all}, {2U, 0U, nobody}, {4U, 5U, all}, {16U, 5U, all}, {32U, 5U, all}}) {
        appendNumber(list, tag | rights << 16U);
        appendNumber(list, user);
    }
    return setxattr(folder.c_str(), "system.posix_acl_access", list.data(), list.size(), 0) == 0;
}

// An index that root built tells others nothing of a folder that they may not list.
TEST(IndexedFileTree, DoesNotServeDeniedFolders) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can be another user";
    }
    for (const auto& [below, byAccessList] :
         {std::pair("w/b", false), {"w/b", true}, {"w/b/@C", false}, {"w/b/@C", true}}) {
        const TemporaryFolder folder;
        folder.write("w/a/f.vk");
        folder.write("w/b/@C/f.vk");
        fs::permissions(folder.path(), fs::perms{0755});
        const auto denied = folder.path(below);
        fs::permissions(denied, fs::perms{byAccessList ? 0755U : 0711U});
        if (byAccessList && !keepNobodyOut(denied)) {
            continue; // the disk knows no access lists
        }
        const auto installation = installationIn(folder);
        buildSearchIndex(installation, *installation.searchIndex, test::later);
        const SearchIndex index(*installation.searchIndex);
        const RealFileTree disk;
        const IndexedFileTree indexed(&index, disk);
        ASSERT_EQ(seteuid(nobody), 0);
        const auto readable = indexed.entries(folder.path("w/a"), every);
        const auto byIndex = test::outcome(NameSearch(installation, indexed), "none");
        const auto byDisk = test::outcome(NameSearch(installation, disk), "none");
        ASSERT_EQ(seteuid(0), 0);
        EXPECT_EQ(readable.value().size(), 1);
        EXPECT_TRUE(byIndex.starts_with("error: " + denied + ": cannot be read: Permission denied")) << byIndex;
        EXPECT_EQ(byDisk, byIndex);
    }
}

TEST(IndexedFileTree, LeavesOutFoldersWithoutTheFilesAsTheDiskDoes) {
    const TemporaryFolder folder;
    for (const auto* file : {"w/a/f.vk", "w/a/@C/f.vk", "w/a/@D/g.vk", "w/a/private/h.vk", "w/a/+p/g.vk"}) {
        folder.write(file);
    }
    const auto installation = installationIn(folder);
    buildSearchIndex(installation, *installation.searchIndex, test::later);
    const SearchIndex index(*installation.searchIndex);
    const RealFileTree disk;
    const std::vector<std::string> files = {"f.vk", "f.vkx"};
    for (const auto& listed : {disk.entries(folder.path("w/a"), {every.accepts, files}),
                               IndexedFileTree(&index, disk).entries(folder.path("w/a"), {every.accepts, files})}) {
        const auto has = [&](const char* name) {
            return std::any_of(listed->begin(), listed->end(), [&](const auto& entry) { return entry.name == name; });
        };
        EXPECT_TRUE(has("@C") && has("+p"));
        EXPECT_FALSE(has("@D") || has("private"));
    }
}

TEST(SearchIndex, NeverGivesAnotherAnswerWhenDamaged) {
    const TemporaryFolder folder;
    for (const auto* file : {"w/a/f.vk", "w/a/@C/f.vk", "w/a/g.vk", "w/b/f.vkx"}) {
        folder.write(file);
    }
    const auto installation = installationIn(folder);
    const auto& file = *installation.searchIndex;
    buildSearchIndex(installation, file, test::later);
    const RealFileTree disk;
    const auto expected = answers(installation, disk);
    std::size_t damages = 0;
    std::size_t errors = 0;
    test::forEachDamage(file, {0x01, 0xFF}, [&](std::size_t /*at*/, const std::string& what) {
        std::vector<std::string> given;
        const auto error = test::errorOf([&] {
            const SearchIndex index(file);
            given = answers(installation, IndexedFileTree(&index, disk));
        });
        bool isTold = error != "no error";
        EXPECT_TRUE(!isTold || error.starts_with(file + ": is ")) << what << ": " << error;
        for (std::size_t i = 0; i < given.size(); ++i) {
            EXPECT_TRUE(given[i] == expected[i] || given[i].starts_with("error: " + file + ": is "))
                << what << ": " << given[i];
            isTold |= given[i] != expected[i];
        }
        ++damages;
        errors += isTold ? 1U : 0U;
        bool isFound = true; // also when the file does not open
        test::errorOf([&] { isFound = checkSearchIndex(file).damages > 0; });
        EXPECT_TRUE(isFound) << what;
    });
    EXPECT_GT(errors, damages / 2);
    EXPECT_EQ(checkSearchIndex(file).damages, 0);
    EXPECT_EQ(checkSearchIndex(file).records, 3);
}

// An index of these folders and their values, whose checksums are right.
std::string craftedIndex(const TemporaryFolder& folder, test::Entries values) {
    const auto count = static_cast<std::uint32_t>(values.size());
    values.emplace_back(databaseInfoKey,
                        encodeInfo({std::u16string(searchIndexKind.magic), searchIndexKind.version, count, u""}));
    for (auto& [key, value] : values) {
        value = test::withChecksum(key, value).second;
    }
    return writeDatabase(folder, values);
}

TEST(SearchIndex, RefusesWhatNoBuildWrites) {
    const TemporaryFolder folder;
    const std::string path = folder.makeFolder("w/a");
    const auto stamp = stampOf(statusOf(path));
    const auto one = encodeValue(encodeFolder(stamp, true, {{"f.vk", FileTree::Kind::file}}), "");
    const auto empty = encodeValue(encodeFolder(stamp, true, {}), "");
    const auto withClass = encodeFolder(stamp, true, {{"@C", FileTree::Kind::folder}});
    for (const std::string& value :
         {one + std::string("f\5\0f.vk", 7), one + std::string("f\0\0", 3), one + "f",
          one.substr(0, one.size() - 7) + std::string("x\4\0f.vk", 7), one.substr(1), empty.substr(0, empty.size() - 1),
          encodeValue(encodeFolder(stamp, true, {{"", FileTree::Kind::file}}), ""), encodeValue(withClass, ""),
          encodeValue(withClass, std::string(noSummary) + "a"), encodeValue(withClass, withClass.summary.substr(1)),
          encodeValue(withClass, withClass.summary.substr(0, withClass.summary.size() - 1))}) {
        const auto file = craftedIndex(folder, {{path, value}});
        EXPECT_EQ(
            test::errorOf([&] { static_cast<void>(SearchIndex(file).entries(path, every)); }),
            file + ": is damaged: a folder is not in the index's format; build it anew with: kelwhich index build");
        EXPECT_EQ(checkSearchIndex(file).damages, 1);
    }
}

TEST(SearchIndexCheck, FindsASummaryThatIsNotOfTheFolder) {
    const TemporaryFolder folder;
    const FolderStamp stamp{1, 2, 3, 4, 5, 6};
    const auto above = encodeFolder(stamp, true, {{"@C", FileTree::Kind::folder}});
    const auto own = encodeFolder(stamp, true, {{"f.vk", FileTree::Kind::file}});
    const auto other = encodeFolder(stamp, true, {{"g.vk", FileTree::Kind::file}}).summary;
    for (const auto& [below, damages] : {std::pair(own.summary, 0U), {other, 1U}, {std::string(noSummary), 1U}}) {
        const auto file = craftedIndex(folder, {{"/w", encodeValue(above, below)}, {"/w/@C", encodeValue(own, "")}});
        EXPECT_EQ(checkSearchIndex(file).damages, damages);
    }
}

} // namespace
} // namespace tessgen::standalone
