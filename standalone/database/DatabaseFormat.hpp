// How a file that the host builds and then only reads lies on the disk: a constant database of checked entries, each
// of a key and a value.
//
//   256 slots    where each hash table begins, and how many places it has
//   entries      the lengths of key and value, key, value; at the value's end, the CRC-32 of key and value
//   tables       by which an entry is found by its key
//
// The last entry, with the key "I", is about the file: magic text, version, number of records, root, and of some kinds
// the beginning of all paths. A number has 32 bits, a text is the number of its UTF-16 code units and the units, a list
// the number of its texts and the texts. All are little-endian. A damaged byte never alters an entry that is checked;
// in a key or in a table it may hide one.
#pragma once

#include "standalone/database/Checksum.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::standalone {

// Lengths and positions have 32 bits.
inline constexpr std::uint32_t databaseSlotSize = 8; // a table's position and how many places it has
inline constexpr std::uint32_t databaseHeaderSize = 256 * databaseSlotSize;
inline constexpr std::uint32_t databaseEntryHeaderSize = 8;
inline constexpr std::uint32_t databasePlaceSize = 8; // in a hash table: an entry's hash and position
inline constexpr std::uint32_t databaseTableSizePerEntry = 2 * databasePlaceSize;
inline constexpr std::uint64_t databaseSizeLimit = std::numeric_limits<std::uint32_t>::max();

inline constexpr std::uint32_t checksumSize = 4;

// What a file holds, and what is said when it does not.
struct DatabaseKind {
    std::u16string_view magic;
    std::uint32_t version;
    std::string_view name;    // as errors call it
    std::string_view command; // that builds it anew
    bool hasCommonPrefix = false;
};

// Where an entry lies.
struct EntryReference {
    std::uint32_t position; // of its two lengths in the file
    std::uint32_t length;   // of key, value and checksum together
    std::uint32_t checksum;
};

// The entry about the file.
struct DatabaseInfo {
    std::u16string magic;
    std::uint32_t version = 0;
    std::uint32_t records = 0;
    std::u16string root;                          // that the records hold for; empty when they hold for any
    std::optional<std::u16string> beginning = {}; // that the paths of all files share, when the kind tells it
};

inline constexpr std::string_view databaseInfoKey = "I";

inline std::uint32_t numberFrom(std::string_view fourBytes) {
    std::uint32_t number = 0;
    std::memcpy(&number, fourBytes.data(), sizeof number);
    return number;
}

// Of a key, as described at https://cr.yp.to/cdb/cdb.txt.
inline std::uint32_t databaseHashOf(std::string_view key) {
    std::uint32_t hash = 5381;
    for (const char byte : key) {
        hash = (hash * 33U) ^ static_cast<unsigned char>(byte);
    }
    return hash;
}

std::string encodeNumber(std::uint32_t number);
std::string encodeInfo(const DatabaseInfo& info);
// Without its checksum; any bytes may be passed. Nothing when it is not of that kind; of another version, it is told by
// magic and version alone, and the rest is not filled in.
std::optional<DatabaseInfo> decodeInfo(const DatabaseKind& kind, std::string_view value);

void appendNumber(std::string& bytes, std::uint32_t number);
void appendUnits(std::string& bytes, std::u16string_view text);
void appendText(std::string& bytes, std::u16string_view text);
void appendTexts(std::string& bytes, const std::vector<std::u16string>& texts);

// Takes what these append from the front of a value. What is not there is read as zero or empty, and `complete` then
// says no.
class Decoder {
public:
    explicit Decoder(std::string_view bytes) : bytes_(bytes) {}

    std::uint32_t number();
    std::u16string text() { return units(number()); }
    std::u16string units(std::size_t count);
    std::vector<std::u16string> texts();

    // Everything was there, and nothing is left.
    bool complete() const { return good_ && bytes_.empty(); }

private:
    std::string_view take(std::size_t count);

    std::string_view bytes_;
    bool good_ = true;
};

} // namespace tessgen::standalone
