#include "standalone/files/OverlayFileTree.hpp"

#include "tests/support/MemoryFileTree.hpp"

#include <gmock/gmock.h>

#include <map>
#include <string>

namespace tessgen::standalone {
namespace {

using Kind = FileTree::Kind;

TEST(OverlayFileTree, HasMoreFilesAndTheFoldersThatLeadToThem) {
    test::MemoryFileTree files("/w", {"f.vk", "a/x.vk", "+p/g.vk", "dir.vk/y"});
    const OverlayFileTree tree(files, {"/w/f.vk", "/w/new.vk", "/w/+p/h.vk", "/w/+q/@C/m.vk", "/w/dir.vk", "/w2/z.vk"});
    const auto listed = [&](const std::string& folder) {
        std::multimap<std::string, Kind> entries;
        const auto isSeen = [](std::string_view name) { return name != "new.vk"; };
        const auto found = tree.entries(folder, {isSeen});
        for (const auto& entry : found.value()) {
            entries.emplace(entry.name, entry.kind);
        }
        return entries;
    };
    using Entries = std::multimap<std::string, Kind>;
    EXPECT_EQ(listed("/w"), (Entries{{"f.vk", Kind::file},
                                     {"a", Kind::folder},
                                     {"+p", Kind::folder},
                                     {"+q", Kind::folder},
                                     {"dir.vk", Kind::file}}));
    EXPECT_EQ(listed("/"), (Entries{{"w", Kind::folder}, {"w2", Kind::folder}}));
    EXPECT_EQ(listed("/w/+p"), (Entries{{"g.vk", Kind::file}, {"h.vk", Kind::file}}));
    EXPECT_EQ(listed("/w/+q"), (Entries{{"@C", Kind::folder}}));
    EXPECT_EQ(listed("/w/a"), (Entries{{"x.vk", Kind::file}}));
    EXPECT_FALSE(tree.entries("/w/+", {[](std::string_view) { return true; }}));
    const std::map<std::string, std::optional<Kind>> kinds = {
        {"/w/new.vk", Kind::file}, {"/w/dir.vk", Kind::file}, {"/w/+q", Kind::folder},   {"/w/+q/@C", Kind::folder},
        {"/", Kind::folder},       {"/w/+", std::nullopt},    {"/w/none", std::nullopt}, {"/w/a/x.vk", Kind::file}};
    for (const auto& [path, kind] : kinds) {
        EXPECT_EQ(tree.kindOf(path), kind) << path;
    }
}

} // namespace
} // namespace tessgen::standalone
