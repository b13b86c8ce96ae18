#include "standalone/manifest/Installation.hpp"
#include "standalone/json/JsonEdit.hpp"
#include "tests/support/SupportStores.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::standalone {
namespace {

using test::TemporaryFolder;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::FieldsAre;
using testing::IsEmpty;
using testing::StartsWith;
using Strings = std::vector<std::string>;

std::string errorOf(const std::string& fileOrFolder) {
    return test::errorOf([&] { return readInstallation(fileOrFolder); });
}

TEST(Installation, MakesPathsOnce) {
    const TemporaryFolder folder;
    folder.write("real/world.json", R"({
        "root": "./tree//", "supportPackageRoot": "../packages/", "supportStore": "stores/./a.cdb",
        "searchIndex": "../a.cdb",
        "searchPath": [".", "../work", "/", "/a/../b/", "//../.", "...", "a/.b/..c"],
        "kelPath": ["kel", "kel/", "/k/./l//", "/"],
        "sourceCode": ["library/", ".", "a/../b//c", ")"
                                        + folder.path() + R"(/real/tree/core"],
        "extensions": ["v.k", "v"]
    })");
    const auto link = folder.link("links/installation.json", "../real/world.json");
    folder.link("entry", "links");
    const auto root = folder.path("real/tree");
    for (const std::string& manifest :
         {folder.path("real/world.json"), link, folder.path("links"), folder.path("entry")}) {
        EXPECT_THAT(
            readInstallation(manifest),
            FieldsAre(folder.path("real/world.json"), root, folder.path("packages"), folder.path("real/stores/a.cdb"),
                      folder.path("a.cdb"),
                      ElementsAre(root, folder.path("real/work"), "/", "/b", "/", root + "/...", root + "/a/.b/..c"),
                      ElementsAre(root + "/kel", root + "/kel/", "/k/l/", "/"),
                      ElementsAre(Strings{"library"}, Strings{}, Strings{"b", "c"}, Strings{"core"}),
                      ElementsAre("v.k", "v"), IsEmpty(),
                      ElementsAre("extensions", "kelPath", "root", "searchIndex", "searchPath", "sourceCode",
                                  "supportPackageRoot", "supportStore")));
    }
}

TEST(Installation, TakesEveryFolderAsBelowTheRootOfTheDisk) {
    const TemporaryFolder folder;
    const auto file = folder.write("installation.json", R"({"root": "/", "sourceCode": ["/opt/a", ".", "../c"]})");
    EXPECT_THAT(readInstallation(file).sourceCode, ElementsAre(Strings{"opt", "a"}, Strings{}, Strings{"c"}));
}

// The schema is held to the same verdicts by schema.py.
TEST(Installation, JudgesTheCorpusAndSaysWhatIsWrongAndWhere) {
    std::ifstream corpus(KELWHICH_SOURCE_DIR "/tests/standalone/manifests.json");
    std::ifstream schema(KELWHICH_SOURCE_DIR "/standalone/manifest/installation.schema.json");
    auto rows = nlohmann::json::parse(corpus);
    rows.push_back({{"manifest", nlohmann::json::parse(schema).at("examples").at(0)}});
    const TemporaryFolder folder;
    for (const auto& row : rows) {
        const auto& manifest = row.at("manifest");
        const auto file =
            folder.write("installation.json", manifest.is_string() ? manifest.get<std::string>() : manifest.dump());
        const auto error = errorOf(file);
        if (!row.contains("error")) {
            EXPECT_EQ(error, "no error") << row;
            continue;
        }
        const auto place = file + ":" + (row.contains("at") ? row["at"].get<std::string>() + ": " : "1:");
        EXPECT_THAT(error, AllOf(StartsWith(place), EndsWith(": " + row["error"].get<std::string>()))) << row;
    }
}

TEST(Installation, OutlivesWhatNoManifestCanBe) {
    const TemporaryFolder folder;
    const auto errorFor = [&folder](const std::string& text) {
        const auto file = folder.write("installation.json", text);
        const auto error = errorOf(file);
        return error.starts_with(file) ? error.substr(file.size()) : error;
    };
    const std::string tooDeep = "lists and objects lie in each other more than 100 deep";
    EXPECT_EQ(errorFor(std::string(1'000'000, '[')), ":1:101: " + tooDeep);
    const auto nested = [](std::size_t lists) {
        return R"({"root": )" + std::string(lists, '[') + std::string(lists, ']') + "}";
    };
    EXPECT_EQ(errorFor(nested(100)), ":1:109: " + tooDeep);
    EXPECT_EQ(errorFor(nested(99)), ":1:10: key \"root\": expected the path of a folder or file, found a list of 1");
    constexpr std::size_t largest = std::size_t{16} << 20U;
    EXPECT_EQ(errorFor("{}" + std::string(largest - 2, ' ')), "no error");
    EXPECT_EQ(errorFor("{}" + std::string(largest - 1, ' ')), ": larger than 16 MiB, which no manifest needs to be");
    EXPECT_EQ(
        errorFor(R"({"root": 1, ")" + std::string(199, 'k') + "\u00e4\": 2}"),
        ":1:13: unknown key \"" + std::string(199, 'k') + R"(..." (201 bytes); known are "$schema", "root", )"
            + R"("supportPackageRoot", "supportStore", "searchIndex", "searchPath", "kelPath", "sourceCode", "extensions", "builtins")");
}

TEST(Installation, SaysWhyThereIsNoManifest) {
    const TemporaryFolder folder;
    const auto file = folder.write("file", "{}");
    const auto bytes = folder.write("\xFF/installation.json", "{}");
    EXPECT_EQ(errorOf(folder.link("text.json", bytes)),
              bytes + ": the manifest's path is not UTF-8: name its folders so, or move it");
    for (const auto& noPath : {std::string(), file + std::string("\0x", 2)}) {
        EXPECT_EQ(errorOf(noPath), "the path of the manifest is empty or holds the character 0");
    }
}

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

} // namespace
} // namespace tessgen::standalone
