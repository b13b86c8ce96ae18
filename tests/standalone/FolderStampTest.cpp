#include "standalone/index/FolderStamp.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <ios>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace tessgen::standalone {
namespace {

TEST(FolderStamp, TellsEachOfItsParts) {
    const struct stat same {};
    struct stat other {};
    const std::vector<std::function<void()>> changes = {
        [&] { ++other.st_dev; },          [&] { ++other.st_ino; },         [&] { ++other.st_mtim.tv_sec; },
        [&] { ++other.st_mtim.tv_nsec; }, [&] { ++other.st_ctim.tv_sec; }, [&] { ++other.st_ctim.tv_nsec; }};
    for (const auto& change : changes) {
        other = same;
        EXPECT_EQ(stampOf(other), stampOf(same));
        change();
        EXPECT_NE(stampOf(other), stampOf(same));
    }
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
