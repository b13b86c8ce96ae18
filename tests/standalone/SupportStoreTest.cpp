#include "standalone/store/SupportStore.hpp"

#include "standalone/store/SupportStoreCheck.hpp"
#include "standalone/store/SupportStoreFormat.hpp"
#include "tests/support/StoreDatabases.hpp"
#include "tests/support/SupportStores.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utility>
#include <vector>

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

std::string joined(const Shown& records) {
    std::string line;
    for (const auto& record : records) {
        line += record + ";";
    }
    return line;
}

// What a store of `recordsOfEveryForm` returns for a "P"ath or a "S"ymbol.
const auto storedAnswers = test::rowsOf(R"(P /opt/orvak/library/wave.vk => 101001 /opt/orvak/library/wave.vk wave;
P /opt/orvak/kel/legacy.vk => 000000R /opt/orvak/kel/legacy.vk modern -legacy -old;
P /w/+p/@D/area.vk => 000000 /w/+p/@D/area.vk wave;
P /w/sum.vk => 000000 /w/sum.vk total;
P /opt/orvak/länge/😀.vk => 000000 /opt/orvak/länge/😀.vk 😀;
P sum =>
P a/b =>
P  =>
P library/wave.vk =>
P /opt/orvak/library/wave.v =>
P /opt/orvak/library/wave.vk/ =>
S wave => 101001 /opt/orvak/library/wave.vk wave;000000 /w/+p/@D/area.vk wave;000000BR a/b wave;
S sum => 111111B sum sum;000000 /w/sum.vk total;000000BR a/b wave;
S a/c => 000000B a/c a/c;
S legacy => 000000R /opt/orvak/kel/legacy.vk modern -legacy -old;
S area => 000000 /w/+p/@D/area.vk wave;
S p.area => 000000 /w/+p/@D/area.vk wave;
S 😀 => 000000 /opt/orvak/länge/😀.vk 😀;
S modern =>
S total =>
S  =>
S Wave =>)");

Shown ask(const SupportStore& store, const std::string& query) {
    const auto text = query.substr(2);
    if (query.front() == 'S') {
        return bySymbol(store, text);
    }
    const auto record = store.findByPath(toUTF16(text).value());
    return record ? Shown{test::shown(*record)} : Shown();
}

TEST(SupportStore, HandsOutEveryFieldInTheOrderOfImport) {
    const SupportStore store(test::goldenFile(supportStoreKind), test::storeRoot);
    for (const auto& [query, records] : storedAnswers) {
        EXPECT_EQ(joined(ask(store, query)), records) << query;
    }
}

TEST(SupportStore, KeepsItsAnswersWhenItIsReplaced) {
    const TemporaryFolder folder;
    const SupportStore before(buildStore(folder, test::recordsOfEveryForm), test::storeRoot);
    const SupportStore after(buildStore(folder, R"({"path": "a/c", "builtin": true, "redirect": true, "symbol": "s"})"),
                             test::storeRoot);
    EXPECT_EQ(bySymbol(before, "a/c"), Shown{"000000B a/c a/c"});
    EXPECT_EQ(bySymbol(after, "a/c"), Shown{"000000BR a/c s"});
}

Entries infoEntry(std::u16string_view magic, std::uint32_t version, const std::string& more = "") {
    return {withChecksum(std::string(databaseInfoKey),
                         encodeInfo({std::u16string(magic), version, 0, u"/opt/orvak", u"/"}) + more)};
}

// A whole store, but for its last table, which fills more than the 4 GiB that a store may have.
std::string beyondLimit(const TemporaryFolder& folder, const std::string& good) {
    auto content = contentOf(good);
    constexpr std::uint32_t slots = 1U << 29U;
    const auto lastCount = databaseHeaderSize - databasePointerSize / 2;
    const auto count = encodeNumber(numberFrom(std::string_view(content).substr(lastCount)) + slots);
    auto file = folder.write("long.cdb", content.replace(lastCount, count.size(), count));
    std::filesystem::resize_file(file, content.size() + std::uint64_t{slots} * databaseSlotSize);
    return file;
}

