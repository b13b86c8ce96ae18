// Every view of a disk that changes at random answers as the disk itself: the watched one, and the live and the
// snapshot of it over an index that was built some changes before.
#include "standalone/index/SearchIndexBuilder.hpp"
#include "standalone/index/SearchIndexCheck.hpp"
#include "standalone/search/SnapshotSearch.hpp"
#include "standalone/watch/WatchedView.hpp"
#include "tests/support/SupportStores.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::standalone {
namespace {

using test::outcome;

namespace fs = std::filesystem;

// An installation with a search folder below a package and class folders, one below another one, an absent one and one
// below a link.
class Tree {
public:
    Tree() {
        installation.root = folder.makeFolder("h");
        installation.extensions = {"vkx", "vk", "a.vk"};
        installation.builtins = {{u"f", u"", false}};
        installation.searchPath = {path("one"), path("one/+p"), path("none/two"), path("one"), path("linked/@C")};
        folder.makeFolder("h/one");
        folder.makeFolder("spare/@C");
        folder.link("h/linked", "../spare");
    }
    std::string path(const std::string& below) const { return folder.path("h/" + below); }

    test::TemporaryFolder folder;
    Installation installation;
};

// Changes a tree at random, where names, folders and links collide as often as possible.
class Changer {
public:
    explicit Changer(const Tree& tree) : tree_(tree) {}

    // Returns which kind of change, of `kinds`, whether or not it could be made. Every other time the folder keeps the
    // time of its last change.
    std::size_t change() {
        std::error_code absent;
        const auto folder = place();
        const auto before = fs::last_write_time(folder, absent);
        const auto kind = below(kinds);
        change(kind, folder);
        if (!absent && below(2) == 0) {
            fs::last_write_time(folder, before, absent); // it may be gone
        }
        return kind;
    }
    static constexpr std::size_t kinds = 10;

private:
    void change(std::size_t kind, const std::string& folder) {
        std::error_code ignored; // what is not there, or is in the way, changes nothing
        const auto other = place();
        std::string from; // drawn by itself: the compiler chooses which argument of a call comes first
        switch (kind) {
        case 0:
        case 1:
            fs::create_directories(folder, ignored);
            std::ofstream(folder + "/" + any("f.vk f.vk f.vkx f.a.vk g.vk C.vk f.txt private +p")).flush();
            break;
        case 2:
            fs::create_directories(folder + "/@f/private", ignored);
            fs::create_directories(folder + "/+q/@C", ignored);
            std::ofstream(folder + any("/@f /@f/private /+q /+q/@C") + "/f.vk").flush();
            break;
        case 3:
            fs::remove_all(folder + "/" + any("f.vk f.vkx g.vk @f @C +p private +q"), ignored);
            break;
        case 4:
            from = folder + "/" + any("f.vk g.vk @f +p private");
            fs::rename(from, other + "/" + any("f.vk f.vkx @f @C +q x"), ignored);
            break;
        case 5:
            from = folder + "/" + any("f.vk @f @C +p +q private");
            fs::create_symlink(any("f.vk ../one . ../@C nowhere"), from, ignored);
            break;
        case 6: // folders above
            move(tree_.path("one"), tree_.path(any("none moved")));
            break;
        case 7:
            move(tree_.folder.path("h"), tree_.folder.path("elsewhere"));
            break;
        case 8:
            fs::remove(tree_.path("linked"), ignored);
            fs::create_symlink(any("../spare one none"), tree_.path("linked"), ignored);
            break;
        default: // two folders change places
            fs::rename(folder, other + "-", ignored);
            fs::rename(other, folder, ignored);
            fs::rename(other + "-", other, ignored);
        }
    }

    std::size_t below(std::size_t bound) { return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random_); }
    std::string any(std::string_view words) {
        const auto all = split(words, ' ');
        return all[below(all.size())];
    }
    // The one to the other, in its place, or back.
    void move(std::string from, std::string to) {
        if (below(2) == 0) {
            std::swap(from, to);
        }
        std::error_code ignored;
        if (fs::exists(from)) {
            fs::remove_all(to, ignored);
            fs::rename(from, to, ignored);
        }
    }
    std::string place() {
        const auto searched = any("one one one/+p none/two linked/@C");
        return tree_.path(searched + any("    /@f /@C /+q /private"));
    }

    const Tree& tree_;
    std::mt19937 random_{20261122}; // NOLINT(cert-msc51-cpp): the same changes each time
};

// Builds an index in which every change counts as long past. Returns when the disk's clock has gone on, so that a
// change has another time than those before.
void buildIndex(const Tree& tree, const std::string& file) {
    buildSearchIndex(tree.installation, file, test::later);
    const auto before = fs::last_write_time(tree.folder.write("probe"));
    while (fs::last_write_time(tree.folder.write("probe")) == before) {
    }
}

TEST(Views, AnswerAsTheDiskDoesAfterEachChange) {
    const Tree tree;
    WatchedView watched(tree.installation);
    auto withIndex = tree.installation;
    withIndex.searchIndex = tree.folder.path("search.cdb");
    std::optional<SearchIndex> index;
    const RealFileTree disk;
    const auto names = split("f g C p.f f.f p.f.f q.C.f C.f p.q.f one/f private/f . nosuch", ' ');
    Changer changer(tree);
    std::size_t found = 0;
    std::size_t failed = 0;
    std::size_t indexed = 0;
    std::size_t outdated = 0;
    std::vector<std::string> before(names.size());
    std::vector<std::size_t> changed(Changer::kinds);
    for (int step = 0; step < 2400; ++step) {
        if (step % 4 == 0) {
            buildIndex(tree, *withIndex.searchIndex);
            index.emplace(*withIndex.searchIndex);
        }
        const auto kind = changer.change();
        const bool isRootThere = fs::is_directory(tree.installation.root);
        const NameSearch live(tree.installation, disk);
        const IndexedFileTree files(&*index, disk);
        const NameSearch liveByIndex(tree.installation, files);
        const SnapshotSearch snapshot(tree.installation, files);
        for (std::size_t i = 0; i < names.size(); ++i) {
            const auto where = "step " + std::to_string(step) + ", kind " + std::to_string(kind) + ", " + names[i];
            const auto expected = outcome(live, names[i]);
            ASSERT_EQ(outcome(liveByIndex, names[i]), expected) << where;
            ASSERT_EQ(outcome(snapshot, names[i]), expected) << where;
            const auto answer = outcome(watched, names[i]);
            ASSERT_EQ(isRootThere ? answer : answer.substr(0, 7), isRootThere ? expected : "error: ") << where;
            found += expected.empty() ? 0U : 1U;
            failed += isRootThere ? 0U : 1U;
            changed[kind] += expected != before[i] ? 1U : 0U;
            before[i] = expected;
        }
        const auto use = useOf(*index, withIndex);
        indexed += use.folders;
        outdated += use.changed.size();
    }
    EXPECT_GT(found, 4000U);
    EXPECT_GT(failed, 20U);
    for (std::size_t kind = 0; kind < Changer::kinds; ++kind) {
        EXPECT_GT(changed[kind], 5U) << kind;
    }
    EXPECT_LT(watched.counts().listedAgain, 60000U); // fewer than two folders a question
    EXPECT_LT(outdated, indexed / 2);
    EXPECT_GT(outdated, indexed / 20);
}

} // namespace
} // namespace tessgen::standalone
