#include "standalone/files/OverlayFileTree.hpp"

#include "tests/support/MemoryFileTree.hpp"

#include <gmock/gmock.h>

#include <map>
#include <string>

namespace tessgen::standalone {
namespace {

using Kind = FileTree::Kind;
using testing::UnorderedElementsAre;

TEST(OverlayFileTree, HasMoreFilesAndTheFoldersThatLeadToThem) {
    test::MemoryFileTree files("/w", {"f.vk", "a/x.vk", "+p/g.vk", "dir.vk/y"});
    const OverlayFileTree tree(files, {"/w/f.vk", "/w/new.vk", "/w/+p/h.vk", "/w/+q/@C/m.vk", "/w/dir.vk", "/w2/z.vk"});
    const auto listed = [&](const std::string& folder) { // folders with "/"
        std::vector<std::string> entries;
        const auto found = tree.entries(folder, {[](std::string_view name) { return name != "new.vk"; }});
        for (const auto& entry : found.value()) {
            entries.push_back(entry.name + (entry.kind == Kind::folder ? "/" : ""));
        }
        return entries;
    };
    EXPECT_THAT(listed("/w"), UnorderedElementsAre("f.vk", "a/", "+p/", "+q/", "dir.vk"));
    EXPECT_THAT(listed("/"), UnorderedElementsAre("w/", "w2/"));
    EXPECT_THAT(listed("/w/+p"), UnorderedElementsAre("g.vk", "h.vk"));
    EXPECT_THAT(listed("/w/+q"), UnorderedElementsAre("@C/"));
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
