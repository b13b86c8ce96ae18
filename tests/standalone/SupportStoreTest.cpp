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

Entries infoEntry(std::u16string_view magic, std::uint32_t version, const std::string& more = "") {
    return {withChecksum(std::string(databaseInfoKey),
                         encodeInfo({std::u16string(magic), version, 0, u"/opt/orvak", u"/"}) + more)};
}

TEST(SupportStore, SaysWhatIsWrongWithTheFile) {
    const TemporaryFolder folder;
    const auto expectError = [](const std::string& file, const std::string& error) {
        EXPECT_EQ(openingError(file), file + ": " + error + "; build it anew with: kelwhich store build RECORDS.jsonl");
    };
    const auto good = buildStore(folder, test::recordsOfEveryForm);
    for (const char byte : {'x', '\0'}) {
        expectError(folder.write("bytes", std::string(databaseHeaderSize, byte)),
                    "is not a support store, or is damaged");
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
    EXPECT_EQ(openingError(fifo), fifo + ": is not a regular file; name another file");
    EXPECT_EQ(openingError(folder.link("link", good)), "no error");
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
