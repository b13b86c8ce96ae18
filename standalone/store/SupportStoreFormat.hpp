// How a support store lies in its constant database: what its entries are.
//
//   key          value
//   'P' path     the record of a file: flags, symbol, unsupported symbols, names
//   'B' path     the record of a built-in: the same
//   'S' name     a reference to one record of that name; one entry for each record, in the order of import
//
// In a key the units of a text stand alone. A damaged byte never alters what is read: the checksum covers key and
// value, a value tells its own length, a reference tells the length and the checksum of the entry that it leads to, and
// the references of one name lead ever further into the file. In a key or in a hash table it may hide an entry.
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

// The longest beginning that all added paths share; empty when none was added. The store tells that of its files, so
// that asking for a file that lies elsewhere, as a user's does, need not look into the tables.
class CommonPrefix {
public:
    void add(std::u16string_view path);
    std::u16string text() const { return text_.value_or(u""); }

private:
    std::optional<std::u16string> text_;
};

std::string encodeKey(EntryKind kind, std::u16string_view text = {});
void encodeKey(std::string& key, EntryKind kind, std::u16string_view text); // in place of what `key` holds
std::string encodeRecord(const SupportRecord& record);
std::string encodeReference(const EntryReference& reference);

// Whether an entry with that key is a record.
bool isRecord(std::string_view key);

// Values without their checksum. Nothing when they cannot be what they are taken for; any bytes may be passed.
std::optional<SupportRecord> decodeRecord(std::string_view key, std::string_view value);
std::optional<EntryReference> decodeReference(std::string_view value);

} // namespace tessgen::standalone
