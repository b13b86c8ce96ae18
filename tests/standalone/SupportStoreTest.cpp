#include "standalone/store/SupportStore.hpp"

#include "standalone/store/SupportStoreCheck.hpp"
#include "standalone/store/SupportStoreFormat.hpp"
#include "tests/support/GoldenFiles.hpp"
#include "tests/support/StoreDatabases.hpp"
#include "tests/support/SupportStores.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <utility>

namespace tessgen::standalone {

namespace {

using test::bySymbol;
using test::contentOf;
using test::Entries;
using test::openingError;
using test::Shown;
using test::TemporaryFolder;
using test::withChecksum;
using test::writeDatabase;

struct Answer {
    std::string key;
    Shown records;
};

const std::vector<Answer> answersByPath = {
    {"/opt/orvak/library/wave.vk", {"101001 /opt/orvak/library/wave.vk wave"}},
    {"/opt/orvak/kel/legacy.vk", {"000000R /opt/orvak/kel/legacy.vk modern -legacy -old"}},
    {"/w/+p/@D/area.vk", {"000000 /w/+p/@D/area.vk wave"}},
    {"/w/sum.vk", {"000000 /w/sum.vk total"}},
    {"/opt/orvak/länge/😀.vk", {"000000 /opt/orvak/länge/😀.vk 😀"}},
    {"sum", {}}, // a built-in
    {"a/b", {}},
    {"", {}},
    {"library/wave.vk", {}},
    {"/opt/orvak/library/wave.v", {}},
    {"/opt/orvak/library/wave.vk/", {}},
};

const std::vector<Answer> answersBySymbol = {
    {"wave", {"101001 /opt/orvak/library/wave.vk wave", "000000 /w/+p/@D/area.vk wave", "000000BR a/b wave"}},
    {"sum", {"111111B sum sum", "000000 /w/sum.vk total", "000000BR a/b wave"}},
    {"a/c", {"000000B a/c a/c"}},
    {"legacy", {"000000R /opt/orvak/kel/legacy.vk modern -legacy -old"}},
    {"area", {"000000 /w/+p/@D/area.vk wave"}},
    {"p.area", {"000000 /w/+p/@D/area.vk wave"}},
    {"😀", {"000000 /opt/orvak/länge/😀.vk 😀"}},
    {"modern", {}},
    {"total", {}},
    {"", {}},
    {"Wave", {}},
};

// Calls check(name of the question, what the store answers or throws, what was recorded) for every question.
template <typename Check>
void askEverything(const SupportStore& store, const Check& check) {
    for (const auto& answer : answersByPath) {
        check(
            answer.key, [&] { return test::byPath(store, answer.key); }, answer.records);
    }
    for (const auto& answer : answersBySymbol) {
        check(
            answer.key, [&] { return bySymbol(store, answer.key); }, answer.records);
    }
}

TEST(SupportStore, HandsOutEveryFieldInTheOrderOfImport) {
    const SupportStore store(test::goldenFile(supportStoreKind), test::storeRoot);
    askEverything(store,
                  [](const auto& key, const auto& ask, const auto& records) { EXPECT_EQ(ask(), records) << key; });
}

TEST(SupportStore, HandsOutEveryRecordInTheOrderOfTheLines) {
    const TemporaryFolder folder;
    const SupportStore store(buildStore(folder, test::recordsOfEveryForm), test::storeRoot);
    std::vector<std::string> lines;
    store.forEachRecord([&lines](const SupportRecord& record) {
        lines.push_back(toUTF8(record.entry.path).value());
        for (const auto& name : record.names) {
            lines.back() += " " + toUTF8(name).value();
        }
    });
    const std::vector<std::string> expected = {"/opt/orvak/library/wave.vk wave",
                                               "sum sum",
                                               "/opt/orvak/kel/legacy.vk legacy",
                                               "/w/+p/@D/area.vk wave area p.area",
                                               "/w/sum.vk sum",
                                               "a/b sum wave",
                                               "a/c a/c",
                                               "/opt/orvak/länge/😀.vk 😀"};
    EXPECT_EQ(lines, expected);
}

TEST(SupportStore, IsReadFromManyThreads) {
    const TemporaryFolder folder;
    const SupportStore store(buildStore(folder, test::recordsOfEveryForm), test::storeRoot);
    std::vector<int> wrong(4);
    const auto askOften = [&store](int& count) {
        for (int round = 0; round < 100; ++round) {
            askEverything(store, [&count](const auto& /*key*/, const auto& ask, const auto& records) {
                count += ask() == records ? 0 : 1;
            });
        }
    };
    std::vector<std::thread> threads;
    threads.reserve(wrong.size());
    for (int& count : wrong) {
        threads.emplace_back(askOften, std::ref(count));
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<int>(4));
}

TEST(SupportStore, KeepsItsAnswersWhenItIsReplaced) {
    const TemporaryFolder folder;
    const SupportStore before(buildStore(folder, test::recordsOfEveryForm), test::storeRoot);
    const SupportStore after(buildStore(folder, R"({"path": "wave", "builtin": true})"), test::storeRoot);
    EXPECT_EQ(bySymbol(before, "wave"), answersBySymbol.front().records);
    EXPECT_EQ(bySymbol(after, "wave"), Shown{"000000B wave wave"});
}

Entries infoEntry(std::u16string_view magic, std::uint32_t version, const std::string& more = "") {
    return {withChecksum(std::string(databaseInfoKey),
                         encodeInfo({std::u16string(magic), version, 0, u"/opt/orvak", u"/"}) + more)};
}

// A whole store, but for its last table, which fills more than the 4 GiB that a store may have.
std::string beyondLimit(const TemporaryFolder& folder, const std::string& good) {
    auto content = contentOf(good);
    constexpr std::uint32_t places = 1U << 29U;
    const auto lastCount = databaseHeaderSize - databasePointerSize / 2;
    const auto count = encodeNumber(numberFrom(std::string_view(content).substr(lastCount)) + places);
    const auto file = folder.write("long.cdb", content.replace(lastCount, count.size(), count));
    std::filesystem::resize_file(file, content.size() + std::uint64_t{places} * databaseSlotSize);
    return file;
}

TEST(SupportStore, SaysWhatIsWrongWithTheFile) {
    const TemporaryFolder folder;
    const auto good = buildStore(folder, test::recordsOfEveryForm);
    const auto fifo = folder.path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const auto crafted = [&folder](const Entries& entries) { return openingError(writeDatabase(folder, entries)); };
    const auto size = std::filesystem::file_size(good);
    const auto grown = "grown.cdb: is cut short or has grown: it holds " + std::to_string(size + 1) + " bytes where "
                       + std::to_string(size) + " were written";
    const std::vector<std::array<std::string, 2>> cases = {
        {openingError(folder.path("none")), "none: there is no such support store"},
        {openingError(folder.write("small", "text")), "small: is not a support store, or is cut short"},
        {openingError(folder.write("text", std::string(4096, 'x'))), "text: is not a support store, or is damaged"},
        {openingError(folder.write("grown.cdb", contentOf(good) + '\0')), grown},
        {openingError(beyondLimit(folder, good)), "long.cdb: is not a support store, or is damaged"},
        {openingError(good, "/opt/orvak2"),
         R"(support.cdb: was built for the root "/opt/orvak", not for "/opt/orvak2")"},
        {openingError(folder.write("zeros", std::string(2048, '\0'))), "zeros: is not a support store, or is damaged"},
        {crafted({}), "crafted.cdb: is not a support store"},
        {crafted({{std::string(databaseInfoKey), ""}}), "crafted.cdb: is damaged: an entry is too short"},
        {crafted(infoEntry(u"another store", storeVersion)), "crafted.cdb: is not a support store"},
        {crafted({withChecksum(std::string(databaseInfoKey),
                               encodeInfo({std::u16string(storeMagic), storeVersion, 0, u"/opt/orvak"}))}),
         "crafted.cdb: is not a support store"}, // it does not tell how paths begin
        {crafted(infoEntry(storeMagic, storeVersion, "more")), "crafted.cdb: is not a support store"},
        {crafted(infoEntry(storeMagic, storeVersion + 1, "more")),
         "crafted.cdb: has the format of another version of this program"},
    };
    const auto inFull = [&folder](const std::string& what) {
        return folder.path(what) + "; build it anew with: kelwhich store build RECORDS.jsonl";
    };
    for (const auto& [error, what] : cases) {
        EXPECT_EQ(error, inFull(what));
    }
    for (const auto& file : {folder.makeFolder("folder"), fifo}) {
        EXPECT_EQ(openingError(file), file + ": is not a regular file; remove it, or name another file");
    }
    EXPECT_EQ(openingError(folder.link("link", good)), "no error");
}

// A store with an entry of a record, and with references to it under the name "f"; what asking for that name throws.
std::string craftedError(const Entries::value_type& record, const std::vector<EntryReference>& references) {
    const TemporaryFolder folder;
    auto entries = infoEntry(storeMagic, storeVersion);
    entries.insert(entries.begin(), record);
    for (const auto& reference : references) {
        entries.push_back(withChecksum(encodeKey(EntryKind::name, u"f"), encodeReference(reference)));
    }
    const SupportStore store(writeDatabase(folder, entries), test::storeRoot);
    return test::errorOf([&store] { EXPECT_EQ(bySymbol(store, "f"), Shown{"000000 /w/f.vk f"}); });
}

EntryReference referenceTo(const Entries::value_type& entry, std::uint32_t position = databaseHeaderSize) {
    const auto& [key, value] = entry;
    const auto checksum = numberFrom(std::string_view(value).substr(value.size() - checksumSize));
    return {position, static_cast<std::uint32_t>(key.size() + value.size()), checksum};
}

// Their checksums are right, and they are wrong all the same: never an answer, never a crash.
TEST(SupportStore, RefusesEntriesThatNoBuildWrites) {
    const auto key = encodeKey(EntryKind::file, u"/w/f.vk");
    const auto value = encodeRecord(SupportRecord{{{}, false, false, u"f", u"/w/f.vk", {}}, {u"f"}});
    const auto record = withChecksum(key, value);
    const auto good = referenceTo(record);
    EXPECT_EQ(craftedError(record, {good}), "no error");

    const auto [position, length, checksum] = good;
    const auto behind = position + databaseEntryHeaderSize + length;
    const std::vector<std::vector<EntryReference>> references = {
        {good, good},
        {{position - 8, length, checksum}},
        {{position, length - 1, checksum}},
        {{position, length, checksum + 1}},
        {{0xFFFFFFFF, length, checksum}},
        {referenceTo(infoEntry(storeMagic, storeVersion).front(), behind)},
    };
    for (const auto& wrong : references) {
        EXPECT_NE(craftedError(record, wrong).find("is damaged"), std::string::npos) << wrong.front().position;
    }
    const auto zero = encodeNumber(0);
    const auto huge = encodeNumber(0xFFFFFFFF);
    const Entries records = {
        withChecksum(encodeKey(EntryKind::name, u"/w/f.vk"), value),
        withChecksum(key + "x", value),                         // half a code unit
        withChecksum(key, value + '\0'),                        // more than a record
        withChecksum(key, value.substr(0, value.size() - 1)),   // less
        withChecksum(key, encodeNumber(128) + value.substr(4)), // a flag that does not exist
        withChecksum(key, zero + huge),                         // a text of 8 GiB
        withChecksum(key, zero + zero + huge),                  // a list of 4 Gi texts
        withChecksum(key, ""),
    };
    for (const auto& wrong : records) {
        EXPECT_NE(craftedError(wrong, {referenceTo(wrong)}).find("is damaged"), std::string::npos)
            << wrong.second.size();
    }
}

TEST(SupportStore, NoticesEveryCutWhenItIsOpened) {
    const TemporaryFolder folder;
    const auto file = buildStore(folder, test::recordsOfEveryForm);
    for (auto size = std::filesystem::file_size(file); size-- != 0;) {
        std::filesystem::resize_file(file, size);
        ASSERT_NE(openingError(file).find("cut short"), std::string::npos) << size;
    }
}

// Whether `part` is `all` with some left out.
bool isPartOf(const Shown& part, const Shown& all) {
    auto from = all.begin();
    return std::all_of(part.begin(), part.end(), [&](const std::string& line) {
        from = std::find(from, all.end(), line);
        return from != all.end() && from++ != all.end();
    });
}

struct Damage {
    bool noticed = false; // an error, or something that is not found
    bool altered = false; // an answer that was never given
};

Damage lookForDamage(const std::string& file) {
    Damage damage;
    const auto check = [&damage](const auto& /*key*/, const auto& ask, const auto& records) {
        damage.noticed |= test::errorOf([&] {
                              const auto found = ask();
                              damage.noticed |= found != records;
                              damage.altered |= !isPartOf(found, records);
                          })
                          != "no error";
    };
    damage.noticed |= test::errorOf([&] { askEverything(SupportStore(file, test::storeRoot), check); }) != "no error";
    return damage;
}

// A look-up cannot see what damage hides from it; a check of the whole store can.
bool checkFindsDamage(const std::string& file) {
    bool found = false;
    return test::errorOf([&] { found = checkSupportStore(file).damages != 0; }) != "no error" || found;
}

TEST(SupportStore, NeverAltersARecordWhenAByteIsDamaged) {
    const TemporaryFolder folder;
    const auto file = buildStore(folder, test::recordsOfEveryForm);
    const auto content = contentOf(file);
    const auto tables = numberFrom(content); // the hash tables hold unused places, whose damage changes nothing
    std::fstream bytes(file, std::ios::binary | std::ios::in | std::ios::out);
    const auto put = [&bytes](std::size_t at, char byte) {
        bytes.seekp(static_cast<std::streamoff>(at)).put(byte).flush();
    };
    for (std::size_t at = 0; at < content.size(); ++at) {
        for (const int bits : {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0xFF}) {
            put(at, static_cast<char>(content[at] ^ bits));
            const auto begin = std::chrono::steady_clock::now();
            const auto damage = lookForDamage(file);
            ASSERT_TRUE(checkFindsDamage(file)) << "byte " << at << ", bits " << bits;
            ASSERT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2)) << at;
            ASSERT_FALSE(damage.altered) << "byte " << at << ", bits " << bits;
            ASSERT_TRUE(damage.noticed || at >= tables) << "byte " << at << ", bits " << bits;
        }
        put(at, content[at]);
    }
    EXPECT_FALSE(lookForDamage(file).noticed || checkFindsDamage(file));
}

} // namespace

} // namespace tessgen::standalone
