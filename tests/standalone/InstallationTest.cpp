#include "standalone/Installation.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace tessgen::standalone {
namespace {

using test::TemporaryFolder;
using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

// The message of the error, or "" when there is none.
std::string errorOf(const std::string& fileOrFolder) {
    try {
        readInstallation(fileOrFolder);
        return "";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(Installation, ReadsEveryKeyOfTheSchemasExample) {
    std::ifstream file(KELWHICH_SOURCE_DIR "/standalone/installation.schema.json");
    const auto schema = nlohmann::json::parse(file);
    const auto& example = schema.at("examples").at(0);
    EXPECT_EQ(example.size(), schema.at("properties").size()) << "the example has every key";
    const TemporaryFolder folder;
    const auto manifest = folder.write("installation.json", example.dump());

    const auto installation = readInstallation(folder.path());
    EXPECT_EQ(installation.manifest, manifest);
    EXPECT_EQ(installation.root, "/opt/orvak");
    EXPECT_EQ(installation.supportPackageRoot, "/opt/packages");
    EXPECT_EQ(installation.supportStore, folder.path("support.cdb"));
    EXPECT_THAT(installation.searchPath, ElementsAre("/home/me/work", "/opt/orvak/library/signal"));
    EXPECT_THAT(installation.kelPath, ElementsAre("/opt/orvak/kel"));
    EXPECT_THAT(installation.sourceCode, ElementsAre(Strings{"library"}));
    EXPECT_THAT(installation.extensions, ElementsAre("vk", "vkx"));
    EXPECT_THAT(installation.builtins, ElementsAre(FieldsAre(u"sum", u"", false), FieldsAre(u"rows", u"table", false),
                                                   FieldsAre(u"table", u"table", true)));
}

TEST(Installation, HasDefaultsForEverything) {
    const TemporaryFolder folder;
    const auto installation = readInstallation(folder.write("my.json", "\xEF\xBB\xBF {}\n"));
    EXPECT_THAT(installation, FieldsAre(folder.path("my.json"), folder.path(), std::nullopt, std::nullopt, IsEmpty(),
                                        IsEmpty(), IsEmpty(), ElementsAre("vk", "vkx"), IsEmpty()));
}

TEST(Installation, MakesPathsOnce) {
    const TemporaryFolder folder;
    folder.write("real/world.json", R"({
        "root": "./tree//", "supportPackageRoot": "../packages/", "supportStore": "stores/./a.cdb",
        "searchPath": [".", "../work", "/", "/a/../b/"],
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
        EXPECT_THAT(readInstallation(manifest),
                    FieldsAre(folder.path("real/world.json"), root, folder.path("packages"),
                              folder.path("real/stores/a.cdb"), ElementsAre(root, folder.path("real/work"), "/", "/b"),
                              ElementsAre(root + "/kel", root + "/kel/", "/k/l/", "/"),
                              ElementsAre(Strings{"library"}, Strings{}, Strings{"b", "c"}, Strings{"core"}),
                              ElementsAre("v.k", "v"), IsEmpty()));
    }
}

TEST(Installation, TakesEveryFolderAsBelowTheRootOfTheDisk) {
    const TemporaryFolder folder;
    const auto file = folder.write("installation.json", R"({"root": "/", "sourceCode": ["/opt/a", ".", "../c"]})");
    EXPECT_THAT(readInstallation(file).sourceCode, ElementsAre(Strings{"opt", "a"}, Strings{}, Strings{"c"}));
}

TEST(Installation, SaysWhatIsWrongAndWhere) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", ":1:1: not valid JSON: unexpected end of input; expected '[', '{', or a literal"},
        {"{\n  \"root\": \"a\",\n  }", ":3:3: not valid JSON: unexpected '}'; expected string literal"},
        {"{} {}", ":1:4: not valid JSON: unexpected '{'; expected end of input"},
        {"{\"root\": \"\xFF\"}", ":1:11: not valid JSON: invalid string: ill-formed UTF-8 byte"},
        {R"(["root"])", ": expected an object with the keys of a manifest, found array"},
        {R"({"root": "a", "root": "a"})", R"(: key "root" is given twice)"},
        {R"({"searchpath": []})", R"(: unknown key "searchpath"; did you mean "searchPath"?)"},
        {R"({"builtins": [{"name": "f", "clas": "C"}]})", R"(: unknown key "builtins[0].clas"; did you mean "class"?)"},
        {R"({"$schema": 1})", R"(: key "$schema": expected the place of the manifest's schema, found a number)"},
        {R"({"root": ""})", R"(: key "root": expected the path of a folder or file, found "")"},
        {R"({"searchPath": "work"})", R"(: key "searchPath": expected a list, found "work")"},
        {R"({"searchPath": ["a", {}]})", R"(: key "searchPath[1]": expected the path of a folder, found an object)"},
        {R"({"kelPath": ["a\u0000b"]})", R"(: key "kelPath[0]": expected the path of a folder, found "a\u0000b")"},
        {R"({"root": "/r", "sourceCode": ["a", "/rx"]})",
         R"(: key "sourceCode[1]": expected a folder below the root /r, found "/rx")"},
        {R"({"extensions": ["vk", ".vk"]})",
         R"(: key "extensions[1]": expected an extension without "." before it and without "/", such as "vk", found ".vk")"},
        {R"({"extensions": ["v/k"]})",
         R"(: key "extensions[0]": expected an extension without "." before it and without "/", such as "vk", found "v/k")"},
        {R"({"builtins": ["sum"]})", R"(: key "builtins[0]": expected an object such as {"name": "sum"}, found "sum")"},
        {R"({"builtins": [{}]})", R"(: key "builtins[0].name": expected the name of a built-in, found nothing)"},
        {R"({"builtins": [{"name": "f", "class": 1.5}]})",
         R"(: key "builtins[0].class": expected the class that the method is of, found a number)"},
        {R"({"builtins": [{"name": "f"}, {"name": "f", "constructor": true}]})",
         R"(: key "builtins[1].class": expected the class that the constructor makes, found nothing)"},
        {R"({"builtins": [{"name": "f", "class": "C", "constructor": "yes"}]})",
         R"(: key "builtins[0].constructor": expected true or false, found "yes")"},
    };
    const TemporaryFolder folder;
    for (const auto& [manifest, error] : cases) {
        const auto file = folder.write("installation.json", manifest);
        EXPECT_EQ(errorOf(file), file + error) << manifest;
    }
}

TEST(Installation, OutlivesDeepNesting) {
    constexpr std::size_t depth = 1'000'000;
    const TemporaryFolder folder;
    const auto file = folder.write("installation.json", std::string(depth, '['));
    EXPECT_THAT(errorOf(file), testing::StartsWith(file + ":1:1000001: not valid JSON"));
    folder.write("installation.json", R"({"root": )" + std::string(depth, '[') + std::string(depth, ']') + "}");
    EXPECT_THAT(errorOf(file), testing::EndsWith("expected the path of a folder or file, found a list of 1"));
}

TEST(Installation, SaysWhyThereIsNoManifest) {
    const TemporaryFolder folder;
    const auto file = folder.write("file", "{}");
    const auto pipe = folder.makeFolder("pipe") + "/installation.json";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const auto bytes = folder.write("\xFF/installation.json", "{}");
    const std::string absent = ": no such file or folder: a manifest (installation.json), or the folder that holds it, "
                               "is expected";
    const std::string notRegular = ": not a regular file: a manifest, or the folder that holds it, is expected";
    const std::string notText = ": the manifest's path is not UTF-8: name its folders so, or move it";
    const std::string notPath = "the path of the manifest is empty or holds the character 0";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {folder.path("none"), folder.path("none") + absent},
        {file + "/below", file + "/below" + absent},
        {folder.link("dangling", "none"), folder.path("dangling") + absent},
        {folder.makeFolder("empty"), folder.path("empty") + ": the folder holds no manifest (installation.json)"},
        {folder.link("loop", "loop"),
         folder.path("loop") + ": the manifest cannot be read: Too many levels of symbolic links"},
        {pipe, pipe + notRegular},
        {folder.path("pipe"), pipe + notRegular},
        {folder.link("text.json", "\xFF/installation.json"), bytes + notText},
        {"", notPath},
        {file + std::string("\0x", 2), notPath},
    };
    for (const auto& [given, error] : cases) {
        EXPECT_EQ(errorOf(given), error);
    }
}

} // namespace
} // namespace tessgen::standalone
