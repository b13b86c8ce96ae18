#include "standalone/index/SearchIndex.hpp"

#include "standalone/files/RealFileTree.hpp"
#include "standalone/index/SearchIndexBuilder.hpp"
#include "standalone/index/SearchIndexCheck.hpp"
#include "standalone/index/SearchIndexFormat.hpp"
#include "standalone/search/NameSearch.hpp"
#include "standalone/search/SnapshotSearch.hpp"
#include "standalone/text/Text.hpp"
#include "tests/support/StoreDatabases.hpp"
#include "tests/support/SupportStores.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <random>
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

void setModified(const std::string& path, const timespec& time) {
    const std::array times{timespec{0, UTIME_OMIT}, time};
    utimensat(AT_FDCWD, path.c_str(), times.data(), 0); // a path that is gone stays gone
}

// Waits until the disk's clock has gone on, so that a change has another time than those before.
void waitForClock(const TemporaryFolder& folder) {
    const auto before = statusOf(folder.write("probe")).st_ctim;
    for (auto now = before; now.tv_sec == before.tv_sec && now.tv_nsec == before.tv_nsec;) {
        fs::remove(folder.path("probe"));
        now = statusOf(folder.write("probe")).st_ctim;
    }
}

// As if every change were long past.
timespec later() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return after(now, 10);
}

Installation installationIn(const TemporaryFolder& folder) {
    Installation installation;
    installation.root = folder.path();
    installation.searchPath = {folder.path("w/a"), folder.path("w/b"), folder.path("w/none")};
    installation.extensions = {"vk", "vkx", "a.vk"};
    installation.searchIndex = folder.path("search.cdb");
    return installation;
}

// The places of every name, or the error, in the live view and in a snapshot.
std::vector<std::string> answers(const Installation& installation, const FileTree& files) {
    std::vector<std::string> lines;
    const NameSearch live(installation, files);
    const SnapshotSearch snapshot(installation, files);
    const auto ask = [&lines](const auto& search, const char* name) {
        std::string line;
        const auto error = test::errorOf([&] {
            for (const auto& place : search.find(toUTF16(name).value())) {
                line += toUTF8(place.line).value() + " ";
            }
        });
        lines.push_back(error == "no error" ? line : error);
    };
    for (const char* name : {"f", "g", "C", "C.f", "p.f", "p.C.g", "p.q.f", "none"}) {
        ask(live, name);
        ask(snapshot, name);
    }
    return lines;
}

// A small tree that changes by chance, most changes in the few places that the names above lead to.
class ChangingTree {
public:
    ChangingTree(const TemporaryFolder& folder, unsigned seed) : folder_(folder), random_(seed) {
        folder.write("other/f.vk");
        for (int count = 0; count < 25; ++count) {
            change();
        }
    }

    // Returns what it did.
    std::string change() {
        const auto folder = anyFolder();
        const auto file = folder + "/" + any({"f.vk", "f.vk", "f.vkx", "f.a.vk", "g.vk", "C.vk", "f.txt"});
        struct stat before {};
        const bool isThere = stat(folder.c_str(), &before) == 0;
        auto done = change(folder, file);
        if (isThere && below(2) == 0) {
            setModified(folder, before.st_mtim);
            done += ", time put back";
        }
        return done;
    }

private:
    std::string change(const std::string& folder, const std::string& file) {
        std::error_code ignored; // what cannot be done is not done
        const auto other = anyFolder();
        switch (below(9)) {
        case 0:
        case 1:
        case 2:
            fs::create_directories(folder, ignored);
            close(open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
            return "write " + file;
        case 3:
            fs::remove(file, ignored);
            return "remove " + file;
        case 4:
            fs::rename(file, other + "/f.vk", ignored);
            return "rename " + file + " into " + other;
        case 5:
            fs::rename(folder, other + "-", ignored);
            fs::rename(other, folder, ignored);
            fs::rename(other + "-", other, ignored);
            return "swap " + folder + " and " + other;
        case 6:
            fs::remove_all(file, ignored);
            if (below(2) == 0) {
                fs::create_symlink(any({"f.vk", "g.vk", "..", "nowhere"}), file, ignored);
            } else {
                fs::create_directory(file, ignored);
            }
            return "link or folder " + file;
        case 7: // another folder with the same files
            fs::copy(folder, folder + "-", fs::copy_options::recursive, ignored);
            fs::remove_all(folder, ignored);
            fs::rename(folder + "-", folder, ignored);
            return "renew " + folder;
        default:
            fs::remove_all(folder, ignored);
            fs::create_directory_symlink(folder_.path("other"), folder, ignored);
            return "link " + folder;
        }
    }

    std::size_t below(std::size_t bound) { return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random_); }
    std::string any(const std::vector<std::string>& texts) { return texts[below(texts.size())]; }
    std::string anyFolder() {
        return folder_.path("w/")
               + any({"a", "a", "a/@C", "a/@C", "a/@f", "a/private", "a/+p", "a/+p/@C", "a/+p/+q", "b", "b", "b/@C"});
    }

