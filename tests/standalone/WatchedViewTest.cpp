#include "standalone/watch/WatchedView.hpp"

#include "standalone/files/RealFileTree.hpp"
#include "tests/support/SupportStores.hpp"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <array>
#include <cstddef>
#include <string>

namespace tessgen::standalone {
namespace {

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
    EXPECT_EQ(test::outcome(view, "f"), test::outcome(live, "f"));
    EXPECT_FALSE(view.watchesAll());
}

TEST(WatchedView, OpensTheStoreAnewWhenItOrItsRightsChange) {
    const test::TemporaryFolder folder;
    Installation world;
    world.root = test::storeRoot;
    const auto storeFile = test::buildStore(folder, "");
    world.supportStore = storeFile;
    WatchedView view(world);
    const auto store = view.store();
    EXPECT_EQ(view.store(), store);
    const std::array<timespec, 2> longAgo{}; // told as other rights are, for which it may no longer be readable
    utimensat(AT_FDCWD, storeFile.c_str(), longAgo.data(), 0);
    EXPECT_NE(view.store(), store);
    EXPECT_TRUE(view.watchesAll());
    world.supportStore = folder.link("linked/store", storeFile);
    EXPECT_FALSE(WatchedView(world).watchesAll());
}

// The system tells a descriptor only once that something was mounted.
TEST(WatchedView, HoldsAMountAlsoWhenItsDescriptorWasPolled) {
    if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        GTEST_SKIP() << "mount namespaces are not allowed here";
    }
    ASSERT_EQ(mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
    const test::TemporaryFolder folder;
    folder.write("searched/f.vk");
    folder.write("mounted/g.vk");
    Installation world;
    world.root = folder.path();
    world.extensions = {"vk"};
    world.searchPath = {folder.path("searched")};
    WatchedView view(world);
    EXPECT_EQ(view.find(u"g").size(), 0U);
    ASSERT_EQ(mount(folder.path("mounted").c_str(), world.searchPath.front().c_str(), nullptr, MS_BIND, nullptr), 0);
    pollfd polled{view.descriptor(), POLLIN, 0};
    EXPECT_EQ(poll(&polled, 1, 0), 1);
    EXPECT_EQ(view.find(u"g").size(), 1U);
    umount2(world.searchPath.front().c_str(), MNT_DETACH);
}

} // namespace
} // namespace tessgen::standalone
