#include "standalone/index/SearchIndex.hpp"

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

struct stat statusOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

timespec after(timespec time, long seconds, long nanoseconds = 0) {
    constexpr long second = 1'000'000'000;
    time.tv_sec += seconds;
    time.tv_nsec += nanoseconds;
    time.tv_sec += time.tv_nsec < 0 ? -1 : time.tv_nsec / second;
    time.tv_nsec += time.tv_nsec < 0 ? second : -(time.tv_nsec / second * second);
    return time;
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

// The disk, which counts how often it lists a folder that is there.
class CountingTree final : public FileTree {
public:
    std::optional<std::vector<Entry>> entries(const std::string& folder, const Filter& wanted) const override {
        auto found = disk_.entries(folder, wanted);
        listed += found ? 1U : 0U;
        return found;
    }
    std::optional<Kind> kindOf(const std::string& path) const override { return disk_.kindOf(path); }

    mutable std::size_t listed = 0;

private:
    RealFileTree disk_;
};

// The places of every name, or the error, in the live and in the fixed view.
std::vector<std::string> answers(const Installation& installation, const FileTree& files) {
    std::vector<std::string> lines;
    const NameSearch live(installation, files);
    const SnapshotSearch fixed(installation, files);
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
        ask(fixed, name);
    }
    return lines;
}

// A small tree that changes by chance, most changes in the few places that the names above lead to.
class ChangingTree {
public:
    ChangingTree(const TemporaryFolder& folder, unsigned seed) : folder_(folder), random_(seed) {
        // Two folders that differ in nothing but what they hold and who they are.
        do {
            fs::remove_all(folder.path("twins"));
            const auto file = folder.write("twins/1/f.vk");
            const auto other = folder.write("twins/2/g.vk");
            // Twice, since the first time after it was looked at, the system gives a time that is its own.
            for (const auto* twin : {"twins/1", "twins/2", "twins/1", "twins/2"}) {
                setModified(folder.path(twin), {1'000'000'000, 0});
            }
        } while (!areTwins(statusOf(folder.path("twins/1")), statusOf(folder.path("twins/2"))));
        for (int count = 0; count < 25; ++count) {
            change();
        }
    }

    // Returns what it did.
    std::string change() {
        const auto folder = path(anyFolder());
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
        case 4: {
            const auto to = path(anyFolder()) + "/f.vk";
            fs::rename(file, to, ignored);
            return "rename " + file + " to " + to;
        }
        case 5: {
            const auto to = path(anyFolder());
            fs::rename(folder, to + "-", ignored);
            fs::rename(to, folder, ignored);
            fs::rename(to + "-", to, ignored);
            return "swap " + folder + " and " + to;
        }
        case 6: {
            fs::remove_all(file, ignored);
            const auto to = any({"f.vk", "g.vk", "..", "nowhere"});
            if (below(2) == 0) {
                fs::create_symlink(to, file, ignored);
            } else {
                fs::create_directory(file, ignored);
            }
            return "link or folder " + file;
        }
        case 7: { // another folder with the same files
            fs::copy(folder, folder + "-", fs::copy_options::recursive, ignored);
            fs::remove_all(folder, ignored);
            fs::rename(folder + "-", folder, ignored);
            return "renew " + folder;
        }
        default: { // a link to a twin, or to the other twin
            const auto to = any({"twins/1", "twins/2"});
            fs::remove_all(folder, ignored); // only the link, if it is one
            fs::create_directory_symlink(folder_.path(to), folder, ignored);
            return "link " + folder + " to " + to;
        }
        }
    }

    static bool areTwins(const struct stat& one, const struct stat& two) {
        const auto a = stampOf(one);
        const auto b = stampOf(two);
        return std::equal(a.begin() + 2, a.end(), b.begin() + 2);
    }

    std::size_t below(std::size_t bound) { return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random_); }
    std::string any(const std::vector<std::string>& texts) { return texts[below(texts.size())]; }
    std::string anyFolder() {
        return any({"a", "a", "a/@C", "a/@C", "a/@f", "a/private", "a/+p", "a/+p/@C", "a/+p/+q", "b", "b", "b/@C"});
    }
    std::string path(const std::string& folder) const { return folder_.path("w/" + folder); }

