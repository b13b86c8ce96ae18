#include "standalone/watch/WatchedView.hpp"

#include "standalone/files/RealFileTree.hpp"
#include "standalone/text/Text.hpp"
#include "tests/support/SupportStores.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::standalone {
namespace {

namespace fs = std::filesystem;

// An installation with a search folder below a package and class folders, one below another one, an absent one and one
// below a link.
class Tree {
public:
    Tree() {
        installation.root = folder.makeFolder("h");
        installation.extensions = {"vkx", "vk"};
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

template <typename Search>
std::string outcome(Search& search, const std::string& name) {
    std::string text;
    const auto error = test::errorOf([&] {
        for (const FoundPlace& place : search.find(toUTF16(name).value())) {
            text += toUTF8(place.line).value() + "\n";
        }
    });
    return error == "no error" ? text : "error: " + error;
}

// Changes a tree at random, where names, folders and links collide as often as possible.
class Changer {
public:
    explicit Changer(const Tree& tree) : tree_(tree) {}

    // Returns which kind of change, of `kinds`, whether or not it could be made.
    std::size_t change() {
        std::error_code ignored; // what is not there, or is in the way, changes nothing
        const auto kind = below(kinds);
        const std::string folder = place();
        switch (kind) {
        case 0:
        case 1:
            fs::create_directories(folder, ignored);
            std::ofstream(folder + "/" + any("f.vk f.vk f.vkx g.vk C.vk f.txt private +p")).flush();
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
            fs::rename(folder + "/" + any("f.vk g.vk @f +p private"), place() + "/" + any("f.vk f.vkx @f @C +q x"),
                       ignored);
            break;
        case 5:
            fs::create_symlink(any("f.vk ../one . ../@C nowhere"), folder + "/" + any("f.vk @f @C +p +q private"),
                               ignored);
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
        default: // rights of a folder: for root they change nothing, but are told all the same
            chmod(folder.c_str(), below(2) == 0 ? 0 : 0755);
        }
        return kind;
    }
    static constexpr std::size_t kinds = 10;

private:
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
        return tree_.path(any("one one one/+p none/two linked/@C") + any("    /@f /@C /+q /private"));
    }

    const Tree& tree_;
    std::mt19937 random_{20261122}; // NOLINT(cert-msc51-cpp): the same changes each time
};

// After each change every name is answered as the disk answers it.
TEST(WatchedView, AnswersAsTheDiskDoesAfterEachChange) {
    const Tree tree;
    WatchedView view(tree.installation);
    const auto names = split("f g C p.f f.f p.f.f q.C.f C.f p.q.f one/f private/f . nosuch", ' ');
    Changer changer(tree);
    std::size_t found = 0;
    std::size_t failed = 0;
    std::vector<std::string> before(names.size());
    std::vector<std::size_t> changed(Changer::kinds);
    for (int step = 0; step < 5000; ++step) {
        const auto kind = changer.change();
        const bool isRootThere = fs::is_directory(tree.installation.root);
        const RealFileTree disk;
        NameSearch live(tree.installation, disk);
        for (std::size_t i = 0; i < names.size(); ++i) {
            const auto expected = isRootThere ? outcome(live, names[i]) : "error: no root";
            const auto got = outcome(view, names[i]);
            ASSERT_EQ(isRootThere ? got : got.substr(0, 7), isRootThere ? expected : "error: ")
                << "step " << step << ", kind " << kind << ", " << names[i];
            found += expected.empty() ? 0U : 1U;
            failed += expected.starts_with("error: ") ? 1U : 0U;
            changed[kind] += expected != before[i] ? 1U : 0U;
            before[i] = expected;
        }
    }
    EXPECT_GT(found, 4000U);
    EXPECT_GT(failed, 20U);
    for (std::size_t kind = 0; kind + 1 < changed.size(); ++kind) { // the last depends on who runs it
        EXPECT_GT(changed[kind], 5U) << kind;
    }
    EXPECT_LT(view.counts().listedAgain, 60000U); // fewer than two folders a question
}

TEST(WatchedView, ListsOnlyTheFolderThatChanged) {
    const test::TemporaryFolder folder;
    Installation world;
    world.root = folder.path();
    world.extensions = {"vk"};
    for (const std::string name : {"a", "b", "c"}) {
        folder.write(name + "/@C/f.vk");
        folder.write(name + "/private/f.vk");
        world.searchPath.push_back(folder.path(name));
    }
    WatchedView view(world);
    const auto listedAgain = [&](const std::string& changedFile) {
        const auto before = view.counts().listedAgain;
        if (!changedFile.empty()) {
            folder.write(changedFile);
        }
        EXPECT_FALSE(view.find(u"f").empty());
        return view.counts().listedAgain - before;
    };
    EXPECT_EQ(view.counts().listed, 9U);
    EXPECT_EQ(listedAgain(""), 0U);
    EXPECT_EQ(listedAgain("b/@C/g.vk"), 1U);
    EXPECT_EQ(listedAgain("b/@C/g.vk"), 0U); // written anew: the listing is the same
    EXPECT_EQ(listedAgain("b/g.txt"), 0U);   // no name leads there
    EXPECT_EQ(listedAgain("b/@D/f.vk"), 2U); // the new folder and the one above
    EXPECT_EQ(view.find(u"f").size(), 7U);
    EXPECT_EQ(view.counts().notWatched, (std::array<std::size_t, notWatchedCount>()));
}

TEST(WatchedView, ListsEverythingAnewWhenTheSystemLosesChanges) {
    const test::TemporaryFolder folder;
    Installation world;
    world.root = folder.path();
    world.extensions = {"vk"};
    world.searchPath = {folder.makeFolder("a")};
    WatchedView view(world);
    std::size_t most = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> most;
    for (std::size_t i = 0; i <= most; ++i) { // two changes each
        const auto file = folder.write("a/" + std::to_string(i % 2) + ".txt");
        fs::remove(file);
    }
    folder.write("a/f.vk");
    EXPECT_EQ(view.find(u"f").size(), 1U);
    EXPECT_EQ(view.counts().lostQueues, 1U);
    folder.write("a/g.vk");
    EXPECT_EQ(view.find(u"g").size(), 1U);
    EXPECT_EQ(view.counts().lostQueues, 1U);
}

// No system call takes such a path, and it may lie below more folders than a thread's stack can bear.
TEST(WatchedView, AsksTheDiskForAPathOfAnyLength) {
    const test::TemporaryFolder folder;
    Installation world;
    world.root = folder.path();
    world.extensions = {"vk"};
    std::string path = folder.path();
    while (path.size() < 1000000) {
        path += "/a";
    }
    world.searchPath = {path};
    WatchedView view(world);
    const RealFileTree disk;
    NameSearch live(world, disk);
    EXPECT_EQ(outcome(view, "f"), outcome(live, "f"));
    EXPECT_FALSE(view.watchesAll());
}

// A store that was replaced counts from the next question on; one that cannot be opened is an error until it can.
TEST(WatchedView, OpensTheStoreAnewAndTellsOfTheManifest) {
    const test::TemporaryFolder folder;
    Installation world;
    world.root = folder.makeFolder("h");
    world.manifest = folder.write("installation.json", "{}");
    const auto build = [&](const std::string& name) {
        const auto records =
            folder.write("records", R"({"path":")" + folder.path("h/" + name) + R"(","symbol":")" + name + "\"}\n");
        buildSupportStore(records, folder.path("s/store"), world.root);
    };
    world.supportStore = folder.path("s/store");
    folder.makeFolder("s");
    build("f");
    WatchedView view(world);
    EXPECT_EQ(view.store()->findBySymbol(u"f").size(), 1U);
    build("g");
    EXPECT_EQ(view.store()->findBySymbol(u"g").size(), 1U);
    fs::rename(folder.path("s"), folder.path("t"));
    EXPECT_NE(test::errorOf([&] { (void)view.store(); }), "no error");
    EXPECT_NE(test::errorOf([&] { (void)view.store(); }), "no error");
    fs::rename(folder.path("t"), folder.path("s"));
    const auto store = view.store();
    EXPECT_EQ(store->findBySymbol(u"g").size(), 1U);
    EXPECT_EQ(view.store(), store);
    const std::array<timespec, 2> longAgo{}; // told as other rights are, for which it may no longer be readable
    utimensat(AT_FDCWD, world.supportStore->c_str(), longAgo.data(), 0);
    EXPECT_NE(view.store(), store);

    EXPECT_TRUE(view.watchesAll());
    folder.link("linked", "s");
    world.supportStore = folder.path("linked/store");
    EXPECT_FALSE(WatchedView(world).watchesAll());

    EXPECT_FALSE(view.takeManifestChange());
    folder.write("installation.json", "{ }");
    EXPECT_TRUE(view.takeManifestChange());
    EXPECT_FALSE(view.takeManifestChange());
}

} // namespace
} // namespace tessgen::standalone