TEST(SupportStore, SaysWhatIsWrongWithTheFile) {
    const TemporaryFolder folder;
    const auto expectError = [](const std::string& file, const std::string& error) {
        EXPECT_EQ(openingError(file), file + ": " + error + "; build it anew with: kelwhich store build RECORDS.jsonl");
    };
    const auto good = buildStore(folder, test::recordsOfEveryForm);
    for (const auto& file : {folder.write("text", std::string(4096, 'x')),
                             folder.write("zeros", std::string(databaseHeaderSize, '\0')), beyondLimit(folder, good)}) {
        expectError(file, "is not a support store, or is damaged");
    }
    const auto withoutPrefix = encodeInfo({std::u16string(storeMagic), storeVersion, 0, u"/opt/orvak"});
    const std::vector<std::pair<Entries, std::string>> cases = {
        {{}, "is not a support store"},
        {{{std::string(databaseInfoKey), ""}}, "is damaged: an entry is too short"},
        {{withChecksum(std::string(databaseInfoKey), withoutPrefix)}, "is not a support store"},
        {infoEntry(u"another store", storeVersion), "is not a support store"},
        {infoEntry(storeMagic, storeVersion, "more"), "is not a support store"},
        {infoEntry(storeMagic, storeVersion + 1, "more"), "has the format of another version of this program"},
    };
    for (const auto& [entries, error] : cases) {
        expectError(writeDatabase(folder, entries), error);
    }
    const auto fifo = folder.path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(openingError(fifo), fifo + ": is not a regular file; remove it, or name another file");
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

EntryReference referenceTo(const Entries::value_type& entry) {
    const auto& [key, value] = entry;
    const auto checksum = numberFrom(std::string_view(value).substr(value.size() - checksumSize));
    return {databaseHeaderSize, static_cast<std::uint32_t>(key.size() + value.size()), checksum};
}

// Their checksums are right, and they are wrong all the same: never an answer, never a crash.
TEST(SupportStore, RefusesEntriesThatNoBuildWrites) {
    const auto key = encodeKey(EntryKind::file, u"/w/f.vk");
    const auto value = encodeRecord(SupportRecord{{{}, false, false, u"f", u"/w/f.vk", {}}, {u"f"}});
    const auto record = withChecksum(key, value);
    const auto good = referenceTo(record);
    EXPECT_EQ(craftedError(record, {good}), "no error");

    const auto [position, length, checksum] = good;
    std::vector<std::pair<Entries::value_type, std::vector<EntryReference>>> cases = {
        {record, {good, good}},
        {record, {{position, length - 1, checksum}}},
        {record, {{position, length, checksum + 1}}},
        {record, {{0xFFFFFFFF, length, checksum}}},
    };
    const auto zero = encodeNumber(0);
    const auto huge = encodeNumber(0xFFFFFFFF);
    for (const auto& [wrongKey, wrongValue] :
         Entries{{encodeKey(EntryKind::name, u"/w/f.vk"), value},
                 {key + "x", value},                         // half a code unit
                 {key, value + '\0'},                        // more than a record
                 {key, value.substr(0, value.size() - 1)},   // less
                 {key, encodeNumber(128) + value.substr(4)}, // a flag that does not exist
                 {key, zero + huge},                         // a text of 8 GiB
                 {key, zero + zero + huge}}) {               // a list of 4 Gi texts
        const auto wrong = withChecksum(wrongKey, wrongValue);
        cases.emplace_back(wrong, std::vector{referenceTo(wrong)});
    }
    for (const auto& [entry, references] : cases) {
        EXPECT_NE(craftedError(entry, references).find("is damaged"), std::string::npos) << references.front().position;
    }
}

struct Damage {
    bool noticed = false; // an error
    bool hidden = false;  // without an error: a record is not found
    bool altered = false; // a record that was never written
};

Damage lookForDamage(const std::string& file) {
    Damage damage;
    const auto noticeErrorOf = [&damage](const auto& action) { damage.noticed |= test::errorOf(action) != "no error"; };
    noticeErrorOf([&] {
        const SupportStore store(file, test::storeRoot);
        for (const auto& [query, records] : storedAnswers) {
            noticeErrorOf([&, &query = query, &records = records] {
                const auto found = ask(store, query);
                damage.hidden |= joined(found) != records;
                for (const auto& record : found) {
                    damage.altered |= (";" + records).find(";" + record + ";") == std::string::npos;
                }
            });
        }
    });
    return damage;
}

// A look-up cannot see all that damage hides from it; a check of the whole store can.
bool checkFindsDamage(const std::string& file) {
    bool found = false;
    return test::errorOf([&] { found = checkSupportStore(file).damages != 0; }) != "no error" || found;
}

TEST(SupportStore, NeverAltersARecordWhenAByteIsDamaged) {
    const TemporaryFolder folder;
    const auto file = buildStore(folder, test::recordsOfEveryForm);
    const auto tables = numberFrom(contentOf(file)); // not all of their empty slots are looked at
    const std::vector<int> bits = {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80, 0xFF};
    test::forEachDamage(file, bits, [&](std::size_t at, const std::string& what) {
        const auto damage = lookForDamage(file);
        EXPECT_TRUE(checkFindsDamage(file)) << what;
        EXPECT_FALSE(damage.altered) << what;
        EXPECT_TRUE(damage.noticed || damage.hidden || at >= tables) << what;
        const auto inSlot = (at - tables) % databaseSlotSize;
        EXPECT_TRUE(damage.noticed || !damage.hidden || (at >= tables && inSlot > 0 && inSlot < 4)) << what;
    });
    const auto damage = lookForDamage(file);
    EXPECT_FALSE(damage.noticed || damage.hidden || checkFindsDamage(file));
    std::filesystem::resize_file(file, std::filesystem::file_size(file) + 1);
    EXPECT_NE(openingError(file).find("is cut short or has grown"), std::string::npos);
}

} // namespace

} // namespace tessgen::standalone
