#include "standalone/index/FolderStamp.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <ios>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace tessgen::standalone {
namespace {

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
    const std::vector<std::pair<std::uint32_t, bool>> disks = {
        {0xEF53, true},  {overlay, true},     {0x4D44, false},     {0x2011BAB0, false},
        {0x9660, false}, {0x73717368, false}, {0xE0F5E1E2, false},
    };
    for (const auto& [fileSystem, believed] : disks) {
        EXPECT_EQ(hasReliableTimestamps({changed, fileSystem, true}), believed) << std::hex << fileSystem;
        EXPECT_FALSE(hasReliableTimestamps({{}, fileSystem, true}));
    }
}

} // namespace
} // namespace tessgen::standalone