    const TemporaryFolder& folder_;
    std::mt19937 random_;
};

TEST(IndexedFileTree, AnswersAsTheDiskDoesWhateverChanged) {
    std::size_t compared = 0;
    std::size_t found = 0;
    std::size_t folders = 0;
    std::size_t listed = 0;
    const RealFileTree disk;
    for (unsigned seed = 0; seed < 120; ++seed) {
        const TemporaryFolder folder;
        const auto installation = installationIn(folder);
        ChangingTree tree(folder, seed);
        buildSearchIndex(installation, *installation.searchIndex, later);
        const SearchIndex index(*installation.searchIndex);
        waitForClock(folder);
        std::string changes;
        for (int change = 0; change < 5; ++change) {
            const auto expected = answers(installation, disk);
            ASSERT_EQ(answers(installation, IndexedFileTree(&index, disk)), expected) << "seed " << seed << changes;
            compared += expected.size();
            found += static_cast<std::size_t>(
                std::count_if(expected.begin(), expected.end(), [](const auto& line) { return !line.empty(); }));
            const auto use = useOf(index, installation);
            folders += use.folders;
            listed += use.changed.size();
            changes.append("\n  ").append(tree.change());
        }
    }
    std::cout << "indexed: " << compared << " answers alike, " << found << " not empty; " << listed << " of " << folders
              << " folders listed behind the index\n";
    EXPECT_GT(found, compared / 4);
    EXPECT_LT(listed, folders / 2);
    EXPECT_GT(listed, folders / 20);
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
    setModified(folder.path("w/a"), after(changed(), 3600));
    EXPECT_EQ(foldersAt(after(changed(), 10)), 0);
    setModified(folder.path("w/a"), {0, 0});
    EXPECT_EQ(foldersAt(after(changed(), 10)), 1);
    folder.write("w/b/g.vk");
    auto inside = installation;
    inside.searchIndex = folder.path("w/b/search.cdb");
    const auto built = buildSearchIndex(inside, *inside.searchIndex, later);
    EXPECT_EQ(built.folders, 1);
    EXPECT_EQ(built.leftOut, std::vector{folder.path("w/b: changes whenever the index is written to it")});
    EXPECT_EQ(useOf(SearchIndex(*inside.searchIndex), inside).changed, std::vector<std::string>());
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
class DeniedFolder : public testing::TestWithParam<bool> {};

TEST_P(DeniedFolder, IsNotServedByTheIndex) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can be another user";
    }
    const TemporaryFolder folder;
    folder.write("w/a/f.vk");
    folder.write("w/b/f.vk");
    fs::permissions(folder.path(), fs::perms{0755});
    fs::permissions(folder.path("w/b"), fs::perms{GetParam() ? 0755U : 0711U});
    if (GetParam() && !keepNobodyOut(folder.path("w/b"))) {
        GTEST_SKIP() << "the disk knows no access lists";
    }
    const auto installation = installationIn(folder);
    buildSearchIndex(installation, *installation.searchIndex, later);
    const SearchIndex index(*installation.searchIndex);
    const RealFileTree disk;
    const IndexedFileTree indexed(&index, disk);
    ASSERT_EQ(seteuid(nobody), 0);
    const auto readable = indexed.entries(folder.path("w/a"), every);
    const auto error = test::errorOf([&] { static_cast<void>(indexed.entries(folder.path("w/b"), every)); });
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_EQ(readable.value().size(), 1);
    EXPECT_EQ(error.substr(0, error.rfind(';')), folder.path("w/b: cannot be read: Permission denied"));
}

