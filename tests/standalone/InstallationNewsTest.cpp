#include "standalone/manifest/InstallationNews.hpp"
#include "standalone/json/JsonEdit.hpp"
#include "tests/support/MemoryFileTree.hpp"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace tessgen::standalone {
namespace {

using testing::ElementsAre;

TEST(JsonEdit, LeavesEveryOtherByteAsItIs) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {R"({"a":["x"]})", R"({"a":["x", 7, 8]})"},
        {R"({"a":["x","y"],"b":[9]})", R"({"a":["x","y",7,8],"b":[9]})"},
        {R"({"b": {"a": [1]}, "a": [ [1, 2], "],\"" ] })", R"({"b": {"a": [1]}, "a": [ [1, 2], "],\"", 7, 8 ] })"},
        {"\xEF\xBB\xBF{\n\t\"a\": [\n\t\t\"x\"\n\t]\n}\n",
         "\xEF\xBB\xBF{\n\t\"a\": [\n\t\t\"x\",\n\t\t7,\n\t\t8\n\t]\n}\n"},
        {"{\"a\": [ ]}", "{\"a\": [7, 8 ]}"},
        {"{\n  \"b\": 1\n}", "{\n  \"b\": 1,\n  \"a\": [7, 8]\n}"},
        {" {} ", " {\"a\": [7, 8]} "},
    };
    for (const auto& [text, amended] : cases) {
        EXPECT_EQ(withElements(text, "a", {"7", "8"}), amended);
        EXPECT_EQ(withElements(text, "a", {}), text);
    }
}

TEST(InstallationNews, AreRelativeToTheRoot) {
    test::MemoryFileTree files("/w",
                               {"mine/f.vk", "more/+p/f.vk", "host/lib/f.vk", "host/new/f.vk", "host/kel/f.vk",
                                "host/kel/g.vk", "host/kel/deep/f.vk", "spk/lib/f.vk", "spk/kel/f.vk", "spk/kel/h.vk"});
    files.add("/x/f.vk", FileTree::Kind::file);
    files.link("/linked", "w/host");
    Installation installation;
    installation.root = "/linked";
    installation.supportPackageRoot = "/w/spk";
    installation.searchPath = {"/w/mine", "/linked/lib", "/gone"};
    installation.kelPath = {"/linked/kel", "/w/spk/kel", "/linked/kel/"};
    installation.extensions = {"vk"};
    const auto news = newsIn("/w", {}, installation, {"/linked/kel/f.vk"}, files,
                             [&](const std::string& path) { return files.realPath(path); });
    EXPECT_THAT(news.searchFolders, ElementsAre("new", "../w/more"));
    EXPECT_THAT(news.kelFolders, ElementsAre("kel/deep"));
    EXPECT_THAT(news.kelFiles, ElementsAre("kel/deep/f.vk", "kel/g.vk", "kel/h.vk"));
}

} // namespace
} // namespace tessgen::standalone
