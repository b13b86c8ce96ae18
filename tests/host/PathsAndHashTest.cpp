#include "host/Paths.hpp"
#include "tessgen/kelwhich/TextHash.hpp"
#include "tests/support/World.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <map>
#include <set>

namespace tessgen::kelwhich {
namespace {

// Inputs and outputs are ASCII in these tables.
std::u16string wide(const std::string& text) {
    return {text.begin(), text.end()};
}
std::string inQuotes(std::u16string_view text) {
    return '"' + std::string(text.begin(), text.end()) + '"';
}
std::string truth(bool value) {
    return value ? "true" : "false";
}

std::string classFolder(const std::u16string& path) {
    const auto info = getClassFolderInfo(path);
    return info ? inQuotes(info->classFolder) + ", " + inQuotes(info->className) : "nothing";
}

using Arguments = std::vector<std::u16string>;
using Helper = std::string (*)(const Arguments&);
const std::map<std::string, Helper> helpers = {
    {"beginsWith", [](const Arguments& a) { return truth(beginsWith(a.at(0), a.at(1))); }},
    {"replacePrefix", [](const Arguments& a) { return inQuotes(replacePrefix(a.at(0), a.at(1), a.at(2))); }},
    {"parentDirectory", [](const Arguments& a) { return inQuotes(parentDirectory(a.at(0))); }},
    {"fileName", [](const Arguments& a) { return inQuotes(fileName(a.at(0))); }},
    {"fileExtension", [](const Arguments& a) { return inQuotes(fileExtension(a.at(0))); }},
    {"fileStem", [](const Arguments& a) { return inQuotes(fileStem(a.at(0))); }},
    {"containsSeparator", [](const Arguments& a) { return truth(containsSeparator(a.at(0))); }},
    {"packageRootFolder", [](const Arguments& a) { return inQuotes(packageRootFolder(a.at(0))); }},
    {"qualifiedNameForPath", [](const Arguments& a) { return inQuotes(qualifiedNameForPath(a.at(0))); }},
    {"definesPlainName", [](const Arguments& a) { return truth(definesPlainName(a.at(0), a.at(1))); }},
    {"getClassFolderInfo", [](const Arguments& a) { return classFolder(a.at(0)); }},
};

// Checks one row such as `"/w/f.vk" -> "/w"`.
void check(const std::string& helper, const std::string& row) {
    const auto arrow = row.find("->");
    ASSERT_NE(arrow, std::string::npos) << row;
    Arguments arguments;
    for (auto open = row.find('"'); open < arrow;) {
        const auto close = row.find('"', open + 1);
        arguments.push_back(wide(row.substr(open + 1, close - open - 1)));
        open = row.find('"', close + 1);
    }
    auto output = row.substr(arrow + 3);
    output = output.substr(0, output.find(':'));
    EXPECT_EQ(helpers.at(helper)(arguments), output) << helper << ": " << row;
}

// The rows of a header's comments, each with the function that is declared below it.
TEST(Paths, DoWhatTheirCommentsShow) {
    std::set<std::string> shown;
    for (const char* header : {"/host/Paths.hpp", "/include/tessgen/kelwhich/ClassFolderInfo.hpp"}) {
        std::ifstream file(KELWHICH_SOURCE_DIR + std::string(header));
        ASSERT_TRUE(file);
        std::vector<std::string> rows;
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with("//   \"")) {
                rows.push_back(line.substr(2));
            } else if (!rows.empty()) {
                const auto name = line.substr(0, line.find('('));
                const auto helper = name.substr(name.rfind(' ') + 1);
                ASSERT_TRUE(helpers.contains(helper)) << line;
                for (const auto& row : rows) {
                    check(helper, row);
                }
                shown.insert(helper);
                rows.clear();
            }
        }
    }
    EXPECT_EQ(shown.size(), helpers.size());
}

// Rows beyond what a reader needs to see, which no world reaches.
TEST(Paths, HoldAtTheEdges) {
    const std::pair<const char*, const char*> rows[] = {
        {"parentDirectory", R"("" -> "")"},
        {"parentDirectory", R"("/a/" -> "/a")"},
        {"parentDirectory", R"("//" -> "/")"},
        {"fileName", R"("" -> "")"},
        {"fileStem", R"("" -> "")"},
        {"fileStem", R"("a/b." -> "b")"},
        {"fileExtension", R"(".vk" -> "vk")"},
        {"getClassFolderInfo", R"("private/f.vk" -> nothing)"},
        {"packageRootFolder", R"("/w/private/private/f.vk" -> "/w/private")"},
        {"packageRootFolder", R"("/w/+/f.vk" -> "/w")"},
        {"packageRootFolder", R"("+p/f.vk" -> "")"},
        {"qualifiedNameForPath", R"("" -> "")"},
    };
    for (const auto& [helper, row] : rows) {
        check(helper, row);
    }
}

// Units of which a half is that of "/" or ".".
TEST(Paths, ArePartedAtWholeUnits) {
    const std::u16string path = u"/a\u2F00\u012F/b\u012E.\u2E00\u012E";
    EXPECT_EQ(parentDirectory(path), u"/a\u2F00\u012F");
    EXPECT_EQ(fileName(path), u"b\u012E.\u2E00\u012E");
    EXPECT_EQ(fileStem(path), u"b\u012E");
    EXPECT_FALSE(containsSeparator(u"\u2F2F\u012F"));
}

TEST(TextHash, DependsOnEachByteAndOnTheLength) {
    std::set<std::size_t> hashes;
    std::size_t texts = 0;
    for (std::u16string text; text.size() <= 20; text += u'\0') {
        hashes.insert(TextHash()(text));
        for (char16_t& unit : text) {
            for (const char16_t other : {u'\x01', u'\u0100'}) {
                unit = other;
                hashes.insert(TextHash()(text));
                unit = 0;
            }
        }
        texts += 1 + 2 * text.size();
    }
    EXPECT_EQ(hashes.size(), texts);
    // What it is with the key that stands in where the system hands none.
    EXPECT_NE(TextHash()(u""), 0xD6CB8892A926A943U);
}

} // namespace
} // namespace tessgen::kelwhich
