// How a support store lies in its constant database: entries, each of a key and a value.
//
//   key          value, then a checksum
//   'P' path     the record of a file: flags, symbol, unsupported symbols, names
//   'B' path     the record of a built-in: the same
//   'S' name     a reference to one record of that name; one entry for each record, in the order of import
//   'I'          about the store: magic text, version, number of records, root
//
// A number has 32 bits, a text is the number of its UTF-16 code units and the units, a list the number of its texts
// and the texts; in a key the units stand alone. All are little-endian. The checksum is the CRC-32 of key and value.
// A damaged byte never alters what is read: the checksum covers key and value, a value tells its own length, a
// reference tells the length and the checksum of the entry that it leads to, and the references of one name lead ever
// further into the file. In a key or in a hash table it may hide an entry.
#pragma once

#include "standalone/Checksum.hpp"
#include "standalone/SupportRecords.hpp"

#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::standalone {

enum class EntryKind : char { file = 'P', builtin = 'B', name = 'S', info = 'I' };

inline constexpr std::u16string_view storeMagic = u"kelwhich support store";
inline constexpr std::uint32_t storeVersion = 1;

// The constant database: 256 table slots, then the entries (the lengths of key and value, key, value), then the hash
// tables. Lengths and positions have 32 bits.
inline constexpr std::uint32_t databaseSlotSize = 8; // a table's position and how many places it has
inline constexpr std::uint32_t databaseHeaderSize = 256 * databaseSlotSize;
inline constexpr std::uint32_t databaseEntryHeaderSize = 8;
inline constexpr std::uint32_t databasePlaceSize = 8; // in a hash table: an entry's hash and position
inline constexpr std::uint32_t databaseTableSizePerEntry = 2 * databasePlaceSize;
inline constexpr std::uint64_t databaseSizeLimit = std::numeric_limits<std::uint32_t>::max();

inline constexpr std::uint32_t checksumSize = 4;

// Where an entry lies.
struct EntryReference {
    std::uint32_t position; // of its two lengths in the file
    std::uint32_t length;   // of key, value and checksum together
    std::uint32_t checksum;
};

struct StoreInfo {
    std::u16string magic{storeMagic};
    std::uint32_t version = storeVersion;
    std::uint32_t records = 0;
    std::u16string root;
};

inline std::uint32_t numberFrom(std::string_view fourBytes) {
    std::uint32_t number = 0;
    std::memcpy(&number, fourBytes.data(), sizeof number);
    return number;
}

std::string encodeKey(EntryKind kind, std::u16string_view text = {});
std::string encodeNumber(std::uint32_t number);
std::string encodeRecord(const SupportRecord& record);
std::string encodeReference(const EntryReference& reference);
std::string encodeInfo(const StoreInfo& info);

// Whether an entry with that key is a record.
bool isRecord(std::string_view key);

// Values without their checksum. Nothing when they cannot be what they are taken for; any bytes may be passed.
std::optional<SupportRecord> decodeRecord(std::string_view key, std::string_view value);
std::optional<EntryReference> decodeReference(std::string_view value);
// An info entry of another version is told by magic and version alone; the rest is then not filled in.
std::optional<StoreInfo> decodeInfo(std::string_view value);

} // namespace tessgen::standalone