INSTANTIATE_TEST_SUITE_P(WithoutAndWithAccessList, DeniedFolder, testing::Bool());

// Every byte of an index changed, and every length that it can be cut to.
TEST(SearchIndex, NeverGivesAnotherAnswerWhenDamaged) {
    const TemporaryFolder folder;
    for (const auto* file : {"w/a/f.vk", "w/a/@C/f.vk", "w/a/g.vk", "w/b/f.vkx"}) {
        folder.write(file);
    }
    const auto installation = installationIn(folder);
    const auto& file = *installation.searchIndex;
    buildSearchIndex(installation, file, later);
    const auto whole = test::contentOf(file);
    const RealFileTree disk;
    const auto expected = answers(installation, disk);
    std::size_t errors = 0;
    std::size_t damages = 0;
    const auto isFound = [&file] {
        bool found = true; // also when the file does not open
        test::errorOf([&] { found = checkSearchIndex(file).damages > 0; });
        return found;
    };
    const auto check = [&](const std::string& content, const std::string& what) {
        folder.write("search.cdb", content);
        ++damages;
        bool fails = false;
        const auto error = test::errorOf([&] {
            const SearchIndex index(file);
            const auto given = answers(installation, IndexedFileTree(&index, disk));
            for (std::size_t i = 0; i < expected.size(); ++i) {
                const bool isError = given[i].find(" is damaged: ") != std::string::npos;
                EXPECT_TRUE(isError || given[i] == expected[i]) << what << ": " << given[i];
                fails = fails || isError;
            }
        });
        errors += fails || error != "no error" ? 1U : 0U;
        EXPECT_TRUE(isFound()) << what;
    };
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const int bits : {1, 0xFF}) {
            auto content = whole;
            content[at] = static_cast<char>(content[at] ^ bits);
            check(content, "byte " + std::to_string(at));
        }
        check(whole.substr(0, at), "cut to " + std::to_string(at));
    }
    folder.write("search.cdb", whole);
    EXPECT_FALSE(isFound());
    EXPECT_EQ(checkSearchIndex(file).records, 3);
    std::cout << "damaged: " << damages << " times, found by verify each time, by the questions " << errors
              << " times\n";
    EXPECT_GT(errors, damages / 2);
}

TEST(SearchIndex, RefusesWhatNoBuildWrites) {
    const TemporaryFolder folder;
    const std::string path = folder.makeFolder("w/a");
    const auto info = encodeInfo({std::u16string(searchIndexKind.magic), searchIndexKind.version, 1, u""});
    const auto stamp = stampOf(statusOf(path));
    const auto one = encodeFolder(stamp, true, {{"f.vk", FileTree::Kind::file}});
    const auto empty = encodeFolder(stamp, true, {});
    for (const std::string& value :
         {one + std::string("f\5\0f.vk", 7), one + std::string("f\0\0", 3), one + "f",
          one.substr(0, one.size() - 7) + std::string("x\4\0f.vk", 7), one.substr(1), empty.substr(0, empty.size() - 1),
          encodeFolder(stamp, true, {{"", FileTree::Kind::file}})}) {
        const auto file = writeDatabase(
            folder, {test::withChecksum(path, value), test::withChecksum(std::string(databaseInfoKey), info)});
        EXPECT_EQ(
            test::errorOf([&] { static_cast<void>(SearchIndex(file).entries(path, every)); }),
            file + ": is damaged: a folder is not in the index's format; build it anew with: kelwhich index build");
        EXPECT_EQ(checkSearchIndex(file).damages, 1);
    }
    const auto store = test::buildStore(folder, test::recordsOfEveryForm);
    EXPECT_EQ(test::errorOf([&] { const SearchIndex index(store); }),
              store + ": holds a support store, not a search index; name another file");
}

} // namespace
} // namespace tessgen::standalone
