#include "standalone/search/SnapshotSearch.hpp"

#include "standalone/files/CachingFileTree.hpp"
#include "tests/support/MemoryFileTree.hpp"
#include "tests/support/Outcome.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tessgen::standalone {
namespace {

using test::MemoryFileTree;
using test::outcome;

// Small disks made by chance, in which names, links and failures collide as often as possible.
class DiskMaker {
public:
    explicit DiskMaker(unsigned seed) : random_(seed) {}

    // In place of what `tree` holds.
    void make(MemoryFileTree& tree, bool mayFail) {
        tree.clear();
        for (auto count = 20 + below(20); count > 0; --count) {
            const std::string folder = folderPath();
            const auto choice = below(8);
            if (choice == 0) { // a link instead of a folder or a file
                const std::string path = folder + "/" + any("f.vk f.vk @f @C +q +p private g.vk");
                tree.link(path, any(". .. /one /two/@C /one/f.vk nowhere +p @f"));
                if (mayFail && below(4) == 0) {
                    tree.fail(path, EACCES);
                }
            } else if (choice == 1) {
                tree.add(folder + "/" + any("f.vk @f +q private g.a.vk"), FileTree::Kind::other);
            } else {
                tree.add(folder + "/" + any("f f f g g q C @f +q  \xFF g.h")
                             + any(".vk .vk .vk .vkx .a.vk .txt  .vk.vk"),
                         FileTree::Kind::file);
            }
            if (mayFail && below(40) == 0) {
                tree.fail(folder, EACCES);
            }
        }
    }

private:
    std::size_t below(std::size_t bound) { return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random_); }
    // One of the words; two spaces have an empty one between them.
    std::string any(std::string_view words) {
        const auto all = split(words, ' ');
        return all[below(all.size())];
    }

    std::string folderPath() {
        std::string path = any("/one /one /two");
        for (auto depth = below(8) / 2; depth > 0; --depth) {
            path += "/"
                    + any("@f @f @C @C @a.b @ @\xF0\x9F\x98\x80 @\xEE\x80\x80 @\xFF +p +p +p +q +q +f + +a.b +\xFF "
                          "private f.vk other");
        }
        return path;
    }

    std::mt19937 random_;
};

std::vector<std::string> names() {
    std::vector<std::string> all = split("/one/f.vk /one/@C/g.vk +p/f @C/f.vk private/f  . f. .f p..f", ' ');
    for (const auto& first : split("f g q p C @f +q", ' ')) {
        for (const auto& rest :
             split(" .f .g .q .p .C .@f .+q .p.f .p.g .q.f .f.f .p.C .f.C .p.p.f .q.q.g .f.f.C", ' ')) {
            all.push_back(first + rest);
        }
    }
    return all;
}

Installation installation() {
    Installation made;
    made.searchPath = {"/one", "/none", "/two", "/one/+p", "/one"};
    made.extensions = {"vkx", "vk", "a.vk", "vk"};
    made.builtins = {
        {u"g", u"C", false}, {u"f", u"", false}, {u"g", u"", false}, {u"C", u"C", true}, {u"p.f", u"", false}};
    return made;
}

// A snapshot answers as the disk did when it was taken, also after the disk changed.
TEST(SnapshotSearch, AnswersAsTheDiskDidWhenItWasTaken) {
    const Installation world = installation();
    const auto all = names();
    std::size_t found = 0;
    std::size_t failed = 0;
    std::size_t changed = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        MemoryFileTree tree;
        DiskMaker(seed).make(tree, seed % 2 == 1);
        const SnapshotSearch snapshot(world, tree);
        std::vector<std::string> before;
        for (const std::string& name : all) {
            before.push_back(outcome(NameSearch(world, tree), name));
            ASSERT_EQ(outcome(snapshot, name), before.back()) << "seed " << seed << ", " << name;
            found += before.back().starts_with('/') ? 1U : 0U;
            failed += before.back().starts_with("error: ") ? 1U : 0U;
        }
        DiskMaker(seed + 1000).make(tree, true);
        for (std::size_t i = 0; i < all.size(); ++i) {
            ASSERT_EQ(outcome(snapshot, all[i]), before[i]) << "seed " << seed << ", changed, " << all[i];
            changed += outcome(NameSearch(world, tree), all[i]) == before[i] ? 0U : 1U;
        }
    }
    EXPECT_GT(found, 1000U);
    EXPECT_GT(failed, 1000U);
    EXPECT_GT(changed, 1000U);
}

TEST(SnapshotSearch, HasEverySymbolOnce) {
    const MemoryFileTree tree(
        "/w", {"f.vk", "f.vkx", "@C/C.vk", "@C/g.vk", "+p/@D/D.vk", "+p/@D/h.vk", "private/k.vk", "@c.d/m.vk"});
    Installation world;
    world.searchPath = {"/w", "/w"};
    world.extensions = {"vkx", "vk"};
    auto symbols = SnapshotSearch(world, tree).symbols();
    std::sort(symbols.begin(), symbols.end());
    EXPECT_EQ(symbols, split("C C.C C.g f g k m p.D p.D.D p.D.h", ' '));
}

TEST(CachingFileTree, AsksForEachPathOnceUntilItIsFull) {
    MemoryFileTree disk;
    disk.add("/a/f.vk", FileTree::Kind::file);
    disk.add("/c/f.vk", FileTree::Kind::file);
    disk.fail("/b", EACCES);
    const EntryFilter all{[](std::string_view /*name*/) { return true; }};
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

} // namespace
} // namespace tessgen::standalone
