// The bytes of a support store from those of an input. What the first one asks for is put right, so that what lies
// behind checksums, references and hash tables is met too.
#pragma once

#include "standalone/database/DatabaseTables.hpp"
#include "standalone/store/SupportStoreFormat.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::fuzz {

class StoreInput {
public:
    enum Mode : unsigned {
        tables = 1,     // the input is entries alone: pointers and hash tables are made
        checksums = 2,  // of every entry
        references = 4, // a name's position counts records, and length and checksum follow
    };

    explicit StoreInput(std::string_view input)
        : mode_(input.empty() ? 0 : static_cast<unsigned char>(input.front())),
          file_((mode_ & tables) != 0 ? standalone::databaseHeaderSize : 0, '\0') {
        file_ += input.substr(input.empty() ? 0 : 1);
    }

    std::string file() {
        std::vector<std::uint32_t> records;
        standalone::DatabaseTables made;
        auto at = standalone::databaseHeaderSize;
        for (Entry entry; at < end() && readEntry(at, entry); at = entry.end) {
            if (standalone::isRecord(entry.key)) {
                records.push_back(at);
            } else if ((mode_ & references) != 0 && !records.empty() && entry.key.starts_with('S')) {
                refer(entry, records);
            }
            if ((mode_ & checksums) != 0 && entry.end - entry.begin >= standalone::checksumSize) {
                const auto sum = entry.end - standalone::checksumSize;
                put(sum, standalone::checksumOf(std::string_view(file_).substr(entry.begin, sum - entry.begin)));
            }
            made.add(entry.key, at);
        }
        if ((mode_ & tables) != 0) {
            file_.resize(at);
            file_.replace(0, standalone::databaseHeaderSize, made.pointers(at));
            for (std::size_t i = 0; i < standalone::DatabaseTables::count; ++i) {
                file_ += made.table(i);
            }
        }
        return std::move(file_);
    }

private:
    struct Entry {
        std::string_view key;
        std::uint32_t begin; // of the key
        std::uint32_t end;   // of the checksum
    };

    std::uint32_t number(std::uint32_t at) const { return standalone::numberFrom(std::string_view(file_).substr(at)); }
    void put(std::uint32_t at, std::uint32_t number) { std::memcpy(&file_[at], &number, sizeof number); }

    std::uint32_t end() const {
        const auto size = static_cast<std::uint32_t>(file_.size());
        return (mode_ & tables) != 0 || size < standalone::databaseHeaderSize ? size : std::min(size, number(0));
    }

    // False when there is no whole one.
    bool readEntry(std::uint32_t at, Entry& entry) const {
        const std::uint64_t begin = std::uint64_t{at} + standalone::databaseEntryHeaderSize;
        if (begin > end() || begin + number(at) + number(at + 4) > end()) {
            return false;
        }
        entry.key = std::string_view(file_).substr(begin, number(at));
        entry.begin = static_cast<std::uint32_t>(begin);
        entry.end = entry.begin + number(at) + number(at + 4);
        return true;
    }

    void refer(const Entry& entry, const std::vector<std::uint32_t>& records) {
        const auto at = entry.begin + static_cast<std::uint32_t>(entry.key.size());
        Entry record{};
        if (entry.end - at == 3 * sizeof(std::uint32_t) + standalone::checksumSize
            && readEntry(records[number(at) % records.size()], record)) {
            put(at, record.begin - standalone::databaseEntryHeaderSize);
            put(at + 4, record.end - record.begin);
            put(at + 8, number(record.end - standalone::checksumSize));
        }
    }

    unsigned mode_;
    std::string file_;
};

} // namespace tessgen::fuzz
