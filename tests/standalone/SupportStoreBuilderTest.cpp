#include "standalone/store/SupportStoreBuilder.hpp"

#include "standalone/database/DatabaseWriter.hpp"
#include "standalone/store/SupportStoreFormat.hpp"
#include "tests/support/SupportStores.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utility>

namespace tessgen::standalone {

namespace {

using test::bySymbol;
using test::errorOf;
using test::storeRoot;
using test::TemporaryFolder;

TEST(SupportStoreBuilder, NamesTheLineAndWhatWasExpected) {
    const auto cases = test::rowsOf(R"~({"path": ""} => : key "path": expected a text that is not empty, found ""
{"path": "a\u0000"} => : key "path": expected the path of a file, in which there is no character 0, found "a..." (with the character 0)
{"path": "w/.vk"} => : key "name": expected a name to find the record by, since its path defines none, found nothing
{"path": "a", "name": []} => : key "name": expected a text or a list of texts, found a list of 0
{"name": {"path": "a"}, "path": "a"} => : key "name": expected a text or a list of texts, found an object
{"path": "a", "name": ["b", 1]} => : key "name[1]": expected a text that is not empty, found a number
{"path": "a", "name": ["b", "c", "b"]} => : key "name": expected no name twice
{"path": "a", "builtin": 1} => : key "builtin": expected true or false, found a number
{"path": "a", "supportFlags": [true, true, true, true, true, 1]} => : key "supportFlags[5]": expected true or false, found a number
{"path": "a", "unsupportedSymbols": "b"} => : key "unsupportedSymbols": expected a list of texts, found "b")~");
    const TemporaryFolder folder;
    for (const auto& [line, expected] : cases) {
        const auto records = "\xEF\xBB\xBF{\"path\": \"f.vk\"}\r\n \t\r\n" + line + "\n";
        EXPECT_EQ(errorOf([&] { buildStore(folder, records); }), folder.path("records.jsonl:3") + expected);
    }
}

// Two paths to which the hash that repeated paths are found by gives the same value.
TEST(SupportStoreBuilder, TellsPathsOfOneHashApart) {
    constexpr std::u16string_view one = u"/fhhsmgo";
    constexpr std::u16string_view other = u"/jor\u7198\u5b85\u7ba6\u4f8a";
    const auto hash = std::hash<std::u16string_view>();
    ASSERT_EQ(hash(one), hash(other));
    const auto line = [](std::u16string_view path) {
        return R"({"path": ")" + toUTF8(path).value() + R"(", "name": "f"})" + "\n";
    };
    const TemporaryFolder folder;
    EXPECT_EQ(bySymbol(SupportStore(buildStore(folder, line(one) + line(other)), storeRoot), "f").size(), 2);
    EXPECT_EQ(errorOf([&] { buildStore(folder, line(one) + line(other) + line(other)); }),
              folder.path("records.jsonl") + ":3: key \"path\": this file has a record already, on line 1");
}

TEST(SupportStoreBuilder, LetsAllReadANewStoreWhomTheMaskLets) {
    const TemporaryFolder folder;
    const auto mask = umask(0);
    umask(mask);
    const auto status = std::filesystem::status(buildStore(folder, ""));
    EXPECT_EQ(static_cast<unsigned>(status.permissions()), 0644U & ~mask);
}

TEST(SupportRecords, AreWrittenAsTheyAreRead) {
    const auto cases = test::rowsOf(R"(/w {"path": "a/../f.vk"} => {"path":"f.vk"}
/w {"path": "/w2/f.vk"} => {"path":"/w2/f.vk"}
/w {"path": "/w", "name": ["w"]} => {"path":"/w"}
/w {"path": "/w/f", "builtin": true, "symbol": "/w/f"} => {"path":"/w/f","builtin":true}
/w {"path": "@C/f.vk", "name": ["f", "C.f"], "symbol": "C.f"} => {"path":"@C/f.vk","name":["f","C.f"],"symbol":"C.f"}
/w {"path": "f.vk", "redirect": true, "symbol": "f", "unsupportedSymbols": ["\u00e4"]} => {"path":"f.vk","redirect":true,"symbol":"f","unsupportedSymbols":["ä"]}
/w {"path": "f.vk", "supportFlags": [false, false, false, false, false, true]} => {"path":"f.vk","supportFlags":[false,false,false,false,false,true]}
/ {"path": "/f.vk", "name": "g"} => {"path":"f.vk","name":"g"})");
    for (const auto& [rootAndLine, expected] : cases) {
        const auto space = rootAndLine.find(' ');
        const auto root = rootAndLine.substr(0, space);
        EXPECT_EQ(writeSupportRecord(readSupportRecord(rootAndLine.substr(space + 1), root), root), expected);
    }
    const SupportRecord unwritable{{{}, false, false, u"f", u"/w/\xDC00.vk", {}}, {u"f"}};
    EXPECT_EQ(errorOf([&] { return writeSupportRecord(unwritable, "/w"); }),
              "a text is not UTF-16, and cannot be written as JSON");
}

TEST(DatabaseWriter, FillsTheFormatsLimitAndNotOneByteMore) {
    const TemporaryFolder folder;
    const auto sizeWithin = [&folder](std::uint64_t limit) {
        AtomicFile file(folder.path("limited.cdb"), anyFile);
        DatabaseWriter writer(file, limit);
        for (const auto* key : {"f", "g", "h"}) {
            writer.add(key, "value");
        }
        writer.finish(supportStoreKind, 3, u"/opt/orvak");
        file.commit();
        return std::filesystem::file_size(folder.path("limited.cdb"));
    };
    const auto size = sizeWithin(databaseSizeLimit);
    EXPECT_EQ(sizeWithin(size), size);
    EXPECT_EQ(errorOf([&] { sizeWithin(size - 1); }),
              folder.path("limited.cdb: cannot be written, and is as it was: it would be larger than ")
                  + std::to_string(size - 1) + " bytes, the most that its format holds; build it from less");
}

} // namespace

} // namespace tessgen::standalone
