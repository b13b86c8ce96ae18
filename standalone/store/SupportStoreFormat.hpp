// The entries of a support store, which is a constant database.
//
//   key          value
//   'P' path     the record of a file: flags, symbol, unsupported symbols, names
//   'B' path     the record of a built-in: the same
//   'S' name     a reference to one record of that name; one entry for each record, in the order of import
//
// A key holds the code units of its text without their number. A damaged byte never alters what is read: the checksum
// covers key and value, a value holds the lengths of its parts, a reference holds the length and the checksum of its
// entry, and the references of a name are in the order of the file. A damaged key or hash table may hide an entry.
#pragma once

#include "standalone/database/DatabaseFormat.hpp"
#include "standalone/store/SupportRecords.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessgen::standalone {

enum class EntryKind : char { file = 'P', builtin = 'B', name = 'S' };

inline constexpr std::u16string_view storeMagic = u"kelwhich support store";
inline constexpr std::uint32_t storeVersion = 2;
inline constexpr DatabaseKind supportStoreKind{storeMagic, storeVersion, "support store",
                                               "kelwhich store build RECORDS.jsonl", true};

// The longest common prefix of the added paths; empty when there are none. The store holds that of its files: a path
// without it, as most user files have, needs no look-up.
class CommonPrefix {
public:
    void add(std::u16string_view path);
    [[nodiscard]] std::u16string text() const { return text_.value_or(u""); }

private:
    std::optional<std::u16string> text_;
};

[[nodiscard]] std::string encodeKey(EntryKind kind, std::u16string_view text = {});
void encodeKey(std::string& key, EntryKind kind, std::u16string_view text); // overwrites `key`
[[nodiscard]] std::string encodeRecord(const SupportRecord& record);
[[nodiscard]] std::string encodeReference(const EntryReference& reference);

// Whether an entry with that key is a record.
[[nodiscard]] bool isRecord(std::string_view key);

// Read values without their checksum; any bytes may be passed. Empty when the bytes are malformed.
[[nodiscard]] std::optional<SupportRecord> decodeRecord(std::string_view key, std::string_view value);
[[nodiscard]] std::optional<EntryReference> decodeReference(std::string_view value);

} // namespace tessgen::standalone