    const TemporaryFolder& folder_;
    std::mt19937 random_;
};

TEST(IndexedFileTree, AnswersAsTheDiskDoesWhateverChanged) {
    std::size_t compared = 0;
    std::size_t found = 0;
    CountingTree disk;
    CountingTree behindIndex;
    for (unsigned seed = 0; seed < 120; ++seed) {
        const TemporaryFolder folder;
        const auto installation = installationIn(folder);
        ChangingTree tree(folder, seed);
        buildSearchIndex(installation, *installation.searchIndex, later);
        const SearchIndex index(*installation.searchIndex);
        const IndexedFileTree indexed(&index, behindIndex);
        waitForClock(folder);
        std::string changes;
        for (int change = 0; change < 5; ++change) {
            const auto expected = answers(installation, disk);
            ASSERT_EQ(answers(installation, indexed), expected) << "seed " << seed << changes;
            compared += expected.size();
            found += static_cast<std::size_t>(
                std::count_if(expected.begin(), expected.end(), [](const auto& line) { return !line.empty(); }));
            changes.append("\n  ").append(tree.change());
        }
    }
    std::cout << "indexed: " << compared << " answers alike, " << found << " not empty; " << behindIndex.listed
              << " folders listed behind the index, " << disk.listed << " without it\n";
    EXPECT_GT(found, compared / 4);
    EXPECT_LT(behindIndex.listed, disk.listed / 2);
    EXPECT_GT(behindIndex.listed, disk.listed / 20);
}

TEST(SearchIndexBuilder, LeavesOutWhatMayChangeUnseen) {
    const TemporaryFolder folder;
    folder.write("w/a/f.vk");
    const auto installation = installationIn(folder);
    const auto foldersAt = [&](const timespec& now) {
        return buildSearchIndex(installation, *installation.searchIndex, [&now] { return now; }).folders;
    };
    const auto changed = statusOf(folder.path("w/a")).st_ctim;
    EXPECT_EQ(foldersAt(after(changed, 2, -1)), 0);
    EXPECT_EQ(foldersAt(after(changed, 2)), 1);
    EXPECT_EQ(foldersAt(after(changed, -3600)), 0);
    setModified(folder.path("w/a"), after(changed, 3600));
    EXPECT_EQ(foldersAt(after(changed, 10)), 0);
    setModified(folder.path("w/a"), {0, 0});
    EXPECT_EQ(foldersAt(after(changed, 10)), 1);
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

class DeniedFolder : public testing::TestWithParam<bool> {};

TEST_P(DeniedFolder, IsNotToldOf) {
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
    const auto all = [](std::string_view) { return true; };
    const auto readable = indexed.entries(folder.path("w/a"), all);
    const auto error = test::errorOf([&] { indexed.entries(folder.path("w/b"), all); });
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
    const auto check = [&](const std::string& content, const std::string& what) {
        folder.write("search.cdb", content);
        ++damages;
        const auto error = test::errorOf([&] {
            const SearchIndex index(file);
            const auto given = answers(installation, IndexedFileTree(&index, disk));
            for (std::size_t i = 0; i < expected.size(); ++i) {
                if (given[i].find(" is damaged: ") == std::string::npos) {
                    EXPECT_EQ(given[i], expected[i]) << what;
                } else {
                    throw std::runtime_error(given[i]);
                }
            }
        });
        errors += error == "no error" ? 0U : 1U;
        EXPECT_NE(test::errorOf([&] {
                      if (checkSearchIndex(file).damages > 0) {
                          throw std::runtime_error("found");
                      }
                  }),
                  "no error")
            << what;
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
    EXPECT_EQ(checkSearchIndex(file).damages, 0);
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
            test::errorOf([&] { SearchIndex(file).entries(path, [](std::string_view) { return true; }); }),
            file + ": is damaged: a folder is not in the index's format; build it anew with: kelwhich index build");
        EXPECT_EQ(checkSearchIndex(file).damages, 1);
    }
    const auto store = test::buildStore(folder, test::recordsOfEveryForm);
    EXPECT_EQ(test::errorOf([&] { const SearchIndex index(store); }),
              store + ": is not a search index; build it anew with: kelwhich index build");
}

} // namespace
} // namespace tessgen::standalone
