#include "standalone/store/SupportStoreBuilder.hpp"

#include "standalone/database/Checksum.hpp"
#include "standalone/database/DatabaseWriter.hpp"
#include "standalone/store/SupportStoreFormat.hpp"
#include "tests/support/SupportStores.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <array>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <utility>

namespace tessgen::standalone {

namespace {

using test::bySymbol;
using test::contentOf;
using test::errorOf;
using test::storeRoot;
using test::TemporaryFolder;

std::string buildError(const std::string& from, const std::string& to) {
    return errorOf([&] { buildSupportStore(from, to, storeRoot); });
}

TEST(SupportStoreBuilder, ReadsLinesAsTheyAreWrittenElsewhere) {
    const std::string record = R"({"path": "f.vk"})";
    const std::string longName(300'000, 'n');
    const std::vector<std::pair<std::string, std::uint64_t>> files = {
        {"", 0},
        {"\n \t\n\r\n", 0},
        {"\xEF\xBB\xBF", 0},
        {record, 1},
        {"\xEF\xBB\xBF" + record + "\r\n\r\n", 1},
        {"\n" + record + "\n\n" + R"( {"path" : "g.vk"} )" + "\n", 2},
        {R"({"path": ")" + longName + R"(.vk"})" + "\n" + record, 2},
    };
    const TemporaryFolder folder;
    const auto store = folder.path("support.cdb");
    for (const auto& [content, count] : files) {
        EXPECT_EQ(buildSupportStore(folder.write("records.jsonl", content), store, storeRoot).records, count);
        EXPECT_EQ(bySymbol(SupportStore(store, storeRoot), "f").size(), count == 0 ? 0 : 1) << count;
    }
    EXPECT_EQ(bySymbol(SupportStore(store, storeRoot), longName).size(), 1);
}

TEST(SupportStoreBuilder, NamesTheLineAndWhatWasExpected) {
    const std::vector<std::array<std::string, 2>> cases = {
        {R"({"path": )", "10: not valid JSON: unexpected end of input; expected '[', '{', or a literal"},
        {R"({"path": "a"} {})", "15: not valid JSON: unexpected '{'; expected end of input"},
        {"{\"path\": \"a\xFF\"}", "12: not valid JSON: invalid string: ill-formed UTF-8 byte"},
        {R"({"path": "\ud800"})",
         "17: not valid JSON: invalid string: surrogate U+D800..U+DBFF must be followed by U+DC00..U+DFFF"},
        {R"(["path"])", R"( expected a record, such as {"path": "library/wave.vk"})"},
        {R"({"path": "a", "path": "b"})", R"(15: key "path" is given twice)"},
        {R"({"pth": "a"})", R"( unknown key "pth"; did you mean "path"?)"},
        {R"({"path": "a", "origin\n": 1})",
         " unknown key \"origin\n\""
         R"(; known are "path", "name", "builtin", "redirect", "symbol", "supportFlags", )"
         R"("unsupportedSymbols")"},
        {"{}", R"( key "path": expected the path of a file, or the text of a built-in, found nothing)"},
        {R"({"path": ""})", R"( key "path": expected a text that is not empty, found "")"},
        {R"({"path": "a\u0000"})",
         R"( key "path": expected the path of a file, in which there is no character 0, found "a..." (with the character 0))"},
        {R"({"path": "w/.vk"})",
         R"( key "name": expected a name to find the record by, since its path defines none, found nothing)"},
        {R"({"path": "a", "name": []})", R"( key "name": expected a text or a list of texts, found a list of 0)"},
        {R"({"name": {"path": "a"}, "path": "a"})",
         R"( key "name": expected a text or a list of texts, found an object)"},
        {R"({"path": "a", "name": ["b", 1]})", R"( key "name[1]": expected a text that is not empty, found a number)"},
        {R"({"path": "a", "name": ["b", "c", "b"]})", R"( key "name": expected no name twice)"},
        {R"({"path": "a", "builtin": 1})", R"( key "builtin": expected true or false, found a number)"},
        {R"({"path": "a", "redirect": true})",
         R"( key "symbol": expected the name that the redirect leads to, found nothing)"},
        {R"({"path": "a", "symbol": null})", R"( key "symbol": expected a text that is not empty, found null)"},
        {R"({"path": "a", "supportFlags": [true, true, true, true, true]})",
         R"( key "supportFlags": expected a list of exactly six of true and false, found a list of 5)"},
        {R"({"path": "a", "supportFlags": [true, true, true, true, true, 1]})",
         R"( key "supportFlags[5]": expected true or false, found a number)"},
        {R"({"path": "a", "unsupportedSymbols": "b"})",
         R"( key "unsupportedSymbols": expected a list of texts, found "b")"},
        {R"({"path": "a", "unsupportedSymbols": [""]})",
         R"( key "unsupportedSymbols[0]": expected a text that is not empty, found "")"},
        {R"({"path": "/opt/orvak/x/../f.vk"})", R"( key "path": this file has a record already, on line 1)"},
    };
    const TemporaryFolder folder;
    const auto store = buildStore(folder, test::recordsOfEveryForm);
    const auto before = contentOf(store);
    const auto errorOnLine3 = [&](const std::string& line) {
        return buildError(folder.write("records.jsonl", "{\"path\": \"f.vk\"}\n\n" + line + "\n"), store);
    };
    const auto inFull = [&folder](const std::string& error) { return folder.path("records.jsonl:3:" + error); };
    for (const auto& [line, expected] : cases) {
        EXPECT_EQ(errorOnLine3(line), inFull(expected));
        EXPECT_EQ(contentOf(store), before) << line;
        EXPECT_EQ(entriesIn(folder), 2) << line;
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

TEST(SupportStoreBuilder, RefusesFilesThatItMustNotReplaceOrCannotRead) {
    const TemporaryFolder folder;
    const auto records = folder.write("records.jsonl", test::recordsOfEveryForm);
    const auto alias = folder.link("alias", records);
    const auto fifo = folder.path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const auto absent = folder.path("none/support.cdb");
    const std::string holdsRecords =
        ": holds the records, and the store must not replace them; name another file with --output";
    const std::string noFile = ": is not a regular file; name the file to be written";
    const std::vector<std::array<std::string, 2>> cases = {
        {buildError(records, records), records + holdsRecords},
        {buildError(records, alias), alias + holdsRecords},
        {buildError(alias, records), records + holdsRecords},
        {buildError(records, folder.path()), folder.path() + noFile},
        {buildError(records, fifo), fifo + noFile},
        {buildError(records, absent), absent + ": cannot be written, and is as it was: No such file or directory"},
        {buildError(absent, folder.path("s")), absent + ": cannot be opened: No such file or directory"},
        {buildError(folder.path(), folder.path("s")), folder.path() + ": cannot be read: Is a directory"},
    };
    for (const auto& [error, expected] : cases) {
        EXPECT_EQ(error, expected);
    }
    EXPECT_EQ(contentOf(records), test::recordsOfEveryForm);
    EXPECT_EQ(entriesIn(folder), 3);
}

// While it lives, no file of this process grows beyond `size`: writing more fails as it does on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{size, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    rlimit before_{};
    void (*handler_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

TEST(SupportStoreBuilder, LeavesTheOldStoreWhenTheDiskIsFull) {
    const TemporaryFolder folder;
    const auto store = buildStore(folder, test::recordsOfEveryForm);
    const auto before = contentOf(store);
    const auto errorWithin = [&](rlim_t size) {
        const FileSizeLimit limit(size);
        return buildError(folder.path("records.jsonl"), store);
    };
    for (rlim_t size = 0; size < before.size(); size += 100) {
        EXPECT_EQ(errorWithin(size), folder.path("support.cdb: cannot be written, and is as it was: File too large; "
                                                 "files may not grow that large here: raise the limit (ulimit -f)"));
        EXPECT_EQ(contentOf(store), before) << size;
        EXPECT_EQ(entriesIn(folder), 2) << size;
    }
    EXPECT_EQ(errorWithin(before.size()), "no error");
}

TEST(SupportStoreBuilder, KeepsTheModeOfTheOldStore) {
    const TemporaryFolder folder;
    const auto store = buildStore(folder, test::recordsOfEveryForm);
    for (const mode_t mode : {0600U, 0640U, 0444U, 0666U}) {
        ASSERT_EQ(chmod(store.c_str(), mode), 0);
        buildStore(folder, test::recordsOfEveryForm);
        struct stat status {};
        ASSERT_EQ(stat(store.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, mode);
    }
}

TEST(SupportRecords, AreWrittenAsTheyAreRead) {
    const std::vector<std::array<std::string, 3>> cases = {
        // root, line, the line that is written
        {"/w", R"({"path": "a/../f.vk"})", R"({"path":"f.vk"})"},
        {"/w", R"({"path": "/w2/f.vk"})", R"({"path":"/w2/f.vk"})"},
        {"/w", R"({"path": "/w", "name": ["w"]})", R"({"path":"/w"})"},
        {"/", R"({"path": "/f.vk", "name": "g"})", R"({"path":"f.vk","name":"g"})"},
        {"/w", R"({"path": "/w/f", "builtin": true, "symbol": "/w/f"})", R"({"path":"/w/f","builtin":true})"},
        {"/w", R"({"path": "@C/f.vk", "name": ["f", "C.f"], "symbol": "C.f"})",
         R"({"path":"@C/f.vk","name":["f","C.f"],"symbol":"C.f"})"},
        {"/w", R"({"path": "f.vk", "redirect": true, "symbol": "f", "unsupportedSymbols": ["\u00e4"]})",
         R"({"path":"f.vk","redirect":true,"symbol":"f","unsupportedSymbols":["ä"]})"},
        {"/w", R"({"path": "f.vk", "supportFlags": [false, false, false, false, false, true]})",
         R"({"path":"f.vk","supportFlags":[false,false,false,false,false,true]})"},
    };
    for (const auto& [root, line, expected] : cases) {
        const auto record = readSupportRecord(line, root);
        const auto written = writeSupportRecord(record, root);
        EXPECT_EQ(written, expected);
        const auto again = readSupportRecord(written, root);
        EXPECT_EQ(encodeRecord(again), encodeRecord(record)) << line;
        EXPECT_EQ(again.entry.path, record.entry.path);
    }
    const SupportRecord unwritable{{{}, false, false, u"f", u"/w/\xDC00.vk", {}}, {u"f"}};
    EXPECT_EQ(errorOf([&] { return writeSupportRecord(unwritable, "/w"); }),
              "a text is not UTF-16, and cannot be written as JSON");
}

TEST(SupportStoreBuilder, ReplacesWhatALinkLeadsTo) {
    const TemporaryFolder folder;
    const auto target = folder.write("stores/real.cdb");
    const auto link = folder.link("support.cdb", "stores/real.cdb");
    EXPECT_EQ(buildStore(folder, test::recordsOfEveryForm), link);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(test::openingError(target), "no error");
    const auto mask = umask(0);
    umask(mask);
    struct stat status {};
    ASSERT_EQ(stat(target.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0644U & ~mask);
}

TEST(DatabaseWriter, FillsTheFormatsLimitAndNotOneByteMore) {
    const TemporaryFolder folder;
    const auto sizeWithin = [&folder](std::uint64_t limit) {
        AtomicFile file(folder.path("limited.cdb"));
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

TEST(Checksum, IsTheOneThatIsCalledCRC32) {
    EXPECT_EQ(checksumOf(""), 0);
    EXPECT_EQ(checksumOf("123456789"), 0xCBF43926);
    EXPECT_EQ(checksumOf("The quick brown fox jumps over the lazy dog"), 0x414FA339);
}

} // namespace

} // namespace tessgen::standalone
