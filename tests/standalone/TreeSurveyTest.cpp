#include "standalone/manifest/TreeSurvey.hpp"

#include "standalone/manifest/InstallationNews.hpp"
#include "tests/support/MemoryFileTree.hpp"

#include <gmock/gmock.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <vector>

namespace tessgen::standalone {
namespace {

using Kind = FileTree::Kind;
using test::MemoryFileTree;
using testing::_;
using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

TEST(TreeSurvey, FindsTheFoldersFromWhichNamesLeadToFiles) {
    struct Case {
        Strings files;
        Strings searchFolders;
        std::string nameToTry;
    };
    const std::vector<Case> cases = {
        {{}, {}, ""},
        {{"f.vk"}, {"."}, "f"},
        {{"a/b/f.vkx", "a/c/f.md", "a/f.vkb", "a/vk", "a/.vk", "a/fvk", "a/f-vk", "a/f.VK"}, {"a/b"}, "f"},
        {{"a/+p/+q/f.vk", "a/@C/C.vk", "a/+p/g.md"}, {"a"}, "p.q.f"},
        {{"a/@C/m.vk", "a/@C/C.vk", "a/+p/@C/D.vk"}, {"a"}, "C"},
        {{"a/@C/m.vk", "b/a.b.vk"}, {"a", "b"}, ""},
        {{"a/private/f.vk", "b/@C/private/f.vk", "c/+p/private/@C/f.vk"}, {}, ""},
        {{"a/+p/plain/f.vk", "a/@C/plain/f.vk", "a/private/plain/f.vk", "a/plain/f.vk"}, {"a/plain"}, "f"},
        {{".git/f.vk", "a/.b/f.vk", "a/.f.vk"}, {}, ""},
        {{"b/f.vk", "B/f.vk", "a/f.vk", "a b/f.vk", "\uFF5E/f.vk", "\U0001F600/f.vk", "z.vk"},
         {".", "B", "a", "a b", "b", "\U0001F600", "\uFF5E"},
         "f"},
    };
    for (const auto& [files, searchFolders, nameToTry] : cases) {
        const MemoryFileTree tree("/w", files);
        EXPECT_THAT(surveyTree("/w", {}, tree),
                    FieldsAre(searchFolders, IsEmpty(), IsEmpty(), nameToTry, IsEmpty(), IsEmpty()));
    }
}

TEST(TreeSurvey, KeepsKELFoldersOutOfTheSearch) {
    struct Case {
        Strings given;
        Strings searchFolders;
        Strings kelFolders;
        Strings kelFiles;
    };
    const MemoryFileTree tree(
        "/w", {"a/f.vk", "kel/k.vk", "kel/+p/private/h.vk", "kel/a/b/k.vk", "kel/c/f.md", ".k/+p/k.vk"});
    const std::vector<Case> cases = {
        {{"kel/a/b", "kel", "kel"}, {"a"}, {"kel", "kel/a/b"}, {"kel/+p/private/h.vk", "kel/a/b/k.vk", "kel/k.vk"}},
        {{"kel/c", ".k", "kel/a"}, {"a", "kel"}, {".k", "kel/a", "kel/a/b", "kel/c"}, {".k/+p/k.vk", "kel/a/b/k.vk"}},
        {{"."}, {}, {".", "a", "kel", "kel/a/b"}, {"a/f.vk", "kel/+p/private/h.vk", "kel/a/b/k.vk", "kel/k.vk"}},
    };
    for (const auto& [given, searchFolders, kelFolders, kelFiles] : cases) {
        EXPECT_THAT(surveyTree("/w", given, tree), FieldsAre(searchFolders, kelFolders, kelFiles, _, _, _))
            << testing::PrintToString(given);
    }
}

TEST(TreeSurvey, FollowsLinksToFilesAlone) {
    MemoryFileTree tree("/w", {"a/f.md", "a/b/f.md", "+p/@C/f.md"});
    tree.link("/w/a/b/up", "../..");
    tree.link("/w/self.vk", "self.vk");
    tree.link("/w/folder.vk", "a");
    tree.link("/w/a/b/file.vk", "f.md");
    EXPECT_THAT(surveyTree("/w", {}, tree).searchFolders, ElementsAre("a/b"));
}

TEST(TreeSurvey, TellsWhatItCannotRead) {
    MemoryFileTree tree("/w", {"a/f.vk", "b/f.vk"});
    tree.link("/w/a/link.vk", "f.vk");
    tree.fail("/w/b", EACCES);
    tree.fail("/w/a/link.vk", EACCES);
    EXPECT_THAT(surveyTree("/w", {}, tree).unreadable,
                ElementsAre("a/link.vk: Permission denied", "b: Permission denied"));
    tree.fail("/w", EACCES);
    EXPECT_THROW(surveyTree("/w", {}, tree), std::system_error);
}

TEST(InstallationNews, AreRelativeToTheRoot) {
    MemoryFileTree files("/w", {"mine/f.vk", "more/+p/f.vk", "host/lib/f.vk", "host/new/f.vk", "host/kel/f.vk",
                                "host/kel/g.vk", "host/kel/deep/f.vk", "spk/lib/f.vk", "spk/kel/f.vk", "spk/kel/h.vk"});
    files.add("/x/f.vk", Kind::file);
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
