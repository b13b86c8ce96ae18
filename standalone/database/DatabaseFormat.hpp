// The layout of a file that the host builds once and then only reads: a constant database, as described at
// https://cr.yp.to/cdb/cdb.txt, whose entries carry checksums.
//
//   256 pointers  where each hash table begins, and how many slots it has
//   entries       the lengths of key and value, key, value; the value ends with the CRC-32 of key and value
//   hash tables   a slot holds the hash of a key and the position of its entry; position 0: the slot is empty
//
// The last entry, with the key "I", describes the file: magic text, version, number of records, root, and in some kinds
// the common prefix of all paths. A number has 32 bits; a text is the number of its UTF-16 code units, then the units;
// a list is the number of its texts, then the texts. All are little-endian. A damaged byte never alters an entry whose
// checksum is verified. A look-up reports damage that would hide one, except in the upper three bytes of a slot's hash.
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
inline constexpr std::uint32_t databasePointerSize = 8; // a table's position and how many slots it has
inline constexpr std::uint32_t databaseHeaderSize = 256 * databasePointerSize;
inline constexpr std::uint32_t databaseEntryHeaderSize = 8;
inline constexpr std::uint32_t databaseSlotSize = 8; // a key's hash and its entry's position
inline constexpr std::uint32_t databaseTableSizePerEntry = 2 * databaseSlotSize;
inline constexpr std::uint64_t databaseSizeLimit = std::numeric_limits<std::uint32_t>::max();

inline constexpr std::uint32_t checksumSize = 4;

// One kind of file, and how errors about it read.
struct DatabaseKind {
    std::u16string_view magic;
    std::uint32_t version;
    std::string_view name;    // in errors
    std::string_view command; // that builds it
    bool hasCommonPrefix = false;
};

// Where an entry lies.
struct EntryReference {
    std::uint32_t position; // in the file, of its two lengths
    std::uint32_t length;   // of key, value and checksum together
    std::uint32_t checksum;
};

// The entry that describes the file.
struct DatabaseInfo {
    std::u16string magic;
    std::uint32_t version = 0;
    std::uint32_t records = 0;
    std::u16string root;                             // the only one that the records hold for; empty: any
    std::optional<std::u16string> commonPrefix = {}; // of all paths, in kinds that have one
};

inline constexpr std::string_view databaseInfoKey = "I";

inline std::uint32_t numberFrom(std::string_view fourBytes) {
    std::uint32_t number = 0;
    std::memcpy(&number, fourBytes.data(), sizeof number);
    return number;
}

// The hash of a key.
inline std::uint32_t databaseHashOf(std::string_view key) {
    std::uint32_t hash = 5381;
    for (const char byte : key) {
        hash = (hash * 33U) ^ static_cast<unsigned char>(byte);
    }
    return hash;
}

[[nodiscard]] std::string encodeNumber(std::uint32_t number);
[[nodiscard]] std::string encodeInfo(const DatabaseInfo& info);
// Reads a value without its checksum; any bytes may be passed. Nothing when the kind is another. For another version
// only magic and version are set.
[[nodiscard]] std::optional<DatabaseInfo> decodeInfo(const DatabaseKind& kind, std::string_view value);

void appendNumber(std::string& bytes, std::uint32_t number);
void appendUnits(std::string& bytes, std::u16string_view text);
void appendText(std::string& bytes, std::u16string_view text);
void appendTexts(std::string& bytes, const std::vector<std::u16string>& texts);

// Takes from the front of a value what these functions append. What is missing reads as zero or empty, and `complete`
// is then false.
class Decoder {
public:
    explicit Decoder(std::string_view bytes) : bytes_(bytes) {}

    std::uint32_t number();
    std::u16string text() { return units(number()); }
    std::u16string units(std::size_t count);
    std::vector<std::u16string> texts();

    // Nothing was missing, and nothing is left.
    [[nodiscard]] bool complete() const { return good_ && bytes_.empty(); }

private:
    std::string_view take(std::size_t count);

    std::string_view bytes_;
    bool good_ = true;
};

} // namespace tessgen::standalone
